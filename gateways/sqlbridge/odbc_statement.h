#pragma once
// OdbcStatement: one statement handle on a connection, with the buffers of its bound parameters
// kept alive until it is run. Text goes both ways as UTF-16 (SQL_C_WCHAR).
#include <sql.h>
#include <sqlext.h>

#include <cstdint>
#include <deque>
#include <string>

#include "odbc_text.h"

namespace verdal::sqlbridge {

class OdbcStatement {
 public:
  explicit OdbcStatement(SQLHDBC connection);
  ~OdbcStatement();
  OdbcStatement(const OdbcStatement&) = delete;
  OdbcStatement& operator=(const OdbcStatement&) = delete;

  bool Ok() const { return handle_ != SQL_NULL_HSTMT; }
  SQLHSTMT Handle() const { return handle_; }

  bool Prepare(std::string_view sql);
  // Binds parameter `number` (from 1) to code page 1252 text, sent to a column of `odbcType`
  // (column size and decimals as its metadata gives them; 0 when unknown).
  bool BindText(SQLUSMALLINT number, std::string_view text, SQLSMALLINT odbcType, SQLULEN size,
                SQLSMALLINT decimals);
  bool BindNull(SQLUSMALLINT number, SQLSMALLINT odbcType, SQLULEN size, SQLSMALLINT decimals);
  bool BindInteger(SQLUSMALLINT number, int32_t value);
  // Numbers sent as numbers, to a column of `odbcType`.
  bool BindInt64(SQLUSMALLINT number, int64_t value, SQLSMALLINT odbcType);
  bool BindDouble(SQLUSMALLINT number, double value, SQLSMALLINT odbcType);
  bool Execute();
  bool ExecuteDirect(std::string_view sql);
  // Makes a prepared statement ready to run again: its cursor closed, its parameters unbound.
  void Reset();
  // SQL_SUCCESS, SQL_NO_DATA or an error, as SQLFetch gives it.
  SQLRETURN Fetch();
  // Column `number` (from 1) of the present row as code page 1252 text; false on an error.
  bool GetText(SQLUSMALLINT number, std::string& out, bool& isNull);
  // The rows the last UPDATE or DELETE touched, -1 when unknown.
  SQLLEN RowCount();

  // The driver's words on the last failure (the connection's when the handle could not be made).
  std::string Error() const;

 private:
  SQLHDBC connection_;
  SQLHSTMT handle_ = SQL_NULL_HSTMT;
  // Bound buffers must not move: a deque keeps its elements in place as it grows.
  std::deque<WideText> texts_;
  std::deque<SQLLEN> indicators_;
  std::deque<SQLINTEGER> integers_;
  std::deque<SQLBIGINT> bigIntegers_;
  std::deque<SQLDOUBLE> doubles_;
};

}  // namespace verdal::sqlbridge
