// Commands that an application spells out itself, byte by byte.
#pragma once

#include <cstdint>

namespace tavlyn {

// Stores a byte of the command; index 8 or above sends it.
std::uint32_t SetRawCommand(std::int16_t index, std::uint8_t value);
std::uint32_t RawReplyByte(std::uint16_t index);

}  // namespace tavlyn
