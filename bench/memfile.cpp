// Serialising many small strings into a memory file, as a database save does per value.
#include <benchmark/benchmark.h>

#include <string>

#include "io/memfile.h"
#include "io/stream_io.h"

namespace {

constexpr int kStrings = 10'000'000;

void BM_MemFileWriteStrings(benchmark::State& state) {
  const std::string values[4] = {"", "Hallo", "1234.5", "M\xFC" "ller-L\xFC" "denscheid"};
  int64_t bytes = 0;
  for (auto _ : state) {
    verdal::TMemFile file(2'000'000);
    for (int i = 0; i < kStrings; ++i) verdal::WriteString(values[i & 3], file);
    bytes += file.GetLength();
    benchmark::DoNotOptimize(file.Data());
  }
  state.SetBytesProcessed(bytes);
  state.SetItemsProcessed(state.iterations() * int64_t{kStrings});
}
BENCHMARK(BM_MemFileWriteStrings)->Unit(benchmark::kMillisecond);

// The same strings read back, so the reader's length check shows its cost.
void BM_MemFileReadStrings(benchmark::State& state) {
  const std::string values[4] = {"", "Hallo", "1234.5", "M\xFC" "ller-L\xFC" "denscheid"};
  verdal::TMemFile file(2'000'000);
  for (int i = 0; i < kStrings; ++i) verdal::WriteString(values[i & 3], file);
  std::string s;
  for (auto _ : state) {
    file.SeekToBegin();
    for (int i = 0; i < kStrings; ++i) verdal::ReadString(s, file);
    benchmark::DoNotOptimize(s);
  }
  state.SetItemsProcessed(state.iterations() * int64_t{kStrings});
}
BENCHMARK(BM_MemFileReadStrings)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
