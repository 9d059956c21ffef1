#pragma once
// Adding and deleting records and categories, as the exported functions do it. Each checks
// everything before it changes anything, tells the host before and after, and marks the
// database dirty.
#include <cstdint>

#include "verdal.h"

namespace verdal::engine {

class TDBManager;

// Delete flags.
constexpr int32_t kDeleteCategoriesBelow = 2;
constexpr int32_t kDeleteRecordsBelow = 4;

// The cursor of the new record; -1 with the code set (8 vetoed, 6 or 20 bad parent, 2 bad first
// field, 18 no row in the linked table).
int32_t AddRecord(TDBManager& db, int32_t parentCursor, const char* title, bool temporary,
                  const char* firstValue, int32_t firstField, VerdalWindow window);

// A new record holding the values of source, except counters (which count on) and read-only
// fields. -1 with the code set.
int32_t DuplicateRecord(TDBManager& db, int32_t sourceCursor, int32_t parentCursor, const char* title);

// The cursor of the new category; -1 with code 6 for a missing parent, 20 for a record as parent.
int32_t AddCategory(TDBManager& db, int32_t parentCursor, const char* name);

// Deletes a node; what lies below it is deleted or moved to the top level as the flags say.
int32_t DeleteRecord(TDBManager& db, int32_t cursor, int32_t flags, bool notify,
                     VerdalWindow parent, bool renumber);

// Destroys every record and category; with keepDefinitions off the fields go as well.
void EmptyData(TDBManager& db, bool keepDefinitions);

}  // namespace verdal::engine
