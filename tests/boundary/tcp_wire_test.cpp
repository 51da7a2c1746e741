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
      EXPECT_EQ(0u, ConnectTo(ip, port));
      EXPECT_EQ(kNotWritten, did_);
    });
  }
};

TEST_F(TcpWire, ReaderBehindAnAdapter) {
  const Ip ip = kTrueSender;
  TcpDevice device(ip, line_, {}, sim::kOtherBridgeMac);
  ASSERT_EQ(1u, ConnectTo(ip, device.Port()));
  EXPECT_EQ(reader_->state.did, did_);
  EXPECT_EQ("MAC:00:80:A3:0A:0B:0C TCP/IP:127.0.0.1;Port:" + std::to_string(device.Port()), Name());
  EXPECT_EQ(1, NewConnects());

  device.With([&] { reader_->PutCard({1, 2, 3}, 20); });
  std::array<std::uint8_t, 32> id{};
  Pause(Milliseconds(270));
  EXPECT_EQ(20, CALL(library_, GetActiveID32)(id.data(), 32));
  EXPECT_EQ(0x030201, id[0] | id[1] << 8 | id[2] << 16);
}

TEST_F(TcpWire, MacAddressByDiscovery) {
  const Ip ip{127, 3, 0, 2};
  Answering reader(kPingAnswer);
  const TcpDevice device(ip, reader);
  EXPECT_EQ(0u, ConnectTo(ip, device.Port())) << "a ping is all that it answers";
  EXPECT_TRUE(Name().starts_with("MAC:7C:31:A6:01:02:03 ")) << Name();
}

TEST_F(TcpWire, NobodyListens) {
  const Ip ip{127, 3, 0, 10};
  EXPECT_EQ(2 * kNoMac, TimeOfFailedConnect(ip, ClosedTcpPort(ip)));
}

TEST_F(TcpWire, PeerThatNeverAnswers) {
  const Ip ip{127, 3, 0, 3};
  Answering silent({});
  const TcpDevice device(ip, silent);
  EXPECT_EQ(kSilentPeer, TimeOfFailedConnect(ip, device.Port()));
  EXPECT_EQ(2, NewConnects()) << "text frames are tried too";
}

TEST_F(TcpWire, PeerThatNeverStops) {
  const Ip ip{127, 3, 0, 4};
  Flooding noise;
  const TcpDevice device(ip, noise);
  EXPECT_LE(TimeOfFailedConnect(ip, device.Port()), kSilentPeer);
  EXPECT_EQ(0, CALL(library_, GetDevCnt)());
}

TEST_F(TcpWire, PeerThatClosesAtOnce) {
  const Ip ip{127, 3, 0, 5};
  Answering device({0x04});
  device.CutAfter(1);
  const TcpDevice peer(ip, device);
  EXPECT_LE(TimeOfFailedConnect(ip, peer.Port()), kSilentPeer);
  EXPECT_EQ(0, CALL(library_, GetDevCnt)());
}

// A few commands into the configuration.
TEST_F(TcpWire, PeerThatClosesInTheMiddle) {
  const Ip ip{127, 3, 0, 6};
  line_.CutAfter(60);
  const TcpDevice device(ip, line_);
  EXPECT_EQ(0u, ConnectTo(ip, device.Port()));
  EXPECT_EQ(kNotWritten, did_);
  EXPECT_EQ(1, CALL(library_, GetDevCnt)()) << "it was a reader when it was asked";
  std::array<std::uint8_t, 32> id{};
  EXPECT_EQ(0, CALL(library_, GetActiveID32)(id.data(), 32));
  EXPECT_NE(0u, CALL(library_, GetLastLibErr)() & TAVLYN_ERR_COMMAND);
}

// One packet per byte does not matter if the whole answer is there when it is read.
TEST_F(TcpWire, PeerThatSendsByteByByte) {
  const Ip ip{127, 3, 0, 7};
  Answering slow(kPingAnswer);
  const TcpDevice device(ip, slow, {.betweenBytes = Milliseconds(5)});
  EXPECT_EQ(0u, ConnectTo(ip, device.Port())) << "the configuration is not that of a reader";
  EXPECT_EQ(1, CALL(library_, GetDevCnt)());
}

// A read ends when half has arrived and counts only the last piece, so an answer in pieces does not count.
TEST_F(TcpWire, PeerWhoseBytesTrickle) {
  const Ip ip{127, 3, 0, 8};
  Answering slow(kPingAnswer);
  const TcpDevice device(ip, slow, {.betweenBytes = Milliseconds(60)});
  EXPECT_LE(TimeOfFailedConnect(ip, device.Port()), kSilentPeer);
  EXPECT_EQ(0, CALL(library_, GetDevCnt)());
}

TEST_F(TcpWire, RawBytesPass) {
  const Ip ip{127, 3, 0, 9};
  Answering reader(kPingAnswer);
  const TcpDevice device(ip, reader);
  EXPECT_EQ(0u, ConnectTo(ip, device.Port()));
  ASSERT_EQ(1, CALL(library_, GetDevCnt)());
  std::array<std::uint8_t, 64> bytes{};
  const auto read = CALL(library_, ReadSerialPort);
  while (read(bytes.data(), 64) != 0xFFFFFFFFu) continue;
  EXPECT_EQ(20, TimeOf([&] { EXPECT_EQ(5u, CALL(library_, WriteSerialPort)("\xFA\x04\x00\x00\x04", 5)); }));
  // Half of what was asked for is enough.
  EXPECT_EQ(50, TimeOf([&] { EXPECT_EQ(7u, read(bytes.data(), 14)); }));
  EXPECT_EQ(0x90, bytes[5]);
  const auto quick = CALL(library_, QuickReadSerialPort);
  for (const auto& one : {read, quick}) {
    EXPECT_EQ(kEmptyRead, TimeOf([&] { EXPECT_EQ(0xFFFFFFFFu, one(bytes.data(), 4)); }));
  }
  EXPECT_EQ(1u, CALL(library_, ComDisconnect)());
  EXPECT_EQ(0u, read(bytes.data(), 4)) << "closed";
}

}  // namespace
}  // namespace tavlyn::boundary
