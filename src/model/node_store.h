#pragma once
// The in-memory store of one database: its three maps of stored objects, its views, its fields,
// the id counters and the current cursor. A database is never paged; the file is a dump of this.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/field_info.h"
#include "model/field_names.h"
#include "model/id_map.h"
#include "model/records.h"
#include "model/view.h"
#include "memory/page_arena.h"

namespace verdal::model {

class TIdentityIndex;

class NodeStore {
 public:
  explicit NodeStore(int32_t sizeClass);
  ~NodeStore();  // where the identity index is complete

  int32_t sizeClass;
  // Holds the objects a load made; it outlives them, being declared before the maps and views.
  std::unique_ptr<memory::PageArena> arena;
  TDBIdMap<TDBCategoryRecord> categories;
  TDBIdMap<TDBDataRecord> data;
  TDBIdMap<TDBCategoryData> places;
  // Made by the first build or search of identities; emptied with the store, never saved.
  std::unique_ptr<TIdentityIndex> identities;
  std::vector<std::unique_ptr<TDBNodeManagerItem>> views;
  std::vector<std::unique_ptr<TDBFieldInfo>> fields;
  // Names of the fields for lookup; told of every change of the list (model/fields.h does so).
  FieldNameIndex fieldNames;
  int32_t nextCategoryId = 0;
  int32_t nextDataId = 0;
  int32_t nextCursor = 0;
  int32_t currentCursor = -2;
  bool rootExpanded = true;

  TDBNodeManagerItem& MainView() { return *views.front(); }
  TDBNodeManagerItem* View(int32_t index);
  // The view of that name, case-insensitively; null if none.
  int32_t FindView(const std::string& name) const;
};

// The shared place that cursor -2 yields: category id -2, is category set.
const TDBCategoryData& RootPlace();

// The place of a cursor, the root place for -2, null for other negative or unknown cursors.
TDBCategoryData* LookupPlace(NodeStore& store, int32_t cursor);

// The node of a place in view 0: the root for the root place.
TDBNode* NodeOf(NodeStore& store, const TDBCategoryData* place);

// The node of a place in any view. Outside view 0 a record's node is found among the children of
// its category's node (the root for a record at top level).
TDBNode* NodeInView(NodeStore& store, int32_t viewIndex, const TDBCategoryData* place);

// The data record of a place, null if there is none. Inline: filters ask for it at every node.
inline TDBDataRecord* DataOf(NodeStore& store, const TDBCategoryData* place) {
  if (place == nullptr) return nullptr;
  if (place->data == nullptr) place->data = store.data.Find(place->dataId);
  return place->data;
}

// The stored value of one field of a node; none if the node, its data or the field is missing.
// The text is followed by a NUL and valid until the record's values change.
std::optional<std::string_view> FieldValue(NodeStore& store, int32_t cursor, int32_t fieldIndex);
std::optional<std::string_view> FieldValueOf(NodeStore& store, const TDBCategoryData* place,
                                             int32_t fieldIndex);

// Ids are given out up to INT32_MAX - 1; a counter standing at INT32_MAX has none left (a file
// can bring it there). TakeId gives the next id and moves the counter on, or false.
bool TakeId(int32_t& counter, int32_t& id);
// The counter that follows the highest id in use.
inline int32_t CounterAbove(int32_t highest) { return highest < INT32_MAX ? highest + 1 : INT32_MAX; }
// True while each of the three counters can give one more id: a new record or category needs them.
bool HasIdsLeft(const NodeStore& store);

// A new data record with one value per field, taking the next data id, entered in the data map.
// Null, with no counter moved, when no data id is left.
TDBDataRecord* CreateDataRecord(NodeStore& store, const std::string& title, int32_t externalRow);

// The same with the values given, one per field position (an import has them all at hand).
TDBDataRecord* CreateDataRecordWith(NodeStore& store, std::string_view title, int32_t externalRow,
                                    const std::string_view* values, size_t count);

// A new place with the next cursor, entered in the place map; not attached to any view. Null when
// no cursor is left.
TDBCategoryData* CreatePlace(NodeStore& store, int32_t categoryId, int32_t dataId, bool isCategory,
                             bool temporary);

// Makes nodes for the places in every view. Live inserts link siblings and note the change of
// numbers as they go; the bulk path (live off) leaves sibling links, compaction and numbering to
// Renumber, which must follow it. A load passes its arena for the nodes.
void AttachPlaces(NodeStore& store, const std::vector<TDBCategoryData*>& list, bool live,
                  memory::PageArena* arena = nullptr);

// The same, for one view only.
void AttachPlacesToView(NodeStore& store, int32_t viewIndex, const std::vector<TDBCategoryData*>& list,
                        bool live);

// Writes each place's index among its siblings in the main tree into its position, so that a tree
// built from positions comes out in the same order.
void RefreshPositions(NodeStore& store);

// After the main tree's children were put in a new order and their positions written: every other
// view is built anew from the positions, as a load builds it, and all are numbered.
void FollowMainView(NodeStore& store);

// A record's title or a category's shown name; empty for no place.
std::string_view NodeName(NodeStore& store, const TDBCategoryData* place);

// Takes a place out of every view; true if it was attached in view 0. Nodes stay in their views.
bool DetachPlace(NodeStore& store, int32_t cursor);

// A place dies: it leaves every view, its nodes are marked removed, and it is destroyed.
void DestroyPlace(NodeStore& store, int32_t cursor);

void ReleaseData(NodeStore& store, int32_t dataId);
// Without onlyIfUnreferenced, only for a record that no place names any more.
void DropData(NodeStore& store, int32_t dataId, bool onlyIfUnreferenced);

// Compaction, numbering and depths of every view.
void Renumber(NodeStore& store);

// Destroys every stored object and empties every view's tree and the identity index; views, id
// counters and the index's buckets survive. Without keepDefinitions the fields go as well.
void ClearStore(NodeStore& store, bool keepDefinitions);

// The place's category id and is-category flag as notifications report them: for a record the
// cursor of the category node that holds it (-2 at top level), for a category its own cursor, -1
// without a node.
void CategoryOfCursor(NodeStore& store, int32_t cursor, int32_t& categoryCursor, bool& isCategory);

}  // namespace verdal::model
