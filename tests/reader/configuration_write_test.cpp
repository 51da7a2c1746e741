// Writing the stored configuration over feature reports: dirty, blocks, commit and the wait after it.
#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "api.h"
#include "reader/product.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Block;
using sim::Reader;

Lines SepPages() {
  Lines lines;
  for (int page = 0; page < 12; ++page) {
    lines.push_back("set 85 " + sim::HexText({static_cast<std::uint8_t>(page)}) + " 00 10");
    lines.emplace_back(page == 0 ? "set 0C 00 00 0C" : "set 00");
  }
  return lines;
}

// A factory-fresh plain reader, in the order in which the parts are sent.
const std::vector<DirtyPart> kReportParts = {
    {kDirtyLuid, {"set 8A", "set 00 01"}},
    {kDirtyFmt, {"set 80", "set 03 05 11 10 1A 3A 28 1C"}},
    {kDirtyTime, {"set 81", "set 00 19 14 28 01 01 40 20"}},
    {kDirtyDisp, {"set 82", "set 01 10"}},
    {kDirtyExt, {"set 83", "set 00"}},
    {kDirtySep, SepPages()},
};

Lines Commit(unsigned mask) {
  return {mask == 0 ? "set 90" : "set 90 " + sim::HexText({static_cast<std::uint8_t>(mask)})};
}

using EightWords = std::array<std::int16_t, 8>;

template <typename Record>
std::uint32_t Call(std::uint32_t (*set)(const Record*), const EightWords& words) {
  return set(reinterpret_cast<const Record*>(words.data()));
}

class CfgWrite : public BesideReader {
 protected:
  void Use(std::shared_ptr<Reader> model) { reader = Connected(std::move(model)); }
  static tsCfgSlot& Slot(std::size_t number = 0) { return Entry().CfgSlot[number]; }
  Block& Kept(std::size_t block) { return reader->state.Active().stored.blocks[block]; }
  void ReadBlock3(const Block& block) {
    reader->state.Active().working.blocks[3] = block;
    EXPECT_EQ(ReadCfg(), 1U);
  }
  int WrittenMask() {
    EXPECT_EQ(WriteCfg(), 1U);
    return reader->state.counters.lastCommitMask;
  }

  std::shared_ptr<Reader> reader;
};

TEST_F(CfgWrite, EveryCombinationOfDirtyPartsSendsItsBlocksAndNamesThem) {
  Use(Reader::Plain());
  ForEachCombination(kReportParts, [this](unsigned mask, const Lines& expected) {
    SetDirty(Entry(), mask);
    Entry().LastLibErr = 5;
    EXPECT_EQ(WriteCfg(), 1U);
    ExpectTraffic(Join({expected, Commit(mask), FastStore()}));
    EXPECT_EQ(DirtyOf(Entry(), Slot()), 0U);
    EXPECT_EQ(GetLastLibErr(), 0U);
  });
  EXPECT_EQ(reader->state.counters.commits, 64);
}

TEST_F(CfgWrite, TheCardTypeAlwaysGoesOutOnAPlusReader) {
  Use(Reader::Plus(1));
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({{"set 84", "set 00 04 EF 01", "sleep 10"}, Commit(0), FastStore()}));
  EXPECT_EQ(SetCardTypePriority(0xABCD, 0), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({{"set 84", "set 00 CD AB", "sleep 10"}, Commit(0), FastStore()}));
  SetDirty(Entry(), kDirtyFmt | kDirtySep);
  EXPECT_EQ(WriteCfg(), 1U);
  const Lines traffic = TrafficOf(host.transcript.Events());
  const Lines tail(traffic.end() - 7, traffic.end());
  EXPECT_EQ(Difference(Join({{"set 84", "set 00 CD AB", "sleep 10"}, Commit(0x21), FastStore()}), tail), "");
}

TEST_F(CfgWrite, ALostCardTypeDoesNotFailTheWrite) {
  Use(Reader::Plus(1));
  reader->faults.RefuseCommand({0x84}, 6);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({Refused("84"), Commit(0), FastStore()}));
  EXPECT_EQ(GetLastLibErr(), 0U) << "the store query clears it";
}

