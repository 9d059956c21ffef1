#include "model/text_arena.h"

namespace verdal::model {

void* TextArena::Allocate(size_t bytes) {
  bytes = (bytes + 3) & ~size_t{3};
  if (chunks_.empty() || size_ - used_ < bytes) {
    // A block larger than a chunk gets a chunk of its own; the rest of the current one is left.
    const size_t size = bytes > kChunk ? bytes : kChunk;
    chunks_.emplace_back(new std::byte[size]);
    size_ = size;
    used_ = 0;
    reserved_ += size;
  }
  void* block = chunks_.back().get() + used_;
  used_ += bytes;
  return block;
}

void TextArena::Clear() {
  chunks_.clear();
  used_ = size_ = reserved_ = 0;
}

}  // namespace verdal::model
