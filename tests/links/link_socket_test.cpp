// The one TCP socket: connecting it, its paced traffic, closing it.
#include "links/link_socket.h"

#include <gtest/gtest.h>

#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;

constexpr platform::Address kPeer{{10, 0, 0, 5}, 4001};
constexpr platform::Handle kSocket = 7;

class LinkSocketTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    host.sockets.accepts = [](platform::Address) { return true; };
    ForgetTraffic();
  }
  void ExpectCalls(const Lines& expected, int line = __builtin_LINE()) {
    EXPECT_EQ(Difference(expected, host.transcript.Lines()), "") << "from line " << line;
    ForgetTraffic();
  }
  // The result, with the bytes in `buffer`.
  std::int32_t Receive(std::size_t length, std::deque<std::optional<Bytes>> pieces) {
    shared.link.LinkSocket = kSocket;
    buffer.assign(length, 0xEE);
    host.sockets.toReceive = std::move(pieces);
    ForgetTraffic();
    return LinkRecv(buffer);
  }

  Bytes buffer;
};

TEST_F(LinkSocketTest, IsNonBlockingOnlyOnceConnected) {
  EXPECT_EQ(LinkConnect(kPeer), 0);
  EXPECT_EQ(shared.link.LinkSocket, 1001U);
  ExpectCalls({"socket tcp -> 1001", "connect 10.0.0.5:4001", "option 1001 nonblocking"});
}

TEST_F(LinkSocketTest, AnOpenOneIsClosedFirst) {
  shared.link.LinkSocket = kSocket;
  host.sockets.closeResult = -1;
  EXPECT_EQ(LinkConnect(kPeer), 0) << "whatever the close says";
  EXPECT_EQ(shared.link.LinkSocket, 1001U);
  ExpectCalls(
      {"close socket 7 refused", "socket tcp -> 1001", "connect 10.0.0.5:4001", "option 1001 nonblocking"});
}

TEST_F(LinkSocketTest, EachFailureHasItsNumber) {
  shared.link.LinkSocket = kSocket;
  host.sockets.starts = false;
  EXPECT_EQ(LinkConnect(kPeer), -1);
  EXPECT_FALSE(LinkIsOpen()) << "the old one is gone";
  host.sockets.starts = true;
  host.sockets.opens = false;
  EXPECT_EQ(LinkConnect(kPeer), -2);
  EXPECT_FALSE(LinkIsOpen());
  host.sockets.opens = true;
  host.sockets.accepts = nullptr;
  ForgetTraffic();
  EXPECT_EQ(LinkConnect(kPeer), -3);
  EXPECT_FALSE(LinkIsOpen());
  ExpectCalls({"socket tcp -> 1001", "connect 10.0.0.5:4001 refused", "close socket 1001"});
  host.sockets.closeResult = -1;
  EXPECT_EQ(LinkConnect(kPeer), -3);
  EXPECT_EQ(shared.link.LinkSocket, 1002U) << "a socket that does not close stays";
}

TEST_F(LinkSocketTest, NothingConnectsToNetworkZeroOrPortZero) {
  EXPECT_EQ(LinkConnect({{0, 1, 2, 3}, 4001}), -3);
  EXPECT_EQ(LinkConnect({{10, 0, 0, 5}, 0}), -3);
}

TEST_F(LinkSocketTest, AClosedOneMovesNothing) {
  buffer.assign(2, 0xEE);
  EXPECT_EQ(LinkRecv(buffer), 0);
  EXPECT_EQ(buffer, Bytes(2, 0xEE));
  EXPECT_EQ(LinkSend(Bytes{1}), 0);
  EXPECT_EQ(LinkClose(), 0);
  ExpectCalls({});
}

TEST_F(LinkSocketTest, APieceOfTheFullLengthEndsTheRead) {
  EXPECT_EQ(Receive(3, {Bytes{1, 2, 3}, Bytes{4}}), 3);
  EXPECT_EQ(buffer, (Bytes{1, 2, 3}));
  ExpectCalls({"sleep 30", "sleep 20", "recv 01 02 03"});
}

TEST_F(LinkSocketTest, HalfOfTheRequestEndsTheRead) {
  EXPECT_EQ(Receive(10, {Bytes{1, 2, 3, 4, 5}, Bytes{6, 7, 8, 9, 10}}), 5);
  EXPECT_EQ(buffer, (Bytes{1, 2, 3, 4, 5, 0, 0, 0, 0, 0}));
  EXPECT_EQ(host.sockets.toReceive.size(), 1U) << "the rest stays in the socket";
  ExpectTraffic({"sleep 30", "sleep 20", "recv"});
}

TEST_F(LinkSocketTest, TheResultIsTheLastPieceAndNotTheTotal) {
  EXPECT_EQ(Receive(10, {Bytes{1, 2, 3, 4}, std::nullopt, Bytes{5, 6, 7}, Bytes{8}}), 3);
  EXPECT_EQ(buffer, (Bytes{1, 2, 3, 4, 5, 6, 7, 0, 0, 0}));
  ExpectCalls(
      {"sleep 30", "sleep 20", "recv 01 02 03 04", "sleep 20", "recv refused", "sleep 20", "recv 05 06 07"});
}

TEST_F(LinkSocketTest, FivePassesAreTheMost) {
  EXPECT_EQ(Receive(4, {}), -1);
  EXPECT_EQ(buffer, Bytes(4));
  ExpectCalls(Join({{"sleep 30"}, Times(5, {"sleep 20", "recv refused"})}));
  EXPECT_EQ(Receive(9, {Bytes{1}, Bytes{2}, Bytes{3}, std::nullopt, Bytes{}, Bytes{4}}), 0);
  EXPECT_EQ(buffer, (Bytes{1, 2, 3, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Slept(), 130U);
}

TEST_F(LinkSocketTest, APeerThatHasClosedReadsAsZero) {
  EXPECT_EQ(Receive(4, {Bytes{}, Bytes{}, Bytes{}, Bytes{}, Bytes{}, Bytes{1}}), 0);
  EXPECT_EQ(Slept(), 130U);
}

TEST_F(LinkSocketTest, ARequestForNothingOnlyWaits) {
  EXPECT_EQ(Receive(0, {Bytes{1}}), 0);
  ExpectCalls({"sleep 30"});
}

TEST_F(LinkSocketTest, ASendWaitsBehindItself) {
  shared.link.LinkSocket = kSocket;
  EXPECT_EQ(LinkSend(Bytes{1, 2}), 2);
  host.sockets.sendResult = -1;
  EXPECT_EQ(LinkSend(Bytes{3}), -1);
  ExpectCalls({"send 01 02", "sleep 20", "send 03 refused", "sleep 20"});
}

TEST_F(LinkSocketTest, ACloseThatFailsLeavesItOpen) {
  shared.link.LinkSocket = kSocket;
  host.sockets.closeResult = -1;
  EXPECT_EQ(LinkClose(), -1);
  EXPECT_EQ(shared.link.LinkSocket, kSocket);
  host.sockets.closeResult = 0;
  EXPECT_EQ(LinkClose(), 0);
  EXPECT_FALSE(LinkIsOpen());
}

TEST_F(LinkSocketTest, TheTunnelEndsWithItsSocketAndNoOther) {
  shared.link.LinkSocket = kSocket;
  CloseTunnel();
  EXPECT_TRUE(LinkIsOpen());
  shared.link.TunnelLink = 1;
  CloseTunnel();
  EXPECT_FALSE(LinkIsOpen());
  EXPECT_EQ(shared.link.TunnelLink, 0);
}

}  // namespace
}  // namespace tavlyn::test
