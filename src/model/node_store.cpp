#include "model/node_store.h"

#include <unordered_map>
#include <utility>

#include "model/identity_index.h"
#include "platform/clock.h"
#include "platform/collation.h"
#include "platform/guid.h"

namespace verdal::model {

NodeStore::NodeStore(int32_t sizeClassIn)
    : sizeClass(sizeClassIn), categories(sizeClassIn), data(sizeClassIn), places(sizeClassIn) {
  views.reserve(2);
  views.push_back(std::make_unique<TDBNodeManagerItem>(std::string(), kModeBoth, rootExpanded));
}

NodeStore::~NodeStore() = default;

TDBNodeManagerItem* NodeStore::View(int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= views.size()) return nullptr;
  return views[static_cast<size_t>(index)].get();
}

int32_t NodeStore::FindView(const std::string& name) const {
  for (size_t i = 0; i < views.size(); ++i)
    if (platform::SameNameNoCase(views[i]->name, name)) return static_cast<int32_t>(i);
  return -1;
}

const TDBCategoryData& RootPlace() {
  static const TDBCategoryData root = [] {
    TDBCategoryData p;
    p.cursor = -2;
    p.categoryId = -2;
    p.isCategory = true;
    return p;
  }();
  return root;
}

TDBCategoryData* LookupPlace(NodeStore& store, int32_t cursor) {
  // Lookups only read the root place; the cast keeps one signature for every caller.
  if (cursor == -2) return const_cast<TDBCategoryData*>(&RootPlace());
  return store.places.Find(cursor);
}

TDBNode* NodeOf(NodeStore& store, const TDBCategoryData* place) {
  if (place == nullptr) return nullptr;
  if (place->IsRootPlace()) return &store.MainView().root;
  return place->node;
}

TDBNode* NodeInView(NodeStore& store, int32_t viewIndex, const TDBCategoryData* place) {
  if (viewIndex == 0) return NodeOf(store, place);
  TDBNodeManagerItem* view = store.View(viewIndex);
  if (view == nullptr || place == nullptr) return nullptr;
  if (place->IsRootPlace()) return &view->root;
  TDBNode* category = place->categoryId == -1 && !place->isCategory
                          ? &view->root
                          : view->FindCategory(place->categoryId);
  if (category == nullptr || place->isCategory) return category;
  if (category->children)
    for (TDBNode* child : *category->children)
      if (child != nullptr && child->cursor == place->cursor) return child;
  return nullptr;
}

std::optional<std::string_view> FieldValue(NodeStore& store, int32_t cursor, int32_t fieldIndex) {
  return FieldValueOf(store, LookupPlace(store, cursor), fieldIndex);
}

std::optional<std::string_view> FieldValueOf(NodeStore& store, const TDBCategoryData* place,
                                             int32_t fieldIndex) {
  if (place == nullptr || fieldIndex < 0 || static_cast<size_t>(fieldIndex) >= store.fields.size())
    return std::nullopt;
  TDBDataRecord* record = DataOf(store, place);
  if (record == nullptr) return std::nullopt;
  int32_t position = store.fields[static_cast<size_t>(fieldIndex)]->position;
  if (position < 0 || static_cast<size_t>(position) >= record->values.size()) return std::nullopt;
  return record->values[static_cast<size_t>(position)];
}

bool TakeId(int32_t& counter, int32_t& id) {
  if (counter < 0 || counter == INT32_MAX) return false;
  id = counter++;
  return true;
}

bool HasIdsLeft(const NodeStore& store) {
  for (int32_t counter : {store.nextCategoryId, store.nextDataId, store.nextCursor})
    if (counter < 0 || counter == INT32_MAX) return false;
  return true;
}

TDBDataRecord* CreateDataRecord(NodeStore& store, const std::string& title, int32_t externalRow) {
  // No counter of a field moves for a record that cannot have an id.
  if (store.nextDataId < 0 || store.nextDataId == INT32_MAX) return nullptr;
  // Each field gives its value for a new record: the next counter number, or its initial value.
  std::vector<std::string> values(store.fields.size());
  for (auto& field : store.fields) {
    std::string value = field->type.NewRecordValue();
    if (field->position >= 0 && static_cast<size_t>(field->position) < values.size())
      values[static_cast<size_t>(field->position)] = std::move(value);
  }
  std::vector<std::string_view> views(values.begin(), values.end());
  return CreateDataRecordWith(store, title, externalRow, views.data(), views.size());
}

