// Building a large database through the C interface: 1,000,000 records with 10 fields (text,
// number, date, yes/no) in 1,000 categories.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "verdal.h"

namespace {

constexpr int kCategories = 1000;

VerdalHandle NewDatabase() {
  VerdalHandle db = VERDAL_OpenDB(nullptr, nullptr, 0, 0, nullptr, 3, 0, 0);
  const struct { const char* name; int16_t type; } fields[] = {
      {"Name", 0}, {"Vorname", 0}, {"Ort", 0}, {"Strasse", 0}, {"Preis", 1},
      {"Menge", 1}, {"Datum", 5},  {"Zeit", 4}, {"Aktiv", 2},   {"Bezahlt", 2}};
  for (const auto& f : fields) {
    TDBFieldParams p;
    std::memset(&p, 0, sizeof p);
    p.dataType = f.type;
    p.maxChars = -1;
    p.decimals = 2;
    p.allowEmpty = 1;
    p.allowDuplicates = 1;
    p.name = f.name;
    VERDAL_AddField(db, &p, -1, 1);
  }
  return db;
}

void BM_AddRecordsWithTenFields(benchmark::State& state) {
  const int records = static_cast<int>(state.range(0));
  // The values a host would type, prepared outside the timing.
  std::vector<std::string> names(997), prices(101), dates(89);
  for (size_t i = 0; i < names.size(); ++i) names[i] = "Name " + std::to_string(i * 7919 % 100000);
  for (size_t i = 0; i < prices.size(); ++i) prices[i] = std::to_string(i * 37 % 1000) + ",5";
  for (size_t i = 0; i < dates.size(); ++i)
    dates[i] = std::to_string(1 + i % 28) + "." + std::to_string(1 + i % 12) + "." + std::to_string(1950 + i);
  for (auto _ : state) {
    state.PauseTiming();
    VerdalHandle db = NewDatabase();
    std::vector<int32_t> categories;
    for (int c = 0; c < kCategories; ++c) categories.push_back(VERDAL_AddCategory(db, -1, "Kategorie"));
    state.ResumeTiming();
    for (int i = 0; i < records; ++i) {
      // Records arrive spread over the categories, not one category after the other.
      int32_t r = VERDAL_AddRecord(db, categories[static_cast<size_t>(i * 7 % kCategories)], "",
                                   0, names[i % names.size()].c_str(), 0, 0, nullptr);
      VERDAL_SetData(db, 1, "Vorname", r, 0, nullptr, nullptr);
      VERDAL_SetData(db, 2, "Bonn", r, 0, nullptr, nullptr);
      VERDAL_SetData(db, 3, "Hauptstrasse 1", r, 0, nullptr, nullptr);
      VERDAL_SetData(db, 4, prices[i % prices.size()].c_str(), r, 0, nullptr, nullptr);
      VERDAL_SetData(db, 5, "3", r, 0, nullptr, nullptr);
      VERDAL_SetData(db, 6, dates[i % dates.size()].c_str(), r, 0, nullptr, nullptr);
      VERDAL_SetData(db, 7, "1.2.2003 10:11:12", r, 0, nullptr, nullptr);
      VERDAL_SetData(db, 8, "ja", r, 0, nullptr, nullptr);
      VERDAL_SetData(db, 9, "0", r, 0, nullptr, nullptr);
    }
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
