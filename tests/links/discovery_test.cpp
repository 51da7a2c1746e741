// Finding Ethernet adapters: the two questions byte for byte, their waits, and what counts as an answer.
#include "links/discovery.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "api.h"
#include "links/link_socket.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using Datagrams = std::vector<sim::VirtualSockets::Datagram>;

constexpr IpAddress kAddress = {10, 0, 0, 5};
constexpr std::uint16_t kDiscoveryPort = 11000;
constexpr std::uint16_t kAdapterPort = 30718;
const std::string kAsk = "sendto 10.0.0.5:11000 52 46 49 44 44 49 53 43 01 00";
const std::string kQuery = "sendto 10.0.0.5:30718 00 00 00 F6";

// Every byte that is not checked is 0x55.
Bytes DiscoveryReply(std::size_t size = 128) {
  Bytes reply(128, 0x55);
  const auto put = [&](std::size_t at, const Bytes& bytes) {
    std::copy(bytes.begin(), bytes.end(), reply.begin() + static_cast<std::ptrdiff_t>(at));
  };
  put(0, {'R', 'F', 'I', 'D', 'D', 'I', 'S', 'C', 2});
  put(10, {0xF4, 0xF0, 0xF2, 0xF0});
  put(14, {'-', 'K', 'e', 's', 't', 'r', 'i', 'n', '/', 'W', 'e', 'd', 'g', 'e'});
  put(29, {0x7C, 0x31, 0xA6, 1, 2, 3});
  put(36, {10, 0, 0, 5});
  reply.resize(size);
  return reply;
}

Bytes AdapterReply(std::uint8_t first, std::uint8_t second) {
  Bytes reply(30, 0x55);
  const Bytes head = {0, 0, 0, 0xF7};
  const Bytes mac = {0, first, second, 7, 8, 9};
  std::copy(head.begin(), head.end(), reply.begin());
  std::copy(mac.begin(), mac.end(), reply.begin() + 24);
  return reply;
}

bool Stated(std::size_t at) {
  const auto within = [&](std::size_t first, std::size_t last) { return at >= first && at <= last; };
  return within(0, 8) || within(10, 27) || within(29, 31) || within(36, 39);
}

class DiscoveryTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    ForgetTraffic();
  }
  // One answer to each question that goes to that port.
  void AnswerOn(std::uint16_t port, Bytes reply, IpAddress sender = kAddress) {
    host.sockets.onDatagram = [=](platform::Address to, const Bytes&) -> Datagrams {
      if (to.port != port) return {};
      return {{{sender, port}, reply}};
    };
  }
  void Forget() {
    host.sockets.datagrams.clear();
    ForgetTraffic();
  }
  std::uint32_t FindOne() {
    Forget();
    return FindXport(10, 0, 0, 5, 5);
  }
  std::string Mac() {
    Forget();
    MacAddress mac;
    mac.fill(0xEE);
    if (!FetchMacAddr(kAddress, mac)) return "no socket";
    return sim::HexText(Bytes(mac.begin(), mac.end()));
  }
  Lines Options() {
    Lines lines;
    for (const sim::Event& event : host.transcript.Events()) {
      if (event.kind == sim::EventKind::kOption) lines.push_back(event.Line());
    }
    return lines;
  }
};

const std::string kNoMac = "00 00 00 00 00 00";
const std::string kDiscoveryMac = "7C 31 A6 01 02 03";

TEST_F(DiscoveryTest, ASilentAddressTakesThreeTriesAnd453Milliseconds) {
  EXPECT_EQ(FindXport(10, 0, 0, 5, 5), 0U);
  EXPECT_EQ(Slept(), 453U);
  const Lines ask = {kAsk, kAsk};
  const Lines silence = {"recv refused", "recv refused", "recv refused", kQuery};
  const Lines last = {"sleep 50", "recv refused"};
  EXPECT_EQ(Options(), Times(3, {"option 1001 broadcast", "option 1001 nonblocking", "option 1001 timeout 50",
                                 "option 1001 nonblocking"}));
  ExpectTraffic(Join({ask,
                      silence,
                      last,
                      ask,
                      {"sleep 100"},
                      silence,
                      {"sleep 1"},
                      last,
                      ask,
                      {"sleep 200"},
                      silence,
                      {"sleep 2"},
                      last}));
  EXPECT_FALSE(LinkIsOpen());
}

