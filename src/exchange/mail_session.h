#pragma once
// A mail session in the shape of simple MAPI: log on, resolve names, send messages one at a time,
// log off. The e-mail action talks to this and nothing else, so that the transport behind it (SMTP
// through libcurl, smtp_mail_session.h) is one choice among others.
#include <string>
#include <vector>

namespace verdal::exchange {

// One message. Texts are in code page 1252, as the engine stores them; the session converts them
// for the wire.
struct TMapiMessage {
  std::vector<std::string> to;
  std::vector<std::string> copy;
  std::vector<std::string> blindCopy;
  std::string subject;
  std::string body;
  // Parallel: the file of each attachment and the name it goes under.
  std::vector<std::string> attachmentPaths;
  std::vector<std::string> attachmentTitles;
};

class TMapiSession {
 public:
  virtual ~TMapiSession() = default;
  // The session can be used at all (configured, its library loaded).
  virtual bool Available() const = 0;
  virtual bool Logon() = 0;
  // The address a name stands for.
  virtual std::string ResolveName(const std::string& name) = 0;
  // Sends one message; false when it was not taken.
  virtual bool Send(const TMapiMessage& message) = 0;
  // Ends the session; also done at destruction.
  virtual void Logoff() = 0;
};

}  // namespace verdal::exchange
