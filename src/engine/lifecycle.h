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
  // Off for databases opened by following a link: reading a value must never leave a new, empty
  // file behind where a link names one that is missing.
  bool mayCreate = true;
};

// The open worker: the handle of the database, 0 on failure. A name that is open already gives
// its database, made writable or reloaded where the request and the file's time call for it; so
// does another name of a file that is open (a link, another spelling): one file, one database.
uint32_t OpenDatabase(const OpenRequest& request);

// Takes the database out of the pool and destroys it; false if the pool does not hold it.
bool CloseDatabase(uint32_t handle);

}  // namespace verdal::engine
