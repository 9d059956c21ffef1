#pragma once
// One open database: its store, its file, its envelope settings and its SQL binding. A plain
// class; its handle is an id from the handle table, issued when it is made.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "io/fileex.h"
#include "model/node_store.h"
#include "listing/filter_parts.h"

namespace verdal::engine {

class TDBManager {
 public:
  // A new, empty database: one view, version 13, current cursor -2, a fresh identifier.
  explicit TDBManager(int32_t sizeClass);
  // Sets closing first, so that a re-entrant open of its name fails, then closes and clears.
  ~TDBManager();
  TDBManager(const TDBManager&) = delete;
  TDBManager& operator=(const TDBManager&) = delete;

  uint32_t Handle() const { return handle_; }

  // The inner open: a null or empty name closes the file and goes on in memory. A new file is
  // written at once; an existing one is read (code 25 when that fails, 26 when writing fails).
  bool Open(const char* fileName, bool create, bool readOnly, bool refuseReadOnly);
  // The inner close: saves what is dirty, drops the SQL binding and the file.
  void Close();
  // Writes the database over its file so that a failure at any step leaves the old file or the
  // new one under the name, and the old one in the backup. True without work for a database that
  // is read-only, imported or has no file.
  bool SafeSave();
  // Writes a copy under another name, in place: the file is opened with create and truncate, so a
  // link is written through and the file keeps its inode and mode. The copy is made in memory
  // before the file is opened, and a file that the call created is removed when writing fails.
  // The database stays on its own file and stays dirty. Another name of the database's own file
  // gets the safe save.
  bool SaveCopy(const char* name);
  // Reads the open file again; false (code 25) when that fails.
  bool Reload();

  void MarkDirty() { dirty = true; }

  std::unique_ptr<TFileEx> file;  // stays open between saves; null for a database in memory
  model::NodeStore store;
  listing::TDBFilterCollection filters;
  int16_t version = 13;
  uint32_t reservedWord = 0;
  bool compressed = false;
  bool enciphered = false;
  uint32_t storedLength = 0;
  uint32_t plainLength = 0;
  std::string password;
  bool dirty = false;
  bool importMode = false;
  bool saveOnClose = true;
  bool readOnly = false;
  int64_t fileTime = 0;  // last-write time in nanoseconds, kept for read-only and import mode
  std::string defaultPrintOption;
  std::vector<int32_t> deletedRows;
  intptr_t sqlConnection = 0;
  std::string keyColumn;
  std::string tableName;
  bool serverKind = false;
  std::string databaseName;
  uint32_t lastCheck = 0;
  std::string fileName;
  std::string importFile;
  bool writeBack = false;
  std::string backupName;
  std::string temporaryName;
  std::string identifier;
  bool closing = false;

 private:
  uint32_t handle_ = 0;
};

// The database behind a handle that the pool holds; null (and last error 1) for any other.
TDBManager* AcceptHandle(uint32_t handle);

}  // namespace verdal::engine
