// Sockets with a peer in the same program, over the loopback network.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "platform/parts.h"
#include "platform/platform.h"
#include "platform/windows/system.h"
#include "tests/boundary/imports_windows.h"

namespace tavlyn::platform {
namespace {

constexpr std::array<std::uint8_t, 4> kLoopback{127, 0, 0, 1};
constexpr std::array<std::uint8_t, 4> kLoopbackBroadcast{127, 255, 255, 255};
constexpr std::array<std::uint8_t, 4> kNowhere{0, 0, 0, 0};
constexpr Address kOtherSystem{{127, 31, 7, 9}, 47123};  // where tests/windows/run has an echo

// A socket of the far side on a port that the system chose, reachable under every address of this host.
class Peer {
 public:
  explicit Peer(int type) : socket_(::socket(AF_INET, type, 0)) {
    sockaddr_in any{};
    any.sin_family = AF_INET;
    int size = sizeof any;
    EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&any), sizeof any), 0);
    EXPECT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&any), &size), 0);
    port_ = ntohs(any.sin_port);
    EXPECT_EQ(listen(socket_, 4), type == SOCK_STREAM ? 0 : SOCKET_ERROR);
  }
  ~Peer() { closesocket(socket_); }
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  [[nodiscard]] SOCKET get() const { return socket_; }
  [[nodiscard]] std::uint16_t Port() const { return port_; }

  // Whether something has arrived. The loopback network is quick: what does not arrive in this time was not
  // sent.
  [[nodiscard]] bool IsReached(long milliseconds = 200) const {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(socket_, &set);
    timeval limit{milliseconds / 1000, milliseconds % 1000 * 1000};
    return select(0, &set, nullptr, nullptr, &limit) == 1;
  }

 private:
  SOCKET socket_;
  std::uint16_t port_ = 0;
};

std::span<const std::uint8_t> Bytes(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

class SocketsTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(sockets_.Startup());
    ASSERT_TRUE(sockets_.Startup());
  }

  void TearDown() override {
    for (const Handle socket : opened_) sockets_.Close(socket);
  }

  Handle Tcp() { return Keep(sockets_.OpenTcp()); }
  Handle Udp() { return Keep(sockets_.OpenUdp()); }

  Handle Keep(Handle socket) {
    EXPECT_NE(socket, kNoHandle);
    opened_.push_back(socket);
    return socket;
  }

  std::int32_t RecvLength(Handle socket) {
    std::array<std::uint8_t, 16> bytes{};
    return sockets_.Recv(socket, bytes);
  }

  Sockets& sockets_ = TheHost().sockets;
  std::vector<Handle> opened_;
};

TEST_F(SocketsTest, BytesPassOverTcp) {
  const Peer peer(SOCK_STREAM);
  const Handle socket = Tcp();
  ASSERT_EQ(sockets_.Connect(socket, {kLoopback, peer.Port()}), 0);
  const SOCKET accepted = accept(peer.get(), nullptr, nullptr);
  ASSERT_NE(INVALID_SOCKET, accepted);
  EXPECT_EQ(sockets_.Send(socket, Bytes("hello")), 5);
  std::array<char, 16> got{};
  EXPECT_EQ(recv(accepted, got.data(), static_cast<int>(got.size()), 0), 5);
  EXPECT_STREQ(got.data(), "hello");
  EXPECT_EQ(send(accepted, "abc", 3, 0), 3);
  std::array<std::uint8_t, 16> answer{};
  EXPECT_EQ(sockets_.Recv(socket, answer), 3);
  EXPECT_EQ(std::memcmp("abc", answer.data(), 4), 0);
  closesocket(accepted);
  EXPECT_EQ(RecvLength(socket), 0);
}

