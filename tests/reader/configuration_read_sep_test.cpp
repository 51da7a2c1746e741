// The separated-field data of a configuration read.
#include <algorithm>
#include <numeric>

#include "api.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

// The reader's area: 5, 1, 2, b4, then counting up; never a zero after the first byte.
std::array<std::uint8_t, 128> Area(std::uint8_t first, std::uint8_t b4) {
  std::array<std::uint8_t, 128> area{};
  std::iota(area.begin(), area.end(), std::uint8_t{0x40});
  area[0] = first;
  area[3] = b4;
  return area;
}

std::array<std::uint8_t, 128> FirstBytes(std::array<std::uint8_t, 128> area, std::size_t count) {
  std::fill(area.begin() + static_cast<std::ptrdiff_t>(count), area.end(), std::uint8_t{0});
  return area;
}

class SepFields : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    reader = Connected(Reader::Plain());
    DevTable[0].CfgSlot[0].sFldSepData.fill(0xEE);
  }
  // Reads, and returns how many pages were asked for.
  std::size_t PagesRead() {
    EXPECT_EQ(ReadCfg(), 1U);
    std::size_t pages = 0;
    for (const std::string& line : TrafficOf(host.transcript.Events())) pages += line.starts_with("set 85 ");
    ForgetTraffic();
    return pages;
  }
  static const std::array<std::uint8_t, 128>& Kept() { return DevTable[0].CfgSlot[0].sFldSepData; }

  std::shared_ptr<Reader> reader;
};

struct PageRow {
  std::uint8_t first;
  std::uint8_t b4;
  std::size_t pages;
  std::size_t bytes;
};

TEST_F(SepFields, TheFirstPageSaysHowManyFollow) {
  for (const PageRow& row : {PageRow{12, 0, 12, 96},
                             {12, 3, 12, 96},
                             {12, 200, 12, 96},
                             {5, 3, 3, 24},
                             {5, 1, 1, 8},
                             {5, 0, 1, 8},
                             {5, 16, 16, 128},
                             {5, 17, 17, 128},
                             {5, 18, 18, 128},
                             {5, 200, 18, 128},
                             {1, 2, 2, 16},
                             {0, 3, 1, 0},
                             {0xFF, 3, 1, 0},
                             {0xFE, 2, 2, 16}}) {
    reader->state.Working().separated = Area(row.first, row.b4);
    DevTable[0].CfgSlot[0].sFldSepData.fill(0xEE);
    EXPECT_EQ(PagesRead(), row.pages) << int{row.first} << ' ' << int{row.b4};
    EXPECT_EQ(Kept(), FirstBytes(Area(row.first, row.b4), row.bytes)) << int{row.first} << ' ' << int{row.b4};
  }
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(SepFields, AFailedFetchCountsAsZeros) {
  reader->state.Working().separated = Area(5, 4);
  reader->faults.RefuseReply({0x85, 2}, 1);
  StartTrace();
  EXPECT_EQ(PagesRead(), 4U);
  auto expected = FirstBytes(Area(5, 4), 32);
  std::fill_n(expected.begin() + 16, 8, std::uint8_t{0});
  EXPECT_EQ(Kept(), expected);
  ExpectTrace({"tavlyn_ReadCfgOneConfig ERROR CODE: 0",
               "tavlyn_ReadCfgOneConfig Model Number of Device is : RDR-80581AKU"});
  EXPECT_EQ(GetLastLibErr(), 0U) << "the next step drops the bit";
}

TEST_F(SepFields, AFailedFirstFetchIsAnAreaOfZeros) {
  reader->faults.RefuseReply({0x85}, 1);
  EXPECT_EQ(PagesRead(), 1U);
  EXPECT_EQ(Kept(), (std::array<std::uint8_t, 128>{}));
  EXPECT_EQ(DevTable[0].bSepFldCapable, 1U);
}

TEST_F(SepFields, AFailedCommandEndsTheRead) {
  reader->state.Working().separated = Area(5, 4);
  reader->faults.RefuseCommand({0x85, 2}, 6);
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x20202U);
  EXPECT_EQ(Kept()[0], 0xEE) << "what was fetched is not kept";
  const Lines traffic = TrafficOf(host.transcript.Events());
  EXPECT_EQ(traffic.back(), "sleep 80");
}

