// IDs of a magnetic-stripe reader: the selected piece of the last swipe, as text.
#pragma once

#include <cstdint>

namespace tavlyn {

// The length of the text.
std::uint16_t SorbaneGetActiveId(std::uint8_t* buffer, std::int16_t length);
std::uint16_t SorbaneGetActiveId32(std::uint8_t* buffer, std::int16_t length);

std::uint32_t SorbaneGetQueuedId(std::uint16_t first, std::int16_t second);
std::uint32_t SorbaneQueuedIdPart(std::int16_t index);

}  // namespace tavlyn
