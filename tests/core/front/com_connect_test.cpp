// Connecting over serial ports only: what is searched and read, the results, the words and the trace.
#include <gtest/gtest.h>

#include <algorithm>

#include "api.h"
#include "core/state.h"
#include "links/link_socket.h"
#include "links/serial_port.h"
#include "sim/devices/reader_fa.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr std::uint32_t kConnectFailed = 0x10000;

class ComConnectTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    host.ports.clock = &host.clock;
    SetUnsupportedProductErrorCode(kUnsupported);
    ForgetTraffic();
  }
  void TearDown() override {
    Bench::TearDown();
    host.ports.present.clear();
  }
  sim::ReaderFa& Attach(std::uint16_t number, std::shared_ptr<Reader> reader) {
    lines_.push_back(std::make_unique<sim::ReaderFa>(std::move(reader)));
    host.ports.present[number] = lines_.back().get();
    host.ports.onTimeout = [this] {
      for (const auto& line : lines_) line->Silence();
    };
    return *lines_.back();
  }
  std::ptrdiff_t CallsOf(const std::string& line) {
    const Lines lines = host.transcript.Lines();
    return std::count(lines.begin(), lines.end(), line);
  }
  // Answers the ping, but nothing about the configuration.
  static void HideConfiguration(sim::ReaderFa& line) { line.faults.RefuseCommand({0x04, 0x00}); }

  std::uint32_t did = kUntouched;

 private:
  std::vector<std::unique_ptr<sim::ReaderFa>> lines_;
};

TEST_F(ComConnectTest, FindsAndReadsTheReadersOfTheRange) {
  Attach(3, Reader::Plain()).Device().state.did = 0xFFFE;
  Attach(7, Reader::Plain()).Device().state.did = 0x2222;
  EXPECT_EQ(ComConnect(&did), 1U);
  EXPECT_EQ(did, 0xFFFEU) << "of the first, zero-extended";
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(GetDevType(), 1U);
  EXPECT_STREQ(DevTable[0].DevName, "COM3:");
  EXPECT_STREQ(DevTable[1].DevName, "COM7:");
  EXPECT_EQ(DevTable[0].CfgSlot[0].bCfgLoaded, 1U);
  EXPECT_EQ(DevTable[1].CfgSlot[0].bCfgLoaded, 1U);
  EXPECT_EQ(ComConnect(nullptr), 1U) << "the argument may be left out";
}

// Its filters apply to devices without a row too.
TEST_F(ComConnectTest, TheVidPidTableIsLoadedWhenReadersAreSearched) {
  EnterFolder();
  SetConnectProduct(2);
  ComConnect(nullptr);
  EXPECT_EQ(GetVidPidFilterMask(1), 0U);
  SetConnectProduct(1);
  ComConnectPort(9, nullptr);
  EXPECT_EQ(GetVidPidFilterMask(1), 0x8000U);
}

TEST_F(ComConnectTest, LocksOnlyWhileItReadsEachDevice) {
  Attach(3, Reader::Plain());
  Attach(4, Reader::Plain());
  ComConnect(nullptr);
  Lines calls = host.transcript.Lines();
  const auto isLock = [](const std::string& line) { return line.starts_with("mutex"); };
  const auto firstLock = std::find_if(calls.begin(), calls.end(), isLock);
  const auto lastOpen = std::find(calls.begin(), calls.end(), "open COM8 refused");
  EXPECT_LT(lastOpen, firstLock) << "the search runs outside the lock";
  std::erase_if(calls, [&](const std::string& line) { return !isLock(line); });
  EXPECT_EQ(calls, Times(2, {"mutex lock", "mutex unlock"}));
}

TEST_F(ComConnectTest, ReadsNoFirmwareWords) {
  Attach(2, Reader::Plus());
  EXPECT_EQ(ComConnect(nullptr), 1U);
  EXPECT_EQ(DevTable[0].PlusState, kPlusReader);
  for (const auto& row : DevTable[0].FWVersion) EXPECT_EQ(row[0], 0U);
}

TEST_F(ComConnectTest, TheRangeSearchClassifiesOnceMoreThanThePortSearch) {
  Attach(2, Reader::Plus(2));
  EXPECT_EQ(ComConnect(nullptr), 1U);
  EXPECT_EQ(CallsOf("write 09 01 00 00"), 3) << "once before the walk over two configurations";
  USBDisconnect();
  ForgetTraffic();
  EXPECT_EQ(ComConnectPort(2, nullptr), 1U);
  EXPECT_EQ(CallsOf("write 09 01 00 00"), 1) << "with nothing known the walk has one pass";
}

