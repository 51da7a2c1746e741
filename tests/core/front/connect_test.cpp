// Connect: what is searched in which order, what the table contains afterwards, and what the trace says.
#include <gtest/gtest.h>

#include <functional>

#include "api.h"
#include "core/state.h"
#include "hid/vidpid_table.h"
#include "links/link_socket.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::EventKind;
using sim::InertInterface;
using sim::Reader;

const Lines kLibraryVersion = {"USBConnect TavlynAPI Library version is 7.9.2"};

Lines FirmwareLines(const std::string& cpu0, const std::string& cpu1) {
  return {"USBConnect Firmware: CPU0 Application in hex is  " + cpu0,
          "USBConnect Firmware: CPU1 Application in hex is  " + cpu1,
          "USBConnect TavlynAPI Library version is 7.9.2"};
}

const Lines kModelLine = {kReadModel};

class ConnectTest : public Bench {
 protected:
  // What was asked of the system besides the traffic with devices.
  Lines SystemCalls() {
    Lines lines;
    for (const sim::Event& event : host.transcript.Events()) {
      const bool traffic = event.kind == EventKind::kSet || event.kind == EventKind::kGet ||
                           event.kind == EventKind::kSleep || event.kind == EventKind::kDrain;
      if (!traffic) lines.push_back(event.Line());
    }
    return lines;
  }

  void ExpectSystemCalls(const Lines& expected) { EXPECT_EQ(Difference(expected, SystemCalls()), ""); }

  // Readers only, over USB.
  static void SearchUsbReaders() {
    SetConnectProduct(1);
    SetDevTypeSrch(0);
  }
};

TEST_F(ConnectTest, OpensAReaderTwiceAndLocksTwice) {
  Plug(Reader::Plain());
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  ExpectSystemCalls({"mutex lock", "walk hid", "open device-1 -> 1", "attributes 1", "close 1",
                     "open device-1 -> 2", "mutex lock", "mutex unlock", "mutex unlock"});
}

TEST_F(ConnectTest, LocksOnceMoreForEachDevice) {
  Plug(Reader::Plain());
  Plug(Reader::Plain());
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  ExpectSystemCalls({"mutex lock", "walk hid", "open device-1 -> 1", "attributes 1", "close 1",
                     "open device-1 -> 2", "open device-2 -> 3", "attributes 3", "close 3",
                     "open device-2 -> 4", "mutex lock", "mutex unlock", "mutex lock", "mutex unlock",
                     "mutex unlock"});
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetActDev(), 0);
}

