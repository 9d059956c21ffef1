// The C entry points. Nothing thrown inside may cross into the engine: each call catches all and
// counts as failed, with the reason where the call has room for one.
#include <exception>
#include <type_traits>

#include "connection_table.h"
#include "mysql_import.h"
#include "mysql_row_ops.h"
#include "mysql_values.h"
#include "mysqlgate.h"
#include "platform/trace.h"

namespace {

using namespace verdal::mysqlgate;

template <class Fn>
int32_t Guarded(char* errorText, int32_t errorSize, Fn&& fn) {
  try {
    return fn();
  } catch (const std::exception& e) {
    CopyOut(e.what(), errorText, errorSize);
  } catch (...) {
    CopyOut("unexpected failure in the MariaDB gateway", errorText, errorSize);
  }
  return 0;
}

// The entries must keep the types the engine looks them up with.
static_assert(std::is_same_v<decltype(&MySQLDeleteCon), MySQLDeleteCon_Fn>);
static_assert(std::is_same_v<decltype(&MySQLNewRec), MySQLNewRec_Fn>);
static_assert(std::is_same_v<decltype(&MySQLUpdateRec), MySQLUpdateRec_Fn>);
static_assert(std::is_same_v<decltype(&MySQLDelRec), MySQLDelRec_Fn>);
static_assert(std::is_same_v<decltype(&MySQLExecuteSQL), MySQLExecuteSQL_Fn>);
static_assert(std::is_same_v<decltype(&MySQLGetFieldValue), MySQLGetFieldValue_Fn>);
static_assert(std::is_same_v<decltype(&MySQLSelectInfo), MySQLSelectInfo_Fn>);

}  // namespace

extern "C" {

int32_t MySQLDeleteCon(int32_t connection) {
  return Guarded(nullptr, 0,
                 [&] { return ConnectionTable::Instance().Remove(connection) != nullptr ? 1 : 0; });
}

int32_t MySQLNewRec(int32_t connection, const char* database, const char* table,
                    const char* keyColumn, const char* sqlType, const char* value,
                    const char* fieldName, int32_t isFirst, int32_t isLast, char* errorText,
                    int32_t errorSize, int32_t* newKey) {
  return Guarded(errorText, errorSize, [&] {
    return InsertColumn(connection, database, table, keyColumn, sqlType, value, fieldName,
                        isFirst != 0, isLast != 0, errorText, errorSize, newKey);
  });
}

int32_t MySQLUpdateRec(int32_t connection, const char* database, const char* table,
                       const char* keyColumn, int32_t rowKey, const char* sqlType,
                       const char* value, const char* fieldName, int32_t isFirst, int32_t isLast,
                       char* errorText, int32_t errorSize) {
  return Guarded(errorText, errorSize, [&] {
    return UpdateColumn(connection, database, table, keyColumn, rowKey, sqlType, value, fieldName,
                        isFirst != 0, isLast != 0, errorText, errorSize);
  });
}

int32_t MySQLDelRec(int32_t connection, const char* database, const char* table,
                    const char* keyColumn, int32_t rowKey, char* errorText, int32_t errorSize) {
  return Guarded(errorText, errorSize, [&] {
    return DeleteRow(connection, database, table, keyColumn, rowKey, errorText, errorSize);
  });
}

int32_t MySQLExecuteSQL(int32_t connection, intptr_t a1, intptr_t a2, intptr_t a3, intptr_t a4,
                        intptr_t a5, intptr_t a6) {
  char* firstValue = reinterpret_cast<char*>(a4);
  const auto firstValueSize = static_cast<int32_t>(a5);
  return Guarded(firstValue, firstValueSize, [&] {
    return ExecuteStatement(connection, reinterpret_cast<const char*>(a1),
                            reinterpret_cast<const char* const*>(a2), static_cast<int32_t>(a3),
                            firstValue, firstValueSize, reinterpret_cast<int32_t*>(a6));
  });
}

int32_t MySQLGetFieldValue(int32_t connection, const char* database, const char* table,
                           const char* fieldName, const char* keyColumn, int32_t rowKey,
                           const char** value) {
  return Guarded(nullptr, 0, [&] {
    return ReadColumn(connection, database, table, fieldName, keyColumn, rowKey, value);
  });
}

int32_t MySQLSelectInfo(const char* definition, const char* exchangePath, VerdalPathMapperFn mapper,
                        int32_t flags, int32_t fieldCount, const char* const* names1,
                        const char* const* names2) {
  return Guarded(nullptr, 0, [&] {
    std::string error;
    const int32_t result =
        ImportTable(definition, exchangePath, mapper, flags, fieldCount, names1, names2, error);
    // The call has no room for words; the trace keeps them for whoever looks.
    if (result == 0) verdal::platform::Trace("MySQLSelectInfo: %s", error.c_str());
    return result;
  });
}

}  // extern "C"
