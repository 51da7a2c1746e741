#include "reader/layout.h"

#include <algorithm>

namespace tavlyn::reader {
namespace {

using layout::As;
using layout::kLayout;
using layout::Packed;
using layout::Way;
using namespace field;

// The counts of lead and trail characters share b5; the characters follow.
constexpr std::size_t kCountsAt = 4;
constexpr std::size_t kCharactersAt = 5;

consteval std::uint8_t BitsOf(const Packed& row) {
  switch (row.as) {
    case As::kFlag: return static_cast<std::uint8_t>(1 << row.shift);
    case As::kNibble: return static_cast<std::uint8_t>(0x0F << row.shift);
    case As::kByte: return row.writeMask;
  }
  return 0;
}

// No two fields that are written share a bit, and none overlaps the characters.
consteval bool EachBitIsWrittenOnce() {
  std::array<Block, 4> taken{};
  for (std::size_t at = kCountsAt; at < taken[kDisplayBlock].size(); ++at) taken[kDisplayBlock][at] = 0xFF;
  for (const Packed& row : kLayout) {
    if (row.way == Way::kReadOnly) continue;
    std::uint8_t& byte = taken[row.block][row.byte - 1U];
    if ((byte & BitsOf(row)) != 0) return false;
    byte |= BitsOf(row);
  }
  return true;
}
static_assert(EachBitIsWrittenOnce());

std::uint8_t Pack(const Packed& row, std::int16_t value) {
  switch (row.as) {
    case As::kFlag: return static_cast<std::uint8_t>((value != 0 ? 1 : 0) << row.shift);
    case As::kNibble: value = std::min<std::int16_t>(value, 15); break;
    case As::kByte: break;
  }
  return static_cast<std::uint8_t>((value / FieldOf(row.field).step & row.writeMask) << row.shift);
}

std::int16_t Unpack(const Packed& row, std::uint8_t byte) {
  const int mask = row.as == As::kFlag ? 1 : row.as == As::kNibble ? 0x0F : 0xFF;
  return static_cast<std::int16_t>((byte >> row.shift & mask) * FieldOf(row.field).step);
}

void TakeCharacters(const Block& block, tsCfgSlot& slot) {
  RecordWords& leads = slot.record[kIDDispParms2];
  RecordWords& trails = slot.record[kIDDispParms3];
  std::fill_n(leads.begin() + 1, kLeadAndTrail, std::int16_t{0});
  std::fill_n(trails.begin() + 1, kLeadAndTrail, std::int16_t{0});
  const int leadCount = block[kCountsAt] & 3;
  leads[0] = static_cast<std::int16_t>(leadCount);
  trails[0] = static_cast<std::int16_t>(block[kCountsAt] >> 4 & 3);
  // All places after the lead characters are taken, even if there are more than the trail count says.
  for (int place = 0; place < kLeadAndTrail; ++place) {
    const auto at = static_cast<std::size_t>(place);
    const std::int16_t character = block[kCharactersAt + at];
    if (place < leadCount) {
      leads[1 + at] = character;
    } else {
      trails[1 + at - static_cast<std::size_t>(leadCount)] = character;
    }
  }
}

void BuildCharacters(const tsCfgSlot& slot, Block& block) {
  int lead = slot[IDDispParms2_iLeadChrCnt];
  int trail = slot[IDDispParms3_iTrailChrCnt];
  if (lead + trail > kLeadAndTrail) {
    lead = std::min(lead, kLeadAndTrail);
    trail = kLeadAndTrail - lead;
  }
  block[kCountsAt] =
      static_cast<std::uint8_t>(static_cast<unsigned>(trail) << 4 | static_cast<unsigned>(lead));
  std::size_t place = kCharactersAt;
  const auto append = [&](Record record, int count) {
    for (int at = 0; at < std::min(count, kLeadAndTrail) && place < block.size(); ++at) {
      block[place++] = static_cast<std::uint8_t>(slot.record[record][static_cast<std::size_t>(at) + 1]);
    }
  };
  append(kIDDispParms2, lead);
  append(kIDDispParms3, trail);
}

// What does not fit the nibble of the format block travels in the extension block.
void KeepExcess(tsCfgSlot& slot, FieldId count, std::size_t word) {
  const auto excess = static_cast<std::uint16_t>(slot[count] > 15 ? slot[count] - 15 : 0);
  if (slot.ExtBytes[word] == excess) return;
  slot.ExtBytes[word] = excess;
  slot.bDirtyExt = 1;
}

constexpr std::uint8_t kOptionBit = 2;

void TakeExtension(const Block& block, tsCfgSlot& slot) {
  std::copy_n(block.begin(), kExtBytes, slot.ExtBytes.begin());
  if (HasExtendedFields(slot)) slot[IDDispParms_iExOutputFormat] = block[7];
  slot[IDBitCnts_iLeadParityBitCnt] = static_cast<std::int16_t>(slot[IDBitCnts_iLeadParityBitCnt] + block[0]);
  slot[IDBitCnts_iTrailParityBitCnt] =
      static_cast<std::int16_t>(slot[IDBitCnts_iTrailParityBitCnt] + block[1]);
  slot.ExtendedPrecisionMath = block[5] >> 1 & 1;
  slot.AZERTYShiftlock = block[6] >> 1 & 1;
}

void BuildExtension(const tsCfgSlot& slot, bool extendedFields, Block& block) {
  std::ranges::transform(slot.ExtBytes, block.begin(),
                         [](std::uint16_t word) { return static_cast<std::uint8_t>(word); });
  const auto option = [](std::uint8_t kept, std::int32_t on) {
    return static_cast<std::uint8_t>((kept & ~kOptionBit) | (on != 0 ? kOptionBit : 0));
  };
  block[5] = option(block[5], slot.ExtendedPrecisionMath);
  block[6] = option(block[6], slot.AZERTYShiftlock);
  if (extendedFields) block[7] = static_cast<std::uint8_t>(slot[IDDispParms_iExOutputFormat]);
}

}  // namespace

void TakeBlock(BlockNumber number, const Block& block, tsCfgSlot& slot, bool takesNotBootDev) {
  for (const Packed& row : kLayout) {
    if (row.block == number) slot[row.field] = Unpack(row, block[row.byte - 1U]);
  }
  if (number == kDisplayBlock) {
    TakeCharacters(block, slot);
    if (!takesNotBootDev) slot[CfgFlags3_bNotBootDev] = 0;
    slot[LEDCtrl_bVolatile] = 0;
    slot[BprRlyCtrl_bVolatile] = 0;
  }
  if (number == kExtensionBlock) TakeExtension(block, slot);
}

Block BuildBlock(BlockNumber number, tsCfgSlot& slot, bool extendedFields) {
  Block block{};
  for (const Packed& row : kLayout) {
    if (row.block == number && row.way == Way::kBoth) block[row.byte - 1U] |= Pack(row, slot[row.field]);
  }
  if (number == kFormatBlock) {
    KeepExcess(slot, IDBitCnts_iLeadParityBitCnt, 0);
    KeepExcess(slot, IDBitCnts_iTrailParityBitCnt, 1);
  }
  if (number == kDisplayBlock) BuildCharacters(slot, block);
  if (number == kExtensionBlock) BuildExtension(slot, extendedFields, block);
  return block;
}

bool HasExtendedFields(const tsCfgSlot& slot) {
  return (slot[TimeParms_ExFeatures01] & kExtendedSepFields) != 0;
}

std::int16_t Flags3Byte(const tsCfgSlot& slot) {
  std::int16_t byte = 0;
  for (const Packed& row : kLayout) {
    if (row.field.record == kCfgFlags3 && row.block == kTimeBlock) {
      byte = static_cast<std::int16_t>(byte | Pack(row, slot[row.field]));
    }
  }
  return byte;
}

}  // namespace tavlyn::reader
