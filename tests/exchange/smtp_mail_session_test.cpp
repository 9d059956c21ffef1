#include "exchange/smtp_mail_session.h"

#include <gtest/gtest.h>

#include "support/smtp_sink.h"

using namespace verdal::exchange;

// Blind copies reach their recipients through the envelope only; texts arrive in UTF-8; an
// attachment without a path is left out; nothing is sent before the logon or after the logoff.
TEST(SmtpMailSession, RecipientsTextsAndAttachments) {
  SmtpSink sink;
  TempFolder dir;
  std::ofstream(dir / "daten.csv") << "a;b\n";
  TSmtpMailSession session(SmtpSettings{sink.url(), "", "", "absender@x.example"});
  const TMapiMessage m{{"a@x.example", "b@x.example"}, {"c@x.example"}, {"d@x.example"}, "\xC4nderung", "\xFC",
                       {dir / "daten.csv", ""}, {"Liste M\xE4rz.csv", "leer"}};
  EXPECT_FALSE(session.Send(m));
  ASSERT_TRUE(session.Logon());
  ASSERT_TRUE(session.Send(m));
  session.Logoff();
  EXPECT_FALSE(session.Send(m));

  const std::vector<SunkMail> mails = sink.Mails();
  ASSERT_EQ(mails.size(), 1u);
  EXPECT_EQ(mails[0].envelopeTo, (std::vector<std::string>{"a@x.example", "b@x.example", "c@x.example", "d@x.example"}));
  std::map<std::string, std::string> headers = mails[0].headers;
  EXPECT_EQ(headers.erase("Date"), 1u);
  EXPECT_TRUE(headers["Message-ID"].ends_with("@x.example>"));
  headers.erase("Message-ID");
  EXPECT_EQ(headers, (std::map<std::string, std::string>{
                         {"From", "absender@x.example"}, {"To", "a@x.example, b@x.example"},
                         {"Cc", "c@x.example"}, {"Subject", "\xC3\x84nderung"}}));
  EXPECT_EQ(mails[0].body, "\xC3\xBC");
  EXPECT_EQ(mails[0].attachments, (std::map<std::string, std::string>{{"Liste M\xC3\xA4rz.csv", "a;b\n"}}));
  EXPECT_FALSE(TSmtpMailSession(SmtpSettings{"", "", "", ""}).Available());
}
