// What the library adds to the two hidapi calls of an exchange.
#include <benchmark/benchmark.h>

#include "api.h"
#include "bench/stand_in.h"

namespace tavlyn::bench {
namespace {

void OfHidapi(benchmark::State& state) {
  const Readers reader(1);
  const OpenedDirectly direct;
  for (auto _ : state) {
    if (!direct.Exchange(0)) return state.SkipWithError("the exchange failed");
  }
}
BENCHMARK(OfHidapi)->Name("Exchange/hidapi");

void OfTavlynapi(benchmark::State& state) {
  const Readers reader(1);
  if (USBConnect(nullptr) != 1) return state.SkipWithError("the connect failed");
  for (auto _ : state) {
    if (Ping() > 65535) return state.SkipWithError("the exchange failed");
  }
}
BENCHMARK(OfTavlynapi)->Name("Exchange/tavlynapi");

}  // namespace
}  // namespace tavlyn::bench
