#pragma once
// The frame every exported function runs its worker in: clear the last error, accept the handle,
// do the work, let no exception reach the host, and trace a failure.
#include <cstdint>
#include <utility>

#include "engine/database_call.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/last_error.h"
#include "engine/pool_manager.h"
#include "platform/trace.h"

namespace verdal::api {

// How the frame tells a failure: by the result being the failure value, or, for functions where
// that value is also a good result, by the last error.
enum class Judge { kResult, kLastError };

inline void TraceFailure(const char* function) {
  platform::Trace("Error in %s: ID=%d", function, engine::LastError());
}

// Runs work() with the last error cleared; an exception becomes the failure value, and a failure
// is told to the trace by trace().
template <class R, class Work, class Trace>
R GuardedTraced(R failure, Judge judge, Work&& work, Trace&& trace) {
  R result = failure;
  try {
    engine::SetLastError(VERDAL_ERR_NONE);
    result = work();
  } catch (...) {
    if (engine::LastError() == 0) engine::SetLastError(VERDAL_ERR_INTERNAL);
    result = failure;
  }
  bool failed = judge == Judge::kResult ? result == failure : engine::LastError() != 0;
  if (failed) trace();
  return result;
}

// The same with the usual trace line.
template <class R, class Work>
R Guarded(const char* function, R failure, Judge judge, Work&& work) {
  return GuardedTraced(failure, judge, std::forward<Work>(work), [function] { TraceFailure(function); });
}

// As Guarded, for a worker on one database: a handle the pool does not hold fails with code 1.
// The database stays whole while the worker runs, whatever a host callback inside it asks for.
template <class R, class Work>
R WithDatabase(const char* function, uint32_t handle, R failure, Judge judge, Work&& work) {
  return Guarded(function, failure, judge, [&]() -> R {
    engine::TDBManager* db = engine::AcceptHandle(handle);
    if (db == nullptr) return failure;
    engine::DatabaseCall call(*db);
    return work(*db);
  });
}

// For the few functions whose contract leaves the last error alone: an unknown handle or an
// exception gives the failure value and nothing else.
template <class R, class Work>
R QuietlyWithDatabase(uint32_t handle, R failure, Work&& work) {
  try {
    if (!engine::Pool().Find(handle)) return failure;
    engine::TDBManager* db = engine::Handles().Lookup(handle);
    engine::DatabaseCall call(*db);
    return work(*db);
  } catch (...) {
    return failure;
  }
}

}  // namespace verdal::api
