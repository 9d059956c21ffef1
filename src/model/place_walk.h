#pragma once
// Walks over the places below a node: collecting them for child lists and the last-node cursor,
// and finding the first node that holds a value.
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "model/node_store.h"

namespace verdal::model {

// Decides whether a place belongs in a collected list (a bound filter query, for instance).
class PlaceFilter {
 public:
  virtual ~PlaceFilter() = default;
  virtual bool Accepts(const TDBCategoryData& place) = 0;
  // Asks for what Accepts will read of a record some nodes before it comes: records lie
  // anywhere in memory, and a walk that waits for each in turn is many times slower. That is the
  // slots of the texts to be read, which hold texts of usual length themselves; longer texts are
  // left to come when read. By default, the slots of the title and the first values.
  virtual void Prefetch(const TDBDataRecord& record) const;
};

// Which kinds of place a walk takes: records, categories, or both.
enum PlaceKinds : int32_t { kKindCategories = 1, kKindRecords = 2, kKindBoth = 3 };

// Appends to list the cursors of the places below start, in depth-first order. A node is entered
// only if it is expanded, onlyExpanded is off, or kinds is records. Temporary places are never
// taken. With includeStart, a start node with a real cursor is tried first.
void CollectPlaces(NodeStore& store, TDBNode* start, std::vector<int32_t>& list, int32_t kinds,
                   bool recurse, bool onlyExpanded, PlaceFilter* filter, bool includeStart);
// The same, giving the places themselves.
void CollectPlaces(NodeStore& store, TDBNode* start, std::vector<const TDBCategoryData*>& list,
                   int32_t kinds, bool recurse, bool onlyExpanded, PlaceFilter* filter, bool includeStart);

// Brings a value of a field to its stored form; the field's data type knows how.
using StoredForm = std::function<std::string(int32_t fieldIndex, std::string_view value)>;

// The first node of the main tree, depth-first and regardless of expanded flags, whose value of
// the field equals value (case-sensitive). Without asStored the value is brought to stored form
// first; with it, each stored value is brought through the same conversion before comparing.
// Results: a cursor; -1 nothing found; -2 bad field index; -3 null value.
int32_t FindByValue(NodeStore& store, int32_t fieldIndex, const char* value, bool asStored,
                    bool searchCategories, int32_t skipCursor, const StoredForm& toStored);

}  // namespace verdal::model
