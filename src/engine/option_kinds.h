#pragma once
// A database's named options by kind, as the option functions of the interface see them: filters
// (1), printouts (2), sort definitions (3) and the five containers (5 to 10). Each function sets
// the host's owner on the collection before it uses it.
#include <cstdint>
#include <string>
#include <vector>

#include "engine/db_manager.h"

namespace verdal::engine {

// The collection behind kinds 3 and 5 to 10, with `owner` set; null for kinds 1, 2 and unknown
// kinds (filters have no TBaseConfigClass; printouts, db.prints, have no owners and their own sheet).
options::TBaseConfigClass* ConfigCollection(TDBManager& db, int32_t kind, int32_t owner);

// 0 for an unknown kind.
int32_t OptionCount(TDBManager& db, int32_t kind, int32_t owner);
// Null for a bad index or kind.
const char* OptionName(TDBManager& db, int32_t kind, int32_t index, int32_t owner);
// Null for an unknown kind.
const std::string* OptionDefault(TDBManager& db, int32_t kind, int32_t owner);
// False for an unknown kind.
bool SetOptionDefault(TDBManager& db, int32_t kind, const std::string& name, int32_t owner);

// The field names of a field view that the database has as fields, in the view's order.
std::vector<std::string> FieldViewFields(TDBManager& db, int32_t index, int32_t owner);

// Every option of every kind and the defaults, replacing those of the target.
void CopyOptions(const TDBManager& source, TDBManager& target);

// An option or list sheet at work on the database. Its pages hold the entries they show, so while
// it runs nothing may replace or remove them: a host callback that opens another sheet on the
// database or copies options into it is refused (code 10).
class OptionSheetOpen {
 public:
  explicit OptionSheetOpen(TDBManager& db) : db_(db) { ++db_.openSheets; }
  ~OptionSheetOpen() { --db_.openSheets; }
  OptionSheetOpen(const OptionSheetOpen&) = delete;
  OptionSheetOpen& operator=(const OptionSheetOpen&) = delete;
  // False, with last error 10, while a sheet is open on the database.
  static bool MayChange(TDBManager& db);

 private:
  TDBManager& db_;
};

}  // namespace verdal::engine
