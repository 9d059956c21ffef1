#include "mysql_statement.h"

#include <algorithm>
#include <cstring>

#include "mysql_values.h"

namespace verdal::mysqlgate {
namespace {

constexpr size_t kFirstBufferSize = 256;

// BIT values come as big-endian bytes; the engine wants their number.
std::string BitsAsNumber(const std::string& bytes) {
  uint64_t v = 0;
  for (unsigned char b : bytes) v = (v << 8) | b;
  return std::to_string(v);
}

}  // namespace

MySqlStatement::MySqlStatement(MYSQL* db) : db_(db) {}

MySqlStatement::~MySqlStatement() {
  if (stmt_ != nullptr) mysql_stmt_close(stmt_);
}

bool MySqlStatement::Fail() {
  const char* words = stmt_ != nullptr ? mysql_stmt_error(stmt_) : "";
  if (words == nullptr || *words == 0) words = mysql_error(db_);
  if (words == nullptr || *words == 0) words = "unknown error of the MariaDB client";
  error_ = Cp1252Of(words);
  return false;
}

bool MySqlStatement::Prepare(const std::string& sql) {
  error_.clear();
  stmt_ = mysql_stmt_init(db_);
  if (stmt_ == nullptr) return Fail();
  if (mysql_stmt_prepare(stmt_, sql.data(), sql.size()) != 0) return Fail();
  return true;
}

unsigned long MySqlStatement::ParamCount() const {
  return stmt_ != nullptr ? mysql_stmt_param_count(stmt_) : 0;
}

bool MySqlStatement::Execute(const std::vector<Param>& params) {
  if (stmt_ == nullptr) return false;
  if (params.size() != ParamCount()) {
    error_ = "the statement has " + std::to_string(ParamCount()) + " parameters, but " +
             std::to_string(params.size()) + " values were given";
    return false;
  }
  std::vector<MYSQL_BIND> in(params.size());
  std::vector<unsigned long> inLengths(params.size());
  std::vector<my_bool> inNulls(params.size());
  for (size_t i = 0; i < params.size(); ++i) {
    MYSQL_BIND& b = in[i];
    std::memset(&b, 0, sizeof b);
    const Param& p = params[i];
    if (p.kind == Param::kNull) {
      b.buffer_type = MYSQL_TYPE_NULL;
      inNulls[i] = 1;
      b.is_null = &inNulls[i];
    } else if (p.kind == Param::kInteger) {
      b.buffer_type = MYSQL_TYPE_LONGLONG;
      b.buffer = const_cast<int64_t*>(&p.integer);
    } else {
      b.buffer_type = MYSQL_TYPE_STRING;
      b.buffer = const_cast<char*>(p.text.data());
      inLengths[i] = p.text.size();
      b.buffer_length = p.text.size();
      b.length = &inLengths[i];
    }
  }
  if (!in.empty() && mysql_stmt_bind_param(stmt_, in.data()) != 0) return Fail();
  if (mysql_stmt_execute(stmt_) != 0) return Fail();
  return BindResult();
}

bool MySqlStatement::BindResult() {
  columns_.clear();
  MYSQL_RES* meta = mysql_stmt_result_metadata(stmt_);
  if (meta == nullptr) return true;  // no result set
  const unsigned count = mysql_num_fields(meta);
  const MYSQL_FIELD* fields = mysql_fetch_fields(meta);
  columns_.resize(count);
  binds_.assign(count, MYSQL_BIND{});
  buffers_.assign(count, std::string(kFirstBufferSize, '\0'));
  times_.assign(count, MYSQL_TIME{});
  lengths_.assign(count, 0);
  nulls_.assign(count, 0);
  truncated_.assign(count, 0);
  for (unsigned i = 0; i < count; ++i) {
    ResultColumn& c = columns_[i];
    c.name = Cp1252Of(fields[i].name != nullptr ? fields[i].name : "");
    c.sqlType = SqlTypeOf(fields[i], c.decimals);
    c.type = fields[i].type;
    MYSQL_BIND& b = binds_[i];
    if (IsTemporal(c.type)) {
      b.buffer_type = MYSQL_TYPE_DATETIME;
      b.buffer = &times_[i];
      b.buffer_length = sizeof(MYSQL_TIME);
    } else {
      b.buffer_type = MYSQL_TYPE_STRING;
      b.buffer = buffers_[i].data();
      b.buffer_length = buffers_[i].size();
    }
    b.length = &lengths_[i];
    b.is_null = &nulls_[i];
    b.error = &truncated_[i];
  }
  mysql_free_result(meta);
  if (mysql_stmt_bind_result(stmt_, binds_.data()) != 0) return Fail();
  return true;
}

void MySqlStatement::Cell(size_t i, std::optional<std::string>& cell) {
  if (nulls_[i]) {
    cell.reset();
    return;
  }
  const ResultColumn& c = columns_[i];
  if (IsTemporal(c.type)) {
    cell = SevenOf(times_[i]);
    return;
  }
  std::string raw(buffers_[i].data(), std::min<size_t>(lengths_[i], buffers_[i].size()));
  if (c.type == MYSQL_TYPE_BIT)
    cell = BitsAsNumber(raw);
  else if (c.sqlType == -2 || c.sqlType == -3 || c.sqlType == -4)
    cell = std::move(raw);
  else
    cell = Cp1252Of(raw);
}

bool MySqlStatement::Fetch(Cells& cells) {
  error_.clear();
  if (stmt_ == nullptr || columns_.empty()) return false;
  const int rc = mysql_stmt_fetch(stmt_);
  if (rc == MYSQL_NO_DATA) return false;
  if (rc == 1) return Fail();
  if (rc == MYSQL_DATA_TRUNCATED) {
    // Fetch the whole value of each column that did not fit, into a buffer that now does; the
    // bigger buffers serve the following rows.
    bool rebind = false;
    for (size_t i = 0; i < columns_.size(); ++i) {
      if (!truncated_[i] || binds_[i].buffer_type != MYSQL_TYPE_STRING) continue;
      buffers_[i].assign(lengths_[i] + 1, '\0');
      binds_[i].buffer = buffers_[i].data();
      binds_[i].buffer_length = buffers_[i].size();
      if (mysql_stmt_fetch_column(stmt_, &binds_[i], static_cast<unsigned>(i), 0) != 0) {
        return Fail();
      }
      rebind = true;
    }
    if (rebind && mysql_stmt_bind_result(stmt_, binds_.data()) != 0) return Fail();
  }
  cells.resize(columns_.size());
  for (size_t i = 0; i < columns_.size(); ++i) Cell(i, cells[i]);
  return true;
}

uint64_t MySqlStatement::AffectedRows() const {
  return stmt_ != nullptr ? mysql_stmt_affected_rows(stmt_) : 0;
}

uint64_t MySqlStatement::InsertId() const {
  return stmt_ != nullptr ? mysql_stmt_insert_id(stmt_) : 0;
}

}  // namespace verdal::mysqlgate
