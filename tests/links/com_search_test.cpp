// The search over COM numbers: which are visited, how, and what each leaves in the table.
#include "links/com_search.h"

#include <gtest/gtest.h>

#include <set>

#include "api.h"
#include "links/serial_port.h"
#include "reader/product.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

struct Asked {
  std::uint16_t number;
  std::int16_t active;
  bool operator==(const Asked&) const = default;
};

std::set<std::uint16_t>& Answering() {
  static std::set<std::uint16_t> numbers;
  return numbers;
}

std::vector<Asked>& Questions() {
  static std::vector<Asked> asked;
  return asked;
}

bool Asks() {
  const std::uint16_t number = EntryOfActDev().pSerialPort->PortNum();
  Questions().push_back({number, shared.ActDev});
  return Answering().contains(number);
}

// As for card readers; the test says which of them answer.
bool Search() {
  ComSearch search = reader::PortSearch();
  search.probe.answers = Asks;
  return SearchComs(search);
}

class ComSearchTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    Answering().clear();
    Questions().clear();
    ForgetTraffic();
  }
  void Present(std::initializer_list<std::uint16_t> numbers) {
    for (const std::uint16_t number : numbers) host.ports.present[number] = nullptr;
  }
  void ExpectCalls(const Lines& expected, int line = __builtin_LINE()) {
    EXPECT_EQ(Difference(expected, host.transcript.Lines()), "") << "from line " << line;
    ForgetTraffic();
  }
};

TEST_F(ComSearchTest, VisitsTheRangeUpwardsAndGoesOnBehindAFind) {
  Present({3, 5, 7});
  Answering() = {3, 7};
  SetComSrchRange(7, 2);
  EXPECT_TRUE(Search());
  ExpectCalls({"open COM2 refused", "open COM3", "open COM4 refused", "open COM5", "close COM5",
               "open COM6 refused", "open COM7"});
  EXPECT_EQ(Questions(), (std::vector<Asked>{{3, 0}, {5, 1}, {7, 1}}));
  EXPECT_EQ(shared.DevCnt, 2);
}

TEST_F(ComSearchTest, FillsTheEntryOfEachFind) {
  Present({3, 8});
  Answering() = {3, 8};
  DevTable[0].ProductKind = 4;
  EXPECT_TRUE(Search());
  for (const std::size_t at : {0U, 1U}) {
    const tsDevEntry& entry = DevTable[at];
    EXPECT_EQ(entry.bFound, 1);
    EXPECT_EQ(entry.ProductKind, kReader);
    EXPECT_EQ(entry.LinkKind, kBySerialPort);
    EXPECT_TRUE(entry.pSerialPort->IsOpen());
    EXPECT_EQ(entry.pSerialPort->PortNum(), at == 0 ? 3 : 8);
  }
  EXPECT_STREQ(DevTable[0].DevName, "COM3:");
  EXPECT_STREQ(DevTable[1].DevName, "COM8:");
  EXPECT_EQ(shared.ActDev, 1) << "the index tested last";
}

TEST_F(ComSearchTest, TheActiveIndexIsThatOfTheLastTestEvenBeyondTheTable) {
  Present({2, 4});
  Answering() = {2};
  EXPECT_TRUE(Search());
  EXPECT_EQ(shared.DevCnt, 1);
  EXPECT_EQ(shared.ActDev, 1);
}

TEST_F(ComSearchTest, WithNoPortToTestTheActiveIndexIsZero) {
  shared.ActDev = 4;
  shared.DevCnt = 5;
  EXPECT_FALSE(Search());
  EXPECT_EQ(shared.ActDev, 0);
  EXPECT_EQ(shared.DevCnt, 0);
}

TEST_F(ComSearchTest, OpensWithTheDefaultSpeedAndTheNormalTimeouts) {
  Present({3});
  SetBaudRate(19200);
  EXPECT_FALSE(Search());
  const auto& opened = host.ports.opened.at(0);
  EXPECT_EQ(opened.line.baud, 19200U);
  EXPECT_EQ(opened.line.parity, 0);
  EXPECT_EQ(opened.line.stopBits, 0);
  EXPECT_EQ(opened.timeouts.readInterval, 750U);
  EXPECT_EQ(opened.timeouts.readMultiplier, 3U);
  EXPECT_EQ(opened.timeouts.readConstant, 500U);
  EXPECT_EQ(opened.timeouts.writeMultiplier, 50U);
  EXPECT_EQ(opened.timeouts.writeConstant, 500U);
}

TEST_F(ComSearchTest, AFailedOpenLeavesTheObjectForTheNextCandidate) {
  EXPECT_FALSE(Search());
  SerialPort* kept = DevTable[0].pSerialPort;
  ASSERT_NE(kept, nullptr);
  EXPECT_EQ(kept->PortNum(), 8) << "one object went through all of them";
  EXPECT_EQ(DevTable[0].LinkKind, kBySerialPort);
  EXPECT_TRUE(Questions().empty());
  Present({6});
  Answering() = {6};
  EXPECT_TRUE(Search());
  EXPECT_EQ(DevTable[0].pSerialPort, kept) << "and the next search uses it too";
  EXPECT_NE(DevTable[1].pSerialPort, nullptr);
}

