// Asking the reader for the card that lies on it.
#pragma once

#include <cstdint>
#include <span>

namespace tavlyn {

// Bit count, with the ID bytes in the buffer; 0 for no card or a failure.
std::uint16_t FetchId64(std::uint8_t* buffer, std::int16_t length);
std::uint16_t FetchId256(std::uint8_t* buffer, std::int16_t length);

}  // namespace tavlyn
