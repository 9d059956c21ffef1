#pragma once
// One view over a database's places: a tree of nodes with its own expanded flags and numbering.
// View 0 is the main tree; further views are looked up by name.
#include <cstdint>
#include <string>
#include <unordered_map>

#include "model/node.h"
#include "model/node_blocks.h"

namespace verdal::model {

enum ViewMode : int32_t { kModeCategories = 1, kModeRecords = 2, kModeBoth = 3 };

struct TDBNodeManagerItem {
  TDBNodeManagerItem(std::string viewName, int32_t viewMode, bool rootExpanded);
  TDBNodeManagerItem(const TDBNodeManagerItem&) = delete;
  TDBNodeManagerItem& operator=(const TDBNodeManagerItem&) = delete;

  int32_t id = -2;
  std::string name;
  int32_t mode = kModeBoth;
  // Finds the node of a category of this view in one step; holds category nodes only.
  std::unordered_map<int32_t, TDBNode*> categoryTree;
  TDBNode root;
  // Every node ever made in this view.
  NodeBlocks nodes;

  // A load passes its arena for the nodes.
  TDBNode* MakeNode(int32_t cursor, int32_t categoryId, bool isCategory, bool expanded,
                    memory::PageArena* arena = nullptr);
  TDBNode* FindCategory(int32_t categoryId) const;

  // Null slots that loading may still pad children vectors with. A stored position past the end
  // of its siblings pads with null slots until compaction; a damaged file could ask for billions,
  // so the whole view may pad only about as many slots as it is given places.
  bool TakePadding(size_t slots);
  void AllowPadding(size_t places) { padBudget = places + kBasePadding; }

  // Removes null slots, relinks siblings and sets depths; with setPositions, each child's index
  // becomes the position of its place.
  void Compact(bool setPositions);
  // Numbers the visible nodes depth-first from counters at -1, dropping removed nodes.
  void Number();
  // A node was inserted or taken out under a numbered tree. Numbers are renewed lazily: from the
  // top-level branch before the earliest changed one, carrying that branch's own numbers, the
  // next time they are needed. Adding many records costs no walk per record.
  void NoteChange(const TDBNode* changed, int32_t indexInParent);
  // Renews the numbers after changes; they then equal those of Number().
  void EnsureNumbered();
  void SetDepths();
  // Compaction (with depths) and numbering.
  void Renumber(bool setPositions);
  // Drops the whole tree; the view itself stays.
  void Clear();

 private:
  struct Counters {
    int32_t record = -1, category = -1, row = -1;
  };
  void NumberChildrenFrom(TDBNode* parent, size_t firstIndex, Counters& counters);
  bool Enters(const TDBNode* node) const { return node->expanded || mode == kModeRecords; }

  static constexpr size_t kBasePadding = 1024;
  size_t padBudget = kBasePadding;
  int32_t staleFrom_ = -1;  // first top-level branch to renumber from; -1 when numbers are current
};

}  // namespace verdal::model
