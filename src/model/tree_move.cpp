#include "model/tree_move.h"

namespace verdal::model {

std::vector<TDBNode*> NodesInViews(NodeStore& store, const TDBCategoryData* place) {
  std::vector<TDBNode*> nodes(store.views.size(), nullptr);
  for (size_t v = 0; v < store.views.size(); ++v)
    nodes[v] = NodeInView(store, static_cast<int32_t>(v), place);
  return nodes;
}

int32_t AddToViews(NodeStore& store, const TDBCategoryData* target, const std::vector<TDBNode*>& nodes,
                   int32_t position, bool live) {
  int32_t mainIndex = -1;
  for (size_t v = 0; v < store.views.size() && v < nodes.size(); ++v) {
    TDBNode* parent = NodeInView(store, static_cast<int32_t>(v), target);
    TDBNode* node = nodes[v];
    if (parent == nullptr || node == nullptr) continue;
    if (!node->isCategory) node->categoryId = parent->categoryId == -2 ? -1 : parent->categoryId;
    int32_t index = AddChild(parent, node, position, live);
    LinkSiblings(parent, index);
    if (v == 0) mainIndex = index;
  }
  return mainIndex;
}

void SetStoredParent(NodeStore& store, TDBCategoryData* place, const TDBCategoryData* parent) {
  int32_t parentCategory = parent == nullptr || parent->IsRootPlace() ? -1 : parent->categoryId;
  if (place->isCategory) {
    if (TDBCategoryRecord* rec = store.categories.Find(place->categoryId)) rec->parentId = parentCategory;
  } else {
    place->categoryId = parentCategory;
  }
}

bool IsBelowOrSelf(const TDBNode* node, const TDBNode* ancestor) {
  for (const TDBNode* n = node; n != nullptr; n = n->parent)
    if (n == ancestor) return true;
  return false;
}

int32_t MoveNode(NodeStore& store, TDBNode* node, TDBNode* target, int32_t mode, int32_t& position,
                 bool checkOnly) {
  TDBNode& root = store.MainView().root;
  if (node == nullptr || node->place == nullptr) return 0;
  if (target == nullptr) target = &root;
  if (mode == kMoveInto && !target->isCategory) return -2;
  if (target == node || IsBelowOrSelf(target, node)) return -3;
  if (mode == kMoveBeside) {
    if (target->parent == nullptr) return -5;
    position = target->parent->IndexOf(target);
    target = target->parent;
  }
  if (node->parent == nullptr) return -5;
  if (node->parent->IndexOf(node) < 0) return -6;
  if (checkOnly) return 1;

  TDBCategoryData* place = node->place;
  const TDBCategoryData* targetPlace = target == &root ? &RootPlace() : target->place;
  std::vector<TDBNode*> nodes = NodesInViews(store, place);
  // Where it stands in every view, to put it back there if it cannot go in.
  struct Former {
    TDBNode* parent = nullptr;
    int32_t index = -1;
    int32_t categoryId = -1;
  };
  std::vector<Former> formerPlaces(nodes.size());
  for (size_t v = 0; v < nodes.size(); ++v)
    if (TDBNode* n = nodes[v]; n != nullptr && n->parent != nullptr)
      formerPlaces[v] = {n->parent, n->parent->IndexOf(n), n->categoryId};
  DetachPlace(store, place->cursor);
  int32_t index = targetPlace != nullptr ? AddToViews(store, targetPlace, nodes, position, true) : -1;
  if (index < 0) {
    for (size_t v = 0; v < nodes.size(); ++v) {
      if (nodes[v] == nullptr) continue;
      if (nodes[v]->parent != nullptr) Unlink(nodes[v]);  // out of a view that did take it
      const Former& f = formerPlaces[v];
      if (f.parent == nullptr || f.index < 0) continue;
      nodes[v]->categoryId = f.categoryId;
      LinkSiblings(f.parent, AddChild(f.parent, nodes[v], f.index, true));
    }
    return -7;
  }
  position = index;
  place->position = index;
  if (TDBNode* next = node->next; next != nullptr && next->place != nullptr) next->place->position = index + 1;
  SetStoredParent(store, place, targetPlace);
  return 1;
}

bool SetNodeText(NodeStore& store, int32_t cursor, const char* text, bool both) {
  TDBCategoryData* place = store.places.Find(cursor);
  if (place == nullptr || text == nullptr) return false;
  const std::string_view name = StoredName(text);
  if (!place->isCategory) {
    TDBDataRecord* data = DataOf(store, place);
    if (data == nullptr) return false;
    data->SetTitle(name);
    return true;
  }
  TDBCategoryRecord* rec = store.categories.Find(place->categoryId);
  if (rec == nullptr) return false;
  rec->displayName = name;
  if (both) rec->name = name;
  return true;
}

}  // namespace verdal::model
