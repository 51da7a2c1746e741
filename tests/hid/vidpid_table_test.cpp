// The table of USB identities: its file, its built-in lines, and what applications ask of it.
#include "hid/vidpid_table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <limits>

#include "api.h"
#include "core/state.h"
#include "tests/hid/vidpid_bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

// Rows up to the first without a vendor.
int RowCount() {
  int count = 0;
  while (count < kVidPidRows && shared.vidPid.VidPidTable[static_cast<std::size_t>(count)].VID != 0) ++count;
  return count;
}

struct Row {
  unsigned vid;
  unsigned pid;
  std::string name;
  unsigned mask;
  unsigned compare;
  bool operator==(const Row&) const = default;
};

Row RowAt(std::size_t index) {
  const tsVidPidRow& row = shared.vidPid.VidPidTable[index];
  return {row.VID, row.PID, row.VendorName, row.filter[1].mask, row.filter[1].compare};
}

class VidPidTest : public VidPidBench {
 protected:
  std::shared_ptr<Reader> ConnectAs(std::uint16_t vid, std::uint16_t pid) {
    auto reader = Reader::Plain();
    reader->identity.vid = vid;
    reader->identity.pid = pid;
    Plug(reader);
    EXPECT_EQ(USBConnect(nullptr), 1U);
    return reader;
  }
};

TEST_F(VidPidTest, BeforeTheFirstLoadTheTableIsEmptyAndTheDefaultsAreZero) {
  EXPECT_EQ(RowCount(), 0);
  EXPECT_EQ(GetVidPidFilterMask(1), 0U);
  EXPECT_EQ(GetVidPidFilterCompare(1), 0U);
  EXPECT_STREQ(GetVidPidVendorName(), "7A31:3BFA Orvantis");
}

TEST_F(VidPidTest, WithoutAFileTheBuiltInLinesCount) {
  EXPECT_EQ(USBConnect(nullptr), 0U);
  const Row expected[] = {
      {0x171B, 0x2001, "171B:2001 Velmar", 0x4000, 0x4000},
      {0x7A31, 0x3B57, "7A31:3B57 Orvantis Wiegand", 0x2000, 0x2000},
      {0x7A31, 0x3BFB, "7A31:3BFB Orvantis Kelda", 0x8000, 0x8000},
      {0x7A31, 0x3B1E, "7A31:3B1E Orvantis BLE", 0x8000, 0x8000},
      {0x19E5, 0x2021, "19E5:2021 Orvantis Quill", 0x8000, 0x8000},
      {0x7A31, 0x3A01, "7A31:3A01 Orvantis Tamar", 0x8000, 0x8000},
      {0x7A31, 0xCCDA, "7A31:CCDA Orvantis CCID", 0x8000, 0x8000},
      {0x7A31, 0xCCDB, "7A31:CCDB Rennet FIDO CCID", 0x8000, 0x8000},
      {0x7A31, 0x3B4C, "7A31:3B4C Orvantis HID CDC", 0x8000, 0x8000},
  };
  ASSERT_EQ(RowCount(), 9);
  EXPECT_EQ(shared.vidPid.VidPidCnt, 9);
  for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ(RowAt(i), expected[i]) << i;
  EXPECT_EQ(GetVidPidFilterMask(1), 0x8000U);
  EXPECT_EQ(GetVidPidFilterCompare(1), 0x8000U);
}

TEST_F(VidPidTest, EachConnectBuildsTheTableAnew) {
  for (int i = 0; i < 8; ++i) {
    USBConnect(nullptr);
    EXPECT_EQ(shared.vidPid.VidPidCnt, 9);
    EXPECT_EQ(RowCount(), 9);
  }
  USBDisconnect();
  EXPECT_EQ(shared.vidPid.VidPidCnt, 0);
  EXPECT_EQ(RowCount(), 9) << "the rows stay";
}

TEST_F(VidPidTest, AFileReplacesTheBuiltInLines) {
  LoadFile("VID=\"1234\" PID=\"5678\" VENDORNAME=\"X\"\n");
  EXPECT_EQ(RowCount(), 1);
  EXPECT_EQ(RowAt(0), (Row{0x1234, 0x5678, "X", 0, 0}));
  std::filesystem::remove(Folder() / "TavlynVIDPID.txt");
  USBConnect(nullptr);
  EXPECT_EQ(RowCount(), 9) << "gone again";
}

