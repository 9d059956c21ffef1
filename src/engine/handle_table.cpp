#include "engine/handle_table.h"

namespace verdal::engine {

uint32_t HandleTable::Issue(TDBManager* db) {
  uint32_t handle = next_++;
  if (next_ == 0) next_ = 1;  // after four billion opens; 0 stays "no database"
  objects_[handle] = db;
  return handle;
}

void HandleTable::Release(uint32_t handle) { objects_.erase(handle); }

TDBManager* HandleTable::Lookup(uint32_t handle) const {
  auto it = objects_.find(handle);
  return it == objects_.end() ? nullptr : it->second;
}

HandleTable& Handles() {
  // Never destroyed: databases still open at unload are closed after static destructors ran.
  static HandleTable* table = new HandleTable;
  return *table;
}

}  // namespace verdal::engine
