#pragma once
// Text for the host: into a fixed buffer of its own, cut to fit and always terminated, or into
// buffers the engine keeps for it.
#include <array>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "verdal.h"

namespace verdal {

inline void CopyCut(char* target, size_t size, std::string_view text) {
  if (target == nullptr || size == 0) return;
  const size_t n = text.size() < size - 1 ? text.size() : size - 1;
  if (n > 0) std::memcpy(target, text.data(), n);
  target[n] = '\0';
}

// The buffers behind one function that hands out text. They are used in turn, so a text stays
// valid through the next VERDAL_TEXT_KEPT - 1 calls of the same function, whatever else is called
// meanwhile: several results can stand side by side in one printf.
class TextRing {
 public:
  const char* Keep(std::string_view text) {
    std::string& slot = slots_[next_];
    next_ = (next_ + 1) % slots_.size();
    slot.assign(text.data(), text.size());
    return slot.c_str();
  }

 private:
  std::array<std::string, VERDAL_TEXT_KEPT> slots_;
  size_t next_ = 0;
};

}  // namespace verdal
