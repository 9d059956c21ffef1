#include "platform/cp1252.h"

#include <gtest/gtest.h>

using namespace verdal;

TEST(Cp1252, UpperCaseAndUnicodeMapping) {
  std::string text = "stra\xDF" "e \xE4\xF6\xFC \x9A\x9C\x9E\xFF \xF7\xB5 az AZ 09";
  cp1252::ToUpper(text);
  EXPECT_EQ(text, "STRA\xDF" "E \xC4\xD6\xDC \x8A\x8C\x8E\x9F \xF7\xB5 AZ AZ 09");
  // Every byte that changes becomes another letter whose own upper case is itself.
  for (int c = 0; c < 256; ++c) {
    const char up = cp1252::ToUpper(static_cast<char>(c));
    EXPECT_EQ(cp1252::ToUpper(up), up) << c;
  }
  EXPECT_EQ(cp1252::ToUtf16('A'), u'A');
  EXPECT_EQ(cp1252::ToUtf16('\x80'), u'\u20AC');
  EXPECT_EQ(cp1252::ToUtf16('\x8A'), u'\u0160');
  EXPECT_EQ(cp1252::ToUtf16('\x81'), u'\u0081');
  EXPECT_EQ(cp1252::ToUtf16('\x9F'), u'\u0178');
  EXPECT_EQ(cp1252::ToUtf16('\xE4'), u'\u00E4');
  EXPECT_EQ(cp1252::ToUtf16('\xFF'), u'\u00FF');
}

TEST(Cp1252, Utf8BothWays) {
  struct Case {
    const char* utf8;
    const char* cp1252;
    bool whole;
    bool wellFormed;
  };
  const Case cases[] = {
      {"Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC \xC5\xA0", "Gr\xF6\xDF" "e \x80 \x8A", true, true},
      {"plain", "plain", true, true},
      {"\xE2\x88\x9E", "?", false, true},         // no form in the code page
      {"\xC3\x28", "?(", false, false},                  // a broken sequence
      {"\xC0\xAF", "??", false, false},                  // an overlong slash
      {"\xED\xA0\x80", "???", false, false},             // a surrogate
      {"\xF0\x9F\x98\x80!", "?!", false, true},         // beyond the basic plane
  };
  for (const Case& c : cases) {
    std::string out;
    EXPECT_EQ(cp1252::FromUtf8(c.utf8, out), c.whole) << c.utf8;
    EXPECT_EQ(out, c.cp1252) << c.utf8;
    EXPECT_EQ(cp1252::IsUtf8(c.utf8), c.wellFormed) << c.utf8;
    if (c.whole) {
      std::string back;
      cp1252::ToUtf8(out, back);
      EXPECT_EQ(back, c.utf8);
    }
  }
}
