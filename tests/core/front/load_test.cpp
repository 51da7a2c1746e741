// What happens once when the library is loaded into a process and once when it is unloaded.
#include "core/front/load.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <span>

#include "api.h"
#include "core/state.h"
#include "hid/vidpid_table.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class LoadTest : public Bench {};

TEST_F(LoadTest, MakesTheLockAndThenLoadsTheHidLibraries) {
  EXPECT_EQ(Difference({"mutex create", "load"}, host.transcript.Lines()), "");
}

TEST_F(LoadTest, UnloadDisconnectsTwiceThenFreesTheLibrariesThenClosesTheLock) {
  ForgetTraffic();
  Reload();
  EXPECT_EQ(Difference({"mutex lock", "mutex unlock", "mutex lock", "mutex unlock", "unload", "mutex close",
                        "mutex create", "load"},
                       host.transcript.Lines()),
            "");
}

TEST_F(LoadTest, UnloadClosesWhatAConnectOpened) {
  Connected(Reader::Plain());
  ASSERT_EQ(host.hid.OpenHandles(), 1U);
  Reload();
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
  EXPECT_EQ(GetDevCnt(), 0);
}

// The process may continue, and keep the memory that the library had.
TEST_F(LoadTest, UnloadLeavesNoKeys) {
  Connected(Reader::Plus(2));
  ASSERT_EQ(SetActConfig(1), 1U);
  const std::array<std::uint8_t, 32> keys{1, 2, 3};
  ASSERT_EQ(SetHashKeyData(keys.data()), 1U);
  SetRawPayload(0x89, 1, 2, 3, 4, 5, 6, 7);
  const tsCfgSlot& slot = DevTable[0].CfgSlot[1];
  ASSERT_EQ(slot.HashKeyData[0][2], 3);
  Unload();
  EXPECT_EQ(slot.HashKeyData, decltype(slot.HashKeyData){});
  EXPECT_EQ(shared.buffers.RawCmd, decltype(shared.buffers.RawCmd){});
  Load();
}

TEST_F(LoadTest, UnloadTracesBothDisconnects) {
  StartTrace();
  Reload();
  ExpectTrace({"USBDisconnect ENTER", "USBDisconnect EXIT", "USBDisconnect ENTER", "USBDisconnect EXIT"});
}

TEST_F(LoadTest, TheLibraryStaysLoadedWithoutTheHidLibraries) {
  Plug(Reader::Plain());
  host.hid.loads = false;
  Reload();
  SetDevTypeSrch(0);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 0);
  EXPECT_EQ(USBDisconnect(), 1U);
}

TEST_F(LoadTest, TheTableIsEmpty) {
  EXPECT_EQ(GetDevCnt(), 0);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(GetProduct(), 0U);
  EXPECT_EQ(GetDevType(), 0U);
  EXPECT_EQ(GetDID(), 0U);
  EXPECT_EQ(GetLUID(), 0U);
  EXPECT_EQ(GetSN(), 0U);
}

void ExpectBlank(const tsDevEntry& entry) {
  EXPECT_EQ(entry.hDev, platform::kNoHandle);
  EXPECT_EQ(entry.bSepFldCapable, 1U);
  EXPECT_EQ(entry.bPartNumberPending, 1U);
  EXPECT_EQ(entry.PlusState, 0U);
  EXPECT_EQ(entry.bFound, 0);
  EXPECT_EQ(entry.LastLibErr, 0U);
  EXPECT_EQ(entry.LinkKind, 0U);
  EXPECT_EQ(entry.ProductKind, 0U);
  EXPECT_STREQ(entry.DevName, "");
  EXPECT_STREQ(entry.PartNumber, "");
  EXPECT_STREQ(entry.FWFilename, "");
  EXPECT_STREQ(entry.FullFWVersion, "");
  EXPECT_EQ(entry.LUID, 0U);
  EXPECT_EQ(entry.DID, 0U);
  EXPECT_EQ(entry.SN, 0U);
  EXPECT_EQ(entry.bLUIDDirty, 0U);
  EXPECT_EQ(entry.pSerialPort, nullptr);
  EXPECT_EQ(entry.MaxConfig, 0U);
  EXPECT_EQ(entry.ActConfig, 0U);
  EXPECT_EQ(entry.LastTxTick, 0U);
  EXPECT_EQ(entry.bReportId1, 0U);
  EXPECT_EQ(std::count(entry.CardTypeList.begin(), entry.CardTypeList.end(), 0), 1025);
}

TEST_F(LoadTest, EveryEntryIsBlankWithNoHandle) {
  static_assert(kTableEntries == 127);
  for (const tsDevEntry& entry : DevTable.First(kTableEntries)) ExpectBlank(entry);
}

TEST_F(LoadTest, EntriesAreWrittenWhenTheyAreReached) {
  EXPECT_EQ(DevTable.Reached().size(), 1U);
  Connected(Reader::Plain());
  // The entry after the first one found gets the error word of the search.
  EXPECT_EQ(DevTable.Reached().size(), 2U);
  USBDisconnect();
  EXPECT_EQ(DevTable.Reached().size(), 2U);
  DevTable[5].LUID = 7;
  EXPECT_EQ(DevTable.Reached().size(), 6U);
  for (const int skipped : {2, 3, 4}) ExpectBlank(DevTable[skipped]);
  Reload();
  EXPECT_EQ(DevTable.Reached().size(), 1U);
  ExpectBlank(DevTable[5]);
}

