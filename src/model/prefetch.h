#pragma once
// Asking for memory ahead of use, for walks over objects that lie anywhere in memory.
#include <cstddef>
#include <cstdint>

namespace verdal::model {

// Asks for every cache line of the bytes, including a partial first and last one.
inline void PrefetchBytes(const void* start, size_t bytes) {
  const uintptr_t first = reinterpret_cast<uintptr_t>(start) & ~uintptr_t{63};
  const uintptr_t end = reinterpret_cast<uintptr_t>(start) + bytes;
  for (uintptr_t line = first; line < end; line += 64) __builtin_prefetch(reinterpret_cast<const void*>(line));
}

}  // namespace verdal::model
