// dlopen as in a C program that has loaded nothing of C++ yet, so that each load has its own process: the
// library, the system's hidapi, which it loads too, and libraries for other readers.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

namespace {

void Load(benchmark::State& state, const char* library) {
  long memory = 0;
  for (auto _ : state) {
    std::FILE* probe = popen((std::string(TAVLYN_LOAD_PROBE " ") + library).c_str(), "r");
    long nanoseconds = 0;
    const bool told = probe != nullptr && std::fscanf(probe, "%ld %ld", &nanoseconds, &memory) == 2;
    if (probe != nullptr) pclose(probe);
    if (!told) return state.SkipWithError("the library could not be loaded");
    state.SetIterationTime(static_cast<double>(nanoseconds) * 1e-9);
  }
  state.counters["private kB"] = static_cast<double>(memory);
}

void Loads(benchmark::internal::Benchmark* loads) { loads->UseManualTime()->Unit(benchmark::kMicrosecond); }

BENCHMARK_CAPTURE(Load, tavlynapi, TAVLYN_LIBRARY)->Name("Load/tavlynapi")->Apply(Loads);
BENCHMARK_CAPTURE(Load, hidapi, "libhidapi-hidraw.so.0")->Name("Load/hidapi")->Apply(Loads);
BENCHMARK_CAPTURE(Load, pcsclite, "libpcsclite.so.1")->Name("Load/libpcsclite")->Apply(Loads);
BENCHMARK_CAPTURE(Load, fido2, "libfido2.so.1")->Name("Load/libfido2")->Apply(Loads);

}  // namespace
