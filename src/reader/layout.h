// The reader's configuration blocks: eight bytes each, b1 to b8, the same over USB and serial. layout.cpp has
// a table of where every field lies, and routines for what a table cannot say.
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
