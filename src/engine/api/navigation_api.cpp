// Exported functions that walk the tree and move nodes.
#include "engine/api/api_frame.h"
#include "engine/navigation.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

extern "C" {

VERDAL_API int32_t VERDAL_Seek(VerdalHandle handle, int32_t cursor, int32_t count, int32_t wrap,
                               int32_t descend, int32_t keepCurrent, int32_t* categoryOut,
                               int32_t kinds) {
  return api::WithDatabase("VERDAL_Seek", handle, -1, Judge::kLastError, [&](TDBManager& db) {
    return engine::Seek(db, cursor, count, wrap != 0, descend != 0, keepCurrent != 0, categoryOut, kinds);
  });
}

VERDAL_API int32_t VERDAL_MoveChild(VerdalHandle handle, int32_t cursor, int32_t target, int32_t kinds) {
  return api::WithDatabase("VERDAL_MoveChild", handle, 0, Judge::kResult,
                           [&](TDBManager& db) { return engine::MoveChild(db, cursor, target, kinds); });
}

VERDAL_API int32_t VERDAL_IsChildOf(VerdalHandle handle, int32_t cursor, int32_t other) {
  int32_t result = 0;
  try {
    engine::SetLastError(VERDAL_ERR_NONE);
    if (TDBManager* db = engine::AcceptHandle(handle)) result = engine::IsChildOf(*db, cursor, other);
  } catch (...) {
    if (engine::LastError() == 0) engine::SetLastError(VERDAL_ERR_INTERNAL);
    result = 0;
  }
  if (engine::LastError() != 0)
    platform::Trace("Error in VERDAL_IsChildOf: ID=%d\nError=%s", engine::LastError(),
                    engine::ErrorMessage(engine::LastError()));
  return result;
}

}  // extern "C"
