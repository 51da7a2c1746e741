// What the library adds to the two hidapi calls of an exchange and to the pauses of a connect, and what
// loading it costs.
#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <hidapi/hidapi.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "api.h"
#include "sim/carriers/standin_control.h"

namespace {

template <typename Function>
Function Bind(void* library, const char* name) {
  auto function = reinterpret_cast<Function>(library != nullptr ? dlsym(library, name) : nullptr);
  if (function == nullptr) {
    std::fprintf(stderr, "%s is not there: the stand-in was not loaded\n", name);
    std::exit(1);
  }
  return function;
}

struct StandIn {
  void* library = dlopen("libhidapi-hidraw.so.0", RTLD_NOW);
  TavlynStandin run = Bind<TavlynStandin>(library, TAVLYN_STANDIN);
  decltype(&hid_enumerate) enumerate = Bind<decltype(&hid_enumerate)>(library, "hid_enumerate");
  decltype(&hid_open_path) open = Bind<decltype(&hid_open_path)>(library, "hid_open_path");
  decltype(&hid_send_feature_report) send =
      Bind<decltype(&hid_send_feature_report)>(library, "hid_send_feature_report");
  decltype(&hid_get_feature_report) get =
      Bind<decltype(&hid_get_feature_report)>(library, "hid_get_feature_report");
};

StandIn& TheStandIn() {
  static StandIn standIn;
  return standIn;
}

void PlugReader() {
  char reply[64];
  TheStandIn().run("reset", reply, sizeof reply);
  TheStandIn().run("plug reader", reply, sizeof reply);
  TheStandIn().run("record off", reply, sizeof reply);
}

// The traffic of the exchange that Ping makes, without the library.
void DirectExchange(benchmark::State& state) {
  PlugReader();
  hid_device_info* listed = TheStandIn().enumerate(0, 0);
  hid_device* device = listed != nullptr ? TheStandIn().open(listed->path) : nullptr;
  if (device == nullptr) return state.SkipWithError("no simulated reader");
  std::array<std::uint8_t, 9> report{};
  for (auto _ : state) {
    report = {0, 0x8A};
    bool ok = TheStandIn().send(device, report.data(), report.size()) >= 0;
    ok = TheStandIn().get(device, report.data(), report.size()) > 0 && ok;
    if (!ok) return state.SkipWithError("the exchange failed");
  }
}
BENCHMARK(DirectExchange);

void LibraryExchange(benchmark::State& state) {
  PlugReader();
  SetDevTypeSrch(0);
  if (USBConnect(nullptr) != 1) return state.SkipWithError("connect failed");
  for (auto _ : state) {
    if (Ping() > 65535) return state.SkipWithError("the exchange failed");
  }
  USBDisconnect();
  // The other benchmarks begin with nothing plugged in.
  char reply[64];
  TheStandIn().run("reset", reply, sizeof reply);
}
BENCHMARK(LibraryExchange);

// dlopen as in a C program that has loaded nothing of C++ yet, so that each load has its own process. The
// library loads the system's hidapi, which is measured for comparison.
void LoadLibrary(benchmark::State& state, const char* library) {
  long memory = 0;
  for (auto _ : state) {
    std::FILE* probe = popen((std::string(TAVLYN_LOAD_PROBE " ") + library).c_str(), "r");
    long nanoseconds = 0;
    const bool told = probe != nullptr && std::fscanf(probe, "%ld %ld", &nanoseconds, &memory) == 2;
    if (probe != nullptr) pclose(probe);
    if (!told) return state.SkipWithError("the library could not be loaded");
    state.SetIterationTime(static_cast<double>(nanoseconds) * 1e-9);
  }
  state.counters["kB"] = static_cast<double>(memory);
}
BENCHMARK_CAPTURE(LoadLibrary, tavlynapi, TAVLYN_LIBRARY)
    ->Iterations(200)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LoadLibrary, hidapi, "libhidapi-hidraw.so.0")
    ->Iterations(200)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
