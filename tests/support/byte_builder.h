#pragma once
// Builds expected file bytes by hand, field by field, as the format tables describe them. Plain
// C++ only, so that tests through the C interface can use it too.
#include <cstdint>
#include <string>
#include <vector>

namespace verdal::test_support {

struct Bytes {
  std::vector<uint8_t> b;
  Bytes& Le(uint64_t v, int n) {
    for (int i = 0; i < n; ++i) b.push_back(static_cast<uint8_t>(v >> (8 * i)));
    return *this;
  }
  Bytes& U8(uint8_t v) { return Le(v, 1); }
  Bytes& I16(int16_t v) { return Le(static_cast<uint16_t>(v), 2); }
  Bytes& I32(int32_t v) { return Le(static_cast<uint32_t>(v), 4); }
  Bytes& Str(const std::string& s) {
    I32(static_cast<int32_t>(s.size()));
    b.insert(b.end(), s.begin(), s.end());
    return *this;
  }
  // 80-bit x87: 64-bit mantissa with explicit integer bit, then sign and 15-bit exponent.
  Bytes& Ext(uint64_t mantissa, uint16_t signExponent) { return Le(mantissa, 8).Le(signExponent, 2); }
  Bytes& Append(const Bytes& other) {
    b.insert(b.end(), other.b.begin(), other.b.end());
    return *this;
  }
};

}  // namespace verdal::test_support
