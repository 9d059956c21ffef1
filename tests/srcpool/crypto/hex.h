#pragma once
// Hex text to bytes and back, for writing published test vectors as they are printed.

#include <cstdint>
#include <string>
#include <vector>

namespace verdal::testing {

inline std::vector<uint8_t> FromHex(const std::string& hex) {
  std::vector<uint8_t> bytes;
  for (size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes.push_back(static_cast<uint8_t>(std::stoul(hex.substr(i, 2), nullptr, 16)));
  return bytes;
}

inline std::string ToHex(const uint8_t* data, size_t count) {
  static const char kDigits[] = "0123456789abcdef";
  std::string text;
  for (size_t i = 0; i < count; ++i) {
    text += kDigits[data[i] >> 4];
    text += kDigits[data[i] & 15];
  }
  return text;
}

}  // namespace verdal::testing
