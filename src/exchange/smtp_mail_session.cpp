#include "exchange/smtp_mail_session.h"

#include <curl/curl.h>
#include <pwd.h>
#include <strings.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "exchange/mail_text.h"
#include "platform/cp1252.h"
#include "platform/file_system.h"
#include "platform/guid.h"
#include "platform/trace.h"

namespace verdal::exchange {
namespace {

// A dead server must not hang the host: these bound every wait.
constexpr long kConnectSeconds = 10;
constexpr long kAnswerSeconds = 30;
constexpr long kStalledSeconds = 60;

bool LibraryReady() {
  static const bool ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return ready;
}

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string LoginAtHost() {
  std::string login = "verdal";
  char buffer[1024];
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer, sizeof buffer, &found) == 0 && found != nullptr)
    login = found->pw_name;
  char host[256] = {};
  if (gethostname(host, sizeof host - 1) != 0 || host[0] == '\0') std::snprintf(host, sizeof host, "localhost");
  return login + "@" + host;
}

std::string Utf8(const std::string& text) {
  std::string out;
  cp1252::ToUtf8(text, out);
  return out;
}

std::string Envelope(const std::string& address) { return "<" + Utf8(address) + ">"; }

std::string AddressList(const std::vector<std::string>& addresses) {
  std::string list;
  for (const std::string& address : addresses) list += (list.empty() ? "" : ", ") + Utf8(address);
  return list;
}

// What a message holds on to while it is sent; freed with it.
struct MessageParts {
  curl_slist* recipients = nullptr;
  curl_slist* headers = nullptr;
  curl_mime* mime = nullptr;
  bool ok = true;
  ~MessageParts() {
    curl_slist_free_all(recipients);
    curl_slist_free_all(headers);
    curl_mime_free(mime);
  }
  void Add(curl_slist*& list, const std::string& text) {
    curl_slist* longer = curl_slist_append(list, text.c_str());
    if (longer == nullptr) ok = false;
    else list = longer;
  }
};

void Configure(CURL* curl, const SmtpSettings& settings, char* errorText) {
  curl_easy_setopt(curl, CURLOPT_URL, settings.url.c_str());
  curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "smtp,smtps");
  curl_easy_setopt(curl, CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_TRY));
  if (!settings.user.empty()) {
    curl_easy_setopt(curl, CURLOPT_USERNAME, settings.user.c_str());
    curl_easy_setopt(curl, CURLOPT_PASSWORD, settings.password.c_str());
  }
  curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);  // the host's threads and signals are its own
  curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
  curl_easy_setopt(curl, CURLOPT_SERVER_RESPONSE_TIMEOUT, kAnswerSeconds);
  curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, kStalledSeconds);
  curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, errorText);
  errorText[0] = '\0';
}

bool Performed(CURL* curl, const char* what, const char* errorText) {
  const CURLcode result = curl_easy_perform(curl);
  if (result == CURLE_OK) return true;
  platform::Trace("SMTP %s failed: %s", what, errorText[0] != '\0' ? errorText : curl_easy_strerror(result));
  return false;
}

}  // namespace

SmtpSettings SmtpSettings::FromEnvironment() {
  SmtpSettings settings;
  settings.url = Environment("VERDAL_SMTP_URL");
  settings.user = Environment("VERDAL_SMTP_USER");
  settings.password = Environment("VERDAL_SMTP_PASSWORD");
  settings.from = Environment("VERDAL_SMTP_FROM");
  if (settings.from.empty())
    settings.from = settings.user.find('@') != std::string::npos ? settings.user : LoginAtHost();
  return settings;
}

TSmtpMailSession::TSmtpMailSession(SmtpSettings settings) : settings_(std::move(settings)) {}

TSmtpMailSession::~TSmtpMailSession() { Logoff(); }

bool TSmtpMailSession::Available() const {
  const bool smtp = strncasecmp(settings_.url.c_str(), "smtp://", 7) == 0 ||
                    strncasecmp(settings_.url.c_str(), "smtps://", 8) == 0;
  return smtp && LibraryReady();
}

