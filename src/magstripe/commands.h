// The commands of the magnetic-stripe reader. A command is a short text; numbers are sent as pairs of
// upper-case hexadecimal digits.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace tavlyn::magstripe {

inline constexpr const char* kDigits = "0123456789ABCDEF";

struct Command {
  const char* name;           // each ? stands for one character of the arguments
  std::uint8_t sent = 0;      // bytes after the name; those that are not given are 0
  const char* begins = "R";   // a good reply begins like this; the rest of it is often ignored
  std::uint8_t received = 0;  // bytes of the reply
  std::uint8_t at = 3;        // where they begin
};

// Room for the bytes of any command.
using Payload = std::array<std::uint8_t, 10>;

#define COMMAND(id, does, ...) inline constexpr Command id{__VA_ARGS__};
#include "magstripe/commands.inc"

inline constexpr std::array kCommands = {
#define COMMAND(id, does, ...) id,
#include "magstripe/commands.inc"
};
static_assert(std::ranges::is_sorted(kCommands, {},
                                     [](const Command& command) { return std::string_view(command.name); }));

}  // namespace tavlyn::magstripe
