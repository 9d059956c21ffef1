#pragma once
// A node of one view's tree. Nodes are a derived index over the stored places: they are rebuilt at
// every load and never stored. Children vectors may hold null slots between a bulk load and the
// compaction that ends it; the sibling links always skip them.
#include <cstdint>
#include <vector>

namespace verdal::model {

struct TDBNodeManagerItem;
struct TDBCategoryData;
struct TDBNode;

// The children of a node. It reads like a pointer to a vector (null for a record node) but holds
// the vector inline: loading a large tree touches one cache line less per insert. A list is
// present while its vector holds storage, which Create reserves and only reset gives back, so the
// node needs no flag of its own for it: the test reads the vector's first word.
class ChildList {
 public:
  explicit operator bool() const { return list_.data() != nullptr; }
  std::vector<TDBNode*>* get() { return *this ? &list_ : nullptr; }
  const std::vector<TDBNode*>* get() const { return *this ? &list_ : nullptr; }
  std::vector<TDBNode*>* operator->() { return &list_; }
  const std::vector<TDBNode*>* operator->() const { return &list_; }
  std::vector<TDBNode*>& operator*() { return list_; }
  const std::vector<TDBNode*>& operator*() const { return list_; }
  void Create() { list_.reserve(6); }
  void reset() { std::vector<TDBNode*>().swap(list_); }

 private:
  std::vector<TDBNode*> list_;
};

struct TDBNode {
  // What a walk over many nodes reads comes first and together, so that it mostly lies in one
  // cache line: place, cursor, the flags and whether there are children.
  // The place this node stands for, so that walks need no lookup by cursor. Cleared when the
  // place dies (DestroyPlace), together with setting the remove flag.
  TDBCategoryData* place = nullptr;
  int32_t cursor = -1;
  bool isCategory = false;
  bool expanded = false;
  uint8_t removeFlag = 0;
  ChildList children;  // null for a record node
  TDBNode* parent = nullptr;
  TDBNode* next = nullptr;
  TDBNode* previous = nullptr;
  TDBNodeManagerItem* owner = nullptr;
  int32_t categoryId = -2;
  int32_t depth = -1;
  int32_t recordNumber = -1;
  int32_t categoryNumber = -1;
  int32_t rowNumber = -1;

  bool HasChildren() const { return FirstChild() != nullptr; }
  TDBNode* FirstChild() const;
  TDBNode* LastChild() const;
  // The index of a child in the children vector, -1 if it is not there.
  int32_t IndexOf(const TDBNode* child) const;
};

// Puts child under parent at position (-1 appends; a position past the end is padded with null
// slots; an occupied slot shifts later entries up). Returns the index, or -1 if parent is child,
// child is null, or parent is a record. With live set, depths below the child are recomputed and
// the view notes that its numbers need renewing. The caller links the siblings afterwards
// (LinkSiblings).
int32_t AddChild(TDBNode* parent, TDBNode* child, int32_t position, bool live);

// Points the child at the nearest non-null slots on either side, and them at it.
void LinkSiblings(TDBNode* parent, int32_t index);

// Takes a node out of its parent's children, closing the gap in the sibling links. Returns false
// if it had no parent.
bool Unlink(TDBNode* node);

// Depth of every node below node, from node's own depth.
void SetDepthsBelow(TDBNode* node);

TDBNode* NextNode(TDBNode* node, bool descend, bool wrap);
TDBNode* PreviousNode(TDBNode* node, bool descend, bool wrap);
TDBNode* DeepestLast(TDBNode* node);

}  // namespace verdal::model