TEST_F(ComConnectTest, TheTraceTellsOfReadsAndOfNoEntryOrExit) {
  Attach(2, Reader::Plain());
  StartTrace();
  EXPECT_EQ(ComConnect(nullptr), 1U);
  ExpectTrace({kReadModel});
}

TEST_F(ComConnectTest, NothingFoundLeavesNoWordAndNoLine) {
  StartTrace();
  shared.SearchErr = 5;
  shared.HidFoundCnt = shared.DevCnt = 3;
  shared.ActDev = 2;
  EXPECT_EQ(ComConnect(&did), 0U);
  EXPECT_EQ(did, kUntouched);
  EXPECT_EQ(shared.SearchErr, 5U);
  EXPECT_EQ(shared.DevCnt, 0);
  EXPECT_EQ(shared.ActDev, 0);
  EXPECT_EQ(shared.HidFoundCnt, 0);
  ExpectTrace({});
}

TEST_F(ComConnectTest, TheActiveEntryIsClassifiedEvenWhenNothingWasFound) {
  EXPECT_EQ(ComConnect(nullptr), 0U);
  EXPECT_EQ(DevTable[0].PlusState, kPlainReader);
  USBDisconnect();
  SetConnectProduct(0);
  DevTable[0].LinkKind = kByReports;
  ForgetTraffic();
  EXPECT_EQ(ComConnect(nullptr), 0U);
  ExpectTraffic(Times(6, {"set 89 01 refused", "sleep 80"}));
  EXPECT_EQ(DevTable[0].PlusState, kPlainReader);
}

TEST_F(ComConnectTest, WithoutTheReaderBitNoPortIsOpened) {
  Attach(2, Reader::Plain());
  for (const std::uint32_t mask : {0U, 4U}) {
    SetConnectProduct(mask);
    EXPECT_EQ(ComConnect(nullptr), 0U);
    EXPECT_EQ(ComConnectPort(2, nullptr), 0U);
  }
  EXPECT_TRUE(host.ports.opened.empty());
}

TEST_F(ComConnectTest, AFailedReadEndsItAndLeavesTheTable) {
  Attach(2, Reader::Plain());
  HideConfiguration(Attach(4, Reader::Plain()));
  Attach(6, Reader::Plain());
  shared.SearchErr = 1;
  StartTrace();
  EXPECT_EQ(ComConnect(&did), 0U);
  EXPECT_EQ(did, kUntouched);
  EXPECT_EQ(shared.SearchErr, kConnectFailed | 1U);
  EXPECT_EQ(GetDevCnt(), 3);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(DevTable[1].LastLibErr, 0x20000U);
  EXPECT_EQ(DevTable[2].CfgSlot[0].bCfgLoaded, 0U);
  const Lines trace = Trace();
  ASSERT_FALSE(trace.empty());
  EXPECT_EQ(trace.back(), "ComConnect ERROR CODE: 65537");
}

TEST_F(ComConnectTest, ASilentPortCostsTwoPings) {
  SetConnectProduct(1);
  host.ports.present[5] = nullptr;
  const std::uint64_t before = host.clock.tick;
  EXPECT_EQ(ComConnect(nullptr), 0U);
  EXPECT_EQ(host.clock.tick - before, 2U * 553);
  const Lines ping = {"flush", "write FA", "sleep 50", "write 04 ED ED 04", "read"};
  ExpectTraffic(
      Join({{"open COM1 refused", "open COM2 refused", "open COM3 refused", "open COM4 refused", "open COM5"},
            Times(2, ping),
            {"open COM6 refused", "open COM7 refused", "open COM8 refused"}}));
}

TEST_F(ComConnectTest, OnePortAloneIsSearchedAndTheRangeStays) {
  Attach(12, Reader::Plain()).Device().state.did = 0x1234;
  SetComSrchRange(2, 5);
  shared.SearchErr = 1;
  EXPECT_EQ(ComConnectPort(12, &did), 1U);
  EXPECT_EQ(did, 0x1234U);
  EXPECT_EQ(host.ports.opened.size(), 1U);
  EXPECT_STREQ(DevTable[0].DevName, "COM12:");
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(shared.search.ComSrchLo, 2);
  EXPECT_EQ(shared.search.ComSrchHi, 5);
  EXPECT_EQ(shared.SearchErr, 1U);
}

