#include "engine/record_ops.h"

#include <vector>

#include "engine/db_manager.h"
#include "engine/import.h"
#include "engine/last_error.h"
#include "engine/linked_table.h"
#include "engine/navigation.h"
#include "engine/notify.h"
#include "engine/settings.h"
#include "model/cursor.h"
#include "model/place_walk.h"
#include "platform/trace.h"

namespace verdal::engine {

using namespace model;

namespace {

// The parent of a new node: its place, or null with the code set. -1 stands for the top level.
TDBCategoryData* ParentPlace(NodeStore& store, int32_t resolved) {
  TDBCategoryData* parent = LookupPlace(store, resolved == -1 ? -2 : resolved);
  if (parent == nullptr) {
    SetLastError(VERDAL_ERR_CATEGORY_CURSOR);
    return nullptr;
  }
  if (!parent->isCategory) {
    SetLastError(VERDAL_ERR_PARENT_RECORD);
    return nullptr;
  }
  return parent;
}

// Removes one place and its data for good; false (code 23) when its table row cannot go.
bool RemovePlace(TDBManager& db, TDBCategoryData* place, VerdalWindow window) {
  NodeStore& store = db.store;
  TDBDataRecord* data = DataOf(store, place);
  if (!place->isCategory && data != nullptr && !DeleteLinkedRow(db, *data, window)) {
    SetLastError(VERDAL_ERR_SQL_DELETE);
    return false;
  }
  int32_t dataId = place->dataId;
  ReleaseData(store, dataId);
  DropData(store, dataId, true);
  DestroyPlace(store, place->cursor);
  return true;
}

// The step back may land on a node deleted along with the one asked for; the current cursor
// then goes to the first node, as after a load.
int32_t StillThere(NodeStore& store, int32_t cursor) {
  if (cursor < 0 || LookupPlace(store, cursor) != nullptr) return cursor;
  return ResolveCursor(store, VERDAL_CURSOR_FIRST);
}

// Makes the place of a new record under parent, asks the linked table for a row, and attaches it.
// -1 (code 18) when the table refused: then nothing of the record remains.
int32_t PlaceNewRecord(TDBManager& db, const TDBCategoryData& parent, TDBDataRecord* data,
                                bool temporary, VerdalWindow window) {
  NodeStore& store = db.store;
  int32_t categoryId = parent.IsRootPlace() ? -1 : parent.categoryId;
  TDBCategoryData* place = CreatePlace(store, categoryId, data->id, false, temporary);
  if (place == nullptr) {
    store.data.Erase(data->id);
    SetLastError(VERDAL_ERR_INTERNAL);
    return -1;
  }
  if (!InsertLinkedRow(db, *data, window)) {
    store.places.Erase(place->cursor);
    store.data.Erase(data->id);
    SetLastError(VERDAL_ERR_SQL_INSERT);
    return -1;
  }
  AttachPlaces(store, {place}, true);
  // By cursor from here on: the host's callback may delete the new record at once.
  const int32_t cursor = place->cursor;
  store.currentCursor = cursor;
  db.MarkDirty();
  NotifyChange(&db, cursor, VERDAL_NOTIFY_ADDED, -10, 0, 0);
  NotifyChange(&db, cursor, VERDAL_NOTIFY_CURRENT_CHANGED, -10, 0, 0);
  return cursor;
}

}  // namespace

int32_t AddRecord(TDBManager& db, int32_t parentCursor, const char* title, bool temporary,
                  const char* firstValue, int32_t firstField, VerdalWindow window) {
  if (RefusedWhileImporting(db)) return -1;
  NodeStore& store = db.store;
  int32_t resolvedParent = ResolveCursor(store, parentCursor);
  if (!NotifyChange(&db, store.currentCursor, VERDAL_NOTIFY_CURRENT_CHANGING, -10, 0, 0)) {
    SetLastError(VERDAL_ERR_CANCELLED);
    return -1;
  }
  TDBCategoryData* parent = ParentPlace(store, resolvedParent);
  if (parent == nullptr) return -1;
  TDBDataRecord* data = HasIdsLeft(store) ? CreateDataRecord(store, title != nullptr ? title : "", -1) : nullptr;
  if (data == nullptr) {
    SetLastError(VERDAL_ERR_INTERNAL);
    return -1;
  }
  data->temporary = temporary;
  // The field is checked after the data record is made: a refused record has taken its data id
  // and its counter numbers, but nothing of it stays in the store.
  TDBFieldInfo* field = nullptr;
  if (firstValue != nullptr && firstField != -1) {
    if (firstField < 0 || static_cast<size_t>(firstField) >= store.fields.size()) {
      store.data.Erase(data->id);
      SetLastError(VERDAL_ERR_FIELD);
      return -1;
    }
    field = store.fields[static_cast<size_t>(firstField)].get();
  }
  if (field != nullptr && field->position >= 0 && static_cast<size_t>(field->position) < data->values.size()) {
    std::string converted;
    field->type.ToInternal(firstValue, converted, true, nullptr);
    data->values.Set(static_cast<size_t>(field->position), converted);
  }
  return PlaceNewRecord(db, *parent, data, temporary, window);
}

int32_t DuplicateRecord(TDBManager& db, int32_t sourceCursor, int32_t parentCursor, const char* title) {
  if (RefusedWhileImporting(db)) return -1;
  NodeStore& store = db.store;
  if (!NotifyChange(&db, store.currentCursor, VERDAL_NOTIFY_CURRENT_CHANGING, -10, 0, 0)) {
    SetLastError(VERDAL_ERR_CANCELLED);
    return -1;
  }
  int32_t source = ResolveCursor(store, sourceCursor);
  TDBCategoryData* sourcePlace = LookupPlace(store, source);
  TDBDataRecord* sourceData = sourcePlace != nullptr ? DataOf(store, sourcePlace) : nullptr;
  if (sourceData == nullptr) {
    SetLastError(VERDAL_ERR_CURSOR);
    return -1;
  }
  TDBCategoryData* parent = ParentPlace(store, ResolveCursor(store, parentCursor));
  if (parent == nullptr) return -1;
  TDBDataRecord* data = HasIdsLeft(store) ? CreateDataRecord(store, title != nullptr ? title : "", -1) : nullptr;
  if (data == nullptr) {
    SetLastError(VERDAL_ERR_INTERNAL);
    return -1;
  }
  for (const auto& field : store.fields) {
    if (field->type.isCounter || field->type.readOnly) continue;
    size_t p = static_cast<size_t>(field->position);
    if (field->position < 0 || p >= sourceData->values.size() || p >= data->values.size()) continue;
    data->values.Set(p, sourceData->values[p]);
  }
  return PlaceNewRecord(db, *parent, data, false, nullptr);
}

int32_t AddCategory(TDBManager& db, int32_t parentCursor, const char* name) {
  if (RefusedWhileImporting(db)) return -1;
  NodeStore& store = db.store;
  int32_t resolved = ResolveCursor(store, parentCursor);
  TDBCategoryData* parent = ParentPlace(store, resolved);
  if (parent == nullptr) return -1;
  // All three ids are checked before the first is taken, so that a refusal leaves nothing behind.
  if (!HasIdsLeft(store)) {
    SetLastError(VERDAL_ERR_INTERNAL);
    return -1;
  }

  TDBCategoryRecord rec;
  TakeId(store.nextCategoryId, rec.id);
  // -1 is the top level; the root cursor gives -2, which is read as the top level everywhere.
  rec.parentId = resolved == -1 ? -1 : parent->categoryId;
  rec.name = rec.displayName = StoredName(name != nullptr ? name : "");
  int32_t categoryId = rec.id;
  TDBDataRecord* data = store.categories.Insert(categoryId, std::move(rec)) != nullptr
                            ? CreateDataRecord(store, "", -1)
                            : nullptr;
  TDBCategoryData* place = data != nullptr ? CreatePlace(store, categoryId, data->id, true, false) : nullptr;
  if (place == nullptr) {  // an id the file used already
    if (data != nullptr) store.data.Erase(data->id);
    SetLastError(VERDAL_ERR_INTERNAL);
    return -1;
  }
  AttachPlaces(store, {place}, true);

  const int32_t cursor = place->cursor;  // the host's callback may delete it at once
  store.currentCursor = cursor;
  db.MarkDirty();
  NotifyChange(&db, cursor, VERDAL_NOTIFY_ADDED, -10, 0, 0);
  NotifyChange(&db, cursor, VERDAL_NOTIFY_CURRENT_CHANGED, -10, 0, 0);
  return cursor;
}

int32_t DeleteRecord(TDBManager& db, int32_t cursor, int32_t flags, bool notify, VerdalWindow window,
                     bool renumber) {
  if (RefusedWhileImporting(db)) return 0;
  NodeStore& store = db.store;
  platform::Trace("VERDAL_DeleteRecordEx: %d", cursor);
  int32_t resolved = ResolveCursor(store, cursor);
  TDBCategoryData* place = LookupPlace(store, resolved);  // null for -1 too
  if (place == nullptr) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }
  TDBNode* node = NodeOf(store, place);
  int32_t nextCurrent = StepCursor(store, resolved, -1, true, true);
  if (node != nullptr && notify) {
    if (!NotifyChange(&db, resolved, VERDAL_NOTIFY_DELETING, -10, flags, 0, &flags)) {
      SetLastError(VERDAL_ERR_CANCELLED);
      return 0;
    }
    // The host may have deleted the node itself meanwhile.
    place = LookupPlace(store, resolved);
    if (place == nullptr) {
      SetLastError(VERDAL_ERR_CURSOR);
      return 0;
    }
  }

