#pragma once
// Text into a fixed buffer of the host: cut to fit, always terminated.
#include <cstddef>
#include <cstring>
#include <string>

namespace verdal {

inline void CopyCut(char* target, size_t size, const std::string& text) {
  if (target == nullptr || size == 0) return;
  const size_t n = text.size() < size - 1 ? text.size() : size - 1;
  std::memcpy(target, text.data(), n);
  target[n] = '\0';
}

}  // namespace verdal
