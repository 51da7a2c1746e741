// The sockets of Linux: a handle for each, as many as the system has descriptors.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <set>
#include <vector>

#include "platform/platform.h"
#include "tests/boundary/far_end.h"

namespace tavlyn::boundary {
namespace {

using platform::Address;
using platform::Handle;
using platform::TheHost;

constexpr std::array<std::uint8_t, 3> kDatagram{1, 2, 3};

// Somebody who listens on every address.
class Listener {
 public:
  Listener() : descriptor_(socket(AF_INET, SOCK_DGRAM, 0)) {
    const sockaddr_in own = sim::net::AddressOf({}, 0);
    bind(descriptor_, reinterpret_cast<const sockaddr*>(&own), sizeof own);
    port_ = sim::net::PortOf(descriptor_);
  }
  ~Listener() { close(descriptor_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  [[nodiscard]] Address At(std::array<std::uint8_t, 4> ip) const { return {ip, port_}; }

 private:
  int descriptor_;
  std::uint16_t port_ = 0;
};

TEST(HostSockets, ThereIsNoLimitOfOurOwn) {
  const Listener listener;
  std::set<Handle> handles;
  for (int at = 0; at < 300; ++at) handles.insert(TheHost().sockets.OpenUdp());
  EXPECT_EQ(handles.size(), 300U);
  EXPECT_EQ(handles.count(platform::kNoHandle), 0U);
  for (const Handle handle : handles) {
    EXPECT_EQ(TheHost().sockets.SendTo(handle, kDatagram, listener.At({127, 0, 0, 1})), 3);
  }
  for (const Handle handle : handles) EXPECT_EQ(TheHost().sockets.Close(handle), 0);
  EXPECT_EQ(handles.count(TheHost().sockets.OpenUdp()), 0U) << "no value comes back";
}

TEST(HostSockets, NothingGoesToNetwork0) {
  const int before = OpenHandles();
  for (const Handle handle : {TheHost().sockets.OpenUdp(), TheHost().sockets.OpenTcp()}) {
    TheHost().sockets.SetBroadcast(handle);
    EXPECT_EQ(TheHost().sockets.SendTo(handle, kDatagram, {{0, 0, 0, 1}, 9}), -1);
    EXPECT_EQ(TheHost().sockets.Connect(handle, {{0, 0, 0, 1}, 9}), -1);
    EXPECT_EQ(TheHost().sockets.Connect(handle, {{127, 0, 0, 1}, 0}), -1);
    EXPECT_EQ(TheHost().sockets.Close(handle), 0);
    EXPECT_EQ(TheHost().sockets.Close(handle), 0);
  }
  EXPECT_EQ(OpenHandles(), before);
}

TEST(HostSockets, AllMayBeAskedAtOnceOnceThatIsAllowed) {
  const Listener listener;
  const Address all = listener.At({127, 255, 255, 255});
  const Handle allowedBefore = TheHost().sockets.OpenUdp();
  TheHost().sockets.SetBroadcast(allowedBefore);
  EXPECT_EQ(TheHost().sockets.SendTo(allowedBefore, kDatagram, all), 3);
  const Handle allowedLater = TheHost().sockets.OpenUdp();
  EXPECT_EQ(TheHost().sockets.SendTo(allowedLater, kDatagram, all), -1);
  TheHost().sockets.SetBroadcast(allowedLater);
  EXPECT_EQ(TheHost().sockets.SendTo(allowedLater, kDatagram, all), 3);
  for (const Handle handle : {allowedBefore, allowedLater}) TheHost().sockets.Close(handle);
}

}  // namespace
}  // namespace tavlyn::boundary
