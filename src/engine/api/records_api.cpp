// Exported functions that add, delete and describe records and categories.
#include <cstring>

#include "engine/api/api_frame.h"
#include "engine/handle_table.h"
#include "engine/pool_manager.h"
#include "engine/record_ops.h"
#include "model/cursor.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

namespace {

// The place of any cursor, pseudo cursors resolved; null with code 5.
model::TDBCategoryData* PlaceOf(TDBManager& db, int32_t cursor) {
  model::TDBCategoryData* place = model::LookupPlace(db.store, model::ResolveCursor(db.store, cursor));
  if (place == nullptr) engine::SetLastError(VERDAL_ERR_CURSOR);
  return place;
}

// The data record behind a cursor; null with code 5 for no place, 10 for a place without one
// (the root).
model::TDBDataRecord* DataOf(TDBManager& db, int32_t cursor) {
  model::TDBCategoryData* place = PlaceOf(db, cursor);
  if (place == nullptr) return nullptr;
  model::TDBDataRecord* data = model::DataOf(db.store, place);
  if (data == nullptr) engine::SetLastError(VERDAL_ERR_TARGET);
  return data;
}

}  // namespace

extern "C" {

VERDAL_API int32_t VERDAL_AddCategory(VerdalHandle handle, int32_t parent, const char* name) {
  return api::WithDatabase("VERDAL_AddCategory", handle, 0, Judge::kLastError,
                           [&](TDBManager& db) { return engine::AddCategory(db, parent, name); });
}

VERDAL_API int32_t VERDAL_DeleteRecord(VerdalHandle handle, int32_t cursor, int32_t flags,
                                       int32_t notify, VerdalWindow parent, int32_t renumber) {
  return api::WithDatabase("VERDAL_DeleteRecord", handle, 0, Judge::kResult, [&](TDBManager& db) {
    return engine::DeleteRecord(db, cursor, flags, notify != 0, parent, renumber != 0);
  });
}

VERDAL_API int32_t VERDAL_EmptyData(VerdalHandle handle, int32_t keepDefinitions) {
  return api::WithDatabase("VERDAL_EmptyData", handle, 0, Judge::kResult, [&](TDBManager& db) {
    if (engine::InNestedCall(db)) {  // from a callback: the outermost call empties it
      db.emptyRequested = true;
      db.emptyKeepsDefinitions = keepDefinitions != 0;
      return 1;
    }
    engine::EmptyData(db, keepDefinitions != 0);
    return 1;
  });
}

VERDAL_API int32_t VERDAL_HasMember(VerdalHandle handle, int32_t cursor) {
  return api::WithDatabase("VERDAL_HasMember", handle, 0, Judge::kResult, [&](TDBManager& db) {
    if (cursor < -2 || cursor == -1 || model::LookupPlace(db.store, cursor) == nullptr) {
      engine::SetLastError(VERDAL_ERR_CURSOR);
      return 0;
    }
    return 1;
  });
}

VERDAL_API int32_t VERDAL_GetItemCount(VerdalHandle handle) {
  try {
    if (!engine::Pool().Find(handle)) return -1;
    return static_cast<int32_t>(engine::Handles().Lookup(handle)->store.MainView().categoryTree.size());
  } catch (...) {
    return -1;
  }
}

VERDAL_API int32_t VERDAL_GetSpecialData(VerdalHandle handle, int32_t index, int32_t cursor) {
  return api::WithDatabase("VERDAL_GetSpecialData", handle, -1, Judge::kLastError,
                           [&](TDBManager& db) -> int32_t {
    model::TDBCategoryData* place = PlaceOf(db, cursor);
    if (place == nullptr) return -1;
    if (index < 0 || index > 2) {
      engine::SetLastError(VERDAL_ERR_INDEX);
      return 0;
    }
    return place->special[index];
  });
}

VERDAL_API int32_t VERDAL_SetSpecialData(VerdalHandle handle, int32_t index, int32_t value,
                                         int32_t cursor) {
  return api::WithDatabase("VERDAL_SetSpecialData", handle, 0, Judge::kLastError,
                           [&](TDBManager& db) -> int32_t {
    model::TDBCategoryData* place = PlaceOf(db, cursor);
    if (place != nullptr && place->IsRootPlace()) {  // the root's place is shared by all databases
      engine::SetLastError(VERDAL_ERR_CURSOR);
      place = nullptr;
    }
    if (place == nullptr) return 0;
    if (index < 0 || index > 2) {
      engine::SetLastError(VERDAL_ERR_INDEX);
      return -1;
    }
    place->special[index] = value;
    return 1;
  });
}

VERDAL_API int32_t VERDAL_GetInternalData(VerdalHandle handle, int32_t cursor,
                                          VerdalLocalTime* created, VerdalLocalTime* changed,
                                          int32_t* modified, char* identifier) {
  return api::WithDatabase("VERDAL_GetInternalData", handle, 0, Judge::kResult,
                           [&](TDBManager& db) -> int32_t {
    model::TDBDataRecord* data = DataOf(db, cursor);
    if (data == nullptr) return 0;
    if (created != nullptr) std::memcpy(created, &data->created, sizeof *created);
    if (changed != nullptr) std::memcpy(changed, &data->changed, sizeof *changed);
    if (modified != nullptr) *modified = data->modified;
    if (identifier != nullptr) {
      // The host's buffer holds 37 bytes; a longer identifier from a foreign file is cut.
      constexpr size_t kIdentifierChars = 36;
      const std::string_view text = data->Identifier().substr(0, kIdentifierChars);
      std::memcpy(identifier, text.data(), text.size());
      identifier[text.size()] = '\0';
    }
    return 1;
  });
}

VERDAL_API int32_t VERDAL_SetInternalData(VerdalHandle handle, int32_t cursor,
                                          const VerdalLocalTime* created,
                                          const VerdalLocalTime* changed, const uint8_t* modified,
                                          const char* identifier) {
  return api::WithDatabase("VERDAL_SetInternalData", handle, 0, Judge::kResult,
                           [&](TDBManager& db) -> int32_t {
    model::TDBDataRecord* data = DataOf(db, cursor);
    if (data == nullptr) return 0;
    if (created != nullptr) std::memcpy(&data->created, created, sizeof *created);
    if (changed != nullptr) std::memcpy(&data->changed, changed, sizeof *changed);
    if (modified != nullptr) data->modified = *modified;
    if (identifier != nullptr) data->SetIdentifier(identifier);
    return 1;
  });
}

}  // extern "C"

extern "C" {

VERDAL_API int32_t VERDAL_AddRecord(VerdalHandle handle, int32_t parent, const char* title,
                                    int32_t temporary, const char* firstValue, int32_t firstField,
                                    int32_t /*unused*/, VerdalWindow window) {
  return api::WithDatabase("VERDAL_AddRecord", handle, -1, Judge::kLastError, [&](TDBManager& db) {
    return engine::AddRecord(db, parent, title, temporary != 0, firstValue, firstField, window);
  });
}

VERDAL_API int32_t VERDAL_DuplicateRecord(VerdalHandle handle, int32_t source, int32_t parent,
                                          const char* title) {
  // Traced under the name of VERDAL_AddRecord, whose path it follows.
  return api::WithDatabase("VERDAL_AddRecord", handle, -1, Judge::kLastError, [&](TDBManager& db) {
    return engine::DuplicateRecord(db, source, parent, title);
  });
}

}  // extern "C"
