#pragma once
// NodeBlocks: every node a view has made, with stable addresses, destroyed only all at once.
// Nodes lie in small blocks taken as nodes come, so that a node made by a live insert lies near
// the place and record made with it; a load cuts larger blocks from its arena, which owns them.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/node.h"
#include "memory/page_arena.h"

namespace verdal::model {

class NodeBlocks {
 public:
  NodeBlocks() = default;
  ~NodeBlocks() { clear(); }
  NodeBlocks(const NodeBlocks&) = delete;
  NodeBlocks& operator=(const NodeBlocks&) = delete;

  // A new default node; with an arena, its block may come from there.
  TDBNode& emplace_back(memory::PageArena* arena = nullptr);
  void clear();
  size_t size() const { return count_; }

  // Visits the nodes in the order they were made.
  template <class Visit>
  void ForEach(Visit&& visit) const {
    for (const Block& block : blocks_)
      for (uint32_t i = 0; i < block.used; ++i) visit(block.nodes[i]);
  }

 private:
  static constexpr uint32_t kHeapBlock = 5;    // about 512 bytes
  static constexpr uint32_t kArenaBlock = 64;  // about 6 KiB

  struct Block {
    TDBNode* nodes;
    uint32_t used;
    uint32_t capacity;
    bool pooled;
  };
  std::vector<Block> blocks_;
  size_t count_ = 0;
};

}  // namespace verdal::model
