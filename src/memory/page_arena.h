#pragma once
// PageArena: memory for the many small objects a load makes, cut in order from large mappings of
// the system and given back only all at once, when the arena dies.
//
// Memory a process touches for the first time costs the kernel a fault and a cleared page per
// 4 KiB; for a large load that is about as much time as parsing the file. With mapAhead, a helper
// thread has the kernel map the next step of pages while the loader fills the current one, so on
// a machine with a second core the loader seldom waits for a fault.
//
// The arena reserves address space for the whole expected load at once: objects made one after
// the other then lie in one mapping, which walks over them in another order than they were made
// reach faster than a series of separate mappings. Reserved pages cost nothing until used.
//
// An object cut from the arena must never be freed alone; its owner marks it as pooled and only
// runs its destructor. Its memory stays taken until the arena dies, which bounds what edits after
// a load can leave unused by the size of the load itself.
#include <cstddef>
#include <thread>
#include <vector>

#if defined(__has_include)
#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#endif
#endif
#ifndef ASAN_POISON_MEMORY_REGION
#define ASAN_POISON_MEMORY_REGION(addr, size) ((void)(addr), (void)(size))
#define ASAN_UNPOISON_MEMORY_REGION(addr, size) ((void)(addr), (void)(size))
#endif

namespace verdal::memory {

class PageArena {
 public:
  static constexpr size_t kAlignment = 16;
#if defined(__SANITIZE_ADDRESS__) || (defined(__has_feature) && __has_feature(address_sanitizer))
  // Under AddressSanitizer, pieces are apart by at least this much poisoned memory, and
  // everything not handed out is poisoned: overruns within the arena are reported as on the heap.
  static constexpr size_t kRedZone = 16;
#else
  static constexpr size_t kRedZone = 0;
#endif

  // expectedBytes: what the objects are thought to need, reserved as one mapping; more mappings
  // follow if they need more. stepBytes: the pages mapped ahead at a time; requests above a
  // quarter of it get a mapping of their own. Both are rounded up to whole pages.
  PageArena(size_t expectedBytes, size_t stepBytes, bool mapAhead);
  ~PageArena();
  PageArena(const PageArena&) = delete;
  PageArena& operator=(const PageArena&) = delete;

  // Memory for `bytes`, aligned to kAlignment. Throws std::bad_alloc when the system refuses.
  void* Allocate(size_t bytes) {
    const size_t taken = Taken(bytes);
    if (taken >= bytes && taken != 0 && taken <= static_cast<size_t>(end_ - cursor_)) {
      void* p = cursor_;
      cursor_ += taken;
      ASAN_UNPOISON_MEMORY_REGION(p, bytes);
      return p;
    }
    return AllocateSlow(bytes);
  }

  // A piece's object is gone. Under AddressSanitizer, later use of it is reported; otherwise
  // this does nothing, as the memory stays taken anyway.
  static void Abandon(void* p, size_t bytes) { ASAN_POISON_MEMORY_REGION(p, bytes); }

  // Ends mapping ahead: waits for the helper and gives back the pages it mapped that are not
  // used yet. Allocation goes on as without mapAhead.
  void StopMappingAhead();

  // The bytes of address space reserved, for tests and figures.
  size_t ReservedBytes() const;

 private:
  struct Mapping {
    char* base = nullptr;
    size_t size = 0;
  };

  // What a piece of `bytes` takes from a mapping: with its red zone, rounded to the alignment.
  // Below `bytes` only where that overflows.
  static size_t Taken(size_t bytes) { return (bytes + kRedZone + (kAlignment - 1)) & ~(kAlignment - 1); }
  void* AllocateSlow(size_t bytes);
  static Mapping Map(size_t bytes);
  void Record(Mapping m);
  // Starts the helper on the step from `populated_` on, within the current mapping.
  void MapNextStepAhead();
  void JoinHelper();

  std::vector<Mapping> mappings_;
  char* cursor_ = nullptr;
  char* end_ = nullptr;    // where the fast path stops: the step being mapped ahead, or the limit
  char* limit_ = nullptr;  // the end of the current mapping
  char* populated_ = nullptr;  // pages up to here are mapped, or being mapped by the helper
  size_t expectedBytes_;
  size_t stepBytes_;
  bool mapAhead_;
  std::thread helper_;
};

}  // namespace verdal::memory
