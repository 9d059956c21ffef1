#pragma once
// The best time of each named step of a benchmark run, and the ratios printed from them at the
// end: our time over the peer's, both measured in the same run.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <type_traits>

namespace bench_support {

inline std::map<std::string, double>& BestSeconds() {
  static std::map<std::string, double> best;
  return best;
}

inline void NoteTime(const std::string& name, double seconds) {
  auto& best = BestSeconds();
  auto it = best.find(name);
  if (it == best.end() || seconds < it->second) best[name] = seconds;
}

// Times each iteration of step as manual time; a step that returns a count reports it as "rows".
template <class Step>
void Timed(benchmark::State& state, const std::string& name, Step&& step) {
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    if constexpr (std::is_void_v<decltype(step())>) {
      step();
    } else {
      state.counters["rows"] = static_cast<double>(step());
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.SetIterationTime(seconds);
    NoteTime(name, seconds);
  }
}

inline void PrintRatio(const char* what, const char* ours, const char* peer, int width = 24) {
  auto& best = BestSeconds();
  if (best.count(ours) && best.count(peer))
    std::printf("%-*s %8.1f ms / %8.1f ms = %5.2f\n", width, what, best[ours] * 1e3, best[peer] * 1e3,
                best[ours] / best[peer]);
}

}  // namespace bench_support
