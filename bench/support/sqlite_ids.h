#pragma once
// The peer's side of a query benchmark: the ids a SELECT gives, gathered into an array as the
// engine's child lists and sorts gather cursors.
#include <sqlite3.h>

#include <cstdint>
#include <vector>

namespace bench_support {

// Inserts count rows with one prepared statement: bind(statement, i) binds row i's values.
template <class Bind>
void InsertRows(sqlite3* db, const char* sql, int count, Bind&& bind) {
  sqlite3_stmt* ins = nullptr;
  sqlite3_prepare_v2(db, sql, -1, &ins, nullptr);
  for (int i = 0; i < count; ++i) {
    bind(ins, i);
    sqlite3_step(ins);
    sqlite3_reset(ins);
  }
  sqlite3_finalize(ins);
}

inline int64_t SelectIds(sqlite3* db, const char* sql) {
  std::vector<int32_t> ids;
  sqlite3_stmt* q = nullptr;
  sqlite3_prepare_v2(db, sql, -1, &q, nullptr);
  while (sqlite3_step(q) == SQLITE_ROW) ids.push_back(sqlite3_column_int(q, 0));
  sqlite3_finalize(q);
  return static_cast<int64_t>(ids.size());
}

}  // namespace bench_support