TEST_F(CfgWrite, EachSetMakesItsBlocksDirty) {
  Use(Reader::Plain());
  std::array<std::uint8_t, 128> area{12};
  // Within the limits of every record.
  const EightWords words = {0, 0, 1, 0, 0, 0, 0, 0};
  const tsIDBitCnts counts{0, 0, 1, 26, 0, 0, 0, 0};
  const std::vector<std::pair<int, std::function<std::uint32_t()>>> rows = {
      {0x01, [&] { return Call(SetFlags, words); }},
      {0x04, [&] { return Call(SetFlags2, words); }},
      {0x02, [&] { return Call(SetFlags3, words); }},
      {0x01, [&] { return SetIDBitCnts(&counts); }},
      {0x09, [&] { return Call(SetIDDispParms, words); }},
      {0x04, [&] { return Call(SetIDDispParms2, words); }},
      {0x04, [&] { return Call(SetIDDispParms3, words); }},
      {0x02, [&] { return Call(SetTimeParms, words); }},
      {0x04, [&] { return Call(SetLEDCtrl, words); }},
      {0x04, [&] { return Call(SetBprRlyCtrl, words); }},
      {0x20, [&] { return SetSepFldData(area.data(), 128); }},
      {0x08, [] { return SetAZERTYShiftLock(1); }},
      {0x08, [] { return SetExtendedPrecisionMath(1); }},
      {0x08, [] { return Set64BytesInPackets(1); }},
      {0x08, [] { return SetEasyReadMode(1); }},
      {0x08, [] { return SetPrependCSN(1); }},
      {0x80, [] { return SetLUID(0x1234); }},
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i].second(), 1U) << i;
    EXPECT_EQ(WrittenMask(), rows[i].first) << i;
    EXPECT_EQ(WrittenMask(), 0) << i << ": once written there is nothing to write";
  }
  EXPECT_EQ(reader->state.storedLuid, 0x1234);
}

TEST_F(CfgWrite, AnotherLuidTravelsLowByteFirst) {
  Use(Reader::Plain());
  EXPECT_EQ(SetLUID(0xBEEF), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({{"set 8A", "set 00 EF BE"}, Commit(0x80), FastStore()}));
}

struct ParityRow {
  std::int16_t lead, trail;
  int mask;
  std::uint8_t nibbles, leadExcess, trailExcess;
};

TEST_F(CfgWrite, ParityCountsAbove15GoOnInBlock3) {
  Use(Reader::Plus(1));
  for (const ParityRow& row : {ParityRow{15, 15, 0x01, 0xFF, 0, 0},
                               {16, 15, 0x09, 0xFF, 1, 0},
                               {16, 15, 0x01, 0xFF, 1, 0},  // the excess is on the reader
                               {20, 1, 0x09, 0x1F, 5, 0},
                               {2, 142, 0x09, 0xF2, 0, 127},
                               {142, 142, 0x09, 0xFF, 127, 127},
                               {142, 142, 0x01, 0xFF, 127, 127},
                               {15, 142, 0x09, 0xFF, 0, 127},
                               {0, 0, 0x09, 0x00, 0, 0},
                               {0, 0, 0x01, 0x00, 0, 0}}) {
    SCOPED_TRACE(std::to_string(row.lead) + '/' + std::to_string(row.trail));
    const tsIDBitCnts counts{row.lead, row.trail, 16, 26, 0, 0, 0, 0};
    EXPECT_EQ(SetIDBitCnts(&counts), 1U);
    EXPECT_EQ(WrittenMask(), row.mask);
    EXPECT_EQ(Kept(0)[2], row.nibbles);
    EXPECT_EQ(Kept(3)[0], row.leadExcess);
    EXPECT_EQ(Kept(3)[1], row.trailExcess);
    EXPECT_EQ(Slot().ExtBytes[0], row.leadExcess);
    EXPECT_EQ(Slot().ExtBytes[1], row.trailExcess);
    EXPECT_EQ(ReadCfg(), 1U);
    EXPECT_EQ(Slot()[field::IDBitCnts_iLeadParityBitCnt], row.lead);
    EXPECT_EQ(Slot()[field::IDBitCnts_iTrailParityBitCnt], row.trail);
  }
}

