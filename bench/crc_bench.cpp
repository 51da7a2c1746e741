// The sum of a trailer beside zlib's, over a whole file at once and over one line.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdint>
#include <string>

#include "files/crc.h"

namespace {

std::string Text(const benchmark::State& state) {
  std::string text(static_cast<std::size_t>(state.range(0)), '\0');
  std::uint32_t random = 1;
  for (char& c : text) c = static_cast<char>((random = random * 1664525 + 1013904223) >> 24);
  return text;
}

void CountBytes(benchmark::State& state) {
  state.counters["MB/s"] = benchmark::Counter(static_cast<double>(state.range(0)) * 1e-6,
                                              benchmark::Counter::kIsIterationInvariantRate);
}

void OfTavlynapi(benchmark::State& state) {
  const std::string text = Text(state);
  tavlyn::CRC crc;
  crc.Begin();
  for (auto _ : state) crc.Add(text);
  std::uint32_t sum = 0;
  if (crc.Compute(sum) != 0) state.SkipWithError("no sum");
  benchmark::DoNotOptimize(sum);
  CountBytes(state);
}

void OfZlib(benchmark::State& state) {
  const std::string text = Text(state);
  uLong sum = 0;
  for (auto _ : state)
    sum = crc32(sum, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size()));
  benchmark::DoNotOptimize(sum);
  CountBytes(state);
}

void Sizes(benchmark::internal::Benchmark* sums) { sums->ArgName("bytes")->Arg(24)->Arg(1 << 20); }
BENCHMARK(OfTavlynapi)->Name("CRC/tavlynapi")->Apply(Sizes);
BENCHMARK(OfZlib)->Name("CRC/zlib")->Apply(Sizes);

}  // namespace
