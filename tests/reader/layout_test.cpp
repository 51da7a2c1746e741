// The packing of the configuration blocks: a byte of the device seen as a field, a field sent as a byte.
#include "reader/layout.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using namespace field;
using reader::Block;
using reader::BlockNumber;
using reader::BuildBlock;
using reader::kDisplayBlock;
using reader::kExtensionBlock;
using reader::kFormatBlock;
using reader::kTimeBlock;
using reader::TakeBlock;

std::unique_ptr<tsCfgSlot> EmptySlot() { return std::make_unique<tsCfgSlot>(); }

void Read(tsCfgSlot& slot, BlockNumber number, const Block& block) { TakeBlock(number, block, slot, true); }

struct ToldBlock {
  BlockNumber number;
  Block bytes;
  std::vector<std::pair<FieldId, int>> words;
  Block sent;  // of these words alone
};

const std::vector<ToldBlock> kTold = {
    {kFormatBlock,
     {0x03, 0x05, 0, 0x10, 0x1A, 0x3A, 0x28, 0},
     {{IDDispParms_iFACDispLen, 3},
      {IDDispParms_iIDDispLen, 5},
      {IDBitCnts_iIDBitCnt, 16},
      {IDBitCnts_iTotalBitCnt, 26},
      {IDDispParms_iFACIDDelim, ':'},
      {IDDispParms_iELDelim, '('}},
     {0x03, 0x05, 0, 0x10, 0x1A, 0x3A, 0x28, 0}},
    {kFormatBlock,
     {0xFC, 0xFA, 0, 0xEF, 0xE5, 0xC5, 0xD7, 0},
     {{IDDispParms_iFACDispLen, 252},
      {IDDispParms_iIDDispLen, 250},
      {IDBitCnts_iIDBitCnt, 239},
      {IDBitCnts_iTotalBitCnt, 229},
      {IDDispParms_iFACIDDelim, 197},
      {IDDispParms_iELDelim, 215}},
     {0x7C, 0x7A, 0, 0x6F, 0xE5, 0xC5, 0xD7, 0}},
    {kTimeBlock,
     {0, 0x19, 0x14, 0x28, 0x01, 0x02, 0x40, 0x20},
     {{TimeParms_iBitStrmTO, 100},
      {TimeParms_iIDHoldTO, 1000},
      {TimeParms_iIDLockOutTm, 2000},
      {TimeParms_iUSBKeyPrsTm, 4},
      {TimeParms_iUSBKeyRlsTm, 8},
      {TimeParms_iTPCfgFlg3, 0x40},
      {TimeParms_ExFeatures01, 0x20}},
     {0, 0x19, 0x14, 0x28, 0x01, 0x02, 0x40, 0x20}},
    {kTimeBlock,
     {0, 0xFF, 0xFE, 0xFD, 0xFC, 0xFB, 0xBF, 0xDF},
     {{TimeParms_iBitStrmTO, 1020},
      {TimeParms_iIDHoldTO, 12700},
      {TimeParms_iIDLockOutTm, 12650},
      {TimeParms_iUSBKeyPrsTm, 1008},
      {TimeParms_iUSBKeyRlsTm, 1004},
      {TimeParms_iTPCfgFlg3, 0xBF},
      {TimeParms_ExFeatures01, 0xDF}},
     {0, 0xFF, 0xFE, 0xFD, 0xFC, 0xFB, 0xBF, 0xDF}},
    {kDisplayBlock,
     {0, 0, 'a', 0xE2},
     {{IDDispParms2_iCrdGnChr0, 'a'}, {IDDispParms2_iCrdGnChr1, 0xE2}},
     {0, 0, 'a', 0xE2}},
};

TEST(Blocks, BytesAreReadIntoTheirFields) {
  for (const ToldBlock& told : kTold) {
    const auto slot = EmptySlot();
    Read(*slot, told.number, told.bytes);
    for (const auto& [field, value] : told.words) {
      EXPECT_EQ((*slot)[field], value) << field.record << ' ' << int{field.word};
    }
  }
}

TEST(Blocks, FieldsAreSentInTheirBytes) {
  for (const ToldBlock& told : kTold) {
    const auto slot = EmptySlot();
    for (const auto& [field, value] : told.words) (*slot)[field] = static_cast<std::int16_t>(value);
    EXPECT_EQ(BuildBlock(told.number, *slot), told.sent);
  }
}

