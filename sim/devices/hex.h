// Bytes as pairs of hexadecimal digits.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "sim/devices/faults.h"

namespace tavlyn::sim {

// None when the text is empty, has an odd digit or anything else in it.
std::optional<Bytes> ParseHex(std::string_view text);
// Upper case, without blanks.
std::string HexDigits(std::span<const std::uint8_t> bytes);

}  // namespace tavlyn::sim
