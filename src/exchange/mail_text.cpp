#include "exchange/mail_text.h"

#include <cstdint>
#include <cstdio>

namespace verdal::exchange {
namespace {

// 75 characters an encoded word: "=?UTF-8?B?" and "?=" around 60 base64 characters, 45 bytes.
constexpr size_t kWordBytes = 45;

bool IsPlainHeaderText(std::string_view text) {
  for (unsigned char c : text)
    if (c < 0x20 || c > 0x7E) return false;
  return true;
}

// The length of the UTF-8 character that begins with this byte; 1 for a byte that begins none.
size_t CharacterLength(unsigned char lead) {
  if (lead >= 0xF0) return 4;
  if (lead >= 0xE0) return 3;
  if (lead >= 0xC0) return 2;
  return 1;
}

}  // namespace

std::string Base64(std::string_view bytes) {
  static const char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t n = bytes.size() - i < 3 ? bytes.size() - i : 3;
    uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k)
      group = group << 8 | (k < n ? static_cast<unsigned char>(bytes[i + k]) : 0u);
    for (size_t k = 0; k < 4; ++k)
      out += k <= n ? kDigits[(group >> (18 - 6 * k)) & 0x3F] : '=';
  }
  return out;
}

std::string HeaderText(std::string_view utf8, const char* between) {
  if (IsPlainHeaderText(utf8)) return std::string(utf8);
  std::string out;
  while (!utf8.empty()) {
    size_t take = 0;
    while (take < utf8.size()) {
      const size_t next = take + CharacterLength(static_cast<unsigned char>(utf8[take]));
      if (next > kWordBytes && take > 0) break;
      take = next < utf8.size() ? next : utf8.size();
    }
    if (!out.empty()) out += between;
    out += "=?UTF-8?B?" + Base64(utf8.substr(0, take)) + "?=";
    utf8.remove_prefix(take);
  }
  return out;
}

std::string MailDate(std::time_t when) {
  static const char* const kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  std::tm local{};
  localtime_r(&when, &local);
  const long offset = local.tm_gmtoff / 60;
  const long minutes = offset < 0 ? -offset : offset;
  char text[64];
  std::snprintf(text, sizeof text, "%s, %02d %s %d %02d:%02d:%02d %c%02ld%02ld", kDays[local.tm_wday],
                local.tm_mday, kMonths[local.tm_mon], local.tm_year + 1900, local.tm_hour, local.tm_min,
                local.tm_sec, offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
  return text;
}

std::string WithCrLf(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 32);
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\r' || c == '\n') {
      out += "\r\n";
      if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    } else {
      out += c;
    }
  }
  return out;
}

}  // namespace verdal::exchange