  std::vector<int32_t> below;
  CollectPlaces(store, node, below, kKindBoth, (flags & kDeleteCategoriesBelow) != 0, false,
                nullptr, false);
  bool moved = false;
  for (int32_t c : below) {
    TDBCategoryData* p = LookupPlace(store, c);
    if (p == nullptr) continue;
    bool keep = p->isCategory ? (flags & kDeleteCategoriesBelow) == 0
                              : (flags & kDeleteRecordsBelow) == 0;
    if (keep) {
      // Quiet moves; the switch is on afterwards, whatever the host had set.
      Switches().notify = false;
      MoveChild(db, c, VERDAL_CURSOR_ROOT, kKindBoth);
      Switches().notify = true;
      moved = true;
      continue;
    }
    if (!RemovePlace(db, p, window)) return 0;
    NotifyChange(&db, c, VERDAL_NOTIFY_DELETED, -10, 0, 0);
  }
  // Looked up again: a host callback of notification 4 may have deleted it already.
  place = LookupPlace(store, resolved);
  if (resolved >= 0 && place != nullptr && !RemovePlace(db, place, window)) return 0;
  if (renumber) Renumber(store);
  if (!moved && resolved >= 0) NotifyChange(&db, resolved, VERDAL_NOTIFY_DELETED, -10, 0, 0);
  if (moved) NotifyChange(&db, -2, VERDAL_NOTIFY_SHAPE_CHANGED, -10, 0, 0);

  store.currentCursor = StillThere(store, nextCurrent);
  db.MarkDirty();
  NotifyChange(&db, store.currentCursor, VERDAL_NOTIFY_CURRENT_CHANGED, -10, 0, 0);
  return 1;
}

void EmptyData(TDBManager& db, bool keepDefinitions) {
  NodeStore& store = db.store;
  // Every row of a linked table goes with the records; a text source notes them for its write-back.
  if (IsLinkedToTable(db) || db.importLink.writeBack) {
    store.data.ForEach([&](int32_t, TDBDataRecord* record) { DeleteLinkedRow(db, *record, nullptr); });
  }
  ClearStore(store, keepDefinitions);
  if (!keepDefinitions) db.ClearDefinitions();
  db.MarkDirty();
}

}  // namespace verdal::engine
