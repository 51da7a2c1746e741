// One exchange with the active magnetic-stripe reader: a command text out, 24 bytes back.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <span>

#include "magstripe/commands.h"

namespace tavlyn {

inline constexpr std::size_t kSorbanePacket = 24;
using SorbaneReply = std::array<std::uint8_t, kSorbanePacket>;
using SorbaneLetters = std::initializer_list<char>;

// Not 0 when the reply begins with R; reply has room for 24 bytes and is cleared first. There are no tries
// beyond those of the report channel.
std::uint32_t SorbaneTransact(const char* text, std::uint8_t* reply);

// A command of the table with its arguments. The reply is good when it begins as the table tells.
bool SorbaneQuery(const SorbaneCommand& command, SorbaneReply& reply, SorbaneLetters letters = {},
                  std::span<const std::uint8_t> bytes = {});
// The same for a reply in which nothing is looked at.
bool SorbaneTell(const SorbaneCommand& command, SorbaneLetters letters = {},
                 std::span<const std::uint8_t> bytes = {});
// The same for the bytes of a reply. Bytes that do not come are 0.
bool SorbaneAsk(const SorbaneCommand& command, std::span<std::uint8_t> bytes, SorbaneLetters letters = {});

// Asks for the part number, twice if need be.
bool SorbaneIdentify(SorbaneReply& reply);

// Pairs of hexadecimal digits up to the first that does not begin like one, ten at most. A pair that does not
// scan is 0; so are bytes for which there is no pair.
void ParseHexPairs(std::span<const std::uint8_t> text, std::span<std::uint8_t> bytes);

bool SorbaneOnSerialPort();

// A magnetic-stripe reader answers; the wake-up of a serial line goes before.
bool SorbanePing();

}  // namespace tavlyn
