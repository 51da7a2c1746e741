// Bytes as pairs of hexadecimal digits.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavlyn::ctl {

using Bytes = std::vector<std::uint8_t>;

// Throws Failure, which names what but does not repeat the text: it may be a key.
Bytes ParseHex(const std::string& text, const char* what);
std::string HexText(const Bytes& bytes);

}  // namespace tavlyn::ctl
