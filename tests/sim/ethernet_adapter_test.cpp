// The adapter model: who finds it, text frames, bytes of the serial line.
#include "sim/devices/ethernet_adapter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/support/exchange.h"

namespace tavlyn::test {
namespace {

using sim::AnswerDatagram;
using sim::Bytes;
using sim::EthernetAdapter;
using sim::Reader;

const Bytes kDiscovery = {'R', 'F', 'I', 'D', 'D', 'I', 'S', 'C', 1, 0};
const Bytes kQuery = {0, 0, 0, 0xF6};

Bytes BytesOf(const std::string& text) { return {text.begin(), text.end()}; }

std::string TakeAll(sim::ByteDevice& device) {
  std::string text;
  std::uint8_t byte = 0;
  while (device.Take({&byte, 1}) == 1) text += static_cast<char>(byte);
  return text;
}

std::string Say(sim::ByteDevice& device, const std::string& text) {
  device.Receive(BytesOf(text));
  return TakeAll(device);
}

TEST(EthernetAdapter, WedgeTellsOfItselfOnTheDiscoveryPort) {
  const sim::AdapterIdentity wedge{sim::kWedgeMac, {10, 0, 0, 5}};
  const auto reply = AnswerDatagram(wedge, sim::kDiscoveryPort, kDiscovery);
  ASSERT_TRUE(reply.has_value());
  ASSERT_EQ(reply->size(), 128U);
  EXPECT_EQ(std::string(reply->begin(), reply->begin() + 9), "RFIDDISC\x02");
  EXPECT_EQ(std::string(reply->begin() + 14, reply->begin() + 28), "-Kestrin/Wedge");
  EXPECT_EQ(Bytes(reply->begin() + 29, reply->begin() + 35), (Bytes{0x7C, 0x31, 0xA6, 1, 2, 3}));
  EXPECT_EQ(Bytes(reply->begin() + 36, reply->begin() + 40), (Bytes{10, 0, 0, 5}));
  EXPECT_FALSE(AnswerDatagram(wedge, sim::kQueryPort, kQuery).has_value());
}

TEST(EthernetAdapter, OtherMakersAnswerTheQuery) {
  for (const auto& mac : {sim::kBridgeMac, sim::kNewBridgeMac, sim::kOtherBridgeMac}) {
    const sim::AdapterIdentity bridge{mac, {10, 0, 0, 5}};
    const auto reply = AnswerDatagram(bridge, sim::kQueryPort, kQuery);
    ASSERT_TRUE(reply.has_value());
    EXPECT_EQ(Bytes(reply->begin(), reply->begin() + 4), (Bytes{0, 0, 0, 0xF7}));
    EXPECT_TRUE(std::equal(mac.begin(), mac.end(), reply->begin() + 24));
    EXPECT_FALSE(AnswerDatagram(bridge, sim::kDiscoveryPort, kDiscovery).has_value());
  }
}

TEST(EthernetAdapter, OtherDatagramsAreNotAnswered) {
  const sim::AdapterIdentity wedge{};
  EXPECT_FALSE(AnswerDatagram(wedge, sim::kDiscoveryPort, kQuery).has_value());
  EXPECT_FALSE(AnswerDatagram(wedge, sim::kDiscoveryPort, {}).has_value());
  EXPECT_FALSE(AnswerDatagram(wedge, 80, kDiscovery).has_value());
}

TEST(EthernetAdapter, PassesTheSerialLineThrough) {
  EthernetAdapter adapter(Reader::Plain());
  EXPECT_EQ(Talk(adapter, {0xFA, 0x04, 0xED, 0xED, 4}), "04 01 00 31 74 90 00");
  adapter.passesSerial = false;
  EXPECT_EQ(Talk(adapter, {0xFA, 0x04, 0xED, 0xED, 4}), "");
}

TEST(EthernetAdapter, CarriesReportsInTextFrames) {
  EthernetAdapter adapter(Reader::Plain());
  EXPECT_EQ(Say(adapter, "#HUSB/FR/001L07:" + std::string("\x8A\0\0\0\0\0\0", 7)), "");
  EXPECT_EQ("#DUSB/FR/001L07:" + std::string("\x7A\x31\x3B\xFA\x01\0\x31\x74\0\0\0", 11),
            Say(adapter, "#Req/FR:"));
  EXPECT_EQ(Say(adapter, "#HUSB/FR/001L08:" + std::string("\x8A\0\0\0\0\0\0\0", 8)), "");
  EXPECT_EQ(Say(adapter, "#Req/FR:").size(), 28U);
}

TEST(EthernetAdapter, RefusedReportIsNotAnswered) {
  EthernetAdapter adapter(Reader::Plain());
  adapter.Device().Unplug();
  EXPECT_EQ(Say(adapter, "#Req/FR:"), "");
}

TEST(EthernetAdapter, WhatIsNoFrameIsTheSerialLines) {
  EthernetAdapter adapter(Reader::Plain());
  EXPECT_EQ(Say(adapter, "#Re#Hx"), "");
  EXPECT_EQ(Say(adapter, "#Req/FR:").size(), 28U);
  EXPECT_EQ(Talk(adapter, {'#', 0xFA, 0x04, 0xED, 0xED, 4}), "04 01 00 31 74 90 00");
}

TEST(EthernetAdapter, SilenceDropsAnUnfinishedFrame) {
  EthernetAdapter adapter(Reader::Plain());
  Say(adapter, "#Req/");
  Talk(adapter, {});
  adapter.Silence();
  EXPECT_EQ(Say(adapter, "FR:"), "");
  EXPECT_EQ(Say(adapter, "#Req/FR:").size(), 28U);
}

TEST(FaultyLine, CutsBehindSoManyBytes) {
  EthernetAdapter adapter(Reader::Plain());
  EXPECT_FALSE(adapter.TakeCut());
  adapter.CutAfter(3);
  EXPECT_EQ(Talk(adapter, {0xFA, 0x04, 0xED, 0xED, 4}), "04 01 00");
  EXPECT_TRUE(adapter.TakeCut());
  EXPECT_FALSE(adapter.TakeCut());
  EXPECT_EQ(Talk(adapter, {0xFA, 0x04, 0xED, 0xED, 4}), "04 01 00 31 74 90 00");
}

TEST(FaultyLine, FloodsTheOtherSide) {
  EthernetAdapter adapter(Reader::Plain());
  adapter.Flood(4);
  EXPECT_EQ(TakeAll(adapter), "ZZZZ");
}

TEST(FaultyLine, LosesAndTurnsBytesInBothDirections) {
  EthernetAdapter adapter(Reader::Plain());
  adapter.faults.RefuseAt(1);
  EXPECT_EQ(Talk(adapter, {0xFA, 0x04, 0xED, 0xED, 4}), "");
  adapter.faults.Restart();
  adapter.Silence();
  adapter.faults.GarbleAt(6);
  EXPECT_EQ(Talk(adapter, {0xFA, 0x04, 0xED, 0xED, 4}), "FB 01 00 31 74 90 00");
}

}  // namespace
}  // namespace tavlyn::test
