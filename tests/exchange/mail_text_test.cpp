#include "exchange/mail_text.h"

#include <gtest/gtest.h>

#include "platform/environment_scope.h"

using namespace verdal::exchange;

TEST(MailText, HeaderWordsDateAndLineBreaks) {
  EXPECT_EQ(Base64(""), "");
  EXPECT_EQ(Base64("Man"), "TWFu");
  EXPECT_EQ(Base64("Ma"), "TWE=");
  EXPECT_EQ(Base64("\xFF"), "/w==");
  EXPECT_EQ(HeaderText("Rundbrief 7/2026 (Mitglieder)"), "Rundbrief 7/2026 (Mitglieder)");
  EXPECT_EQ(HeaderText("Gr\xC3\xBC\xC3\x9F" "e"), "=?UTF-8?B?" + Base64("Gr\xC3\xBC\xC3\x9F" "e") + "?=");
  EXPECT_EQ(HeaderText("a\r\nBcc: b@x.de"), "=?UTF-8?B?" + Base64("a\r\nBcc: b@x.de") + "?=");
  // 44 ASCII characters and then a two-byte one: the second word begins with the whole character.
  const std::string text = std::string(44, 'x') + "\xC3\xA4" + "y";
  EXPECT_EQ(HeaderText(text), "=?UTF-8?B?" + Base64(std::string(44, 'x')) + "?=\r\n =?UTF-8?B?" +
                                  Base64("\xC3\xA4y") + "?=");
  EXPECT_EQ(HeaderText(text, " ").find("\r\n"), std::string::npos);
  for (size_t n : {1u, 45u, 46u, 200u}) {
    const std::string words = HeaderText(std::string(n, 'a') + "\xC3\xA4", "|");
    for (size_t begin = 0, end; begin < words.size(); begin = end + 1) {
      end = std::min(words.find('|', begin), words.size());
      EXPECT_LE(end - begin, 75u) << n;
    }
  }

  EXPECT_EQ(WithCrLf("a\nb\r\nc\rd\n\n"), "a\r\nb\r\nc\r\nd\r\n\r\n");

  EnvironmentScope tz({"TZ"});
  setenv("TZ", "UTC", 1);
  tzset();
  EXPECT_EQ(MailDate(0), "Thu, 01 Jan 1970 00:00:00 +0000");
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  tzset();
  EXPECT_EQ(MailDate(1784800800), "Thu, 23 Jul 2026 12:00:00 +0200");
  unsetenv("TZ");
  tzset();
}
