// Exported functions that find records by their identity text.
#include <optional>

#include "engine/api/api_frame.h"
#include "model/identity_index.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

extern "C" {

VERDAL_API int32_t VERDAL_InitIdentity(VerdalHandle handle) {
  return api::WithDatabase("VERDAL_InitIdentity", handle, 0, Judge::kResult, [&](TDBManager& db) {
    model::BuildIdentities(db.store);
    return 1;
  });
}

VERDAL_API int32_t VERDAL_ClearIdentity(VerdalHandle handle) {
  return api::WithDatabase("VERDAL_ClearIdentity", handle, 0, Judge::kResult, [&](TDBManager& db) {
    model::ClearIdentities(db.store);
    return 1;
  });
}

VERDAL_API int32_t VERDAL_FindIdentity(VerdalHandle handle, const char* text, int32_t* recordNumber) {
  // Not finding is no failure: judged by the last error, which only a bad handle sets.
  return api::WithDatabase("VERDAL_FindIdentity", handle, 0, Judge::kLastError, [&](TDBManager& db) {
    const std::optional<int32_t> found = model::FindIdentity(db.store, text);
    if (!found) return 0;
    if (recordNumber != nullptr) *recordNumber = *found;
    return 1;
  });
}

}  // extern "C"
