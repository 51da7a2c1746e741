// The commands of the sonar sensor.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace tavlyn::sonar {

enum class Command : std::uint8_t {
#define COMMAND(id, opcode, does) id = opcode,
#include "sonar/commands.inc"
};

inline constexpr std::array kCommands = {
#define COMMAND(id, opcode, does) Command::id,
#include "sonar/commands.inc"
};
static_assert(std::ranges::is_sorted(kCommands));

}  // namespace tavlyn::sonar
