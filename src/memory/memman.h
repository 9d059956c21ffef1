#pragma once
// Segment manager of the query arenas: a singly linked list of zero-filled heap blocks that are
// only ever released all at once.
#include <cstdint>

// Rounds a byte count up to the arena's granularity of four bytes.
#define MEM_ALLIGN(n) ((static_cast<uint32_t>(n) + 3u) & ~3u)

// Programming errors of the arenas stop the process, in release builds too: an arena that has
// been set up wrongly must never hand out memory.
#define MEM_ASSERT_TEXT(cond, text) \
  ((cond) ? static_cast<void>(0) : ::verdal::memory::ArenaAssertFailed(text, __FILE__, __LINE__))
#define MEM_ASSERT(cond) MEM_ASSERT_TEXT(cond, #cond)

namespace verdal::memory {

[[noreturn]] void ArenaAssertFailed(const char* condition, const char* file, int line);

class memman {
 public:
  // A segment header is counted as two 32-bit words (link and size), which is what the usage
  // figures report. On a 64-bit build the link needs more room; the extra bytes are not counted.
  static constexpr uint32_t kHeaderBytes = 8;

  memman() = default;
  ~memman();
  memman(const memman&) = delete;
  memman& operator=(const memman&) = delete;

  // A zero-filled block of size bytes, or null when the heap refuses. size must be above 0.
  void* Alloc(uint32_t size);
  void FreeAll();
  // Writes the segment list to standard output, for debugging.
  void Dump() const;

  uint32_t UsedMem() const { return usedMem; }
  uint32_t SegmentCount() const;

 protected:
  struct Segment {
    Segment* next;
    uint32_t size;  // counted size: the caller's bytes plus kHeaderBytes
  };
  // Physical header, rounded so that the caller's memory is aligned for any object.
  static constexpr uint32_t kPhysicalHeader = (sizeof(Segment) + 15u) & ~15u;

  Segment* head = nullptr;
  uint32_t usedMem = 0;
};

}  // namespace verdal::memory
