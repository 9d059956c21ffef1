#include "model/decimal_bound.h"

#include <cmath>

namespace verdal::model {

// Why integers suffice: a decimal v = m / 10^k and a bound y = Y / 10^k that differ, differ by
// at least 10^-k. Both neighbours of y lie within the spacing 2^(e-64) of its binade, where
// |y| = f * 2^e with 1/2 <= f < 1; and |Y| < 2^63 gives 10^k < 2^63 / |y| <= 2^(64-e), so that
// spacing is below 10^-k. Hence v lies beyond a neighbour of y and rounds to y's side of it: the
// rounded value compares with y as v does, and v compares with y as m with Y.
DecimalBound::DecimalBound(long double bound) {
  if (!std::isfinite(bound)) return;
  if (bound == 0) {
    // Any nonzero decimal of at most 27 places is far above the smallest 80-bit numbers.
    for (int k = 0; k < kPlaces; ++k) usable_[k] = true;
    return;
  }
  int e = 0;
  const long double fraction = std::frexp(std::fabs(bound), &e);  // |bound| = fraction * 2^e
  // The 64-bit significand as an integer: |bound| = significand * 2^(e - 64).
  const uint64_t significand = static_cast<uint64_t>(std::ldexp(fraction, 64));
  using u128 = unsigned __int128;
  u128 fives = 1;
  for (int k = 0; k < kPlaces; ++k, fives *= 5) {
    // |bound| * 10^k = significand * 5^k * 2^(e - 64 + k), which must be a whole number below 2^63.
    const u128 product = static_cast<u128>(significand) * fives;  // below 2^127
    const int shift = e - 64 + k;
    u128 scaled = 0;
    if (shift >= 0) {
      if (shift >= 63 || product > (u128{INT64_MAX} >> shift)) continue;
      scaled = product << shift;
    } else {
      if (-shift >= 127) continue;
      const u128 dropped = product & ((u128{1} << -shift) - 1);
      if (dropped != 0) continue;
      scaled = product >> -shift;
    }
    if (scaled > static_cast<u128>(INT64_MAX)) continue;
    scaled_[k] = bound < 0 ? -static_cast<int64_t>(scaled) : static_cast<int64_t>(scaled);
    usable_[k] = true;
  }
}

}  // namespace verdal::model
