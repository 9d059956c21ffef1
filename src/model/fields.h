#pragma once
// The field list of a database: lookup by name, adding (which gives every record a value),
// removing (which takes the value from every record), and the repair of positions at load.
#include <cstdint>
#include <memory>

#include "model/node_store.h"

namespace verdal::model {

// The most fields a database can hold: the file stores their count in 16 bits.
constexpr size_t kMaxFields = 32767;

// Case-insensitive; index receives the field's index where given. Null if there is none.
TDBFieldInfo* FieldByName(NodeStore& store, const char* name, int32_t* index = nullptr);

// The index (or with givePosition the position) of the named field, -1 if there is none. With
// givePosition and a record, a field whose position lies outside the record's values does not
// match.
int32_t FieldIndexByName(NodeStore& store, const char* name, bool givePosition = false,
                         const TDBDataRecord* record = nullptr);

// Adds a field made from pattern at index (-1: the end). Every data record gets a value for it at
// the end of its values: the next counter value, or the initial value converted. Gives the index.
int32_t AddFieldInfo(NodeStore& store, const TDBFieldInfo& pattern, int32_t index);

// Moves the field at from to index to (-1 or past the end: the last place). Gives the new index.
int32_t MoveField(NodeStore& store, int32_t from, int32_t to);

// Removes the field at index, and its value from every record.
void RemoveField(NodeStore& store, int32_t index);

// After a load: positions of N and above (from a damaged file) take the lowest free ones.
void RepairFieldPositions(NodeStore& store);

}  // namespace verdal::model
