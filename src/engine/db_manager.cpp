#include "engine/db_manager.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdint>

#include "engine/file_passwords.h"
#include "engine/handle_table.h"
#include "engine/import.h"
#include "engine/last_error.h"
#include "engine/linked_table.h"
#include "engine/pool_manager.h"
#include "io/memfile.h"
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
  // What lies under the temporary name is a leftover of the database's own: it goes, and the new
  // file is made afresh, so that a link planted there is never written through. (Deleting needs
  // no write permission on the file, so the Part's "make it writable" has nothing to do here.)
  ::unlink(platform::NativePath(temporary.c_str()).c_str());
  bool written = false;
  {
    TFileEx out;
    if (!out.Open(temporary.c_str(), TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kExclusive))
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
  // Held open across the rename: the old content is wiped once the new file has its name, unless
  // another link still names it.
  platform::FileToWipe old(name.c_str());
  if (!platform::RenameFile(temporary.c_str(), name.c_str())) return false;
  old.Wipe();
  return true;
}

// Writes bytes as the whole content of `name` in place: opened with create and truncate, so a
// symbolic link is written through and an existing file keeps its inode, its other links and its
// mode. A file that this call created is removed again if writing fails.
bool WriteInPlace(const std::string& name, TMemFile& image) {
  const bool existed = platform::FileExists(name.c_str());
  TFileEx out;
  if (!out.Open(name.c_str(), TFileEx::kReadWrite | TFileEx::kCreate | TFileEx::kTruncate))
    return false;
  const int32_t length = static_cast<int32_t>(image.GetLength());
  bool written = false;
  try {
    out.LockRange(0, length);
    out.Write(image.Data(), length);
    written = out.Sync();
    out.UnlockRange(0, length);
  } catch (...) {
    written = false;
  }
  if (!written && !existed) platform::RemoveCreatedFile(out.Descriptor(), name.c_str());
  if (!out.Close()) written = false;
  return written;
}

}  // namespace

void TDBManager::Close() {
  if (dirty) {
    WriteBackImportSource(*this);
    if (saveOnClose) SafeSave();
  }
  CloseLinkedTable(*this);
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
  std::string target = platform::NativePath(name);
  // The database's own file under another spelling (a link, another path): truncating it in place
  // would risk the only copy, so it gets the safe save its own name gets.
  if (file && platform::SameFile(file->Descriptor(), target.c_str())) return SafeSave();
  // The whole file is made in memory first: whatever fails there (the cipher above all) fails
  // before the target is opened, so a new target is never made and an existing one keeps its
  // content.
  const int32_t estimate = static_cast<int32_t>(std::min<uint64_t>(
      uint64_t{storedLength} + 4096 + identifier.size(), uint64_t{INT32_MAX} / 2));
  TMemFile image(std::max<int32_t>(estimate, 65536));
  if (!image.IsOpen()) return false;
  bool made = false;
  try {
    made = storage::WriteEnvelope(*this, image);
  } catch (...) {
    made = false;
  }
  return made && WriteInPlace(target, image);
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
  if (platform::NameTooLong(name)) {
    // Neither missing nor there: a name the system does not take is refused as such.
    SetLastError(VERDAL_ERR_INPUT);
    platform::Trace("TDBManager::Open failed for '%s'", name);
    return false;
  }
  bool exists = platform::FileExists(name);
  if (!readOnlyIn) {
    // A file that cannot be written opens read-only, or fails with the refuse flag. Where the
    // file is to be kept (create off) its write protection is cleared first, as the Part says;
    // an open that may create leaves the file's protection as the owner set it.
    bool cannotWrite = platform::IsOnReadOnlyMedium(name) ||
                       (exists && !(create ? platform::IsWritable(name) : platform::MakeWritable(name)));
    if (cannotWrite) {
      if (refuseReadOnly) return false;
      readOnlyIn = true;
    }
  }
  if (platform::HasExtension(name, ".imp")) {
    // An import definition opens as what it imports; its file is never written as a database.
    importLink.active = true;
    fileName = name;
    ImportRequest request;
    request.input = name;
    if (Import(*this, request) == 0) return false;
    platform::FileTime(name, fileTime);
    return true;
  }
  if (readOnlyIn) create = false;
  if (!exists && !create) {
    platform::Trace("TDBManager::Open failed for '%s'", name);
    return false;
  }
  Close();
  uint32_t flags = readOnlyIn ? TFileEx::kRead : TFileEx::kReadWrite;
  // A new file is made exclusively rather than with truncation: a file that is there after all
  // (one that appeared since the test above) fails the open instead of losing its content.
  if (!exists) flags |= TFileEx::kCreate | TFileEx::kExclusive;
  auto opened = std::make_unique<TFileEx>();
  if (!opened->Open(name, flags)) {
    // A new file that cannot be made (its folder is missing, say) is a failed write; a file that
    // is there but cannot be opened, a failed read.
    SetLastError(exists ? VERDAL_ERR_READ_FILE : VERDAL_ERR_WRITE_FILE);
    platform::Trace(exists ? "TDBManager::Load failed for '%s'" : "TDBManager::Save failed for '%s'", name);
    return false;
  }
  file = std::move(opened);
  readOnly = readOnlyIn;
  // The Part makes an existing temporary file writable here; on Linux its deletion and wiping
  // need no such step (the wipe clears the protection of a file it holds itself), and a link
  // planted under the name must not have the file it leads to changed.
  temporaryName = TemporaryNameOf(name);
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
