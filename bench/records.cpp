// Building a large database through the C interface: 1,000,000 records with 10 fields (text,
// number, date, yes/no) in 1,000 categories.
#include <benchmark/benchmark.h>

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

}  // namespace

BENCHMARK_MAIN();
