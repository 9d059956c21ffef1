// Building a large database through the C interface: 1,000,000 records with 10 fields (text,
// number, date, yes/no) in 1,000 categories. And growth beyond what the host announced: records
// in a database of size class 0, and thousands of fields, where the time per record or field
// must not grow with the count.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/big_database.h"
#include "verdal.h"

namespace {

void BM_AddRecordsWithTenFields(benchmark::State& state) {
  const int records = static_cast<int>(state.range(0));
  bench_support::Values values;
  for (auto _ : state) {
    state.PauseTiming();
    VerdalHandle db = bench_support::NewDatabaseWithFields();
    std::vector<int32_t> categories = bench_support::AddCategories(db);
    state.ResumeTiming();
    bench_support::AddRecords(db, categories, records, values);
    state.PauseTiming();
    VERDAL_CloseDB(db);
    state.ResumeTiming();
  }
  state.counters["per_record"] = benchmark::Counter(
      records, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_AddRecordsWithTenFields)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1);

// Records at the top level of a database opened with size class 0, whose maps have 63 buckets.
void BM_AddRecordsSizeClass0(benchmark::State& state) {
  const int records = static_cast<int>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    VerdalHandle db = VERDAL_OpenDB(nullptr, nullptr, 1, 0, nullptr, 0, 0, 0);
    TDBFieldParams p;
    std::memset(&p, 0, sizeof p);
    p.maxChars = -1;
    p.allowEmpty = 1;
    p.allowDuplicates = 1;
    p.name = "Name";
    VERDAL_AddField(db, &p, -1, 1);
    state.ResumeTiming();
    for (int i = 0; i < records; ++i) VERDAL_AddRecord(db, -1, "", 0, "Wert", 0, 0, nullptr);
    state.PauseTiming();
    VERDAL_CloseDB(db);
    state.ResumeTiming();
  }
  state.counters["per_record"] = benchmark::Counter(
      records, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_AddRecordsSizeClass0)->Arg(20000)->Arg(200000)->Unit(benchmark::kMillisecond)->Iterations(1);

// Fields added one by one, each name looked up first as VERDAL_AddField does.
void BM_AddFields(benchmark::State& state) {
  const int fields = static_cast<int>(state.range(0));
  std::vector<std::string> names;
  for (int i = 0; i < fields; ++i) names.push_back("Feld " + std::to_string(i));
  for (auto _ : state) {
    state.PauseTiming();
    VerdalHandle db = VERDAL_OpenDB(nullptr, nullptr, 1, 0, nullptr, 1, 0, 0);
    state.ResumeTiming();
    for (const std::string& name : names) {
      TDBFieldParams p;
      std::memset(&p, 0, sizeof p);
      p.maxChars = -1;
      p.allowEmpty = 1;
      p.allowDuplicates = 1;
      p.name = name.c_str();
      VERDAL_AddField(db, &p, -1, 1);
    }
    state.PauseTiming();
    VERDAL_CloseDB(db);
    state.ResumeTiming();
  }
  state.counters["per_field"] = benchmark::Counter(
      fields, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_AddFields)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
