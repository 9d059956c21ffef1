#include "engine/cross_data.h"

#include <strings.h>

#include <memory>

#include "engine/database_call.h"
#include "engine/database_links.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/last_error.h"
#include "engine/link_walk.h"
#include "engine/notify.h"
#include "io/text_buffer.h"
#include "model/cursor.h"
#include "model/number_text.h"
#include "model/place_walk.h"
#include "query/query_cache.h"

namespace verdal::engine {
namespace {

model::TDBFieldInfo* FieldAt(TDBManager& db, int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= db.store.fields.size()) return nullptr;
  return db.store.fields[static_cast<size_t>(index)].get();
}

void Fill(TCrossInfo* info, const TDBManager& last, const model::TDBFieldInfo& field) {
  if (info == nullptr) return;
  CopyCut(info->path, sizeof info->path, last.fileName);
  CopyCut(info->fieldName, sizeof info->fieldName, field.name);
}

// The end of a link field's chain; code 7 when it does not resolve.
bool ChainEnd(TDBManager& db, int32_t fieldIndex, TDBManager*& last, int32_t& lastIndex,
              model::TDBFieldInfo*& field, const char* context) {
  TDBRecursChecker chain;
  if (!ReadChain(db, fieldIndex, chain, context)) {
    SetLastError(VERDAL_ERR_CROSS_TABLE);
    return false;
  }
  last = Handles().Lookup(chain.handles.back());
  lastIndex = chain.fields.back();
  field = FieldAt(*last, lastIndex);
  if (field == nullptr) {
    SetLastError(VERDAL_ERR_CROSS_TABLE);
    return false;
  }
  return true;
}

// A place is a real node of the database, never the root or a pseudo cursor.
bool PlaceExists(TDBManager& db, int32_t cursor) {
  return cursor >= 0 && model::LookupPlace(db.store, cursor) != nullptr;
}

}  // namespace

bool GetCrossInfo(TDBManager& db, int32_t fieldIndex, TCrossInfo* info) {
  if (info != nullptr) info->path[0] = info->fieldName[0] = '\0';
  model::TDBFieldInfo* field = FieldAt(db, fieldIndex);
  if (field == nullptr) {
    SetLastError(VERDAL_ERR_FIELD);
    return false;
  }
  if (field->type.dataType != model::kTypeLink) {
    SetLastError(VERDAL_ERR_CROSS_FIELD);
    return false;
  }
  TDBManager* last = nullptr;
  int32_t lastIndex = -1;
  model::TDBFieldInfo* lastField = nullptr;
  if (!ChainEnd(db, fieldIndex, last, lastIndex, lastField, "VERDAL_GetCrossData()")) return false;
  Fill(info, *last, *lastField);
  return true;
}

