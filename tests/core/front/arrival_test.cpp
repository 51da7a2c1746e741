// Devices that are added and removed one at a time while a program runs.
#include "hid/arrival.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr const char* kReaderPath = R"(\\?\hid#vid_7A31&pid_3BFA#arrived)";
constexpr const char* kSonarPath = R"(\\?\HID#Vid_18c8&Pid_2bfa#arrived)";

class Arrival : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    SetUnsupportedProductErrorCode(kUnsupported);
  }

  // Readers "device-1" and so on, the first one active.
  void ConnectReaders(int count) {
    for (int i = 0; i < count; ++i) Plug(Reader::Plain());
    SetDevTypeSrch(0);
    SetConnectProduct(1);
    ASSERT_EQ(USBConnect(nullptr), 1U);
    ForgetTraffic();
    shared.SearchErr = kUntouched;
  }

  void PlugOther(const std::string& path, std::uint16_t vid, std::uint16_t pid) {
    Plug(std::make_shared<sim::InertInterface>(vid, pid), path);
  }

  static std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (int i = 0; i < shared.DevCnt; ++i) names.emplace_back(DevTable[static_cast<std::size_t>(i)].DevName);
    return names;
  }
};

using NameList = std::vector<std::string>;

TEST_F(Arrival, AReaderIsAppendedAsNoProductYet) {
  ConnectReaders(2);
  SetActDev(1);
  Plug(Reader::Plain(), kReaderPath);
  EXPECT_EQ(ChkAddArrival(kReaderPath), 1U);
  EXPECT_EQ(Names(), (NameList{"device-1", "device-2", kReaderPath}));
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(shared.SearchErr, kUntouched);
  ASSERT_EQ(SetActDev(2), 1U);
  EXPECT_EQ(GetProduct(), 0U);
  EXPECT_EQ(GetDevType(), 0U);
  EXPECT_EQ(GetDevName(nullptr), 999U);
  EXPECT_EQ(ResetUserDflts(), kUnsupported);
  EXPECT_EQ(GetActiveID(nullptr, 0), kUnsupported);
  EXPECT_EQ(GetFirmwareVersion(0, 0), 0xFFFF0000U | kUnsupported);
  EXPECT_EQ(ChkAddArrival(kReaderPath), kUnsupported);
  EXPECT_EQ(host.hid.OpenHandles(), 3U);
  ExpectTraffic({});
}

TEST_F(Arrival, ThePathTellsThePairWhereTheSystemDoesNot) {
  ConnectReaders(1);
  host.hid.listsIds = false;
  Plug(Reader::Plain(), kReaderPath);
  Plug(Reader::Plain(), "plain-name");
  EXPECT_EQ(ChkAddArrival("plain-name"), 0U);
  EXPECT_EQ(shared.SearchErr, kUntouched) << "not even opened";
  EXPECT_EQ(ChkAddArrival(kReaderPath), 1U);
}

TEST_F(Arrival, TheSystemTellsThePairWherePathsDoNot) {
  ConnectReaders(1);
  Plug(Reader::Plain(), "/dev/hidraw7");
  PlugOther("/dev/hidraw8", 0x7A31, 0x3BFB);
  EXPECT_EQ(ChkAddArrival("/dev/hidraw8"), 0U);
  EXPECT_EQ(ChkAddArrival("/dev/hidraw9"), 0U);
  EXPECT_EQ(shared.SearchErr, kUntouched);
  EXPECT_EQ(ChkAddArrival("/dev/hidraw7"), 1U);
  EXPECT_EQ(Names(), (NameList{"device-1", "/dev/hidraw7"}));
}

TEST_F(Arrival, AnotherVendorsPathIsPassedOver) {
  ConnectReaders(1);
  for (const char* path : {"", "\\", R"(\\?\HID#Vid_7a31&Pid_3bf)", R"(\\?\HID#Vid_1234&Pid_3bfa#x)",
                           R"(HID#Vid_7a31&Pid_3bfa#x)", R"( \\?\HID#Vid_7a31&Pid_3bfa#x)"}) {
    EXPECT_EQ(ChkAddArrival(path), 0U) << path;
  }
  EXPECT_EQ(ChkAddArrival(nullptr), 0U);
  EXPECT_EQ(shared.SearchErr, kUntouched);
  EXPECT_EQ(GetDevCnt(), 1);
}

