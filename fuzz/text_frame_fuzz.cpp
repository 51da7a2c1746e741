// Reports that travel as text frames. The input is a row of requests: a length, how long the reply is (with
// bit 7 after a header that fits), the reply. Every buffer has the exact size.
#include <cstdio>
#include <string>
#include <vector>

#include "fuzz/connected.h"
#include "fuzz/input.h"
#include "hid/report_channel.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::uint8_t kIds[] = {0x7A, 0x31, 0x3B, 0xFA};

sim::Bytes ReplyTo(std::int32_t n, Input& input) {
  const std::uint8_t form = input.Byte();
  sim::Bytes reply;
  if ((form & 0x80) != 0) {
    char header[32];
    std::snprintf(header, sizeof header, "#DUSB/FR/001L%02d:", static_cast<int>(n));
    reply.assign(header, header + 16);
    reply.insert(reply.end(), std::begin(kIds), std::end(kIds));
  }
  const auto rest = input.Take(form & 0x7F);
  reply.insert(reply.end(), rest.begin(), rest.end());
  return reply;
}

void Ask(std::int32_t n, Input& input, sim::VirtualHost& host) {
  std::vector<std::uint8_t> buffer(static_cast<std::size_t>(std::max(n, 0)) + 1, 0xA5);
  host.sockets.toReceive = {ReplyTo(n, input)};
  const bool read = ReadFeatureReport(n, 0, buffer.data());
  Require(!read || (n >= 0 && n <= 7));
  Require(n > 24 || WriteFeatureReport(n, 0, buffer.data()) == (n >= -1 && n <= 7));
}

void Run(Input input) {
  const Loaded loaded;
  shared.link.TunnelLink = 1;
  shared.link.LinkSocket = 5;
  shared.DevCnt = 1;
  while (!input.IsEmpty()) Ask(static_cast<std::int8_t>(input.Byte()), input, loaded.host);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Run({data, size});
  return 0;
}
