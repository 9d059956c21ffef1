// Writing changes through to a linked table: an SQLite file of 10,000 rows imported in mode 3
// through the SQLite ODBC driver, then one VERDAL_SetData of the text field "name" on each record,
// each a new value, which the bridge writes to the table first (an UPDATE of its own per change).
// The peer: the same 10,000 UPDATEs made directly through ODBC on the same driver and file, one
// prepared statement with bound parameters. Both keep the driver's autocommit, as the bridge does,
// so every change is a transaction of its own on both sides. Ratio at the end.
#include <benchmark/benchmark.h>
#include <sql.h>
#include <sqlext.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "support/best_time.h"
#include "verdal.h"

#if VERDAL_HAVE_SQLITE
#include <sqlite3.h>

#include "support/sqlite_ids.h"

namespace {

constexpr int kRows = 10000;

const std::filesystem::path& Folder() {
  static const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("verdal-bench-write-through-" + std::to_string(getpid()));
  return folder;
}
std::string TablePath() { return (Folder() / "shop.db").string(); }
std::string ConnectionString() { return "Driver=SQLite3;Database=" + TablePath(); }

// The table, made once with SQLite itself, and its definition for a linked import.
std::string MakeTable() {
  static const std::string definition = [] {
    std::filesystem::create_directories(Folder());
    sqlite3* db = nullptr;
    sqlite3_open(TablePath().c_str(), &db);
    sqlite3_exec(db, "CREATE TABLE items(id INTEGER PRIMARY KEY, name TEXT, price NUMERIC, amount INTEGER, note TEXT); BEGIN",
                 nullptr, nullptr, nullptr);
    bench_support::InsertRows(db, "INSERT INTO items VALUES(?,?,?,?,?)", kRows, [](sqlite3_stmt* ins, int i) {
      sqlite3_bind_int(ins, 1, i + 1);
      sqlite3_bind_text(ins, 2, ("Artikel " + std::to_string(i)).c_str(), -1, SQLITE_TRANSIENT);
      sqlite3_bind_double(ins, 3, (i % 1000) / 4.0);
      sqlite3_bind_int(ins, 4, i % 37);
      sqlite3_bind_text(ins, 5, ("Lager " + std::to_string(i % 12)).c_str(), -1, SQLITE_TRANSIENT);
    });
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    const std::string path = (Folder() / "shop.imp").string();
    std::ofstream(path) << "[ODBC_IMPORT]\nODBC_CONNECT=" << ConnectionString()
                        << "\nODBC_TABLE=items\nIDENTFIELD=id\nIMPORT_TYPE=3\n";
    return path;
  }();
  return definition;
}

// The peer's connection: the driver's defaults (autocommit on), one prepared UPDATE.
struct Direct {
  SQLHENV env = SQL_NULL_HENV;
  SQLHDBC dbc = SQL_NULL_HDBC;
  SQLHSTMT update = SQL_NULL_HSTMT;
  SQLCHAR name[64] = {};
  SQLLEN nameLength = SQL_NTS;
  SQLINTEGER id = 0;

