#include "engine/db_manager.h"

#include <unistd.h>

#include "engine/file_passwords.h"
#include "engine/handle_table.h"
#include "engine/last_error.h"
#include "engine/pool_manager.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/guid.h"
#include "platform/trace.h"
#include "storage/envelope.h"

namespace verdal::engine {

TDBManager::TDBManager(int32_t sizeClass) : StoredDatabase(sizeClass) {
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

namespace {

// "%s~%s" of the folder and the file name: the temporary file of a save lies beside the database,
// so that the final rename stays on one file system.
std::string TemporaryNameOf(const std::string& name) {
  size_t slash = name.find_last_of("/\\");
  size_t at = slash == std::string::npos ? 0 : slash + 1;
  return name.substr(0, at) + "~" + name.substr(at);
}

// The file name with ".bak" in place of its extension.
std::string BackupNameOf(const std::string& name) {
  size_t slash = name.find_last_of("/\\");
  size_t dot = name.find_last_of('.');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return name + ".bak";
  return name.substr(0, dot) + ".bak";
}

bool ReadFile(TDBManager& db, TBaseFile& file) {
  try {
    FilePasswords passwords(db.fileName);
    return storage::ReadEnvelope(db, file, passwords);
  } catch (...) {
    return false;
  }
}

// Writes the whole database to a new file beside `name`, forces it to disk, and puts it in place
// of `name` in one step. Whatever fails, `name` holds its old content or the new.
bool WriteReplacing(TDBManager& db, const std::string& name) {
  std::string temporary = TemporaryNameOf(name);
  if (platform::FileExists(temporary.c_str())) platform::MakeWritable(temporary.c_str());
  bool written = false;
  {
    TFileEx out;
    if (!out.Open(temporary.c_str(), TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kTruncate))
      return false;
    try {
      written = storage::WriteEnvelope(db, out) && out.Sync();
    } catch (...) {
      written = false;
    }
    out.Close();
  }
  if (!written) {
    ::unlink(platform::NativePath(temporary.c_str()).c_str());
    return false;
  }
  // Held open across the rename: the old content is wiped once the new file has its name.
  platform::FileToWipe old(name.c_str());
  if (!platform::RenameFile(temporary.c_str(), name.c_str())) return false;
  old.Wipe();
  return true;
}

}  // namespace

void TDBManager::Close() {
  if (dirty && saveOnClose) SafeSave();
  sqlLink.connection = 0;
  file.reset();
  if (!temporaryName.empty() && platform::FileExists(temporaryName.c_str()))
    platform::WipeFile(temporaryName.c_str());
}

bool TDBManager::SafeSave() {
  if (readOnly || importLink.active || !file) return true;
  Pool().SetSessionPassword(fileName, password);
  file.reset();
  const char* backup = backupName.c_str();
  if (platform::FileExists(backup)) platform::MakeWritable(backup);
  bool saved = false;
  if (platform::CopyFile(fileName.c_str(), backup)) {
    platform::MakeWritable(backup);
    saved = WriteReplacing(*this, fileName);
  }
  if (dirty) dirty = !saved;
  auto reopened = std::make_unique<TFileEx>();
  if (reopened->Open(fileName.c_str(), TFileEx::kReadWrite)) file = std::move(reopened);
  return saved && file != nullptr;
}

bool TDBManager::SaveCopy(const char* name) {
  if (name == nullptr || *name == '\0') return false;
  return WriteReplacing(*this, platform::NativePath(name));
}

bool TDBManager::Reload() {
  if (!file) return false;
  if (!ReadFile(*this, *file)) {
    SetLastError(VERDAL_ERR_READ_FILE);
    platform::Trace("TDBManager::Load failed for '%s'", fileName.c_str());
    return false;
  }
  dirty = false;
  return true;
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
  Close();
  uint32_t flags = readOnlyIn ? TFileEx::kRead : TFileEx::kReadWrite;
  if (!exists) flags |= TFileEx::kCreate | TFileEx::kTruncate;
  auto opened = std::make_unique<TFileEx>();
  if (!opened->Open(name, flags)) return false;
  file = std::move(opened);
  readOnly = readOnlyIn;
  temporaryName = TemporaryNameOf(name);
  if (platform::FileExists(temporaryName.c_str())) platform::MakeWritable(temporaryName.c_str());
  backupName = BackupNameOf(name);
  fileName = name;
  if (!exists) {
    if (!SafeSave()) {
      SetLastError(VERDAL_ERR_WRITE_FILE);
      platform::Trace("TDBManager::Save failed for '%s'", name);
      return false;
    }
  } else if (!ReadFile(*this, *file)) {
    SetLastError(VERDAL_ERR_READ_FILE);
    platform::Trace("TDBManager::Load failed for '%s'", name);
    file.reset();
    return false;
  }
  if (!readOnly && !importLink.active && exists && !platform::FileExists(backupName.c_str())) {
    if (platform::CopyFile(name, backupName.c_str())) platform::MakeWritable(backupName.c_str());
  }
  if (readOnly) platform::FileTime(name, fileTime);
  return true;
}

TDBManager* AcceptHandle(uint32_t handle) {
  if (!Pool().Find(handle)) {
    SetLastError(VERDAL_ERR_HANDLE);
    return nullptr;
  }
  return Handles().Lookup(handle);
}

}  // namespace verdal::engine