TEST(Blocks, NegativeWordsAreDividedWithTheirSign) {
  const auto slot = EmptySlot();
  for (const ToldBlock& told : kTold) {
    for (const auto& word : told.words) (*slot)[word.first] = -130;
  }
  EXPECT_EQ(BuildBlock(kFormatBlock, *slot), (Block{0x7E, 0x7E, 0x00, 0x7E, 0x7E, 0x7E, 0x7E, 0x00}));
  // -130 / 4 = -32, -130 / 50 = -2
  EXPECT_EQ(BuildBlock(kTimeBlock, *slot), (Block{0x00, 0xE0, 0xFE, 0xFE, 0xE0, 0xE0, 0x7E, 0x7E}));
}

TEST(Blocks, AWordBeyondAByteSendsItsLowByte) {
  const auto slot = EmptySlot();
  (*slot)[IDBitCnts_iTotalBitCnt] = 0x123;
  (*slot)[IDBitCnts_iIDBitCnt] = 0x1FF;
  (*slot)[IDDispParms_iFACDispLen] = 130;
  EXPECT_EQ(BuildBlock(kFormatBlock, *slot), (Block{0x02, 0, 0, 0x7F, 0x23, 0, 0, 0}));
  (*slot)[TimeParms_iBitStrmTO] = 1028;  // 257 steps
  EXPECT_EQ(BuildBlock(kTimeBlock, *slot)[1], 1);
}

TEST(Blocks, HoldTimesAreRoundedDown) {
  const auto slot = EmptySlot();
  (*slot)[TimeParms_iIDHoldTO] = 130;
  const Block block = BuildBlock(kTimeBlock, *slot);
  EXPECT_EQ(block[2], 2);
  Read(*slot, kTimeBlock, block);
  EXPECT_EQ((*slot)[TimeParms_iIDHoldTO], 100);
  (*slot)[TimeParms_iBitStrmTO] = 1001;
  EXPECT_EQ(BuildBlock(kTimeBlock, *slot)[1], 250);
}

struct FlagRow {
  const char* name;
  BlockNumber block;
  std::size_t byte;
  int bit;
  FieldId field;
};

const std::vector<FlagRow> kFlags = {
    {"bFixLenDsp", kFormatBlock, 8, 0, CfgFlags_bFixLenDsp},
    {"bFrcBitCntEx", kFormatBlock, 8, 1, CfgFlags_bFrcBitCntEx},
    {"bStripFac", kFormatBlock, 8, 2, CfgFlags_bStripFac},
    {"bSndFac", kFormatBlock, 8, 3, CfgFlags_bSndFac},
    {"bUseDelFac2Id", kFormatBlock, 8, 4, CfgFlags_bUseDelFac2Id},
    {"bNoUseELChar", kFormatBlock, 8, 5, CfgFlags_bNoUseELChar},
    {"bSndOnRx", kFormatBlock, 8, 6, CfgFlags_bSndOnRx},
    {"bHaltKBSnd", kFormatBlock, 8, 7, CfgFlags_bHaltKBSnd},
    {"iRedLEDState", kDisplayBlock, 1, 0, LEDCtrl_iRedLEDState},
    {"iGrnLEDState", kDisplayBlock, 1, 1, LEDCtrl_iGrnLEDState},
    {"iRelayState", kDisplayBlock, 1, 2, BprRlyCtrl_iRelayState},
    {"iBeeperState", kDisplayBlock, 1, 3, BprRlyCtrl_iBeeperState},
    {"bNotBootDev", kDisplayBlock, 1, 4, CfgFlags3_bNotBootDev},
    {"bUseLeadChrs", kDisplayBlock, 2, 0, CfgFlags2_bUseLeadChrs},
    {"bAppCtrlsLED", kDisplayBlock, 2, 1, LEDCtrl_bAppCtrlsLED},
    {"bDspHex", kDisplayBlock, 2, 2, CfgFlags2_bDspHex},
    {"bWiegInvData", kDisplayBlock, 2, 3, CfgFlags2_bWiegInvData},
    {"bBeepID", kDisplayBlock, 2, 4, CfgFlags2_bBeepID},
    {"bRevWiegBits", kDisplayBlock, 2, 5, CfgFlags2_bRevWiegBits},
    {"bRevBytes", kDisplayBlock, 2, 6, CfgFlags2_bRevBytes},
    {"bUseInvDataF", kDisplayBlock, 2, 7, CfgFlags2_bUseInvDataF},
};

