#include "engine/db_manager.h"

#include "engine/handle_table.h"
#include "engine/last_error.h"
#include "engine/pool_manager.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/guid.h"
#include "platform/trace.h"

namespace verdal::engine {

TDBManager::TDBManager(int32_t sizeClass) : store(sizeClass) {
  store.rootExpanded = true;
  identifier = platform::NewGuidText();
  lastCheck = platform::TickCount();
  handle_ = Handles().Issue(this);
}

TDBManager::~TDBManager() {
  closing = true;
  Close();
  model::ClearStore(store, false);
  Handles().Release(handle_);
}

void TDBManager::Close() {
  // Saving dirty data, the SQL binding and the temporary file arrive with the file format; a
  // database without a file has nothing to write.
  sqlConnection = 0;
}

bool TDBManager::Open(const char* name, bool create, bool readOnlyIn, bool refuseReadOnly) {
  if (name == nullptr || *name == '\0') {
    Close();
    return true;
  }
  bool exists = platform::FileExists(name);
  if (!readOnlyIn) {
    bool cannotWrite = platform::IsOnReadOnlyMedium(name) ||
                       (!create && exists && !platform::MakeWritable(name));
    if (cannotWrite) {
      if (refuseReadOnly) return false;
      readOnlyIn = true;
    }
  }
  if (platform::HasExtension(name, ".imp")) {
    // Import definitions open through the import gateway, which this build does not have.
    platform::Trace("TDBManager::Open failed for '%s'", name);
    return false;
  }
  if (readOnlyIn) create = false;
  if (!exists && !create) {
    platform::Trace("TDBManager::Open failed for '%s'", name);
    return false;
  }
  // Reading and writing database files is not built yet: an existing file cannot be read and a
  // new one cannot be written.
  if (exists) {
    SetLastError(25);
    platform::Trace("TDBManager::Load failed for '%s'", name);
  } else {
    SetLastError(26);
    platform::Trace("TDBManager::Save failed for '%s'", name);
  }
  return false;
}

TDBManager* AcceptHandle(uint32_t handle) {
  if (!Pool().Find(handle)) {
    SetLastError(1);
    return nullptr;
  }
  return Handles().Lookup(handle);
}

}  // namespace verdal::engine
