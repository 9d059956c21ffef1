#pragma once
// OdbcConnection: one open connection of the bridge through unixODBC, what it knows about its
// server (the kind of DBMS, how names are quoted, the types of tables' columns), and the state a
// linked database keeps on it between calls: the values of a new row being gathered, and the
// text of the last read-back.
#include <sql.h>
#include <sqlext.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "odbc_statement.h"

namespace verdal::sqlbridge {

struct ColumnType {
  SQLSMALLINT odbcType = SQL_WVARCHAR;  // unknown columns are sent as text
  SQLULEN size = 0;
  SQLSMALLINT decimals = 0;
  std::string name;  // as the table spells it, where the driver described the column
};

class OdbcConnection {
 public:
  enum class Dbms { kOther, kSqlite, kPostgres, kMySql };

  OdbcConnection() = default;
  ~OdbcConnection();
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;

  // By a whole connection string when it is not empty, else by data source name, user and
  // password. False with the driver's words in `error`.
  bool Connect(const std::string& connectionString, const std::string& dsn,
               const std::string& user, const std::string& password, std::string& error);
  void Disconnect();

  SQLHDBC Handle() const { return handle_; }
  Dbms Kind() const { return kind_; }

  // A name quoted for SQL text with the driver's identifier quote, the quote doubled inside.
  std::string QuoteName(std::string_view name) const;
  // A table name, "schema.table" quoted part by part.
  std::string QuoteTable(std::string_view table) const;

  // The type of a table's column as SQLColumns tells it, asked once per table. A column the
  // driver does not describe is text.
  ColumnType Column(const std::string& table, std::string_view column);
  // The same, false where the driver does not describe the column.
  bool FindColumn(const std::string& table, std::string_view column, ColumnType& type);

  // Whether the driver describes columns of this table (SQLColumns), asked once per table as
  // Column is: a table it does not know is taken to be missing.
  bool HasTable(const std::string& table);

  // Turns automatic commits off, so that what follows is one transaction until EndTransaction,
  // which commits or rolls back and turns them on again. False with the driver's words in error.
  bool BeginTransaction(std::string& error);
  bool EndTransaction(bool commit, std::string& error);

  // The statement of this text, prepared at its first use and kept for the next (a linked
  // database runs the same few statements thousands of times); null, with the driver's words in
  // error, when it cannot be prepared.
  OdbcStatement* Prepared(const std::string& sql, std::string& error);

  // Serialises the calls on this connection.
  std::mutex& Mutex() { return mutex_; }

  // The run of ODBC_EXEC_ADDNEW calls that builds one new row.
  struct PendingValue {
    std::string field, sqlType, value;
  };
  bool gathering = false;
  std::vector<PendingValue> pending;
  // The text ODBC_EXEC_GETVALUE hands out, valid until the next call.
  std::string valueBuffer;

  // The name applications give themselves (ODBC_SETAPPNAME); PostgreSQL connections carry it as
  // their application_name.
  static void SetApplicationName(const char* name);
  static std::string ApplicationName();

 private:
  void LearnServer();
  const std::map<std::string, ColumnType>& ColumnsOf(const std::string& table);

  SQLHDBC handle_ = SQL_NULL_HDBC;
  bool connected_ = false;
  Dbms kind_ = Dbms::kOther;
  std::string quote_;
  std::map<std::string, std::map<std::string, ColumnType>> columns_;  // upper-case names
  std::map<std::string, std::unique_ptr<OdbcStatement>> statements_;  // by their text
  std::mutex mutex_;
};

}  // namespace verdal::sqlbridge
