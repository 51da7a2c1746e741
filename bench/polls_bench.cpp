// What polls cost a program that really sleeps between them. The library asks a reader at most every 235 ms;
// polls in between are answered from what it keeps.
#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <thread>

#include "api.h"
#include "bench/own_time.h"
#include "bench/stand_in.h"

namespace tavlyn::bench {
namespace {

// Processor time of a second of polls with the sleeps between them; the counter is that of one poll.
template <typename Poll>
void Polls(benchmark::State& state, Poll poll) {
  const double used = OwnSeconds();
  for (auto _ : state) {
    for (std::int64_t done = 0; done < state.range(0); ++done) {
      poll();
      std::this_thread::sleep_for(std::chrono::milliseconds(1000 / state.range(0)));
    }
  }
  state.counters["µs a poll"] = (OwnSeconds() - used) * 1e6 / static_cast<double>(state.range(0));
}

void PollsOfTavlynapi(benchmark::State& state) {
  const Readers readers(1);
  if (USBConnect(nullptr) != 1) return state.SkipWithError("the connect failed");
  std::array<std::uint8_t, 32> id{};
  Polls(state, [&] { benchmark::DoNotOptimize(GetActiveID32(id.data(), id.size())); });
}

void PollsOfHidapi(benchmark::State& state) {
  const Readers readers(1);
  const OpenedDirectly direct;
  Polls(state, [&] { benchmark::DoNotOptimize(direct.Exchange(0)); });
}

void NoPolls(benchmark::State& state) {
  Polls(state, [] {});
}

void Rates(benchmark::internal::Benchmark* polls) {
  polls->ArgName("Hz")->Arg(4)->Arg(10)->Arg(50)->Iterations(1)->Unit(benchmark::kMicrosecond);
}
BENCHMARK(PollsOfTavlynapi)->Name("Poll/tavlynapi")->Apply(Rates);
BENCHMARK(PollsOfHidapi)->Name("Poll/one exchange by hidapi")->Apply(Rates);
BENCHMARK(NoPolls)->Name("Poll/the sleep alone")->Apply(Rates);

}  // namespace
}  // namespace tavlyn::bench
