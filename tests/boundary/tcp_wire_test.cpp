// Readers behind an Ethernet adapter, which is a TCP port on the loopback network.
#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

// When nobody reports a MAC address: 2 ms, 50 ms for the first question, ten times 50 ms for the second. Each
// of the two ways to connect asks for it.
constexpr int kNoMac = 2 + 50 + 500;
constexpr int kMac = 2 + 50;
// Clearing the input, class byte, header, the wait for an answer: a read of nothing has five passes.
constexpr int kEmptyRead = 30 + 5 * 20;
constexpr int kSilentPing = kEmptyRead + 20 + 20 + 50 + kEmptyRead;
constexpr int kSilentPeer = 2 * kMac + 2 * kSilentPing;

class TcpWire : public Wire {
 protected:
  int TimeOfFailedConnect(Ip ip, std::uint16_t port) {
    return TimeOf([&] {
      EXPECT_EQ(ConnectTo(ip, port), 0u);
      EXPECT_EQ(did_, kNotWritten);
    });
  }
};

TEST_F(TcpWire, ReaderBehindAnAdapter) {
  const Ip ip = kTrueSender;
  TcpDevice device(ip, line_, {}, sim::kOtherBridgeMac);
  ASSERT_EQ(ConnectTo(ip, device.Port()), 1u);
  EXPECT_EQ(did_, reader_->state.did);
  EXPECT_EQ(Name(), "MAC:00:80:A3:0A:0B:0C TCP/IP:127.0.0.1;Port:" + std::to_string(device.Port()));
  EXPECT_EQ(NewConnects(), 1);

  device.With([&] { reader_->PutCard({1, 2, 3}, 20); });
  std::array<std::uint8_t, 32> id{};
  Pause(Milliseconds(270));
  EXPECT_EQ(CALL(library_, GetActiveID32)(id.data(), 32), 20);
  EXPECT_EQ(id[0] | id[1] << 8 | id[2] << 16, 0x030201);
}

TEST_F(TcpWire, MacAddressByDiscovery) {
  const Ip ip{127, 3, 0, 2};
  Answering reader(kPingAnswer);
  const TcpDevice device(ip, reader);
  EXPECT_EQ(ConnectTo(ip, device.Port()), 0u) << "a ping is all that it answers";
  EXPECT_TRUE(Name().starts_with("MAC:7C:31:A6:01:02:03 ")) << Name();
}

TEST_F(TcpWire, NobodyListens) {
  const Ip ip{127, 3, 0, 10};
  EXPECT_EQ(TimeOfFailedConnect(ip, ClosedTcpPort(ip)), 2 * kNoMac);
}

TEST_F(TcpWire, PeerThatNeverAnswers) {
  const Ip ip{127, 3, 0, 3};
  Answering silent({});
  const TcpDevice device(ip, silent);
  EXPECT_EQ(TimeOfFailedConnect(ip, device.Port()), kSilentPeer);
  EXPECT_EQ(NewConnects(), 2) << "text frames are tried too";
}

TEST_F(TcpWire, PeerThatNeverStops) {
  const Ip ip{127, 3, 0, 4};
  Flooding noise;
  const TcpDevice device(ip, noise);
  EXPECT_LE(TimeOfFailedConnect(ip, device.Port()), kSilentPeer);
  EXPECT_EQ(CALL(library_, GetDevCnt)(), 0);
}

TEST_F(TcpWire, PeerThatClosesAtOnce) {
  const Ip ip{127, 3, 0, 5};
  Answering device({0x04});
  device.CutAfter(1);
  const TcpDevice peer(ip, device);
  EXPECT_LE(TimeOfFailedConnect(ip, peer.Port()), kSilentPeer);
  EXPECT_EQ(CALL(library_, GetDevCnt)(), 0);
}

// A few commands into the configuration.
TEST_F(TcpWire, PeerThatClosesInTheMiddle) {
  const Ip ip{127, 3, 0, 6};
  line_.CutAfter(60);
  const TcpDevice device(ip, line_);
  EXPECT_EQ(ConnectTo(ip, device.Port()), 0u);
  EXPECT_EQ(did_, kNotWritten);
  EXPECT_EQ(CALL(library_, GetDevCnt)(), 1) << "it was a reader when it was asked";
  std::array<std::uint8_t, 32> id{};
  EXPECT_EQ(CALL(library_, GetActiveID32)(id.data(), 32), 0);
  EXPECT_NE(CALL(library_, GetLastLibErr)() & TAVLYN_ERR_COMMAND, 0u);
}

// One packet per byte does not matter if the whole answer is there when it is read.
TEST_F(TcpWire, PeerThatSendsByteByByte) {
  const Ip ip{127, 3, 0, 7};
  Answering slow(kPingAnswer);
  const TcpDevice device(ip, slow, {.betweenBytes = Milliseconds(5)});
  EXPECT_EQ(ConnectTo(ip, device.Port()), 0u) << "the configuration is not that of a reader";
  EXPECT_EQ(CALL(library_, GetDevCnt)(), 1);
}

// A read ends when half has arrived and counts only the last piece, so an answer in pieces does not count.
TEST_F(TcpWire, PeerWhoseBytesTrickle) {
  const Ip ip{127, 3, 0, 8};
  Answering slow(kPingAnswer);
  const TcpDevice device(ip, slow, {.betweenBytes = Milliseconds(60)});
  EXPECT_LE(TimeOfFailedConnect(ip, device.Port()), kSilentPeer);
  EXPECT_EQ(CALL(library_, GetDevCnt)(), 0);
}

TEST_F(TcpWire, RawBytesPass) {
  const Ip ip{127, 3, 0, 9};
  Answering reader(kPingAnswer);
  const TcpDevice device(ip, reader);
  EXPECT_EQ(ConnectTo(ip, device.Port()), 0u);
  ASSERT_EQ(CALL(library_, GetDevCnt)(), 1);
  std::array<std::uint8_t, 64> bytes{};
  const auto read = CALL(library_, ReadSerialPort);
  while (read(bytes.data(), 64) != 0xFFFFFFFFu) continue;
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(CALL(library_, WriteSerialPort)("\xFA\x04\x00\x00\x04", 5), 5u); }), 20);
  // Half of what was asked for is enough.
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(read(bytes.data(), 14), 7u); }), 50);
  EXPECT_EQ(bytes[5], 0x90);
  const auto quick = CALL(library_, QuickReadSerialPort);
  for (const auto& one : {read, quick}) {
    EXPECT_EQ(TimeOf([&] { EXPECT_EQ(one(bytes.data(), 4), 0xFFFFFFFFu); }), kEmptyRead);
  }
  EXPECT_EQ(CALL(library_, ComDisconnect)(), 1u);
  EXPECT_EQ(read(bytes.data(), 4), 0u) << "closed";
}

}  // namespace
}  // namespace tavlyn::boundary
