// From a connect to the first ID, over each link, without waiting: waits take no time here
// (sim/carriers/clock/quick_time.h) and are counted, while far ends are served by another thread. What is
// measured is the processor time of the thread that calls the library; over HID and on a bulk device the
// simulated reader's is part of it.
#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "api.h"
#include "bench/own_time.h"
#include "bench/stand_in.h"
#include "sim/carriers/attendant.h"
#include "sim/carriers/clock/quick_time.h"
#include "sim/carriers/ethernet.h"
#include "sim/carriers/pseudo_terminal.h"
#include "sim/devices/reader_fa.h"

namespace tavlyn::bench {
namespace {

constexpr std::uint16_t kPort = 3;
const sim::net::Ip kIp{127, 3, 1, 1};
constexpr std::array<std::uint8_t, 2> kCard{0x01, 0x12};
constexpr int kCardBits = 26;

// The first poll comes after the time for which the library leaves a reader alone; that is a wait like the
// others.
bool ReadsTheCard() {
  boundary::PassQuickly(std::chrono::milliseconds(250));
  std::array<std::uint8_t, 8> id{};
  return GetActiveID(id.data(), 8) == kCardBits && id[0] == kCard[0];
}

template <typename Connect>
void FirstId(benchmark::State& state, Connect connect) {
  WithoutWaits(
      state, [&] { return connect() == 1 && ReadsTheCard(); }, USBDisconnect);
}

std::uint32_t ConnectAnywhere() { return USBConnect(nullptr); }

void OverHid(benchmark::State& state) {
  const Readers reader(1);
  Do("card 01120000:26");
  FirstId(state, ConnectAnywhere);
}

// The traffic alone.
void OverHidapi(benchmark::State& state) {
  const Readers reader(1);
  Do("card 01120000:26");
  if (USBConnect(nullptr) != 1 || !ReadsTheCard()) return state.SkipWithError("there is no ID");
  USBDisconnect();
  const int pairs = std::stoi(Do("exchanges")) / 2;
  const auto traffic = [&] {
    const OpenedDirectly direct;
    bool done = true;
    for (int pair = 0; pair < pairs; ++pair) done = direct.Exchange(0) && done;
    return done;
  };
  WithoutWaits(state, traffic, [] {});
}

void OverAPort(benchmark::State& state) {
  std::string folder = "/tmp/tavlyn-bench-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) std::abort();
  setenv("TAVLYNAPI_PORT_DIR", folder.c_str(), 1);
  sim::ReaderFa reader(sim::Reader::Plain());
  reader.Device().PutCard({kCard[0], kCard[1]}, kCardBits);
  {
    sim::PseudoTerminal port(reader, folder + "/com" + std::to_string(kPort));
    const sim::Attendant attendant({&port});
    FirstId(state, [] { return ComConnectPort(kPort, nullptr); });
  }
  std::filesystem::remove_all(folder);
}

void OverTcp(benchmark::State& state) {
  sim::ReaderFa reader(sim::Reader::Plain());
  reader.Device().PutCard({kCard[0], kCard[1]}, kCardBits);
  sim::EthernetCarrier adapter(reader, {sim::kWedgeMac, kIp}, 0);
  const sim::Attendant attendant({&adapter});
  const Readers none(0);
  SetDevTypeSrch(2);
  SetIpPort(kIp[0], kIp[1], kIp[2], kIp[3], adapter.Port());
  FirstId(state, ConnectAnywhere);
}

void OnABulkDevice(benchmark::State& state) {
  const Readers none(0);
  const TavlynStandin bulk = CommandsOf(TAVLYN_STANDIN_USB);
  setenv("TAVLYNAPI_LIBUSB", TAVLYN_STANDIN_USB, 1);
  for (const char* command : {"plug reader@bulk", "record off", "card 01120000:26"}) Do(command, bulk);
  FirstId(state, ConnectAnywhere);
  Do("reset", bulk);
  unsetenv("TAVLYNAPI_LIBUSB");
}

void Connects(benchmark::internal::Benchmark* connects) {
  connects->UseManualTime()->Unit(benchmark::kMicrosecond);
}
BENCHMARK(OverHid)->Name("First ID/HID")->Apply(Connects);
BENCHMARK(OverHidapi)->Name("First ID/HID, the same traffic by hidapi")->Apply(Connects);
BENCHMARK(OnABulkDevice)->Name("First ID/bulk device")->Apply(Connects);
BENCHMARK(OverAPort)->Name("First ID/serial port")->Apply(Connects);
// Once a run: the library looks for bytes that do not come, and the thread that could send them is waited
// for.
BENCHMARK(OverTcp)->Name("First ID/TCP")->Apply(Connects)->Iterations(1);

// A search over all links that finds nothing.
void NothingAttached(benchmark::State& state) {
  const Readers none(0);
  SetConnectProduct(7);
  SetDevTypeSrch(-1);
  WithoutWaits(
      state, [] { return USBConnect(nullptr) == 0; }, [] {});
}
BENCHMARK(NothingAttached)->Name("First ID/nothing attached, default search")->Apply(Connects);

}  // namespace
}  // namespace tavlyn::bench
