#include "write_through.h"

#include <strings.h>

#include <cstdlib>
#include <string>

#include "connection_table.h"
#include "odbc_statement.h"
#include "odbc_values.h"

namespace verdal::sqlbridge {
namespace {

std::string Text(const char* text) { return text != nullptr ? text : ""; }

bool IsTextWord(const std::string& sqlType) { return strcasecmp(sqlType.c_str(), "text") == 0; }

std::shared_ptr<OdbcConnection> Lookup(int32_t id, char* errorText, int32_t errorSize) {
  std::shared_ptr<OdbcConnection> connection = ConnectionTable::Instance().Find(id);
  if (connection == nullptr)
    CopyOut("The bridge has no connection " + std::to_string(id) + ".", errorText, errorSize);
  return connection;
}

int32_t Fail(const std::string& text, char* errorText, int32_t errorSize) {
  CopyOut(text, errorText, errorSize);
  return 0;
}

// Binds a value for a column of `table`: dates as ISO text by the column's type, an empty value
// of a non-text column as NULL.
bool BindValue(OdbcStatement& statement, OdbcConnection& connection, SQLUSMALLINT number,
               const std::string& table, const OdbcConnection::PendingValue& v) {
  const ColumnType type = connection.Column(table, v.field);
  if (v.value.empty() && !IsTextWord(v.sqlType))
    return statement.BindNull(number, type.odbcType, type.size, type.decimals);
  std::string iso;
  if (strcasecmp(v.sqlType.c_str(), "date") == 0 && SevenToIso(v.value, type.odbcType, iso))
    return statement.BindText(number, iso, type.odbcType, type.size, type.decimals);
  return statement.BindText(number, v.value, type.odbcType, type.size, type.decimals);
}

bool ReadKey(OdbcStatement& statement, int32_t& key, std::string& error) {
  std::string text;
  bool isNull = false;
  if (statement.Fetch() != SQL_SUCCESS || !statement.GetText(1, text, isNull)) {
    error = statement.Error();
    return false;
  }
  char* end = nullptr;
  const long long value = std::strtoll(text.c_str(), &end, 10);
  if (isNull || end == text.c_str() || value < INT32_MIN || value > INT32_MAX) {
    error = "The new row's key \"" + text + "\" is no 32-bit number.";
    return false;
  }
  key = static_cast<int32_t>(value);
  return true;
}

int32_t InsertRow(OdbcConnection& connection, const std::string& table, const std::string& keyColumn,
                  const std::vector<OdbcConnection::PendingValue>& values, char* errorText,
                  int32_t errorSize, int32_t* newKey) {
  std::vector<const OdbcConnection::PendingValue*> sent;
  for (const auto& v : values)
    if (!v.value.empty() || IsTextWord(v.sqlType)) sent.push_back(&v);
  const OdbcConnection::Dbms dbms = connection.Kind();
  std::string sql = "INSERT INTO " + connection.QuoteTable(table);
  if (sent.empty()) {
    sql += dbms == OdbcConnection::Dbms::kMySql ? " () VALUES ()" : " DEFAULT VALUES";
  } else {
    std::string names, marks;
    for (const auto* v : sent) {
      names += (names.empty() ? "" : ", ") + connection.QuoteName(v->field);
      marks += marks.empty() ? "?" : ", ?";
    }
    sql += " (" + names + ") VALUES (" + marks + ")";
  }
  if (dbms == OdbcConnection::Dbms::kPostgres) sql += " RETURNING " + connection.QuoteName(keyColumn);

  OdbcStatement statement(connection.Handle());
  if (!statement.Prepare(sql)) return Fail(statement.Error(), errorText, errorSize);
  for (size_t i = 0; i < sent.size(); ++i)
    if (!BindValue(statement, connection, static_cast<SQLUSMALLINT>(i + 1), table, *sent[i]))
      return Fail(statement.Error(), errorText, errorSize);
  if (!statement.Execute()) return Fail(statement.Error(), errorText, errorSize);

  int32_t key = -1;
  std::string error;
  if (dbms == OdbcConnection::Dbms::kPostgres) {
    if (!ReadKey(statement, key, error)) return Fail(error, errorText, errorSize);
  } else if (dbms == OdbcConnection::Dbms::kSqlite || dbms == OdbcConnection::Dbms::kMySql) {
    OdbcStatement last(connection.Handle());
    const char* query = dbms == OdbcConnection::Dbms::kSqlite ? "SELECT last_insert_rowid()"
                                                              : "SELECT LAST_INSERT_ID()";
    if (!last.ExecuteDirect(query) || !ReadKey(last, key, error))
      return Fail(error.empty() ? last.Error() : error, errorText, errorSize);
  } else {
    // The row is in; only its key cannot be learnt. The engine shows this as a warning.
    CopyOut("The row was added, but this server does not tell its new key.", errorText, errorSize);
  }
  if (newKey != nullptr) *newKey = key;
  return 1;
}

}  // namespace

int32_t AddNewValue(int32_t id, const char* table, const char* keyColumn, const char* sqlType,
                    const char* value, const char* fieldName, int32_t isFirst, int32_t isLast,
                    char* errorText, int32_t errorSize, int32_t* newKey) {
  std::shared_ptr<OdbcConnection> connection = Lookup(id, errorText, errorSize);
  if (connection == nullptr) return 0;
  std::lock_guard<std::mutex> lock(connection->Mutex());
  if (isFirst != 0) {
    connection->pending.clear();
    connection->gathering = true;
  } else if (!connection->gathering) {
    return Fail("No new row is being built on this connection.", errorText, errorSize);
  }
  connection->pending.push_back({Text(fieldName), Text(sqlType), Text(value)});
  if (isLast == 0) return 1;
  std::vector<OdbcConnection::PendingValue> values;
  values.swap(connection->pending);
  connection->gathering = false;
  return InsertRow(*connection, Text(table), Text(keyColumn), values, errorText, errorSize, newKey);
}

int32_t UpdateValue(int32_t id, const char* table, const char* keyColumn, int32_t rowKey,
                    const char* sqlType, const char* value, const char* fieldName,
                    char* errorText, int32_t errorSize) {
  std::shared_ptr<OdbcConnection> connection = Lookup(id, errorText, errorSize);
  if (connection == nullptr) return 0;
  std::lock_guard<std::mutex> lock(connection->Mutex());
  const std::string tableName = Text(table);
  const std::string sql = "UPDATE " + connection->QuoteTable(tableName) + " SET " +
                          connection->QuoteName(Text(fieldName)) + " = ? WHERE " +
                          connection->QuoteName(Text(keyColumn)) + " = ?";
  std::string error;
  OdbcStatement* statement = connection->Prepared(sql, error);
  if (statement == nullptr) return Fail(error, errorText, errorSize);
  if (!BindValue(*statement, *connection, 1, tableName, {Text(fieldName), Text(sqlType), Text(value)}) ||
      !statement->BindInteger(2, rowKey) || !statement->Execute())
    return Fail(statement->Error(), errorText, errorSize);
  if (statement->RowCount() == 0)
    return Fail("No row of " + tableName + " has " + Text(keyColumn) + " = " +
                    std::to_string(rowKey) + ": it was deleted meanwhile.",
                errorText, errorSize);
  return 1;
}

int32_t DeleteRow(int32_t id, const char* table, const char* keyColumn, int32_t rowKey,
                  char* errorText, int32_t errorSize) {
  std::shared_ptr<OdbcConnection> connection = Lookup(id, errorText, errorSize);
  if (connection == nullptr) return 0;
  std::lock_guard<std::mutex> lock(connection->Mutex());
  OdbcStatement statement(connection->Handle());
  const std::string sql = "DELETE FROM " + connection->QuoteTable(Text(table)) + " WHERE " +
                          connection->QuoteName(Text(keyColumn)) + " = ?";
  if (!statement.Prepare(sql) || !statement.BindInteger(1, rowKey) || !statement.Execute())
    return Fail(statement.Error(), errorText, errorSize);
  if (statement.RowCount() == 0)
    CopyOut("No row of " + Text(table) + " had " + Text(keyColumn) + " = " +
                std::to_string(rowKey) + " any more.",
            errorText, errorSize);
  return 1;
}

int32_t GetValue(int32_t id, const char* table, const char* fieldName, const char* keyColumn,
                 int32_t rowKey, const char** value) {
  if (value != nullptr) *value = nullptr;
  std::shared_ptr<OdbcConnection> connection = ConnectionTable::Instance().Find(id);
  if (connection == nullptr || value == nullptr) return 0;
  std::lock_guard<std::mutex> lock(connection->Mutex());
  const std::string sql = "SELECT " + connection->QuoteName(Text(fieldName)) + " FROM " +
                          connection->QuoteTable(Text(table)) + " WHERE " +
                          connection->QuoteName(Text(keyColumn)) + " = ?";
  std::string error;
  OdbcStatement* statement = connection->Prepared(sql, error);
  // An open cursor would hold the table (SQLite keeps the file locked for reading until it closes).
  struct CloseCursor {
    OdbcStatement* statement;
    ~CloseCursor() {
      if (statement != nullptr) statement->Reset();
    }
  } closeCursor{statement};
  if (statement == nullptr || !statement->BindInteger(1, rowKey) || !statement->Execute() ||
      statement->Fetch() != SQL_SUCCESS)
    return 0;
  SQLSMALLINT type = 0, digits = 0, nullable = 0, nameLength = 0;
  SQLULEN size = 0;
  SQLWCHAR name[256];
  if (!SQL_SUCCEEDED(SQLDescribeColW(statement->Handle(), 1, name, 256, &nameLength, &type, &size,
                                     &digits, &nullable)))
    return 0;
  int16_t sqlType = 12, decimals = -1;
  ExchangeType(type, digits, sqlType, decimals);
  bool isNull = false;
  if (!statement->GetText(1, connection->valueBuffer, isNull)) return 0;
  if (isNull) return 1;
  ToInternalValue(sqlType, connection->valueBuffer);
  *value = connection->valueBuffer.c_str();
  return 1;
}

int32_t CloseConnection(int32_t id) {
  std::shared_ptr<OdbcConnection> connection = ConnectionTable::Instance().Remove(id);
  if (connection == nullptr) return 0;
  std::lock_guard<std::mutex> lock(connection->Mutex());
  connection->Disconnect();
  return 1;
}

}  // namespace verdal::sqlbridge
