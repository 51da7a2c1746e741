// The settings that control a connect: their checks, and what leaves them alone.
#include <gtest/gtest.h>

#include <limits>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

class SettingsTest : public Bench {
 protected:
  static void ExpectComRange(int low, int high) {
    EXPECT_EQ(shared.search.ComSrchLo, low);
    EXPECT_EQ(shared.search.ComSrchHi, high);
  }
  static void ExpectVirtualRange(int high, int low) {
    EXPECT_EQ(shared.search.VComSrchHi, high);
    EXPECT_EQ(shared.search.VComSrchLo, low);
  }
};

TEST_F(SettingsTest, AnyProductMaskIsTaken) {
  for (const std::uint32_t mask : {0U, 1U, 7U, 8U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(SetConnectProduct(mask), 1U);
    EXPECT_EQ(shared.search.ConnectMask, mask);
  }
}

TEST_F(SettingsTest, OnlyTheFourLinkChoicesAreTaken) {
  for (const int link : {0, 1, 2, -1}) {
    EXPECT_EQ(SetDevTypeSrch(static_cast<std::int16_t>(link)), 1U);
    EXPECT_EQ(shared.search.DevTypeSrch, link);
  }
  for (const int link : {3, -2, 32767, -32768}) {
    EXPECT_EQ(SetDevTypeSrch(static_cast<std::int16_t>(link)), 0U);
    EXPECT_EQ(shared.search.DevTypeSrch, -1) << link;
  }
}

TEST_F(SettingsTest, AComRangeIsPutInOrder) {
  EXPECT_EQ(SetComSrchRange(9, 3), 1U);
  ExpectComRange(3, 9);
  EXPECT_EQ(SetComSrchRange(4, 12), 1U);
  ExpectComRange(4, 12);
  EXPECT_EQ(SetComSrchRange(7, 7), 1U);
  ExpectComRange(7, 7);
  EXPECT_EQ(SetComSrchRange(256, 1), 1U);
  ExpectComRange(1, 256);
}

TEST_F(SettingsTest, AComRangeBeyondThePortsChangesNothing) {
  EXPECT_EQ(SetComSrchRange(0, 3), 0U);
  EXPECT_EQ(SetComSrchRange(3, 0), 0U);
  EXPECT_EQ(SetComSrchRange(257, 3), 0U);
  EXPECT_EQ(SetComSrchRange(3, 257), 0U);
  EXPECT_EQ(SetComSrchRange(0, 0), 0U);
  EXPECT_EQ(SetComSrchRange(65535, 65535), 0U);
  ExpectComRange(1, 8);
}

TEST_F(SettingsTest, AVirtualRangeStoresTheHigherPortFirst) {
  EXPECT_EQ(VirtualComSearchRange(3, 9), 1U);
  ExpectVirtualRange(9, 3);
  EXPECT_EQ(VirtualComSearchRange(1, 256), 1U);
  ExpectVirtualRange(256, 1);
}

TEST_F(SettingsTest, TwoZerosSwitchTheVirtualPassOff) {
  EXPECT_EQ(VirtualComSearchRange(0, 0), 1U);
  ExpectVirtualRange(0, 0);
}

TEST_F(SettingsTest, AVirtualRangeMustRise) {
  EXPECT_EQ(VirtualComSearchRange(5, 5), 0U);
  EXPECT_EQ(VirtualComSearchRange(9, 3), 0U);
  EXPECT_EQ(VirtualComSearchRange(0, 5), 0U);
  EXPECT_EQ(VirtualComSearchRange(5, 0), 0U);
  EXPECT_EQ(VirtualComSearchRange(1, 257), 0U);
  EXPECT_EQ(VirtualComSearchRange(300, 400), 0U);
  EXPECT_EQ(VirtualComSearchRange(0xFFFFFFFF, 0xFFFFFFFF), 0U);
  ExpectVirtualRange(1, 256);
}

TEST_F(SettingsTest, OnlyTheLowHalvesOfAVirtualRangeCount) {
  EXPECT_EQ(VirtualComSearchRange(0x10003, 0xFFFF0009), 1U);
  ExpectVirtualRange(9, 3);
  EXPECT_EQ(VirtualComSearchRange(0x20000, 0x10000), 1U);
  ExpectVirtualRange(0, 0);
}

TEST_F(SettingsTest, TheEthernetAddressIsNotChecked) {
  EXPECT_EQ(SetIpPort(10, 0, 255, 7, 10001), 1U);
  EXPECT_EQ(shared.search.SrchIpAddr, (std::array<std::uint8_t, 4>{10, 0, 255, 7}));
  EXPECT_EQ(shared.search.SrchIpPort, 10001);
  EXPECT_EQ(SetIpPort(0, 0, 0, 0, 0), 1U);
  EXPECT_EQ(shared.search.SrchIpPort, 0);
}

TEST_F(SettingsTest, TheUnsupportedValueIsKept) {
  SetUnsupportedProductErrorCode(0xFFFF);
  EXPECT_EQ(GetUnsupportedProductErrorCode(), 0xFFFFU);
}

TEST_F(SettingsTest, TwoCallsDoNothing) {
  EXPECT_EQ(SetComLinux(0), 0U);
  EXPECT_EQ(SetComLinux(std::numeric_limits<std::uint64_t>::max()), 0U);
  std::uint8_t byte = 0x5A;
  EXPECT_EQ(GetRawRepDataI(&byte, 1), 0U);
  EXPECT_EQ(GetRawRepDataI(nullptr, 65535), 0U);
  EXPECT_EQ(byte, 0x5A);
  ExpectTraffic({});
}

TEST_F(SettingsTest, ADisconnectAndAConnectLeaveThemAsTheyWere) {
  SetConnectProduct(9);
  SetDevTypeSrch(0);
  SetComSrchRange(20, 30);
  VirtualComSearchRange(40, 50);
  SetIpPort(1, 2, 3, 4, 5);
  SetUnsupportedProductErrorCode(0x1234);
  const auto expectKept = [&] {
    EXPECT_EQ(shared.search.ConnectMask, 9U);
    EXPECT_EQ(shared.search.DevTypeSrch, 0);
    ExpectComRange(20, 30);
    ExpectVirtualRange(50, 40);
    EXPECT_EQ(shared.search.SrchIpAddr, (std::array<std::uint8_t, 4>{1, 2, 3, 4}));
    EXPECT_EQ(shared.search.SrchIpPort, 5);
    EXPECT_EQ(GetUnsupportedProductErrorCode(), 0x1234U);
  };
  EXPECT_EQ(USBConnect(nullptr), 0U);
  expectKept();
  EXPECT_EQ(USBDisconnect(), 1U);
  expectKept();
  Plug(sim::Reader::Plain());
  EXPECT_EQ(USBConnect(nullptr), 1U);
  expectKept();
  EXPECT_EQ(USBDisconnect(), 1U);
  expectKept();
}

}  // namespace
}  // namespace tavlyn::test
