// Scenarios of the simulator: each line is a command of the rack, after which every device that is there gets
// the line's bytes as a report or on its line.
#include <array>
#include <string>
#include <vector>

#include "fuzz/input.h"
#include "sim/rack.h"

namespace tavlyn::fuzz {
namespace {

constexpr int kMostCommands = 100;

// A flood takes the memory that it is told to.
bool IsFlood(std::string_view command) {
  const std::size_t at = command.find("flood");
  return at != std::string_view::npos && command.size() - at > sizeof "flood 9999";
}

void Talk(sim::Rack& rack, std::string_view text) {
  for (const sim::Rack::Interface& interface : rack.Present()) {
    std::vector<std::uint8_t> report(interface.identity.featureBytes + 1);
    text.copy(reinterpret_cast<char*>(report.data()), report.size());
    report[0] = interface.identity.reportId;
    rack.SetFeature(interface.number, report);
    rack.GetFeature(interface.number, report);
    rack.TakeInput(interface.number, report);
  }
  for (const sim::Rack::Line& line : rack.Lines()) {
    rack.SendBytes(line.number, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    std::array<std::uint8_t, 300> bytes{};
    Require(rack.TakeBytes(line.number, bytes) <= bytes.size());
    if (sim::ByteDevice* device = rack.LineOf(line.number)) device->Silence();
  }
}

void Run(Input input) {
  sim::Rack rack;
  for (int done = 0; !input.IsEmpty() && done < kMostCommands; ++done) {
    const std::string command(input.Text('\n'));
    if (IsFlood(command)) continue;
    std::string reply;
    Require(rack.Run(command, reply) || !reply.empty());
    Talk(rack, command);
  }
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Run({data, size});
  return 0;
}
