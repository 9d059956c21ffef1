#include "engine/linked_table.h"

#include "engine/db_manager.h"

namespace verdal::engine {

// No gateway module can be loaded in this build, so no database is ever bound to a table; a
// binding that somehow exists cannot be written through and fails rather than diverge.
bool IsLinkedToTable(const TDBManager& db) { return db.sqlLink.connection != 0; }

bool InsertLinkedRow(TDBManager& db, model::TDBDataRecord&, VerdalWindow) {
  return !IsLinkedToTable(db);
}

bool DeleteLinkedRow(TDBManager& db, const model::TDBDataRecord&) { return !IsLinkedToTable(db); }

bool UpdateLinkedField(TDBManager& db, const model::TDBDataRecord&, int32_t, const std::string&,
                       VerdalWindow) {
  return !IsLinkedToTable(db);
}

}  // namespace verdal::engine
