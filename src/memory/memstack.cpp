#include "memory/memstack.h"

namespace verdal::memory {

memstack::memstack(uint32_t segmentBytes, uint32_t keepLimitBytes) {
  const uint32_t segmentSiz = MEM_ALLIGN(segmentBytes);
  MEM_ASSERT_TEXT(segmentBytes <= UINT32_MAX - 3 && segmentSiz > MEM_ALLIGN(kHeaderBytes),
                  "segmentSiz > MEM_ALLIGN(sizeof(Segment))");
  segmentSize = segmentSiz - kHeaderBytes;
  keepLimit = MEM_ALLIGN(keepLimitBytes);
}

void* memstack::AllocSlow(uint32_t size) {
  if (size > segmentSize || (keepLimit != 0 && remaining > keepLimit)) {
    // A block of its own; the current segment stays open for the next small requests.
    return memman::Alloc(size);
  }
  auto* segment = static_cast<unsigned char*>(memman::Alloc(segmentSize));
  if (segment == nullptr) {
    remaining = 0;
    return nullptr;
  }
  cursor = segment + size;
  remaining = segmentSize - size;
  return segment;
}

void memstack::FreeAll() {
  memman::FreeAll();
  cursor = nullptr;
  remaining = 0;
}

}  // namespace verdal::memory