TEST_F(VidPidTest, AnEmptyFileIsAFile) {
  LoadFile("");
  EXPECT_EQ(RowCount(), 0);
  EXPECT_EQ(shared.vidPid.VidPidCnt, 0);
}

TEST_F(VidPidTest, TheLibraryLooksForThatVeryNameInTheCurrentFolder) {
  std::ofstream(Folder() / "tavlynvidpid.txt") << "VID=\"1234\" PID=\"5678\" VENDORNAME=\"X\"\n";
  USBConnect(nullptr);
  // On a case-insensitive disk it is the same name.
  const bool found = std::filesystem::exists(Folder() / "TavlynVIDPID.txt");
  EXPECT_EQ(RowCount(), found ? 1 : 9);
}

TEST_F(VidPidTest, ARowWithoutFiltersHasNoneAndNotTheDefaults) {
  WriteTable("DEFAULT1MASK=\"8000\" DEFAULT1COMPARE=\"4000\"\nVID=\"1234\" PID=\"5678\" VENDORNAME=\"X\"\n");
  ConnectAs(0x1234, 0x5678);
  EXPECT_EQ(GetVidPidFilterMask(1), 0U);
  EXPECT_EQ(GetVidPidFilterCompare(1), 0U);
  EXPECT_STREQ(GetVidPidVendorName(), "X");
  USBDisconnect();
  EXPECT_EQ(GetVidPidFilterMask(1), 0x8000U);
  EXPECT_EQ(GetVidPidFilterCompare(1), 0x4000U);
}

TEST_F(VidPidTest, AFileWithoutDefaultsLeavesThoseOfTheLastLoad) {
  LoadFile("DEFAULT1MASK=\"1111\" DEFAULT1COMPARE=\"2222\"\n");
  EXPECT_EQ(GetVidPidFilterMask(1), 0x1111U);
  LoadFile("VID=\"1234\" PID=\"5678\" VENDORNAME=\"X\" DEFAULT1COMPARE=\"3333\"\n");
  EXPECT_EQ(GetVidPidFilterMask(1), 0x1111U);
  EXPECT_EQ(GetVidPidFilterCompare(1), 0x3333U) << "they may stand on a row's line";
  USBDisconnect();
  EXPECT_EQ(GetVidPidFilterMask(1), 0x1111U);
}

TEST_F(VidPidTest, ALaterDefaultReplacesAnEarlierOne) {
  LoadFile("DEFAULT1MASK=\"1\"\nDEFAULT1MASK=\"2\"\n");
  EXPECT_EQ(GetVidPidFilterMask(1), 2U);
}

TEST_F(VidPidTest, AFileFoundOnceIsFoundFromEveryFolder) {
  LoadFile("VID=\"1234\" PID=\"5678\" VENDORNAME=\"X\"\n");
  std::filesystem::create_directory(Folder() / "elsewhere");
  std::filesystem::current_path(Folder() / "elsewhere");
  USBConnect(nullptr);
  EXPECT_EQ(RowCount(), 1);
  WriteTable("");
  USBConnect(nullptr);
  EXPECT_EQ(RowCount(), 0) << "it is read anew each time";
  std::ofstream(Folder() / "elsewhere" / "TavlynVIDPID.txt") << "VID=\"1\" PID=\"2\" VENDORNAME=\"near\"\n"
                                                             << "VID=\"3\" PID=\"4\" VENDORNAME=\"by\"\n";
  USBConnect(nullptr);
  EXPECT_EQ(RowCount(), 2) << "the one in the current folder comes first";
  std::filesystem::remove(Folder() / "elsewhere" / "TavlynVIDPID.txt");
  std::filesystem::current_path(Folder());
  std::filesystem::remove(Folder() / "TavlynVIDPID.txt");
  USBConnect(nullptr);
  EXPECT_EQ(RowCount(), 9) << "the remembered place is now the last one";
}

