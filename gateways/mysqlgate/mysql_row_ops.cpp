#include "mysql_row_ops.h"

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <string>

#include "connection_table.h"
#include "mysql_statement.h"
#include "mysql_values.h"

namespace verdal::mysqlgate {
namespace {

std::string UnknownConnection(int32_t id) {
  return "no open MariaDB connection with id " + std::to_string(id);
}

// A whole decimal integer, so that it can be bound as a number.
bool ReadWholeInteger(const char* text, int64_t& out) {
  if (text == nullptr || *text == 0) return false;
  char* end = nullptr;
  errno = 0;
  const long long v = std::strtoll(text, &end, 10);
  if (errno != 0 || *end != 0 || *text == ' ') return false;
  out = v;
  return true;
}

// The value of one column as the engine hands it over: text as it is, an empty value of any other
// type as NULL (the column's default in an insert), dates and times as the server's literal,
// integers as numbers.
Param ParamOf(const char* sqlType, const char* value) {
  const std::string word = sqlType != nullptr ? sqlType : "";
  if (word == "text") return Param::Text(Utf8Of(value));
  if (value == nullptr || *value == 0) return Param{};
  if (word == "datetime" || word == "date" || word == "time") {
    std::string literal;
    if (SevenToServerText(word, value, literal)) return Param::Text(literal);
    return Param::Text(Utf8Of(value));
  }
  int64_t integer;
  if (ReadWholeInteger(value, integer)) return Param::Integer(integer);
  return Param::Text(Utf8Of(value));
}

// The server's notes on the last statement (for instance a value cut to the column's length),
// joined into one text; empty when there are none.
std::string Warnings(MYSQL* db) {
  if (mysql_warning_count(db) == 0) return {};
  if (mysql_query(db, "SHOW WARNINGS") != 0) return {};
  MYSQL_RES* result = mysql_store_result(db);
  if (result == nullptr) return {};
  std::string text;
  while (MYSQL_ROW row = mysql_fetch_row(result)) {
    if (mysql_num_fields(result) < 3 || row[2] == nullptr) continue;
    if (!text.empty()) text += "\n";
    text += row[2];
  }
  mysql_free_result(result);
  return Cp1252Of(text);
}

int32_t Failed(const std::string& words, char* errorText, int32_t errorSize) {
  CopyOut(words, errorText, errorSize);
  return 0;
}

}  // namespace

int32_t InsertColumn(int32_t id, const char* database, const char* table, const char* keyColumn,
                     const char* sqlType, const char* value, const char* fieldName, bool isFirst,
                     bool isLast, char* errorText, int32_t errorSize, int32_t* newKey) {
  auto connection = ConnectionTable::Instance().Find(id);
  if (connection == nullptr) return Failed(UnknownConnection(id), errorText, errorSize);
  std::lock_guard<std::mutex> guard(connection->lock);
  auto& pending = connection->pendingInsert;
  if (isFirst) pending.clear();
  pending.push_back({Utf8Of(fieldName), ParamOf(sqlType, value)});
  if (!isLast) return 1;

  std::string sql = "INSERT INTO " + QualifiedTable(database, table) + " (";
  std::string marks;
  std::vector<Param> params;
  for (size_t i = 0; i < pending.size(); ++i) {
    sql += (i ? ", " : "") + QuoteName(pending[i].name);
    if (i) marks += ", ";
    // An empty value of a column other than text takes the column's default (NULL where none is
    // declared), so that the server fills counters and defaults the engine then reads back.
    if (pending[i].value.kind == Param::kNull) {
      marks += "DEFAULT";
    } else {
      marks += "?";
      params.push_back(std::move(pending[i].value));
    }
  }
  pending.clear();
  sql += ") VALUES (" + marks + ")";
  MySqlStatement insert(connection->Handle());
  if (!insert.Prepare(sql) || !insert.Execute(params)) {
    return Failed(insert.Error(), errorText, errorSize);
  }
  const uint64_t key = insert.InsertId();
  if (key == 0 || key > static_cast<uint64_t>(std::numeric_limits<int32_t>::max())) {
    return Failed("the row was added, but the table gave no usable new key: " +
                      std::string(keyColumn != nullptr ? keyColumn : "") +
                      " must be an AUTO_INCREMENT integer column",
                  errorText, errorSize);
  }
  if (newKey != nullptr) *newKey = static_cast<int32_t>(key);
  CopyOut(Warnings(connection->Handle()), errorText, errorSize);
  return 1;
}

int32_t UpdateColumn(int32_t id, const char* database, const char* table, const char* keyColumn,
                     int32_t rowKey, const char* sqlType, const char* value, const char* fieldName,
                     bool isFirst, bool isLast, char* errorText, int32_t errorSize) {
  auto connection = ConnectionTable::Instance().Find(id);
  if (connection == nullptr) return Failed(UnknownConnection(id), errorText, errorSize);
  std::lock_guard<std::mutex> guard(connection->lock);
  auto& pending = connection->pendingUpdate;
  if (isFirst) pending.clear();
  pending.push_back({Utf8Of(fieldName), ParamOf(sqlType, value)});
  if (!isLast) return 1;

  std::string sql = "UPDATE " + QualifiedTable(database, table) + " SET ";
  std::vector<Param> params;
  for (size_t i = 0; i < pending.size(); ++i) {
    sql += (i ? ", " : "") + QuoteName(pending[i].name) + " = ?";
    params.push_back(std::move(pending[i].value));
  }
  pending.clear();
  sql += " WHERE " + QuoteName(Utf8Of(keyColumn)) + " = ?";
  params.push_back(Param::Integer(rowKey));
  MySqlStatement update(connection->Handle());
  if (!update.Prepare(sql) || !update.Execute(params)) {
    return Failed(update.Error(), errorText, errorSize);
  }
  // The connection counts matched rows, so 0 means the row is gone, not that nothing changed.
  if (update.AffectedRows() == 0) {
    return Failed("no row of " + Cp1252Of(QualifiedTable(database, table)) + " has " +
                      (keyColumn != nullptr ? keyColumn : "") + " = " + std::to_string(rowKey),
                  errorText, errorSize);
  }
  CopyOut(Warnings(connection->Handle()), errorText, errorSize);
  return 1;
}

int32_t DeleteRow(int32_t id, const char* database, const char* table, const char* keyColumn,
                  int32_t rowKey, char* errorText, int32_t errorSize) {
  auto connection = ConnectionTable::Instance().Find(id);
  if (connection == nullptr) return Failed(UnknownConnection(id), errorText, errorSize);
  std::lock_guard<std::mutex> guard(connection->lock);
  MySqlStatement remove(connection->Handle());
  if (!remove.Prepare("DELETE FROM " + QualifiedTable(database, table) + " WHERE " +
                      QuoteName(Utf8Of(keyColumn)) + " = ?") ||
      !remove.Execute({Param::Integer(rowKey)})) {
    return Failed(remove.Error(), errorText, errorSize);
  }
  // A row someone else deleted already is what the caller wants; it only hears of it.
  if (remove.AffectedRows() == 0) {
    CopyOut("the row with " + std::string(keyColumn != nullptr ? keyColumn : "") + " = " +
                std::to_string(rowKey) + " was deleted already",
            errorText, errorSize);
  }
  return 1;
}

int32_t ReadColumn(int32_t id, const char* database, const char* table, const char* fieldName,
                   const char* keyColumn, int32_t rowKey, const char** value) {
  if (value != nullptr) *value = nullptr;
  auto connection = ConnectionTable::Instance().Find(id);
  if (connection == nullptr) return 0;
  std::lock_guard<std::mutex> guard(connection->lock);
  connection->readBack.reset();
  MySqlStatement select(connection->Handle());
  if (!select.Prepare("SELECT " + QuoteName(Utf8Of(fieldName)) + " FROM " +
                      QualifiedTable(database, table) + " WHERE " + QuoteName(Utf8Of(keyColumn)) +
                      " = ?") ||
      !select.Execute({Param::Integer(rowKey)})) {
    return 0;
  }
  Cells cells;
  if (!select.Fetch(cells) || cells.empty()) return 0;
  connection->readBack = std::move(cells[0]);
  if (value != nullptr && connection->readBack) *value = connection->readBack->c_str();
  return 1;
}

int32_t ExecuteStatement(int32_t id, const char* statement, const char* const* params,
                         int32_t paramCount, char* firstValue, int32_t firstValueSize,
                         int32_t* affected) {
  CopyOut("", firstValue, firstValueSize);
  if (affected != nullptr) *affected = 0;
  auto connection = ConnectionTable::Instance().Find(id);
  if (connection == nullptr) return Failed(UnknownConnection(id), firstValue, firstValueSize);
  if (statement == nullptr) return Failed("no statement", firstValue, firstValueSize);
  std::lock_guard<std::mutex> guard(connection->lock);
  std::vector<Param> values;
  for (int32_t i = 0; i < paramCount; ++i) {
    const char* p = params != nullptr ? params[i] : nullptr;
    values.push_back(p != nullptr ? Param::Text(Utf8Of(p)) : Param{});
  }
  MySqlStatement run(connection->Handle());
  if (!run.Prepare(Utf8Of(statement)) || !run.Execute(values)) {
    return Failed(run.Error(), firstValue, firstValueSize);
  }
  if (run.Columns().empty()) {
    if (affected != nullptr) *affected = static_cast<int32_t>(run.AffectedRows());
    return 1;
  }
  Cells cells;
  int64_t rows = 0;
  while (run.Fetch(cells)) {
    if (rows++ == 0 && !cells.empty()) CopyOut(cells[0].value_or(""), firstValue, firstValueSize);
  }
  if (!run.Error().empty()) return Failed(run.Error(), firstValue, firstValueSize);
  if (affected != nullptr) {
    *affected = static_cast<int32_t>(std::min<int64_t>(rows, std::numeric_limits<int32_t>::max()));
  }
  return 1;
}

}  // namespace verdal::mysqlgate
