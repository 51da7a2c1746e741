// What a connect searches, and what it reports when it finds nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "api.h"
#include "core/state.h"
#include "hid/vidpid_table.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::InertInterface;
using sim::Reader;

class ConnectSearchTest : public Bench {
 protected:
  std::ptrdiff_t CallsOf(const std::string& line) {
    const Lines lines = host.transcript.Lines();
    return std::count(lines.begin(), lines.end(), line);
  }
};

TEST_F(ConnectSearchTest, WithNoProductChosenTheTableIsClearedAndNoDeviceTouched) {
  auto reader = Connected(Reader::Plain());
  const int before = reader->faults.Exchanges();
  SetConnectProduct(0);
  StartTrace();
  std::uint32_t did = kUntouched;
  ForgetTraffic();
  EXPECT_EQ(USBConnect(&did), 0U);
  EXPECT_EQ(host.transcript.Lines(), (Lines{"mutex lock", "mutex unlock"}));
  ExpectTrace({"USBConnect ENTER", "USBConnect EXIT"});
  EXPECT_EQ(did, kUntouched);
  EXPECT_EQ(reader->faults.Exchanges(), before);
  EXPECT_EQ(GetDevCnt(), 0);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(shared.vidPid.VidPidCnt, 0);
  EXPECT_EQ(shared.HidFoundCnt, 0);
}

TEST_F(ConnectSearchTest, BitsBeyondTheThreeProductsMeanNothing) {
  Plug(Reader::Plain());
  SetConnectProduct(0xFFFFFFF8);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 0);
  SetConnectProduct(0xFFFFFFF9);
  EXPECT_EQ(USBConnect(nullptr), 1U);
}

TEST_F(ConnectSearchTest, WithoutTheReaderBitNoReaderIsSearched) {
  auto reader = Reader::Plain();
  Plug(reader);
  for (const std::uint32_t mask : {2U, 4U, 6U}) {
    SetConnectProduct(mask);
    EXPECT_EQ(USBConnect(nullptr), 0U);
    EXPECT_EQ(GetDevCnt(), 0);
    EXPECT_EQ(GetActDev(), 0);
  }
  EXPECT_EQ(reader->faults.Exchanges(), 0);
  EXPECT_EQ(shared.vidPid.VidPidTable[0].VID, 0) << "the table of identities belongs to the reader search";
}

TEST_F(ConnectSearchTest, AFoundReaderEndsTheSearch) {
  Plug(std::make_shared<InertInterface>(0x7A31, 0x1000));
  Plug(Reader::Plain());
  Plug(std::make_shared<InertInterface>(0x18C8, 0x2BFA));
  SetConnectProduct(7);
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(CallsOf("walk hid"), 1);
  EXPECT_EQ(CallsOf("walk keyboard"), 0);
}

// Empty table, one row per link choice: the lines between "ENTER" and "EXIT".
struct LinkChoice {
  std::int16_t link;
  Lines lines;
};

class NothingFound : public ConnectSearchTest, public ::testing::WithParamInterface<LinkChoice> {};

TEST_P(NothingFound, IsToldByTheSearchesThatRan) {
  StartTrace();
  SetConnectProduct(1);
  SetDevTypeSrch(GetParam().link);
  std::uint32_t did = kUntouched;
  EXPECT_EQ(USBConnect(&did), 0U);
  EXPECT_EQ(did, kUntouched);
  ExpectTrace(Join({{"USBConnect ENTER"}, GetParam().lines, {"USBConnect EXIT"}}));
  const bool serialStageRan = GetParam().link == 1 || GetParam().link == -1;
  EXPECT_EQ(shared.SearchErr, serialStageRan ? 0x10000U : 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Links, NothingFound,
    ::testing::Values(
        LinkChoice{
            0, {"tavlyn_USBConnect USBConnect failed to find any devices", "tavlyn_USBConnect Failed !!"}},
        LinkChoice{1,
                   {"tavlyn_USBConnect ERROR CODE: 65536",
                    "tavlyn_USBConnect CommCnct failed to find any devices", "tavlyn_USBConnect Failed !!"}},
        LinkChoice{2, {}},
        LinkChoice{
            -1,
            {"tavlyn_USBConnect USBConnect failed to find any devices", "tavlyn_USBConnect ERROR CODE: 65536",
             "tavlyn_USBConnect CommCnct failed to find any devices"}}),
    [](const auto& choice) { return "Choice" + std::to_string(choice.index); });

TEST_F(ConnectSearchTest, WithSerialOrEthernetAloneNoUsbReaderIsLookedFor) {
  Plug(Reader::Plain());
  for (const std::int16_t link : {std::int16_t{1}, std::int16_t{2}}) {
    SetConnectProduct(1);
    SetDevTypeSrch(link);
    ForgetTraffic();
    EXPECT_EQ(USBConnect(nullptr), 0U);
    EXPECT_EQ(CallsOf("walk hid"), 0);
  }
}

TEST_F(ConnectSearchTest, AReaderOnUsbKeepsTheSerialSearchFromRunning) {
  Plug(Reader::Plain());
  SetConnectProduct(1);
  SetDevTypeSrch(-1);
  StartTrace();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  ExpectTrace({"USBConnect ENTER", "USBConnect Success !!", kReadModel,
               "USBConnect Firmware: CPU0 Application in hex is  0",
               "USBConnect Firmware: CPU1 Application in hex is  0",
               "USBConnect TavlynAPI Library version is 7.9.2", "USBConnect EXIT"});
  EXPECT_EQ(shared.SearchErr, 0U);
}

}  // namespace
}  // namespace tavlyn::test
