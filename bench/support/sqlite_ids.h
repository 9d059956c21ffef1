#pragma once
// The peer's side of a query benchmark: the ids a SELECT gives, gathered into an array as the
// engine's child lists and sorts gather cursors.
#include <sqlite3.h>

#include <cstdint>
#include <vector>

namespace bench_support {

inline int64_t SelectIds(sqlite3* db, const char* sql) {
  std::vector<int32_t> ids;
  sqlite3_stmt* q = nullptr;
  sqlite3_prepare_v2(db, sql, -1, &q, nullptr);
  while (sqlite3_step(q) == SQLITE_ROW) ids.push_back(sqlite3_column_int(q, 0));
  sqlite3_finalize(q);
  return static_cast<int64_t>(ids.size());
}

}  // namespace bench_support
