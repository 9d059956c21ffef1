#pragma once
// A database bound to an SQL table or a text source changes there first and only then in memory.
// These are the three write-through steps that record operations take; a database that is not
// bound passes each of them at once.
#include <cstdint>
#include <string>

#include "verdal.h"

namespace verdal::model {
struct TDBDataRecord;
}

namespace verdal::engine {

class TDBManager;

bool IsLinkedToTable(const TDBManager& db);

// Inserts the record's row and notes its key in the record's external row.
bool InsertLinkedRow(TDBManager& db, model::TDBDataRecord& record, VerdalWindow parent);
bool DeleteLinkedRow(TDBManager& db, const model::TDBDataRecord& record);
bool UpdateLinkedField(TDBManager& db, const model::TDBDataRecord& record, int32_t fieldIndex,
                       const std::string& value, VerdalWindow parent);

}  // namespace verdal::engine