TEST_F(ComSearchTest, ASilentPortIsClosedAndItsObjectGone) {
  Present({8});
  EXPECT_FALSE(Search());
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
  EXPECT_EQ(DevTable[0].bFound, 0);
  EXPECT_EQ(DevTable[0].ProductKind, 0U);
  EXPECT_TRUE(host.ports.inUse.empty());
}

TEST_F(ComSearchTest, APortHeldByTheOldTableIsClosedAndFoundAgain) {
  Present({3});
  Answering() = {3};
  SetComSrchRange(3, 3);
  EXPECT_TRUE(Search());
  ForgetTraffic();
  EXPECT_TRUE(Search());
  ExpectCalls({"close COM3", "open COM3"});
  EXPECT_EQ(shared.DevCnt, 1);
}

TEST_F(ComSearchTest, AVirtualPortOutsideTheRangeIsNotVisited) {
  Present({12});
  host.ports.virtualNumbers = {12, 256};
  shared.search.VirtualComFlags[9] = 1;
  EXPECT_FALSE(Search());
  EXPECT_TRUE(host.ports.opened.empty());
  EXPECT_EQ(host.ports.scans, 1);
  EXPECT_EQ(shared.search.VirtualComFlags[12], 1);
  EXPECT_EQ(shared.search.VirtualComFlags[256], 1);
  EXPECT_EQ(shared.search.VirtualComFlags[9], 0) << "each scan starts anew";
}

TEST_F(ComSearchTest, TheScanRunsOnlyWithBothEndsSet) {
  EXPECT_EQ(VirtualComSearchRange(0, 0), 1U);
  Search();
  EXPECT_EQ(host.ports.scans, 0);
  EXPECT_EQ(VirtualComSearchRange(200, 256), 1U);
  host.ports.virtualNumbers = {5};
  Search();
  EXPECT_EQ(host.ports.scans, 1);
  EXPECT_EQ(shared.search.VirtualComFlags[5], 1) << "the two ends are no range for the scan";
}

TEST_F(ComSearchTest, TheSettersTakeWhatTheySay) {
  EXPECT_EQ(SetComSrchRange(8, 3), 1U);
  EXPECT_EQ(shared.search.ComSrchLo, 3);
  EXPECT_EQ(shared.search.ComSrchHi, 8);
  for (const auto& [a, b] : {std::pair<std::uint16_t, std::uint16_t>{0, 5}, {5, 257}, {5, 0}, {257, 5}}) {
    EXPECT_EQ(SetComSrchRange(a, b), 0U) << a << ' ' << b;
    EXPECT_EQ(shared.search.ComSrchLo, 3);
    EXPECT_EQ(shared.search.ComSrchHi, 8);
  }
  for (const auto& [low, high] :
       {std::pair{10U, 10U}, {20U, 10U}, {0U, 7U}, {7U, 0U}, {0U, 0x10000U + 7U}, {1U, 257U}}) {
    EXPECT_EQ(VirtualComSearchRange(low, high), 0U) << low << ' ' << high;
    EXPECT_EQ(shared.search.VComSrchLo, 256);
    EXPECT_EQ(shared.search.VComSrchHi, 1);
  }
  EXPECT_EQ(VirtualComSearchRange(1, 256), 1U);
  EXPECT_EQ(shared.search.VComSrchLo, 1);
  EXPECT_EQ(shared.search.VComSrchHi, 256);
}

TEST_F(ComSearchTest, TheHighestPortIs256) {
  Present({256});
  Answering() = {256};
  SetComSrchRange(255, 256);
  EXPECT_TRUE(Search());
  ExpectCalls({"open COM255 refused", "open COM256"});
  EXPECT_STREQ(DevTable[0].DevName, "COM256:");
}

TEST_F(ComSearchTest, AFullTableTakesNoMore) {
  SetComSrchRange(1, 256);
  for (std::uint16_t number = 1; number <= 256; ++number) {
    host.ports.present[number] = nullptr;
    Answering().insert(number);
  }
  EXPECT_TRUE(Search());
  EXPECT_EQ(shared.DevCnt, kTableEntries);
  EXPECT_STREQ(DevTable[126].DevName, "COM127:");
}

TEST_F(ComSearchTest, APortIsInUseWhereverItStandsInTheTable) {
  EXPECT_FALSE(PortInUse(1)) << "an entry without an object has no number";
  std::unique_ptr<SerialPort> held(new (std::nothrow) SerialPort);
  held->SetPortNum(9);
  DevTable[126].pSerialPort = held.get();
  EXPECT_TRUE(PortInUse(9));
  EXPECT_FALSE(PortInUse(8));
  DevTable[126].pSerialPort = nullptr;
}

}  // namespace
}  // namespace tavlyn::test
