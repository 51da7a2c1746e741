// How searches and connects grow with what is plugged in, beside the same traffic by hidapi.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "api.h"
#include "bench/own_time.h"
#include "bench/stand_in.h"

namespace tavlyn::bench {
namespace {

int Argument(const benchmark::State& state) { return static_cast<int>(state.range(0)); }

void Counts(benchmark::internal::Benchmark* searches) {
  searches->ArgName("readers")->Arg(1)->Arg(16)->Arg(127)->Unit(benchmark::kMicrosecond);
}

// A connect reads the configuration of each reader.
void Connect(benchmark::State& state) {
  const Readers readers(Argument(state));
  WithoutWaits(
      state, [] { return USBConnect(nullptr) == 1; }, USBDisconnect);
}
BENCHMARK(Connect)->Name("Search/connect")->UseManualTime()->Apply(Counts);

// What a connect sends and fetches, and nothing else.
void ConnectOfHidapi(benchmark::State& state) {
  const Readers readers(Argument(state));
  if (USBConnect(nullptr) != 1) return state.SkipWithError("the connect failed");
  USBDisconnect();
  const int pairs = std::stoi(Do("exchanges")) / 2;
  for (auto _ : state) {
    const OpenedDirectly direct;
    for (std::size_t device = 0; device < direct.Count(); ++device) {
      for (int pair = 0; pair < pairs; ++pair) benchmark::DoNotOptimize(direct.Exchange(device));
    }
  }
  state.counters["exchanges"] = pairs * Argument(state);
}
BENCHMARK(ConnectOfHidapi)->Name("Search/connect by hidapi")->Apply(Counts);

// A search for a product that none of them is looks at each and opens none.
void List(benchmark::State& state) {
  const Readers readers(Argument(state));
  SetConnectProduct(2);
  for (auto _ : state) {
    if (USBConnect(nullptr) != 0) return state.SkipWithError("a reader was taken for another product");
  }
}
BENCHMARK(List)->Name("Search/list")->Apply(Counts);

void ListOfHidapi(benchmark::State& state) {
  const Readers readers(Argument(state));
  for (auto _ : state) TheStandIn().freeEnumeration(TheStandIn().enumerate(0, 0));
}
BENCHMARK(ListOfHidapi)->Name("Search/list by hidapi")->Apply(Counts);

// A program tells of an arrival, and the library looks for the path: here one that is not listed.
constexpr const char* kNoPath = "/dev/hidraw-none";

void Find(benchmark::State& state) {
  const Readers readers(Argument(state));
  if (USBConnect(nullptr) != 1) return state.SkipWithError("the connect failed");
  for (auto _ : state) {
    if (ChkAddArrival(kNoPath) != 0) return state.SkipWithError("a device was found where none is");
  }
}
BENCHMARK(Find)->Name("Search/find")->Apply(Counts);

void FindOfHidapi(benchmark::State& state) {
  const Readers readers(Argument(state));
  for (auto _ : state) {
    hid_device_info* listed = TheStandIn().enumerate(0, 0);
    const hid_device_info* at = listed;
    while (at != nullptr && std::strcmp(at->path, kNoPath) != 0) at = at->next;
    benchmark::DoNotOptimize(at);
    TheStandIn().freeEnumeration(listed);
  }
}
BENCHMARK(FindOfHidapi)->Name("Search/find by hidapi")->Apply(Counts);

// An exchange with each of the open readers in turn.
void ExchangeInTurn(benchmark::State& state) {
  const Readers readers(Argument(state));
  if (USBConnect(nullptr) != 1) return state.SkipWithError("the connect failed");
  const std::int16_t count = GetDevCnt();
  if (count != Argument(state)) return state.SkipWithError("a reader was not found");
  std::int16_t turn = 0;
  for (auto _ : state) {
    SetActDev(turn);
    if (Ping() > 65535) return state.SkipWithError("the exchange failed");
    turn = static_cast<std::int16_t>(turn + 1 < count ? turn + 1 : 0);
  }
}
BENCHMARK(ExchangeInTurn)->Name("Search/exchange")->Apply(Counts)->Unit(benchmark::kNanosecond);

void ExchangeInTurnByHidapi(benchmark::State& state) {
  const Readers readers(Argument(state));
  const OpenedDirectly direct;
  std::size_t turn = 0;
  for (auto _ : state) {
    if (!direct.Exchange(turn)) return state.SkipWithError("the exchange failed");
    turn = turn + 1 < direct.Count() ? turn + 1 : 0;
  }
}
BENCHMARK(ExchangeInTurnByHidapi)
    ->Name("Search/exchange by hidapi")
    ->Apply(Counts)
    ->Unit(benchmark::kNanosecond);

}  // namespace
}  // namespace tavlyn::bench
