// Bytes as pairs of hexadecimal digits.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "sim/devices/faults.h"

namespace tavlyn::sim {

// None if the text is empty, has an odd number of digits or contains anything else.
std::optional<Bytes> ParseHex(std::string_view text);
// Upper case, without blanks.
std::string HexDigits(std::span<const std::uint8_t> bytes);

}  // namespace tavlyn::sim
