#include "model/cursor.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "model/place_walk.h"

namespace verdal::model {
namespace {

int32_t LastNodeCursor(NodeStore& store) {
  TDBNode* last = store.MainView().root.LastChild();
  if (last == nullptr) return -1;
  if (!last->HasChildren()) return last->cursor;
  std::vector<int32_t> below;
  CollectPlaces(store, last, below, kKindBoth, true, false, nullptr, false);
  return below.empty() ? -1 : below.back();
}

int32_t FirstSiblingCursor(NodeStore& store) {
  TDBNode* current = NodeOf(store, LookupPlace(store, store.currentCursor));
  if (current == nullptr || current->parent == nullptr) return -1;
  TDBNode* first = current->parent->FirstChild();
  return first != nullptr ? first->cursor : -1;
}

}  // namespace

int32_t ResolveCursor(NodeStore& store, int32_t cursor) {
  if (cursor >= 0) return cursor;
  switch (cursor) {
    case VERDAL_CURSOR_ROOT: return VERDAL_CURSOR_ROOT;
    case VERDAL_CURSOR_FIRST: {
      TDBNode* first = store.MainView().root.FirstChild();
      return first != nullptr ? first->cursor : -1;
    }
    case VERDAL_CURSOR_CURRENT: return store.currentCursor;
    case VERDAL_CURSOR_LAST: return LastNodeCursor(store);
    case VERDAL_CURSOR_FIRST_SIBLING: return FirstSiblingCursor(store);
    case VERDAL_CURSOR_NEXT: return StepCursor(store, store.currentCursor, 1, true, true);
    case VERDAL_CURSOR_PREVIOUS: return StepCursor(store, store.currentCursor, -1, true, true);
    default: return -1;
  }
}

int32_t StepCursor(NodeStore& store, int32_t cursor, int32_t count, bool wrap, bool descend) {
  TDBNode* node = NodeOf(store, LookupPlace(store, cursor));
  if (node == nullptr) return -1;
  if (count == 0) return cursor;
  // A wrapping walk runs into a circle, so a huge count is cut to what is left after the last
  // whole round. The circle is found by marking the node at steps 1, 2, 4, ... and waiting for the
  // walk to meet the mark again; that costs a few rounds of the tree at most.
  int64_t steps = std::llabs(static_cast<int64_t>(count));
  TDBNode* mark = nullptr;
  int64_t markedAt = 0, nextMark = 1;
  for (int64_t i = 0; i < steps && node != nullptr;) {
    node = count > 0 ? NextNode(node, descend, wrap) : PreviousNode(node, descend, wrap);
    ++i;
    if (mark != nullptr && node == mark) {
      steps = i + (steps - i) % (i - markedAt);
      mark = nullptr;
      nextMark = INT64_MAX;
    } else if (i == nextMark) {
      mark = node;
      markedAt = i;
      nextMark *= 2;
    }
  }
  return node != nullptr ? node->cursor : -1;
}

}  // namespace verdal::model
