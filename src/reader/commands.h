// The commands of the card reader: what each sends on either wire, and where its reply begins.
//
//   report    b1 b2 …           b0 is the report ID, filled in by the report channel; unused bytes are 0
//   FA frame  FA INS P1 P2 P3   P3 is the length of the data that follows or that is expected
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <tuple>

namespace tavlyn::reader {

// How an FA exchange continues after its header; see fa_frames.h.
enum class Fa : std::uint8_t { kNone, kRecvData, kSendData, kRecvBare, kRecvWhole, kSendStatus };

struct Args {
  std::uint8_t x = 0;
  std::uint8_t y = 0;
};

namespace command {

// The arguments' placeholders in a row.
inline constexpr std::int16_t x = -1;
inline constexpr std::int16_t xBlock = -2;  // 0x80 + x
inline constexpr std::int16_t y = -3;

}  // namespace command

using FilledBytes = std::array<std::uint8_t, 6>;

// The bytes of a command as its row lists them; none when the command does not exist on this wire.
struct CommandBytes {
  std::array<std::int16_t, std::tuple_size_v<FilledBytes>> listed{};
  std::uint8_t count = 0;

  consteval CommandBytes(std::initializer_list<std::int16_t> row)
      : count(static_cast<std::uint8_t>(row.size())) {
    std::ranges::copy(row, listed.begin());
  }

  [[nodiscard]] constexpr FilledBytes With(Args args) const {
    FilledBytes filled{};
    std::ranges::transform(listed, filled.begin(), [args](std::int16_t byte) {
      const int value = byte == command::x        ? args.x
                        : byte == command::xBlock ? 0x80 | args.x
                        : byte == command::y      ? args.y
                                                  : byte;
      return static_cast<std::uint8_t>(value);
    });
    return filled;
  }
};

inline constexpr std::uint8_t kFromP3 = 0xFF;

// What a reply looks like. Members that begin with "fa" are about frames, the others about reports.
struct Form {
  std::uint8_t replyAt = 1;       // where the reply begins, or the data that a command stores
  std::uint8_t faAt = 0;          // the same in the data of a frame
  std::uint8_t echoed = 0;        // how many bytes of the request, from b1, a good reply repeats
  std::uint8_t faEchoed = 0;      // the same from P1
  std::uint8_t faData = kFromP3;  // how many data bytes to expect
  std::uint8_t faTries = 1;
  bool mayStoreKeys = false;  // the trace does not show the data that the command stores
};

struct Command {
  CommandBytes report;  // b1 onward
  CommandBytes fa;      // INS P1 P2 P3, and two more bytes for one command
  Fa routine = Fa::kNone;
  Form form{};
};

namespace command {

using enum Fa;

#define COMMAND(name, does, carries, ...) inline constexpr Command name{__VA_ARGS__};
#include "reader/commands.inc"

}  // namespace command

inline constexpr std::array kCommands = {
#define COMMAND(name, ...) command::name,
#include "reader/commands.inc"
};

static_assert(std::ranges::is_sorted(kCommands, {}, [](const Command& command) {
  constexpr int kAfterReports = 0x10000;
  const auto at = [](const CommandBytes& bytes, std::size_t index) {
    return bytes.listed[index] == command::xBlock ? 0x80 : std::max<int>(bytes.listed[index], 0);
  };
  return command.report.count != 0 ? at(command.report, 0) << 8 | at(command.report, 1)
                                   : kAfterReports + (at(command.fa, 0) << 8 | at(command.fa, 1));
}));

}  // namespace tavlyn::reader