TEST_F(DiscoveryTest, FindsByTheDiscoveryReply) {
  AnswerOn(kDiscoveryPort, DiscoveryReply());
  EXPECT_EQ(FindXport(10, 0, 0, 5, 9), 5U);
  ExpectTraffic({kAsk, kAsk, "recv"});
  EXPECT_FALSE(LinkIsOpen());
  EXPECT_EQ(GetDevCnt(), 0) << "nothing goes into the table";
}

TEST_F(DiscoveryTest, EveryStatedByteOfTheReplyCounts) {
  for (std::size_t at = 0; at < 128; ++at) {
    Bytes reply = DiscoveryReply();
    reply[at] ^= 0x80U;
    AnswerOn(kDiscoveryPort, reply);
    EXPECT_EQ(FindOne(), Stated(at) ? 0U : 5U) << "byte " << at;
  }
}

TEST_F(DiscoveryTest, AShortDiscoveryReplyIsEnoughForTheSearchAlone) {
  for (const std::size_t size : {40U, 100U, 127U}) {
    AnswerOn(kDiscoveryPort, DiscoveryReply(size));
    EXPECT_EQ(FindOne(), 5U);
    EXPECT_EQ(Mac(), kNoMac);
  }
  AnswerOn(kDiscoveryPort, DiscoveryReply());
  EXPECT_EQ(Mac(), kDiscoveryMac);
  AnswerOn(kDiscoveryPort, DiscoveryReply(39));
  EXPECT_EQ(FindOne(), 0U);
}

TEST_F(DiscoveryTest, FindsByTheAdapterReplyWhereItCameFrom) {
  AnswerOn(kAdapterPort, AdapterReply(0x20, 0x4A), {10, 0, 0, 17});
  EXPECT_EQ(FindOne(), 17U);
  ExpectTraffic({kAsk, kAsk, "recv refused", "recv refused", "recv refused", kQuery, "sleep 50", "recv"});
  for (const IpAddress elsewhere : {IpAddress{11, 0, 0, 5}, {10, 1, 0, 5}, {10, 0, 1, 5}}) {
    AnswerOn(kAdapterPort, AdapterReply(0x20, 0x4A), elsewhere);
    EXPECT_EQ(FindOne(), 0U);
  }
}

TEST_F(DiscoveryTest, TheTwoRoutinesKnowDifferentMakers) {
  AnswerOn(kAdapterPort, AdapterReply(0x1D, 0x4B));
  EXPECT_EQ(FindOne(), 5U);
  EXPECT_EQ(Mac(), "00 1D 4B 07 08 09");
  AnswerOn(kAdapterPort, AdapterReply(0x80, 0xA3));
  EXPECT_EQ(FindOne(), 0U);
  EXPECT_EQ(Mac(), "00 80 A3 07 08 09");
  AnswerOn(kAdapterPort, AdapterReply(0x20, 0x4A));
  EXPECT_EQ(Mac(), "00 20 4A 07 08 09");
  for (const auto& [first, second] : {std::pair<std::uint8_t, std::uint8_t>{0x20, 0x4B}, {0x1D, 0x4A}}) {
    AnswerOn(kAdapterPort, AdapterReply(first, second));
    EXPECT_EQ(FindOne(), 0U);
    EXPECT_EQ(Mac(), kNoMac);
  }
}

