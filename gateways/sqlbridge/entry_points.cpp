// The C entry points of libverdal_sqlbridge.so. The engine calls them through dlsym; nothing
// thrown inside may cross back into it, so each one catches everything and reports failure.
#include "bridge_export.h"
#include "bridge_import.h"
#include "exchange/gateway_abi.h"
#include "odbc_connection.h"
#include "odbc_text.h"
#include "write_through.h"

#define BRIDGE_EXPORT extern "C" __attribute__((visibility("default")))

using namespace verdal::sqlbridge;

BRIDGE_EXPORT int32_t ODBC_IMPORT_ZEP(const char* input, const char* exchangePath, intptr_t extra,
                                      VerdalPathMapperFn mapper, intptr_t option, int32_t flags,
                                      int32_t fieldCount, const char* const* names1,
                                      const char* const* names2, intptr_t reserved) {
  (void)extra;
  (void)reserved;
  try {
    return RunImport(input, exchangePath, mapper, option, flags, fieldCount, names1, names2);
  } catch (...) {
    return 0;
  }
}

BRIDGE_EXPORT int32_t ODBC_EXPORT_ZEP(const char* target, const char* exchangePath, intptr_t extra,
                                      VerdalPathMapperFn mapper, int32_t flags, intptr_t arg1,
                                      intptr_t arg2, intptr_t arg3, intptr_t arg4) {
  (void)extra;  // the host's own words, which the bridge does not read
  (void)arg1;
  (void)arg2;
  (void)arg3;
  (void)arg4;
  try {
    return RunExport(target, exchangePath, mapper, flags);
  } catch (...) {
    return 0;
  }
}

BRIDGE_EXPORT int32_t ODBC_CLOSE_DBHANDLE(int32_t connection) {
  try {
    return CloseConnection(connection);
  } catch (...) {
    return 0;
  }
}

BRIDGE_EXPORT int32_t ODBC_EXEC_ADDNEW(int32_t connection, const char* table, const char* keyColumn,
                                       const char* sqlType, const char* value,
                                       const char* fieldName, int32_t isFirst, int32_t isLast,
                                       char* errorText, int32_t errorSize, int32_t* newKey) {
  try {
    return AddNewValue(connection, table, keyColumn, sqlType, value, fieldName, isFirst, isLast,
                       errorText, errorSize, newKey);
  } catch (...) {
    CopyOut("The bridge failed inside (out of memory?).", errorText, errorSize);
    return 0;
  }
}

BRIDGE_EXPORT int32_t ODBC_EXEC_UPDATE(int32_t connection, const char* table, const char* keyColumn,
                                       int32_t rowKey, const char* sqlType, const char* value,
                                       const char* fieldName, int32_t isFirst, int32_t isLast,
                                       char* errorText, int32_t errorSize) {
  (void)isFirst;  // one column per call: the engine always passes 1 and 1
  (void)isLast;
  try {
    return UpdateValue(connection, table, keyColumn, rowKey, sqlType, value, fieldName, errorText,
                       errorSize);
  } catch (...) {
    CopyOut("The bridge failed inside (out of memory?).", errorText, errorSize);
    return 0;
  }
}

BRIDGE_EXPORT int32_t ODBC_EXEC_DEL(int32_t connection, const char* table, const char* keyColumn,
                                    int32_t rowKey, char* errorText, int32_t errorSize) {
  try {
    return DeleteRow(connection, table, keyColumn, rowKey, errorText, errorSize);
  } catch (...) {
    CopyOut("The bridge failed inside (out of memory?).", errorText, errorSize);
    return 0;
  }
}

BRIDGE_EXPORT int32_t ODBC_EXEC_GETVALUE(int32_t connection, const char* table,
                                         const char* fieldName, const char* keyColumn,
                                         int32_t rowKey, const char** value) {
  try {
    return GetValue(connection, table, fieldName, keyColumn, rowKey, value);
  } catch (...) {
    if (value != nullptr) *value = nullptr;
    return 0;
  }
}

BRIDGE_EXPORT int32_t ODBC_SETAPPNAME(const char* name) {
  try {
    OdbcConnection::SetApplicationName(name);
    return 1;
  } catch (...) {
    return 0;
  }
}