  Direct() {
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &env);
    SQLSetEnvAttr(env, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, env, &dbc);
    std::string text = ConnectionString();
    SQLDriverConnect(dbc, nullptr, reinterpret_cast<SQLCHAR*>(text.data()), SQL_NTS, nullptr, 0, nullptr,
                     SQL_DRIVER_NOPROMPT);
    SQLAllocHandle(SQL_HANDLE_STMT, dbc, &update);
    SQLPrepare(update, reinterpret_cast<SQLCHAR*>(const_cast<char*>("UPDATE items SET name = ? WHERE id = ?")), SQL_NTS);
    SQLBindParameter(update, 1, SQL_PARAM_INPUT, SQL_C_CHAR, SQL_VARCHAR, sizeof name - 1, 0, name, sizeof name,
                     &nameLength);
    SQLBindParameter(update, 2, SQL_PARAM_INPUT, SQL_C_SLONG, SQL_INTEGER, 0, 0, &id, 0, nullptr);
  }
  ~Direct() {
    SQLFreeHandle(SQL_HANDLE_STMT, update);
    SQLDisconnect(dbc);
    SQLFreeHandle(SQL_HANDLE_DBC, dbc);
    SQLFreeHandle(SQL_HANDLE_ENV, env);
  }
  // How many rows have a name starting with prefix: the check that the changes reached the file.
  long Named(const std::string& prefix) {
    SQLHSTMT q = SQL_NULL_HSTMT;
    SQLAllocHandle(SQL_HANDLE_STMT, dbc, &q);
    std::string sql = "SELECT COUNT(*) FROM items WHERE name LIKE '" + prefix + "%'";
    SQLINTEGER count = -1;
    SQLExecDirect(q, reinterpret_cast<SQLCHAR*>(sql.data()), SQL_NTS);
    if (SQLFetch(q) == SQL_SUCCESS) SQLGetData(q, 1, SQL_C_SLONG, &count, 0, nullptr);
    SQLFreeHandle(SQL_HANDLE_STMT, q);
    return count;
  }
};

Direct& Peer() {
  MakeTable();
  static Direct direct;
  return direct;
}

void BM_VerdalSetDataWriteThrough(benchmark::State& s) {
  setenv("VERDAL_GATEWAY_DIR", VERDAL_GATEWAY_FOLDER, 1);
  VerdalHandle db = VERDAL_OpenDB(nullptr, nullptr, 1, 0, nullptr, 2, 0, 0);
  int32_t count = 0;
  int32_t* cursors = nullptr;
  if (VERDAL_Import(db, MakeTable().c_str(), 0, nullptr, nullptr, 3, 0, &count, &cursors, 0, nullptr, nullptr, 0) != 1 ||
      count != kRows) {
    s.SkipWithError(("linked import failed, last error " + std::to_string(VERDAL_GetLastError())).c_str());
    return;
  }
  const int32_t field = VERDAL_GetFieldIndex(db, "name");
  int round = 0, failures = 0;
  bench_support::Timed(s, "verdal", [&] {
    ++round;
    char error[1024];
    for (int i = 0; i < kRows; ++i) {
      const std::string value = "v" + std::to_string(round) + "-" + std::to_string(i);
      failures += VERDAL_SetData(db, field, value.c_str(), cursors[i], 0, error, 0) != 1;
    }
    return static_cast<int64_t>(kRows);
  });
  if (failures != 0 || Peer().Named("v" + std::to_string(round) + "-") != kRows)
    s.SkipWithError("the changes did not all reach the table");
  VERDAL_GetCategoryDeleteChildList(cursors);
  VERDAL_CloseDB(db);
}
BENCHMARK(BM_VerdalSetDataWriteThrough)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_OdbcUpdate(benchmark::State& s) {
  Direct& peer = Peer();
  int round = 0, failures = 0;
  bench_support::Timed(s, "odbc", [&] {
    ++round;
    for (int i = 0; i < kRows; ++i) {
      std::snprintf(reinterpret_cast<char*>(peer.name), sizeof peer.name, "p%d-%d", round, i);
      peer.id = i + 1;
      SQLLEN rows = 0;
      failures += !SQL_SUCCEEDED(SQLExecute(peer.update)) || !SQL_SUCCEEDED(SQLRowCount(peer.update, &rows)) || rows != 1;
    }
    return static_cast<int64_t>(kRows);
  });
  if (failures != 0 || peer.Named("p" + std::to_string(round) + "-") != kRows)
    s.SkipWithError("the updates did not all reach the table");
}
BENCHMARK(BM_OdbcUpdate)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
#endif

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\nRatio (best of 3):\n");
  bench_support::PrintRatio("write-through / odbc update", "verdal", "odbc", 30);
  VERDAL_CloseAllDBs();
#if VERDAL_HAVE_SQLITE
  std::filesystem::remove_all(Folder());
#endif
  benchmark::Shutdown();
  return 0;
}
