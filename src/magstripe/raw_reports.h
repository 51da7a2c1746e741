// The reports of a transaction, open to programs.
#pragma once

#include <cstdint>

namespace tavlyn {

// Fills the request; index 8 and above send it.
std::uint32_t SorbaneSetRawByte(std::int16_t index, std::uint8_t value);
std::uint32_t SorbaneRawReplyByte(std::uint16_t index);

}  // namespace tavlyn
