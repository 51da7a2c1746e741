// Calls that reach no device, beside an empty function of a shared library.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>

#include "api.h"
#include "bench/stand_in.h"

extern "C" void DoNothing(void);

namespace tavlyn::bench {
namespace {

template <typename Call>
void Measure(benchmark::State& state, Call call) {
  const Readers readers(1);
  if (USBConnect(nullptr) != 1) return state.SkipWithError("the connect failed");
  for (auto _ : state) call();
}

// The variable keeps the compiler from doing without the call.
template <typename Function, typename... Arguments>
auto CallOf(Function* function, Arguments... arguments) {
  return [=] { benchmark::DoNotOptimize(function(arguments...)); };
}

const auto kEmpty = [] { DoNothing(); };
const auto kPlainGetter = CallOf(GetDevCnt);
const auto kPlainSetter = CallOf(SetConnectProduct, 1U);
const auto kGetterOfDevice = CallOf(GetLastLibErr);
const auto kGetterOfWord = CallOf(getTimeParms_iIDHoldTO);
const auto kSetterOfWord = CallOf(setTimeParms_iIDHoldTO, std::int16_t{1000});

BENCHMARK_CAPTURE(Measure, empty, kEmpty)->Name("Call/an empty function");
BENCHMARK_CAPTURE(Measure, plain getter, kPlainGetter)->Name("Call/GetDevCnt");
BENCHMARK_CAPTURE(Measure, plain setter, kPlainSetter)->Name("Call/SetConnectProduct");
BENCHMARK_CAPTURE(Measure, getter of the device, kGetterOfDevice)->Name("Call/GetLastLibErr");
BENCHMARK_CAPTURE(Measure, getter of a word, kGetterOfWord)->Name("Call/getTimeParms_iIDHoldTO");
BENCHMARK_CAPTURE(Measure, setter of a word, kSetterOfWord)->Name("Call/setTimeParms_iIDHoldTO");

// Takes the lock; the answer is the one that is kept.
void LockedGetter(benchmark::State& state) {
  const Readers readers(1);
  if (USBConnect(nullptr) != 1) return state.SkipWithError("the connect failed");
  std::array<std::uint8_t, 8> id{};
  for (auto _ : state) benchmark::DoNotOptimize(GetActiveID(id.data(), 8));
}
BENCHMARK(LockedGetter)->Name("Call/GetActiveID, kept (locked)");

// Takes the lock and finds no device.
void LockedCall(benchmark::State& state) {
  USBDisconnect();
  for (auto _ : state) benchmark::DoNotOptimize(ReadCfg());
}
BENCHMARK(LockedCall)->Name("Call/ReadCfg, no device (locked)");

}  // namespace
}  // namespace tavlyn::bench
