// Readers behind an Ethernet adapter, which is a TCP port of the loopback network.
#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

constexpr Ip kHere{127, 0, 0, 1};
constexpr std::uint16_t kDiscoveryPort = 11000;
constexpr std::uint16_t kAdapterPort = 30718;

// Where nobody tells a MAC address: 2 ms, 50 ms for the first question, ten times 50 ms for the second. It is
// asked for by each of the two ways to connect.
constexpr int kNoMac = 2 + 50 + 500;
// Clearing the input, class byte, header, the wait for an answer: each read of nothing has five passes.
constexpr int kEmptyRead = 30 + 5 * 20;
constexpr int kSilentPing = kEmptyRead + 20 + 20 + 50 + kEmptyRead;

class TcpWire : public Wire {
 protected:
  int TimeOfFailedConnect(std::uint16_t port) {
    return TimeOf([&] {
      EXPECT_EQ(0u, ConnectTo(kHere, port));
      EXPECT_EQ(kNotWritten, did_);
    });
  }
};

TEST_F(TcpWire, ReaderBehindAnAdapter) {
  const Ip ip{127, 0, 7, 1};
  const TcpDevice device(line_, {}, ip);
  const UdpPeer adapter(ip, kAdapterPort, [](const Bytes&) {
    Bytes reply(30);
    reply[3] = 0xF7;
    const Bytes mac{0x00, 0x80, 0xA3, 0x11, 0x22, 0x33};
    std::copy(mac.begin(), mac.end(), reply.begin() + 24);
    return std::vector<Bytes>{reply};
  });
  ASSERT_EQ(1u, ConnectTo(ip, device.Port()));
  EXPECT_EQ(reader_->state.did, did_);
  EXPECT_EQ("MAC:00:80:A3:11:22:33 TCP/IP:127.0.7.1;Port:" + std::to_string(device.Port()), Name());
  EXPECT_EQ(1, device.Accepted());

  reader_->PutCard({1, 2, 3}, 20);
  std::array<std::uint8_t, 32> id{};
  Pause(Milliseconds(270));
  EXPECT_EQ(20, CALL(library_, GetActiveID32)(id.data(), 32));
  EXPECT_EQ(0x030201, id[0] | id[1] << 8 | id[2] << 16);
}

TEST_F(TcpWire, MacAddressByDiscovery) {
  const Ip ip{127, 0, 7, 2};
  Answering reader(kPingAnswer);
  const TcpDevice device(reader, {}, ip);
  const UdpPeer adapter(ip, kDiscoveryPort,
                        [ip](const Bytes&) { return std::vector<Bytes>{DiscoveryReply(ip)}; });
  EXPECT_EQ(0u, ConnectTo(ip, device.Port())) << "a ping is all that it answers";
  EXPECT_TRUE(Name().starts_with("MAC:7C:31:A6:44:55:66 ")) << Name();
}

TEST_F(TcpWire, NobodyListens) { ExpectTime(2 * kNoMac, TimeOfFailedConnect(ClosedTcpPort())); }

TEST_F(TcpWire, PeerThatNeverAnswers) {
  Answering silent({});
  const TcpDevice device(silent);
  ExpectTime(2 * kNoMac + 2 * kSilentPing, TimeOfFailedConnect(device.Port()));
  Pause(Milliseconds(50));
  EXPECT_EQ(2, device.Accepted()) << "text frames are tried too";
}

TEST_F(TcpWire, PeerThatNeverStops) {
  Flooding noise;
  const TcpDevice device(noise);
  const int took = TimeOfFailedConnect(device.Port());
  EXPECT_GE(took, 2 * kNoMac);
  EXPECT_LE(took, 2 * kNoMac + 2 * kSilentPing + kLate);
}

TEST_F(TcpWire, PeerThatClosesAtOnce) {
  Answering device({0x04});
  const TcpDevice peer(device, {.closesAfter = 0});
  const int took = TimeOfFailedConnect(peer.Port());
  EXPECT_LE(took, 2 * kNoMac + 2 * kSilentPing + kLate);
}

// The echo of the tenth command or so is the last that comes.
TEST_F(TcpWire, PeerThatClosesInTheMiddle) {
  const TcpDevice device(line_, {.closesAfter = 60});
  const int took = TimeOfFailedConnect(device.Port());
  EXPECT_LE(took, 10000);
  EXPECT_EQ(1, CALL(library_, GetDevCnt)()) << "it was a reader when it was asked";
  std::array<std::uint8_t, 32> id{};
  EXPECT_EQ(0, CALL(library_, GetActiveID32)(id.data(), 32));
  EXPECT_NE(0u, CALL(library_, GetLastLibErr)() & TAVLYN_ERR_COMMAND);
  EXPECT_EQ(0u, CALL(library_, ReadSerialPort)(id.data(), 4)) << "the end of the stream";
}

// A packet for each byte is no matter while the whole answer is there when it is read.
TEST_F(TcpWire, PeerThatSendsByteByByte) {
  Answering slow(kPingAnswer);
  const TcpDevice device(slow, {1, Milliseconds(5)});
  EXPECT_EQ(0u, ConnectTo(kHere, device.Port())) << "the configuration is not that of a reader";
  EXPECT_EQ(1, CALL(library_, GetDevCnt)());
}

// A read ends when half has come and counts the last piece alone, so an answer in pieces is none.
TEST_F(TcpWire, PeerWhoseBytesTrickle) {
  Answering slow(kPingAnswer);
  const TcpDevice device(slow, {1, Milliseconds(60)});
  const int took = TimeOfFailedConnect(device.Port());
  EXPECT_EQ(0, CALL(library_, GetDevCnt)());
  EXPECT_LE(took, 2 * kNoMac + 2 * (kSilentPing + kEmptyRead) + kLate);
}

TEST_F(TcpWire, RawBytesPass) {
  Answering reader(kPingAnswer);
  const TcpDevice device(reader);
  EXPECT_EQ(0u, ConnectTo(kHere, device.Port()));
  ASSERT_EQ(1, CALL(library_, GetDevCnt)());
  std::array<std::uint8_t, 64> bytes{};
  while (CALL(library_, ReadSerialPort)(bytes.data(), 64) != 0xFFFFFFFFu) continue;
  ExpectTime(20, TimeOf([&] { EXPECT_EQ(5u, CALL(library_, WriteSerialPort)("\xFA\x04\x00\x00\x04", 5)); }));
  // The last piece counts, and half of what was asked for is enough.
  ExpectTime(50, TimeOf([&] { EXPECT_EQ(7u, CALL(library_, ReadSerialPort)(bytes.data(), 14)); }));
  EXPECT_EQ(0x90, bytes[5]);
  ExpectTime(kEmptyRead,
             TimeOf([&] { EXPECT_EQ(0xFFFFFFFFu, CALL(library_, ReadSerialPort)(bytes.data(), 4)); }));
  ExpectTime(kEmptyRead,
             TimeOf([&] { EXPECT_EQ(0xFFFFFFFFu, CALL(library_, QuickReadSerialPort)(bytes.data(), 4)); }));

  EXPECT_EQ(1u, CALL(library_, ComDisconnect)());
  EXPECT_EQ(0u, CALL(library_, ReadSerialPort)(bytes.data(), 4)) << "closed";
}

}  // namespace
}  // namespace tavlyn::boundary
