// One exchange with the active magnetic-stripe reader: a command text out, 24 bytes back.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>

#include "magstripe/commands.h"

namespace tavlyn::magstripe {

inline constexpr std::size_t kPacket = 24;
using Reply = std::array<std::uint8_t, kPacket>;
// What takes the place of the ? in a command's name.
using Letters = std::initializer_list<char>;

// True when the reply begins with R; it is cleared first. There are no retries beyond those of the report
// channel.
bool Exchange(const char* text, Reply& reply);
// A command of the table with its arguments. The reply is good when it begins as the table says.
bool Exchange(const Command& command, Reply& reply, Letters letters = {},
              std::span<const std::uint8_t> bytes = {});

// The same for the bytes of a reply, as many as the table says. Missing ones are 0.
bool Ask(const Command& command, Payload& bytes, Letters letters = {});
// The same when the contents of the reply do not matter.
bool Tell(const Command& command, Letters letters = {}, std::span<const std::uint8_t> bytes = {});

// Asks for the part number, twice if need be.
bool Identify(Reply& reply);

// Parses pairs of hexadecimal digits up to the first that does not begin like one, at most ten. A malformed
// pair is 0, and so are bytes for which there is no pair.
void ParseHexPairs(std::span<const std::uint8_t> text, std::span<std::uint8_t> bytes);

}  // namespace tavlyn::magstripe
