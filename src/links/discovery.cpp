#include "links/discovery.h"

#include <algorithm>
#include <optional>
#include <span>

#include "api.h"
#include "core/pause.h"
#include "links/link_socket.h"

namespace tavlyn {
namespace {

using Bytes = std::span<const std::uint8_t>;

// Discovery:      "RFIDDISC" 01 00          to port 11000
// its reply:      "RFIDDISC" 02 .. F4 F0 F2 F0 "-Kestrin/Wedge" .. 7C 31 A6 mac[3] .. ip[4]
// Adapter query:  00 00 00 F6               to port 30718
// its reply:      00 00 00 F7 (20 bytes) mac[6]
constexpr std::uint16_t kDiscoveryPort = 11000;
constexpr std::uint16_t kAdapterPort = 30718;
constexpr std::array<std::uint8_t, 10> kDiscovery = {'R', 'F', 'I', 'D', 'D', 'I', 'S', 'C', 0x01, 0x00};
constexpr std::array<std::uint8_t, 4> kAdapterQuery = {0x00, 0x00, 0x00, 0xF6};

struct Fixed {
  std::size_t at;
  std::uint8_t bytes[14];
  std::size_t count;
};
constexpr std::array<Fixed, 4> kDiscoveryReply = {{
    {0, {'R', 'F', 'I', 'D', 'D', 'I', 'S', 'C', 0x02}, 9},
    {10, {0xF4, 0xF0, 0xF2, 0xF0}, 4},
    {14, {'-', 'K', 'e', 's', 't', 'r', 'i', 'n', '/', 'W', 'e', 'd', 'g', 'e'}, 14},
    {29, {0x7C, 0x31, 0xA6}, 3},
}};
constexpr std::size_t kDiscoveryMacAt = 29;
constexpr std::size_t kDiscoveryIpAt = 36;
constexpr std::size_t kDiscoveryBytes = 128;

constexpr std::array<Fixed, 2> kAdapterReply = {{
    {0, {0x00, 0x00, 0x00, 0xF7}, 4},
    {24, {0x00}, 1},
}};
constexpr std::size_t kAdapterMacAt = 24;

// The maker's bytes in the MAC addresses of adapters, after the leading 0. FindXport deliberately does not
// know the last one.
struct Prefix {
  std::uint8_t bytes[2];
};
constexpr std::array<Prefix, 3> kPrefixes = {{{{0x20, 0x4A}}, {{0x1D, 0x4B}}, {{0x80, 0xA3}}}};
constexpr std::size_t kFindXportPrefixes = 2;

using Reply = std::array<std::uint8_t, 256>;

bool Matches(std::span<const Fixed> fixed, const Reply& reply) {
  return std::ranges::all_of(fixed, [&](const Fixed& part) {
    return std::equal(part.bytes, part.bytes + part.count, std::span(reply).subspan(part.at).begin());
  });
}

bool IsDiscoveryReply(const Reply& reply, IpAddress asked) {
  return Matches(kDiscoveryReply, reply) &&
         std::equal(asked.begin(), asked.end(), reply.begin() + kDiscoveryIpAt);
}

bool IsAdapterReply(const Reply& reply, std::size_t prefixes) {
  return Matches(kAdapterReply, reply) &&
         std::ranges::any_of(std::span(kPrefixes).first(prefixes), [&](const Prefix& prefix) {
           return reply[kAdapterMacAt + 1] == prefix.bytes[0] && reply[kAdapterMacAt + 2] == prefix.bytes[1];
         });
}

platform::Sockets& Sockets() { return platform::TheHost().sockets; }

std::int32_t SendDiscovery(platform::Handle socket, IpAddress to) {
  return Sockets().SendTo(socket, kDiscovery, {to, kDiscoveryPort});
}

std::int32_t SendAdapterQuery(platform::Handle socket, IpAddress to) {
  return Sockets().SendTo(socket, kAdapterQuery, {to, kAdapterPort});
}

// Receives up to three times, until one succeeds.
std::int32_t RecvDiscovery(platform::Handle socket, Reply& reply, std::uint32_t pauseAfterFirst) {
  constexpr int kRecvs = 3;
  const std::span<std::uint8_t> room = std::span(reply).first(kDiscoveryBytes);
  std::int32_t got = -1;
  for (int recv = 0; recv < kRecvs && got < 0; ++recv) {
    got = Sockets().Recv(socket, room);
    if (recv == 0 && pauseAfterFirst != 0) Pause(pauseAfterFirst);
  }
  return got;
}

// One attempt of FindXport at one address; the result is the fourth octet of the adapter that answered.
std::optional<std::uint8_t> TryAddress(IpAddress address, std::uint32_t attempt) {
  constexpr std::uint32_t kDiscoveryPause = 100;
  constexpr std::uint32_t kAdapterPause = 50;
  Sockets().SetBroadcast(shared.link.LinkSocket);
  Sockets().SetNonBlocking(shared.link.LinkSocket);
  Sockets().SetReceiveTimeout(shared.link.LinkSocket, 50);
  SendDiscovery(shared.link.LinkSocket, address);
  if (SendDiscovery(shared.link.LinkSocket, address) == static_cast<std::int32_t>(kDiscovery.size())) {
    if (attempt > 0) Pause(attempt * kDiscoveryPause);
    Reply reply{};
    if (RecvDiscovery(shared.link.LinkSocket, reply, 0) > 0 && IsDiscoveryReply(reply, address))
      return address[3];
  }
  if (SendAdapterQuery(shared.link.LinkSocket, address) < 0) return std::nullopt;
  Reply reply;
  reply.fill(0xFF);
  Sockets().SetNonBlocking(shared.link.LinkSocket);
  if (attempt > 0) Pause(attempt);
  Pause(kAdapterPause);
  platform::Address sender;
  Sockets().RecvFrom(shared.link.LinkSocket, reply, sender);
  const bool sameNet = std::equal(address.begin(), address.begin() + 3, sender.ip.begin());
  if (!sameNet || !IsAdapterReply(reply, kFindXportPrefixes)) return std::nullopt;
  return sender.ip[3];
}

std::optional<std::uint8_t> FindInRange(IpAddress address, std::int32_t first, std::int32_t last) {
  constexpr std::uint32_t kTries = 3;
  for (std::int32_t fourth = first; fourth <= last; ++fourth) {
    address[3] = static_cast<std::uint8_t>(fourth);
    for (std::uint32_t attempt = 0; attempt < kTries; ++attempt) {
      if (const auto found = TryAddress(address, attempt)) return found;
    }
  }
  return std::nullopt;
}

bool MacByDiscovery(platform::Handle socket, IpAddress address, MacAddress& mac) {
  SendDiscovery(socket, address);
  SendDiscovery(socket, address);
  Pause(2);
  if (SendDiscovery(socket, address) != static_cast<std::int32_t>(kDiscovery.size())) return false;
  Reply reply;
  reply.fill(0xFF);
  Sockets().SetNonBlocking(socket);
  Sockets().SetReceiveTimeout(socket, 100);
  const std::int32_t got = RecvDiscovery(socket, reply, 50);
  if (got != static_cast<std::int32_t>(kDiscoveryBytes) || !IsDiscoveryReply(reply, address)) return false;
  std::copy_n(reply.begin() + kDiscoveryMacAt, mac.size(), mac.begin());
  return true;
}

void MacByAdapterQuery(platform::Handle socket, IpAddress address, MacAddress& mac) {
  constexpr int kRecvs = 10;
  if (SendAdapterQuery(socket, address) == -1) return;
  Reply reply;
  reply.fill(0xFF);
  Sockets().SetNonBlocking(socket);
  platform::Address sender;
  for (int recv = 0; recv < kRecvs && reply[kAdapterMacAt] != 0; ++recv) {
    Sockets().RecvFrom(socket, reply, sender);
    Pause(50);
  }
  if (!IsAdapterReply(reply, kPrefixes.size()) || sender.ip != address) return;
  std::copy_n(reply.begin() + kAdapterMacAt, mac.size(), mac.begin());
}

}  // namespace

bool FetchMacAddr(IpAddress address, MacAddress& mac) {
  mac.fill(0);
  if (!Sockets().Startup()) return false;
  const platform::Handle socket = Sockets().OpenUdp();
  if (socket == platform::kNoHandle) return false;
  Sockets().SetBroadcast(socket);
  if (!MacByDiscovery(socket, address, mac)) MacByAdapterQuery(socket, address, mac);
  Sockets().Close(socket);
  return true;
}

}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t FindXport(std::int16_t a, std::int16_t b, std::int16_t c, std::int16_t first,
                        std::int16_t last) {
  // Takes over the link's socket without closing what it held.
  shared.link.LinkSocket = platform::kNoHandle;
  if (!Sockets().Startup()) return 0;
  shared.link.LinkSocket = Sockets().OpenUdp();
  if (!LinkIsOpen()) return 0;
  const IpAddress net = {static_cast<std::uint8_t>(a), static_cast<std::uint8_t>(b),
                         static_cast<std::uint8_t>(c), 0};
  const auto found = FindInRange(net, first, last);
  LinkClose();
  return found.value_or(0);
}

std::uint32_t GetMyIpAddress() {
  IpAddress ip{};
  if (!Sockets().Startup() || !Sockets().HostAddress(ip)) return 0;
  return static_cast<std::uint32_t>(ip[3]) << 24 | static_cast<std::uint32_t>(ip[2]) << 16 |
         static_cast<std::uint32_t>(ip[1]) << 8 | ip[0];
}
