#pragma once
// Builds expected file bytes by hand, field by field, as the format tables describe them.
#include <cstdint>
#include <string>
#include <vector>

#include "BASE_SOURCE/memfile.h"

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
  // A memory file holding these bytes, positioned at 0.
  std::unique_ptr<TMemFile> File() const {
    auto f = std::make_unique<TMemFile>(static_cast<int32_t>(b.size()) + 16);
    f->Write(b.data(), static_cast<int32_t>(b.size()));
    f->Seek(0);
    return f;
  }
};

inline std::vector<uint8_t> Contents(TMemFile& f) {
  return std::vector<uint8_t>(f.Data(), f.Data() + f.GetLength());
}

}  // namespace verdal::test_support
