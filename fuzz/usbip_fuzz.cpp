// What a host sends to simulated USB devices over USB/IP, in pieces of any length: whole transfers, torn
// ones, and bytes that are none.
#include <algorithm>
#include <array>
#include <memory>

#include "fuzz/input.h"
#include "sim/carriers/usb/hid_function.h"
#include "sim/carriers/usb/line_functions.h"
#include "sim/carriers/usb/usbip.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/reader.h"
#include "sim/devices/reader_fa.h"
#include "sim/devices/sonar.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::size_t kHeader = 48;
constexpr std::size_t kLongestTransfer = 65536;

std::uint32_t WordAt(std::span<const std::uint8_t> bytes, std::size_t at) {
  std::uint32_t word = 0;
  for (const std::uint8_t byte : bytes.subspan(at, 4)) word = word << 8U | byte;
  return word;
}

// The first answer is one, and is taken in two parts, as a socket takes it.
void Check(sim::usb::UsbipSession& session) {
  const std::span<const std::uint8_t> due = session.Due();
  if (due.empty()) return;
  Require(due.size() >= kHeader);
  const std::uint32_t command = WordAt(due, 0);
  Require(command == 3 || command == 4);
  Require(command == 4 || WordAt(due, 24) <= kLongestTransfer);
  session.Sent(due.size() / 2);
  session.Sent(session.Due().size());
}

void Talk(sim::usb::Device& device, Input& input) {
  const std::size_t piece = input.Byte() + std::size_t{1};
  sim::usb::UsbipSession session(device);
  bool goesOn = true;
  for (auto rest = input.Rest(); goesOn && !rest.empty(); rest = rest.subspan(std::min(piece, rest.size()))) {
    goesOn = session.Receive(rest.first(std::min(piece, rest.size())));
    Check(session);
  }
  Require(goesOn || !session.Receive({}));
  session.Serve();
  Check(session);
}

void Run(Input input) {
  const auto reader = sim::Reader::Kelda(2);
  const auto magstripe = std::make_shared<sim::Magstripe>();
  const auto sonar = std::make_shared<sim::Sonar>();
  sim::ReaderFa line{sim::Reader::Plain()};
  const sim::LineManner manner;
  sim::usb::HidFunction hid{{reader.get(), magstripe.get(), sonar.get()}};
  sim::usb::BulkFunction bulk{line};
  sim::usb::SerialFunction serial{line, manner};
  const std::array<sim::usb::Device*, 3> devices{&hid, &bulk, &serial};
  Talk(*devices[input.Byte() % devices.size()], input);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Run({data, size});
  return 0;
}
