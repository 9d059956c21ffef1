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

}  // namespace verdal::model
