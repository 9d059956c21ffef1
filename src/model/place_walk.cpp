#include "model/place_walk.h"

#include "model/prefetch.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace verdal::model {
namespace {

bool KindMatches(int32_t kinds, bool isCategory) {
  return isCategory ? (kinds == kKindCategories || kinds == kKindBoth)
                    : (kinds == kKindRecords || kinds == kKindBoth);
}

// How many siblings ahead a walk asks for nodes; places, records and values follow closer.
constexpr size_t kFarthest = 24;

// Visits the nodes below start in depth-first order with an explicit stack; visit returns whether
// to descend into the node. warm, when given, is called for the records of nodes a few steps
// ahead with what visit will read of them.
template <class Visit, class Warm>
void WalkBelow(TDBNode* start, Visit&& visit, bool readsRecords, Warm&& warm) {
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
    // Siblings lie anywhere in memory: ask for the next ones' places and records early, each
    // stage touching what the stage before it has brought in by now.
    // Near the end of a list the look-ahead runs on into the children of the parent's next child,
    // which the walk enters next if it has any: categories of a thousand records each would
    // otherwise start every list cold.
    const std::vector<TDBNode*>* following = nullptr;
    if (f.index + kFarthest >= kids.size() && stack.size() >= 2) {
      const Frame& up = stack[stack.size() - 2];
      const std::vector<TDBNode*>& siblings = *up.node->children;
      if (up.index < siblings.size() && siblings[up.index] != nullptr && siblings[up.index]->children)
        following = siblings[up.index]->children.get();
    }
    auto at = [&](size_t ahead) -> const TDBNode* {
      const size_t i = f.index + ahead;
      if (i < kids.size()) return kids[i];
      return following != nullptr && i - kids.size() < following->size() ? (*following)[i - kids.size()] : nullptr;
    };
    // Only the leading members that a walk reads, which may still straddle two cache lines.
    if (const TDBNode* n = at(kFarthest)) PrefetchBytes(n, offsetof(TDBNode, children) + sizeof(void*));
    if (const TDBNode* n = at(18); n != nullptr && n->place != nullptr)
      PrefetchBytes(&n->place->cursor, offsetof(TDBCategoryData, imported) - offsetof(TDBCategoryData, cursor));
    if (readsRecords) {
      if (const TDBNode* n = at(11); n != nullptr && n->place != nullptr) __builtin_prefetch(n->place->data);
      if (const TDBNode* n = at(5); n != nullptr && n->place != nullptr && n->place->data != nullptr)
        warm(*n->place->data);
    }
    TDBNode* child = kids[f.index++];
    if (child == nullptr) continue;
    if (visit(child) && child->children) stack.push_back({child, 0});
  }
}

}  // namespace

void PlaceFilter::Prefetch(const TDBDataRecord& record) const {
  PrefetchBytes(record.values.SlotOfTitle(), 4 * RecordValues::kSlotBytes);
}

namespace {

template <class Take>
void Collect(TDBNode* start, int32_t kinds, bool recurse, bool onlyExpanded, PlaceFilter* filter,
             bool includeStart, Take&& take) {
  if (start == nullptr) return;
  auto enters = [&](const TDBNode* n) { return n->expanded || !onlyExpanded || kinds == kKindRecords; };
  auto tryTake = [&](const TDBNode* n) __attribute__((always_inline)) {
    const TDBCategoryData* place = n->place;
    if (place == nullptr || place->temporary || !KindMatches(kinds, place->isCategory)) return;
    if (filter != nullptr && !filter->Accepts(*place)) return;
    take(place);
  };
  if (includeStart && start->cursor >= 0) tryTake(start);
  if (!enters(start)) return;
  WalkBelow(
      start,
      [&](TDBNode* child) {
        tryTake(child);
        return recurse && enters(child);
      },
      filter != nullptr, [filter](const TDBDataRecord& record) { filter->Prefetch(record); });
}

}  // namespace

void CollectPlaces(NodeStore& /*store*/, TDBNode* start, std::vector<int32_t>& list, int32_t kinds,
                   bool recurse, bool onlyExpanded, PlaceFilter* filter, bool includeStart) {
  Collect(start, kinds, recurse, onlyExpanded, filter, includeStart,
          [&](const TDBCategoryData* place) { list.push_back(place->cursor); });
}

void CollectPlaces(NodeStore& /*store*/, TDBNode* start, std::vector<const TDBCategoryData*>& list,
                   int32_t kinds, bool recurse, bool onlyExpanded, PlaceFilter* filter, bool includeStart) {
  Collect(start, kinds, recurse, onlyExpanded, filter, includeStart,
          [&](const TDBCategoryData* place) { list.push_back(place); });
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
      std::optional<std::string_view> stored = FieldValueOf(store, place, fieldIndex);
      if (place != nullptr && !place->temporary && stored) {
        bool equal = asStored && toStored ? toStored(fieldIndex, *stored) == needle : *stored == needle;
        if (equal) found = node->cursor;
      }
    }
    return found < 0;
  }, true, [position = store.fields[static_cast<size_t>(fieldIndex)]->position](const TDBDataRecord& record) {
    if (position >= 0 && static_cast<size_t>(position) < record.values.size())
      __builtin_prefetch(record.values.SlotOfValue(static_cast<size_t>(position)));
  });
  return found;
}

}  // namespace verdal::model
