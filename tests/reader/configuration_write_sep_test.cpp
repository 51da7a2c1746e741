// The separated-field data of a configuration write: how much is sent, in which form, and what happens if it
// is lost.
#include <algorithm>
#include <numeric>
#include <string>

#include "api.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

// The area counts from 0x21, no byte of it a command; the keys after it are all 0xE1 and 0xE2.
void FillArea(tsCfgSlot& slot, std::uint8_t first, std::uint8_t fourth) {
  for (std::size_t i = 0; i < slot.sFldSepData.size(); ++i) {
    slot.sFldSepData[i] = static_cast<std::uint8_t>(0x21 + i % 64);
  }
  slot.sFldSepData[0] = first;
  slot.sFldSepData[3] = fourth;
  slot.HashKeyData[0].fill(0xE1);
  slot.HashKeyData[1].fill(0xE2);
}

// Bytes at..at+count of area, keys and zeros.
Bytes BytesOf(const tsCfgSlot& slot, std::size_t at, std::size_t count) {
  Bytes bytes(slot.sFldSepData.begin(), slot.sFldSepData.end());
  bytes.insert(bytes.end(), slot.HashKeyData[0].begin(), slot.HashKeyData[0].end());
  bytes.insert(bytes.end(), slot.HashKeyData[1].begin(), slot.HashKeyData[1].end());
  bytes.resize(4096);
  const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(at);
  return {from, from + static_cast<std::ptrdiff_t>(count)};
}

Lines Pages(const tsCfgSlot& slot, int count) {
  Lines lines;
  for (int page = 0; page < count; ++page) {
    lines.push_back("set 85 " + sim::HexText({static_cast<std::uint8_t>(page)}) + " 00 10");
    lines.push_back("set " + sim::TrimmedHexText(BytesOf(slot, static_cast<std::size_t>(page) * 8, 8)));
  }
  return lines;
}

class CfgWriteSep : public BesideReader {
 protected:
  void SetUp() override {
    BesideReader::SetUp();
    reader = Connected(Reader::Plain());
  }
  static tsCfgSlot& Slot() { return EntryOfActDev().CfgSlot[0]; }

  std::shared_ptr<Reader> reader;
};

struct ExtentRow {
  std::uint8_t first, fourth;
  int pages;
};

TEST_F(CfgWriteSep, TheFirstBytesSayHowManyPagesGo) {
  for (const ExtentRow& row : {ExtentRow{12, 0, 12},
                               {12, 3, 12},
                               {12, 17, 12},
                               {12, 255, 12},
                               {5, 3, 3},
                               {5, 1, 1},
                               {5, 0, 0},
                               {5, 12, 12},
                               {5, 16, 16},
                               {0, 0, 0},
                               {0, 2, 2},
                               {0xFF, 4, 4}}) {
    SCOPED_TRACE(std::to_string(row.first) + ' ' + std::to_string(row.fourth));
    FillArea(Slot(), row.first, row.fourth);
    SetDirty(Entry(), kDirtySep);
    EXPECT_EQ(WriteCfg(), 1U);
    ExpectTraffic(Join({Pages(Slot(), row.pages), {"set 90 20"}, FastStore()}));
    EXPECT_EQ(Entry().bSepFldCapable, 1U);
    EXPECT_EQ(Slot().bDirtySep, 0U);
  }
}

