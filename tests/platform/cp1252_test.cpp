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
