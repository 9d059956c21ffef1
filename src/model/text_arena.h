#pragma once
// Memory for many small blocks that all die together: the values of the records a load reads.
// Blocks are handed out one after the other from large chunks and are never freed one by one;
// Clear gives everything back at once.
#include <cstddef>
#include <memory>
#include <vector>

namespace verdal::model {

class TextArena {
 public:
  TextArena() = default;
  TextArena(const TextArena&) = delete;
  TextArena& operator=(const TextArena&) = delete;

  // Uninitialised bytes, aligned for 32-bit words. Throws std::bad_alloc when memory runs out.
  void* Allocate(size_t bytes);
  void Clear();
  // Bytes in chunks, used or not.
  size_t Reserved() const { return reserved_; }

 private:
  static constexpr size_t kChunk = size_t{1} << 20;

  std::vector<std::unique_ptr<std::byte[]>> chunks_;
  size_t used_ = 0;
  size_t size_ = 0;
  size_t reserved_ = 0;
};

}  // namespace verdal::model
