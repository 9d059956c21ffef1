// Exported functions of import, export, actions and the SQL links.
#include "engine/api/api_frame.h"
#include "engine/actions.h"
#include "engine/export.h"
#include "engine/import.h"
#include "engine/linked_table.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;
using engine::TDBManager;

extern "C" {

VERDAL_API int32_t VERDAL_Import(VerdalHandle handle, const char* input, intptr_t extra,
                                 VerdalPathMapperFn mapper, VerdalProgressFn progress,
                                 intptr_t option, int32_t flags, int32_t* outCount,
                                 int32_t** outCursors, int32_t fieldCount,
                                 const char* const* names1, const char* const* names2,
                                 intptr_t reserved) {
  auto work = [&]() -> int32_t {
    TDBManager* db = engine::AcceptHandle(handle);
    if (db == nullptr) return 0;
    // A callback of another call on this database would have the store it holds replaced.
    if (engine::InCall(*db)) {
      engine::SetLastError(VERDAL_ERR_TARGET);
      return 0;
    }
    engine::DatabaseCall call(*db);
    engine::ImportRequest request{input, extra, mapper, progress, option, flags, outCount,
                                  outCursors, fieldCount, names1, names2, reserved};
    return engine::Import(*db, request);
  };
  return api::GuardedTraced(0, Judge::kResult, work, [&] {
    platform::Trace("Error in VERDAL_Import: ID=%d, InputFile=%s", engine::LastError(),
                    input != nullptr ? input : "");
  });
}

VERDAL_API int32_t VERDAL_Export(VerdalHandle handle, const char* target, intptr_t extra,
                                 VerdalPathMapperFn mapper, intptr_t reserved, int32_t flags,
                                 int32_t count, const int32_t* cursors, intptr_t arg1,
                                 intptr_t arg2, intptr_t arg3, intptr_t arg4) {
  (void)reserved;
  return api::WithDatabase("VERDAL_Export", handle, 0, Judge::kResult, [&](TDBManager& db) {
    engine::ExportRequest request;
    request.target = target;
    request.extra = extra;
    request.mapper = mapper;
    request.flags = flags;
    request.count = count;
    request.cursors = cursors;
    request.args[0] = arg1;
    request.args[1] = arg2;
    request.args[2] = arg3;
    request.args[3] = arg4;
    return engine::Export(db, request);
  });
}

VERDAL_API int32_t VERDAL_ExecAction(VerdalHandle handle, int32_t kind, const char* name,
                                     int32_t count, const int32_t* cursors) {
  return api::WithDatabase("VERDAL_ExecAction", handle, 0, Judge::kResult, [&](TDBManager& db) {
    return engine::ExecAction(db, kind, name, count, cursors);
  });
}

VERDAL_API int32_t VERDAL_ExecSQL(VerdalHandle handle, intptr_t a1, intptr_t a2, intptr_t a3,
                                  intptr_t a4, intptr_t a5, intptr_t a6) {
  return api::WithDatabase("VERDAL_ExecSQL", handle, 0, Judge::kLastError, [&](TDBManager& db) {
    return engine::ExecuteSql(db, a1, a2, a3, a4, a5, a6);
  });
}

}  // extern "C"
