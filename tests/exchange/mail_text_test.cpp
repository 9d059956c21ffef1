#include "exchange/mail_text.h"

#include <gtest/gtest.h>

#include "platform/environment_scope.h"

using namespace verdal::exchange;

TEST(MailText, HeaderWordsDateAndLineBreaks) {
  EXPECT_EQ(Base64("Man") + Base64("Ma") + Base64("\xFF") + Base64(""), "TWFuTWE=/w==");
  EXPECT_EQ(HeaderText("Rundbrief 7/2026 (Mitglieder)"), "Rundbrief 7/2026 (Mitglieder)");
  EXPECT_EQ(HeaderText("a\r\nBcc: b@x.de"), "=?UTF-8?B?" + Base64("a\r\nBcc: b@x.de") + "?=");  // cannot end the header
  // 44 ASCII characters and a two-byte one: the second word begins with the whole character.
  const std::string text = std::string(44, 'x') + "\xC3\xA4y";
  EXPECT_EQ(HeaderText(text), "=?UTF-8?B?" + Base64(std::string(44, 'x')) + "?=\r\n =?UTF-8?B?" + Base64("\xC3\xA4y") + "?=");
  const std::string words = HeaderText(std::string(200, 'a') + "\xC3\xA4", "|") + "|";
  for (size_t begin = 0, end; (end = words.find('|', begin)) != std::string::npos; begin = end + 1)
    EXPECT_LE(end - begin, 75u);
  EXPECT_EQ(WithCrLf("a\nb\r\nc\rd\n\n"), "a\r\nb\r\nc\r\nd\r\n\r\n");
  {
    EnvironmentScope zone({"TZ"});
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    tzset();
    EXPECT_EQ(MailDate(0), "Thu, 01 Jan 1970 01:00:00 +0100");
    EXPECT_EQ(MailDate(1784800800), "Thu, 23 Jul 2026 12:00:00 +0200");
  }
  tzset();
}
