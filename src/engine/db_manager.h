#pragma once
// One open database: its store, its file, its envelope settings and its SQL binding. A plain
// class; its handle is an id from the handle table, issued when it is made.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/database_links.h"
#include "io/fileex.h"
#include "storage/stored_database.h"

namespace verdal::engine {

// The binding to a table of an SQL server, to which every change is written through. Set by the
// SQL back-ends; a connection of 0 means none.
struct SqlLink {
  intptr_t connection = 0;
  std::string keyColumn;
  std::string tableName;
  std::string databaseName;
  bool serverKind = false;
};

// Import mode: the database holds what an exchange file brought and, with write-back, gives its
// changes and deleted rows back to it.
struct ImportLink {
  bool active = false;
  std::string fileName;
  bool writeBack = false;
  std::vector<int32_t> deletedRows;
};

class TDBManager : public storage::StoredDatabase {
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

  // The file, owned by the lifecycle above.
  std::unique_ptr<TFileEx> file;  // stays open between saves; null for a database in memory
  std::string fileName;
  std::string backupName;
  std::string temporaryName;
  bool readOnly = false;
  int64_t fileTime = 0;     // last-write time in nanoseconds, kept for read-only and import mode
  uint32_t lastCheck = 0;   // tick of the last look at fileTime
  bool dirty = false;
  bool saveOnClose = true;
  bool closing = false;
  // Calls at work on this database, and what callbacks inside them asked for (DatabaseCall).
  int32_t activeCalls = 0;
  bool closeRequested = false;
  bool emptyRequested = false;
  bool emptyKeepsDefinitions = true;
  // Option and list sheets at work on this database (OptionSheetOpen).
  int32_t openSheets = 0;
  // An import is building records, whose places join the tree only at its end (RefusedWhileImporting).
  bool importing = false;

  SqlLink sqlLink;
  ImportLink importLink;
  // What value conversion, filters and sorts follow link fields through.
  DatabaseLinks links{*this};

 private:
  uint32_t handle_ = 0;
};

// The database behind a handle that the pool holds; null (and last error 1) for any other.
TDBManager* AcceptHandle(uint32_t handle);

}  // namespace verdal::engine
