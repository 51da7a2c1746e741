// What the simulator itself takes for an exchange, a command and its reply: in process, and over the socket
// on which tavlynsim serves, there with the time of both sides.
#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <thread>
#include <vector>

#include "sim/carriers/socket_source.h"
#include "sim/rack_source.h"
#include "tools/tavlynsim/server.h"

namespace tavlyn::bench {
namespace {

using Report = std::array<std::uint8_t, 9>;

constexpr Report kAsked{0, 0x8E};

// A rack with so many readers.
void PlugInto(sim::Source& source, int count) {
  std::string reply;
  source.Run("record off", reply);
  for (; count > 0; --count) source.Run("plug plus:2", reply);
}

// Exchanges, each with the next reader.
void Measure(benchmark::State& state, sim::Source& source) {
  const std::vector<sim::Listed> readers = source.List();
  if (readers.empty()) return state.SkipWithError("no reader is there");
  std::size_t next = 0;
  for (auto _ : state) {
    const sim::Key key = readers[next++ % readers.size()].key;
    Report reply{};
    const bool done = source.SetFeature(key, kAsked) == sim::Outcome::kDone &&
                      source.GetFeature(key, reply) == sim::Outcome::kDone;
    if (!done) return state.SkipWithError("the exchange failed");
  }
}

void InProcess(benchmark::State& state, int readers) {
  sim::RackSource rack;
  PlugInto(rack, readers);
  Measure(state, rack);
}
BENCHMARK_CAPTURE(InProcess, one, 1)->Name("Simulator/in process, 1 reader")->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(InProcess, many, 127)->Name("Simulator/in process, 127 readers")->MeasureProcessCPUTime();

// A server with a thread of its own, until a client ends it.
void OverSocket(benchmark::State& state, int readers) {
  sim::RackSource rack;
  PlugInto(rack, readers);
  sim::Server server(rack);
  std::string problem;
  if (!server.Open({}, problem)) return state.SkipWithError(problem.c_str());
  server.Offer({});
  std::thread loop([&server] {
    while (!server.IsToEnd()) {
      std::vector<pollfd> polled;
      server.AddTo(polled);
      if (sim::net::Poll(polled, -1)) server.Serve(polled);
    }
  });
  sim::SocketSource source(server.SocketName());
  Measure(state, source);
  sim::wire::Message end;
  end.code = static_cast<std::uint8_t>(sim::wire::Op::kEnd);
  sim::net::Socket ending = sim::wire::Connect(server.SocketName().c_str());
  sim::wire::Send(ending, end);
  loop.join();
  sim::net::Close(ending);
}
BENCHMARK_CAPTURE(OverSocket, one, 1)->Name("Simulator/over the socket, 1 reader")->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(OverSocket, many, 127)
    ->Name("Simulator/over the socket, 127 readers")
    ->MeasureProcessCPUTime();

}  // namespace
}  // namespace tavlyn::bench