TEST_F(CfgWrite, AnExcessCutByTheReadIsWrittenBackWithBlock0) {
  Use(Reader::Plain());
  Kept(3) = {7, 0, 0, 0, 0, 0, 0, 0};
  Kept(0)[2] = 0x1F;
  reader->PowerCycle();
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Slot()[field::IDBitCnts_iLeadParityBitCnt], 15) << "no more without the feature";
  EXPECT_EQ(WrittenMask(), 0);
  EXPECT_EQ(Kept(3)[0], 7);
  SetDirty(Entry(), kDirtyFmt);
  EXPECT_EQ(WrittenMask(), 0x09);
  EXPECT_EQ(Kept(3)[0], 0);
}

TEST_F(CfgWrite, WhatDoesNotFitIsCut) {
  Use(Reader::Plain());
  const tsIDBitCnts counts{1, 1, 200, 255, 0, 0, 0, 0};
  EXPECT_EQ(SetIDBitCnts(&counts), 1U);
  Slot()[field::IDDispParms_iFACDispLen] = 130;
  Slot()[field::IDDispParms_iIDDispLen] = 0x85;
  const tsTimeParms times{1001, 130, 12750, 7, 1020, 0x20, 0, 0};
  EXPECT_EQ(SetTimeParms(&times), 1U);
  EXPECT_EQ(WrittenMask(), 0x03);
  EXPECT_EQ(Kept(0), (Block{2, 5, 0x11, 200 & 0x7F, 255, ':', 0x28, 0x1C}));
  EXPECT_EQ(Kept(1), (Block{0, 250, 2, 255, 1, 255, 0x40, 0x20}));
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 1000);
  EXPECT_EQ(Slot()[field::TimeParms_iIDHoldTO], 100);
}

TEST_F(CfgWrite, Block3KeepsWhatIsNotTheHosts) {
  Use(Reader::Plain());
  ReadBlock3({0, 0, 0x33, 0x44, 0x55, 0xFF, 0x01, 9});
  EXPECT_EQ(SetExtendedPrecisionMath(0), 1U);
  EXPECT_EQ(SetAZERTYShiftLock(7), 1U);
  EXPECT_EQ(WrittenMask(), 0x08);
  EXPECT_EQ(Kept(3), (Block{0, 0, 0x33, 0x44, 0x55, 0xFD, 0x03, 0}));
}

TEST_F(CfgWrite, Block3HoldsTheOutputFormatOfAnExtendedReader) {
  Use(Reader::Plus(1));
  ReadBlock3({0, 0, 0x33, 0x44, 0x55, 0x01, 0xFF, 9});
  EXPECT_EQ(SetExtendedPrecisionMath(1), 1U);
  EXPECT_EQ(SetAZERTYShiftLock(0), 1U);
  EXPECT_EQ(WrittenMask(), 0x08);
  EXPECT_EQ(Kept(3), (Block{0, 0, 0x33, 0x44, 0x55, 0x03, 0xFD, 9}));
}

TEST_F(CfgWrite, LeadCharactersGoBeforeTrailCharacters) {
  Use(Reader::Plain());
  const tsIDDispParms2 lead{3, 'a', 'b', 'c', 0, 0, 0, 0};
  const tsIDDispParms3 trail{2, 'x', 'y', 'z', 0, 0, 0, 0};
  EXPECT_EQ(SetIDDispParms2(&lead), 1U);
  EXPECT_EQ(SetIDDispParms3(&trail), 1U);
  EXPECT_EQ(WrittenMask(), 0x04);
  EXPECT_EQ(Kept(2), (Block{0x01, 0x10, 0, 0, 0x03, 'a', 'b', 'c'}));
}

TEST_F(CfgWrite, TheWaitGoesByTheVolumeCommand) {
  Use(Reader::Plain());
  reader->state.volume = 0;
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({Commit(0), {"set 8C 06", "get 8C 06", "sleep 20"}}));
  reader->state.lacks = {{0x8C, 0x06}};
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({Commit(0), SlowStore()}));
  EXPECT_EQ(GetLastLibErr(), 0U);
  reader->state.lacks.clear();
  reader->faults.RefuseReply({0x8C, 0x06}, 1);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({Commit(0), {"set 8C 06", "get refused", "sleep 1200"}}));
  EXPECT_EQ(GetLastLibErr(), 0x1000000U) << "of the query";
  reader->faults.RefuseCommand({0x8C, 0x06}, 6);
  EXPECT_EQ(WriteCfg(), 1U);
  // After a failed send its reply is not fetched.
  ExpectTraffic(Join({Commit(0), Refused("8C 06"), {"sleep 1200"}}));
  EXPECT_EQ(GetLastLibErr(), 0x1000202U);
}