TDBDataRecord* CreateDataRecordWith(NodeStore& store, std::string_view title, int32_t externalRow,
                                    const std::string_view* values, size_t count) {
  TDBDataRecord record;
  if (!TakeId(store.nextDataId, record.id)) return nullptr;
  record.values.Assign(platform::NewGuidText(), StoredName(title), values, count);
  record.externalRow = externalRow;
  record.created = record.changed = platform::NowLocal();
  return store.data.Insert(record.id, std::move(record));  // null: a counter behind a loaded id
}

TDBCategoryData* CreatePlace(NodeStore& store, int32_t categoryId, int32_t dataId, bool isCategory,
                             bool temporary) {
  TDBCategoryData place;
  if (!TakeId(store.nextCursor, place.cursor)) return nullptr;
  place.categoryId = categoryId;
  place.dataId = dataId;
  place.isCategory = isCategory;
  place.temporary = temporary;
  return store.places.Insert(place.cursor, std::move(place));
}

namespace {

// Builds one view's tree from a list of places. Places wait on the list for a parent that is
// still on it; a pass that takes nothing (categories naming each other as parents in a damaged
// file) is followed by one pass in which nothing waits.
void BuildView(NodeStore& store, int32_t viewIndex, std::vector<TDBCategoryData*> pending,
               bool live, memory::PageArena* arena = nullptr) {
  TDBNodeManagerItem& view = *store.View(viewIndex);
  if (!live) view.AllowPadding(pending.size());

  // How many category places of each category id are still on the list.
  std::unordered_map<int32_t, int32_t> waiting;
  for (const TDBCategoryData* p : pending)
    if (p->isCategory) ++waiting[p->categoryId];
  auto isWaiting = [&](int32_t categoryId) {
    auto it = waiting.find(categoryId);
    return it != waiting.end() && it->second > 0;
  };

  auto attach = [&](TDBNode* parent, TDBCategoryData* place) {
    const TDBCategoryRecord* rec = store.categories.Find(place->categoryId);
    int32_t categoryId = place->isCategory ? place->categoryId : (rec != nullptr ? rec->id : -1);
    TDBNode* node = view.MakeNode(place->cursor, categoryId, place->isCategory,
                                  rec != nullptr && rec->expanded, arena);
    node->place = place;
    if (viewIndex == 0) place->node = node;
    int32_t index = AddChild(parent, node, place->position, live);
    if (index < 0) index = AddChild(&view.root, node, -1, live);  // a record named as parent
    // The bulk path leaves sibling links to the compaction that ends it.
    if (live) LinkSiblings(node->parent, index);
  };

  // Handles one place; false leaves it on the list for a later pass.
  auto handle = [&](TDBCategoryData* place, bool noWaiting) {
    TDBNode* parent = view.FindCategory(place->categoryId);
    if (!place->isCategory) {
      if (parent == nullptr) {
        if (place->categoryId != -1 && !noWaiting && isWaiting(place->categoryId)) return false;
        parent = &view.root;
      }
      attach(parent, place);
      return true;
    }
    if (parent != nullptr) return true;  // the category is in the tree already
    const TDBCategoryRecord* rec = store.categories.Find(place->categoryId);
    int32_t parentId = rec != nullptr ? rec->parentId : -1;
    TDBNode* target = &view.root;
    if (parentId != -1) {
      TDBNode* found = view.FindCategory(parentId);
      if (found != nullptr)
        target = found;
      else if (!noWaiting && parentId != place->categoryId && isWaiting(parentId))
        return false;
    }
    attach(target, place);
    return true;
  };

  std::vector<TDBCategoryData*> next;
  bool noWaiting = false;
  while (!pending.empty()) {
    next.clear();
    bool progress = false;
    for (TDBCategoryData* place : pending) {
      if (handle(place, noWaiting)) {
        progress = true;
        if (place->isCategory) --waiting[place->categoryId];
      } else {
        next.push_back(place);
      }
    }
    noWaiting = !progress;
    pending.swap(next);
  }
}

}  // namespace

