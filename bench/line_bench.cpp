// What the library adds to the pauses that its readers need on lines, and what a poll costs: its microseconds
// of processor time, divided by a thousand, are the percentage of a processor that ten polls a second take.
#include <benchmark/benchmark.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>

#include "api.h"
#include "sim/carriers/attendant.h"
#include "sim/carriers/ethernet.h"
#include "sim/carriers/pseudo_terminal.h"
#include "sim/devices/reader_fa.h"

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

Clock::duration slept{};

}  // namespace

// Measures how long the pauses of the library really are on this machine.
extern "C" __attribute__((visibility("default"))) int nanosleep(const timespec* wanted, timespec* left) {
  const auto start = Clock::now();
  const auto result = static_cast<int>(syscall(SYS_nanosleep, wanted, left));
  slept += Clock::now() - start;
  return result;
}

namespace {

using namespace tavlyn;

constexpr std::uint16_t kPort = 3;
const sim::net::Ip kIp{127, 3, 1, 1};

// A folder of ports.
class Ports {
 public:
  ~Ports() { std::filesystem::remove_all(folder); }

  const std::string folder = MakeFolder();

 private:
  static std::string MakeFolder() {
    std::string name = "/tmp/tavlyn-bench-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    setenv("TAVLYNAPI_PORT_DIR", name.c_str(), 1);
    return name;
  }
};

class PortWithAReader {
  Ports ports_;
  sim::ReaderFa reader_{sim::Reader::Plain()};
  sim::PseudoTerminal port_{reader_, ports_.folder + "/com" + std::to_string(kPort)};
  sim::Attendant attendant_{{&port_}};
};

// The counter "over" is how many times as long as its pauses a call takes.
template <typename Call>
void AgainstItsPauses(benchmark::State& state, std::uint32_t expected, Call call) {
  Clock::duration whole{};
  slept = {};
  for (auto _ : state) {
    const auto start = Clock::now();
    if (call() != expected) state.SkipWithError("the call failed");
    whole += Clock::now() - start;
  }
  state.counters["over"] = Seconds(whole).count() / Seconds(slept).count();
}

void DefaultConnect(benchmark::State& state) {
  const Ports none;
  SetConnectProduct(7);
  SetDevTypeSrch(-1);
  AgainstItsPauses(state, 0, [] { return USBConnect(nullptr); });
}
BENCHMARK(DefaultConnect)->Iterations(3)->Unit(benchmark::kMillisecond)->UseRealTime();

void ConfigurationReadOverAPort(benchmark::State& state) {
  const PortWithAReader port;
  if (ComConnectPort(kPort, nullptr) != 1) return state.SkipWithError("connect failed");
  AgainstItsPauses(state, 1, [] { return ReadCfg(); });
  USBDisconnect();
}
BENCHMARK(ConfigurationReadOverAPort)->Iterations(3)->Unit(benchmark::kMillisecond)->UseRealTime();

void ConfigurationReadOverTcp(benchmark::State& state) {
  sim::ReaderFa reader(sim::Reader::Plain());
  sim::EthernetCarrier adapter(reader, {sim::kWedgeMac, kIp}, 0);
  const sim::Attendant attendant({&adapter});
  SetConnectProduct(1);
  SetDevTypeSrch(2);
  SetIpPort(kIp[0], kIp[1], kIp[2], kIp[3], adapter.Port());
  if (USBConnect(nullptr) != 1) return state.SkipWithError("connect failed");
  AgainstItsPauses(state, 1, [] { return ReadCfg(); });
  USBDisconnect();
}
BENCHMARK(ConfigurationReadOverTcp)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void PollOverAPort(benchmark::State& state) {
  const PortWithAReader port;
  if (ComConnectPort(kPort, nullptr) != 1) return state.SkipWithError("connect failed");
  std::array<std::uint8_t, 8> id{};
  AgainstItsPauses(state, 0, [&] { return GetActiveID(id.data(), 8); });
  USBDisconnect();
}
BENCHMARK(PollOverAPort)->Iterations(40)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
