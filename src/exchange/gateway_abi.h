#pragma once
// The entry points of the two gateway modules, libverdal_sqlbridge.so and libverdal_mysqlgate.so,
// as the engine calls them through dlsym. Plain C types only: a gateway may be built apart from
// the engine. Every entry returns 0 for failure.
//
// A connection is a 32-bit id that the gateway issues and resolves itself (the exchange file has
// 4 bytes for it); 0 means none. errorText is a buffer of errorSize (1024) bytes that the engine
// zeroes before each call and the gateway may fill: on failure with the server's words, on success
// with a warning. Text crosses in code page 1252, as the engine stores it.
#include <stdint.h>

#include "verdal.h"

#ifdef __cplusplus
extern "C" {
#endif

// Reads the source that `input` names (a definition file or a data file; see the bridge's README
// section) and writes the import exchange file at `exchangePath`. `fieldCount`, `names1` and
// `names2` choose and rename columns: source column names1[i] is taken under the name names2[i].
typedef int32_t (*ODBC_IMPORT_ZEP_Fn)(const char* input, const char* exchangePath, intptr_t extra,
                                      VerdalPathMapperFn mapper, intptr_t option, int32_t flags,
                                      int32_t fieldCount, const char* const* names1,
                                      const char* const* names2, intptr_t reserved);
// Writes the target that `target` names (a data file; with flag 0x4000 a definition file, which
// flag 0x400 only brings up to date) from the export exchange file at `exchangePath` (see
// exchange/export_exchange.h). extra and arg1 to arg4 come from the host unseen.
typedef int32_t (*ODBC_EXPORT_ZEP_Fn)(const char* target, const char* exchangePath, intptr_t extra,
                                      VerdalPathMapperFn mapper, int32_t flags, intptr_t arg1,
                                      intptr_t arg2, intptr_t arg3, intptr_t arg4);
typedef int32_t (*ODBC_CLOSE_DBHANDLE_Fn)(int32_t connection);
typedef int32_t (*ODBC_EXEC_ADDNEW_Fn)(int32_t connection, const char* table, const char* keyColumn,
                                       const char* sqlType, const char* value, const char* fieldName,
                                       int32_t isFirst, int32_t isLast, char* errorText,
                                       int32_t errorSize, int32_t* newKey);
typedef int32_t (*ODBC_EXEC_UPDATE_Fn)(int32_t connection, const char* table, const char* keyColumn,
                                       int32_t rowKey, const char* sqlType, const char* value,
                                       const char* fieldName, int32_t isFirst, int32_t isLast,
                                       char* errorText, int32_t errorSize);
typedef int32_t (*ODBC_EXEC_DEL_Fn)(int32_t connection, const char* table, const char* keyColumn,
                                    int32_t rowKey, char* errorText, int32_t errorSize);
// Sets *value to the column's present text (null for SQL NULL); the text stays the gateway's
// until its next call.
typedef int32_t (*ODBC_EXEC_GETVALUE_Fn)(int32_t connection, const char* table, const char* fieldName,
                                         const char* keyColumn, int32_t rowKey, const char** value);
typedef int32_t (*ODBC_SETAPPNAME_Fn)(const char* name);

typedef int32_t (*MySQLDeleteCon_Fn)(int32_t connection);
typedef int32_t (*MySQLNewRec_Fn)(int32_t connection, const char* database, const char* table,
                                  const char* keyColumn, const char* sqlType, const char* value,
                                  const char* fieldName, int32_t isFirst, int32_t isLast,
                                  char* errorText, int32_t errorSize, int32_t* newKey);
typedef int32_t (*MySQLUpdateRec_Fn)(int32_t connection, const char* database, const char* table,
                                     const char* keyColumn, int32_t rowKey, const char* sqlType,
                                     const char* value, const char* fieldName, int32_t isFirst,
                                     int32_t isLast, char* errorText, int32_t errorSize);
typedef int32_t (*MySQLDelRec_Fn)(int32_t connection, const char* database, const char* table,
                                  const char* keyColumn, int32_t rowKey, char* errorText,
                                  int32_t errorSize);
// The six arguments of VERDAL_ExecSQL, passed through unseen.
typedef int32_t (*MySQLExecuteSQL_Fn)(int32_t connection, intptr_t a1, intptr_t a2, intptr_t a3,
                                      intptr_t a4, intptr_t a5, intptr_t a6);
// The read-back of a column, as ODBC_EXEC_GETVALUE with the schema name after the connection.
typedef int32_t (*MySQLGetFieldValue_Fn)(int32_t connection, const char* database, const char* table,
                                         const char* fieldName, const char* keyColumn,
                                         int32_t rowKey, const char** value);
// The import of a MariaDB or MySQL table named by a definition file: called by the bridge when the
// definition names such a server, with the bridge's own arguments. Writes the exchange file with
// back-end kind 1 and, in mode 3, a connection of this gateway.
typedef int32_t (*MySQLSelectInfo_Fn)(const char* definition, const char* exchangePath,
                                      VerdalPathMapperFn mapper, int32_t flags, int32_t fieldCount,
                                      const char* const* names1, const char* const* names2);

#ifdef __cplusplus
}
#endif
