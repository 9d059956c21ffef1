#include "engine/category_tree.h"

#include <cstring>
#include <string>

#include "io/text_buffer.h"
#include "engine/db_manager.h"
#include "engine/import.h"
#include "engine/last_error.h"
#include "engine/notify.h"
#include "model/cursor.h"
#include "model/place_walk.h"
#include "model/tree_move.h"

namespace verdal::engine {

using namespace model;

namespace {

bool Shows(int32_t mode, const TDBNode* node) {
  if (node->removeFlag != 0) return false;  // deleted by the host during a walk
  if (node->place != nullptr && node->place->temporary) return false;
  return node->isCategory ? mode != kModeRecords : mode != kModeCategories;
}

int32_t NumberByMode(int32_t mode, const TDBNode* node) {
  switch (mode) {
    case kModeCategories: return node->categoryNumber;
    case kModeRecords: return node->recordNumber;
    default: return node->rowNumber;
  }
}


int32_t VisibleChildren(const TDBNodeManagerItem& view, const TDBNode* node, bool onlyExpanded) {
  if (!node->expanded && onlyExpanded && view.mode != kModeRecords) return 0;
  int32_t count = 0;
  if (node->children)
    for (const TDBNode* c : *node->children)
      if (c != nullptr && (c->isCategory ? view.mode != kModeRecords : view.mode != kModeCategories)) ++count;
  return count;
}

}  // namespace

int32_t BuildCategoryTree(TDBManager& db, intptr_t seed, VerdalTreeFn callback, intptr_t user,
                          int32_t viewIndex, int32_t startCursor) {
  NodeStore& store = db.store;
  TDBNodeManagerItem* view = store.View(viewIndex);
  if (view == nullptr) return -3;
  TDBNode* start = startCursor == -1 ? &view->root : NodeInView(store, viewIndex, LookupPlace(store, startCursor));
  if (start == nullptr) return -2;
  view->EnsureNumbered();
  const int32_t mode = view->mode;
  auto enters = [mode](const TDBNode* n) { return n->expanded || mode == kModeRecords; };
  // Working copies of the children lists: the host's callback may change the tree under the walk.
  struct Frame {
    std::vector<TDBNode*> children;
    size_t index;
    intptr_t seed;
  };
  std::vector<Frame> stack;
  if (enters(start) && start->children) stack.push_back({*start->children, 0, seed});
  while (!stack.empty()) {
    Frame& f = stack.back();
    if (f.index >= f.children.size()) {
      stack.pop_back();
      continue;
    }
    TDBNode* child = f.children[f.index++];
    if (child == nullptr) continue;
    intptr_t childSeed = f.seed;
    if (Shows(mode, child) && callback != nullptr)
      childSeed = callback(f.seed, child->cursor, child->depth, NumberByMode(mode, child), user);
    if (enters(child) && child->children) stack.push_back({*child->children, 0, childSeed});
  }
  return 1;
}

int32_t GetCategoryInfo(TDBManager& db, int32_t cursor, TDBCategoryQuery& q) {
  NodeStore& store = db.store;
  TDBCategoryData* place = cursor >= 0 || cursor == -2 ? LookupPlace(store, cursor) : nullptr;
  if (place == nullptr) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }
  if (q.isCategory != nullptr) *q.isCategory = place->isCategory ? 1 : 0;
  if (q.name != nullptr) {
    // "Room enough" is room for the longest name the engine stores; a longer one from a file is
    // cut there as well.
    size_t size = q.nameSize > 0 ? static_cast<size_t>(q.nameSize) : VERDAL_NAME_MAX + 1;
    CopyCut(q.name, size, NodeName(store, place));
  }
  if (q.parent != nullptr) {
    const TDBNode* node = NodeOf(store, place);
    const TDBNode* parent = node != nullptr ? node->parent : nullptr;
    *q.parent = parent == nullptr || parent->parent == nullptr ? -1 : parent->cursor;
  }
  bool viewFacts = q.expanded != nullptr || q.depth != nullptr || q.row != nullptr || q.visibleChildren != nullptr;
  if (!viewFacts) return 1;
  TDBNodeManagerItem* view = store.View(q.viewIndex);
  TDBNode* node = view != nullptr ? NodeInView(store, q.viewIndex, place) : nullptr;
  if (node == nullptr) {
    SetLastError(VERDAL_ERR_VIEW);
    return 0;
  }
  view->EnsureNumbered();
  if (q.expanded != nullptr) *q.expanded = node->expanded ? 1 : 0;
  if (q.depth != nullptr) *q.depth = node->depth;
  if (q.row != nullptr) *q.row = NumberByMode(view->mode, node);
  if (q.visibleChildren != nullptr) *q.visibleChildren = VisibleChildren(*view, node, q.onlyExpanded != 0);
  return 1;
}

