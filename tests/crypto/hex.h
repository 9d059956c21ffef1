#pragma once
// Helpers of the crypto tests: hex text to bytes and back, for writing published test vectors as
// they are printed, and the text of the std::runtime_error that a call throws.

#include <cstdint>
#include <functional>
#include <stdexcept>
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

inline std::string ErrorText(const std::function<void()>& call) {
  try {
    call();
  } catch (const std::runtime_error& e) {
    return e.what();
  }
  return "no exception";
}

}  // namespace verdal::testing
