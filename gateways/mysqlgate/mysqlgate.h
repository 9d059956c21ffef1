#pragma once
// The entry points of libverdal_mysqlgate.so, as gateway_abi.h types them. Tests call them directly
// through the static core.
#include "exchange/gateway_abi.h"

// The build hides all symbols by default; these are the module's face.
#define MYSQLGATE_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

MYSQLGATE_API int32_t MySQLDeleteCon(int32_t connection);
MYSQLGATE_API int32_t MySQLNewRec(int32_t connection, const char* database, const char* table,
                                  const char* keyColumn, const char* sqlType, const char* value,
                                  const char* fieldName, int32_t isFirst, int32_t isLast,
                                  char* errorText, int32_t errorSize, int32_t* newKey);
MYSQLGATE_API int32_t MySQLUpdateRec(int32_t connection, const char* database, const char* table,
                                     const char* keyColumn, int32_t rowKey, const char* sqlType,
                                     const char* value, const char* fieldName, int32_t isFirst,
                                     int32_t isLast, char* errorText, int32_t errorSize);
MYSQLGATE_API int32_t MySQLDelRec(int32_t connection, const char* database, const char* table,
                                  const char* keyColumn, int32_t rowKey, char* errorText,
                                  int32_t errorSize);
// a1 statement (code page 1252, `?` placeholders), a2 const char* const* parameter values or null,
// a3 their number, a4 char* buffer for the first column of the first row (on failure: the server's
// words) or null, a5 its size, a6 int32_t* for the affected rows (or the rows of a result) or null.
MYSQLGATE_API int32_t MySQLExecuteSQL(int32_t connection, intptr_t a1, intptr_t a2, intptr_t a3,
                                      intptr_t a4, intptr_t a5, intptr_t a6);
MYSQLGATE_API int32_t MySQLGetFieldValue(int32_t connection, const char* database,
                                         const char* table, const char* fieldName,
                                         const char* keyColumn, int32_t rowKey, const char** value);
MYSQLGATE_API int32_t MySQLSelectInfo(const char* definition, const char* exchangePath,
                                      VerdalPathMapperFn mapper, int32_t flags, int32_t fieldCount,
                                      const char* const* names1, const char* const* names2);

#ifdef __cplusplus
}
#endif
