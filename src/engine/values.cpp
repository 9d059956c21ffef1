#include "engine/values.h"

#include <cstring>

#include "io/text_buffer.h"
#include "engine/db_manager.h"
#include "engine/last_error.h"
#include "engine/linked_table.h"
#include "engine/database_links.h"
#include "engine/handle_table.h"
#include "engine/link_walk.h"
#include "model/number_text.h"
#include "engine/notify.h"
#include "model/cursor.h"
#include "model/place_walk.h"
#include "platform/clock.h"

namespace verdal::engine {

using namespace model;

namespace {

// Texts handed to the host: each function has its own buffers, so no other call ends them.
TextRing g_getDataTexts;
TextRing g_convertTexts;

constexpr size_t kErrorTextSize = 1024;

TDBFieldInfo* FieldAt(NodeStore& store, int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= store.fields.size()) return nullptr;
  return store.fields[static_cast<size_t>(index)].get();
}

StoredForm ByFieldType(NodeStore& store) {
  return [&store](int32_t fieldIndex, std::string_view value) {
    std::string out;
    store.fields[static_cast<size_t>(fieldIndex)]->type.ToInternal(value, out, false, nullptr);
    return out;
  };
}


}  // namespace

int32_t SetData(TDBManager& db, int32_t fieldIndex, const char* value, int32_t cursor,
                bool validate, char* errorText, VerdalWindow window) {
  NodeStore& store = db.store;
  int32_t resolved = ResolveCursor(store, cursor);
  TDBCategoryData* place = LookupPlace(store, resolved);  // null for -1 too
  if (place == nullptr) {
    SetLastError(VERDAL_ERR_CURSOR);
    return 0;
  }
  TDBFieldInfo* field = FieldAt(store, fieldIndex);
  if (field == nullptr) {
    SetLastError(VERDAL_ERR_FIELD);
    return 0;
  }
  if (field->type.isCounter || field->type.readOnly) {
    SetLastError(VERDAL_ERR_READ_ONLY_FIELD);
    return 0;
  }
  TDBDataRecord* data = DataOf(store, place);
  if (data == nullptr || field->position < 0 || static_cast<size_t>(field->position) >= data->values.size()) {
    SetLastError(VERDAL_ERR_TARGET);
    return 0;
  }
  const char* text = value != nullptr ? value : "";
  if (validate && !field->type.allowDuplicates &&
      FindByValue(store, fieldIndex, text, false, true, resolved, ByFieldType(store)) >= 0) {
    SetLastError(VERDAL_ERR_INPUT);
    return 0;
  }
  std::string converted;
  std::string error;
  if (!field->type.ToInternal(text, converted, validate, &error)) {
    CopyCut(errorText, kErrorTextSize, error);
    SetLastError(VERDAL_ERR_INPUT);
    return 0;
  }
  if (!UpdateLinkedField(db, *data, fieldIndex, converted, window)) {
    SetLastError(VERDAL_ERR_SQL_UPDATE);
    return 0;
  }
  data->values.Set(static_cast<size_t>(field->position), converted);
  data->changed = platform::NowLocal();
  data->modified = 1;
  data->temporary = false;
  place->temporary = false;
  db.MarkDirty();
  NotifyChange(&db, resolved, VERDAL_NOTIFY_VALUE_CHANGED, fieldIndex, 0, 0);
  // A cursor kept on the linked record follows the edit: the linked database is told of the
  // record the value names, and the notification carries it on along the rest of the chain. When
  // the edited record is the current one, the record it now links to becomes current there.
  TDBRecursChecker chain;
  if (value != nullptr && field->type.dataType == kTypeLink &&
      ReadChain(db, fieldIndex, chain, "VERDAL_SetData()")) {
    if (TDBManager* target = Handles().Lookup(chain.handles[1])) {
      const int32_t linked = ReadInteger(converted);
      if (resolved == store.currentCursor) target->store.currentCursor = linked;
      NotifyChange(target, linked, VERDAL_NOTIFY_CURRENT_CHANGED, -10, 0, 0);
    }
  }
  return 1;
}

const char* GetData(TDBManager& db, int32_t fieldIndex, int32_t cursor, bool raw, bool useWords) {
  NodeStore& store = db.store;
  int32_t resolved = ResolveCursor(store, cursor);
  if (resolved == -1) {
    SetLastError(VERDAL_ERR_CURSOR);
    return nullptr;
  }
  TDBFieldInfo* field = FieldAt(store, fieldIndex);
  if (field == nullptr) {
    SetLastError(VERDAL_ERR_FIELD);
    return nullptr;
  }
  std::optional<std::string_view> stored = FieldValue(store, resolved, fieldIndex);
  if (!stored) {
    SetLastError(VERDAL_ERR_CURSOR);
    return nullptr;
  }
  // Copied even when raw: the stored text moves when another value of the record changes.
  if (raw) return g_getDataTexts.Keep(*stored);
  std::string shown;
  field->type.CreateDisplayString(*stored, shown, useWords, false, &db.links);
  return g_getDataTexts.Keep(shown);
}

int32_t HasDataMember(TDBManager& db, int32_t fieldIndex, const char* value, bool asStored,
                      bool searchCategories, int32_t* cursorOut, int32_t skipCursor) {
  if (cursorOut != nullptr) *cursorOut = -1;
  int32_t found = FindByValue(db.store, fieldIndex, value, asStored, searchCategories, skipCursor,
                              ByFieldType(db.store));
  if (found < 0) return 0;
  if (cursorOut != nullptr) *cursorOut = found;
  return 1;
}

const char* ConvertData(TDBManager& db, int32_t fieldIndex, const char* text, bool toInternal,
                        bool useWords, bool validate) {
  TDBFieldInfo* field = FieldAt(db.store, fieldIndex);
  if (field == nullptr) {
    SetLastError(VERDAL_ERR_FIELD);
    return nullptr;
  }
  const std::string given = text != nullptr ? text : "";
  std::string converted = given;  // what a refused conversion leaves
  if (toInternal)
    field->type.ToInternal(given, converted, validate, nullptr);
  else
    field->type.CreateDisplayString(given, converted, useWords, false, &db.links);
  return g_convertTexts.Keep(converted);
}

int32_t CompareValues(TDBManager& db, int32_t first, int32_t second, int32_t fieldIndex,
                      bool stringSort, bool reverse, int32_t* result) {
  NodeStore& store = db.store;
  TDBFieldInfo* field = FieldAt(store, fieldIndex);
  if (field == nullptr) {
    SetLastError(VERDAL_ERR_FIELD);
    return 0;
  }
  std::optional<std::string_view> a = FieldValue(store, first, fieldIndex);
  std::optional<std::string_view> b = FieldValue(store, second, fieldIndex);
  if (!a || !b) {
    SetLastError(VERDAL_ERR_TARGET);
    return 0;
  }
  int order = field->type.Compare(*a, *b, false, stringSort, true, nullptr, &db.links);
  if (result != nullptr) *result = reverse ? -order : order;
  return 1;
}

}  // namespace verdal::engine
