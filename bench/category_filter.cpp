// Child lists through a filter over 1,000,000 records, against SQLite in memory running the
// equivalent SELECT over the same rows in the same run. Ratios at the end: our time / SQLite's.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
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

// The filter, which is case-sensitive (flags 0), and the one that means what SQLite's
// upper(name) LIKE '%AB%' means (flag 4: any letter case).
const char* const kContains = "\\eval{Name|*=|\"ab\"|0}";
const char* const kContainsAnyCase = "\\eval{Name|*=|\"ab\"|4}";
const char* const kRange = "\\eval{Preis|>=|100|0} and \\eval{Preis|<|200|0}";


// Names of which about one in three holds "ab" in some letter case; prices from 0 to 999.
std::string NameOf(int i) {
  static const char* const stems[] = {"Abel", "Schmidt", "Gabler", "Meyer", "Krabbe", "Otto"};
  return std::string(stems[i % 6]) + " " + std::to_string(i * 7919 % 100000);
}
std::string PriceOf(int i) { return std::to_string(i * 37 % 1000) + ".25"; }

VerdalHandle Big() {
  static VerdalHandle db = [] {
    VerdalHandle h = bench_support::NewDatabaseWithFields();
    std::vector<int32_t> categories = bench_support::AddCategories(h);
    for (int i = 0; i < kRecords; ++i) {
      int32_t r = VERDAL_AddRecord(h, categories[static_cast<size_t>(i * 7 % bench_support::kCategories)],
                                   "", 0, NameOf(i).c_str(), 0, 0, nullptr);
      VERDAL_SetData(h, 4, PriceOf(i).c_str(), r, 0, nullptr, nullptr);
    }
    return h;
  }();
  return db;
}

// The same database saved and loaded again: its objects then lie as a load makes them.
std::string g_loadedFile;
VerdalHandle Loaded() {
  static VerdalHandle db = [] {
    g_loadedFile = (std::filesystem::temp_directory_path() / "verdal-bench-filter.dbd").string();
    VERDAL_Save(Big(), g_loadedFile.c_str());
    return VERDAL_OpenDB(g_loadedFile.c_str(), nullptr, 1, 0, nullptr, 3, 1, 0);
  }();
  return db;
}


int64_t ChildList(const char* filter, VerdalHandle db = Big()) {
  int32_t count = 0;
  int32_t* cursors = nullptr;
  if (!VERDAL_GetCategoryChildList(db, VERDAL_CURSOR_ROOT, 0, 0, 1, 0, &count, &cursors, 2, filter, 0))
    return -1;
  VERDAL_GetCategoryDeleteChildList(cursors);
  return count;
}

// Each database is built before the clock runs.
void BM_VerdalContains(benchmark::State& s) {
  Big();
  bench_support::Timed(s, "verdal contains", [] { return ChildList(kContains); });
}
void BM_VerdalContainsAnyCase(benchmark::State& s) {
  Big();
  bench_support::Timed(s, "verdal contains any case", [] { return ChildList(kContainsAnyCase); });
}
void BM_VerdalRange(benchmark::State& s) {
  Big();
  bench_support::Timed(s, "verdal range", [] { return ChildList(kRange); });
}
void BM_VerdalRangeLoaded(benchmark::State& s) {
  if (Loaded() == 0) return s.SkipWithError("the saved database did not load");
  bench_support::Timed(s, "verdal range, loaded", [] { return ChildList(kRange, Loaded()); });
}

#if VERDAL_HAVE_SQLITE
sqlite3* Peer() {
  static sqlite3* s = [] {
    sqlite3* db = nullptr;
    sqlite3_open(":memory:", &db);
    sqlite3_exec(db, "CREATE TABLE records(id INTEGER PRIMARY KEY, name TEXT, preis REAL); BEGIN", nullptr,
                 nullptr, nullptr);
    bench_support::InsertRows(db, "INSERT INTO records VALUES(?,?,?)", kRecords, [](sqlite3_stmt* ins, int i) {
      sqlite3_bind_int(ins, 1, i);
      sqlite3_bind_text(ins, 2, NameOf(i).c_str(), -1, SQLITE_TRANSIENT);
      sqlite3_bind_double(ins, 3, std::stod(PriceOf(i)));
    });
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    return db;
  }();
  return s;
}

void BM_SqliteContains(benchmark::State& s) {
  Peer();
  bench_support::Timed(s, "sqlite contains", [] { return bench_support::SelectIds(Peer(), "SELECT id FROM records WHERE upper(name) LIKE '%AB%'"); });
}
void BM_SqliteRange(benchmark::State& s) {
  Peer();
  bench_support::Timed(s, "sqlite range", [] { return bench_support::SelectIds(Peer(), "SELECT id FROM records WHERE preis >= 100 AND preis < 200"); });
}
BENCHMARK(BM_SqliteContains)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_SqliteRange)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
#endif

BENCHMARK(BM_VerdalContains)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_VerdalContainsAnyCase)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_VerdalRange)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_VerdalRangeLoaded)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);


}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\nRatios (our time / SQLite time, best of 5):\n");
  bench_support::PrintRatio("contains \"ab\", flags 0", "verdal contains", "sqlite contains");
  bench_support::PrintRatio("contains \"ab\", flags 4", "verdal contains any case", "sqlite contains");
  bench_support::PrintRatio("number range", "verdal range", "sqlite range");
  bench_support::PrintRatio("number range, loaded", "verdal range, loaded", "sqlite range");
  if (!g_loadedFile.empty()) std::filesystem::remove(g_loadedFile);
  benchmark::Shutdown();
  return 0;
}