TEST_F(ComConnectTest, APortWithoutAReaderIsToldInTheTrace) {
  StartTrace();
  SetComSrchRange(2, 5);
  EXPECT_EQ(ComConnectPort(9, &did), 0U);
  EXPECT_EQ(did, kUntouched);
  EXPECT_EQ(shared.SearchErr, kConnectFailed);
  EXPECT_EQ(shared.search.ComSrchLo, 2);
  EXPECT_EQ(shared.search.ComSrchHi, 5);
  ExpectTrace({"tavlyn_ComConnectPort ERROR CODE: 65536"});
  ExpectTraffic({"open COM9 refused"});
  shared.SearchErr = 0;
  EXPECT_EQ(ComConnectPort(300, nullptr), 0U);
  EXPECT_EQ(shared.SearchErr, kConnectFailed);
  ExpectTraffic({});
}

TEST_F(ComConnectTest, PortZeroLeavesNoWord) {
  StartTrace();
  EXPECT_EQ(ComConnectPort(0, &did), 0U);
  EXPECT_EQ(shared.SearchErr, 0U);
  ExpectTrace({});
  ExpectTraffic({});
}

TEST_F(ComConnectTest, AFilledTableKeepsThePortSearchFromAnything) {
  Attach(2, Reader::Plain());
  Attach(3, Reader::Plain());
  ASSERT_EQ(ComConnect(nullptr), 1U);
  SetActDev(1);
  shared.SearchErr = 0;
  ForgetTraffic();
  EXPECT_EQ(ComConnectPort(2, &did), 0U);
  EXPECT_EQ(did, kUntouched);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetActDev(), 1);
  EXPECT_EQ(shared.SearchErr, 0U);
  EXPECT_EQ(host.transcript.Lines(), Lines{});
}

TEST_F(ComConnectTest, AFailedReadAfterThePortSearchHasItsOwnTag) {
  HideConfiguration(Attach(2, Reader::Plain()));
  StartTrace();
  EXPECT_EQ(ComConnectPort(2, &did), 0U);
  EXPECT_EQ(did, kUntouched);
  EXPECT_EQ(shared.SearchErr, kConnectFailed);
  EXPECT_EQ(GetDevCnt(), 1);
  ASSERT_FALSE(Trace().empty());
  EXPECT_EQ(Trace().back(), "ComConnectPort ERROR CODE: 65536");
}

TEST_F(ComConnectTest, TheLowerCaseSearchNeedsADeviceAndAChange) {
  Attach(2, Reader::Plain());
  EXPECT_EQ(comConnect(), kUnsupported);
  ASSERT_EQ(ComConnect(nullptr), 1U);
  EXPECT_EQ(comConnect(), 0U) << "one reader before, the same one after";
  EXPECT_EQ(GetDevCnt(), 1);
  Attach(4, Reader::Plain());
  StartTrace();
  EXPECT_EQ(comConnect(), 1U);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(DevTable[1].CfgSlot[0].bCfgLoaded, 0U) << "nothing is read";
  ExpectTrace({});
  host.ports.present.clear();
  EXPECT_EQ(comConnect(), 0U) << "a search that found nothing";
  EXPECT_EQ(GetDevCnt(), 0);
}

TEST_F(ComConnectTest, TheLowerCasePortSearchIsADeadEnd) {
  Attach(2, Reader::Plain());
  EXPECT_EQ(comConnectPort(2), kUnsupported);
  ASSERT_EQ(ComConnect(nullptr), 1U);
  ForgetTraffic();
  shared.SearchErr = 0;
  EXPECT_EQ(comConnectPort(2), 0U);
  EXPECT_EQ(shared.SearchErr, 0U);
  EXPECT_EQ(GetDevCnt(), 1);
  ExpectTraffic({});
}

TEST_F(ComConnectTest, OtherProductsHaveNoSerialSearch) {
  shared.DevCnt = 1;
  DevTable[0].ProductKind = kSonar;
  shared.link.TunnelLink = 1;
  EXPECT_EQ(comConnect(), kUnsupported);
  EXPECT_EQ(comConnectPort(2), kUnsupported);
  EXPECT_EQ(ComDisconnect(), kUnsupported);
  EXPECT_EQ(shared.link.TunnelLink, 1);
  shared.link.TunnelLink = 0;
}