TEST_F(CfgWriteSep, ALengthBeyondTheAreaFailsBehindTheBlocks) {
  StartTrace();
  FillArea(Slot(), 5, 17);
  Slot()[field::IDBitCnts_iTotalBitCnt] = 99;
  SetDirty(Entry(), kDirtyFmt | kDirtyExt | kDirtySep);
  EXPECT_EQ(WriteCfg(), 0U);
  ExpectTraffic(Join({{"set 80", "set 03 05 11 10 63 3A 28 1C", "set 83", "set 00"}, FastStore()}));
  ExpectTrace({"WriteCfg ENTER", "WriteCfg EXIT"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(DirtyOf(Entry(), Slot()), unsigned{kDirtyFmt | kDirtyExt | kDirtySep});
  EXPECT_EQ(reader->state.Working().blocks[0][4], 99);
  EXPECT_EQ(reader->state.Active().stored.blocks[0][4], 26) << "nothing is committed";
  reader->PowerCycle();
  EXPECT_EQ(reader->state.Working().blocks[0][4], 26);
}

TEST_F(CfgWriteSep, ALengthBeyondTheAreaFailsWhenCleanToo) {
  for (const std::uint8_t fourth : {std::uint8_t{17}, std::uint8_t{18}, std::uint8_t{255}}) {
    FillArea(Slot(), 5, fourth);
    EXPECT_EQ(WriteCfg(), 0U) << int{fourth};
    ExpectTraffic(FastStore());
  }
}

TEST_F(CfgWriteSep, AnIncapableReaderIsSentAllThatIsAnnounced) {
  for (const int pages : {17, 18, 19, 20, 21, 32, 255}) {
    SCOPED_TRACE(pages);
    FillArea(Slot(), 5, static_cast<std::uint8_t>(pages));
    Entry().bSepFldCapable = 0;
    SetDirty(Entry(), kDirtySep);
    EXPECT_EQ(WriteCfg(), 1U);
    ExpectTraffic(Join({Pages(Slot(), pages), {"set 90 20"}, FastStore()}));
    EXPECT_EQ(Entry().bSepFldCapable, 0U) << "does not rise again";
  }
}

TEST_F(CfgWriteSep, AFailedCommandLeavesTheRestAndTheCommit) {
  FillArea(Slot(), 5, 3);
  SetDirty(Entry(), kDirtySep);
  StartTrace();
  reader->faults.RefuseCommand({0x85, 1}, 6);
  EXPECT_EQ(WriteCfg(), 1U);
  const Lines pages = Pages(Slot(), 3);
  ExpectTraffic(Join({{pages[0], pages[1]},
                      Refused("85 01 00 10"),  //
                      {pages[3], pages[4], pages[5], "set 90 20"},
                      FastStore()}));
  EXPECT_EQ(Entry().bSepFldCapable, 0U);
  EXPECT_EQ(Entry().bPartNumberPending, 1U);
  EXPECT_EQ(Slot().bDirtySep, 0U);
  ExpectTrace({"WriteCfg ENTER", "WriteCfg Success !!", "WriteCfg EXIT"});
}

TEST_F(CfgWriteSep, AFailedDataReportAlsoEndsTheAskingForTheModel) {
  FillArea(Slot(), 5, 3);
  SetDirty(Entry(), kDirtySep);
  StartTrace();
  reader->faults.Restart();
  reader->faults.RefuseAt(2, 6);
  EXPECT_EQ(WriteCfg(), 1U);
  const Lines pages = Pages(Slot(), 3);
  ExpectTraffic(Join({{pages[0]},
                      Refused(pages[1].substr(4)),  //
                      {pages[2], pages[3], pages[4], pages[5], "set 90 20"},
                      FastStore()}));
  EXPECT_EQ(Entry().bSepFldCapable, 0U);
  EXPECT_EQ(Entry().bPartNumberPending, 0U);
  EXPECT_EQ(Slot().bDirtySep, 0U);
  ExpectTrace({"WriteCfg ENTER", "WriteCfg Success !!", "WriteCfg EXIT"});
}

class CfgWriteSepFa : public BesideLine {
 protected:
  void Use(std::uint8_t features) {
    AddReader(Reader::Plain());
    reader->state.Working().blocks[1][7] = features;
    EXPECT_EQ(ReadCfg(), 1U);
    Slot().HashKeyData = {};
    ForgetTraffic();
  }
  static tsCfgSlot& Slot() { return Entry().CfgSlot[0]; }
  // The traffic of a write for the area, without class bytes; an empty data phase may or may not show.
  Lines Frames() {
    Lines frames;
    bool inArea = false;
    for (const std::string& event : TrafficOf(host.transcript.Events())) {
      if (!event.starts_with("write")) continue;
      if (event == "write FA") {
        inArea = false;
        continue;
      }
      inArea = inArea || event.starts_with("write 0A ") || event.starts_with("write 8A ");
      if (inArea && event.size() > sizeof("write ") - 1) frames.push_back(event);
    }
    ForgetTraffic();
    return frames;
  }
  std::string Data(std::size_t count) { return "write " + sim::HexText(BytesOf(Slot(), 0, count)); }
};

TEST_F(CfgWriteSepFa, TheFourthByteIsTheLength) {
  Use(0x20);
  for (const std::uint8_t pages : {std::uint8_t{1}, std::uint8_t{3}, std::uint8_t{16}}) {
    FillArea(Slot(), 5, pages);
    SetDirty(Entry(), kDirtySep);
    EXPECT_EQ(WriteCfg(), 1U);
    const std::size_t length = std::size_t{pages} * 8;
    EXPECT_EQ(Frames(),
              (Lines{"write 0A 00 00 " + sim::HexText({static_cast<std::uint8_t>(length)}), Data(length)}));
    EXPECT_EQ(reader->state.counters.lastCommitMask, 0x20);
    const auto& kept = reader->state.Active().stored.separated;
    EXPECT_TRUE(std::equal(kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(length),
                           Slot().sFldSepData.begin()));
  }
}

TEST_F(CfgWriteSepFa, TheShortFormIsAHeaderAlone) {
  for (const std::uint8_t features : {std::uint8_t{0x20}, std::uint8_t{0x60}}) {
    Use(features);
    FillArea(Slot(), 12, 12);
    Slot().HashKeyData = {};
    SetDirty(Entry(), kDirtySep);
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_EQ(Frames(), (Lines{features == 0x20 ? "write 0A 00 00 00" : "write 8A 00 00 00"}));
    EXPECT_EQ(Entry().bSepFldCapable, 1U);
    EXPECT_EQ(reader->state.counters.lastCommitMask, 0x20);
  }
}

TEST_F(CfgWriteSepFa, AnEmptyAreaIsAHeaderAlone) {
  Use(0x20);
  FillArea(Slot(), 5, 0);
  SetDirty(Entry(), kDirtySep);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Frames(), (Lines{"write 0A 00 00 00"}));
}

TEST_F(CfgWriteSepFa, AnExtendedReaderHasItsOwnInstruction) {
  Use(0x60);
  FillArea(Slot(), 5, 3);
  Slot().HashKeyData = {};
  SetDirty(Entry(), kDirtySep);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Frames(), (Lines{"write 8A 00 00 18", Data(24)}));
}

