// Exported functions of link fields.
#include <cstdlib>
#include <cstring>

#include "engine/api/api_frame.h"
#include "engine/cross_data.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

namespace {

void FreeCandidates(int32_t count, char** strings, int32_t* ids) {
  if (count <= 0) return;
  if (strings != nullptr) {
    for (int32_t i = 0; i < count; ++i) std::free(strings[i]);
    std::free(strings);
  }
  std::free(ids);
}

// Hands the candidates over in malloc'd arrays, one entry more than the count; nothing for none.
bool HandOver(const engine::CrossCandidates& c, int32_t* count, char*** strings, int32_t** ids) {
  const size_t n = c.ids.size();
  if (count != nullptr) *count = 0;
  if (strings != nullptr) *strings = nullptr;
  if (ids != nullptr) *ids = nullptr;
  if (n == 0 || count == nullptr) return true;
  auto* textArray = static_cast<char**>(std::calloc(n + 1, sizeof(char*)));
  auto* idArray = static_cast<int32_t*>(std::malloc((n + 1) * sizeof(int32_t)));
  bool ok = textArray != nullptr && idArray != nullptr;
  for (size_t i = 0; ok && i < n; ++i) {
    textArray[i] = static_cast<char*>(std::malloc(c.texts[i].size() + 1));
    ok = textArray[i] != nullptr;
    if (ok) std::memcpy(textArray[i], c.texts[i].c_str(), c.texts[i].size() + 1);
    idArray[i] = c.ids[i];
  }
  if (!ok) {
    FreeCandidates(static_cast<int32_t>(n), textArray, idArray);
    engine::SetLastError(VERDAL_ERR_INTERNAL);
    return false;
  }
  idArray[n] = -1;
  *count = static_cast<int32_t>(n);
  // A host that asks for no texts (or no ids) gets none; what it did not take is freed here.
  if (strings != nullptr) {
    *strings = textArray;
  } else {
    FreeCandidates(static_cast<int32_t>(n), textArray, nullptr);
  }
  if (ids != nullptr) {
    *ids = idArray;
  } else {
    std::free(idArray);
  }
  return true;
}

}  // namespace

extern "C" {

VERDAL_API int32_t VERDAL_GetCrossInfo(VerdalHandle handle, int32_t fieldIndex, TCrossInfo* info) {
  return api::WithDatabase("VERDAL_GetCrossInfo", handle, 0, Judge::kResult, [&](TDBManager& db) {
    return engine::GetCrossInfo(db, fieldIndex, info) ? 1 : 0;
  });
}

VERDAL_API int32_t VERDAL_GetCrossData(VerdalHandle handle, int32_t fieldIndex, int32_t* count,
                                       char*** strings, int32_t** ids, TCrossInfo* info,
                                       int32_t node, const char* filter, int32_t withCategories) {
  return api::WithDatabase("VERDAL_GetCrossData", handle, 0, Judge::kResult, [&](TDBManager& db) {
    engine::CrossCandidates found;
    if (!engine::GetCrossData(db, fieldIndex, info, node, filter, withCategories != 0, found)) return 0;
    return HandOver(found, count, strings, ids) ? 1 : 0;
  });
}

VERDAL_API void VERDAL_DeleteGetCrossData(int32_t count, char** strings, int32_t* ids) {
  FreeCandidates(count, strings, ids);
}

VERDAL_API int32_t VERDAL_UpdateCrossValue(VerdalHandle targetHandle, VerdalHandle referringHandle,
                                           int32_t targetField, int32_t oldNode, int32_t newNode) {
  // An earlier last error stands when this succeeds, so the frame that clears it is not used.
  try {
    if (!engine::Pool().Find(targetHandle) || !engine::Pool().Find(referringHandle)) {
      engine::SetLastError(VERDAL_ERR_HANDLE);
      api::TraceFailure("VERDAL_UpdateCrossValue");
      return 0;
    }
    TDBManager* target = engine::Handles().Lookup(targetHandle);
    TDBManager* referring = engine::Handles().Lookup(referringHandle);
    engine::DatabaseCall targetCall(*target);
    engine::DatabaseCall referringCall(*referring);
    const bool done = engine::UpdateCrossValue(*target, *referring, targetField, oldNode, newNode);
    if (engine::LastError() != 0) api::TraceFailure("VERDAL_UpdateCrossValue");
    return done ? 1 : 0;
  } catch (...) {
    engine::SetLastError(VERDAL_ERR_INTERNAL);
    return 0;
  }
}

VERDAL_API int32_t VERDAL_ExistsReferenceEntry(VerdalHandle referringHandle, VerdalHandle targetHandle,
                                               int32_t node, int32_t fieldIndex) {
  return api::WithDatabase("VERDAL_ExistsReferenceEntry", referringHandle, 0, Judge::kLastError,
                           [&](TDBManager& referring) -> int32_t {
    TDBManager* target = engine::AcceptHandle(targetHandle);
    if (target == nullptr) return 0;
    engine::DatabaseCall call(*target);
    return engine::ExistsReferenceEntry(referring, *target, node, fieldIndex);
  });
}

}  // extern "C"
