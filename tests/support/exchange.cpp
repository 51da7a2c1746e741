#include "tests/support/exchange.h"

#include <algorithm>
#include <array>

#include "sim/transcript.h"

namespace tavlyn::test {

bool Set(sim::HidDevice& device, std::initializer_list<std::uint8_t> payload) {
  sim::Bytes report(payload);
  report.resize(std::max(report.size(), device.Identity().featureBytes));
  return device.SetFeature(report);
}

std::string Get(sim::HidDevice& device) {
  sim::Bytes report(device.Identity().featureBytes);
  return device.GetFeature(report) ? sim::TrimmedHexText(report) : "refused";
}

std::string Ask(sim::HidDevice& device, std::initializer_list<std::uint8_t> command) {
  return Set(device, command) ? Get(device) : "refused";
}

bool Store(sim::HidDevice& device, std::initializer_list<std::uint8_t> command,
           std::initializer_list<std::uint8_t> data) {
  return Set(device, command) && Set(device, data);
}

std::string Talk(sim::ByteDevice& device, std::initializer_list<std::uint8_t> bytes) {
  const sim::Bytes sent(bytes);
  device.Receive(sent);
  sim::Bytes answer;
  std::array<std::uint8_t, 16> chunk{};
  while (const std::size_t count = device.Take(chunk)) {
    answer.insert(answer.end(), chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(count));
  }
  return sim::HexText(answer);
}

}  // namespace tavlyn::test
