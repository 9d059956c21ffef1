// Integer comparisons with a bound must give what 80-bit arithmetic on the rounded decimal gives,
// right at the bound and next to it, and be available for the bounds filters usually name.
#include "model/decimal_bound.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using verdal::model::DecimalBound;
using verdal::model::PlainDecimal;

namespace {

int SignOf(long double d) { return (d > 0) - (d < 0); }

// Decimals with k places around bound * 10^k, and random ones.
void CheckAround(long double bound, std::mt19937_64& random, int* usableOut) {
  const DecimalBound prepared(bound);
  for (int32_t k = 0; k <= 27; ++k) {
    const long double scaled = std::fabs(bound) * std::pow(10.0L, k);
    std::vector<uint64_t> mantissas = {0, 1, random() >> 1, random() >> 40};
    if (scaled < 9.2e18L) {
      const uint64_t centre = static_cast<uint64_t>(scaled);
      for (uint64_t delta : {0, 1, 2, 1000})
        for (uint64_t m : {centre + delta, centre - delta}) mantissas.push_back(m);
    }
    for (uint64_t m : mantissas) {
      for (bool negative : {false, true}) {
        const PlainDecimal d{m, k, negative};
        int sign = 2;
        if (!prepared.Compare(d, &sign)) continue;
        ++*usableOut;
        ASSERT_EQ(sign, SignOf(d.Value() - bound))
            << "bound " << static_cast<double>(bound) << " m " << m << " k " << k << " neg " << negative;
      }
    }
  }
}

}  // namespace

TEST(DecimalBound, AgreesWithRoundedArithmetic) {
  std::mt19937_64 random(7);
  const long double bounds[] = {0.0L, -0.0L, 1, 100, 200, -3.5L, 0.25L, 1e15L, 4611686018427387904.0L,
                                9.2e18L, 19.9L, 0.1L, 1e-10L, 1e300L, -123456.125L, 1.0L / 3};
  int usable = 0;
  for (long double bound : bounds) CheckAround(bound, random, &usable);
  EXPECT_GT(usable, 1000);
  // Bounds of every size and number of binary places, with decimals right next to them.
  for (int i = 0; i < 2000; ++i) {
    const long double bound = std::ldexp(static_cast<long double>(random() >> 11), static_cast<int>(random() % 80) - 60);
    CheckAround(random() % 2 ? bound : -bound, random, &usable);
  }
  EXPECT_GT(usable, 20000);
}

TEST(DecimalBound, IntegersServeWholeNumbersAndShortFractionsOnly) {
  int sign = 2;
  EXPECT_TRUE(DecimalBound(100).Compare(PlainDecimal{10025, 2, false}, &sign));
  EXPECT_TRUE(DecimalBound(-3.5L).Compare(PlainDecimal{36, 1, true}, &sign));
  EXPECT_TRUE(DecimalBound(0).Compare(PlainDecimal{1, 27, false}, &sign));
  // 19.9 has no exact binary form, so no number of places makes it whole; 100 times 10^18 is
  // beyond 63 bits; so are mantissas beyond 63 bits.
  EXPECT_FALSE(DecimalBound(19.9L).Compare(PlainDecimal{199, 1, false}, &sign));
  EXPECT_FALSE(DecimalBound(100).Compare(PlainDecimal{1, 18, false}, &sign));
  EXPECT_FALSE(DecimalBound(INFINITY).Compare(PlainDecimal{1, 0, false}, &sign));
  EXPECT_FALSE(DecimalBound(1).Compare(PlainDecimal{UINT64_MAX, 0, false}, &sign));
}
