#include "model/node_blocks.h"

#include <new>

namespace verdal::model {

static_assert(alignof(TDBNode) <= memory::PageArena::kAlignment);

TDBNode& NodeBlocks::emplace_back(memory::PageArena* arena) {
  const bool pooled = arena != nullptr;
  if (blocks_.empty() || blocks_.back().used == blocks_.back().capacity || blocks_.back().pooled != pooled) {
    const uint32_t capacity = pooled ? kArenaBlock : kHeapBlock;
    const size_t bytes = size_t{capacity} * sizeof(TDBNode);
    // Room first, so that the block below cannot be lost.
    if (blocks_.size() == blocks_.capacity()) blocks_.reserve(blocks_.size() * 2 + 8);
    void* memory = pooled ? arena->Allocate(bytes) : ::operator new(bytes);
    blocks_.push_back(Block{static_cast<TDBNode*>(memory), 0, capacity, pooled});
  }
  Block& block = blocks_.back();
  TDBNode* node = new (block.nodes + block.used) TDBNode();
  ++block.used;
  ++count_;
  return *node;
}

void NodeBlocks::clear() {
  for (Block& block : blocks_) {
    for (uint32_t i = 0; i < block.used; ++i) block.nodes[i].~TDBNode();
    if (block.pooled)
      memory::PageArena::Abandon(block.nodes, size_t{block.capacity} * sizeof(TDBNode));
    else
      ::operator delete(block.nodes);
  }
  blocks_.clear();
  count_ = 0;
}

}  // namespace verdal::model
