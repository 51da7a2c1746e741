// Which device is which, and which one is active.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "api.h"
#include "core/state.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr std::uint32_t kNone = 0xFFFFFFFF;

class IdentityTest : public Bench {
 protected:
  // Three readers with the LUIDs 0x10, 0x20, 0x10.
  void ConnectThree() {
    for (const std::uint16_t luid : {std::uint16_t{0x10}, std::uint16_t{0x20}, std::uint16_t{0x10}}) {
      auto reader = Reader::Plain();
      reader->state.luid = luid;
      Plug(reader);
    }
    SetDevTypeSrch(0);
    ASSERT_EQ(USBConnect(nullptr), 1U);
    ASSERT_EQ(GetDevCnt(), 3);
    ForgetTraffic();
  }
};

TEST_F(IdentityTest, ADeviceIsSelectedByItsIndex) {
  ConnectThree();
  for (const std::int16_t index : {std::int16_t{2}, std::int16_t{0}, std::int16_t{1}}) {
    EXPECT_EQ(SetActDev(index), 1U);
    EXPECT_EQ(GetActDev(), index);
  }
  for (const int index : {-32768, -1, 3, 127, 32767}) {
    EXPECT_EQ(SetActDev(static_cast<std::int16_t>(index)), 0U) << index;
    EXPECT_EQ(GetActDev(), 1) << index;
  }
  ExpectTraffic({});
}

TEST_F(IdentityTest, AnEmptyTableSetsTheIndexToZero) {
  shared.ActDev = 5;
  EXPECT_EQ(SetActDev(-1), 0U);
  EXPECT_EQ(GetActDev(), 0);
  shared.ActDev = 5;
  EXPECT_EQ(SetActDev(0), 0U);
  EXPECT_EQ(GetActDev(), 0);
}

TEST_F(IdentityTest, EachCallWorksOnTheSelectedDevice) {
  ConnectThree();
  EXPECT_EQ(GetLUID(), 0x10U);
  SetActDev(1);
  EXPECT_EQ(GetLUID(), 0x20U);
  EXPECT_EQ(SetLUID(0xFFFF), 1U);
  EXPECT_EQ(GetLUID(), 0xFFFFU);
  EXPECT_EQ(DevTable[1].bLUIDDirty, 1U);
  EXPECT_EQ(DevTable[0].bLUIDDirty, 0U);
  ExpectTraffic({});
}

TEST_F(IdentityTest, DevicesAreFoundByTheirLuid) {
  ConnectThree();
  EXPECT_EQ(GetDevByLUID(0x10, 0), 0U);
  EXPECT_EQ(GetDevByLUID(0x10, 1), 2U);
  EXPECT_EQ(GetDevByLUID(0x10, 2), 2U);
  EXPECT_EQ(GetDevByLUID(0x20, 0), 1U);
  EXPECT_EQ(GetDevByLUID(0x20, 2), kNone);
  EXPECT_EQ(GetDevByLUID(0x10, GetDevCnt()), kNone);
  EXPECT_EQ(GetDevByLUID(0x99, 0), kNone);
  EXPECT_EQ(GetDevByLUID(0x10, -1), kNone);
  EXPECT_EQ(GetDevByLUID(0x10, -32768), kNone);
  EXPECT_EQ(GetDevByLUID(0x10, 32767), kNone);
}

TEST_F(IdentityTest, TheNameIsThePath) {
  Plug(Reader::Plain(), "\\\\?\\hid#one");
  SetDevTypeSrch(0);
  ASSERT_EQ(USBConnect(nullptr), 1U);
  std::array<char, 511> name{};
  EXPECT_EQ(GetDevName(name.data()), 999U);
  EXPECT_STREQ(name.data(), "\\\\?\\hid#one");
  name.fill('?');
  EXPECT_EQ(orv_GetDevName(name.data()), 999U);
  EXPECT_STREQ(name.data(), "\\\\?\\hid#one");
  EXPECT_EQ(getDevName_char(0), '\\');
  EXPECT_EQ(getDevName_char(10), 'e');
  EXPECT_EQ(getDevName_char(11), 0);
}

