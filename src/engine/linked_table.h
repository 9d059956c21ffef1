#pragma once
// A database bound to an SQL table or a text source changes there first and only then in memory.
// These are the write-through steps that record operations take; a database that is not bound
// passes each of them at once. The server's words reach the user in a message box over the
// parent window; without a window they are not shown.
#include <cstdint>
#include <string>

#include "verdal.h"

namespace verdal::model {
struct TDBDataRecord;
}

namespace verdal::engine {

class TDBManager;

bool IsLinkedToTable(const TDBManager& db);

// Inserts the record's row, notes its key in the record's external row and takes the values the
// server filled in. False when the table refused the row (the caller then drops the record).
bool InsertLinkedRow(TDBManager& db, model::TDBDataRecord& record, VerdalWindow parent);
// Deletes the record's row; with write-back, notes its key for the text source.
bool DeleteLinkedRow(TDBManager& db, const model::TDBDataRecord& record, VerdalWindow parent);
// Writes one value (in its stored form) to the record's row before it is stored.
bool UpdateLinkedField(TDBManager& db, const model::TDBDataRecord& record, int32_t fieldIndex,
                       const std::string& value, VerdalWindow parent);
// Ends the connection through the gateway that made it; the link is gone even where the gateway
// cannot be had.
void CloseLinkedTable(TDBManager& db);
// VERDAL_ExecSQL's worker: only for links to a MariaDB or MySQL server.
int32_t ExecuteSql(TDBManager& db, intptr_t a1, intptr_t a2, intptr_t a3, intptr_t a4, intptr_t a5,
                   intptr_t a6);

}  // namespace verdal::engine