// Block 1 is sent from iTPCfgFlg3 and ExFeatures01, whatever these say.
const std::vector<FlagRow> kReadFlags = {
    {"bUseNumKP", kTimeBlock, 7, 7, CfgFlags3_bUseNumKP},
    {"bSndSFON", kTimeBlock, 7, 6, CfgFlags3_bSndSFON},
    {"bSndSFFC", kTimeBlock, 7, 5, CfgFlags3_bSndSFFC},
    {"bSndSFID", kTimeBlock, 7, 4, CfgFlags3_bSndSFID},
    {"bPrxProEm", kTimeBlock, 7, 3, CfgFlags3_bPrxProEm},
    {"bLowerCaseHex", kTimeBlock, 7, 2, CfgFlags3_bLowerCaseHex},
    {"bUse64Bit", kTimeBlock, 7, 1, CfgFlags3_bUse64Bit},
    {"isASCIIpresent", kTimeBlock, 8, 5, CfgFlags2_isASCIIpresent},
};

Block OneBit(std::size_t byte, int bit) {
  Block block{};
  block[byte - 1] = static_cast<std::uint8_t>(1 << bit);
  return block;
}

TEST(Blocks, EachFlagIsItsOwnBit) {
  for (const auto* table : {&kFlags, &kReadFlags}) {
    for (const FlagRow& row : *table) {
      const auto slot = EmptySlot();
      (*slot)[row.field] = -7;
      Block others;
      others.fill(0xFF);
      others[row.byte - 1] = static_cast<std::uint8_t>(~(1 << row.bit));
      Read(*slot, row.block, others);
      EXPECT_EQ((*slot)[row.field], 0) << row.name;
      Read(*slot, row.block, OneBit(row.byte, row.bit));
      EXPECT_EQ((*slot)[row.field], 1) << row.name;
    }
  }
}

TEST(Blocks, AFlagIsSentWhenItsWordIsNotZero) {
  for (const FlagRow& row : kFlags) {
    for (const std::int16_t word : {std::int16_t{1}, std::int16_t{256}, std::int16_t{-32768}}) {
      const auto slot = EmptySlot();
      (*slot)[row.field] = word;
      EXPECT_EQ(BuildBlock(row.block, *slot), OneBit(row.byte, row.bit)) << row.name << ' ' << word;
    }
  }
  for (const FlagRow& row : kReadFlags) {
    const auto slot = EmptySlot();
    (*slot)[row.field] = 1;
    EXPECT_EQ(BuildBlock(kTimeBlock, *slot), Block{}) << row.name;
    EXPECT_EQ(BuildBlock(kDisplayBlock, *slot), Block{}) << row.name;
  }
}

TEST(Blocks, UnassignedBytesAreNotReadAndSentAsZero) {
  const auto slot = EmptySlot();
  Block block{};
  block[0] = 0xFF;
  Read(*slot, kTimeBlock, block);
  EXPECT_EQ(slot->record, EmptySlot()->record);
  Read(*slot, kDisplayBlock, Block{0xE0});
  EXPECT_EQ(slot->record, EmptySlot()->record);
}

TEST(Blocks, OnlyReportsTellOfTheBootDevice) {
  const auto slot = EmptySlot();
  (*slot)[CfgFlags3_bNotBootDev] = 1;
  TakeBlock(kDisplayBlock, Block{0x10}, *slot, false);
  EXPECT_EQ((*slot)[CfgFlags3_bNotBootDev], 0);
  TakeBlock(kDisplayBlock, Block{0x10}, *slot, true);
  EXPECT_EQ((*slot)[CfgFlags3_bNotBootDev], 1);
}

TEST(Blocks, PadWordsAreKeptOverARead) {
  const auto slot = EmptySlot();
  for (RecordWords& words : slot->record) words.fill(0x55);
  Block ones;
  ones.fill(0xFF);
  for (const BlockNumber number : {kFormatBlock, kTimeBlock, kDisplayBlock, kExtensionBlock}) {
    Read(*slot, number, ones);
  }
  for (const FieldId pad :
       {IDBitCnts_iPad4, IDBitCnts_iPad7, IDDispParms_iPad5, IDDispParms_iPad7, TimeParms_iPad6,
        IDDispParms2_iPad6, IDDispParms2_iPad7, IDDispParms3_iPad4, IDDispParms3_iPad7, LEDCtrl_iPad3,
        LEDCtrl_iPad6, BprRlyCtrl_iPad0, BprRlyCtrl_iPad3, BprRlyCtrl_iPad6}) {
    EXPECT_EQ((*slot)[pad], 0x55) << pad.record << ' ' << int{pad.word};
  }
  EXPECT_EQ((*slot)[LEDCtrl_bVolatile], 0);
  EXPECT_EQ((*slot)[BprRlyCtrl_bVolatile], 0);
}

