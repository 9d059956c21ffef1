#include "model/view.h"

#include "model/records.h"

#include <utility>
#include <vector>

namespace verdal::model {

TDBNodeManagerItem::TDBNodeManagerItem(std::string viewName, int32_t viewMode, bool rootExpanded)
    : name(std::move(viewName)), mode(viewMode) {
  root.isCategory = true;
  root.categoryId = -2;
  root.cursor = -2;
  root.depth = -1;
  root.owner = this;
  root.expanded = rootExpanded;
}

TDBNode* TDBNodeManagerItem::MakeNode(int32_t cursor, int32_t categoryId, bool isCategory,
                                      bool expanded, memory::PageArena* arena) {
  TDBNode& n = nodes.emplace_back(arena);
  n.owner = this;
  n.cursor = cursor;
  n.categoryId = categoryId;
  n.isCategory = isCategory;
  n.expanded = expanded;
  if (isCategory) categoryTree.emplace(categoryId, &n);
  return &n;
}

TDBNode* TDBNodeManagerItem::FindCategory(int32_t categoryId) const {
  auto it = categoryTree.find(categoryId);
  return it == categoryTree.end() ? nullptr : it->second;
}

bool TDBNodeManagerItem::TakePadding(size_t slots) {
  if (slots > padBudget) return false;
  padBudget -= slots;
  return true;
}

void TDBNodeManagerItem::Compact(bool setPositions) {
  root.depth = -1;
  std::vector<TDBNode*> pending{&root};
  while (!pending.empty()) {
    TDBNode* n = pending.back();
    pending.pop_back();
    if (!n->children) continue;
    std::vector<TDBNode*>& kids = *n->children;
    size_t kept = 0;
    for (TDBNode* c : kids)
      if (c != nullptr) kids[kept++] = c;
    kids.resize(kept);
    for (size_t i = 0; i < kids.size(); ++i) {
      TDBNode* c = kids[i];
      c->previous = i > 0 ? kids[i - 1] : nullptr;
      c->next = i + 1 < kids.size() ? kids[i + 1] : nullptr;
      c->depth = n->depth + 1;
      if (setPositions && c->place != nullptr) c->place->position = static_cast<int32_t>(i);
      if (c->children) pending.push_back(c);
    }
  }
  if (padBudget < kBasePadding) padBudget = kBasePadding;
}

// Depth-first numbering with an explicit stack: a long chain of nested categories must not
// exhaust the call stack.
void TDBNodeManagerItem::NumberChildrenFrom(TDBNode* parent, size_t firstIndex, Counters& c) {
  struct Frame {
    TDBNode* node;
    size_t index;
  };
  std::vector<Frame> stack{{parent, firstIndex}};
  while (!stack.empty()) {
    Frame& f = stack.back();
    std::vector<TDBNode*>* kids = f.node->children.get();
    if (kids == nullptr || f.index >= kids->size()) {
      stack.pop_back();
      continue;
    }
    TDBNode* child = (*kids)[f.index];
    if (child == nullptr) {
      ++f.index;
      continue;
    }
    if (child->removeFlag != 0) {
      if (child->previous != nullptr) child->previous->next = child->next;
      if (child->next != nullptr) child->next->previous = child->previous;
      child->parent = child->previous = child->next = nullptr;
      kids->erase(kids->begin() + static_cast<std::ptrdiff_t>(f.index));
      continue;
    }
    ++f.index;
    if (child->isCategory)
      ++c.category;
    else
      ++c.record;
    ++c.row;
    child->recordNumber = c.record;
    child->categoryNumber = c.category;
    child->rowNumber = c.row;
    if (child->children && Enters(child)) stack.push_back({child, 0});
  }
}

void TDBNodeManagerItem::Number() {
  staleFrom_ = -1;
  Counters c;
  if (Enters(&root)) NumberChildrenFrom(&root, 0, c);
}

void TDBNodeManagerItem::NoteChange(const TDBNode* changed, int32_t indexInParent) {
  const TDBNode* top = changed;
  while (top != nullptr && top->parent != &root) top = top->parent;
  if (top == nullptr) return;  // not under this root: nothing visible changed
  int32_t topIndex = top == changed ? indexInParent : root.IndexOf(top);
  int32_t from = topIndex > 0 ? topIndex - 1 : 0;
  if (staleFrom_ < 0 || from < staleFrom_) staleFrom_ = from;
}

void TDBNodeManagerItem::EnsureNumbered() {
  if (staleFrom_ < 0) return;
  int32_t from = staleFrom_;
  const std::vector<TDBNode*>* kids = root.children.get();
  TDBNode* prev = kids != nullptr && static_cast<size_t>(from) < kids->size() ? (*kids)[static_cast<size_t>(from)] : nullptr;
  if (from == 0 || prev == nullptr || prev->rowNumber < 0 || prev->removeFlag != 0 || !Enters(&root))
    return Number();
  // The counters as they stood before that branch's own node was counted.
  Counters c;
  c.record = prev->recordNumber - (prev->isCategory ? 0 : 1);
  c.category = prev->categoryNumber - (prev->isCategory ? 1 : 0);
  c.row = prev->rowNumber - 1;
  staleFrom_ = -1;
  NumberChildrenFrom(&root, static_cast<size_t>(from), c);
}

void TDBNodeManagerItem::SetDepths() {
  root.depth = -1;
  SetDepthsBelow(&root);
}

void TDBNodeManagerItem::Renumber(bool setPositions) {
  Compact(setPositions);  // which also sets the depths
  Number();
}

void TDBNodeManagerItem::Clear() {
  root.children.reset();
  categoryTree.clear();
  nodes.clear();
  padBudget = kBasePadding;
  staleFrom_ = -1;
}

}  // namespace verdal::model
