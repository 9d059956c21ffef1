#pragma once
// One prepared statement on a connection. Values go in only as bound parameters; results come out
// in the engine's form: code page 1252 text, dates in the seven-number form, nothing for NULL.
#include <mysql.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace verdal::mysqlgate {

// A parameter value: NULL, UTF-8 text, or an integer (so that BIT and integer columns take "1" as
// the number it is, not as the character).
struct Param {
  enum Kind { kNull, kText, kInteger } kind = kNull;
  std::string text;
  int64_t integer = 0;
  static Param Text(std::string t) { return {kText, std::move(t), 0}; }
  static Param Integer(int64_t v) { return {kInteger, {}, v}; }
};

struct ResultColumn {
  std::string name;  // code page 1252
  int16_t sqlType = 12;
  int16_t decimals = -1;
  enum_field_types type = MYSQL_TYPE_STRING;
};

using Cells = std::vector<std::optional<std::string>>;

class MySqlStatement {
 public:
  explicit MySqlStatement(MYSQL* db);
  ~MySqlStatement();
  MySqlStatement(const MySqlStatement&) = delete;
  MySqlStatement& operator=(const MySqlStatement&) = delete;

  // Takes UTF-8 SQL.
  bool Prepare(const std::string& sql);
  unsigned long ParamCount() const;
  // Binds and runs; afterwards Columns() describes the result, if the statement has one.
  bool Execute(const std::vector<Param>& params);
  const std::vector<ResultColumn>& Columns() const { return columns_; }
  // The next row of the result; false at its end or on an error (then Error() is not empty).
  bool Fetch(Cells& cells);

  uint64_t AffectedRows() const;
  uint64_t InsertId() const;
  // The server's words for the last failure, in code page 1252; empty when there was none.
  std::string Error() const { return error_; }

 private:
  bool Fail();
  bool BindResult();
  void Cell(size_t i, std::optional<std::string>& cell);

  MYSQL* db_;
  MYSQL_STMT* stmt_ = nullptr;
  std::string error_;
  std::vector<ResultColumn> columns_;
  // Result buffers, one per column; a text buffer grows when a value does not fit.
  std::vector<MYSQL_BIND> binds_;
  std::vector<std::string> buffers_;
  std::vector<MYSQL_TIME> times_;
  std::vector<unsigned long> lengths_;
  std::vector<my_bool> nulls_, truncated_;
};

}  // namespace verdal::mysqlgate