TEST_F(CfgWriteSepFa, AnUnreadSlotHasNoFeatures) {
  Use(0x60);
  FillArea(Slot(), 5, 2);
  Slot().bCfgLoaded = 0;
  SetDirty(Entry(), kDirtySep);
  StartTrace();
  line->faults.AnswerWith({0x0A}, {0x0A, 0x90, 0x00});
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Frames(), (Lines{"write 0A 00 00 10", Data(16)}));
  const Lines pair = {"tavlyn_GetTimeParms ERROR CODE: 0", "tavlyn_GetTimeParms Failed !!"};
  // Once for the instruction, once for the keys.
  ExpectTrace(Join({{"WriteCfg ENTER"}, pair, pair, {"WriteCfg Success !!", "WriteCfg EXIT"}}));
}

TEST_F(CfgWriteSepFa, ALengthBeyondTheAreaFails) {
  Use(0x20);
  FillArea(Slot(), 5, 17);
  SetDirty(Entry(), kDirtyFmt | kDirtySep);
  EXPECT_EQ(WriteCfg(), 0U);
  EXPECT_EQ(Frames(), Lines{});
  EXPECT_EQ(reader->state.counters.commits, 0);
}

TEST_F(CfgWriteSepFa, OneFrameCarries255BytesAtMost) {
  Use(0x20);
  for (const std::size_t pages : {17U, 31U, 32U, 33U, 255U}) {
    SCOPED_TRACE(pages);
    FillArea(Slot(), 5, static_cast<std::uint8_t>(pages));
    Entry().bSepFldCapable = 0;
    SetDirty(Entry(), kDirtySep);
    EXPECT_EQ(WriteCfg(), 1U);
    const std::size_t length = std::min<std::size_t>(255, pages * 8);
    EXPECT_EQ(Frames(),
              (Lines{"write 0A 00 00 " + sim::HexText({static_cast<std::uint8_t>(length)}), Data(length)}));
  }
}

TEST_F(CfgWriteSepFa, ARefusedAreaLeavesTheCommit) {
  Use(0x20);
  FillArea(Slot(), 5, 3);
  SetDirty(Entry(), kDirtySep);
  line->faults.RefuseCommand({0x0A}, 1);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Frames(), (Lines{"write 0A 00 00 18"})) << "once";
  EXPECT_EQ(Entry().bSepFldCapable, 0U);
  EXPECT_EQ(Entry().bPartNumberPending, 1U);
  EXPECT_EQ(reader->state.counters.lastCommitMask, 0x20);
}

}  // namespace
}  // namespace tavlyn::test
