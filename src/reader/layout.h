// The reader's configuration blocks: eight bytes each, b1 to b8, the same over USB and serial. A table says
// where every field lies; layout.cpp does what it cannot say.
#pragma once

#include <array>
#include <cstdint>

#include "core/mirror.h"

namespace tavlyn::reader {

// Bytes b1 to b8 at indexes 0 to 7.
using Block = std::array<std::uint8_t, 8>;

enum BlockNumber : std::uint8_t { kFormatBlock, kTimeBlock, kDisplayBlock, kExtensionBlock };

// Lead characters, then trail characters, share this many places.
inline constexpr int kLeadAndTrail = 3;

namespace layout {

enum class Way : std::uint8_t { kBoth, kReadOnly };
enum class As : std::uint8_t { kFlag, kByte, kNibble };

struct Packed {
  BlockNumber block;
  std::uint8_t byte;   // 1 to 8
  std::uint8_t shift;  // of the lowest bit
  As as;
  FieldId field;
  std::uint8_t writeMask = 0xFF;
  Way way = Way::kBoth;
};

consteval Packed Flag(BlockNumber block, std::uint8_t byte, std::uint8_t bit, FieldId field,
                      Way way = Way::kBoth) {
  return {block, byte, bit, As::kFlag, field, 1, way};
}
consteval Packed Byte(BlockNumber block, std::uint8_t byte, FieldId field, std::uint8_t writeMask = 0xFF) {
  return {block, byte, 0, As::kByte, field, writeMask, Way::kBoth};
}
consteval Packed Nibble(BlockNumber block, std::uint8_t byte, std::uint8_t shift, FieldId field) {
  return {block, byte, shift, As::kNibble, field, 0x0F, Way::kBoth};
}

inline constexpr std::uint8_t kFlags3Byte = 7;

using namespace field;

inline constexpr std::array kLayout = {
    Byte(kFormatBlock, 1, IDDispParms_iFACDispLen, 0x7F),
    Byte(kFormatBlock, 2, IDDispParms_iIDDispLen, 0x7F),
    Nibble(kFormatBlock, 3, 0, IDBitCnts_iLeadParityBitCnt),
    Nibble(kFormatBlock, 3, 4, IDBitCnts_iTrailParityBitCnt),
    Byte(kFormatBlock, 4, IDBitCnts_iIDBitCnt, 0x7F),
    Byte(kFormatBlock, 5, IDBitCnts_iTotalBitCnt),
    Byte(kFormatBlock, 6, IDDispParms_iFACIDDelim),
    Byte(kFormatBlock, 7, IDDispParms_iELDelim),
    Flag(kFormatBlock, 8, 0, CfgFlags_bFixLenDsp),
    Flag(kFormatBlock, 8, 1, CfgFlags_bFrcBitCntEx),
    Flag(kFormatBlock, 8, 2, CfgFlags_bStripFac),
    Flag(kFormatBlock, 8, 3, CfgFlags_bSndFac),
    Flag(kFormatBlock, 8, 4, CfgFlags_bUseDelFac2Id),
    Flag(kFormatBlock, 8, 5, CfgFlags_bNoUseELChar),
    Flag(kFormatBlock, 8, 6, CfgFlags_bSndOnRx),
    Flag(kFormatBlock, 8, 7, CfgFlags_bHaltKBSnd),

    Byte(kTimeBlock, 2, TimeParms_iBitStrmTO),
    Byte(kTimeBlock, 3, TimeParms_iIDHoldTO),
    Byte(kTimeBlock, 4, TimeParms_iIDLockOutTm),
    Byte(kTimeBlock, 5, TimeParms_iUSBKeyPrsTm),
    Byte(kTimeBlock, 6, TimeParms_iUSBKeyRlsTm),
    Byte(kTimeBlock, kFlags3Byte, TimeParms_iTPCfgFlg3),
    Flag(kTimeBlock, kFlags3Byte, 7, CfgFlags3_bUseNumKP, Way::kReadOnly),
    Flag(kTimeBlock, kFlags3Byte, 6, CfgFlags3_bSndSFON, Way::kReadOnly),
    Flag(kTimeBlock, kFlags3Byte, 5, CfgFlags3_bSndSFFC, Way::kReadOnly),
    Flag(kTimeBlock, kFlags3Byte, 4, CfgFlags3_bSndSFID, Way::kReadOnly),
    Flag(kTimeBlock, kFlags3Byte, 3, CfgFlags3_bPrxProEm, Way::kReadOnly),
    Flag(kTimeBlock, kFlags3Byte, 2, CfgFlags3_bLowerCaseHex, Way::kReadOnly),
    Flag(kTimeBlock, kFlags3Byte, 1, CfgFlags3_bUse64Bit, Way::kReadOnly),
    Byte(kTimeBlock, 8, TimeParms_ExFeatures01),
    Flag(kTimeBlock, 8, 5, CfgFlags2_isASCIIpresent, Way::kReadOnly),

    Flag(kDisplayBlock, 1, 0, LEDCtrl_iRedLEDState),
    Flag(kDisplayBlock, 1, 1, LEDCtrl_iGrnLEDState),
    Flag(kDisplayBlock, 1, 2, BprRlyCtrl_iRelayState),
    Flag(kDisplayBlock, 1, 3, BprRlyCtrl_iBeeperState),
    Flag(kDisplayBlock, 1, 4, CfgFlags3_bNotBootDev),
    Flag(kDisplayBlock, 2, 0, CfgFlags2_bUseLeadChrs),
    Flag(kDisplayBlock, 2, 1, LEDCtrl_bAppCtrlsLED),
    Flag(kDisplayBlock, 2, 2, CfgFlags2_bDspHex),
    Flag(kDisplayBlock, 2, 3, CfgFlags2_bWiegInvData),
    Flag(kDisplayBlock, 2, 4, CfgFlags2_bBeepID),
    Flag(kDisplayBlock, 2, 5, CfgFlags2_bRevWiegBits),
    Flag(kDisplayBlock, 2, 6, CfgFlags2_bRevBytes),
    Flag(kDisplayBlock, 2, 7, CfgFlags2_bUseInvDataF),
    Byte(kDisplayBlock, 3, IDDispParms2_iCrdGnChr0),
    Byte(kDisplayBlock, 4, IDDispParms2_iCrdGnChr1),
};

}  // namespace layout

// Unpacks a block into the slot. takesNotBootDev: false where bNotBootDev cannot be relied on; it then
// becomes 0.
void TakeBlock(BlockNumber number, const Block& block, tsCfgSlot& slot, bool takesNotBootDev);

// Packs a block from the slot. The format block puts the excess of its parity counts into ExtBytes; when that
// changes them, the extension block becomes dirty. extendedFields: the reader keeps iExOutputFormat in the
// extension block.
Block BuildBlock(BlockNumber number, tsCfgSlot& slot, bool extendedFields = false);

// Whether the reader has the longer form of the separated fields, and with it iExOutputFormat.
bool HasExtendedFields(const tsCfgSlot& slot);

// tsCfgFlags3 packed into one byte, as in the time block.
std::int16_t Flags3Byte(const tsCfgSlot& slot);

}  // namespace tavlyn::reader
