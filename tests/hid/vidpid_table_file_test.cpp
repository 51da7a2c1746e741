// The lines of TavlynVIDPID.txt: what adds a row, and what a value may look like.
#include <gtest/gtest.h>

#include <algorithm>

#include "api.h"
#include "hid/vidpid_table.h"
#include "tests/hid/vidpid_bench.h"

namespace tavlyn::test {
namespace {

class VidPidFileTest : public VidPidBench {
 protected:
  // The rows that a file of that text makes, as "VID:PID mask compare name".
  Lines RowsOf(const std::string& text) {
    LoadFile(text);
    Lines rows;
    for (std::int32_t i = 0; i < shared.vidPid.VidPidCnt; ++i) {
      const tsVidPidRow& row = shared.vidPid.VidPidTable[static_cast<std::size_t>(i)];
      char line[128];
      std::snprintf(line, sizeof line, "%X:%X %X %X %s", row.VID, row.PID, row.filter[1].mask,
                    row.filter[1].compare, row.VendorName);
      rows.emplace_back(line);
    }
    return rows;
  }
};

TEST_F(VidPidFileTest, TheKeysMayStandInAnyOrderAndDistance) {
  EXPECT_EQ(RowsOf("FILTER1COMPARE=\"2\"VENDORNAME=\"A b\"PID=\"5678\"FILTER1MASK=\"1\"VID=\"1234\"\n"
                   "  junk VID=\"AbCd\"   ,, PID=\"ef\"\tVENDORNAME=\"B\" more\n"),
            (Lines{"1234:5678 1 2 A b", "ABCD:EF 0 0 B"}));
}

TEST_F(VidPidFileTest, ALineEndNeedNotBeThere) {
  EXPECT_EQ(RowsOf("VID=\"1\" PID=\"2\" VENDORNAME=\"X\""), Lines{"1:2 0 0 X"});
}

TEST_F(VidPidFileTest, LinesMayEndAsOnAnySystem) {
  EXPECT_EQ(RowsOf("VID=\"1\" PID=\"2\" VENDORNAME=\"X\"\r\nVID=\"3\" PID=\"4\" VENDORNAME=\"Y\"\r\n"),
            (Lines{"1:2 0 0 X", "3:4 0 0 Y"}));
}

TEST_F(VidPidFileTest, LinesWithoutAKeyAreIgnored) {
  EXPECT_EQ(RowsOf("\n\n/ a remark\nhello=\"1\"\nVID=\"1\" PID=\"2\" VENDORNAME=\"X\"\n\n"),
            Lines{"1:2 0 0 X"});
}

TEST_F(VidPidFileTest, ThereAreNoComments) {
  EXPECT_EQ(RowsOf("/ VID=\"1\" PID=\"2\" VENDORNAME=\"X\"\n# VID=\"3\" PID=\"4\" VENDORNAME=\"Y\"\n"),
            (Lines{"1:2 0 0 X", "3:4 0 0 Y"}));
}

TEST_F(VidPidFileTest, KeysAreCaseSensitive) {
  EXPECT_EQ(RowsOf("vid=\"1\" PID=\"2\" VENDORNAME=\"X\"\nVID=\"1\" Pid=\"2\" VENDORNAME=\"X\"\n"), Lines{});
}

TEST_F(VidPidFileTest, ARowNeedsAVendorAProductAndAName) {
  EXPECT_EQ(RowsOf("VID=\"0000\" PID=\"2\" VENDORNAME=\"X\"\n"
                   "VID=\"1\" PID=\"0\" VENDORNAME=\"X\"\n"
                   "VID=\"1\" PID=\"2\" VENDORNAME=\"\"\n"
                   "VID=\"1\" PID=\"2\"\n"
                   "VID=\"1\" VENDORNAME=\"X\"\n"
                   "PID=\"2\" VENDORNAME=\"X\"\n"),
            Lines{});
}

TEST_F(VidPidFileTest, AValueStandsInQuotesRightBehindTheKey) {
  EXPECT_EQ(RowsOf("VID=1234 PID=\"2\" VENDORNAME=\"X\"\n"
                   "VID= \"1234\" PID=\"2\" VENDORNAME=\"X\"\n"
                   "VID =\"1234\" PID=\"2\" VENDORNAME=\"X\"\n"
                   "VID='1234' PID=\"2\" VENDORNAME=\"X\"\n"
                   "PID=\"2\" VENDORNAME=\"X\" VID=\n"
                   "PID=\"2\" VENDORNAME=\"X\" VID=\"\n"),
            Lines{});
}

TEST_F(VidPidFileTest, AValueWithoutAClosingQuoteIsNone) {
  EXPECT_EQ(RowsOf("VID=\"1\" PID=\"2\" VENDORNAME=\"X\n"
                   "VENDORNAME=\"X\" VID=\"1\" PID=\"2\n"),
            Lines{});
}

TEST_F(VidPidFileTest, AKeyIsFoundInsideAnother) {
  // The first "VID=" is the one inside the name, which has no quote after it.
  EXPECT_EQ(RowsOf("VENDORNAME=\"VID=7\" VID=\"1\" PID=\"2\"\n"), Lines{});
  EXPECT_EQ(RowsOf("MYVID=\"1\" XPID=\"2\" THEVENDORNAME=\"X\"\n"), Lines{"1:2 0 0 X"});
}

TEST_F(VidPidFileTest, OnlyTheFirstPlaceOfAKeyCounts) {
  EXPECT_EQ(RowsOf("VID=\"1\" VID=\"9\" PID=\"2\" PID=\"9\" VENDORNAME=\"X\" VENDORNAME=\"Y\"\n"),
            Lines{"1:2 0 0 X"});
}

TEST_F(VidPidFileTest, ValuesHaveAtMostFourHexadecimalDigits) {
  EXPECT_EQ(RowsOf("VID=\"12345\" PID=\"ABCDEF\" VENDORNAME=\"X\" FILTER1MASK=\"FFFF0000\" "
                   "FILTER1COMPARE=\"00008000\"\n"),
            Lines{"1234:ABCD FFFF 0 X"});
}

TEST_F(VidPidFileTest, AValueIsScannedUpToWhatIsNoDigit) {
  EXPECT_EQ(RowsOf("VID=\"12zz\" PID=\" 34 \" VENDORNAME=\"X\" FILTER1MASK=\"0x1F\"\n"),
            Lines{"12:34 1F 0 X"});
}

TEST_F(VidPidFileTest, AValueThatDoesNotParseLeavesItsTarget) {
  LoadFile(
      "DEFAULT1MASK=\"1234\" DEFAULT1COMPARE=\"5678\"\n"
      "DEFAULT1MASK=\"zz\" DEFAULT1COMPARE=\"\"\n");
  EXPECT_EQ(GetVidPidFilterMask(1), 0x1234U);
  EXPECT_EQ(GetVidPidFilterCompare(1), 0x5678U);
  EXPECT_EQ(RowsOf("VID=\"zz\" PID=\"2\" VENDORNAME=\"X\"\n"), Lines{});
}

TEST_F(VidPidFileTest, ANameIsCutTo45Characters) {
  const std::string name = "0123456789012345678901234567890123456789012345678901234567890";
  EXPECT_EQ(RowsOf("VID=\"1\" PID=\"2\" VENDORNAME=\"" + name.substr(0, 60) + "\"\n"),
            Lines{"1:2 0 0 " + name.substr(0, 45)});
  EXPECT_EQ(RowsOf("VID=\"1\" PID=\"2\" VENDORNAME=\"" + name.substr(0, 45) + "\"\n"),
            Lines{"1:2 0 0 " + name.substr(0, 45)});
}

TEST_F(VidPidFileTest, AnOverlongNumberIsCutAndScanned) {
  EXPECT_EQ(RowsOf("VID=\"1" + std::string(90, '9') + "\" PID=\"2\" VENDORNAME=\"X\"\n"),
            Lines{"1999:2 0 0 X"});
  EXPECT_EQ(RowsOf("VID=\"" + std::string(85, ' ') + "7\" PID=\"2\" VENDORNAME=\"X\"\n"), Lines{})
      << "the digit lies behind the 81 characters that are looked at";
}

TEST_F(VidPidFileTest, FiltersOfALineWithoutARowStayInTheFreeRow) {
  EXPECT_EQ(RowsOf("FILTER1MASK=\"11\" FILTER1COMPARE=\"22\"\n"
                   "VID=\"1\" PID=\"2\" VENDORNAME=\"X\"\n"
                   "VID=\"3\" PID=\"4\" VENDORNAME=\"Y\"\n"),
            (Lines{"1:2 11 22 X", "3:4 0 0 Y"}));
  EXPECT_EQ(RowsOf("VID=\"0\" FILTER1MASK=\"11\" FILTER1COMPARE=\"22\"\n"
                   "VID=\"1\" PID=\"2\" VENDORNAME=\"X\" FILTER1MASK=\"33\"\n"),
            Lines{"1:2 33 22 X"});
}

TEST_F(VidPidFileTest, TheFirstFilterIsNeverWritten) {
  LoadFile(
      "VID=\"1\" PID=\"2\" VENDORNAME=\"X\" FILTER0MASK=\"11\" FILTER0COMPARE=\"22\" DEFAULT0MASK=\"33\"\n");
  EXPECT_EQ(shared.vidPid.VidPidTable[0].filter[0].mask, 0U);
  EXPECT_EQ(shared.vidPid.VidPidTable[0].filter[0].compare, 0U);
  EXPECT_EQ(shared.vidPid.DefaultFilter[0].mask, 0U);
}

TEST_F(VidPidFileTest, AnOverlongLineArrivesAsSeveral) {
  const std::string row1 = "VID=\"1\" PID=\"2\" VENDORNAME=\"X\"";
  const std::string row2 = "VID=\"3\" PID=\"4\" VENDORNAME=\"Y\"";
  EXPECT_EQ(RowsOf(row1 + std::string(300, ' ') + row2 + '\n'), (Lines{"1:2 0 0 X", "3:4 0 0 Y"}));
  EXPECT_EQ(RowsOf(row1 + std::string(100, ' ') + row2 + '\n'), Lines{"1:2 0 0 X"}) << "one line";
}

// The library is locked while it reads a file that anyone may have put there.
TEST_F(VidPidFileTest, MoreThanAMillionLinesAreNotReadToTheirEnd) {
  const std::string row = "VID=\"1\" PID=\"2\" VENDORNAME=\"X\"\n";
  EXPECT_EQ(RowsOf(std::string((1U << 20) - 1, '\n') + row), Lines{"1:2 0 0 X"});
  EXPECT_EQ(RowsOf(std::string(1U << 20, '\n') + row), Lines{});
}

TEST_F(VidPidFileTest, GarbageIsHarmless) {
  std::string garbage;
  for (int i = 0; i < 20000; ++i) garbage += static_cast<char>((i * 7919 + i / 3) & 0xFF);
  EXPECT_EQ(RowsOf(garbage), Lines{});
  EXPECT_EQ(RowsOf(std::string(5000, '"')), Lines{});
  EXPECT_EQ(RowsOf(std::string(1, '\0') + "VID=\"1\" PID=\"2\" VENDORNAME=\"X\"\n"), Lines{})
      << "a line ends where its text does";
  EXPECT_EQ(RowsOf("VID=\"1\" PID=\"2\" VENDORNAME=\"X%n%s\"\n"), Lines{"1:2 0 0 X%n%s"});
}

}  // namespace
}  // namespace tavlyn::test
