// Texts that a reader hands out in pieces of eight characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "reader/commands.h"

namespace tavlyn::reader {

inline constexpr std::size_t kTextPiece = 8;

// Numbers of the texts of the device text command.
enum class Text : std::uint8_t {
  kModelNumber = 0,
  kSerialNumber = 2,
  kPlatform = 3,
  kFullVersion = 4,
  kBuildDate = 5,
  kCopyright = 6,
  kFirmwareFile = 7,
  kCpu = 8,
};

// Fills text, a multiple of eight bytes, piece by piece; ends at the first failure, which over reports ors
// reportError into the error word. The model number has its own command, which sends no number.
bool FetchText(const Command& command, Text number, std::uint32_t reportError, std::span<char> text);

}  // namespace tavlyn::reader