TEST_F(IdentityTest, TheNameTakesAtMost510CharactersAndATerminator) {
  const std::string path = std::string(509, 'a') + "bcdefg";
  Plug(Reader::Plain(), path);
  SetDevTypeSrch(0);
  ASSERT_EQ(USBConnect(nullptr), 1U);
  std::array<char, 512> name{};
  name.fill('?');
  EXPECT_EQ(GetDevName(name.data()), 999U);
  EXPECT_EQ(std::string(name.data()), path.substr(0, 510));
  EXPECT_EQ(name[510], '\0');
  EXPECT_EQ(name[511], '?') << "beyond the caller's room";
  EXPECT_EQ(getDevName_char(509), 'b');
  EXPECT_EQ(getDevName_char(510), 'c');
  EXPECT_EQ(getDevName_char(511), 0);
}

TEST_F(IdentityTest, ASerialNameIsCopiedInFull) {
  Connected(Reader::Plain());
  std::memset(DevTable[0].DevName, 'n', 511);
  DevTable[0].LinkKind = 1;
  std::array<char, 512> name{};
  name.fill('?');
  GetDevName(name.data());
  EXPECT_EQ(std::string(name.data(), 511), std::string(511, 'n'));
  EXPECT_EQ(name[511], '?');
}

TEST_F(IdentityTest, NullPointersAndWildIndexesAreHarmless) {
  Connected(Reader::Plain());
  EXPECT_EQ(GetDevName(nullptr), 999U);
  EXPECT_EQ(orv_GetDevName(nullptr), 999U);
  for (const int index : {-32768, -1, 512, 513, 32767}) {
    EXPECT_EQ(getDevName_char(static_cast<std::int16_t>(index)), 0) << index;
    EXPECT_EQ(getPartNumberString_char(static_cast<std::int16_t>(index)), 0) << index;
  }
  EXPECT_EQ(GetLibVersion(nullptr, nullptr, nullptr), 1U);
  EXPECT_EQ(GetFirmwareVersion(65535, 65535), 0U);
  EXPECT_EQ(GetFirmwareVersion(3, 0), 0U);
  EXPECT_EQ(GetFirmwareVersion(0, 5), 0U);
  EXPECT_EQ(SetActConfig(255), 0U);
}

TEST_F(IdentityTest, TheLinkIsToldUnderTwoNames) {
  Connected(Reader::Plain());
  EXPECT_EQ(GetDevType(), 0U);
  DevTable[0].LinkKind = 1;
  EXPECT_EQ(GetDevType(), 1U);
  EXPECT_EQ(orv_GetDevType(), 1U);
  USBDisconnect();
  EXPECT_EQ(GetDevType(), 1U) << "with no device that of entry 0";
}

TEST_F(IdentityTest, TheProductIsThatOfTheActiveDevice) {
  EXPECT_EQ(GetProduct(), 0U);
  DevTable[0].ProductKind = 4;
  EXPECT_EQ(GetProduct(), 0U) << "an empty table";
  Connected(Reader::Plain());
  EXPECT_EQ(GetProduct(), 1U);
  DevTable[0].ProductKind = 4;
  EXPECT_EQ(GetProduct(), 4U);
}

TEST_F(IdentityTest, TheLibraryTellsItsVersion) {
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t build = 0;
  EXPECT_EQ(GetLibVersion(&major, &minor, &build), 1U);
  EXPECT_EQ(major, 7);
  EXPECT_EQ(minor, 9);
  EXPECT_EQ(build, 2);
  minor = 0;
  EXPECT_EQ(GetLibVersion(nullptr, &minor, nullptr), 1U);
  EXPECT_EQ(minor, 9);
  EXPECT_EQ(getLibraryVersion_Major(), 7U);
  EXPECT_EQ(getLibraryVersion_Minor(), 9U);
  EXPECT_EQ(getLibraryVersion_Build(), 2U);
  EXPECT_STREQ(getLibraryVersion_Beta(), "");
}

