#include "odbc_statement.h"

#include <algorithm>

namespace verdal::sqlbridge {

OdbcStatement::OdbcStatement(SQLHDBC connection) : connection_(connection) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection, &handle_)))
    handle_ = SQL_NULL_HSTMT;
}

OdbcStatement::~OdbcStatement() {
  if (handle_ != SQL_NULL_HSTMT) SQLFreeHandle(SQL_HANDLE_STMT, handle_);
}

std::string OdbcStatement::Error() const {
  if (handle_ == SQL_NULL_HSTMT) return Diagnostics(SQL_HANDLE_DBC, connection_);
  std::string text = Diagnostics(SQL_HANDLE_STMT, handle_);
  return text.empty() ? "The driver gives no reason." : text;
}

bool OdbcStatement::Prepare(std::string_view sql) {
  if (!Ok()) return false;
  WideText wide = Widen(sql);
  return SQL_SUCCEEDED(SQLPrepareW(handle_, wide.data(), static_cast<SQLINTEGER>(wide.size())));
}

bool OdbcStatement::BindText(SQLUSMALLINT number, std::string_view text, SQLSMALLINT odbcType,
                             SQLULEN size, SQLSMALLINT decimals) {
  WideText& wide = texts_.emplace_back(Widen(text));
  wide.push_back(0);
  SQLLEN& indicator = indicators_.emplace_back(static_cast<SQLLEN>((wide.size() - 1) * sizeof(SQLWCHAR)));
  // A text column's size is the value's length: drivers check it against what they send.
  const bool textual = odbcType == SQL_VARCHAR || odbcType == SQL_CHAR ||
                       odbcType == SQL_LONGVARCHAR || odbcType == SQL_WVARCHAR ||
                       odbcType == SQL_WCHAR || odbcType == SQL_WLONGVARCHAR;
  if (textual || size == 0) size = std::max<SQLULEN>(wide.size() - 1, 1);
  return SQL_SUCCEEDED(SQLBindParameter(handle_, number, SQL_PARAM_INPUT, SQL_C_WCHAR, odbcType,
                                        size, decimals, wide.data(),
                                        static_cast<SQLLEN>(wide.size() * sizeof(SQLWCHAR)),
                                        &indicator));
}

bool OdbcStatement::BindNull(SQLUSMALLINT number, SQLSMALLINT odbcType, SQLULEN size,
                             SQLSMALLINT decimals) {
  SQLLEN& indicator = indicators_.emplace_back(SQL_NULL_DATA);
  return SQL_SUCCEEDED(SQLBindParameter(handle_, number, SQL_PARAM_INPUT, SQL_C_WCHAR, odbcType,
                                        std::max<SQLULEN>(size, 1), decimals, nullptr, 0,
                                        &indicator));
}

bool OdbcStatement::BindInteger(SQLUSMALLINT number, int32_t value) {
  SQLINTEGER& stored = integers_.emplace_back(value);
  SQLLEN& indicator = indicators_.emplace_back(0);
  return SQL_SUCCEEDED(SQLBindParameter(handle_, number, SQL_PARAM_INPUT, SQL_C_SLONG, SQL_INTEGER,
                                        0, 0, &stored, 0, &indicator));
}

bool OdbcStatement::BindInt64(SQLUSMALLINT number, int64_t value, SQLSMALLINT odbcType) {
  SQLBIGINT& stored = bigIntegers_.emplace_back(value);
  SQLLEN& indicator = indicators_.emplace_back(0);
  return SQL_SUCCEEDED(SQLBindParameter(handle_, number, SQL_PARAM_INPUT, SQL_C_SBIGINT, odbcType,
                                        0, 0, &stored, 0, &indicator));
}

bool OdbcStatement::BindDouble(SQLUSMALLINT number, double value, SQLSMALLINT odbcType) {
  SQLDOUBLE& stored = doubles_.emplace_back(value);
  SQLLEN& indicator = indicators_.emplace_back(0);
  return SQL_SUCCEEDED(SQLBindParameter(handle_, number, SQL_PARAM_INPUT, SQL_C_DOUBLE, odbcType,
                                        15, 0, &stored, 0, &indicator));
}

bool OdbcStatement::Execute() {
  const SQLRETURN rc = SQLExecute(handle_);
  return SQL_SUCCEEDED(rc) || rc == SQL_NO_DATA;
}

void OdbcStatement::Reset() {
  SQLFreeStmt(handle_, SQL_CLOSE);
  SQLFreeStmt(handle_, SQL_RESET_PARAMS);
  texts_.clear();
  indicators_.clear();
  integers_.clear();
  bigIntegers_.clear();
  doubles_.clear();
}

bool OdbcStatement::ExecuteDirect(std::string_view sql) {
  if (!Ok()) return false;
  WideText wide = Widen(sql);
  const SQLRETURN rc = SQLExecDirectW(handle_, wide.data(), static_cast<SQLINTEGER>(wide.size()));
  return SQL_SUCCEEDED(rc) || rc == SQL_NO_DATA;
}

SQLRETURN OdbcStatement::Fetch() {
  const SQLRETURN rc = SQLFetch(handle_);
  return rc == SQL_SUCCESS_WITH_INFO ? SQL_SUCCESS : rc;
}

bool OdbcStatement::GetText(SQLUSMALLINT number, std::string& out, bool& isNull) {
  out.clear();
  isNull = false;
  WideText wide;
  SQLWCHAR buffer[2048];
  for (;;) {
    SQLLEN indicator = 0;
    const SQLRETURN rc = SQLGetData(handle_, number, SQL_C_WCHAR, buffer, sizeof buffer, &indicator);
    if (rc == SQL_NO_DATA) break;
    if (!SQL_SUCCEEDED(rc)) return false;
    if (indicator == SQL_NULL_DATA) {
      isNull = true;
      return true;
    }
    // A piece that did not fit fills the buffer but for its terminator; the last piece says
    // its own length.
    const size_t room = sizeof buffer / sizeof buffer[0] - 1;
    const size_t units = (indicator == SQL_NO_TOTAL || indicator < 0 ||
                          static_cast<size_t>(indicator) / sizeof(SQLWCHAR) > room)
                             ? room
                             : static_cast<size_t>(indicator) / sizeof(SQLWCHAR);
    wide.append(buffer, units);
    if (rc == SQL_SUCCESS) break;
  }
  out = Narrow(wide);
  return true;
}

SQLLEN OdbcStatement::RowCount() {
  SQLLEN rows = -1;
  if (!SQL_SUCCEEDED(SQLRowCount(handle_, &rows))) return -1;
  return rows;
}

}  // namespace verdal::sqlbridge
