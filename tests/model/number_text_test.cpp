#include "model/number_text.h"

#include <gtest/gtest.h>

#include <cmath>

#include <locale.h>

#include <cfloat>
#include <cstdlib>
#include <limits>
#include <random>

using namespace verdal::model;

TEST(NumberText, ShortNumbersReadExactlyAsTheCLibraryReadsThem) {
  // The reader divides short mantissas instead of calling strtold; both must round alike.
  locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  std::mt19937_64 rng(7);
  for (int i = 0; i < 200000; ++i) {
    std::string text = (rng() & 1) ? "-" : "";
    const int intDigits = static_cast<int>(rng() % 12), fracDigits = static_cast<int>(rng() % 22);
    for (int k = 0; k < intDigits; ++k) text += static_cast<char>('0' + rng() % 10);
    text += '.';
    for (int k = 0; k < fracDigits; ++k) text += static_cast<char>('0' + rng() % 10);
    if (intDigits + fracDigits == 0) continue;
    const long double expected = strtold_l(text.c_str(), nullptr, c);
    ASSERT_EQ(ReadNumber(text), expected) << text;
  }
  freelocale(c);
}

TEST(NumberText, ReadAndPrintEdges) {
  EXPECT_EQ(ReadNumber("  +12.5kg"), 12.5L);
  EXPECT_EQ(ReadNumber("1.5e2x"), 150.0L);
  EXPECT_EQ(ReadNumber("1.5ex"), 1.5L);
  EXPECT_EQ(ReadNumber("."), 0.0L);
  EXPECT_EQ(ReadNumber("nan"), 0.0L);
  EXPECT_EQ(ReadNumber("12345678901234567890123"), 12345678901234567890123.0L);
  EXPECT_EQ(ReadNumber("1.23456789012345678901e0"), 1.23456789012345678901L);
  EXPECT_EQ(ReadNumber("2,5"), 2.0L);
  EXPECT_EQ(ReadNumber("1e99999"), LDBL_MAX);
  EXPECT_EQ(ReadNumber("-1e99999"), -LDBL_MAX);

  std::string out;
  FormatNumber(1234.5L, 2, out);
  EXPECT_EQ(out, "1234.50");
  FormatNumber(0.6L, 0, out);
  EXPECT_EQ(out, "1");
  FormatNumber(3, -4, out);
  EXPECT_EQ(out, "3");
  FormatNumber(LDBL_MAX, 2, out);
  EXPECT_GT(out.size(), 4900u);  // printed whole, not cut off
  EXPECT_EQ(ReadNumber(out), LDBL_MAX);
  FormatNumber(std::numeric_limits<long double>::quiet_NaN(), 1, out);
  EXPECT_EQ(out, "0.0");

  EXPECT_EQ(ReadInteger(" -12x"), -12);
  EXPECT_EQ(ReadInteger("99999999999"), INT32_MAX);
  EXPECT_EQ(ReadInteger("-99999999999"), INT32_MIN);
  EXPECT_EQ(ReadInteger("x1"), 0);
}

TEST(NumberText, PlainDecimalsReadAsReadNumberDoes) {
  const char* const plain[] = {"0", "-0", "+7", "  42", "123.25", "1.", ".5", "-", "", "abc",
                               "9999999999999999999", "99.99999999999999999", "0000000000000000000000123.5",
                               "0.000000000000000000000000001", "12abc"};
  for (const char* text : plain) {
    verdal::model::PlainDecimal d;
    ASSERT_TRUE(verdal::model::ReadPlainDecimal(text, &d)) << text;
    const long double expected = verdal::model::ReadNumber(text);
    EXPECT_TRUE(d.Value() == expected && std::signbit(d.Value()) == std::signbit(expected)) << text;
  }
  // Forms left to the general reader: an exponent, more than 19 significant digits, places
  // beyond the exact powers of ten.
  for (const char* text : {"1e5", "2E-3", "12345678901234567890", "1234567890123456789000",
                           "0.0000000000000000000000000001"}) {
    verdal::model::PlainDecimal d;
    EXPECT_FALSE(verdal::model::ReadPlainDecimal(text, &d)) << text;
  }
}
