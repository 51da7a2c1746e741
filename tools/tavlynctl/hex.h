// Numbers and bytes in hexadecimal digits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavlyn::ctl {

using Bytes = std::vector<std::uint8_t>;

// With at least this many digits.
std::string Hex(unsigned value, int digits);

// Sixteen digits that tell texts apart, for names of files.
std::string HexHash(std::string_view text);

// From pairs of digits. Throws Failure, which names what but does not repeat the text: it may be a key.
Bytes ParseHex(const std::string& text, const char* what);
std::string HexText(const Bytes& bytes);

}  // namespace tavlyn::ctl