TEST_F(ComConnectTest, DisconnectClosesTheLinkAndKeepsTheEntry) {
  EXPECT_EQ(ComDisconnect(), kUnsupported);
  Attach(2, Reader::Plain());
  ASSERT_EQ(ComConnect(nullptr), 1U);
  const SerialPort* port = DevTable[0].pSerialPort;
  ForgetTraffic();
  EXPECT_EQ(ComDisconnect(), 1U);
  EXPECT_EQ(host.transcript.Lines(), Lines{"close COM2"});
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(DevTable[0].pSerialPort, port);
  EXPECT_EQ(ComDisconnect(), 0U) << "closed already";
}

TEST_F(ComConnectTest, DisconnectEndsTheTunnelFirst) {
  shared.DevCnt = 1;
  DevTable[0].ProductKind = kReader;
  shared.link.TunnelLink = 1;
  shared.link.LinkSocket = 7;
  EXPECT_EQ(ComDisconnect(), 0U) << "without an object";
  EXPECT_EQ(shared.link.TunnelLink, 0);
  EXPECT_FALSE(LinkIsOpen());
  Attach(2, Reader::Plain());
  ASSERT_EQ(ComConnect(nullptr), 1U);
  shared.link.LinkSocket = 8;
  shared.link.TunnelLink = 1;
  ForgetTraffic();
  EXPECT_EQ(ComDisconnect(), 1U);
  EXPECT_EQ(host.transcript.Lines(), (Lines{"close socket 8", "close COM2"}));
  shared.link.LinkSocket = 9;
  EXPECT_EQ(ComDisconnect(), 1U) << "the socket, whoever opened it";
  EXPECT_FALSE(LinkIsOpen());
}

TEST_F(ComConnectTest, DisconnectOfAProductWithoutATunnelLeavesTheLinkOpen) {
  shared.DevCnt = 1;
  DevTable[0].ProductKind = kMagstripe;
  shared.link.TunnelLink = 1;
  shared.link.LinkSocket = 7;
  EXPECT_EQ(ComDisconnect(), 0U) << "without an object";
  EXPECT_EQ(shared.link.TunnelLink, 1);
  EXPECT_TRUE(LinkIsOpen());
  shared.link = {};
}

// One fault at each byte of a whole connect in turn.
class ComConnectFaults : public ComConnectTest, public ::testing::WithParamInterface<sim::Fault> {};

TEST_P(ComConnectFaults, EndInBoundedTimeAndTellTheTruth) {
  sim::ReaderFa& line = Attach(2, Reader::Plus(2));
  ASSERT_EQ(ComConnect(nullptr), 1U);
  const int exchanges = line.faults.Exchanges();
  ASSERT_GT(exchanges, 100);
  for (int at = 1; at <= exchanges; ++at) {
    USBDisconnect();
    line.faults.Restart();
    if (GetParam() == sim::Fault::kRefuse) line.faults.RefuseAt(at);
    if (GetParam() == sim::Fault::kGarble) line.faults.GarbleAt(at);
    if (GetParam() == sim::Fault::kVanish) line.faults.VanishAt(at);
    shared.SearchErr = 0;
    did = kUntouched;
    const std::uint64_t before = host.clock.tick;
    const std::uint32_t result = ComConnect(&did);
    EXPECT_LE(host.clock.tick - before, 60'000U) << "byte " << at;
    EXPECT_EQ(result == 1, did != kUntouched) << "byte " << at;
    EXPECT_EQ(shared.SearchErr, result == 0 && GetDevCnt() > 0 ? kConnectFailed : 0U) << "byte " << at;
    EXPECT_LE(GetDevCnt(), 1);
    EXPECT_EQ(GetActDev(), 0);
    ForgetTraffic();
  }
}

std::string NameOf(const ::testing::TestParamInfo<sim::Fault>& info) {
  static constexpr std::array kNames = {"None", "Lost", "Dropped", "Delayed", "Garbled", "Vanished"};
  return kNames.at(static_cast<std::size_t>(info.param));
}

INSTANTIATE_TEST_SUITE_P(Bytes, ComConnectFaults,
                         ::testing::Values(sim::Fault::kRefuse, sim::Fault::kGarble, sim::Fault::kVanish),
                         NameOf);

}  // namespace
}  // namespace tavlyn::test