TEST(Blocks, ParityCountsShareAByte) {
  const auto slot = EmptySlot();
  Read(*slot, kFormatBlock, Block{0, 0, 0xA7});
  EXPECT_EQ((*slot)[IDBitCnts_iLeadParityBitCnt], 7);
  EXPECT_EQ((*slot)[IDBitCnts_iTrailParityBitCnt], 10);
  EXPECT_EQ(BuildBlock(kFormatBlock, *slot)[2], 0xA7);
  EXPECT_EQ(slot->bDirtyExt, 0U);
}

TEST(Blocks, ParityAbove15TravelsAsAnExcess) {
  const auto slot = EmptySlot();
  (*slot)[IDBitCnts_iLeadParityBitCnt] = 20;
  (*slot)[IDBitCnts_iTrailParityBitCnt] = 142;
  EXPECT_EQ(BuildBlock(kFormatBlock, *slot)[2], 0xFF);
  EXPECT_EQ(slot->ExtBytes[0], 5);
  EXPECT_EQ(slot->ExtBytes[1], 127);
  EXPECT_EQ(slot->bDirtyExt, 1U);
  EXPECT_EQ(BuildBlock(kExtensionBlock, *slot, false), (Block{5, 127}));

  slot->bDirtyExt = 0;
  BuildBlock(kFormatBlock, *slot);
  EXPECT_EQ(slot->bDirtyExt, 0U) << "an excess that is the same makes nothing dirty";

  (*slot)[IDBitCnts_iLeadParityBitCnt] = 15;
  (*slot)[IDBitCnts_iTrailParityBitCnt] = -1;
  BuildBlock(kFormatBlock, *slot);
  EXPECT_EQ(slot->ExtBytes[0], 0);
  EXPECT_EQ(slot->ExtBytes[1], 0);
  EXPECT_EQ(slot->bDirtyExt, 1U);
}

TEST(Blocks, AnExcessIsAddedOnReading) {
  const auto slot = EmptySlot();
  Read(*slot, kFormatBlock, Block{0, 0, 0x3F});
  Read(*slot, kExtensionBlock, Block{5, 255, 0x31, 0x41, 0x51, 0x02, 0x02, 9});
  EXPECT_EQ((*slot)[IDBitCnts_iLeadParityBitCnt], 20);
  EXPECT_EQ((*slot)[IDBitCnts_iTrailParityBitCnt], 258);
  EXPECT_EQ(slot->ExtBytes, (std::array<std::uint16_t, 7>{5, 255, 0x31, 0x41, 0x51, 0x02, 0x02}));
}

TEST(Blocks, OptionBitsOfBlock3LeaveTheOthersAsKept) {
  const auto slot = EmptySlot();
  Read(*slot, kExtensionBlock, Block{0, 0, 0x11, 0x22, 0x33, 0xFD, 0xFD, 0});
  EXPECT_EQ(slot->ExtendedPrecisionMath, 0);
  EXPECT_EQ(slot->AZERTYShiftlock, 0);
  slot->ExtendedPrecisionMath = 256;
  EXPECT_EQ(BuildBlock(kExtensionBlock, *slot, false), (Block{0, 0, 0x11, 0x22, 0x33, 0xFF, 0xFD, 0}));
  slot->ExtendedPrecisionMath = 0;
  slot->AZERTYShiftlock = -1;
  EXPECT_EQ(BuildBlock(kExtensionBlock, *slot, false), (Block{0, 0, 0x11, 0x22, 0x33, 0xFD, 0xFF, 0}));
  Read(*slot, kExtensionBlock, Block{0, 0, 0, 0, 0, 0xFF, 0xFF, 0});
  EXPECT_EQ(slot->ExtendedPrecisionMath, 1);
  EXPECT_EQ(slot->AZERTYShiftlock, 1);
  slot->ExtendedPrecisionMath = slot->AZERTYShiftlock = 0;
  EXPECT_EQ(BuildBlock(kExtensionBlock, *slot, false), (Block{0, 0, 0, 0, 0, 0xFD, 0xFD, 0}));
}