TEST_F(Arrival, APathThatDoesNotOpenIsToldInTheSearchWord) {
  ConnectReaders(1);
  EXPECT_EQ(ChkAddArrival(kReaderPath), 0U);
  EXPECT_EQ(shared.SearchErr, 11U);
  Plug(Reader::Plain(), kReaderPath).opens = false;
  shared.SearchErr = kUntouched;
  EXPECT_EQ(ChkAddArrival(kReaderPath), 0U);
  EXPECT_EQ(shared.SearchErr, 11U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(Arrival, APathWithAnotherDeviceBehindItIsClosedAgain) {
  ConnectReaders(1);
  PlugOther(kReaderPath, 0x7A31, 0x1000);
  for (const bool listed : {true, false}) {
    host.hid.listsIds = listed;
    shared.SearchErr = kUntouched;
    EXPECT_EQ(ChkAddArrival(kReaderPath), 0U);
    EXPECT_EQ(shared.SearchErr, 10U);
    EXPECT_EQ(host.hid.OpenHandles(), 1U);
    EXPECT_EQ(GetDevCnt(), 1);
  }
}

TEST_F(Arrival, ThePathMayHave511Characters) {
  ConnectReaders(1);
  std::string path = R"(\\?\HID#Vid_7A31&Pid_3BFA#)";
  path.resize(512, 'x');
  Plug(Reader::Plain(), path);
  EXPECT_EQ(ChkAddArrival(path.c_str()), 0U);
  EXPECT_EQ(shared.SearchErr, kUntouched);
  path.pop_back();
  Plug(Reader::Plain(), path);
  EXPECT_EQ(ChkAddArrival(path.c_str()), 1U);
  EXPECT_EQ(Names().back(), path);
  EXPECT_EQ(ChkDelRemoval((path + 'x').c_str()), 0U);
  EXPECT_EQ(GetDevCnt(), 2) << "nothing was closed";
  EXPECT_EQ(ChkDelRemoval(path.c_str()), 1U);
}

TEST_F(Arrival, AnEmptyTableKnowsNoProductToLookFor) {
  Plug(Reader::Plain(), kReaderPath);
  EXPECT_EQ(ChkAddArrival(kReaderPath), kUnsupported);
  EXPECT_EQ(ChkAddArrival(nullptr), kUnsupported);
  EXPECT_EQ(chkAddArrival_char(255, 0), kUnsupported);
  EXPECT_EQ(ChkDelRemoval(kReaderPath), 0U);
  EXPECT_EQ(ChkDelRemoval(nullptr), 0U);
}

TEST_F(Arrival, AFullTableTakesNoneAndKeepsTheHandle) {
  ConnectReaders(1);
  for (tsDevEntry& entry : DevTable.First(kTableEntries)) entry.hDev = DevTable[0].hDev;
  shared.DevCnt = kTableEntries;
  shared.ActDev = 0;
  Plug(Reader::Plain(), kReaderPath);
  EXPECT_EQ(ChkAddArrival(kReaderPath), 0U);
  EXPECT_EQ(GetDevCnt(), 127);
  EXPECT_EQ(host.hid.OpenHandles(), 2U);
  EXPECT_EQ(shared.SearchErr, kUntouched);
  shared.DevCnt = 128;
  EXPECT_EQ(AddOrRemoveEntry(nullptr, false), 0U);
  EXPECT_EQ(GetDevCnt(), 127);
}

TEST_F(Arrival, TheHundredAndTwentySeventhIsTaken) {
  ConnectReaders(1);
  for (tsDevEntry& entry : DevTable.First(kTableEntries)) entry.hDev = DevTable[0].hDev;
  shared.DevCnt = kTableEntries - 1;
  Plug(Reader::Plain(), kReaderPath);
  EXPECT_EQ(ChkAddArrival(kReaderPath), 1U);
  EXPECT_EQ(GetDevCnt(), 127);
  EXPECT_STREQ(DevTable[126].DevName, kReaderPath);
}

TEST_F(Arrival, AMagstripePathMustLookLikeAReaders) {
  ConnectReaders(1);
  PlugOther("listed", 0x7A31, 0x1000);
  PlugOther(R"(\\?\HID#Vid_7A31&Pid_1000#a)", 0x7A31, 0x1000);
  PlugOther(kReaderPath, 0x7A31, 0x1000);
  Plug(Reader::Plain(), "/dev/hidraw1");
  EXPECT_EQ(kMagstripeProduct.checkArrival("listed"), 0U);
  EXPECT_EQ(kMagstripeProduct.checkArrival(R"(\\?\HID#Vid_7A31&Pid_1000#a)"), 0U);
  EXPECT_EQ(shared.SearchErr, kUntouched);
  EXPECT_EQ(kMagstripeProduct.checkArrival("/dev/hidraw1"), 0U);
  EXPECT_EQ(shared.SearchErr, 10U) << "listed as a reader, and therefore none";
  EXPECT_EQ(kMagstripeProduct.checkArrival(kReaderPath), 1U);
  EXPECT_EQ(Names(), (NameList{"device-1", kReaderPath}));
  EXPECT_EQ(DevTable[1].ProductKind, 0U);
}

TEST_F(Arrival, ASonarSensorTakesEntryZeroAndABlankOneIsAdded) {
  ConnectReaders(2);
  const platform::Handle before = DevTable[0].hDev;
  DevTable[0].LinkKind = 7;
  DevTable[0].DID = 0x1234;
  std::fill_n(DevTable[0].DevName, 511, 'n');  // none of it may remain after the new one
  PlugOther(kSonarPath, 0x18C8, 0x2BFA);
  EXPECT_EQ(kSonarProduct.checkArrival(kReaderPath), 0U);
  EXPECT_EQ(kSonarProduct.checkArrival(kSonarPath), 1U);
  EXPECT_EQ(Names(), (NameList{kSonarPath, "device-2", ""}));
  EXPECT_NE(DevTable[0].hDev, before);
  EXPECT_EQ(DevTable[0].LinkKind, 0U);
  EXPECT_EQ(DevTable[0].DID, 0U);
  EXPECT_EQ(DevTable[0].ProductKind, kReader) << "what it was";
  EXPECT_EQ(DevTable[2].hDev, 0U) << "counts as open";
  EXPECT_EQ(DevTable[2].ProductKind, 0U);
  EXPECT_EQ(ChkDelRemoval(""), 1U) << "the blank entry's name, whatever is closed";
  EXPECT_EQ(Names(), (NameList{"device-2", ""}));
  EXPECT_EQ(ChkDelRemoval(""), 1U);
  EXPECT_EQ(ChkDelRemoval(""), 1U) << "closing the blank entry touches nothing";
  EXPECT_EQ(GetDevCnt(), 0);
}

TEST_F(Arrival, TheActiveProductTellsWhatIsLookedFor) {
  ConnectReaders(1);
  Plug(Reader::Plain(), kReaderPath);
  PlugOther(kSonarPath, 0x18C8, 0x2BFA);
  DevTable[0].ProductKind = kMagstripe;
  EXPECT_EQ(ChkAddArrival(kSonarPath), 0U);
  EXPECT_EQ(shared.SearchErr, kUntouched);
  EXPECT_EQ(ChkAddArrival(kReaderPath), 0U);
  EXPECT_EQ(shared.SearchErr, 10U) << "the path of a reader, and a reader behind it";
  DevTable[0].ProductKind = kSonar;
  shared.SearchErr = kUntouched;
  EXPECT_EQ(ChkAddArrival(kReaderPath), 0U);
  EXPECT_EQ(shared.SearchErr, kUntouched);
  EXPECT_EQ(ChkAddArrival(kSonarPath), 1U);
  EXPECT_EQ(Names(), (NameList{kSonarPath, ""}));
  for (const std::uint32_t kind : {0U, 3U, 5U}) {
    DevTable[0].ProductKind = kind;
    EXPECT_EQ(ChkAddArrival(kReaderPath), kUnsupported) << kind;
    EXPECT_EQ(ChkAddArrival(nullptr), kUnsupported) << kind;
  }
  EXPECT_EQ(GetDevCnt(), 2);
}

TEST_F(Arrival, TakesNoLock) {
  ConnectReaders(2);
  Plug(Reader::Plain(), kReaderPath);
  EXPECT_EQ(ChkAddArrival(kReaderPath), 1U);
  EXPECT_EQ(ChkDelRemoval(kReaderPath), 1U);
  ExpectNoLock();
}

TEST_F(Arrival, RemovalClosesTheFirstOpenDevice) {
  ConnectReaders(3);
  SetActDev(2);
  StartTrace();
  EXPECT_EQ(ChkDelRemoval("DEVICE-3"), 1U);
  ExpectTrace({"UsbDriver_Close ENTER", "UsbDriver_Close EXIT"});
  EXPECT_EQ(Names(), (NameList{"device-2", "device-3"}));
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(host.hid.OpenHandles(), 2U);
  EXPECT_STREQ(DevTable[2].DevName, "device-3") << "stays beyond the table";
  EXPECT_EQ(ChkDelRemoval("device-1"), 0U) << "listed no more";
  EXPECT_EQ(GetDevCnt(), 2);
}

TEST_F(Arrival, AMatchWithNothingOpenStillClosesAGap) {
  ConnectReaders(3);
  for (int i = 0; i < 3; ++i) DevTable[static_cast<std::size_t>(i)].hDev = platform::kNoHandle;
  SetActDev(1);
  EXPECT_EQ(ChkDelRemoval("nobody"), 0U);
  EXPECT_EQ(GetDevCnt(), 3);
  EXPECT_EQ(GetActDev(), 1);
  EXPECT_EQ(ChkDelRemoval("device-2"), 0U);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetActDev(), 0);
}

TEST_F(Arrival, AClearedEntryIsAllZero) {
  ConnectReaders(1);
  EXPECT_EQ(ChkDelRemoval("device-1"), 1U);
  EXPECT_EQ(GetDevCnt(), 0);
  EXPECT_EQ(DevTable[0].hDev, platform::kNoHandle);
  EXPECT_STREQ(DevTable[0].DevName, "");
  EXPECT_EQ(DevTable[0].ProductKind, 0U);
  EXPECT_EQ(DevTable[0].CfgSlot[0].sFldSepData[0], 0);
  EXPECT_EQ(DevTable[0].bSepFldCapable, 0U);
}

TEST_F(Arrival, TheNextConnectFindsTheArrivedDevice) {
  ConnectReaders(1);
  Plug(Reader::Plain(), kReaderPath);
  ASSERT_EQ(ChkAddArrival(kReaderPath), 1U);
  USBDisconnect();
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
  ASSERT_EQ(USBConnect(nullptr), 1U);
  SetActDev(1);
  EXPECT_EQ(GetProduct(), 1U);
}

class ArrivalChars : public Arrival {
 protected:
  using Collector = std::uint32_t (*)(std::int16_t, std::uint8_t);
  static void Spell(Collector collect, std::string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
      EXPECT_EQ(collect(static_cast<std::int16_t>(at), static_cast<std::uint8_t>(text[at])), 1U);
    }
  }
};

