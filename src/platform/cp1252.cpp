#include "platform/cp1252.h"

#include <algorithm>
#include <array>
#include <cstdint>

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

namespace verdal::cp1252 {
namespace {

// Decodes one UTF-8 sequence at text[i]; -1 for a malformed one (which then takes one byte).
int32_t DecodeUtf8(std::string_view text, size_t& i) {
  const auto b0 = static_cast<unsigned char>(text[i]);
  if (b0 < 0x80) {
    ++i;
    return b0;
  }
  int length = b0 >= 0xF0 ? 4 : b0 >= 0xE0 ? 3 : b0 >= 0xC2 ? 2 : 0;
  if (length == 0 || b0 > 0xF4 || i + length > text.size()) {
    ++i;
    return -1;
  }
  int32_t code = b0 & (0x7F >> length);
  for (int k = 1; k < length; ++k) {
    const auto b = static_cast<unsigned char>(text[i + k]);
    if ((b & 0xC0) != 0x80) {
      ++i;
      return -1;
    }
    code = (code << 6) | (b & 0x3F);
  }
  // Overlong forms, surrogates and code points past Unicode are not UTF-8.
  static constexpr int32_t kMinimum[5] = {0, 0, 0x80, 0x800, 0x10000};
  if (code < kMinimum[length] || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) {
    ++i;
    return -1;
  }
  i += static_cast<size_t>(length);
  return code;
}

int FromCodePoint(int32_t code) {
  if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) return code;
  for (int k = 0; k < 32; ++k)
    if (kHighControls[k] == code) return 0x80 + k;
  return -1;
}

void AppendUtf8(int32_t code, std::string& out) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

}  // namespace

bool FromUtf8(std::string_view utf8, std::string& out) {
  // Plain ASCII, most text, is the same in both.
  if (std::none_of(utf8.begin(), utf8.end(), [](char c) { return (c & 0x80) != 0; })) {
    out.assign(utf8);
    return true;
  }
  out.clear();
  out.reserve(utf8.size());
  bool whole = true;
  for (size_t i = 0; i < utf8.size();) {
    const int32_t code = DecodeUtf8(utf8, i);
    const int byte = code < 0 ? -1 : FromCodePoint(code);
    if (byte < 0) whole = false;
    out += static_cast<char>(byte < 0 ? '?' : byte);
  }
  return whole;
}

void ToUtf8(std::string_view text, std::string& out) {
  if (std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; })) {
    out.assign(text);
    return;
  }
  out.clear();
  out.reserve(text.size() + text.size() / 8);
  for (char c : text) AppendUtf8(ToUtf16(c), out);
}

bool IsUtf8(std::string_view bytes) {
  for (size_t i = 0; i < bytes.size();)
    if (DecodeUtf8(bytes, i) < 0) return false;
  return true;
}

}  // namespace verdal::cp1252
