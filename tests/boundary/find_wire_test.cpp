// The search for Ethernet adapters among addresses of the loopback network.
#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

constexpr std::uint16_t kDiscoveryPort = 11000;
constexpr std::uint16_t kAdapterPort = 30718;
// Three tries of 50 ms, with 0, 101 and 202 ms before them.
constexpr int kSilentAddress = 3 * 50 + 101 + 202;

class FindWire : public Wire {
 protected:
  std::uint32_t Find(std::int16_t network, std::int16_t first, std::int16_t last) {
    std::uint32_t found = 0;
    took_ = TimeOf([&] { found = CALL(library_, FindXport)(127, 1, network, first, last); });
    return found;
  }
  static Bytes AdapterReply(std::uint8_t first, std::uint8_t second) {
    Bytes reply(30);
    reply[3] = 0xF7;
    reply[25] = first;
    reply[26] = second;
    return reply;
  }
  static UdpPeer::Answer Always(const Bytes& reply) {
    return [reply](const Bytes&) { return std::vector<Bytes>{reply}; };
  }

  int took_ = 0;
};

TEST_F(FindWire, DiscoveryIsAnswered) {
  Bytes asked;
  const Ip ip{127, 1, 1, 5};
  const UdpPeer adapter(ip, kDiscoveryPort, [&](const Bytes& datagram) {
    asked = datagram;
    return std::vector<Bytes>{DiscoveryReply(ip)};
  });
  EXPECT_EQ(Find(1, 5, 254), 5u);
  EXPECT_EQ(took_, 50 + 100) << "the answer comes while the first try waits for the other kind";
  EXPECT_EQ(asked, (Bytes{'R', 'F', 'I', 'D', 'D', 'I', 'S', 'C', 1, 0}));
  EXPECT_EQ(Find(1, 4, 254), 5u) << "behind an address where nobody is";
}

TEST_F(FindWire, ShortDiscoveryReplyIsEnough) {
  const Ip ip{127, 1, 2, 5};
  Bytes reply = DiscoveryReply(ip);
  reply.resize(100);
  const UdpPeer adapter(ip, kDiscoveryPort, Always(reply));
  EXPECT_EQ(Find(2, 5, 5), 5u);
}

TEST_F(FindWire, AdapterQueryIsAnswered) {
  Bytes asked;
  const UdpPeer adapter(kTrueSender, kAdapterPort, [&](const Bytes& datagram) {
    asked = datagram;
    return std::vector<Bytes>{AdapterReply(0x20, 0x4A)};
  });
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(CALL(library_, FindXport)(127, 0, 0, 1, 1), 1u); }), 50);
  EXPECT_EQ(asked, (Bytes{0, 0, 0, 0xF6}));
}

TEST_F(FindWire, AdapterOfAnotherMakerIsPassedOver) {
  const UdpPeer adapter({127, 1, 4, 9}, kAdapterPort, Always(AdapterReply(0x80, 0xA3)));
  EXPECT_EQ(Find(4, 9, 9), 0u);
  EXPECT_EQ(took_, kSilentAddress);
}

TEST_F(FindWire, SilenceCostsTheSameForEachAddress) {
  EXPECT_EQ(Find(5, 1, 3), 0u);
  EXPECT_EQ(took_, 3 * kSilentAddress);
  EXPECT_EQ(NewDatagrams(), 3 * 3 * 3) << "two of the first kind and one of the second in each try";
}

TEST_F(FindWire, EmptyRangeAsksNobody) {
  EXPECT_EQ(Find(6, 5, 4), 0u);
  EXPECT_EQ(NewDatagrams(), 0);
  EXPECT_EQ(took_, 0);
}

TEST_F(FindWire, SlowAnswerCountsInALaterTry) {
  const Ip ip{127, 1, 7, 5};
  const UdpPeer adapter(ip, kDiscoveryPort, Always(DiscoveryReply(ip)), Milliseconds(120));
  EXPECT_EQ(Find(7, 5, 5), 5u);
  EXPECT_EQ(took_, 50 + 100);
}

TEST_F(FindWire, WrongBytesAreNoAnswer) {
  const Ip ip{127, 1, 8, 5};
  // Signature, kind, marks, text, first half of the MAC address, IP address.
  for (const std::size_t at : {0U, 8U, 10U, 14U, 27U, 29U, 39U}) {
    Bytes reply = DiscoveryReply(ip);
    reply[at] ^= 1U;
    const UdpPeer adapter(ip, kDiscoveryPort, Always(reply));
    EXPECT_EQ(Find(8, 5, 5), 0u) << at;
  }
}

// Ten datagrams for each one, of every length, on both ports.
TEST_F(FindWire, NoiseIsNoAnswer) {
  const auto noise = [](const Bytes&) {
    std::vector<Bytes> all;
    for (std::size_t length = 1; length <= 400; length += 40) all.emplace_back(length, std::uint8_t{0xF7});
    all.emplace_back();
    return all;
  };
  const UdpPeer first({127, 1, 9, 5}, kDiscoveryPort, noise);
  const UdpPeer second({127, 1, 9, 5}, kAdapterPort, noise);
  EXPECT_EQ(Find(9, 5, 5), 0u);
  EXPECT_EQ(took_, kSilentAddress);
}

TEST_F(FindWire, ThisHostHasAnAddress) {
  const std::uint32_t own = CALL(library_, GetMyIpAddress)();
  EXPECT_NE(own, 0u);
  EXPECT_NE(own & 0xFF, 0u);
}

}  // namespace
}  // namespace tavlyn::boundary
