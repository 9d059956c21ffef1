// Showing link values: 1,000,000 records whose link field points into a database of 100,000
// (on disk, as links need), one pass of VERDAL_GetData over all of them, against SQLite in memory
// joining the same two tables for the same column, in the same run. Ratio at the end.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <unistd.h>
#include <filesystem>
#include <string>
#include <vector>

#if VERDAL_HAVE_SQLITE
#include <sqlite3.h>

#include "support/sqlite_ids.h"
#endif

#include "support/best_time.h"
#include "support/big_database.h"
#include "verdal.h"

namespace {

constexpr int kRecords = 1000000;
constexpr int kTargets = 100000;

std::string NameOf(int i) { return "Kunde " + std::to_string(i * 7919LL % 1000003); }
int TargetOf(int i) { return static_cast<int>(i * 48271LL % kTargets); }

const std::string& TargetPath() {
  static const std::string path =
      (std::filesystem::temp_directory_path() / ("verdal-bench-links-" + std::to_string(getpid()) + ".dbd")).string();
  return path;
}

struct Linked {
  VerdalHandle near = 0;
  std::vector<int32_t> records;
};

const Linked& Databases() {
  static Linked built = [] {
    Linked l;
    const std::string path = TargetPath();
    VerdalHandle far = VERDAL_OpenDB(path.c_str(), nullptr, 1, 0, nullptr, 2, 0, 0);
    TDBFieldParams name = bench_support::FieldRecord("Name", 0);
    VERDAL_AddField(far, &name, -1, 1);
    std::vector<int32_t> targets(kTargets);
    for (int i = 0; i < kTargets; ++i)
      targets[static_cast<size_t>(i)] = VERDAL_AddRecord(far, VERDAL_CURSOR_ROOT, "", 0, NameOf(i).c_str(), 0, 0, nullptr);
    l.near = VERDAL_OpenDB(nullptr, nullptr, 1, 0, nullptr, 3, 0, 0);
    TDBFieldParams link = bench_support::FieldRecord("Kunde", 7);
    link.linkDatabase = path.c_str();
    link.linkField = "Name";
    VERDAL_AddField(l.near, &link, -1, 1);
    l.records.reserve(kRecords);
    for (int i = 0; i < kRecords; ++i)
      l.records.push_back(VERDAL_AddRecord(l.near, VERDAL_CURSOR_ROOT, "", 0,
                                           std::to_string(targets[static_cast<size_t>(TargetOf(i))]).c_str(), 0, 0, nullptr));
    return l;
  }();
  return built;
}

void BM_VerdalShowLinks(benchmark::State& s) {
  const Linked& l = Databases();
  bench_support::Timed(s, "verdal", [&] {
    int64_t bytes = 0;
    for (int32_t r : l.records) {
      const char* shown = VERDAL_GetData(l.near, 0, r, 0, 0);
      bytes += shown != nullptr ? static_cast<int64_t>(std::strlen(shown)) : -1000000;
    }
    return bytes;
  });
}
BENCHMARK(BM_VerdalShowLinks)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

#if VERDAL_HAVE_SQLITE
sqlite3* Peer() {
  static sqlite3* s = [] {
    sqlite3* db = nullptr;
    sqlite3_open(":memory:", &db);
    sqlite3_exec(db, "CREATE TABLE b(id INTEGER PRIMARY KEY, name TEXT); CREATE TABLE a(id INTEGER PRIMARY KEY, link INTEGER); BEGIN",
                 nullptr, nullptr, nullptr);
    bench_support::InsertRows(db, "INSERT INTO b VALUES(?,?)", kTargets, [](sqlite3_stmt* ins, int i) {
      sqlite3_bind_int(ins, 1, i);
      sqlite3_bind_text(ins, 2, NameOf(i).c_str(), -1, SQLITE_TRANSIENT);
    });
    bench_support::InsertRows(db, "INSERT INTO a VALUES(?,?)", kRecords, [](sqlite3_stmt* ins, int i) {
      sqlite3_bind_int(ins, 1, i);
      sqlite3_bind_int(ins, 2, TargetOf(i));
    });
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    return db;
  }();
  return s;
}

void BM_SqliteJoin(benchmark::State& s) {
  Peer();
  bench_support::Timed(s, "sqlite", [] {
    int64_t bytes = 0;
    sqlite3_stmt* q = nullptr;
    sqlite3_prepare_v2(Peer(), "SELECT b.name FROM a JOIN b ON b.id = a.link ORDER BY a.id", -1, &q, nullptr);
    while (sqlite3_step(q) == SQLITE_ROW) bytes += sqlite3_column_bytes(q, 0);
    sqlite3_finalize(q);
    return bytes;
  });
}
BENCHMARK(BM_SqliteJoin)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
#endif

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\nRatio (best of 3):\n");
  bench_support::PrintRatio("link values / sqlite join", "verdal", "sqlite", 28);
  VERDAL_CloseAllDBs();
  std::filesystem::remove(TargetPath());
  std::filesystem::remove(std::filesystem::path(TargetPath()).replace_extension(".bak"));  // its backup
  benchmark::Shutdown();
  return 0;
}
