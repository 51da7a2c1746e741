// The reader's configuration blocks: eight bytes each, b1 to b8, the same over USB and serial. A table says
// where every field lies; what it cannot say stands in layout.cpp.
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

// Puts what a block says into the slot. bootDeviceTells: the link is one over which bNotBootDev is true.
void TakeBlock(BlockNumber number, const Block& block, tsCfgSlot& slot, bool bootDeviceTells);

// The block as the slot has it. The format block leaves the excess of its parity counts in ExtBytes, which
// marks the extension block for sending when it changes. extendedFields: the reader keeps iExOutputFormat in
// the extension block.
Block BuildBlock(BlockNumber number, tsCfgSlot& slot, bool extendedFields = false);

// The reader reports a longer form of the separated fields, and iExOutputFormat with it.
bool HasExtendedFields(const tsCfgSlot& slot);

// The byte form of tsCfgFlags3.
std::int16_t Flags3Byte(const tsCfgSlot& slot);

}  // namespace tavlyn::reader