TEST_F(IdentityTest, TextsOfTheConnectAreHandedOut) {
  EXPECT_EQ(GetFWFilename(), nullptr);
  EXPECT_EQ(GetFullFWVersion(), nullptr);
  EXPECT_EQ(getPartNumberString(), nullptr);
  Connected(Reader::Plain());
  EXPECT_STREQ(GetFWFilename(), "orvantis_80581_16_07_2_build_94.bin");
  EXPECT_STREQ(GetFullFWVersion(), "LNC 16.07.2 build 94");
  EXPECT_STREQ(getPartNumberString(), "RDR-80581AKU");
  ExpectTraffic({});
}

TEST_F(IdentityTest, ThePartNumberComesFromACopyTakenAtIndexZero) {
  Connected(Reader::Plain());
  EXPECT_EQ(getPartNumberString_char(0), 'R');
  USBDisconnect();
  EXPECT_EQ(getPartNumberString_char(1), 'D');
  EXPECT_EQ(getPartNumberString_char(11), 'U');
  EXPECT_EQ(getPartNumberString_char(12), 0);
  EXPECT_EQ(getPartNumberString_char(24), 0);
  EXPECT_EQ(getPartNumberString_char(25), 0);
  EXPECT_EQ(getPartNumberString_char(0), 0) << "no device: the copy is cleared";
  EXPECT_EQ(getPartNumberString_char(1), 0);
}

TEST_F(IdentityTest, BeforeIndexZeroIsAskedForTheCopyIsEmpty) {
  constexpr std::array<std::int16_t, 4> kAfterTheFirst = {1, 3, 11, 24};
  Connected(Reader::Plain());
  for (const std::int16_t index : kAfterTheFirst) EXPECT_EQ(getPartNumberString_char(index), 0) << index;
  EXPECT_EQ(getPartNumberString_char(0), 'R');
  EXPECT_EQ(getPartNumberString_char(3), '-');
}

TEST_F(IdentityTest, APartNumberOf24CharactersIsWhole) {
  auto reader = Reader::Plain();
  reader->state.model = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  Connected(reader);
  EXPECT_STREQ(getPartNumberString(), "ABCDEFGHIJKLMNOPQRSTUVWX");
  EXPECT_EQ(getPartNumberString_char(0), 'A');
  EXPECT_EQ(getPartNumberString_char(23), 'X');
  EXPECT_EQ(getPartNumberString_char(24), 0);
}

TEST_F(IdentityTest, ThePartNumberCopyEndsWhereTheTextDoes) {
  Connected(Reader::Plain());
  std::memcpy(DevTable[0].PartNumber, "AB\0CD", 6);
  EXPECT_EQ(getPartNumberString_char(0), 'A');
  EXPECT_EQ(getPartNumberString_char(1), 'B');
  EXPECT_EQ(getPartNumberString_char(2), 0);
  EXPECT_EQ(getPartNumberString_char(3), 0) << "what stands behind the text is none of it";
  EXPECT_EQ(getPartNumberString_char(4), 0);
  DevTable[0].PartNumber[0] = '\0';
  EXPECT_EQ(getPartNumberString_char(0), 0);
  EXPECT_EQ(getPartNumberString_char(1), 0) << "an empty text is not copied, and the copy before is gone";
}

TEST_F(IdentityTest, TheNumbersAreThoseOfTheSelectedEntry) {
  ConnectThree();
  DevTable[2].DID = 0xFEDC;
  DevTable[2].SN = 0xFEDCBA98;
  DevTable[2].LUID = 0x8001;
  SetActDev(2);
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(GetDID(), 0xFEDCU) << "not sign-extended";
  EXPECT_EQ(GetLUID(), 0x8001U) << "nor this";
  EXPECT_EQ(GetSN(), 0xFEDCBA98U);
  shared.DevCnt = 0;
  EXPECT_EQ(GetDID(), 0xFEDCU) << "the range is not tested";
  EXPECT_EQ(GetSN(), 0xFEDCBA98U);
  EXPECT_EQ(SetLUID(0x1234), 1U);
  shared.DevCnt = 3;
  EXPECT_EQ(DevTable[2].LUID, 0x1234);
  EXPECT_EQ(DevTable[2].bLUIDDirty, 1U);
  EXPECT_EQ(GetLastLibErr(), 5U);
  ExpectTraffic({});
}