TEST_F(VidPidTest, WithoutAFileNoPlaceIsRemembered) {
  USBConnect(nullptr);
  WriteTable("VID=\"1234\" PID=\"5678\" VENDORNAME=\"X\"\n");
  std::filesystem::create_directory(Folder() / "elsewhere");
  std::filesystem::current_path(Folder() / "elsewhere");
  USBConnect(nullptr);
  EXPECT_EQ(RowCount(), 9);
}

TEST_F(VidPidTest, ARememberedPlaceTooLongForItsBufferIsHarmless) {
  host.places.currentFolder = std::string(5000, 'f') + '/';
  LoadFile("VID=\"1234\" PID=\"5678\" VENDORNAME=\"X\"\n");
  EXPECT_EQ(RowCount(), 1);
  std::filesystem::remove(Folder() / "TavlynVIDPID.txt");
  USBConnect(nullptr);
  EXPECT_EQ(RowCount(), 9);
}

TEST_F(VidPidTest, ALoadThatDoesNotResetTheCountLeavesATableThatLooksEmpty) {
  LoadVidPidTable();
  EXPECT_EQ(shared.vidPid.VidPidCnt, 9);
  LoadVidPidTable();
  EXPECT_EQ(shared.vidPid.VidPidCnt, 18);
  EXPECT_EQ(RowCount(), 0);
  EXPECT_EQ(RowAt(9), (Row{0x171B, 0x2001, "171B:2001 Velmar", 0x4000, 0x4000}));
  EXPECT_EQ(RowAt(17).pid, 0x3B4CU);
  for (int i = 0; i < 10; ++i) LoadVidPidTable();
  EXPECT_EQ(shared.vidPid.VidPidCnt, 51);
  USBConnect(nullptr);
  EXPECT_EQ(shared.vidPid.VidPidCnt, 9);
  EXPECT_EQ(RowCount(), 9);
}

TEST_F(VidPidTest, The52ndRowIsDroppedAndSoAreDefaultsBehindTheLast) {
  std::string text = "DEFAULT1MASK=\"1111\"\n";
  for (int i = 1; i <= 52; ++i) {
    text += "VID=\"" + std::to_string(1000 + i) + "\" PID=\"1\" VENDORNAME=\"" + std::to_string(i) + "\"\n";
    if (i == 50) text += "DEFAULT1MASK=\"2222\"\n";
    if (i == 51) text += "DEFAULT1MASK=\"3333\" DEFAULT1COMPARE=\"3333\"\n";
  }
  LoadFile(text);
  EXPECT_EQ(shared.vidPid.VidPidCnt, 51);
  EXPECT_EQ(RowCount(), 51);
  EXPECT_EQ(RowAt(50).name, "51");
  EXPECT_EQ(GetVidPidFilterMask(1), 0x2222U);
  EXPECT_EQ(GetVidPidFilterCompare(1), 0U);
}

TEST_F(VidPidTest, TheLastRowOfAFullTableServesItsDevice) {
  std::string text;
  for (int i = 1; i <= 51; ++i) {
    text += "VID=\"" + std::to_string(1000 + i) + "\" PID=\"1\" VENDORNAME=\"" + std::to_string(i) +
            "\" FILTER1MASK=\"77\"\n";
  }
  WriteTable(text);
  ConnectAs(0x1051, 1);
  EXPECT_EQ(DevTable[0].VidPidRow, 50);
  EXPECT_STREQ(GetVidPidVendorName(), "51");
  EXPECT_EQ(GetVidPidFilterMask(1), 0x77U);
}

TEST_F(VidPidTest, AFullTableHasNoRowAfterItsLast) {
  std::string text;
  for (int i = 0; i < 51; ++i) text += "VID=\"1234\" PID=\"1\" VENDORNAME=\"X\"\n";
  WriteTable(text);
  auto reader = Reader::Plain();
  reader->identity.vid = 0x1234;
  reader->identity.pid = 2;
  Plug(reader);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  ExpectTraffic({});
}

// What applications ask.

TEST_F(VidPidTest, WithNoDeviceTheMainPairIsNamed) {
  USBConnect(nullptr);
  EXPECT_STREQ(GetVidPidVendorName(), "7A31:3BFA Orvantis");
  EXPECT_EQ(GetVidPidFilterMask(1), 0x8000U);
  EXPECT_EQ(getVidPidVendorName_char(0), '7');
  EXPECT_EQ(getVidPidVendorName_char(17), 's');
  EXPECT_EQ(getVidPidVendorName_char(18), 0);
}