TEST_F(SepFields, AnIncapableReaderIsNotAskedAndReadsAsZeros) {
  DevTable[0].bSepFldCapable = 0;
  EXPECT_EQ(PagesRead(), 0U);
  EXPECT_EQ(Kept(), (std::array<std::uint8_t, 128>{}));
}

class SepFieldsFa : public SerialBench {
 protected:
  void Use(std::uint8_t features) {
    AddReader(Reader::Plain());
    reader->state.Working().blocks[1][7] = features;
    Entry().CfgSlot[0].sFldSepData.fill(0xEE);
  }
  // Only the frames of the area.
  Lines SepFrames() {
    Lines frames;
    for (const std::string& written : TrafficOf(host.transcript.Events())) {
      if (written.starts_with("write 09 00") || written.starts_with("write 0A")) frames.push_back(written);
    }
    ForgetTraffic();
    return frames;
  }
  const std::array<std::uint8_t, 128>& Kept() { return Entry().CfgSlot[0].sFldSepData; }
};

TEST_F(SepFieldsFa, TheHeadTellsTheLength) {
  Use(0x20);
  for (const PageRow& row : {PageRow{5, 3, 0x18, 24},
                             {5, 1, 0x08, 8},
                             {5, 16, 0x80, 128},
                             {5, 17, 0x80, 128},
                             {5, 255, 0x80, 128},
                             {0xFF, 2, 0x10, 16},
                             {0, 2, 0x10, 16}}) {
    reader->state.Working().separated = Area(row.first, row.b4);
    EXPECT_EQ(ReadCfg(), 1U);
    const std::string length = sim::HexText({static_cast<std::uint8_t>(row.pages)});
    EXPECT_EQ(SepFrames(), (Lines{"write 09 00 00 08", "write 09 00 00 " + length}));
    EXPECT_EQ(Kept(), FirstBytes(Area(row.first, row.b4), row.bytes)) << int{row.b4};
  }
}

TEST_F(SepFieldsFa, ALengthOf0AsksForNothingMore) {
  Use(0x20);
  reader->state.Working().separated = Area(5, 0);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(SepFrames(), (Lines{"write 09 00 00 08", "write 09 00 00 00"}));
  EXPECT_EQ(Kept(), (std::array<std::uint8_t, 128>{}));
  EXPECT_EQ(Entry().bSepFldCapable, 1U);
}

TEST_F(SepFieldsFa, AnExtendedReaderHasItsOwnInstruction) {
  Use(0x40);
  reader->state.Working().separated = Area(5, 3);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(SepFrames(), (Lines{"write 0A 00 00 08", "write 0A 00 00 18"}));
  EXPECT_EQ(Kept(), FirstBytes(Area(5, 3), 24));
}

TEST_F(SepFieldsFa, ARefusedHeadIsNeverAskedAgain) {
  Use(0x20);
  line->faults.RefuseCommand({0x09, 0x00}, 1);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(SepFrames(), (Lines{"write 09 00 00 08"}));
  EXPECT_EQ(Entry().bSepFldCapable, 0U);
  EXPECT_EQ(Kept(), (std::array<std::uint8_t, 128>{}));
  Entry().CfgSlot[0].sFldSepData.fill(0xEE);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(SepFrames(), Lines{});
  EXPECT_EQ(Kept(), (std::array<std::uint8_t, 128>{}));
}

TEST_F(SepFieldsFa, ALostAreaLeavesZerosAndTheReaderCapable) {
  Use(0x20);
  reader->state.Working().separated = Area(5, 3);
  line->faults.RefuseReply({0x09, 0x00, 0x00, 0x18}, 1);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Kept(), (std::array<std::uint8_t, 128>{}));
  EXPECT_EQ(Entry().bSepFldCapable, 1U);
}

}  // namespace
}  // namespace tavlyn::test
