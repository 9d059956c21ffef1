#include "memory/page_arena.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <new>
#include <system_error>

namespace verdal::memory {

namespace {

size_t PageSize() {
  static const size_t size = [] {
    long s = sysconf(_SC_PAGESIZE);
    return s > 0 ? static_cast<size_t>(s) : size_t{4096};
  }();
  return size;
}

size_t RoundToPages(size_t bytes) {
  const size_t page = PageSize();
  if (bytes > SIZE_MAX - page) throw std::bad_alloc();
  return (bytes + page - 1) / page * page;
}

// Has the kernel map every page of the range for writing without changing what it holds. Kernels
// before 5.14 lack the call; there a write of zero to each page does the same to memory that
// nobody has used yet (and which the sanitizer holds poisoned, so the writes go unchecked). Any
// other refusal (no memory) leaves the faults to the first use.
__attribute__((no_sanitize("address"))) void Populate(char* base, size_t size) {
#ifdef MADV_POPULATE_WRITE
  if (madvise(base, size, MADV_POPULATE_WRITE) == 0 || errno != EINVAL) return;
#endif
  for (size_t at = 0; at < size; at += PageSize()) static_cast<volatile char*>(base)[at] = 0;
}

}  // namespace

PageArena::PageArena(size_t expectedBytes, size_t stepBytes, bool mapAhead)
    : expectedBytes_(RoundToPages(expectedBytes == 0 ? 1 : expectedBytes)),
      stepBytes_(RoundToPages(stepBytes == 0 ? 1 : stepBytes)),
      mapAhead_(mapAhead) {}

PageArena::~PageArena() {
  JoinHelper();
  for (const Mapping& m : mappings_) {
    ASAN_UNPOISON_MEMORY_REGION(m.base, m.size);  // the addresses may be mapped again for others
    munmap(m.base, m.size);
  }
}

PageArena::Mapping PageArena::Map(size_t bytes) {
  const size_t size = RoundToPages(bytes);
  void* base = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (base == MAP_FAILED) throw std::bad_alloc();
  ASAN_POISON_MEMORY_REGION(base, size);
  return Mapping{static_cast<char*>(base), size};
}

void PageArena::Record(Mapping m) {
  try {
    if (mappings_.size() == mappings_.capacity()) mappings_.reserve(mappings_.size() * 2 + 8);
  } catch (...) {
    munmap(m.base, m.size);
    throw;
  }
  mappings_.push_back(m);
}

void PageArena::JoinHelper() {
  if (helper_.joinable()) helper_.join();
}

void PageArena::MapNextStepAhead() {
  if (populated_ >= limit_) return;
  const size_t size = std::min(stepBytes_, static_cast<size_t>(limit_ - populated_));
  try {
    helper_ = std::thread(Populate, populated_, size);
  } catch (const std::system_error&) {
    // No thread to be had: the faults come with use, as without mapping ahead.
    mapAhead_ = false;
    end_ = limit_;
    return;
  }
  populated_ += size;
}

void* PageArena::AllocateSlow(size_t bytes) {
  if (bytes == 0) return Allocate(1);  // a piece of its own all the same
  const size_t taken = Taken(bytes);
  if (taken < bytes) throw std::bad_alloc();
  if (taken > stepBytes_ / 4) {
    Record(Map(taken));
    ASAN_UNPOISON_MEMORY_REGION(mappings_.back().base, bytes);
    return mappings_.back().base;
  }
  if (cursor_ != nullptr && taken <= static_cast<size_t>(limit_ - cursor_)) {
    // The end of a step: the helper has mapped the next one, or is about to have.
    JoinHelper();
    if (mapAhead_) {
      end_ = populated_;
      MapNextStepAhead();
    } else {
      end_ = limit_;
    }
    return Allocate(bytes);
  }
  JoinHelper();
  Mapping m;
  try {
    m = Map(expectedBytes_);
  } catch (const std::bad_alloc&) {
    m = Map(stepBytes_);  // the reservation was too much for the system: go on in steps
  }
  Record(m);
  cursor_ = m.base;
  limit_ = m.base + m.size;
  if (mapAhead_) {
    // The loader faults in the first step itself while the helper maps the second.
    end_ = populated_ = m.base + std::min(stepBytes_, m.size);
    MapNextStepAhead();
  } else {
    end_ = limit_;
  }
  return Allocate(bytes);
}

void PageArena::StopMappingAhead() {
  mapAhead_ = false;
  JoinHelper();
  if (cursor_ == nullptr) return;
  // Pages mapped ahead but not reached go back; they come again, cleared, if used later.
  const size_t intoPage = reinterpret_cast<uintptr_t>(cursor_) % PageSize();
  char* firstFree = intoPage == 0 ? cursor_ : cursor_ + (PageSize() - intoPage);
  if (firstFree < populated_) madvise(firstFree, static_cast<size_t>(populated_ - firstFree), MADV_DONTNEED);
  populated_ = cursor_;
  end_ = limit_;
}

size_t PageArena::ReservedBytes() const {
  size_t bytes = 0;
  for (const Mapping& m : mappings_) bytes += m.size;
  return bytes;
}

}  // namespace verdal::memory
