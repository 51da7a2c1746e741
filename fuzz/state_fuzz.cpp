// The file that keeps the memory of simulated devices. What was taken in is handed out as a text that gives
// the same.
#include <string>
#include <vector>

#include "fuzz/input.h"
#include "sim/kept_state.h"
#include "sim/rack.h"

namespace tavlyn::fuzz {
namespace {

// Those of the seeds, of fewer pieces than a plus reader has.
constexpr const char* kDevices[] = {"plug reader", "plug magstripe", "plug sonar"};

std::string TextOf(const std::vector<sim::KeptDevice>& devices) {
  std::vector<std::string> parts;
  for (const sim::KeptDevice& device : devices) parts.push_back(sim::KeptText(device));
  return sim::StateText(parts);
}

void Take(Input input) {
  const auto bytes = input.Rest();
  const std::string text(bytes.begin(), bytes.end());
  for (const char* plug : kDevices) {
    sim::Rack rack;
    std::string reply;
    Require(rack.Run(plug, reply));
    const auto devices = rack.Kept();
    const auto found = sim::TakeState(text, devices);
    if (!found.text.empty()) {
      Require(found.line >= 1);
      continue;
    }
    const std::string kept = TextOf(devices);
    Require(sim::TakeState(kept, devices).text.empty() && TextOf(devices) == kept);
  }
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Take({data, size});
  return 0;
}
