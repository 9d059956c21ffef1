#pragma once
// A fixed 80-bit number that plain decimals are compared with many times over (a filter's
// constant against the stored values of many records), prepared so that most comparisons need
// integers only. The answer is always the one the decimal's correctly rounded 80-bit value gives.
#include <cstdint>

#include "model/number_text.h"

namespace verdal::model {

class DecimalBound {
 public:
  explicit DecimalBound(long double bound = 0);

  // Sets signOut to -1, 0 or 1 as d.Value() is below, equal to or above the bound. False when
  // only 80-bit arithmetic can tell: the bound times 10^k (k the decimal's places) is no whole
  // number below 2^63, or the mantissa is not.
  bool Compare(const PlainDecimal& d, int* signOut) const {
    const int32_t k = d.fractionDigits;
    if (k < 0 || k >= kPlaces || !usable_[k] || d.mantissa > static_cast<uint64_t>(INT64_MAX))
      return false;
    const int64_t v = d.negative ? -static_cast<int64_t>(d.mantissa) : static_cast<int64_t>(d.mantissa);
    *signOut = (v > scaled_[k]) - (v < scaled_[k]);
    return true;
  }

 private:
  static constexpr int kPlaces = 28;  // fraction digits a plain decimal may have
  int64_t scaled_[kPlaces] = {};       // the bound times 10^k
  bool usable_[kPlaces] = {};
};

}  // namespace verdal::model
