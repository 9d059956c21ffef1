#pragma once
// What the engine does to a linked table's rows: insert by a run of column values, update, delete,
// read one column back, and run a statement of the host's. Each works on a connection of the
// table by id, returns 1 on success and 0 on failure, and puts the server's words (code page 1252)
// into errorText on failure, or a warning on success.
#include <cstdint>

namespace verdal::mysqlgate {

int32_t InsertColumn(int32_t connection, const char* database, const char* table,
                     const char* keyColumn, const char* sqlType, const char* value,
                     const char* fieldName, bool isFirst, bool isLast, char* errorText,
                     int32_t errorSize, int32_t* newKey);
int32_t UpdateColumn(int32_t connection, const char* database, const char* table,
                     const char* keyColumn, int32_t rowKey, const char* sqlType, const char* value,
                     const char* fieldName, bool isFirst, bool isLast, char* errorText,
                     int32_t errorSize);
int32_t DeleteRow(int32_t connection, const char* database, const char* table,
                  const char* keyColumn, int32_t rowKey, char* errorText, int32_t errorSize);
// *value points into the connection's own buffer until its next read-back; null for NULL.
int32_t ReadColumn(int32_t connection, const char* database, const char* table,
                   const char* fieldName, const char* keyColumn, int32_t rowKey,
                   const char** value);
// A host's statement with `?` placeholders and its parameter values (null pointers bind NULL).
// `firstValue` (may be null) receives the first column of the first row, or on failure the
// server's words; *affected (may be null) the rows changed, or the rows of a result.
int32_t ExecuteStatement(int32_t connection, const char* statement, const char* const* params,
                         int32_t paramCount, char* firstValue, int32_t firstValueSize,
                         int32_t* affected);

}  // namespace verdal::mysqlgate
