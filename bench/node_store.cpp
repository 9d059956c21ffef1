// Tree building and cursor lookup at the size of a large database: 1,000,000 records under
// 10,000 categories, size class 3.
#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

#include "model/node_store.h"

using namespace verdal::model;

namespace {

constexpr int kCategories = 10000;
constexpr int kRecords = 1000000;

struct BigStore {
  NodeStore store{3};
  std::vector<TDBCategoryData*> places;

  BigStore() {
    std::mt19937 rng(42);
    places.reserve(kCategories + kRecords);
    for (int c = 0; c < kCategories; ++c) {
      TDBCategoryRecord rec;
      rec.id = store.nextCategoryId++;
      // A hundred top-level categories, the rest one level below them.
      rec.parentId = c < 100 ? -1 : static_cast<int32_t>(rng() % 100);
      rec.expanded = true;
      int32_t id = rec.id;
      store.categories.Insert(id, std::move(rec));
      Add(id, true);
    }
    for (int r = 0; r < kRecords; ++r) Add(static_cast<int32_t>(rng() % kCategories), false);
    // The order a load meets them in: table order.
    places.clear();
    store.places.ForEach([&](int32_t, TDBCategoryData* p) { places.push_back(p); });
  }

  void Add(int32_t categoryId, bool isCategory) {
    TDBCategoryData p;
    p.cursor = store.nextCursor++;
    p.categoryId = categoryId;
    p.isCategory = isCategory;
    store.places.Insert(p.cursor, std::move(p));
  }
};

BigStore& Big() {
  static BigStore big;
  return big;
}

void BM_AttachAndRenumber(benchmark::State& state) {
  BigStore& big = Big();
  for (auto _ : state) {
    state.PauseTiming();
    big.store.MainView().Clear();
    state.ResumeTiming();
    AttachPlaces(big.store, big.places, false);
    Renumber(big.store);
  }
  // Printed in seconds with an SI prefix: "480n" is 480 ns per place.
  state.counters["per_place"] = benchmark::Counter(
      static_cast<double>(big.places.size()),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_AttachAndRenumber)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_LookupPlaceByHash(benchmark::State& state) {
  BigStore& big = Big();
  std::mt19937 rng(7);
  std::vector<int32_t> cursors(1 << 16);
  for (int32_t& c : cursors) c = static_cast<int32_t>(rng() % (kCategories + kRecords));
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(LookupPlace(big.store, cursors[i++ & (cursors.size() - 1)]));
  }
}
BENCHMARK(BM_LookupPlaceByHash);

}  // namespace

BENCHMARK_MAIN();
