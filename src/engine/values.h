#pragma once
// Reading, writing, finding, converting and comparing the values of records.
#include <cstdint>
#include <string>

#include "verdal.h"

namespace verdal::engine {

class TDBManager;

// Stores a value after checks and conversion; 1, or 0 with the code set. errorText (1024 bytes)
// receives the field's error text when validation refuses the value.
int32_t SetData(TDBManager& db, int32_t fieldIndex, const char* value, int32_t cursor,
                bool validate, char* errorText, VerdalWindow window);

// The stored text (raw) or the shown text of a value; null with the code set.
const char* GetData(TDBManager& db, int32_t fieldIndex, int32_t cursor, bool raw, bool useWords);

// The first node holding a value: 1 and its cursor, or 0 (no code) when there is none.
int32_t HasDataMember(TDBManager& db, int32_t fieldIndex, const char* value, bool asStored,
                      bool searchCategories, int32_t* cursorOut, int32_t skipCursor);

// A text brought to internal form or to its shown form by a field's type; null with code 2.
const char* ConvertData(TDBManager& db, int32_t fieldIndex, const char* text, bool toInternal,
                        bool useWords, bool validate);

// Orders the values of two nodes by the field's type; 1 and the order in result, or 0.
int32_t CompareValues(TDBManager& db, int32_t first, int32_t second, int32_t fieldIndex,
                      bool stringSort, bool reverse, int32_t* result);

}  // namespace verdal::engine
