#pragma once
// Every node ever made in one view, in chunks that never move: nodes keep their addresses until
// the pool is cleared, and a large tree costs a few dozen allocations rather than one per handful
// of nodes. Chunks double from a small first one, so a view of a few nodes stays small.
#include <cstddef>
#include <memory>
#include <new>
#include <vector>

#include "model/node.h"

namespace verdal::model {

class NodePool {
 public:
  NodePool() = default;
  NodePool(const NodePool&) = delete;
  NodePool& operator=(const NodePool&) = delete;
  ~NodePool() { clear(); }

  // A new node in its default state.
  TDBNode& emplace_back() {
    if (chunks_.empty() || usedInLast_ == ChunkSize(chunks_.size() - 1)) {
      // Left uninitialised: each node is built on taking.
      chunks_.emplace_back(new Slot[ChunkSize(chunks_.size())]);
      usedInLast_ = 0;
    }
    ++size_;
    return *new (chunks_.back()[usedInLast_++].bytes) TDBNode();
  }

  size_t size() const { return size_; }

  void clear() {
    ForEach([](TDBNode& n) { n.~TDBNode(); });
    chunks_.clear();
    usedInLast_ = 0;
    size_ = 0;
  }

  // Visits the nodes in the order they were made.
  template <class Visit>
  void ForEach(Visit&& visit) const {
    for (size_t c = 0; c < chunks_.size(); ++c) {
      const size_t used = c + 1 < chunks_.size() ? ChunkSize(c) : usedInLast_;
      for (size_t i = 0; i < used; ++i) visit(*std::launder(reinterpret_cast<TDBNode*>(chunks_[c][i].bytes)));
    }
  }

 private:
  struct Slot {
    alignas(TDBNode) std::byte bytes[sizeof(TDBNode)];
  };
  static size_t ChunkSize(size_t index) { return size_t{16} << (index < 8 ? index : 8); }

  std::vector<std::unique_ptr<Slot[]>> chunks_;
  size_t usedInLast_ = 0;
  size_t size_ = 0;
};

}  // namespace verdal::model
