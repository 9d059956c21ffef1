#include "query/qx_char_upper.h"

#include <array>

namespace verdal::query {

namespace {

constexpr std::array<unsigned char, 256> MakeTable() {
  std::array<unsigned char, 256> t{};
  for (int c = 0; c < 256; ++c) t[c] = static_cast<unsigned char>(c);
  for (int c = 'a'; c <= 'z'; ++c) t[c] = static_cast<unsigned char>(c - 0x20);
  for (int c = 0xE0; c <= 0xFE; ++c) {
    if (c != 0xF7) t[c] = static_cast<unsigned char>(c - 0x20);  // 0xF7 is the division sign
  }
  t[0x9A] = 0x8A;  // s caron
  t[0x9C] = 0x8C;  // oe
  t[0x9E] = 0x8E;  // z caron
  t[0xFF] = 0x9F;  // y diaeresis
  return t;
}

constexpr std::array<unsigned char, 256> kUpper = MakeTable();

}  // namespace

void QX_UpcaseInPlace(char* text) {
  for (auto* p = reinterpret_cast<unsigned char*>(text); *p != 0; ++p) *p = kUpper[*p];
}

}  // namespace verdal::query
