// Exported functions that open, close and describe databases.
#include <strings.h>

#include <cstring>
#include <vector>

#include "io/text_buffer.h"
#include "engine/api/api_frame.h"
#include "engine/lifecycle.h"
#include "engine/link_walk.h"
#include "engine/handle_table.h"
#include "engine/pool_manager.h"
#include "platform/trace.h"
#include "verdal.h"

using namespace verdal;
using api::Judge;


extern "C" {

VERDAL_API VerdalHandle VERDAL_OpenDB(const char* fileName, const char* password, int32_t noSearch,
                                      int32_t search, const char* searchFolder, int32_t sizeClass,
                                      int32_t readOnly, int32_t refuseReadOnly) {
  return api::Guarded("VERDAL_OpenDB", VerdalHandle{0}, Judge::kResult, [&]() -> VerdalHandle {
    engine::OpenRequest r;
    r.fileName = fileName;
    r.password = password;
    r.noSearch = noSearch != 0;
    r.search = search != 0;
    r.searchFolder = searchFolder;
    r.sizeClass = sizeClass;
    r.readOnly = readOnly != 0;
    r.refuseReadOnly = refuseReadOnly != 0;
    VerdalHandle handle = engine::OpenDatabase(r);
    if (handle != 0) {
      // Every database that link fields lead to is opened as well.
      std::vector<engine::TDBRecursChecker> chains;
      engine::WalkLinks(engine::Handles().Lookup(handle), chains, -1, nullptr, 0);
    }
    return handle;
  });
}

VERDAL_API int32_t VERDAL_CloseDB(VerdalHandle db) {
  return api::Guarded("VERDAL_CloseDB", 0, Judge::kResult,
                      [&]() -> int32_t { return engine::CloseDatabase(db) ? 1 : 0; });
}

VERDAL_API int32_t VERDAL_CloseDBByFileName(const char* fileName) {
  return api::Guarded("VERDAL_CloseDBByFileName", 0, Judge::kResult, [&]() -> int32_t {
    uint32_t handle = engine::Pool().FindByName(fileName);
    if (handle == 0) {
      engine::SetLastError(VERDAL_ERR_HANDLE);
      return 0;
    }
    return engine::CloseDatabase(handle) ? 1 : 0;
  });
}

VERDAL_API int32_t VERDAL_Load(VerdalHandle handle, const char* fileName, int32_t refuseReadOnly) {
  return api::WithDatabase("VERDAL_Load", handle, 0, Judge::kResult, [&](engine::TDBManager& db) -> int32_t {
    if (engine::InNestedCall(db)) {  // reading would pull the store from under the outer call
      engine::SetLastError(VERDAL_ERR_TARGET);
      return 0;
    }
    if (fileName == nullptr || strcasecmp(fileName, db.fileName.c_str()) == 0) return db.Reload() ? 1 : 0;
    if (!db.Open(fileName, false, db.readOnly, refuseReadOnly != 0)) return 0;
    engine::Pool().Rename(handle, fileName);
    return 1;
  });
}

VERDAL_API int32_t VERDAL_Save(VerdalHandle handle, const char* fileName) {
  return api::WithDatabase("VERDAL_Save", handle, 0, Judge::kResult, [&](engine::TDBManager& db) -> int32_t {
    const bool own = fileName == nullptr || *fileName == '\0' || strcasecmp(fileName, db.fileName.c_str()) == 0;
    if (own ? db.SafeSave() : db.SaveCopy(fileName)) return 1;
    // A save that failed says so with code 26, as every failed write of a database file does.
    if (engine::LastError() == 0) engine::SetLastError(VERDAL_ERR_WRITE_FILE);
    platform::Trace("TDBManager::Save failed for '%s'", own ? db.fileName.c_str() : fileName);
    return 0;
  });
}

VERDAL_API int32_t VERDAL_GetDBProperties(VerdalHandle handle, VerdalDBProperties* properties) {
  return api::WithDatabase("VERDAL_GetDBProperties", handle, 0, Judge::kResult,
                           [&](engine::TDBManager& db) -> int32_t {
    if (properties == nullptr) {
      engine::SetLastError(VERDAL_ERR_TARGET);
      return 0;
    }
    properties->readOnly = db.readOnly ? 1 : 0;
    properties->importMode = db.importLink.active ? 1 : 0;
    CopyCut(properties->password, sizeof properties->password, db.password);
    if (db.fileName.size() >= sizeof properties->fileName) {
      // A name cut to 259 characters would name another file: the record gets none, and the
      // call fails with code 10, the target being too small. The other members are filled.
      properties->fileName[0] = '\0';
      engine::SetLastError(VERDAL_ERR_TARGET);
      return 0;
    }
    CopyCut(properties->fileName, sizeof properties->fileName, db.fileName);
    return 1;
  });
}

VERDAL_API int32_t VERDAL_GetDBIdentifier(VerdalHandle handle, char* identifier) {
  return api::WithDatabase("VERDAL_GetDBIdentifier", handle, 0, Judge::kResult,
                           [&](engine::TDBManager& db) -> int32_t {
    if (identifier == nullptr) {
      engine::SetLastError(VERDAL_ERR_TARGET);
      return 0;
    }
    CopyCut(identifier, 37, db.identifier);
    return 1;
  });
}

}  // extern "C"
