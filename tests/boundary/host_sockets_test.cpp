// The sockets of Linux: a handle for each, as many as the system has descriptors.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "tests/boundary/calls.h"
#include "tests/boundary/failing_calls.h"
#include "tests/boundary/far_end.h"

namespace {

const char* hostName = "localhost";

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int gethostname(char* name, std::size_t room) noexcept {
  if (tavlyn::boundary::FailsNow("gethostname")) return -1;
  std::strncpy(name, hostName, room);
  return 0;
}

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

TEST(HostSockets, WithoutADescriptorThereIsNoSocket) {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  const rlimit none{0, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  EXPECT_EQ(TheHost().sockets.OpenTcp(), platform::kNoHandle);
  EXPECT_EQ(TheHost().sockets.OpenUdp(), platform::kNoHandle);
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
}

// Somebody who accepts connections, or did.
class Acceptor {
 public:
  Acceptor() : descriptor_(socket(AF_INET, SOCK_STREAM, 0)) {
    const sockaddr_in own = sim::net::AddressOf({127, 0, 0, 1}, 0);
    bind(descriptor_, reinterpret_cast<const sockaddr*>(&own), sizeof own);
    listen(descriptor_, 8);
    address_.port = sim::net::PortOf(descriptor_);
  }
  ~Acceptor() { Leave(); }
  Acceptor(const Acceptor&) = delete;
  Acceptor& operator=(const Acceptor&) = delete;

  void Leave() {
    if (descriptor_ >= 0) close(descriptor_);
    descriptor_ = -1;
  }
  [[nodiscard]] Address At() const { return address_; }

 private:
  int descriptor_;
  Address address_{{127, 0, 0, 1}, 0};
};

// The first three end the call before the connection is there, the last after that.
TEST(HostSockets, ASignalDoesNotEndAConnect) {
  const Acceptor peer;
  for (const auto& [call, times] :
       {std::pair("connect", 0), {"connect", 1}, {"connect", 3}, {"connected", 1}}) {
    const Handle handle = TheHost().sockets.OpenTcp();
    const int before = Connects();
    {
      const Failing interrupted(call, EINTR, times);
      EXPECT_EQ(TheHost().sockets.Connect(handle, peer.At()), 0) << call << times;
    }
    EXPECT_EQ(Connects() - before, times + 1);
    EXPECT_EQ(TheHost().sockets.Send(handle, kDatagram), 3);
    TheHost().sockets.Close(handle);
  }
}

TEST(HostSockets, AConnectThatFailsAfterASignalHasFailed) {
  Acceptor peer;
  peer.Leave();
  for (const int times : {0, 1, 2}) {
    const Handle handle = TheHost().sockets.OpenTcp();
    const Failing interrupted("connect", EINTR, times);
    EXPECT_LT(TheHost().sockets.Connect(handle, peer.At()), 0);
    EXPECT_EQ(Failing::Left(), 0);
    TheHost().sockets.Close(handle);
  }
}

TEST(HostSockets, TheAddressOfThisHostIsThatOfItsName) {
  std::array<std::uint8_t, 4> ip{};
  EXPECT_TRUE(TheHost().sockets.HostAddress(ip));
  EXPECT_EQ(ip, (std::array<std::uint8_t, 4>{127, 0, 0, 1}));
  // Longer than any label of a name; no server is asked for it.
  const std::string endless(200, 'x');
  hostName = endless.c_str();
  EXPECT_FALSE(TheHost().sockets.HostAddress(ip));
  hostName = "localhost";
  const Failing nameless("gethostname", ENAMETOOLONG);
  EXPECT_FALSE(TheHost().sockets.HostAddress(ip));
}

}  // namespace
}  // namespace tavlyn::boundary