TEST_F(LoadTest, SlotsZeroToNineCarryTheUnsetMarkAndSlotTenDoesNot) {
  for (const tsDevEntry& entry : DevTable.First(kTableEntries)) {
    ASSERT_EQ(entry.CfgSlot.size(), 11U);
    for (std::size_t slot = 0; slot < 10; ++slot) {
      EXPECT_EQ(entry.CfgSlot[slot].sFldSepData[0], 12) << "slot " << slot;
    }
    EXPECT_EQ(entry.CfgSlot[10].sFldSepData[0], 0);
    EXPECT_EQ(std::memcmp(&entry.SorbaneBlock.Cfg.IdSel, &kIdSelAtLoad, sizeof kIdSelAtLoad), 0);
    for (const tsCfgSlot& slot : entry.CfgSlot) {
      EXPECT_EQ(std::count(slot.sFldSepData.begin() + 1, slot.sFldSepData.end(), 0), 127);
      EXPECT_EQ(slot.bCfgLoaded, 0U);
    }
  }
}

TEST_F(LoadTest, ALaterLoadFindsNothingOfTheEarlierOne) {
  for (tsDevEntry& entry : DevTable.First(kTableEntries)) {
    entry.LastLibErr = entry.LUID = entry.DID = 0x55;
    entry.SN = 65535;
    entry.LinkKind = kBySerialPort;
    entry.LastTxTick = 9;
    entry.MaxConfig = 10;
    entry.ActConfig = 3;
    entry.bLUIDDirty = 1;
    entry.CfgSlot[10].sFldSepData.fill(7);
    entry.CfgSlot[4].bCfgLoaded = 1;
    entry.CardTypeList.fill(3);
    std::fill_n(entry.DevName, sizeof entry.DevName - 1, 'x');
  }
  Reload();
  for (const tsDevEntry& entry : DevTable.First(kTableEntries)) {
    ExpectBlank(entry);
    EXPECT_EQ(entry.CfgSlot[10].sFldSepData[0], 0);
    EXPECT_EQ(entry.CfgSlot[4].bCfgLoaded, 0U);
  }
}

TEST_F(LoadTest, SettingsHaveTheirDefaults) {
  EXPECT_EQ(GetUnsupportedProductErrorCode(), 0U);
  EXPECT_EQ(shared.search.ConnectMask, 0xFFFFFFFFU);
  EXPECT_EQ(shared.search.DevTypeSrch, -1);
  EXPECT_EQ(shared.search.ComSrchLo, 1);
  EXPECT_EQ(shared.search.ComSrchHi, 8);
  EXPECT_EQ(shared.search.SrchIpAddr, (std::array<std::uint8_t, 4>{0, 0, 0, 0}));
  EXPECT_EQ(shared.search.SrchIpPort, 0);
  EXPECT_EQ(shared.SearchErr, 0U);
  EXPECT_EQ(shared.HidFoundCnt, 0);
  EXPECT_EQ(shared.link.TunnelLink, 0);
  EXPECT_EQ(shared.reader.AsciiProtocol, 0);
  EXPECT_EQ(shared.vidPid.VidPidCnt, 0);
}

TEST_F(LoadTest, TheVirtualPortRangeStandsTheOtherWayAboutThanItsSetterStoresIt) {
  EXPECT_EQ(shared.search.VComSrchHi, 1);
  EXPECT_EQ(shared.search.VComSrchLo, 256);
}

TEST_F(LoadTest, AReloadPutsEverySettingBack) {
  SetConnectProduct(4);
  SetDevTypeSrch(2);
  SetComSrchRange(20, 30);
  VirtualComSearchRange(40, 50);
  SetIpPort(1, 2, 3, 4, 5);
  SetUnsupportedProductErrorCode(0x1234);
  Reload();
  EXPECT_EQ(GetUnsupportedProductErrorCode(), 0U);
  EXPECT_EQ(shared.search.ConnectMask, 0xFFFFFFFFU);
  EXPECT_EQ(shared.search.DevTypeSrch, -1);
  EXPECT_EQ(shared.search.ComSrchLo, 1);
  EXPECT_EQ(shared.search.ComSrchHi, 8);
  EXPECT_EQ(shared.search.VComSrchHi, 1);
  EXPECT_EQ(shared.search.VComSrchLo, 256);
  EXPECT_EQ(shared.search.SrchIpAddr, (std::array<std::uint8_t, 4>{0, 0, 0, 0}));
  EXPECT_EQ(shared.search.SrchIpPort, 0);
}

// Whatever the variables contain, a load restores what a process begins with.
TEST_F(LoadTest, ALoadPutsEveryVariableBack) {
  static const Shared first;
  Unload();
  std::ranges::fill(std::as_writable_bytes(std::span(&shared, 1)), std::byte{0x5A});
  Load();
  EXPECT_EQ(shared.trace.LogStream, stdout);
  shared.trace = {};
  EXPECT_TRUE(std::ranges::equal(std::as_bytes(std::span(&shared, 1)), std::as_bytes(std::span(&first, 1))));
}

TEST_F(LoadTest, CallsAfterALoadShowNothingOfThoseBeforeIt) {
  const auto reader = Connected(Reader::Plain());
  reader->state.cardData.fill(1);
  reader->PutCard(LongCard(), 200);
  const auto shown = [] {
    return std::array<std::uint32_t, 4>{GetRawPayload_index(1), getActiveID_byte(1),
                                        getActiveCardData_byte(1), getPartNumberString_char(1)};
  };
  SetRawPayload(0x8A, 0, 0, 0, 0, 0, 0, 0);
  LetTimePass();
  getActiveID32(32);
  getActiveCardData();
  getPartNumberString_char(0);
  for (const std::uint32_t value : shown()) EXPECT_NE(value, 0U);
  Reload();
  Connected(reader);
  for (const std::uint32_t value : shown()) EXPECT_EQ(value, 0U);
}

}  // namespace
}  // namespace tavlyn::test