TEST_F(ConnectTest, FillsTheEntry) {
  auto reader = Reader::Plain();
  reader->state.did = 0xFFFE;
  reader->state.luid = 0xABCD;
  Plug(reader, "some/path");
  SearchUsbReaders();
  std::uint32_t did = kUntouched;
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_EQ(did, 0x0000FFFEU) << "zero-extended";
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(GetProduct(), 1U);
  EXPECT_EQ(GetDevType(), 0U);
  EXPECT_EQ(GetLUID(), 0xABCDU);
  EXPECT_EQ(GetSN(), 65535U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(DevTable[0].bFound, 1);
  EXPECT_EQ(DevTable[0].VidPidRow, -1);
  EXPECT_EQ(DevTable[0].bReportId1, 0U);
  EXPECT_STREQ(DevTable[0].DevName, "some/path");
  EXPECT_EQ(shared.HidFoundCnt, 1);
}

TEST_F(ConnectTest, TheReportIdReaderIsOpenedForOverlappedUse) {
  Plug(Reader::Kelda());
  ForgetTraffic();
  SearchUsbReaders();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  ExpectSystemCalls({"mutex lock", "walk hid", "open device-1 -> 1", "attributes 1", "usage 1", "close 1",
                     "open overlapped device-1 -> 2", "mutex lock", "mutex unlock", "mutex unlock"});
  EXPECT_EQ(DevTable[0].bReportId1, 1U);
  EXPECT_STREQ(GetVidPidVendorName(), "7A31:3BFB Orvantis Kelda");
}

TEST_F(ConnectTest, TheDidIsThatOfEntryZeroAndMayBeLeftOut) {
  auto first = Reader::Plain();
  auto second = Reader::Plain();
  first->state.did = 0x1111;
  second->state.did = 0x2222;
  Plug(first);
  Plug(second);
  SearchUsbReaders();
  std::uint32_t did = kUntouched;
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_EQ(did, 0x1111U);
  USBDisconnect();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  USBDisconnect();
  EXPECT_EQ(usbConnect(), 1U);
  EXPECT_EQ(GetDID(), 0x1111U);
}

TEST_F(ConnectTest, StartsEveryEntryAnew) {
  DevTable[0].CardTypeList.fill(7);
  DevTable[1].CardTypeList.fill(7);
  for (tsDevEntry& entry : DevTable.First(kTableEntries)) {
    entry.bSepFldCapable = entry.bPartNumberPending = 0;
    entry.bFound = 1;
    entry.PlusState = 1;
    entry.bReportId1 = 1;
    entry.LUID = 5;
    entry.LastLibErr = 6;
  }
  SetConnectProduct(0);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  for (const tsDevEntry& entry : DevTable.First(kTableEntries)) {
    EXPECT_EQ(entry.bSepFldCapable, 1U);
    EXPECT_EQ(entry.bPartNumberPending, 1U);
    EXPECT_EQ(entry.bFound, 0);
    EXPECT_EQ(entry.PlusState, 0U);
    EXPECT_EQ(entry.bReportId1, 0U);
    EXPECT_EQ(entry.LUID, 5U);
    EXPECT_EQ(entry.LastLibErr, 6U);
  }
  EXPECT_EQ(DevTable[0].CardTypeList[0], 0);
  EXPECT_EQ(DevTable[0].CardTypeList[1024], 0);
  EXPECT_EQ(DevTable[1].CardTypeList[0], 7) << "entry 0 alone is cleared";
}

TEST_F(ConnectTest, TheSearchWordGoesIntoTheEntryBehindTheFirstOneAdded) {
  DevTable[1].LastLibErr = DevTable[2].LastLibErr = 77;
  shared.SearchErr = 0x10000;
  Plug(Reader::Plain());
  SearchUsbReaders();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(DevTable[1].LastLibErr, 0U);
  EXPECT_EQ(DevTable[2].LastLibErr, 77U);
  DevTable[1].LastLibErr = DevTable[2].LastLibErr = 77;
  host.hid.Unplug("device-1");
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(DevTable[1].LastLibErr, 77U) << "nothing was added";
}

TEST_F(ConnectTest, TheFirstEntryStartsWithItsConfigurationZero) {
  DevTable[0].ActConfig = 3;
  Connected(Reader::Plain());
  EXPECT_EQ(DevTable[0].ActConfig, 0);
  EXPECT_EQ(DevTable[0].CfgSlot[0].bCfgLoaded, 1U);
  EXPECT_EQ(DevTable[0].CfgSlot[3].bCfgLoaded, 0U);
}

TEST_F(ConnectTest, ALaterEntryKeepsTheConfigurationItHad) {
  DevTable[1].ActConfig = 3;
  Plug(Reader::Plain());
  Connected(Reader::Plain());
  // Before each read it is the previous device's entry that is set to 0.
  EXPECT_EQ(DevTable[1].ActConfig, 3);
  EXPECT_EQ(DevTable[1].CfgSlot[3].bCfgLoaded, 1U);
  EXPECT_EQ(DevTable[1].CfgSlot[0].bCfgLoaded, 0U);
}

TEST_F(ConnectTest, ASecondConnectWithoutADisconnectLosesTheHandles) {
  Connected(Reader::Plain());
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  ExpectSystemCalls({"mutex lock", "walk hid", "open device-1 -> 3", "attributes 3", "close 3",
                     "open device-1 -> 4", "mutex lock", "mutex unlock", "mutex unlock"});
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(DevTable[0].hDev, 4U);
  EXPECT_EQ(host.hid.OpenHandles(), 2U);
  USBDisconnect();
  EXPECT_EQ(host.hid.OpenHandles(), 1U) << "the first one stays open";
}

TEST_F(ConnectTest, AnOldHandleBehindTheNewTableIsClosedByTheDisconnect) {
  Connected(Reader::Plain());
  Connected(Reader::Plain());
  ASSERT_EQ(GetDevCnt(), 2);
  host.hid.Unplug("device-2");
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetDevCnt(), 1);
  const platform::Handle old = DevTable[1].hDev;
  EXPECT_NE(old, platform::kNoHandle);
  USBDisconnect();
  EXPECT_EQ(DevTable[1].hDev, platform::kNoHandle);
}

TEST_F(ConnectTest, AnOpenTunnelIsClosed) {
  shared.link.TunnelLink = 1;
  shared.link.LinkSocket = 5;
  SetConnectProduct(0);
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 0U);
  ExpectSystemCalls({"mutex lock", "close socket 5", "mutex unlock"});
  EXPECT_EQ(shared.link.TunnelLink, 0);
}

TEST_F(ConnectTest, ATunnelThatDoesNotCloseIsForgottenAllTheSame) {
  shared.link.TunnelLink = 1;
  shared.link.LinkSocket = 5;
  host.sockets.closeResult = -1;
  SetConnectProduct(0);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(shared.link.TunnelLink, 0);
  shared.link.LinkSocket = platform::kNoHandle;
}

