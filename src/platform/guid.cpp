#include "platform/guid.h"

#include <sys/random.h>

#include <cstdio>
#include <cstring>
#include <random>

namespace verdal::platform {

Guid NewGuid() {
  uint8_t bytes[16];
  size_t got = 0;
  while (got < sizeof bytes) {
    ssize_t n = getrandom(bytes + got, sizeof bytes - got, 0);
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  if (got < sizeof bytes) {  // no kernel entropy call: fall back to the library's device
    std::random_device rd;
    for (auto& b : bytes) b = static_cast<uint8_t>(rd());
  }
  bytes[6] = static_cast<uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4
  bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80);  // RFC 4122 variant
  Guid g{};
  std::memcpy(&g.data1, bytes, 4);
  std::memcpy(&g.data2, bytes + 4, 2);
  std::memcpy(&g.data3, bytes + 6, 2);
  g.data3 = static_cast<uint16_t>((g.data3 & 0x0FFF) | 0x4000);
  std::memcpy(g.data4, bytes + 8, 8);
  return g;
}

std::string GuidText(const Guid& g) {
  static const uint8_t zero[sizeof(Guid)] = {};
  if (std::memcmp(&g, zero, sizeof g) == 0) return std::string();
  char text[40];
  std::snprintf(text, sizeof text, "%08lX-%04X-%04x-%02X%02X-%02X%02X%02X%02X%02X%02X",
                static_cast<unsigned long>(g.data1), g.data2, g.data3, g.data4[0], g.data4[1],
                g.data4[2], g.data4[3], g.data4[4], g.data4[5], g.data4[6], g.data4[7]);
  return text;
}

std::string NewGuidText() { return GuidText(NewGuid()); }

}  // namespace verdal::platform
