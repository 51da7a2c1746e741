// Time without waits, for programs in which waits take none and are counted
// (sim/carriers/clock/quick_time.h): the processor time of the calling thread.
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>

namespace tavlyn::bench {

inline double OwnSeconds() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

// For benchmarks that use manual time. What comes after a call is not measured; the waits are a counter.
template <typename Call, typename After>
void WithoutWaits(benchmark::State& state, Call call, After after) {
  using Clock = std::chrono::steady_clock;
  Clock::duration waited{};
  for (auto _ : state) {
    const auto start = Clock::now();
    const double used = OwnSeconds();
    if (!call()) return state.SkipWithError("the call failed");
    state.SetIterationTime(OwnSeconds() - used);
    waited += Clock::now() - start;
    after();
  }
  state.counters["waits, ms"] = benchmark::Counter(std::chrono::duration<double, std::milli>(waited).count(),
                                                   benchmark::Counter::kAvgIterations);
}

}  // namespace tavlyn::bench
