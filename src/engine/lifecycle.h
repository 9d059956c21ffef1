#pragma once
// Opening and closing databases as the exported functions do it.
#include <cstdint>

namespace verdal::engine {

struct OpenRequest {
  const char* fileName = nullptr;  // null: a database in memory only
  const char* password = nullptr;
  bool noSearch = false;
  bool search = false;
  const char* searchFolder = nullptr;
  int32_t sizeClass = 1;
  bool readOnly = false;
  bool refuseReadOnly = false;
};

// The open worker: the handle of the database, 0 on failure. A name that is open already gives
// its database, made writable or reloaded where the request and the file's time call for it.
uint32_t OpenDatabase(const OpenRequest& request);

// Takes the database out of the pool and destroys it; false if the pool does not hold it.
bool CloseDatabase(uint32_t handle);

}  // namespace verdal::engine