TEST_F(SocketsTest, PeerOfAnotherSystemAnswers) {
  const Handle tcp = Tcp();
  ASSERT_EQ(sockets_.Connect(tcp, kOtherSystem), 0);
  sockets_.SetReceiveTimeout(tcp, 60'000);
  EXPECT_EQ(sockets_.Send(tcp, Bytes("there")), 5);
  std::array<std::uint8_t, 16> answer{};
  EXPECT_EQ(sockets_.Recv(tcp, answer), 5);
  EXPECT_EQ(std::memcmp("there", answer.data(), 6), 0);

  const Handle udp = Udp();
  sockets_.SetReceiveTimeout(udp, 60'000);
  EXPECT_EQ(sockets_.SendTo(udp, Bytes("back"), kOtherSystem), 4);
  Address sender;
  EXPECT_EQ(sockets_.RecvFrom(udp, answer, sender), 4);
  EXPECT_EQ(std::memcmp("back", answer.data(), 4), 0);
  EXPECT_EQ(sender.ip, kOtherSystem.ip);
  EXPECT_EQ(sender.port, kOtherSystem.port);
}

TEST_F(SocketsTest, NobodyListeningIsAFailedConnect) {
  std::uint16_t port = 0;
  {
    const Peer gone(SOCK_STREAM);
    port = gone.Port();
  }
  EXPECT_LT(sockets_.Connect(Tcp(), {kLoopback, port}), 0);
}

TEST_F(SocketsTest, NetworkZeroAndPortZeroAreNotAsked) {
  const Peer listener(SOCK_STREAM);
  const Peer receiver(SOCK_DGRAM);
  EXPECT_LT(sockets_.Connect(Tcp(), {kNowhere, listener.Port()}), 0);
  EXPECT_LT(sockets_.Connect(Tcp(), {{0, 0, 0, 254}, listener.Port()}), 0);
  EXPECT_LT(sockets_.Connect(Tcp(), {kLoopback, 0}), 0);
  const Handle udp = Udp();
  EXPECT_LT(sockets_.SendTo(udp, Bytes("x"), {kNowhere, receiver.Port()}), 0);
  EXPECT_LT(sockets_.SendTo(udp, Bytes("x"), {{0, 0, 0, 254}, receiver.Port()}), 0);
  EXPECT_FALSE(listener.IsReached());
  EXPECT_FALSE(receiver.IsReached());
}

TEST_F(SocketsTest, DatagramsTellTheirSender) {
  const Peer peer(SOCK_DGRAM);
  const Handle socket = Udp();
  EXPECT_EQ(sockets_.SendTo(socket, Bytes("ping"), {kLoopback, peer.Port()}), 4);
  std::array<char, 16> got{};
  sockaddr_in from{};
  int size = sizeof from;
  EXPECT_EQ(recvfrom(peer.get(), got.data(), static_cast<int>(got.size()), 0,
                     reinterpret_cast<sockaddr*>(&from), &size),
            4);
  EXPECT_STREQ(got.data(), "ping");
  EXPECT_EQ(sendto(peer.get(), "ok", 2, 0, reinterpret_cast<const sockaddr*>(&from), size), 2);
  std::array<std::uint8_t, 16> answer{};
  Address sender;
  EXPECT_EQ(sockets_.RecvFrom(socket, answer, sender), 2);
  EXPECT_EQ(std::memcmp("ok", answer.data(), 3), 0);
  EXPECT_EQ(sender.ip, kLoopback);
  EXPECT_EQ(sender.port, peer.Port());
}

TEST_F(SocketsTest, BroadcastHasToBeAllowed) {
  const Peer peer(SOCK_DGRAM);
  const Handle socket = Udp();
  EXPECT_LT(sockets_.SendTo(socket, Bytes("all"), {kLoopbackBroadcast, peer.Port()}), 0);
  EXPECT_FALSE(peer.IsReached());
  sockets_.SetBroadcast(socket);
  EXPECT_EQ(sockets_.SendTo(socket, Bytes("all"), {kLoopbackBroadcast, peer.Port()}), 3);
  EXPECT_TRUE(peer.IsReached(60'000));
}

TEST_F(SocketsTest, ADatagramThatIsTooLongIsCut) {
  const Peer peer(SOCK_DGRAM);
  const Handle socket = Udp();
  ASSERT_EQ(sockets_.SendTo(socket, Bytes("x"), {kLoopback, peer.Port()}), 1);
  sockaddr_in from{};
  int size = sizeof from;
  char asked = 0;
  ASSERT_EQ(recvfrom(peer.get(), &asked, 1, 0, reinterpret_cast<sockaddr*>(&from), &size), 1);
  for (int time = 0; time < 2; ++time) {
    ASSERT_EQ(sendto(peer.get(), "0123456789", 10, 0, reinterpret_cast<const sockaddr*>(&from), size), 10);
  }
  std::array<std::uint8_t, 4> room{};
  Address sender;
  EXPECT_EQ(sockets_.RecvFrom(socket, room, sender), 4);
  EXPECT_EQ(std::memcmp("0123", room.data(), room.size()), 0);
  EXPECT_EQ(sender.port, peer.Port());
  room = {};
  EXPECT_EQ(sockets_.Recv(socket, room), 4);
  EXPECT_EQ(std::memcmp("0123", room.data(), room.size()), 0);
}

struct Asked {
  DWORD code;
  BOOL value;
};
std::vector<Asked> askedModes;

int WSAAPI NotedMode(SOCKET one, DWORD code, void* in, DWORD inSize, void* out, DWORD outSize, DWORD* count,
                     OVERLAPPED* overlapped, LPWSAOVERLAPPED_COMPLETION_ROUTINE done) {
  EXPECT_EQ(inSize, sizeof(BOOL));
  askedModes.push_back({code, *static_cast<const BOOL*>(in)});
  return boundary::Original<decltype(WSAIoctl)>("ws2_32", "WSAIoctl")(one, code, in, inSize, out, outSize,
                                                                      count, overlapped, done);
}

// Otherwise a host on which nobody listens would end the next receive with an error.
TEST_F(SocketsTest, NobodyListeningThereIsNoErrorOfDatagrams) {
  constexpr DWORD kConnectionReset = 0x9800000C;
  ASSERT_TRUE(boundary::Replace(GetModuleHandleA(nullptr), {"WSAIoctl", reinterpret_cast<void*>(NotedMode)}));
  Tcp();
  EXPECT_TRUE(askedModes.empty());
  Udp();
  ASSERT_EQ(askedModes.size(), 1u);
  EXPECT_EQ(askedModes[0].code, kConnectionReset);
  EXPECT_EQ(askedModes[0].value, FALSE);
}

// What the system is asked for, on its way there.
DWORD askedLimit = 0;
SOCKET askedFor = 0;

int WSAAPI NotedOption(SOCKET one, int level, int name, const char* value, int size) {
  askedFor = one;
  if (name == SO_RCVTIMEO) std::memcpy(&askedLimit, value, sizeof askedLimit);
  return boundary::Original<decltype(setsockopt)>("ws2_32", "setsockopt")(one, level, name, value, size);
}

// The error says which of the two ended it.
TEST_F(SocketsTest, ReceivingEndsAfterItsLimitOrAtOnce) {
  ASSERT_TRUE(
      boundary::Replace(GetModuleHandleA(nullptr), {"setsockopt", reinterpret_cast<void*>(NotedOption)}));
  const Peer peer(SOCK_DGRAM);
  const Handle socket = Udp();
  ASSERT_EQ(sockets_.SendTo(socket, Bytes("x"), {kLoopback, peer.Port()}), 1);
  sockets_.SetReceiveTimeout(socket, 300);
  EXPECT_EQ(askedLimit, 300u);
  EXPECT_LT(RecvLength(socket), 0);
  EXPECT_EQ(WSAGetLastError(), WSAETIMEDOUT);
  sockets_.SetNonBlocking(socket);
  EXPECT_LT(RecvLength(socket), 0);
  EXPECT_EQ(WSAGetLastError(), WSAEWOULDBLOCK);
}

TEST_F(SocketsTest, ProgramsThatAreStartedDoNotInheritIt) {
  ASSERT_TRUE(
      boundary::Replace(GetModuleHandleA(nullptr), {"setsockopt", reinterpret_cast<void*>(NotedOption)}));
  for (const Handle socket : {Tcp(), Udp()}) {
    sockets_.SetReceiveTimeout(socket, 1);
    DWORD flags = 0;
    ASSERT_TRUE(GetHandleInformation(reinterpret_cast<HANDLE>(askedFor), &flags));
    EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0u);
  }
}

TEST_F(SocketsTest, AClosedSocketFailsAndItsHandleIsNotGivenAgain) {
  const Handle first = sockets_.OpenUdp();
  EXPECT_EQ(sockets_.Close(first), 0);
  EXPECT_EQ(sockets_.Close(first), 0);
  EXPECT_LT(sockets_.Send(first, Bytes("x")), 0);
  EXPECT_LT(RecvLength(first), 0);
  EXPECT_NE(first, Udp());
}

TEST_F(SocketsTest, LostOnesAreClosedWhenTheLibraryLeaves) {
  const Peer peer(SOCK_STREAM);
  const Handle lost = Tcp();
  ASSERT_EQ(sockets_.Connect(lost, {kLoopback, peer.Port()}), 0);
  const SOCKET accepted = accept(peer.get(), nullptr, nullptr);
  CloseLostSockets();
  char none = 0;
  EXPECT_EQ(recv(accepted, &none, 1, 0), 0) << "the other end sees it closed";
  closesocket(accepted);
}

TEST_F(SocketsTest, ThereIsNoLimitOfOurOwn) {
  const Peer peer(SOCK_DGRAM);
  for (int at = 0; at < 200; ++at) EXPECT_EQ(sockets_.SendTo(Udp(), Bytes("x"), {kLoopback, peer.Port()}), 1);
  EXPECT_EQ(std::set<Handle>(opened_.begin(), opened_.end()).size(), 200u);
}

TEST_F(SocketsTest, ThisHostHasAnAddress) {
  std::array<std::uint8_t, 4> ip{};
  ASSERT_TRUE(sockets_.HostAddress(ip));
  const Peer peer(SOCK_STREAM);
  EXPECT_EQ(sockets_.Connect(Tcp(), {ip, peer.Port()}), 0);
}

hostent* WSAAPI NoAddresses(const char*) {
  static char* none = nullptr;
  static hostent host{};
  host.h_addr_list = &none;
  return &host;
}

TEST_F(SocketsTest, AHostMayHaveNoAddress) {
  const struct {
    const char* name;
    void* answer;
  } kCalls[] = {
      {"gethostname", boundary::ConstantAnswer<SOCKET_ERROR>(gethostname)},
      {"gethostbyname", boundary::ConstantAnswer<0>(gethostbyname)},
      {"gethostbyname", reinterpret_cast<void*>(NoAddresses)},
  };
  for (const auto& call : kCalls) {
    const boundary::Redirected answering("ws2_32", call.name, call.answer);
    std::array<std::uint8_t, 4> ip{};
    EXPECT_TRUE(answering.Done() && !sockets_.HostAddress(ip)) << call.name;
  }
}

TEST_F(SocketsTest, WithoutASocketThereIsNoHandle) {
  const boundary::Redirected refused("ws2_32", "WSASocketW", boundary::ConstantAnswer<-1>(WSASocketW));
  ASSERT_TRUE(refused.Done());
  EXPECT_EQ(sockets_.OpenTcp(), kNoHandle);
  EXPECT_EQ(sockets_.OpenUdp(), kNoHandle);
}

}  // namespace
}  // namespace tavlyn::platform
