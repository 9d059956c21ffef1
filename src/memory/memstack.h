#pragma once
// Bump allocator over memman segments. Nothing is freed alone; the owner drops the whole arena.
#include <cstdint>

#include "memory/memman.h"

namespace verdal::memory {

class memstack : public memman {
 public:
  // segmentBytes: size of a regular segment including its header, at least 9.
  // keepLimit: 0, or the free tail of the current segment above which oversized requests get a
  // block of their own instead of abandoning that tail.
  explicit memstack(uint32_t segmentBytes, uint32_t keepLimit = 0);

  // Callers round size to a multiple of 4. Zero-filled memory, or null when the heap refuses.
  void* Alloc(uint32_t size) {
    if (remaining >= size) {
      void* p = cursor;
      cursor += size;
      remaining -= size;
      return p;
    }
    return AllocSlow(size);
  }
  void* AllocSlow(uint32_t size);
  // Frees every segment; the next allocation starts a new one.
  void FreeAll();

  uint32_t SegmentSize() const { return segmentSize; }
  uint32_t KeepLimit() const { return keepLimit; }
  uint32_t Remaining() const { return remaining; }
  const unsigned char* Cursor() const { return cursor; }

 protected:
  uint32_t segmentSize;
  uint32_t keepLimit;
  unsigned char* cursor = nullptr;
  uint32_t remaining = 0;
};

}  // namespace verdal::memory
