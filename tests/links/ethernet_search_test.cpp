// Readers behind Ethernet adapters: the passes over a network, what a find leaves, what a failure leaves.
#include "links/ethernet_search.h"

#include <gtest/gtest.h>

#include "api.h"
#include "links/link_socket.h"
#include "links/serial_port.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using Datagrams = std::vector<sim::VirtualSockets::Datagram>;

constexpr IpAddress kPeerAddress = {10, 20, 30, 5};
constexpr IpAddress kNet = {10, 20, 30, 0};
constexpr std::uint16_t kPort = 4001;

int& Counted() {
  static int count = 0;
  return count;
}
constexpr Probe kCountedYes{[] { return ++Counted() > 0; }, kReader};
constexpr Probe kCountedNo{[] { return ++Counted() == 0; }, kReader};

class EthernetSearchTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    Counted() = 0;
    ForgetTraffic();
  }
  void Accept() {
    host.sockets.accepts = [](platform::Address) { return true; };
  }
  void AcceptOnly(std::uint8_t fourth) {
    host.sockets.accepts = [=](platform::Address peer) { return peer.ip[3] == fourth; };
  }
  // Every adapter question is answered from the address that it went to.
  void GiveMac() {
    host.sockets.onDatagram = [](platform::Address to, const Bytes&) -> Datagrams {
      if (to.port != 30718) return {};
      Bytes reply(30);
      reply[3] = 0xF7;
      reply[25] = 0x20;
      reply[26] = 0x4A;
      reply[29] = 0xBC;
      return {{to, reply}};
    };
  }
  Lines ConnectsTo() {
    Lines lines;
    for (const sim::Event& event : host.transcript.Events()) {
      if (event.kind == sim::EventKind::kConnect) lines.push_back(event.text);
    }
    return lines;
  }
};

TEST_F(EthernetSearchTest, TheHardwareAddressIsFetchedBeforeTheConnection) {
  Accept();
  EXPECT_TRUE(XportConnect(kPeerAddress, kPort, kCountedYes));
  const Lines lines = host.transcript.Lines();
  ASSERT_GE(lines.size(), 4U);
  EXPECT_EQ(lines.front(), "socket udp -> 1001");
  EXPECT_EQ(Lines(lines.end() - 4, lines.end()),
            (Lines{"close socket 1001", "socket tcp -> 1002", "connect 10.20.30.5:4001",
                   "option 1002 nonblocking"}));
}

TEST_F(EthernetSearchTest, FillsTheEntryOfASerialReader) {
  Accept();
  GiveMac();
  EXPECT_TRUE(XportConnect(kPeerAddress, kPort, kCountedYes));
  const tsDevEntry& entry = DevTable[0];
  EXPECT_EQ(shared.DevCnt, 1);
  EXPECT_EQ(shared.ActDev, 0);
  EXPECT_EQ(entry.LinkKind, kBySerialPort);
  EXPECT_EQ(entry.bFound, 1);
  EXPECT_EQ(entry.ProductKind, kReader);
  EXPECT_EQ(entry.DevIpAddr, kPeerAddress);
  EXPECT_EQ(entry.DevMacAddr, (MacAddress{0, 0x20, 0x4A, 0, 0, 0xBC}));
  EXPECT_STREQ(entry.DevName, "MAC:00:20:4A:00:00:BC TCP/IP:10.20.30.5;Port:4001");
  ASSERT_NE(entry.pSerialPort, nullptr);
  EXPECT_TRUE(entry.pSerialPort->IsOverTcp());
  EXPECT_EQ(entry.pSerialPort->PortNum(), kPort);
  EXPECT_EQ(entry.pSerialPort->Timeouts().readInterval, 750U);
  EXPECT_TRUE(LinkIsOpen());
  EXPECT_EQ(shared.link.TunnelLink, 0);
}

TEST_F(EthernetSearchTest, AHostThatDoesNotAcceptLeavesTheObjectInTheEntry) {
  EXPECT_FALSE(XportConnect(kPeerAddress, kPort, kCountedYes));
  EXPECT_EQ(Counted(), 0);
  EXPECT_NE(DevTable[0].pSerialPort, nullptr);
  EXPECT_EQ(DevTable[0].LinkKind, kBySerialPort);
  EXPECT_EQ(DevTable[0].bFound, 0);
  EXPECT_EQ(shared.DevCnt, 0);
  EXPECT_FALSE(LinkIsOpen());
}

TEST_F(EthernetSearchTest, ASilentHostIsDisconnectedAndItsObjectGone) {
  Accept();
  shared.ActDev = 3;
  EXPECT_FALSE(XportConnect(kPeerAddress, kPort, kCountedNo));
  EXPECT_EQ(Counted(), 1);
  EXPECT_EQ(shared.ActDev, 0);
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
  EXPECT_FALSE(LinkIsOpen());
  EXPECT_EQ(DevTable[0].DevIpAddr, IpAddress{});
}

