#pragma once
// One exported call at work on a database. A host callback inside it may call back in, and what
// it asks for must not free the store under the outer call: closing and emptying the database
// are noted and carried out when the outermost call on it returns.
#include <cstdint>

namespace verdal::engine {

class TDBManager;

class DatabaseCall {
 public:
  explicit DatabaseCall(TDBManager& db);
  // The last one out carries out a deferred empty, then a deferred close.
  ~DatabaseCall();
  DatabaseCall(const DatabaseCall&) = delete;
  DatabaseCall& operator=(const DatabaseCall&) = delete;

 private:
  TDBManager& db_;
};

// True while any call is at work on the database.
bool InCall(const TDBManager& db);
// True when the call at work is not the only one: the present one came from a callback.
bool InNestedCall(const TDBManager& db);

}  // namespace verdal::engine
