#pragma once
#include <cstdint>
#include <string>

namespace verdal::platform {

struct Guid {
  uint32_t data1;
  uint16_t data2;
  uint16_t data3;
  uint8_t data4[8];
};

// A random (version 4) GUID.
Guid NewGuid();

// The engine's text form of a GUID; the all-zero GUID gives the empty string.
std::string GuidText(const Guid& guid);

// GuidText(NewGuid()).
std::string NewGuidText();

}  // namespace verdal::platform