bool CollectChildren(TDBManager& db, int32_t cursor, int32_t viewIndex, bool recurse,
                     bool onlyExpanded, int32_t kinds, PlaceFilter* filter, bool includeStart,
                     std::vector<int32_t>& out) {
  NodeStore& store = db.store;
  int32_t resolved = ResolveCursor(store, cursor);
  TDBCategoryData* place = LookupPlace(store, resolved);  // null for -1 too
  if (place == nullptr) {
    SetLastError(VERDAL_ERR_CURSOR);
    return false;
  }
  TDBNodeManagerItem* view = store.View(viewIndex);
  TDBNode* node = view != nullptr ? NodeInView(store, viewIndex, place) : nullptr;
  if (node == nullptr) {
    SetLastError(VERDAL_ERR_VIEW);
    return false;
  }
  if (kinds == -1) kinds = view->mode;
  CollectPlaces(store, node, out, kinds, recurse, onlyExpanded, filter, includeStart);
  return true;
}

int32_t SetCategoryInfo(TDBManager& db, int32_t cursor, const char* name, const int32_t* expanded,
                        const int32_t* newParent, const int32_t* position, int32_t mode,
                        int32_t* positionOut, bool checkOnly, int32_t viewIndex) {
  if (RefusedWhileImporting(db)) return 0;
  NodeStore& store = db.store;
  int32_t resolved = ResolveCursor(store, cursor);
  TDBCategoryData* place = LookupPlace(store, resolved);  // null for -1 too
  if (place == nullptr) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }
  bool renamed = false, reopened = false, moved = false;
  // Parts already done stay done when a later part fails, but only success is announced.
  auto finish = [&](int32_t result) {
    if (renamed || reopened || moved) db.MarkDirty();
    if (result == 0) return result;
    if (renamed) NotifyChange(&db, resolved, VERDAL_NOTIFY_VALUE_CHANGED, -8, 0, 0);
    if (reopened) NotifyChange(&db, resolved, VERDAL_NOTIFY_CATEGORY_CHANGED, -10, 0, 0);
    if (moved) NotifyChange(&db, resolved, VERDAL_NOTIFY_SHAPE_CHANGED, -10, 0, 0);
    return result;
  };
  if (name != nullptr) renamed = SetNodeText(store, resolved, name, true);
  if (expanded != nullptr) {
    TDBNodeManagerItem* view = store.View(viewIndex);
    if (view == nullptr) {
      SetLastError(VERDAL_ERR_VIEW);
      return finish(0);
    }
    TDBNode* node = NodeInView(store, viewIndex, place);
    TDBCategoryRecord* rec = store.categories.Find(place->categoryId);
    if (node == nullptr || (!place->IsRootPlace() && (!place->isCategory || rec == nullptr))) {
      SetLastError(VERDAL_ERR_TARGET);
      return finish(0);
    }
    node->expanded = *expanded != 0;
    if (rec != nullptr && !place->IsRootPlace()) rec->expanded = (*expanded & 0xFF) != 0;
    view->Number();
    reopened = true;
  }
  if (newParent != nullptr) {
    // The root has no parent to leave: MoveNode refuses it like any other move it cannot make.
    TDBNode* node = NodeOf(store, place);
    if (node == nullptr) {
      SetLastError(VERDAL_ERR_TARGET);
      return finish(0);
    }
    TDBNode* target = NodeOf(store, LookupPlace(store, *newParent));
    int32_t at = position != nullptr ? *position : -1;
    if (MoveNode(store, node, target, mode, at, checkOnly) != 1) {
      SetLastError(VERDAL_ERR_MOVE);
      return finish(0);
    }
    if (positionOut != nullptr) *positionOut = at;
    moved = !checkOnly;
  }
  return finish(1);
}

}  // namespace verdal::engine