bool GetCrossData(TDBManager& db, int32_t fieldIndex, TCrossInfo* info, int32_t node,
                  const char* filter, bool withCategories, CrossCandidates& out) {
  if (info != nullptr) info->path[0] = info->fieldName[0] = '\0';
  TDBManager* listed = &db;
  int32_t index = fieldIndex;
  model::TDBFieldInfo* field = FieldAt(db, fieldIndex);
  if (field == nullptr) {
    SetLastError(VERDAL_ERR_FIELD);
    return false;
  }
  if (field->type.dataType == model::kTypeLink) {
    if (!ChainEnd(db, fieldIndex, listed, index, field, "VERDAL_GetCrossData()")) return false;
    Fill(info, *listed, *field);
  }
  model::NodeStore& store = listed->store;
  // The listed database may be another one, which a host called from inside must not close.
  DatabaseCall call(*listed);

  std::unique_ptr<query::QX_QueryCache> query;
  if (filter != nullptr && *filter != '\0') {
    query = std::make_unique<query::QX_QueryCache>(store, filter, &listed->links);
    if (query->lastError != nullptr) {
      SetLastError(VERDAL_ERR_QUERY);
      return false;
    }
  }
  std::vector<const model::TDBCategoryData*> places;
  if (node == VERDAL_CURSOR_ROOT) {
    model::CollectPlaces(store, &store.MainView().root, places,
                         withCategories ? model::kKindBoth : model::kKindRecords, true, false,
                         query.get(), false);
  } else {
    model::TDBCategoryData* place = node >= 0 ? model::LookupPlace(store, node) : nullptr;
    model::TDBNode* start = place != nullptr ? model::NodeOf(store, place) : nullptr;
    if (start == nullptr) {
      SetLastError(VERDAL_ERR_CURSOR);
      return false;
    }
    if (place->isCategory)
      model::CollectPlaces(store, start, places, model::kKindRecords, true, false, query.get(), false);
    else
      places.push_back(place);  // a record stands for itself, whatever the filter says
  }
  if (query != nullptr && query->lastError != nullptr) {
    SetLastError(VERDAL_ERR_QUERY);
    return false;
  }
  out.ids.reserve(places.size());
  out.texts.reserve(places.size());
  for (const model::TDBCategoryData* place : places) {
    std::optional<std::string_view> value = model::FieldValueOf(store, place, index);
    out.ids.push_back(place->cursor);
    field->type.CreateDisplayString(value.value_or(std::string_view()), out.texts.emplace_back(), true,
                                    false, &listed->links);
  }
  return true;
}

bool UpdateCrossValue(TDBManager& target, TDBManager& referring, int32_t targetField,
                      int32_t oldNode, int32_t newNode) {
  if (!PlaceExists(target, oldNode) || !PlaceExists(target, newNode)) {
    SetLastError(VERDAL_ERR_CURSOR);
    return false;
  }
  model::TDBFieldInfo* named = FieldAt(target, targetField);
  if (named == nullptr) {
    SetLastError(VERDAL_ERR_FIELD);
    return false;
  }
  const std::string oldText = std::to_string(oldNode);
  const std::string newText = std::to_string(newNode);
  for (size_t i = 0; i < referring.store.fields.size(); ++i) {
    const model::TDBFieldInfo& field = *referring.store.fields[i];
    if (field.type.dataType != model::kTypeLink ||
        strcasecmp(field.type.linkDatabase.c_str(), target.fileName.c_str()) != 0 ||
        strcasecmp(field.type.linkField.c_str(), named->name.c_str()) != 0)
      continue;
    const int32_t index = static_cast<int32_t>(i);
    const int32_t hit = model::FindByValue(referring.store, index, oldText.c_str(), true, false, -1, nullptr);
    model::TDBCategoryData* place = hit >= 0 ? model::LookupPlace(referring.store, hit) : nullptr;
    model::TDBDataRecord* data = model::DataOf(referring.store, place);
    if (data == nullptr || field.position < 0 || static_cast<size_t>(field.position) >= data->values.size())
      continue;
    data->values.Set(static_cast<size_t>(field.position), newText);
    NotifyChange(&referring, hit, VERDAL_NOTIFY_VALUE_CHANGED, index, 0, 0);
    referring.MarkDirty();
    break;
  }
  NotifyChange(&target, newNode, VERDAL_NOTIFY_CURRENT_CHANGED, -10, 0, 0);
  return true;
}

int32_t ExistsReferenceEntry(TDBManager& referring, TDBManager& target, int32_t node,
                             int32_t fieldIndex) {
  const int32_t resolved = model::ResolveCursor(referring.store, node);
  model::TDBCategoryData* place = resolved != -1 ? model::LookupPlace(referring.store, resolved) : nullptr;
  if (place == nullptr) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }
  model::TDBFieldInfo* field = FieldAt(referring, fieldIndex);
  if (field == nullptr) {
    SetLastError(VERDAL_ERR_FIELD);
    return 0;
  }
  if (field->type.dataType != model::kTypeLink) return 0;
  std::optional<std::string_view> value = model::FieldValueOf(referring.store, place, fieldIndex);
  if (!value) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }
  return PlaceExists(target, model::ReadInteger(*value)) ? 1 : 0;
}

}  // namespace verdal::engine
