// Finding sensors, and what a connect does with them.
#include <algorithm>

#include "sonar/product.h"
#include "tests/sonar/sensor.h"

namespace tavlyn::test {
namespace {

class SonarSearch : public Bench {
 protected:
  std::shared_ptr<ScriptedSensor> Sensor() {
    auto sensor = std::make_shared<ScriptedSensor>();
    sensor->replies = FullReplies();
    Plug(sensor);
    return sensor;
  }
  bool Called(const std::string& line) {
    const Lines lines = host.transcript.Lines();
    return std::ranges::find(lines, line) != lines.end();
  }
};

TEST_F(SonarSearch, AConnectFindsAndReadsASensor) {
  Sensor();
  SetConnectProduct(4);
  StartTrace();
  std::uint32_t did = 0;
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_EQ(did, 0x5678U);
  EXPECT_TRUE(Called("walk keyboard"));
  EXPECT_FALSE(Called("walk hid"));
  ExpectTraffic(FullRead());
  ExpectTrace({"USBConnect ENTER", "USBConnect Firmware: CPU0 Application in hex is  0",
               "USBConnect Firmware: CPU1 Application in hex is  0",
               "USBConnect TavlynAPI Library version is 7.9.2", "USBConnect EXIT"});
  const tsDevEntry& entry = DevTable[0];
  EXPECT_EQ(entry.SonarBlock.bOpened, 1U);
  EXPECT_EQ(entry.bFound, 0);
  EXPECT_EQ(entry.VidPidRow, -1);
  EXPECT_EQ(entry.LinkKind, kByReports);
  EXPECT_STREQ(entry.DevName, "device-1");
  EXPECT_EQ(GetProduct(), kSonar);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(GetActDev(), 0);
  char name[511];
  EXPECT_EQ(GetDevName(name), 999U);
  EXPECT_STREQ(GetVidPidVendorName(), "");
}

TEST_F(SonarSearch, EverySensorIsReadAndTheFirstIsActiveInTheEnd) {
  Sensor();
  auto other = Sensor();
  other->replies.back()[0] = 0x99;
  SetConnectProduct(4);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetActDev(), 0);
  ExpectTraffic(Join({FullRead(), FullRead()}));
  EXPECT_EQ(GetLUID(), 0x1234U);
  EXPECT_EQ(GetDevByLUID(0x1299, 0), 1U);
}

TEST_F(SonarSearch, TheLastFoundIsActiveAfterTheSearchAlone) {
  Sensor();
  Sensor();
  shared.SearchErr = 7;
  EXPECT_TRUE(sonar::Search());
  EXPECT_EQ(GetActDev(), 1);
  EXPECT_EQ(shared.SearchErr, 0U);
  EXPECT_EQ(shared.HidFoundCnt, 2);
}

TEST_F(SonarSearch, TheWordOfTheSearchGoesBehindTheFirstOneFound) {
  DevTable[0].LastLibErr = 5;
  DevTable[1].LastLibErr = 5;
  EXPECT_FALSE(sonar::Search());
  EXPECT_EQ(DevTable[1].LastLibErr, 5U);
  Sensor();
  EXPECT_TRUE(sonar::Search());
  EXPECT_EQ(DevTable[0].LastLibErr, 5U);
  EXPECT_EQ(DevTable[1].LastLibErr, 0U);
}

TEST_F(SonarSearch, OnlyTheUsbSearchLooksForSensors) {
  Sensor();
  SetConnectProduct(4);
  for (const std::int16_t link : {std::int16_t{1}, std::int16_t{2}}) {
    SetDevTypeSrch(link);
    EXPECT_EQ(USBConnect(nullptr), 0U);
    EXPECT_EQ(GetDevCnt(), 0);
  }
  EXPECT_FALSE(Called("walk keyboard"));
  for (const std::int16_t link : {std::int16_t{0}, std::int16_t{-1}}) {
    SetDevTypeSrch(link);
    EXPECT_EQ(USBConnect(nullptr), 1U);
  }
}

TEST_F(SonarSearch, ProductId104IsOursWhoeverTheVendor) {
  auto sensor = Sensor();
  sensor->identity.vid = 0x1234;
  sensor->identity.pid = 0x0104;
  SetConnectProduct(4);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetProduct(), kSonar);
}

TEST_F(SonarSearch, AFailedReadFailsTheConnectAndKeepsTheEntry) {
  Sensor()->refusesFrom = 0;
  SetConnectProduct(4);
  std::uint32_t did = 77;
  EXPECT_EQ(USBConnect(&did), 0U);
  EXPECT_EQ(did, 77U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(shared.SearchErr, 0x10000U);
  EXPECT_EQ(GetLastLibErr(), 0x20202U);
}

TEST_F(SonarSearch, TheSerialConnectsPassSensorsBy) {
  Sensor();
  SetConnectProduct(4);
  EXPECT_EQ(ComConnect(nullptr), 0U);
  EXPECT_EQ(ComConnectPort(1, nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 0);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  SetUnsupportedProductErrorCode(0x8001);
  EXPECT_EQ(comConnect(), 0x8001U);
  EXPECT_EQ(ComDisconnect(), 0x8001U);
}

TEST_F(SonarSearch, ADisconnectClosesTheSensor) {
  Sensor();
  SetConnectProduct(4);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(host.hid.OpenHandles(), 1U);
  USBDisconnect();
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
  EXPECT_EQ(GetDevCnt(), 0);
}

TEST_F(SonarSearch, AnArrivalNamesTheFirstEntryAndAddsABlankOne) {
  Sensor();
  SetConnectProduct(4);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  Sensor();
  EXPECT_EQ(ChkAddArrival("device-2"), 1U);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_STREQ(DevTable[0].DevName, "device-2");
  EXPECT_EQ(DevTable[0].DID, 0);
  EXPECT_EQ(DevTable[1].ProductKind, 0U);
  EXPECT_EQ(DevTable[1].hDev, 0U);
  EXPECT_EQ(ChkAddArrival("device-3"), 0U);
}

}  // namespace
}  // namespace tavlyn::test