TEST_F(ConnectTest, HoldsTheLockFromBehindEnterToBeforeExit) {
  static std::vector<std::pair<std::string, int>> seen;
  seen.clear();
  host.places.environment.insert("TAVLYNAPI_LOGGING");
  SetMarkerFunction([](const char* line, std::uint64_t length) {
    const std::string text(line, static_cast<std::size_t>(length));
    seen.emplace_back(text.substr(18, text.size() - 19), sim::VirtualHost::Instance().mutex.Depth());
  });
  Plug(Reader::Plain());
  SearchUsbReaders();
  USBConnect(nullptr);
  USBDisconnect();
  SetMarkerFunction(nullptr);
  const std::vector<std::pair<std::string, int>> expected = {
      {"USBConnect ENTER", 0},
      {"USBConnect Success !!", 1},
      {kModelLine[0], 2},
      {FirmwareLines("0", "0")[0], 1},
      {FirmwareLines("0", "0")[1], 1},
      {kLibraryVersion[0], 1},
      {"USBConnect EXIT", 0},
      {"USBDisconnect ENTER", 0},
      {"UsbDriver_Close ENTER", 1},
      {"UsbDriver_Close EXIT", 1},
      {"USBDisconnect Handle closed successfully", 1},
      {"USBDisconnect EXIT", 0},
  };
  EXPECT_EQ(seen, expected);
}

TEST_F(ConnectTest, TracesEachDevice) {
  Plug(Reader::Plain());
  Plug(Reader::Kelda());
  StartTrace();
  SearchUsbReaders();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  ExpectTrace(Join({{"USBConnect ENTER", "UsbDriver_IsDevOurs Connected Device Vendor ID: 31281",
                     "UsbDriver_IsDevOurs Connected Device Product ID: 15355", "USBConnect Success !!"},
                    kModelLine,
                    FirmwareLines("0", "0"),
                    kModelLine,
                    FirmwareLines("10072005", "20010009"),
                    {"USBConnect EXIT"}}));
}

TEST_F(ConnectTest, ThreeRowsOfFirmwareWordsAreKept) {
  auto reader = Reader::Plus();
  reader->state.firmware = {{{0x11, 0x22, 0, 0x44, 0x55}, {1, 2, 3, 4, 5}, {0xFFFFFFFF, 0, 0, 0, 0}}};
  DevTable[0].FWVersion.fill({9, 9, 9, 9, 9, 9});
  Plug(reader);
  SearchUsbReaders();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(DevTable[0].FWVersion[0], (std::array<std::uint32_t, 6>{0x11, 0x22, 0, 0, 0, 0}))
      << "a row ends at its first 0";
  EXPECT_EQ(DevTable[0].FWVersion[1], (std::array<std::uint32_t, 6>{1, 2, 3, 4, 5, 0}));
  EXPECT_EQ(DevTable[0].FWVersion[2], (std::array<std::uint32_t, 6>{0xFFFFFFFF, 0, 0, 0, 0, 0}));
  EXPECT_EQ(GetFirmwareVersion(2, 0), 0xFFFFFFFFU);
  EXPECT_EQ(GetFirmwareVersion(0, 3), 0U);
}

TEST_F(ConnectTest, APlainReaderHasNoFirmwareWords) {
  DevTable[0].FWVersion.fill({9, 9, 9, 9, 9, 9});
  Connected(Reader::Plain());
  for (const auto& row : DevTable[0].FWVersion) EXPECT_EQ(row, (std::array<std::uint32_t, 6>{}));
}

TEST_F(ConnectTest, AQuillBeepsOnceBeforeItIsClassified) {
  auto quill = Reader::Plain();
  quill->identity.vid = 0x19E5;
  quill->identity.pid = 0x2021;
  Plug(quill);
  SearchUsbReaders();
  ForgetTraffic();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  const Lines traffic = TrafficOf(host.transcript.Events());
  ASSERT_GE(traffic.size(), 3U);
  EXPECT_EQ(
      Difference({"set 8C 03 01", "get", "set 89 01 refused"}, Lines(traffic.begin(), traffic.begin() + 3)),
      "");
  EXPECT_EQ(quill->state.counters.beeps, 1);
  EXPECT_EQ(quill->state.counters.lastBeep, 1);
}

TEST_F(ConnectTest, OnlyTheFirstDeviceIsLookedAtForTheBeep) {
  auto quill = Reader::Plain();
  quill->identity.vid = 0x19E5;
  quill->identity.pid = 0x2021;
  auto plain = Reader::Plain();
  Plug(plain);
  Plug(quill);
  SearchUsbReaders();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(quill->state.counters.beeps, 0);
  EXPECT_EQ(plain->state.counters.beeps, 0);
}

TEST_F(ConnectTest, AQuillThatCannotBeepIsConnectedAllTheSame) {
  auto quill = Reader::Plain();
  quill->identity.vid = 0x19E5;
  quill->identity.pid = 0x2021;
  quill->faults.RefuseCommand({0x8C, 0x03});
  Plug(quill);
  SearchUsbReaders();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

}  // namespace
}  // namespace tavlyn::test
