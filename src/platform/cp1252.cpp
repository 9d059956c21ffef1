#include "platform/cp1252.h"

#include <array>

namespace verdal::cp1252 {
namespace {

// 0x80 to 0x9F are the only bytes whose code point differs from their value.
constexpr char16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr std::array<unsigned char, 256> MakeUpperTable() {
  std::array<unsigned char, 256> t{};
  for (int i = 0; i < 256; ++i) t[i] = static_cast<unsigned char>(i);
  for (int c = 'a'; c <= 'z'; ++c) t[c] = static_cast<unsigned char>(c - 0x20);
  // à..þ to À..Þ, except the division sign; ß (0xDF) is below the range and stays.
  for (int c = 0xE0; c <= 0xFE; ++c)
    if (c != 0xF7) t[c] = static_cast<unsigned char>(c - 0x20);
  t[0x9A] = 0x8A;  // š
  t[0x9C] = 0x8C;  // œ
  t[0x9E] = 0x8E;  // ž
  t[0xFF] = 0x9F;  // ÿ
  return t;
}

constexpr std::array<unsigned char, 256> kUpper = MakeUpperTable();

}  // namespace

char ToUpper(char c) { return static_cast<char>(kUpper[static_cast<unsigned char>(c)]); }

void ToUpper(char* text, size_t length) {
  for (size_t i = 0; i < length; ++i) text[i] = ToUpper(text[i]);
}

char16_t ToUtf16(char c) {
  const auto b = static_cast<unsigned char>(c);
  return (b >= 0x80 && b <= 0x9F) ? kHighControls[b - 0x80] : static_cast<char16_t>(b);
}

}  // namespace verdal::cp1252
