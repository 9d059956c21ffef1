#pragma once
// The changes of a linked database, written through to its table on a bridge connection. Each
// function is one entry point's work; the C boundary (entry_points.cpp) only adds the guard.
// Values are always bound parameters; names are quoted with the driver's identifier quote.
#include <cstdint>

namespace verdal::sqlbridge {

// Gathers one column of a new row; the call with isLast runs the INSERT and gives the new row's
// key. An empty value of a non-text column is left out of the INSERT, so the column gets the
// server's default (NULL where it has none) and the engine can read a server-filled value back.
int32_t AddNewValue(int32_t connection, const char* table, const char* keyColumn,
                    const char* sqlType, const char* value, const char* fieldName, int32_t isFirst,
                    int32_t isLast, char* errorText, int32_t errorSize, int32_t* newKey);
// Sets one column of one row; an empty value of a non-text column sets NULL. A key that names no
// row is a failure.
int32_t UpdateValue(int32_t connection, const char* table, const char* keyColumn, int32_t rowKey,
                    const char* sqlType, const char* value, const char* fieldName,
                    char* errorText, int32_t errorSize);
// Deletes one row. A key that names no row (already gone) succeeds with a note in errorText.
int32_t DeleteRow(int32_t connection, const char* table, const char* keyColumn, int32_t rowKey,
                  char* errorText, int32_t errorSize);
// Reads one column of one row in internal form; *value null for NULL. 0 when there is no row.
int32_t GetValue(int32_t connection, const char* table, const char* fieldName,
                 const char* keyColumn, int32_t rowKey, const char** value);
// Closes and forgets a connection; 0 for an unknown id.
int32_t CloseConnection(int32_t connection);

}  // namespace verdal::sqlbridge