bool TSmtpMailSession::Logon() {
  Logoff();
  if (!Available()) return false;
  // The check is a connection of its own: one made connect-only is never used for a transfer.
  char errorText[CURL_ERROR_SIZE];
  CURL* probe = curl_easy_init();
  if (probe == nullptr) return false;
  Configure(probe, settings_, errorText);
  curl_easy_setopt(probe, CURLOPT_CONNECT_ONLY, 1L);
  const bool answered = Performed(probe, "logon", errorText);
  curl_easy_cleanup(probe);
  if (answered) curl_ = curl_easy_init();
  return curl_ != nullptr;
}

bool TSmtpMailSession::Send(const TMapiMessage& message) {
  CURL* curl = static_cast<CURL*>(curl_);
  if (curl == nullptr) return false;
  char errorText[CURL_ERROR_SIZE];
  Configure(curl, settings_, errorText);
  curl_easy_setopt(curl, CURLOPT_MAIL_FROM, Envelope(settings_.from).c_str());

  MessageParts parts;
  for (const auto* list : {&message.to, &message.copy, &message.blindCopy})
    for (const std::string& address : *list) parts.Add(parts.recipients, Envelope(address));
  const std::string from = Utf8(settings_.from);
  parts.Add(parts.headers, "From: " + from);
  parts.Add(parts.headers, "To: " + AddressList(message.to));
  if (!message.copy.empty()) parts.Add(parts.headers, "Cc: " + AddressList(message.copy));
  parts.Add(parts.headers, "Subject: " + HeaderText(Utf8(message.subject)));
  parts.Add(parts.headers, "Date: " + MailDate(std::time(nullptr)));
  const size_t at = from.rfind('@');
  std::string id = platform::NewGuidText();
  parts.Add(parts.headers, "Message-ID: <" + id + "@" + (at != std::string::npos ? from.substr(at + 1) : "localhost") + ">");

  parts.mime = curl_mime_init(curl);
  curl_mimepart* body = curl_mime_addpart(parts.mime);
  const std::string text = WithCrLf(Utf8(message.body));
  parts.ok = parts.ok && body != nullptr && curl_mime_data(body, text.data(), text.size()) == CURLE_OK &&
             curl_mime_type(body, "text/plain; charset=UTF-8") == CURLE_OK &&
             curl_mime_encoder(body, "quoted-printable") == CURLE_OK;
  for (size_t i = 0; i < message.attachmentPaths.size() && parts.ok; ++i) {
    // An attachment without a path is none: there is no file to read.
    if (message.attachmentPaths[i].empty()) continue;
    const std::string title = i < message.attachmentTitles.size() ? message.attachmentTitles[i] : "";
    curl_mimepart* file = curl_mime_addpart(parts.mime);
    parts.ok = file != nullptr &&
               curl_mime_filedata(file, platform::NativePath(message.attachmentPaths[i].c_str()).c_str()) == CURLE_OK &&
               (title.empty() || curl_mime_filename(file, HeaderText(Utf8(title), " ").c_str()) == CURLE_OK) &&
               curl_mime_encoder(file, "base64") == CURLE_OK;
  }
  bool sent = false;
  if (parts.ok && parts.recipients != nullptr) {
    curl_easy_setopt(curl, CURLOPT_MAIL_RCPT, parts.recipients);
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, parts.headers);
    curl_easy_setopt(curl, CURLOPT_MIMEPOST, parts.mime);
    sent = Performed(curl, "send", errorText);
  }
  // The handle keeps its connection, but nothing of this message.
  curl_easy_setopt(curl, CURLOPT_MAIL_RCPT, nullptr);
  curl_easy_setopt(curl, CURLOPT_HTTPHEADER, nullptr);
  curl_easy_setopt(curl, CURLOPT_MIMEPOST, nullptr);
  curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, nullptr);
  return sent;
}

void TSmtpMailSession::Logoff() {
  if (curl_ == nullptr) return;
  curl_easy_cleanup(static_cast<CURL*>(curl_));  // says QUIT on a connection still open
  curl_ = nullptr;
}

}  // namespace verdal::exchange
