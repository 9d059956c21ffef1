#include "engine/database_call.h"

#include "engine/db_manager.h"
#include "engine/last_error.h"
#include "engine/lifecycle.h"
#include "engine/record_ops.h"
#include "platform/trace.h"

namespace verdal::engine {

DatabaseCall::DatabaseCall(TDBManager& db) : db_(db) { ++db_.activeCalls; }

DatabaseCall::~DatabaseCall() {
  if (--db_.activeCalls > 0 || (!db_.emptyRequested && !db_.closeRequested)) return;
  // The outer call has its result and its last error already; what is carried out now may not
  // change either, nor throw out of a destructor.
  const VerdalError lastError = static_cast<VerdalError>(LastError());
  try {
    if (db_.emptyRequested) {
      db_.emptyRequested = false;
      EmptyData(db_, db_.emptyKeepsDefinitions);
    }
    if (db_.closeRequested) CloseDatabase(db_.Handle());  // destroys db_
  } catch (...) {
    platform::Trace("DatabaseCall: deferred close or empty failed");
  }
  SetLastError(lastError);
}

bool InCall(const TDBManager& db) { return db.activeCalls > 0; }

bool InNestedCall(const TDBManager& db) { return db.activeCalls > 1; }

}  // namespace verdal::engine
