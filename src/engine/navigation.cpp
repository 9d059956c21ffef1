#include "engine/navigation.h"

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

bool KindWanted(NodeStore& store, int32_t cursor, int32_t kinds) {
  if (kinds == kKindBoth) return true;
  const TDBCategoryData* place = LookupPlace(store, cursor);
  if (place == nullptr) return false;
  return place->isCategory ? kinds == kKindCategories : kinds == kKindRecords;
}

void FillCategory(NodeStore& store, int32_t cursor, int32_t* categoryOut) {
  if (categoryOut == nullptr) return;
  bool isCategory = false;
  CategoryOfCursor(store, cursor, *categoryOut, isCategory);
}

// Steps of count places, repeated until one arrives at a place of the kinds asked for; -1 if a
// step fails, the start again if the walk went all the way round. A start hidden in a closed
// category is never met again: the walk then circles among other places, and coming back to a
// place it had marked (at steps 1, 2, 4, ...) means it has been all the way round as well.
int32_t StepOfKind(NodeStore& store, int32_t from, int32_t count, bool wrap, bool descend,
                   int32_t kinds) {
  int32_t at = from, mark = -1;
  for (int64_t i = 1, nextMark = 1;; ++i) {
    at = StepCursor(store, at, count, wrap, descend);
    if (at < 0 || at == from || KindWanted(store, at, kinds)) return at;
    if (at == mark) return from;
    if (i == nextMark) {
      mark = at;
      nextMark *= 2;
    }
  }
}

}  // namespace

int32_t Seek(TDBManager& db, int32_t cursor, int32_t count, bool wrap, bool descend,
             bool keepCurrent, int32_t* categoryOut, int32_t kinds) {
  NodeStore& store = db.store;
  int32_t at = ResolveCursor(store, cursor);
  if (at < 0 || count == 0) {
    if (at < 0 && count > 0) at = ResolveCursor(store, VERDAL_CURSOR_FIRST);
    if (at < 0 && count < 0) at = ResolveCursor(store, VERDAL_CURSOR_LAST);
    if (at >= 0 && LookupPlace(store, at) == nullptr) {
      SetLastError(VERDAL_ERR_CURSOR);
      return -1;
    }
  } else {
    at = StepOfKind(store, at, count, wrap, descend, kinds);
    if (at < 0) {
      SetLastError(VERDAL_ERR_CURSOR);
      return -1;
    }
  }
  if (keepCurrent) {
    FillCategory(store, at, categoryOut);
    return at;
  }
  if (!NotifyChange(&db, store.currentCursor, VERDAL_NOTIFY_CURRENT_CHANGING, -10, 0, 0)) {
    SetLastError(VERDAL_ERR_CANCELLED);
    return store.currentCursor;
  }
  store.currentCursor = at;
  FillCategory(store, at, categoryOut);
  NotifyChange(&db, at, VERDAL_NOTIFY_CURRENT_CHANGED, -10, 0, 0);
  return at;
}

int32_t MoveChild(TDBManager& db, int32_t cursor, int32_t target, int32_t kinds) {
  if (RefusedWhileImporting(db)) return 0;
  NodeStore& store = db.store;
  TDBNode& root = store.MainView().root;
  int32_t source = ResolveCursor(store, cursor);
  TDBCategoryData* sourcePlace = LookupPlace(store, source);
  TDBNode* sourceNode = NodeOf(store, sourcePlace);
  if (sourceNode == nullptr || sourcePlace->IsRootPlace()) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }

  bool toEnd = false;
  bool leaving = false;
  if (target == VERDAL_CURSOR_NEXT || target == VERDAL_CURSOR_PREVIOUS) {
    bool up = target == VERDAL_CURSOR_PREVIOUS;
    int32_t first = ResolveCursor(store, VERDAL_CURSOR_FIRST);
    int32_t last = ResolveCursor(store, VERDAL_CURSOR_LAST);
    if (kinds != kKindBoth) {
      if (first >= 0 && !KindWanted(store, first, kinds)) first = StepOfKind(store, first, 1, false, true, kinds);
      if (last >= 0 && !KindWanted(store, last, kinds)) last = StepOfKind(store, last, -1, false, true, kinds);
    }
    bool startUp = up && source == first;
    bool endDown = !up && source == last;
    // Past the source's own subtree to the next place of the kinds asked for. A walk that comes
    // back to where a step began, or to a place it marked (at steps 1, 2, 4, ...), circles below
    // the source and has nowhere to go.
    int32_t found = source, mark = -1;
    for (int64_t i = 1, nextMark = 1;; ++i) {
      const int32_t next = StepOfKind(store, found, up ? -1 : 1, true, true, kinds);
      if (next < 0 || next == source || next == found || next == mark) return 0;
      found = next;
      if (!IsBelowOrSelf(NodeOf(store, LookupPlace(store, found)), sourceNode)) break;
      if (i == nextMark) {
        mark = found;
        nextMark *= 2;
      }
    }
    if (startUp || endDown) {
      target = VERDAL_CURSOR_ROOT;
      toEnd = startUp || sourceNode->parent != &root;
    } else {
      target = found;
      TDBNode* foundNode = NodeOf(store, LookupPlace(store, found));
      leaving = up ? (foundNode->isCategory && foundNode->FirstChild() == sourceNode)
                   : (sourceNode->parent != nullptr && sourceNode->parent->LastChild() == sourceNode);
    }
  }

  int32_t targetCursor = ResolveCursor(store, target);
  TDBCategoryData* targetPlace = LookupPlace(store, targetCursor);
  TDBNode* targetNode = NodeOf(store, targetPlace);
  if (targetNode == nullptr) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }
  if (targetCursor == source) return 0;
  if (sourcePlace->isCategory && IsBelowOrSelf(targetNode, sourceNode)) return 0;
  TDBNode* sourceParent = sourceNode->parent != nullptr ? sourceNode->parent : &root;
  if (sourceParent->IndexOf(sourceNode) < 0) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }
  TDBNode* targetParent = targetNode->parent != nullptr ? targetNode->parent : &root;
  int32_t insertIndex = targetNode->parent != nullptr ? targetParent->IndexOf(targetNode) : 0;

  std::vector<TDBNode*> nodes = NodesInViews(store, sourcePlace);
  DetachPlace(store, source);
  const TDBCategoryData* newParent;
  int32_t position;
  if (!targetPlace->isCategory || leaving) {
    newParent = targetParent == &root ? &RootPlace() : targetParent->place;
    position = insertIndex;
  } else {
    newParent = targetPlace;
    position = toEnd ? -1 : 0;
  }
  SetStoredParent(store, sourcePlace, newParent);
  AddToViews(store, newParent, nodes, position, false);
  Renumber(store);
  store.currentCursor = source;
  db.MarkDirty();
  NotifyChange(&db, -2, VERDAL_NOTIFY_SHAPE_CHANGED, -10, 0, 0);
  NotifyChange(&db, source, VERDAL_NOTIFY_CURRENT_CHANGED, -10, 0, 0);
  return 1;
}

int32_t IsChildOf(TDBManager& db, int32_t cursor, int32_t other) {
  TDBNode* node = NodeOf(db.store, LookupPlace(db.store, cursor));
  if (node == nullptr) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }
  TDBNode* otherNode = NodeOf(db.store, LookupPlace(db.store, other));
  return otherNode != nullptr && IsBelowOrSelf(otherNode, node) ? 1 : 0;
}

}  // namespace verdal::engine
