#include "engine/lifecycle.h"

#include <memory>
#include <string>
#include <vector>

#include "engine/database_call.h"
#include "engine/db_manager.h"
#include "engine/handle_table.h"
#include "engine/last_error.h"
#include "engine/pool_manager.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/trace.h"

namespace verdal::engine {
namespace {

// A read-only database is checked against its file at most this often.
constexpr uint32_t kReopenCheckMs = 2001;

enum class Reuse { kUse, kFail, kReplace };

// What to do with a database that is open under the requested name already.
Reuse ReuseOpen(TDBManager& db, const OpenRequest& r) {
  if (db.closing) return Reuse::kFail;
  bool isImport = platform::HasExtension(r.fileName, ".imp");
  if (!isImport && !r.readOnly && db.readOnly && !db.importLink.active) {
    // Somebody wants to write a database that was opened read-only. Reading it again would pull
    // the store from under a call at work on it (a host callback opening it).
    if (InCall(db)) return Reuse::kFail;
    if (!db.Open(r.fileName, false, false, r.refuseReadOnly)) return Reuse::kFail;
  }
  if (!isImport && (!r.readOnly || !db.readOnly)) return Reuse::kUse;
  uint32_t now = platform::TickCount();
  if (now - db.lastCheck < kReopenCheckMs || InCall(db)) return Reuse::kUse;
  db.lastCheck = now;
  int64_t time = 0;
  if (platform::FileTime(r.fileName, time) && time == db.fileTime) return Reuse::kUse;
  return Reuse::kReplace;
}

// Looks for a missing file: in the search folder, then next to the running program.
bool SearchFile(const OpenRequest& r, std::string& found) {
  std::string namePart = platform::FileNamePart(r.fileName);
  std::vector<std::string> candidates;
  if (r.searchFolder != nullptr && *r.searchFolder != '\0') {
    std::string folder = r.searchFolder;
    char last = folder.back();
    if (last != '\\' && last != '/') folder += '/';
    candidates.push_back(folder + namePart);
  }
  candidates.push_back(platform::ProgramFolder() + "/" + namePart);
  for (const std::string& c : candidates)
    if (platform::FileExists(c.c_str())) {
      found = c;
      return true;
    }
  return false;
}

// The open database whose file is the one this name leads to, 0 if none. Two databases in memory
// for one file would each save over the other's changes.
uint32_t FindOpenFile(const char* name) {
  for (int32_t i = 0; i < Pool().Count(); ++i) {
    TDBManager* db = Handles().Lookup(Pool().HandleAt(i));
    if (db != nullptr && db->file != nullptr && db->file->IsOpen() &&
        platform::SameFile(db->file->Descriptor(), name))
      return db->Handle();
  }
  return 0;
}

}  // namespace

uint32_t OpenDatabase(const OpenRequest& request) {
  OpenRequest r = request;
  std::string searched;
  if (r.fileName != nullptr) {
    if (uint32_t h = Pool().FindByName(r.fileName)) {
      TDBManager* existing = Handles().Lookup(h);
      switch (existing != nullptr ? ReuseOpen(*existing, r) : Reuse::kReplace) {
        case Reuse::kUse: return h;
        case Reuse::kFail: return 0;
        case Reuse::kReplace: Pool().Remove(h, true); break;
      }
    }
    if (platform::NameTooLong(r.fileName)) {
      // Longer than the system takes: refused as such, neither searched for nor created.
      SetLastError(VERDAL_ERR_INPUT);
      platform::Trace("VERDAL_OpenDBEx failed for '%s'", r.fileName);
      return 0;
    }
    if (uint32_t h = FindOpenFile(r.fileName)) {
      TDBManager* existing = Handles().Lookup(h);
      // Asked for under its own name, so that a reopen keeps the name the pool knows it by.
      const std::string own = existing->fileName;
      OpenRequest same = r;
      same.fileName = own.c_str();
      switch (ReuseOpen(*existing, same)) {
        case Reuse::kUse: return h;
        case Reuse::kFail: return 0;
        case Reuse::kReplace: Pool().Remove(h, true); break;
      }
    }
    if (!platform::FileExists(r.fileName) && !r.noSearch && r.search) {
      if (!SearchFile(r, searched)) {
        platform::Trace("VERDAL_OpenDBEx failed for '%s'", r.fileName);
        return 0;
      }
      if (uint32_t h = Pool().FindByName(searched.c_str())) return h;
      r.fileName = searched.c_str();
    }
  }

  auto db = std::make_unique<TDBManager>(r.sizeClass);
  if (r.fileName == nullptr) return Pool().Add(db.release()->Handle());
  db->password = r.password != nullptr ? r.password : "";
  if (!db->Open(r.fileName, !r.readOnly && r.mayCreate, r.readOnly, r.refuseReadOnly)) return 0;
  uint32_t handle = Pool().Add(r.fileName, db->Handle());
  if (handle == db->Handle()) db.release();  // the pool holds it now
  return handle;
}

bool CloseDatabase(uint32_t handle) {
  TDBManager* db = Pool().Find(handle) ? Handles().Lookup(handle) : nullptr;
  if (db == nullptr) {
    SetLastError(VERDAL_ERR_HANDLE);
    return false;
  }
  if (InCall(*db)) {  // asked from a callback: the outermost call closes it as it returns
    db->closeRequested = true;
    return true;
  }
  Pool().Remove(handle, false);
  delete db;
  return true;
}

}  // namespace verdal::engine
