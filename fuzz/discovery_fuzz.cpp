// Adapters that answer a search by UDP as they like. A datagram is answered with what comes next: a byte for
// the number of bytes, 255 for none, a byte for its sender (0 the address asked), then the bytes.
#include <vector>

#include "fuzz/connected.h"
#include "fuzz/input.h"
#include "links/discovery.h"

namespace tavlyn::fuzz {
namespace {

using Datagram = sim::VirtualSockets::Datagram;

constexpr std::uint8_t kSilent = 255;
constexpr IpAddress kAsked = {10, 0, 0, 5};

std::vector<Datagram> AnswerOf(Input& input, platform::Address asked) {
  const std::uint8_t count = input.Byte();
  if (count == kSilent || input.IsEmpty()) return {};
  platform::Address sender = asked;
  sender.ip[3] = static_cast<std::uint8_t>(sender.ip[3] + input.Byte());
  // Datagrams may be longer than a byte tells.
  const auto bytes = input.Take(count == kSilent - 1 ? 300 : count);
  return {{sender, {bytes.begin(), bytes.end()}}};
}

void Search(Input input) {
  const Loaded loaded;
  sim::VirtualSockets& sockets = loaded.host.sockets;
  sockets.hostAddress = kAsked;
  sockets.onDatagram = [&input](platform::Address asked, const sim::Bytes&) {
    return AnswerOf(input, asked);
  };
  while (!input.IsEmpty()) {
    MacAddress mac{};
    Require(FetchMacAddr(kAsked, mac));
    const bool isNone = mac == MacAddress{};
    Require(isNone || mac[0] == 0 || (mac[0] == 0x7C && mac[1] == 0x31 && mac[2] == 0xA6));
    const std::uint32_t found = FindXport(10, 0, 0, 5, 6);
    Require(found <= 255);
  }
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Search({data, size});
  return 0;
}
