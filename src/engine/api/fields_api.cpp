// Exported functions on field definitions.
#include <cstring>

#include "io/text_buffer.h"
#include "engine/api/api_frame.h"
#include "engine/field_params.h"
#include "engine/handle_table.h"
#include "engine/pool_manager.h"
#include "model/fields.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

namespace {

bool HasForbiddenCharacter(const char* name) { return std::strpbrk(name, "|\\{}") != nullptr; }

model::TDBFieldInfo* FieldAt(TDBManager& db, int32_t index) {
  auto& fields = db.store.fields;
  if (index < 0 || static_cast<size_t>(index) >= fields.size()) return nullptr;
  return fields[static_cast<size_t>(index)].get();
}

}  // namespace

extern "C" {

VERDAL_API int32_t VERDAL_GetFieldSize(VerdalHandle handle) {
  return api::WithDatabase("VERDAL_GetFieldSize", handle, 0, Judge::kLastError, [&](TDBManager& db) {
    return static_cast<int32_t>(db.store.fields.size());
  });
}

VERDAL_API const char* VERDAL_GetFieldName(VerdalHandle handle, int32_t index) {
  try {
    if (!engine::Pool().Find(handle)) return nullptr;
    static TextRing names;
    model::TDBFieldInfo* field = FieldAt(*engine::Handles().Lookup(handle), index);
    return field != nullptr ? names.Keep(field->name) : nullptr;
  } catch (...) {
    return nullptr;
  }
}

VERDAL_API int32_t VERDAL_GetFieldIndex(VerdalHandle handle, const char* name) {
  return api::WithDatabase("VERDAL_GetFieldIndex", handle, -1, Judge::kLastError, [&](TDBManager& db) {
    int32_t index = model::FieldIndexByName(db.store, name);
    if (index < 0) engine::SetLastError(VERDAL_ERR_FIELD);
    return index;
  });
}

VERDAL_API int32_t VERDAL_GetFieldInfo(VerdalHandle handle, int32_t index, TDBFieldParams* info,
                                       TDBFieldParams* linked) {
  return api::WithDatabase("VERDAL_GetFieldInfo", handle, 0, Judge::kResult, [&](TDBManager& db) {
    model::TDBFieldInfo* field = FieldAt(db, index);
    if (field == nullptr) {
      engine::SetLastError(VERDAL_ERR_FIELD);
      return 0;
    }
    if (info == nullptr) {
      engine::SetLastError(VERDAL_ERR_TARGET);
      return 0;
    }
    engine::FillParams(*field, *info);
    if (linked == nullptr) return 1;
    if (field->type.dataType != model::kTypeLink) {
      *linked = *info;
      return 1;
    }
    // How a linked value is typed is told by the field at the far end; a link that does not
    // resolve leaves the record as the host gave it.
    TDBManager* far = nullptr;
    model::TDBFieldInfo* farField = nullptr;
    if (engine::ResolveField(db, index, far, farField)) engine::FillParams(*farField, *linked);
    return 1;
  });
}

VERDAL_API int32_t VERDAL_AddField(VerdalHandle handle, const TDBFieldParams* params, int32_t index,
                                   int32_t refuseExisting) {
  try {
    if (!engine::Pool().Find(handle)) return -1;
  } catch (...) {
    return -1;
  }
  return api::WithDatabase("VERDAL_AddField", handle, -1, Judge::kLastError, [&](TDBManager& db) -> int32_t {
    if (params == nullptr || params->name == nullptr) {
      engine::SetLastError(VERDAL_ERR_INPUT);
      return -1;
    }
    model::NodeStore& store = db.store;
    int32_t existing = model::FieldIndexByName(store, params->name);
    if (existing >= 0) {
      if (refuseExisting != 0) return -2;
      int32_t to = model::MoveField(store, existing, index);
      model::TDBFieldInfo& moved = *store.fields[static_cast<size_t>(to)];
      moved.type.hiddenInLists = 0;
      moved.type.dataType = params->dataType;
      return to;
    }
    if (HasForbiddenCharacter(params->name)) return -3;
    if (store.fields.size() >= model::kMaxFields) {
      engine::SetLastError(VERDAL_ERR_INPUT);
      return -1;
    }
    int32_t added = model::AddFieldInfo(store, engine::FieldFromParams(*params), -1);
    db.MarkDirty();
    return added;
  });
}

VERDAL_API int32_t VERDAL_HasSameDataFields(VerdalHandle first, VerdalHandle second, int32_t sameOrder) {
  return api::WithDatabase("VERDAL_HasSameDataFields", first, 0, Judge::kLastError, [&](TDBManager& a) {
    TDBManager* b = engine::AcceptHandle(second);
    if (b == nullptr) return 0;
    if (a.store.fields.size() != b->store.fields.size()) return 0;
    for (size_t i = 0; i < a.store.fields.size(); ++i) {
      const model::TDBFieldInfo& f = *a.store.fields[i];
      int32_t j = -1;
      const model::TDBFieldInfo* g = model::FieldByName(b->store, f.name.c_str(), &j);
      if (g == nullptr || g->type.dataType != f.type.dataType) return 0;
      if (sameOrder != 0 && j != static_cast<int32_t>(i)) return 0;
    }
    return 1;
  });
}

}  // extern "C"
