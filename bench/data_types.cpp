// Comparing stored values as a sort step does: both values taken from the store in internal form.
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "model/data_type_info.h"
#include "model/number_text.h"

using verdal::model::TDataTypeInfo;

namespace {

constexpr size_t kValues = 4096;  // a power of two, for cheap wrapping

std::vector<std::string> StoredNumbers() {
  std::mt19937 rng(1);
  std::uniform_real_distribution<double> d(-1e6, 1e6);
  std::vector<std::string> v(kValues);
  for (std::string& s : v) verdal::model::FormatNumber(d(rng), 2, s);
  return v;
}

std::vector<std::string> StoredDates() {
  std::mt19937 rng(2);
  std::vector<std::string> v(kValues);
  for (std::string& s : v)
    s = std::to_string(1 + rng() % 28) + "." + std::to_string(1 + rng() % 12) + "." +
        std::to_string(1950 + rng() % 80) + "." + std::to_string(rng() % 24) + "." +
        std::to_string(rng() % 60) + "." + std::to_string(rng() % 60) + ".0";
  return v;
}

std::vector<std::string> StoredNames() {
  static const char* const kNames[] = {"M\xFCller", "Meyer", "Schmidt", "Schulze-Wagner",
                                       "O'Brien", "Becker", "Hoffmann", "Sch\xE4" "fer"};
  std::mt19937 rng(3);
  std::vector<std::string> v(kValues);
  for (std::string& s : v) s = std::string(kNames[rng() % 8]) + " " + std::to_string(rng() % 100);
  return v;
}

void RunCompare(benchmark::State& state, int16_t type, const std::vector<std::string>& values,
                bool canonical) {
  TDataTypeInfo field;
  field.dataType = type;
  size_t i = 0;
  int sum = 0;
  for (auto _ : state) {
    sum += field.Compare(values[i], values[(i + 1) & (kValues - 1)], false, false, canonical,
                         nullptr, nullptr);
    i = (i + 1) & (kValues - 1);
  }
  benchmark::DoNotOptimize(sum);
}

void BM_CompareStoredNumbers(benchmark::State& state) {
  RunCompare(state, verdal::model::kTypeNumber, StoredNumbers(), true);
}
void BM_CompareStoredDates(benchmark::State& state) {
  RunCompare(state, verdal::model::kTypeDateTime, StoredDates(), true);
}
void BM_CompareNumbersNotCanonical(benchmark::State& state) {
  RunCompare(state, verdal::model::kTypeNumber, StoredNumbers(), false);
}
void BM_CompareStoredTextWordSort(benchmark::State& state) {
  RunCompare(state, verdal::model::kTypeText, StoredNames(), true);
}

}  // namespace

BENCHMARK(BM_CompareStoredNumbers);
BENCHMARK(BM_CompareStoredDates);
BENCHMARK(BM_CompareNumbersNotCanonical);
BENCHMARK(BM_CompareStoredTextWordSort);
BENCHMARK_MAIN();