TEST(Blocks, TheOutputFormatIsInBlock3OfExtendedReadersOnly) {
  const auto slot = EmptySlot();
  (*slot)[IDDispParms_iExOutputFormat] = 7;
  Read(*slot, kExtensionBlock, Block{0, 0, 0, 0, 0, 0, 0, 1});
  EXPECT_EQ((*slot)[IDDispParms_iExOutputFormat], 7) << "not taken without the feature bit";
  EXPECT_EQ(BuildBlock(kExtensionBlock, *slot, false)[7], 0);

  (*slot)[TimeParms_ExFeatures01] = 0x40;
  EXPECT_EQ(BuildBlock(kExtensionBlock, *slot, true)[7], 7);
  Read(*slot, kExtensionBlock, Block{0, 0, 0, 0, 0, 0, 0, 0xFE});
  EXPECT_EQ((*slot)[IDDispParms_iExOutputFormat], 0xFE);
  EXPECT_EQ(BuildBlock(kExtensionBlock, *slot, true), (Block{0, 0, 0, 0, 0, 0, 0, 0xFE}));
}

struct SanitiseRow {
  FieldId field;
  std::int16_t before;
  std::int16_t after;
  std::int16_t features = 0;
};

TEST(Blocks, SanitisingBringsFieldsIntoTheirRanges) {
  const std::vector<SanitiseRow> rows = {
      {IDBitCnts_iLeadParityBitCnt, 15, 15},
      {IDBitCnts_iLeadParityBitCnt, 16, 15},
      {IDBitCnts_iLeadParityBitCnt, -1, -1},
      {IDBitCnts_iLeadParityBitCnt, 142, 142, 0x80},
      {IDBitCnts_iLeadParityBitCnt, 143, 142, 0x80},
      {IDBitCnts_iTrailParityBitCnt, 15, 15},
      {IDBitCnts_iTrailParityBitCnt, 258, 15},
      {IDBitCnts_iTrailParityBitCnt, 142, 142, 0x80},
      {IDBitCnts_iTrailParityBitCnt, 270, 142, 0x80},
      {IDBitCnts_iIDBitCnt, 0, 1},
      {IDBitCnts_iIDBitCnt, -5, 1},
      {IDBitCnts_iIDBitCnt, 1, 1},
      {IDBitCnts_iIDBitCnt, 255, 255},
      {IDBitCnts_iIDBitCnt, 256, 64},
      {IDBitCnts_iTotalBitCnt, -1, 26},
      {IDBitCnts_iTotalBitCnt, 25, 26},
      {IDBitCnts_iTotalBitCnt, 26, 26},
      {IDBitCnts_iTotalBitCnt, 255, 255},
      {IDBitCnts_iTotalBitCnt, 256, 255},
      {IDDispParms_iFACIDDelim, 255, 255},
      {IDDispParms_iFACIDDelim, 256, 0},
      {IDDispParms_iELDelim, 255, 255},
      {IDDispParms_iELDelim, 256, 0},
      {IDDispParms_iIDDispLen, 25, 25},
      {IDDispParms_iIDDispLen, 26, 25},
      {IDDispParms_iFACDispLen, 25, 25},
      {IDDispParms_iFACDispLen, 255, 25},
      {TimeParms_iBitStrmTO, 1020, 1020},
      {TimeParms_iBitStrmTO, 1021, 1020},
      {TimeParms_iIDHoldTO, 12750, 12750},
      {TimeParms_iIDHoldTO, 12751, 12750},
      {TimeParms_iIDLockOutTm, 12751, 12750},
      {TimeParms_iUSBKeyPrsTm, 1021, 1020},
      {TimeParms_iUSBKeyRlsTm, 1021, 1020},
      {IDDispParms2_iLeadChrCnt, 3, 3},
      {IDDispParms2_iLeadChrCnt, 4, 0},
      {IDDispParms3_iTrailChrCnt, 3, 3},
      {IDDispParms3_iTrailChrCnt, 4, 0},
  };
  for (const SanitiseRow& row : rows) {
    const auto slot = EmptySlot();
    (*slot)[IDBitCnts_iIDBitCnt] = 1;
    (*slot)[IDBitCnts_iTotalBitCnt] = 26;
    (*slot)[TimeParms_ExFeatures01] = row.features;
    auto expected = slot->record;
    (*slot)[row.field] = row.before;
    expected[row.field.record][row.field.word] = row.after;
    Sanitize(slot->record);
    EXPECT_EQ(slot->record, expected) << row.field.record << ' ' << int{row.field.word} << ' ' << row.before;
  }
}

}  // namespace
}  // namespace tavlyn::test