TEST_F(ArrivalChars, PathsComeCharacterByCharacter) {
  ConnectReaders(1);
  Plug(Reader::Plain(), kReaderPath);
  Spell(chkDelRemoval_char, "nobody");
  Spell(chkAddArrival_char, kReaderPath);
  EXPECT_EQ(chkDelRemoval_char(255, 'x'), 0U) << "a path of its own";
  EXPECT_EQ(chkAddArrival_char(255, 'x'), 1U);
  EXPECT_EQ(Names(), (NameList{"device-1", kReaderPath}));
  Spell(chkDelRemoval_char, kReaderPath);
  EXPECT_EQ(chkDelRemoval_char(255, 0), 1U);
  EXPECT_EQ(Names(), NameList{kReaderPath});
}

TEST_F(ArrivalChars, IndexZeroClearsWhatWasCollected) {
  ConnectReaders(1);
  Spell(chkDelRemoval_char, "device-1 and more");
  Spell(chkDelRemoval_char, "device-1");
  EXPECT_EQ(chkDelRemoval_char(255, 0), 1U);
}

TEST_F(ArrivalChars, OtherIndexesDoNothing) {
  for (const int index : {-32768, -1, 256, 257, 32767}) {
    EXPECT_EQ(chkAddArrival_char(static_cast<std::int16_t>(index), 'a'), 0U) << index;
    EXPECT_EQ(chkDelRemoval_char(static_cast<std::int16_t>(index), 'a'), 0U) << index;
  }
  EXPECT_EQ(chkAddArrival_char(254, 'a'), 1U);
  EXPECT_EQ(chkDelRemoval_char(254, 'a'), 1U);
}

}  // namespace
}  // namespace tavlyn::test
