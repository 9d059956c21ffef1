#include "model/node.h"

#include "model/view.h"

namespace verdal::model {

TDBNode* TDBNode::FirstChild() const {
  if (!children) return nullptr;
  for (TDBNode* c : *children)
    if (c != nullptr) return c;
  return nullptr;
}

TDBNode* TDBNode::LastChild() const {
  if (!children) return nullptr;
  for (auto it = children->rbegin(); it != children->rend(); ++it)
    if (*it != nullptr) return *it;
  return nullptr;
}

int32_t TDBNode::IndexOf(const TDBNode* child) const {
  if (!children || child == nullptr) return -1;
  for (size_t i = 0; i < children->size(); ++i)
    if ((*children)[i] == child) return static_cast<int32_t>(i);
  return -1;
}

int32_t AddChild(TDBNode* parent, TDBNode* child, int32_t position, bool live) {
  if (parent == nullptr || child == nullptr || parent == child) return -1;
  if (!parent->children) {
    if (!parent->isCategory) return -1;
    parent->children.Create();
  }
  child->parent = parent;
  child->depth = parent->depth + 1;
  if (live) SetDepthsBelow(child);

  std::vector<TDBNode*>& kids = *parent->children;
  // Padding beyond what the view allows (a damaged file) appends instead.
  if (position >= 0 && static_cast<size_t>(position) > kids.size() &&
      (parent->owner == nullptr ||
       !parent->owner->TakePadding(static_cast<size_t>(position) - kids.size())))
    position = -1;
  size_t index;
  if (position < 0) {
    kids.push_back(child);
    index = kids.size() - 1;
  } else {
    index = static_cast<size_t>(position);
    if (index >= kids.size()) kids.resize(index + 1, nullptr);
    if (kids[index] == nullptr)
      kids[index] = child;
    else
      kids.insert(kids.begin() + static_cast<std::ptrdiff_t>(index), child);
  }
  if (live && child->owner != nullptr) child->owner->NoteChange(child, static_cast<int32_t>(index));
  return static_cast<int32_t>(index);
}

void LinkSiblings(TDBNode* parent, int32_t index) {
  if (parent == nullptr || !parent->children || index < 0 ||
      static_cast<size_t>(index) >= parent->children->size())
    return;
  std::vector<TDBNode*>& kids = *parent->children;
  TDBNode* child = kids[static_cast<size_t>(index)];
  if (child == nullptr) return;
  TDBNode* before = nullptr;
  for (size_t i = static_cast<size_t>(index); i-- > 0;)
    if (kids[i] != nullptr) { before = kids[i]; break; }
  TDBNode* after = nullptr;
  for (size_t i = static_cast<size_t>(index) + 1; i < kids.size(); ++i)
    if (kids[i] != nullptr) { after = kids[i]; break; }
  child->previous = before;
  child->next = after;
  if (before != nullptr) before->next = child;
  if (after != nullptr) after->previous = child;
}

bool Unlink(TDBNode* node) {
  if (node == nullptr || node->parent == nullptr) return false;
  TDBNode* parent = node->parent;
  int32_t index = parent->IndexOf(node);
  if (node->owner != nullptr) node->owner->NoteChange(node, index);
  if (index >= 0) parent->children->erase(parent->children->begin() + index);
  if (node->previous != nullptr) node->previous->next = node->next;
  if (node->next != nullptr) node->next->previous = node->previous;
  node->previous = node->next = nullptr;
  node->parent = nullptr;
  return true;
}

void SetDepthsBelow(TDBNode* node) {
  if (node == nullptr || !node->children) return;
  // Iterative, so that a deep chain of categories cannot exhaust the stack.
  std::vector<TDBNode*> pending{node};
  while (!pending.empty()) {
    TDBNode* n = pending.back();
    pending.pop_back();
    if (!n->children) continue;
    for (TDBNode* c : *n->children) {
      if (c == nullptr) continue;
      c->depth = n->depth + 1;
      pending.push_back(c);
    }
  }
}

TDBNode* NextNode(TDBNode* node, bool descend, bool wrap) {
  if (node == nullptr) return nullptr;
  if (descend && node->isCategory) {
    if (TDBNode* first = node->FirstChild()) return first;
  }
  if (node->next != nullptr) return node->next;
  if (!descend) return (wrap && node->parent != nullptr) ? node->parent->FirstChild() : nullptr;
  TDBNode* top = node;
  for (TDBNode* a = node->parent; a != nullptr; a = a->parent) {
    if (a->next != nullptr) return a->next;
    top = a;
  }
  if (!wrap) return nullptr;
  TDBNode* root = node->owner != nullptr ? &node->owner->root : top;
  return root->FirstChild();
}

TDBNode* PreviousNode(TDBNode* node, bool descend, bool wrap) {
  if (node == nullptr) return nullptr;
  if (TDBNode* before = node->previous) {
    if (descend && before->isCategory && before->HasChildren()) return DeepestLast(before);
    return before;
  }
  TDBNode* parent = node->parent;
  TDBNode* root = node->owner != nullptr ? &node->owner->root : nullptr;
  bool atRootLevel = parent == nullptr || parent == root || (root == nullptr && parent->parent == nullptr);
  if (!atRootLevel) return parent;
  if (!wrap) return nullptr;
  if (descend) return DeepestLast(root != nullptr ? root : (parent != nullptr ? parent : node));
  return parent != nullptr ? parent->LastChild() : nullptr;
}

TDBNode* DeepestLast(TDBNode* node) {
  if (node == nullptr || !node->expanded) return node;
  TDBNode* x = node->LastChild();
  if (x == nullptr) return node;
  for (;;) {
    TDBNode* last = x->LastChild();
    if (last == nullptr) return x;
    x = last;
    if (!x->expanded) return x;
  }
}

}  // namespace verdal::model