TEST_F(CfgWrite, ANumberedReportAlwaysCountsAsAnAnswer) {
  Use(Reader::Kelda(1));
  reader->state.lacks = {{0x8C, 0x06}};
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Slept(), 10U + 20U);
}

TEST_F(CfgWrite, AFailedWriteWaitsToo) {
  Use(Reader::Plain());
  reader->state.lacks = {{0x8C, 0x06}};
  SetDirty(Entry(), kDirtyTime);
  reader->faults.RefuseCommand({0x81}, 6);
  EXPECT_EQ(WriteCfg(), 0U);
  ExpectTraffic(Join({Refused("81"), SlowStore()}));
  EXPECT_EQ(GetLastLibErr(), 0U) << "the result alone tells of the failure";
  EXPECT_EQ(DirtyOf(Entry(), Slot()), kDirtyTime);
}

TEST_F(CfgWrite, TheTraceOfAWrite) {
  Use(Reader::Plain());
  StartTrace();
  SetDirty(Entry(), kAllDirty);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTrace({"WriteCfg ENTER", "WriteCfg Success !!", "WriteCfg EXIT"});
  shared.SearchErr = 77;
  reader->faults.RefuseCommand({0x90}, 6);
  EXPECT_EQ(WriteCfg(), 0U);
  ExpectTrace(
      {"WriteCfg ENTER", "tavlyn_write_cfg ERROR CODE: 77", "tavlyn_write_cfg Failed !!", "WriteCfg EXIT"});
  shared.SearchErr = 0;
}

TEST_F(CfgWrite, IsTracedWithoutAReaderToo) {
  Use(Reader::Plain());
  StartTrace();
  SetUnsupportedProductErrorCode(0x8001);
  Entry().ProductKind = 3;
  WriteCfg();
  ExpectTrace({"WriteCfg ENTER", "WriteCfg Success !!", "WriteCfg EXIT"});
  Entry().ProductKind = kReader;
  shared.DevCnt = 0;
  WriteCfg();
  ExpectTrace({"WriteCfg ENTER", "WriteCfg EXIT"});
  shared.DevCnt = 1;
}

TEST_F(CfgWrite, HoldsTheLockForTheWholeWalkAndItsWaits) {
  Use(Reader::Plus(2));
  EXPECT_EQ(WriteCfg(), 1U);
  const auto lines = host.transcript.Lines();
  ASSERT_GE(lines.size(), 2U);
  EXPECT_EQ(lines.front(), "mutex lock");
  EXPECT_EQ(lines.back(), "mutex unlock");
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "mutex unlock"), 1);
}

TEST_F(CfgWrite, TheFeatureBitsAreAskedOfTheRecord) {
  Use(Reader::Plus(1));
  Slot().bCfgLoaded = 0;
  Slot()[field::IDDispParms_iExOutputFormat] = 9;
  Slot().HashKeyData[0].fill(0x31);
  StartTrace();
  SetDirty(Entry(), kDirtySep);
  EXPECT_EQ(WrittenMask(), 0x20);
  const Lines pair = {"tavlyn_GetTimeParms ERROR CODE: 0", "tavlyn_GetTimeParms Failed !!"};
  ExpectTrace(Join({{"WriteCfg ENTER"}, pair, {"WriteCfg Success !!", "WriteCfg EXIT"}}));
  EXPECT_EQ(reader->state.Active().stored.hashKeys[0], 0) << "an unread record has no features";
  SetDirty(Entry(), kDirtyExt);
  EXPECT_EQ(WrittenMask(), 0x08);
  ExpectTrace(Join({{"WriteCfg ENTER"}, pair, {"WriteCfg Success !!", "WriteCfg EXIT"}}));
  EXPECT_EQ(Kept(3)[7], 0);
  Slot().bCfgLoaded = 1;
  SetDirty(Entry(), kDirtyExt | kDirtySep);
  EXPECT_EQ(WrittenMask(), 0x28);
  ExpectTrace({"WriteCfg ENTER", "WriteCfg Success !!", "WriteCfg EXIT"});
  EXPECT_EQ(Kept(3)[7], 9);
  EXPECT_EQ(reader->state.Active().stored.hashKeys[0], 0x31);
}

}  // namespace
}  // namespace tavlyn::test
