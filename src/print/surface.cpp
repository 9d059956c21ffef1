#include "print/surface.h"

namespace verdal::print {

int32_t Surface::TextWidth(std::string_view text) {
  const float* advances = Advances();
  float sum = 0;
  for (const char c : text) sum += advances[static_cast<uint8_t>(c)];
  return static_cast<int32_t>(sum + 0.5f);
}

}  // namespace verdal::print
