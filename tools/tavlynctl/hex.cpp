#include "tools/tavlynctl/hex.h"

#include <cstdio>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

std::string Hex(unsigned value, int digits) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*X", digits, value);
  return text;
}

// FNV-1a.
std::string HexHash(std::string_view text) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char one : text) hash = (hash ^ static_cast<std::uint8_t>(one)) * 1099511628211U;
  return Hex(static_cast<std::uint32_t>(hash >> 32U), 8) + Hex(static_cast<std::uint32_t>(hash), 8);
}

Bytes ParseHex(const std::string& text, const char* what) {
  const bool digits = text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
  if (!digits || text.size() % 2 != 0) {
    throw Failure(kUsage, std::string(what) + " is hexadecimal, two digits for each byte");
  }
  Bytes bytes;
  for (std::size_t at = 0; at < text.size(); at += 2) {
    bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(at, 2), nullptr, 16)));
  }
  return bytes;
}

std::string HexText(const Bytes& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += Hex(byte, 2);
  return text;
}

}  // namespace tavlyn::ctl
