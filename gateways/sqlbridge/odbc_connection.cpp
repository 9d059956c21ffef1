#include "odbc_connection.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>

#include "odbc_statement.h"
#include "odbc_text.h"
#include "platform/cp1252.h"

namespace verdal::sqlbridge {
namespace {

std::mutex gAppNameMutex;
std::string gAppName;

// One environment for the process, made at the first connection and kept: unixODBC shares its
// driver loads across the connections of one environment.
SQLHENV Environment() {
  static SQLHENV environment = []() -> SQLHENV {
    SQLHENV env = SQL_NULL_HENV;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env))) return SQL_NULL_HENV;
    SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    return env;
  }();
  return environment;
}

std::string Upper(std::string_view text) {
  std::string upper(text);
  cp1252::ToUpper(upper);
  return upper;
}

std::string InfoText(SQLHDBC handle, SQLUSMALLINT item) {
  SQLWCHAR buffer[256] = {};
  SQLSMALLINT length = 0;
  if (!SQL_SUCCEEDED(SQLGetInfoW(handle, item, buffer, sizeof buffer, &length))) return {};
  const size_t units = std::min<size_t>(static_cast<size_t>(std::max<SQLSMALLINT>(length, 0)) /
                                            sizeof(SQLWCHAR),
                                        sizeof buffer / sizeof buffer[0] - 1);
  return Narrow(buffer, units);
}

}  // namespace

void OdbcConnection::SetApplicationName(const char* name) {
  std::lock_guard<std::mutex> lock(gAppNameMutex);
  gAppName = name != nullptr ? name : "";
}

std::string OdbcConnection::ApplicationName() {
  std::lock_guard<std::mutex> lock(gAppNameMutex);
  return gAppName;
}

OdbcConnection::~OdbcConnection() { Disconnect(); }

bool OdbcConnection::Connect(const std::string& connectionString, const std::string& dsn,
                             const std::string& user, const std::string& password,
                             std::string& error) {
  Disconnect();
  SQLHENV env = Environment();
  if (env == SQL_NULL_HENV || !SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, env, &handle_))) {
    handle_ = SQL_NULL_HDBC;
    error = "The ODBC driver manager cannot make a connection handle.";
    return false;
  }
  SQLRETURN rc;
  if (!connectionString.empty()) {
    WideText in = Widen(connectionString);
    SQLWCHAR out[1024];
    SQLSMALLINT outLength = 0;
    rc = SQLDriverConnectW(handle_, nullptr, in.data(), static_cast<SQLSMALLINT>(in.size()), out,
                           static_cast<SQLSMALLINT>(sizeof out / sizeof out[0]), &outLength,
                           SQL_DRIVER_NOPROMPT);
  } else {
    WideText wideDsn = Widen(dsn), wideUser = Widen(user), widePassword = Widen(password);
    rc = SQLConnectW(handle_, wideDsn.data(), static_cast<SQLSMALLINT>(wideDsn.size()),
                     wideUser.data(), static_cast<SQLSMALLINT>(wideUser.size()),
                     widePassword.data(), static_cast<SQLSMALLINT>(widePassword.size()));
  }
  if (!SQL_SUCCEEDED(rc)) {
    error = Diagnostics(SQL_HANDLE_DBC, handle_);
    if (error.empty()) error = "The connection to the data source failed.";
    Disconnect();
    return false;
  }
  connected_ = true;
  LearnServer();
  return true;
}

void OdbcConnection::LearnServer() {
  const std::string dbms = InfoText(handle_, SQL_DBMS_NAME);
  if (strncasecmp(dbms.c_str(), "sqlite", 6) == 0) kind_ = Dbms::kSqlite;
  else if (strncasecmp(dbms.c_str(), "postgres", 8) == 0) kind_ = Dbms::kPostgres;
  else if (strncasecmp(dbms.c_str(), "mysql", 5) == 0 || strncasecmp(dbms.c_str(), "mariadb", 7) == 0)
    kind_ = Dbms::kMySql;
  quote_ = InfoText(handle_, SQL_IDENTIFIER_QUOTE_CHAR);
  if (quote_ == " ") quote_.clear();  // the driver's way of saying it has none

  const std::string appName = ApplicationName();
  if (kind_ == Dbms::kPostgres && !appName.empty()) {
    OdbcStatement statement(handle_);
    if (statement.Prepare("SELECT set_config('application_name', ?, false)") &&
        statement.BindText(1, appName, SQL_WVARCHAR, 0, 0))
      statement.Execute();
  }
}

