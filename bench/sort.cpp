// Sorting 1,000,000 records: VERDAL_SortFlat by (text, number) and by (date descending) against
// SQLite in memory running the same ORDER BY over the same rows into an array, in the same run;
// and VERDAL_Sort of the whole tree. Ratios at the end, and the peak memory a flat sort takes.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <fstream>
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

// Mostly distinct names, prices with many ties, dates over about 250 years.
std::string NameOf(int i) { return "Name " + std::to_string(i * 7919LL % 1000003); }
int PriceOf(int i) { return i * 37 % 1000; }
int DayOf(int i) { return 1 + i % 28; }
int MonthOf(int i) { return 1 + i / 28 % 12; }
int YearOf(int i) { return 1800 + i * 13 % 250; }

VerdalHandle Big() {
  static VerdalHandle db = [] {
    VerdalHandle h = bench_support::NewDatabaseWithFields();
    std::vector<int32_t> categories = bench_support::AddCategories(h);
    for (int i = 0; i < kRecords; ++i) {
      int32_t r = VERDAL_AddRecord(h, categories[static_cast<size_t>(i * 7 % bench_support::kCategories)], "", 0,
                                   NameOf(i).c_str(), 0, 0, nullptr);
      VERDAL_SetData(h, 4, (std::to_string(PriceOf(i)) + ",5").c_str(), r, 0, nullptr, nullptr);
      const std::string date = std::to_string(DayOf(i)) + "." + std::to_string(MonthOf(i)) + "." +
                               std::to_string(YearOf(i));
      VERDAL_SetData(h, 6, date.c_str(), r, 0, nullptr, nullptr);
    }
    VERDAL_SetListSortTopInfo(h, "Name, Preis", 4, 1, 0);
    VERDAL_SetListSortTopInfo(h, "Name, Preis", 0, 1, 1);
    VERDAL_SetListSortTopInfo(h, "Datum ab", 6, 0, 0);
    return h;
  }();
  return db;
}


int64_t FlatSort(const char* name) {
  int32_t count = 0, *cursors = nullptr;
  if (VERDAL_SortFlat(Big(), name, &count, &cursors) != 1) return -1;
  VERDAL_GetCategoryDeleteChildList(cursors);
  return count;
}

void BM_VerdalFlatNamePrice(benchmark::State& s) {
  Big();
  bench_support::Timed(s, "verdal name, price", [] { return FlatSort("Name, Preis"); });
}
void BM_VerdalFlatDateDescending(benchmark::State& s) {
  Big();
  bench_support::Timed(s, "verdal date desc", [] { return FlatSort("Datum ab"); });
}
void BM_VerdalTreeNamePrice(benchmark::State& s) {
  Big();
  bench_support::Timed(s, "verdal tree name, price", [] { return static_cast<int64_t>(VERDAL_Sort(Big(), "Name, Preis")); });
}

#if VERDAL_HAVE_SQLITE
sqlite3* Peer() {
  static sqlite3* s = [] {
    sqlite3* db = nullptr;
    sqlite3_open(":memory:", &db);
    sqlite3_exec(db, "CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, preis REAL, datum TEXT); BEGIN", nullptr,
                 nullptr, nullptr);
    bench_support::InsertRows(db, "INSERT INTO t VALUES(?,?,?,?)", kRecords, [](sqlite3_stmt* ins, int i) {
      char date[16];
      std::snprintf(date, sizeof date, "%04d-%02d-%02d", YearOf(i), MonthOf(i), DayOf(i));
      sqlite3_bind_int(ins, 1, i);
      sqlite3_bind_text(ins, 2, NameOf(i).c_str(), -1, SQLITE_TRANSIENT);
      sqlite3_bind_double(ins, 3, PriceOf(i) + 0.5);
      sqlite3_bind_text(ins, 4, date, -1, SQLITE_TRANSIENT);
    });
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    return db;
  }();
  return s;
}

void BM_SqliteNamePrice(benchmark::State& s) {
  Peer();
  bench_support::Timed(s, "sqlite name, price", [] { return bench_support::SelectIds(Peer(), "SELECT id FROM t ORDER BY name, preis"); });
}
void BM_SqliteDateDescending(benchmark::State& s) {
  Peer();
  bench_support::Timed(s, "sqlite date desc", [] { return bench_support::SelectIds(Peer(), "SELECT id FROM t ORDER BY datum DESC"); });
}
BENCHMARK(BM_SqliteNamePrice)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_SqliteDateDescending)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
#endif

BENCHMARK(BM_VerdalFlatNamePrice)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_VerdalFlatDateDescending)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_VerdalTreeNamePrice)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);


// Resident and peak resident kilobytes of the process.
long StatusKb(const char* key) {
  std::ifstream in("/proc/self/status");
  std::string line;
  while (std::getline(in, line))
    if (line.rfind(key, 0) == 0) return std::stol(line.substr(std::string(key).size()));
  return -1;
}

// The peak extra memory of one flat sort: the peak resident size is reset, the sort runs, and the
// new peak is compared with what was resident before.
void PeakOfFlatSort(const char* name) {
  Big();
  std::ofstream("/proc/self/clear_refs") << "5";
  const long before = StatusKb("VmRSS:");
  FlatSort(name);
  const long peak = StatusKb("VmHWM:");
  std::printf("peak extra memory, flat sort by %-12s %6.1f bytes per record\n", name,
              (peak - before) * 1024.0 / kRecords);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::printf("\nRatios (best of 3):\n");
  bench_support::PrintRatio("flat (name, price) / sqlite", "verdal name, price", "sqlite name, price", 32);
  bench_support::PrintRatio("flat (date desc) / sqlite", "verdal date desc", "sqlite date desc", 32);
  bench_support::PrintRatio("tree (name, price) / flat", "verdal tree name, price", "verdal name, price", 32);
  PeakOfFlatSort("Name, Preis");
  PeakOfFlatSort("Datum ab");
  benchmark::Shutdown();
  return 0;
}