TEST_F(IdentityTest, ReaderTextsAreAskedForAtEachCall) {
  Connected(Reader::Plain());
  const char* text = GetSerialNumber();
  EXPECT_STREQ(text, "0400123456");
  ExpectTraffic({"set 8C 04 02", "get", "set 8C 04 02 01", "get", "set 8C 04 02 02", "get"});
  EXPECT_STREQ(GetPlatformType(), "Desktop USB");
  EXPECT_STREQ(GetBuildDate(), "Mar  5 2024 06:07:08");
  EXPECT_STREQ(GetCopyrightInfo(), "(c) Orvantis");
  ForgetTraffic();
  EXPECT_EQ(GetCPUInfo(), text) << "all share one buffer";
  EXPECT_STREQ(text, "M4 at 96 MHz");
  ExpectTraffic({"set 8C 04 08", "get", "set 8C 04 08 01", "get", "set 8C 04 08 02", "get"});
}

TEST_F(IdentityTest, AReaderTextThatDoesNotComeIsEmpty) {
  auto reader = Connected(Reader::Plain());
  reader->faults.RefuseReply({0x8C, 0x04, 0x02, 0x01}, 1);
  EXPECT_STREQ(GetSerialNumber(), "");
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
  ExpectTraffic({"set 8C 04 02", "get", "set 8C 04 02 01", "get refused"});
  EXPECT_STREQ(GetSerialNumber(), "0400123456");
  EXPECT_EQ(GetLastLibErr(), 0x20000U) << "the word is not cleared";
}

TEST_F(IdentityTest, AReaderTextHasAtMost24Characters) {
  auto reader = Reader::Plain();
  reader->state.texts[sim::kSerialNumber] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  Connected(reader);
  EXPECT_STREQ(GetSerialNumber(), "0123456789ABCDEFGHIJKLMN");
}

TEST(HidGuid, IsThatOfKeyboards) {
  constexpr std::array<std::uint8_t, 16> kExpected = {0xC3, 0x96, 0x4B, 0x88, 0xEF, 0x56, 0xD1, 0x11,
                                                      0xBC, 0x8C, 0x00, 0xA0, 0xC9, 0x14, 0x05, 0xDD};
  std::array<std::uint8_t, 17> guid{};
  guid.fill('?');
  EXPECT_EQ(GetHIDGuid(guid.data()), 1U);
  EXPECT_TRUE(std::equal(kExpected.begin(), kExpected.end(), guid.begin()));
  EXPECT_EQ(guid[16], '?');
  EXPECT_EQ(GetHIDGuid(nullptr), 1U);
}

using SerialNames = SerialBench;

TEST_F(SerialNames, AReaderAtCom3IsDevice3) {
  AddReader(Reader::Plain());
  Port().SetPortNum(3);
  std::strcpy(Entry().DevName, "COM3:");
  std::array<char, 511> name{};
  EXPECT_EQ(GetDevName(name.data()), 3U);
  EXPECT_STREQ(name.data(), "COM3:");
  EXPECT_EQ(GetDevName(nullptr), 3U);
  EXPECT_EQ(orv_GetDevName(name.data()), 3U);
}

TEST_F(SerialNames, TheTextsComeOverASerialLinkWithoutAnErrorWord) {
  AddReader(Reader::Plain());
  Entry().LastLibErr = 5;
  EXPECT_STREQ(GetSerialNumber(), "0400123456");
  reader->state.lacks.push_back({0x8C, 0x04});
  EXPECT_STREQ(GetSerialNumber(), "");
  EXPECT_EQ(GetLastLibErr(), 5U);
}

}  // namespace
}  // namespace tavlyn::test