TEST_F(VidPidTest, AReaderOfARowHasItsFiltersAndName) {
  ConnectAs(0x7A31, 0x3B57);
  EXPECT_EQ(GetVidPidFilterMask(1), 0x2000U);
  EXPECT_EQ(GetVidPidFilterCompare(1), 0x2000U);
  EXPECT_STREQ(GetVidPidVendorName(), "7A31:3B57 Orvantis Wiegand");
  EXPECT_EQ(getVidPidVendorName_char(25), 'd');
  EXPECT_EQ(getVidPidVendorName_char(26), 0);
}

TEST_F(VidPidTest, AReaderOfTheMainPairHasTheDefaults) {
  ConnectAs(0x7A31, 0x3BFA);
  EXPECT_EQ(DevTable[0].VidPidRow, -1);
  EXPECT_EQ(GetVidPidFilterMask(1), 0x8000U);
  EXPECT_EQ(GetVidPidFilterCompare(1), 0x8000U);
  EXPECT_STREQ(GetVidPidVendorName(), "7A31:3BFA Orvantis");
}

TEST_F(VidPidTest, AnyOtherFilterNumberGivesZero) {
  for (const bool connected : {false, true}) {
    if (connected) ConnectAs(0x7A31, 0x3B57);
    for (const std::int32_t index :
         {0, 2, -1, 51, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
      EXPECT_EQ(GetVidPidFilterMask(index), 0U) << index;
      EXPECT_EQ(GetVidPidFilterCompare(index), 0U) << index;
    }
  }
}

TEST_F(VidPidTest, AWildIndexIntoTheNameGivesZero) {
  for (const bool connected : {false, true}) {
    if (connected) ConnectAs(0x7A31, 0x3B57);
    for (const int index : {-1, -32768, 48, 100, 32767}) {
      EXPECT_EQ(getVidPidVendorName_char(static_cast<std::int16_t>(index)), 0) << index;
    }
  }
}

TEST_F(VidPidTest, AnotherKindHasTheDefaultsAndNoName) {
  ConnectAs(0x7A31, 0x3B57);
  for (const std::uint32_t kind : {0U, 2U, 4U}) {
    DevTable[0].ProductKind = kind;
    EXPECT_EQ(GetVidPidFilterMask(1), 0x8000U);
    EXPECT_STREQ(GetVidPidVendorName(), "");
    DevTable[0].VidPidRow = -1;
    EXPECT_STREQ(GetVidPidVendorName(), "");
    DevTable[0].VidPidRow = 1;
  }
}

TEST_F(VidPidTest, ARowBeyondTheTableCountsAsNone) {
  ConnectAs(0x7A31, 0x3B57);
  for (const std::int32_t row :
       {51, -2, 127, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
    DevTable[0].VidPidRow = row;
    EXPECT_EQ(GetVidPidFilterMask(1), 0x8000U) << row;
    EXPECT_STREQ(GetVidPidVendorName(), "7A31:3BFA Orvantis") << row;
  }
  DevTable[0].VidPidRow = 50;
  EXPECT_EQ(GetVidPidFilterMask(1), 0U) << "row 50 is there, and empty";
  EXPECT_STREQ(GetVidPidVendorName(), "");
}

TEST_F(VidPidTest, OverSerialEthernetOrATunnelThereIsNoName) {
  ConnectAs(0x7A31, 0x3B57);
  for (const std::uint16_t link : {std::uint16_t{1}, std::uint16_t{2}}) {
    DevTable[0].LinkKind = link;
    EXPECT_STREQ(GetVidPidVendorName(), "");
    EXPECT_EQ(getVidPidVendorName_char(0), 0);
    EXPECT_EQ(GetVidPidFilterMask(1), 0x2000U) << "the filters do not care";
  }
  DevTable[0].LinkKind = 0;
  EXPECT_STREQ(GetVidPidVendorName(), "7A31:3B57 Orvantis Wiegand");
  shared.link.TunnelLink = 1;
  EXPECT_STREQ(GetVidPidVendorName(), "");
  shared.link.TunnelLink = 0;
}

}  // namespace
}  // namespace tavlyn::test
