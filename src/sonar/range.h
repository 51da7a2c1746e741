// The range of the nearest object, also in the form of an ID.
#pragma once

#include <cstdint>

namespace tavlyn::sonar {

std::uint16_t RangeAsId(std::uint8_t* buffer, std::int16_t length);

}  // namespace tavlyn::sonar
