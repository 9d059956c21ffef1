#pragma once
// The mail session over SMTP, through libcurl. There is no address book: a name is the address.
// Each message goes out with its recipients as they are written; one connection carries all the
// messages of a session.
#include <string>

#include "exchange/mail_session.h"

namespace verdal::exchange {

// Where and as whom the session sends.
struct SmtpSettings {
  std::string url;  // smtp://host[:port] (STARTTLS where offered) or smtps://host[:port]
  std::string user;
  std::string password;
  std::string from;

  // From the environment: VERDAL_SMTP_URL, VERDAL_SMTP_USER, VERDAL_SMTP_PASSWORD and
  // VERDAL_SMTP_FROM. The sender, where VERDAL_SMTP_FROM is not set, is VERDAL_SMTP_USER when that
  // is an address, else the login name at the host name ("anna@werkstatt").
  static SmtpSettings FromEnvironment();
};

class TSmtpMailSession : public TMapiSession {
 public:
  explicit TSmtpMailSession(SmtpSettings settings = SmtpSettings::FromEnvironment());
  ~TSmtpMailSession() override;
  TSmtpMailSession(const TSmtpMailSession&) = delete;
  TSmtpMailSession& operator=(const TSmtpMailSession&) = delete;

  // A URL of scheme smtp or smtps is set, and libcurl initialises.
  bool Available() const override;
  // Connects, and logs in where a user is set: the server must answer. Waits at most 10 seconds
  // for the connection and 30 for each answer.
  bool Logon() override;
  std::string ResolveName(const std::string& name) override { return name; }
  // A text/plain part in UTF-8 and each attachment (an empty path: none) as a part of its own;
  // blind copies go only to the envelope. A send that moves no byte for 60 seconds is given up.
  bool Send(const TMapiMessage& message) override;
  void Logoff() override;

 private:
  SmtpSettings settings_;
  void* curl_ = nullptr;  // the CURL handle after a logon; its connection stays open between sends
};

}  // namespace verdal::exchange
