// A filter bound to a database: building the query (expansion, binding, compiling) once per call,
// and Test once per node, with the field reads going through the store.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "engine/db_manager.h"
#include "engine/record_ops.h"
#include "engine/values.h"
#include "model/fields.h"
#include "model/place_walk.h"
#include "query/query_cache.h"

using namespace verdal;

namespace {

constexpr int kRecords = 100000;

engine::TDBManager& Database() {
  static engine::TDBManager* db = [] {
    auto* d = new engine::TDBManager(3);
    model::TDBFieldInfo name, price;
    name.name = "Name";
    price.name = "Preis";
    price.type.dataType = model::kTypeNumber;
    model::AddFieldInfo(d->store, name, -1);
    model::AddFieldInfo(d->store, price, -1);
    static const char* const kNames[] = {"Graben", "Abend", "Kuchen", "Laborant",
                                         "Baum",   "Krabbe", "Tisch", "Habicht"};
    for (int i = 0; i < kRecords; ++i) {
      std::string n = std::string(kNames[i % 8]) + std::to_string(i % 97);
      int32_t r = engine::AddRecord(*d, -2, "", false, n.c_str(), 0, nullptr);
      engine::SetData(*d, 1, std::to_string(i * 37 % 3000 / 100.0).c_str(), r, false, nullptr, nullptr);
    }
    return d;
  }();
  return *db;
}

const char* const kFilters[] = {"\\eval{Name|*=|\"ab\"|4}",
                                "\\eval{Preis|>=|5,5|0} and \\eval{Preis|<|10|0}"};

void BM_QueryCacheBuild(benchmark::State& state) {
  engine::TDBManager& db = Database();
  for (auto _ : state) {
    query::QX_QueryCache q(db.store, kFilters[state.range(0)]);
    benchmark::DoNotOptimize(q.lastError);
  }
}
BENCHMARK(BM_QueryCacheBuild)->Arg(0)->Arg(1);

// One iteration walks all records; items are nodes tested.
void BM_QueryCacheCollect(benchmark::State& state) {
  engine::TDBManager& db = Database();
  std::vector<int32_t> list;
  for (auto _ : state) {
    list.clear();
    query::QX_QueryCache q(db.store, kFilters[state.range(0)]);
    model::CollectPlaces(db.store, &db.store.MainView().root, list, model::kKindRecords, true,
                         false, &q, false);
    if (q.lastError != nullptr) state.SkipWithError(q.lastError);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kRecords);
  state.SetLabel(std::to_string(list.size()) + " pass");
}
BENCHMARK(BM_QueryCacheCollect)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
BENCHMARK_MAIN();