TEST_F(EthernetSearchTest, AnObjectOfTheOldTableIsClosedAndUsed) {
  host.ports.present[3] = nullptr;
  auto* old = new (std::nothrow) SerialPort;  // the entry owns it
  old->SetPortNum(3);
  ASSERT_TRUE(old->Open());
  DevTable[0].pSerialPort = old;
  Accept();
  EXPECT_TRUE(XportConnect(kPeerAddress, kPort, kCountedYes));
  EXPECT_EQ(DevTable[0].pSerialPort, old);
  EXPECT_TRUE(host.ports.inUse.empty());
}

TEST_F(EthernetSearchTest, AFourthOctetOfZeroSweepsTheNetwork) {
  AcceptOnly(7);
  GiveMac();
  EXPECT_TRUE(XportConnect(kNet, kPort, kCountedYes));
  Lines all;
  for (int e = 1; e <= 254; ++e) all.push_back("10.20.30." + std::to_string(e) + ":4001");
  EXPECT_EQ(ConnectsTo(), all) << "also behind the find";
  EXPECT_EQ(shared.DevCnt, 1);
  EXPECT_EQ(DevTable[0].DevIpAddr, (IpAddress{10, 20, 30, 7}));
  EXPECT_STREQ(DevTable[0].DevName, "MAC:00:20:4A:00:00:BC TCP/IP:10.20.30.0;Port:4001");
}

TEST_F(EthernetSearchTest, TheHardwareAddressIsAlwaysAskedOfTheAddressPassedIn) {
  XportConnect(kNet, kPort, kCountedYes);
  for (const sim::Event& event : host.transcript.Events()) {
    if (event.kind != sim::EventKind::kSendTo) continue;
    EXPECT_TRUE(event.text == "10.20.30.0:11000" || event.text == "10.20.30.0:30718") << event.text;
  }
  EXPECT_EQ(Slept(), 254U * 552);
}

TEST_F(EthernetSearchTest, MoreHostsThanTheTableHoldsFillIt) {
  Accept();
  EXPECT_TRUE(XportConnect(kNet, kPort, kCountedYes));
  EXPECT_EQ(shared.DevCnt, kTableEntries);
}

TEST_F(EthernetSearchTest, FillsTheEntryOfATunnelledReader) {
  Accept();
  GiveMac();
  EXPECT_TRUE(TunnelConnect(kPeerAddress, kPort, kCountedYes));
  const tsDevEntry& entry = DevTable[0];
  EXPECT_EQ(shared.DevCnt, 1);
  EXPECT_EQ(shared.ActDev, 0);
  EXPECT_EQ(shared.link.TunnelLink, 1);
  EXPECT_EQ(entry.LinkKind, kByReports);
  EXPECT_EQ(entry.bFound, 1);
  EXPECT_EQ(entry.ProductKind, kReader);
  EXPECT_EQ(entry.DevIpAddr, kPeerAddress);
  EXPECT_STREQ(entry.DevName, "MAC:00:20:4A:00:00:BC TCP/IP:10.20.30.5;Port:4001");
  EXPECT_EQ(entry.pSerialPort, nullptr);
  EXPECT_TRUE(LinkIsOpen());
}

TEST_F(EthernetSearchTest, TheTunnelDropsTheEntrysPort) {
  host.ports.present[3] = nullptr;
  auto* old = new (std::nothrow) SerialPort;  // the entry owns it
  old->SetPortNum(3);
  ASSERT_TRUE(old->Open());
  DevTable[0].pSerialPort = old;
  EXPECT_FALSE(TunnelConnect(kPeerAddress, kPort, kCountedYes));
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
  EXPECT_TRUE(host.ports.inUse.empty());
}

TEST_F(EthernetSearchTest, AFailedTunnelConnectionLeavesTheFlagSet) {
  EXPECT_FALSE(TunnelConnect(kPeerAddress, kPort, kCountedYes));
  EXPECT_EQ(Counted(), 0);
  EXPECT_EQ(shared.link.TunnelLink, 1);
  EXPECT_EQ(DevTable[0].LinkKind, kByReports);
  EXPECT_FALSE(LinkIsOpen());
}

TEST_F(EthernetSearchTest, ASilentTunnelIsTakenDown) {
  Accept();
  EXPECT_FALSE(TunnelConnect(kPeerAddress, kPort, kCountedNo));
  EXPECT_EQ(Counted(), 1);
  EXPECT_EQ(shared.link.TunnelLink, 0);
  EXPECT_FALSE(LinkIsOpen());
  EXPECT_EQ(shared.DevCnt, 0);
}

TEST_F(EthernetSearchTest, TheTunnelsSweepOnlyCountsItsPasses) {
  host.sockets.accepts = [passes = 0](platform::Address) mutable { return ++passes == 9; };
  EXPECT_TRUE(TunnelConnect(kNet, kPort, kCountedYes));
  EXPECT_EQ(ConnectsTo(), Times(254, {"10.20.30.0:4001"}));
  EXPECT_EQ(shared.DevCnt, 1);
  EXPECT_EQ(DevTable[0].DevIpAddr, (IpAddress{10, 20, 30, 9}));
  EXPECT_STREQ(DevTable[0].DevName, "MAC:00:00:00:00:00:00 TCP/IP:10.20.30.0;Port:4001");
}

}  // namespace
}  // namespace tavlyn::test
