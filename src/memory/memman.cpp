#include "memory/memman.h"

#include <cstdio>
#include <cstdlib>

namespace verdal::memory {

void ArenaAssertFailed(const char* condition, const char* file, int line) {
  std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", condition, file, line);
  std::fflush(stderr);
  std::abort();
}

memman::~memman() { FreeAll(); }

void* memman::Alloc(uint32_t size) {
  MEM_ASSERT(size > 0);
  if (size > UINT32_MAX - kPhysicalHeader) return nullptr;
  auto* block = static_cast<unsigned char*>(std::calloc(1, size_t{size} + kPhysicalHeader));
  if (block == nullptr) return nullptr;
  auto* segment = reinterpret_cast<Segment*>(block);
  segment->next = head;
  segment->size = size + kHeaderBytes;
  head = segment;
  usedMem += size + kHeaderBytes;
  return block + kPhysicalHeader;
}

void memman::FreeAll() {
  while (head != nullptr) {
    Segment* next = head->next;
    std::free(head);
    head = next;
  }
  usedMem = 0;
}

uint32_t memman::SegmentCount() const {
  uint32_t count = 0;
  for (const Segment* s = head; s != nullptr; s = s->next) ++count;
  return count;
}

void memman::Dump() const {
  std::printf("segmentlist:\n");
  uint32_t total = 0;
  uint32_t count = 0;
  for (const Segment* s = head; s != nullptr; s = s->next) {
    ++count;
    const auto* first = reinterpret_cast<const unsigned char*>(s);
    const unsigned char* last = first + (s->size - kHeaderBytes) + kPhysicalHeader - 1;
    std::printf("%u. [ %p - %p ], size %u\n", count, static_cast<const void*>(first),
                static_cast<const void*>(last), s->size);
    total += s->size;
  }
  MEM_ASSERT(total == usedMem);
  std::printf("- %u bytes in %u blocks\n", total, count);
}

}  // namespace verdal::memory
