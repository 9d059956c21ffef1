#include "platform/guid.h"

#include <sys/random.h>

#include <cstring>
#include <random>

namespace verdal::platform {

namespace {

// Random bytes are fetched from the kernel a page at a time: a large import makes one GUID per
// record, and one system call each would dominate it.
void RandomBytes(uint8_t* out, size_t count) {
  static uint8_t pool[4096];
  static size_t left = 0;
  while (count > 0) {
    if (left == 0) {
      size_t got = 0;
      while (got < sizeof pool) {
        ssize_t n = getrandom(pool + got, sizeof pool - got, 0);
        if (n <= 0) break;
        got += static_cast<size_t>(n);
      }
      if (got < sizeof pool) {  // no kernel entropy call: fall back to the library's device
        std::random_device rd;
        for (size_t i = got; i < sizeof pool; ++i) pool[i] = static_cast<uint8_t>(rd());
      }
      left = sizeof pool;
    }
    size_t take = count < left ? count : left;
    std::memcpy(out, pool + sizeof pool - left, take);
    std::memset(pool + sizeof pool - left, 0, take);  // used bytes do not stay behind
    left -= take;
    out += take;
    count -= take;
  }
}

void Hex(char*& out, uint32_t value, int digits, const char* alphabet) {
  for (int i = digits - 1; i >= 0; --i) *out++ = alphabet[(value >> (4 * i)) & 0xF];
}

}  // namespace

Guid NewGuid() {
  uint8_t bytes[16];
  RandomBytes(bytes, sizeof bytes);
  Guid g{};
  std::memcpy(&g.data1, bytes, 4);
  std::memcpy(&g.data2, bytes + 4, 2);
  std::memcpy(&g.data3, bytes + 6, 2);
  g.data3 = static_cast<uint16_t>((g.data3 & 0x0FFF) | 0x4000);  // version 4
  std::memcpy(g.data4, bytes + 8, 8);
  g.data4[0] = static_cast<uint8_t>((g.data4[0] & 0x3F) | 0x80);  // RFC 4122 variant
  return g;
}

// "%08lX-%04X-%04x-%02X%02X-%02X%02X%02X%02X%02X%02X": the third group is lower case.
std::string GuidText(const Guid& g) {
  static const uint8_t zero[sizeof(Guid)] = {};
  if (std::memcmp(&g, zero, sizeof g) == 0) return std::string();
  static const char upper[] = "0123456789ABCDEF";
  static const char lower[] = "0123456789abcdef";
  char text[36];
  char* out = text;
  Hex(out, g.data1, 8, upper);
  *out++ = '-';
  Hex(out, g.data2, 4, upper);
  *out++ = '-';
  Hex(out, g.data3, 4, lower);
  *out++ = '-';
  Hex(out, g.data4[0], 2, upper);
  Hex(out, g.data4[1], 2, upper);
  *out++ = '-';
  for (int i = 2; i < 8; ++i) Hex(out, g.data4[i], 2, upper);
  return std::string(text, sizeof text);
}

std::string NewGuidText() { return GuidText(NewGuid()); }

}  // namespace verdal::platform