void AttachPlaces(NodeStore& store, const std::vector<TDBCategoryData*>& list, bool live,
                  memory::PageArena* arena) {
  for (size_t v = 0; v < store.views.size(); ++v)
    BuildView(store, static_cast<int32_t>(v), list, live, arena);
}

void AttachPlacesToView(NodeStore& store, int32_t viewIndex, const std::vector<TDBCategoryData*>& list,
                        bool live) {
  if (store.View(viewIndex) != nullptr) BuildView(store, viewIndex, list, live);
}

bool DetachPlace(NodeStore& store, int32_t cursor) {
  TDBCategoryData* place = LookupPlace(store, cursor);
  if (place == nullptr || place->IsRootPlace()) return false;
  bool inMainView = false;
  for (size_t v = 0; v < store.views.size(); ++v) {
    TDBNode* node = NodeInView(store, static_cast<int32_t>(v), place);
    if (node == nullptr || node->parent == nullptr) continue;
    Unlink(node);
    if (v == 0) inMainView = true;
  }
  return inMainView;
}

void ReleaseData(NodeStore& store, int32_t dataId) {
  if (TDBDataRecord* record = store.data.Find(dataId)) --record->references;
}

void DropData(NodeStore& store, int32_t dataId, bool onlyIfUnreferenced) {
  TDBDataRecord* record = store.data.Find(dataId);
  if (record == nullptr) return;
  if (record->references < 1 || !onlyIfUnreferenced) store.data.Erase(dataId);
}

void RefreshPositions(NodeStore& store) { store.MainView().Compact(true); }

void FollowMainView(NodeStore& store) {
  if (store.views.size() > 1) {
    std::vector<TDBCategoryData*> list;
    list.reserve(store.places.Count());
    store.places.ForEach([&](int32_t, TDBCategoryData* place) {
      if (place->tag == kObjectTag) list.push_back(place);
    });
    for (size_t v = 1; v < store.views.size(); ++v) {
      store.views[v]->Clear();
      AttachPlacesToView(store, static_cast<int32_t>(v), list, false);
    }
  }
  Renumber(store);
}

std::string_view NodeName(NodeStore& store, const TDBCategoryData* place) {
  if (place == nullptr) return {};
  if (!place->isCategory) {
    const TDBDataRecord* data = DataOf(store, place);
    return data != nullptr ? data->Title() : std::string_view();
  }
  const TDBCategoryRecord* rec = store.categories.Find(place->categoryId);
  return rec != nullptr ? std::string_view(rec->ShownName()) : std::string_view();
}

void Renumber(NodeStore& store) {
  // Positions are those of the main tree; other views only follow them.
  store.MainView().Renumber(true);
  for (size_t v = 1; v < store.views.size(); ++v) store.views[v]->Renumber(false);
}

void DestroyPlace(NodeStore& store, int32_t cursor) {
  TDBCategoryData* place = store.places.Find(cursor);
  if (place == nullptr) return;
  for (size_t v = 0; v < store.views.size(); ++v) {
    TDBNode* node = NodeInView(store, static_cast<int32_t>(v), place);
    if (node == nullptr) continue;
    if (node->parent != nullptr) Unlink(node);
    node->removeFlag = 1;
    node->place = nullptr;
    if (place->isCategory) {
      auto& tree = store.views[v]->categoryTree;
      auto it = tree.find(place->categoryId);
      if (it != tree.end() && it->second == node) tree.erase(it);
    }
  }
  store.places.Erase(cursor);
}

void ClearStore(NodeStore& store, bool keepDefinitions) {
  if (!keepDefinitions) {
    store.fields.clear();
    store.fieldNames.Invalidate();
  }
  store.categories.Clear();
  store.data.Clear();
  store.places.Clear();
  ClearIdentities(store);
  for (auto& view : store.views) view->Clear();
  store.arena.reset();
}

void CategoryOfCursor(NodeStore& store, int32_t cursor, int32_t& categoryCursor, bool& isCategory) {
  TDBCategoryData* place = LookupPlace(store, cursor);
  TDBNode* node = NodeOf(store, place);
  if (place == nullptr || node == nullptr) {
    categoryCursor = -1;
    isCategory = true;
    return;
  }
  isCategory = place->isCategory;
  if (place->isCategory)
    categoryCursor = place->cursor;
  else
    categoryCursor = node->parent != nullptr ? node->parent->cursor : -2;
}

}  // namespace verdal::model
