#pragma once
// Database handles are ids from this table, never addresses: an id is issued once per process and
// never reused, so a stale handle can never reach another database.
#include <cstdint>
#include <unordered_map>

namespace verdal::engine {

class TDBManager;

class HandleTable {
 public:
  uint32_t Issue(TDBManager* db);
  void Release(uint32_t handle);
  TDBManager* Lookup(uint32_t handle) const;

 private:
  uint32_t next_ = 1;
  std::unordered_map<uint32_t, TDBManager*> objects_;
};

HandleTable& Handles();

}  // namespace verdal::engine
