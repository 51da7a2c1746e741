// Disconnect: what is closed, what is traced, what stays.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "api.h"
#include "core/state.h"
#include "hid/vidpid_table.h"
#include "links/link_socket.h"
#include "links/serial_port.h"
#include "platform/platform.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

const Lines kOneClosed = {"UsbDriver_Close ENTER", "UsbDriver_Close EXIT",
                          "USBDisconnect Handle closed successfully"};

class DisconnectTest : public Bench {
 protected:
  void ExpectSystemCalls(const Lines& expected) {
    EXPECT_EQ(Difference(expected, host.transcript.Lines()), "");
    ForgetTraffic();
  }
};

TEST_F(DisconnectTest, WithNoDeviceClosesNothing) {
  StartTrace();
  ForgetTraffic();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectTrace({"USBDisconnect ENTER", "USBDisconnect EXIT"});
  ExpectSystemCalls({"mutex lock", "mutex unlock"});
}

TEST_F(DisconnectTest, ClosesEachDeviceOnce) {
  Connected(Reader::Plain());
  USBDisconnect();
  Connected(Reader::Plain());
  StartTrace();
  ForgetTraffic();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectTrace(Join({{"USBDisconnect ENTER"}, kOneClosed, kOneClosed, {"USBDisconnect EXIT"}}));
  ExpectSystemCalls({"mutex lock", "close 4", "close 6", "mutex unlock"});

  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectTrace({"USBDisconnect ENTER", "USBDisconnect EXIT"});
  ExpectSystemCalls({"mutex lock", "mutex unlock"});
}

TEST_F(DisconnectTest, EmptiesTheTable) {
  Connected(Reader::Plus());
  Connected(Reader::Plus());
  SetActDev(1);
  EXPECT_NE(DevTable[0].CardTypeList[0], 0);
  EXPECT_EQ(USBDisconnect(), 1U);
  EXPECT_EQ(GetDevCnt(), 0);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(GetProduct(), 0U);
  EXPECT_EQ(shared.vidPid.VidPidCnt, 0);
  EXPECT_EQ(std::count(DevTable[0].CardTypeList.begin(), DevTable[0].CardTypeList.end(), 0), 1025);
  EXPECT_NE(DevTable[1].CardTypeList[0], 0) << "entry 0 alone is cleared";
  for (const tsDevEntry& entry : DevTable.First(kTableEntries)) {
    EXPECT_EQ(entry.hDev, platform::kNoHandle);
    EXPECT_EQ(entry.ProductKind, 0U);
    EXPECT_EQ(entry.PlusState, 0U);
    EXPECT_EQ(entry.bFound, 0);
    EXPECT_EQ(entry.bReportId1, 0U);
    EXPECT_EQ(entry.bSepFldCapable, 1U);
    EXPECT_EQ(entry.bPartNumberPending, 1U);
  }
}

TEST_F(DisconnectTest, LeavesTheIdentityAndTheWordOfAnEntry) {
  Connected(Reader::Plain());
  DevTable[0].LastLibErr = 0x1000000;
  USBDisconnect();
  EXPECT_EQ(GetDID(), 0x7431U);
  EXPECT_EQ(GetLUID(), 1U);
  EXPECT_EQ(GetSN(), 65535U);
  EXPECT_EQ(DevTable[0].LastLibErr, 0x1000000U);
  EXPECT_NE(shared.vidPid.VidPidTable[0].VID, 0) << "the rows stay, the count does not";
  EXPECT_EQ(shared.vidPid.VidPidCnt, 0);
}

TEST_F(DisconnectTest, ClosesHandlesWhateverTheCountSays) {
  Connected(Reader::Plain());
  DevTable[126].hDev = platform::TheHost().hid.Open("device-1", platform::OpenMode::kShared);
  DevTable[126].bReportId1 = 1;
  shared.DevCnt = 0;
  ASSERT_EQ(host.hid.OpenHandles(), 2U);
  EXPECT_EQ(USBDisconnect(), 1U);
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
  EXPECT_EQ(DevTable[126].bReportId1, 0U);
}