TEST_F(DiscoveryTest, EveryStatedByteOfTheAdapterReplyCounts) {
  for (const std::size_t at : {0U, 1U, 2U, 3U, 24U}) {
    Bytes reply = AdapterReply(0x20, 0x4A);
    reply[at] ^= 0x80U;
    AnswerOn(kAdapterPort, reply);
    EXPECT_EQ(FindOne(), 0U) << "byte " << at;
    EXPECT_EQ(Mac(), kNoMac) << "byte " << at;
  }
}

TEST_F(DiscoveryTest, GoesThroughTheRangeUntilSomethingAnswers) {
  host.sockets.onDatagram = [](platform::Address to, const Bytes&) -> Datagrams {
    if (to.ip[3] != 6 || to.port != kAdapterPort) return {};
    return {{to, AdapterReply(0x20, 0x4A)}};
  };
  EXPECT_EQ(FindXport(10, 0, 0, 4, 7), 6U);
  EXPECT_EQ(Slept(), 453U * 2 + 50);
  Forget();
  EXPECT_EQ(FindXport(10, 0, 0, 5, 4), 0U);
  ExpectTraffic({});
}

TEST_F(DiscoveryTest, OctetsAreLowBytes) {
  EXPECT_EQ(FindXport(0x10A, -1, 0, 0x105, 0x105), 0U);
  EXPECT_EQ(TrafficOf(host.transcript.Events()).front(),
            "sendto 10.255.0.5:11000 52 46 49 44 44 49 53 43 01 00");
}

TEST_F(DiscoveryTest, ASendThatFailsIsNotWaitedFor) {
  host.sockets.sendResult = -1;
  EXPECT_EQ(FindOne(), 0U);
  ExpectTraffic(Times(3, {kAsk + " refused", kAsk + " refused", kQuery + " refused"}));
  EXPECT_EQ(Mac(), kNoMac);
  ExpectTraffic({kAsk + " refused", kAsk + " refused", "sleep 2", kAsk + " refused", kQuery + " refused"});
}

TEST_F(DiscoveryTest, APartlySentQuestionIsFollowedByTheQueryAtOnce) {
  host.sockets.sendResult = 9;
  EXPECT_EQ(FindOne(), 0U);
  const Lines attempt = {kAsk, kAsk, kQuery};
  const Lines last = {"sleep 50", "recv refused"};
  ExpectTraffic(Join({attempt, last, attempt, {"sleep 1"}, last, attempt, {"sleep 2"}, last}));
  EXPECT_EQ(Mac(), kNoMac);
  ExpectTraffic(Join({{kAsk, kAsk, "sleep 2", kAsk, kQuery}, Times(10, {"recv refused", "sleep 50"})}));
}

TEST_F(DiscoveryTest, WithoutSocketsThereIsNoAnswer) {
  host.sockets.starts = false;
  EXPECT_EQ(FindXport(10, 0, 0, 1, 254), 0U);
  EXPECT_EQ(Mac(), "no socket");
  host.sockets.starts = true;
  host.sockets.opens = false;
  EXPECT_EQ(FindXport(10, 0, 0, 1, 254), 0U);
  EXPECT_EQ(Mac(), "no socket");
  ExpectTraffic({});
  EXPECT_FALSE(LinkIsOpen());
}

TEST_F(DiscoveryTest, TheSearchCutsTheLinkOffWithoutClosingIt) {
  shared.link.LinkSocket = 7;
  EXPECT_EQ(FindXport(10, 0, 0, 5, 4), 0U);
  EXPECT_EQ(host.transcript.Lines(), (Lines{"socket udp -> 1001", "close socket 1001"}));
  shared.link.LinkSocket = 7;
  host.sockets.closeResult = -1;
  EXPECT_EQ(FindXport(10, 0, 0, 5, 4), 0U);
  EXPECT_EQ(shared.link.LinkSocket, 1002U) << "a socket that does not close stays";
}