OdbcStatement* OdbcConnection::Prepared(const std::string& sql, std::string& error) {
  const auto found = statements_.find(sql);
  if (found != statements_.end()) {
    found->second->Reset();
    return found->second.get();
  }
  auto statement = std::make_unique<OdbcStatement>(handle_);
  if (!statement->Prepare(sql)) {
    error = statement->Error();
    return nullptr;
  }
  return statements_.emplace(sql, std::move(statement)).first->second.get();
}

void OdbcConnection::Disconnect() {
  statements_.clear();  // their handles go before the connection's
  if (handle_ == SQL_NULL_HDBC) return;
  if (connected_) SQLDisconnect(handle_);
  SQLFreeHandle(SQL_HANDLE_DBC, handle_);
  handle_ = SQL_NULL_HDBC;
  connected_ = false;
  columns_.clear();
}

std::string OdbcConnection::QuoteName(std::string_view name) const {
  if (quote_.empty()) return std::string(name);
  const char quote = quote_[0];
  std::string quoted(1, quote);
  for (char c : name) {
    quoted += c;
    if (c == quote) quoted += quote;
  }
  quoted += quote;
  return quoted;
}

std::string OdbcConnection::QuoteTable(std::string_view table) const {
  const size_t point = table.find('.');
  if (point == std::string_view::npos) return QuoteName(table);
  return QuoteName(table.substr(0, point)) + "." + QuoteName(table.substr(point + 1));
}

const std::map<std::string, ColumnType>& OdbcConnection::ColumnsOf(const std::string& table) {
  const std::string tableKey = Upper(table);
  auto found = columns_.find(tableKey);
  if (found != columns_.end()) return found->second;
  std::map<std::string, ColumnType>& types = columns_[tableKey];
  OdbcStatement statement(handle_);
  const size_t point = table.find('.');
  WideText schema = point == std::string::npos ? WideText() : Widen(table.substr(0, point));
  WideText name = Widen(point == std::string::npos ? table : table.substr(point + 1));
  if (statement.Ok() &&
      SQL_SUCCEEDED(SQLColumnsW(statement.Handle(), nullptr, 0,
                                schema.empty() ? nullptr : schema.data(),
                                static_cast<SQLSMALLINT>(schema.size()), name.data(),
                                static_cast<SQLSMALLINT>(name.size()), nullptr, 0))) {
    // Columns 4 COLUMN_NAME, 5 DATA_TYPE, 7 COLUMN_SIZE, 9 DECIMAL_DIGITS.
    while (statement.Fetch() == SQL_SUCCESS) {
      std::string columnName, text;
      bool isNull = false;
      if (!statement.GetText(4, columnName, isNull)) break;
      ColumnType type;
      type.name = columnName;
      if (statement.GetText(5, text, isNull) && !isNull)
        type.odbcType = static_cast<SQLSMALLINT>(std::atoi(text.c_str()));
      if (statement.GetText(7, text, isNull) && !isNull)
        type.size = static_cast<SQLULEN>(std::max(0L, std::atol(text.c_str())));
      if (statement.GetText(9, text, isNull) && !isNull)
        type.decimals = static_cast<SQLSMALLINT>(std::atoi(text.c_str()));
      types.emplace(Upper(columnName), type);
    }
  }
  return types;
}

bool OdbcConnection::FindColumn(const std::string& table, std::string_view column, ColumnType& type) {
  const std::map<std::string, ColumnType>& types = ColumnsOf(table);
  const auto found = types.find(Upper(column));
  type = found == types.end() ? ColumnType{} : found->second;
  return found != types.end();
}

ColumnType OdbcConnection::Column(const std::string& table, std::string_view column) {
  ColumnType type;
  FindColumn(table, column, type);
  return type;
}

bool OdbcConnection::HasTable(const std::string& table) { return !ColumnsOf(table).empty(); }

bool OdbcConnection::BeginTransaction(std::string& error) {
  if (SQL_SUCCEEDED(SQLSetConnectAttr(handle_, SQL_ATTR_AUTOCOMMIT,
                                      reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), 0)))
    return true;
  error = Diagnostics(SQL_HANDLE_DBC, handle_);
  return false;
}

bool OdbcConnection::EndTransaction(bool commit, std::string& error) {
  const bool ended = SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, handle_, commit ? SQL_COMMIT : SQL_ROLLBACK));
  if (!ended) error = Diagnostics(SQL_HANDLE_DBC, handle_);
  SQLSetConnectAttr(handle_, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_ON), 0);
  return ended;
}

}  // namespace verdal::sqlbridge