TEST_F(DisconnectTest, AHandleOfZeroCountsAsOpen) {
  DevTable[3].hDev = 0;
  StartTrace();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectTrace(Join({{"USBDisconnect ENTER"}, kOneClosed, {"USBDisconnect EXIT"}}));
  EXPECT_EQ(DevTable[3].hDev, platform::kNoHandle);
}

TEST_F(DisconnectTest, TheSameHandleInTwoEntriesIsClosedForRealOnce) {
  Connected(Reader::Plain());
  DevTable[1].hDev = DevTable[0].hDev;
  StartTrace();
  ForgetTraffic();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectTrace(Join({{"USBDisconnect ENTER"}, kOneClosed, kOneClosed, {"USBDisconnect EXIT"}}));
  ExpectSystemCalls({"mutex lock", "close 2", "close 2 refused", "mutex unlock"});
}

TEST_F(DisconnectTest, SerialPortsAreClosedAndFreed) {
  for (const std::size_t index : {std::size_t{0}, std::size_t{126}}) {
    DevTable[index].pSerialPort =
        new (std::nothrow) SerialPort(std::make_unique<sim::VirtualComPort>(host.transcript));
  }
  StartTrace();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectTrace({"USBDisconnect ENTER", "USBDisconnect EXIT"});
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
  EXPECT_EQ(DevTable[126].pSerialPort, nullptr);
  EXPECT_EQ(USBDisconnect(), 1U);
}

TEST_F(DisconnectTest, TheTunnelIsClosedByTheFirstEntryAtTheLatest) {
  shared.link.TunnelLink = 1;
  shared.link.LinkSocket = 5;
  ForgetTraffic();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectSystemCalls({"mutex lock", "close socket 5", "mutex unlock"});
  EXPECT_EQ(shared.link.TunnelLink, 0);
  EXPECT_EQ(shared.link.LinkSocket, platform::kNoHandle);
}

TEST_F(DisconnectTest, ClosingAHandleClosesTheTunnelFirst) {
  Connected(Reader::Plain());
  shared.link.TunnelLink = 1;
  shared.link.LinkSocket = 5;
  ForgetTraffic();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectSystemCalls({"mutex lock", "close socket 5", "close 2", "mutex unlock"});
  EXPECT_EQ(shared.link.TunnelLink, 0);
}

TEST_F(DisconnectTest, ATunnelThatDoesNotCloseIsTriedForTheHandleAndForTheEntry) {
  Connected(Reader::Plain());
  shared.link.TunnelLink = 1;
  shared.link.LinkSocket = 5;
  host.sockets.closeResult = -1;
  ForgetTraffic();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectSystemCalls(
      {"mutex lock", "close socket 5 refused", "close 2", "close socket 5 refused", "mutex unlock"});
  EXPECT_EQ(shared.link.TunnelLink, 0);
  shared.link.LinkSocket = platform::kNoHandle;
}

TEST_F(DisconnectTest, ASocketThatIsNoTunnelStaysOpen) {
  shared.link.LinkSocket = 5;
  ForgetTraffic();
  EXPECT_EQ(USBDisconnect(), 1U);
  ExpectSystemCalls({"mutex lock", "mutex unlock"});
  EXPECT_EQ(shared.link.LinkSocket, 5U);
  shared.link.LinkSocket = platform::kNoHandle;
}

TEST_F(DisconnectTest, ConnectAndDisconnectAgainAndAgain) {
  Plug(Reader::Plus());
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(host.hid.OpenHandles(), 1U);
    EXPECT_EQ(USBDisconnect(), 1U);
    EXPECT_EQ(host.hid.OpenHandles(), 0U);
  }
}

}  // namespace
}  // namespace tavlyn::test
