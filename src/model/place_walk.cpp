#include "model/place_walk.h"

#include <algorithm>
#include <string>

namespace verdal::model {
namespace {

bool KindMatches(int32_t kinds, bool isCategory) {
  return isCategory ? (kinds == kKindCategories || kinds == kKindBoth)
                    : (kinds == kKindRecords || kinds == kKindBoth);
}

// Visits the nodes below start in depth-first order with an explicit stack; visit returns whether
// to descend into the node.
template <class Visit>
void WalkBelow(TDBNode* start, Visit&& visit) {
  struct Frame {
    TDBNode* node;
    size_t index;
  };
  std::vector<Frame> stack{{start, 0}};
  while (!stack.empty()) {
    Frame& f = stack.back();
    if (!f.node->children || f.index >= f.node->children->size()) {
      stack.pop_back();
      continue;
    }
    const std::vector<TDBNode*>& kids = *f.node->children;
    // Siblings lie anywhere in memory: ask for the next ones' places and values early, so that
    // a filter over many records does not wait for each of them in turn.
    // Each stage touches what the stage before it has brought in by now.
    auto at = [&](size_t ahead) { return f.index + ahead < kids.size() ? kids[f.index + ahead] : nullptr; };
    if (const TDBNode* n = at(16)) __builtin_prefetch(n);
    if (const TDBNode* n = at(12)) __builtin_prefetch(n->place);
    if (const TDBNode* n = at(8); n != nullptr && n->place != nullptr) __builtin_prefetch(n->place->data);
    if (const TDBNode* n = at(4); n != nullptr && n->place != nullptr && n->place->data != nullptr) {
      // The values of a record span several cache lines; a filter may read any of them.
      const auto& values = n->place->data->values;
      const char* first = reinterpret_cast<const char*>(values.data());
      const size_t bytes = std::min<size_t>(values.size() * sizeof(std::string), 512);
      for (size_t offset = 0; offset < bytes; offset += 64) __builtin_prefetch(first + offset);
    }
    TDBNode* child = kids[f.index++];
    if (child == nullptr) continue;
    if (visit(child) && child->children) stack.push_back({child, 0});
  }
}

}  // namespace

void CollectPlaces(NodeStore& /*store*/, TDBNode* start, std::vector<int32_t>& list, int32_t kinds,
                   bool recurse, bool onlyExpanded, PlaceFilter* filter, bool includeStart) {
  if (start == nullptr) return;
  auto enters = [&](const TDBNode* n) { return n->expanded || !onlyExpanded || kinds == kKindRecords; };
  auto tryTake = [&](const TDBNode* n) {
    const TDBCategoryData* place = n->place;
    if (place == nullptr || place->temporary || !KindMatches(kinds, place->isCategory)) return;
    if (filter != nullptr && !filter->Accepts(*place)) return;
    list.push_back(place->cursor);
  };
  if (includeStart && start->cursor >= 0) tryTake(start);
  if (!enters(start)) return;
  WalkBelow(start, [&](TDBNode* child) {
    tryTake(child);
    return recurse && enters(child);
  });
}

int32_t FindByValue(NodeStore& store, int32_t fieldIndex, const char* value, bool asStored,
                    bool searchCategories, int32_t skipCursor, const StoredForm& toStored) {
  if (fieldIndex < 0 || static_cast<size_t>(fieldIndex) >= store.fields.size()) return -2;
  if (value == nullptr) return -3;
  std::string needle = value;
  if (!asStored && toStored) needle = toStored(fieldIndex, needle);
  int32_t found = -1;
  WalkBelow(&store.MainView().root, [&](TDBNode* node) {
    if (found >= 0) return false;
    if ((skipCursor < 0 || skipCursor != node->cursor) && (searchCategories || !node->isCategory)) {
      const TDBCategoryData* place = node->place;
      const std::string* stored = FieldValueOf(store, place, fieldIndex);
      if (place != nullptr && !place->temporary && stored != nullptr) {
        bool equal = asStored && toStored ? toStored(fieldIndex, *stored) == needle : *stored == needle;
        if (equal) found = node->cursor;
      }
    }
    return found < 0;
  });
  return found;
}

}  // namespace verdal::model