TEST_F(DiscoveryTest, WithNoAdapterTheAddressIsZerosAfter552Milliseconds) {
  shared.link.LinkSocket = 7;
  EXPECT_EQ(Mac(), kNoMac);
  EXPECT_EQ(shared.link.LinkSocket, 7U) << "it has a socket of its own";
  EXPECT_EQ(Slept(), 552U);
  EXPECT_EQ(Options(), (Lines{"option 1001 broadcast", "option 1001 nonblocking", "option 1001 timeout 100",
                              "option 1001 nonblocking"}));
  EXPECT_EQ(host.transcript.Lines().back(), "close socket 1001");
  ExpectTraffic(
      Join({{kAsk, kAsk, "sleep 2", kAsk, "recv refused", "sleep 50", "recv refused", "recv refused", kQuery},
            Times(10, {"recv refused", "sleep 50"})}));
}

TEST_F(DiscoveryTest, TheAddressComesWithTheDiscoveryReply) {
  AnswerOn(kDiscoveryPort, DiscoveryReply());
  EXPECT_EQ(Mac(), kDiscoveryMac);
  ExpectTraffic({kAsk, kAsk, "sleep 2", kAsk, "recv", "sleep 50"});
  Bytes other = DiscoveryReply();
  other[39] = 6;
  AnswerOn(kDiscoveryPort, other);
  EXPECT_EQ(Mac(), kNoMac) << "another adapter's answer";
}

TEST_F(DiscoveryTest, ADiscoveryReplyMayComeWithTheLaterReceives) {
  host.clock.onSleep = [this] {
    if (Slept() == 52) host.sockets.datagrams.push_back({{kAddress, kDiscoveryPort}, DiscoveryReply()});
  };
  EXPECT_EQ(Mac(), kDiscoveryMac);
  ExpectTraffic({kAsk, kAsk, "sleep 2", kAsk, "recv refused", "sleep 50", "recv"});
}

TEST_F(DiscoveryTest, AnAdapterReplyMayComeLate) {
  host.clock.onSleep = [this] {
    if (Slept() == 152) {
      host.sockets.datagrams.push_back({{kAddress, kAdapterPort}, AdapterReply(0x20, 0x4A)});
    }
  };
  EXPECT_EQ(Mac(), "00 20 4A 07 08 09");
  ExpectTraffic(
      Join({{kAsk, kAsk, "sleep 2", kAsk, "recv refused", "sleep 50", "recv refused", "recv refused", kQuery},
            Times(2, {"recv refused", "sleep 50"}),
            {"recv", "sleep 50"}}));
}

TEST_F(DiscoveryTest, AnAdapterReplyMustComeFromTheAddressAsked) {
  AnswerOn(kAdapterPort, AdapterReply(0x20, 0x4A), {10, 0, 0, 6});
  EXPECT_EQ(Mac(), kNoMac);
  ExpectTraffic({kAsk, kAsk, "sleep 2", kAsk, "recv refused", "sleep 50", "recv refused", "recv refused",
                 kQuery, "recv", "sleep 50"});
}

TEST_F(DiscoveryTest, AFloodOfOtherDatagramsIsGoneThroughInBoundedTime) {
  host.sockets.onDatagram = [](platform::Address to, const Bytes&) -> Datagrams {
    return Datagrams(20, {to, Bytes(4096, 0xA5)});
  };
  EXPECT_EQ(FindOne(), 0U);
  EXPECT_EQ(Slept(), 453U);
  EXPECT_EQ(Mac(), kNoMac);
  EXPECT_EQ(Slept(), 552U);
}

TEST_F(DiscoveryTest, TheHostTellsItsFirstAddress) {
  EXPECT_EQ(GetMyIpAddress(), 0U);
  host.sockets.hostAddress = {192, 168, 1, 20};
  EXPECT_EQ(GetMyIpAddress(), 0x1401A8C0U);
  host.sockets.starts = false;
  EXPECT_EQ(GetMyIpAddress(), 0U);
}

}  // namespace
}  // namespace tavlyn::test
