// The magnetic-stripe reader's command language: one row per command. Letters a to k stand for the eleven
// user fields; numbers are pairs of upper-case hexadecimal digits.
#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "sim/devices/device.h"
#include "sim/devices/hex.h"
#include "sim/devices/magstripe_state.h"

namespace tavlyn::sim {
namespace {

constexpr const char* kRefused = "N";
constexpr const char* kAccepted = "R";
constexpr std::size_t kLetters = 3;  // of a command, before its parameters
constexpr std::size_t kTrackBlockBytes = 10;

using Sent = const std::string&;
using LetterAnswer = std::string (*)(MagstripeState&, Sent command);

// Queries are answered with the command's second and third letters.
std::string Reply(Sent command, std::span<const std::uint8_t> bytes) {
  return kAccepted + command.substr(1, 2) + HexDigits(bytes);
}

UserField& FieldOf(MagstripeState& state, Sent command) {
  return state.working.fields[static_cast<std::size_t>(command[1] - 'a')];
}

// Takes the parameters if all of them are there; what follows them is ignored.
template <typename Record>
std::string Take(MagstripeState& state, Sent command, Record& record, bool live = false) {
  const std::size_t digits = 2 * record.size();
  if (!state.writing && !live) return kRefused;
  if (command.size() < kLetters + digits) return kRefused;
  const auto bytes = ParseHex(std::string_view(command).substr(kLetters, digits));
  if (!bytes) return kRefused;
  std::copy(bytes->begin(), bytes->end(), record.begin());
  return kAccepted;
}

std::string PartNumber(MagstripeState& state, Sent) { return "RRZ" + state.partNumber; }

std::string Version(MagstripeState& state, Sent command) {
  return Reply(command,
               std::array{High(state.did), Low(state.did), High(state.firmware), Low(state.firmware)});
}

std::string FieldFirst(MagstripeState& state, Sent command) {
  return Reply(command, FieldOf(state, command).first);
}

std::string FieldSecond(MagstripeState& state, Sent command) {
  return Reply(command, FieldOf(state, command).second);
}

std::string FieldControl(MagstripeState& state, Sent command) {
  return Reply(command, FieldOf(state, command).control);
}

std::string System(MagstripeState& state, Sent command) { return Reply(command, state.working.system); }
std::string Leds(MagstripeState& state, Sent command) { return Reply(command, state.working.leds); }

std::string SetFieldFirst(MagstripeState& state, Sent command) {
  return Take(state, command, FieldOf(state, command).first);
}

std::string SetFieldSecond(MagstripeState& state, Sent command) {
  return Take(state, command, FieldOf(state, command).second);
}

std::string SetFieldControl(MagstripeState& state, Sent command) {
  return Take(state, command, FieldOf(state, command).control);
}

std::string SetSystem(MagstripeState& state, Sent command) {
  return Take(state, command, state.working.system);
}

std::string SetLeds(MagstripeState& state, Sent command) {
  return Take(state, command, state.working.leds, true);
}

std::string BeginWrite(MagstripeState& state, Sent) {
  state.writing = true;
  return kAccepted;
}

std::string CommitWrite(MagstripeState& state, Sent) {
  if (!state.writing) return kRefused;
  state.writing = false;
  state.stored = state.working;
  return kAccepted;
}

std::string FactoryDefaults(MagstripeState& state, Sent) {
  state.writing = false;
  state.working = state.stored = FactoryMagSettings();
  return kAccepted;
}

std::string DataAvailable(MagstripeState& state, Sent command) {
  return Reply(command, std::array{state.available});
}

std::string ClearData(MagstripeState& state, Sent) {
  ClearAvailable(state);
  return kAccepted;
}

std::string ClearOverrun(MagstripeState& state, Sent) {
  state.overruns = 0;
  return kAccepted;
}

std::string Uptime(MagstripeState& state, Sent command) {
  const auto seconds = static_cast<std::uint32_t>(state.uptime ? state.uptime() / 1000 : 0);
  const std::uint32_t cards = state.cardsRead;
  return Reply(command, std::array{Low(seconds), High(seconds), Low(seconds >> 16U), High(seconds >> 16U),
                                   Low(cards), High(cards), Low(cards >> 16U), High(cards >> 16U)});
}

std::string Counts(MagstripeState& state, Sent command) {
  return Reply(command, std::array{Low(state.goodTracks), High(state.goodTracks), Low(state.badTracks),
                                   High(state.badTracks), Low(state.commands), High(state.commands),
                                   Low(state.unknownCommands), High(state.unknownCommands)});
}

// There is a blank between the letters and the numbers.
std::string Queue(MagstripeState& state, Sent) {
  const auto count = static_cast<std::uint32_t>(state.waiting.size());
  return "RQ0 " + HexDigits(std::array{Low(count), High(count), state.overruns, Low(state.kQueueRoom)});
}

// G, the track, the block.
std::string TrackBlock(MagstripeState& state, Sent command) {
  const Bytes& track = state.tracks[static_cast<std::size_t>(command[1] - '1')];
  const auto digit = static_cast<unsigned char>(command[2]);
  const auto block = static_cast<std::size_t>(std::isdigit(digit) != 0 ? digit - '0' : digit - 'A' + 10);
  std::array<std::uint8_t, kTrackBlockBytes> bytes{};
  for (std::size_t i = 0; i < bytes.size() && block * kTrackBlockBytes + i < track.size(); ++i) {
    bytes[i] = track[block * kTrackBlockBytes + i];
  }
  return Reply(command, bytes);
}

std::string Beep(MagstripeState& state, Sent command) {
  const int count = command[2] - '0';
  if (count < 1 || count > 5) return kRefused;
  state.beeps.push_back({count, command[1] == 'L'});
  return kAccepted;
}

struct LetterRow {
  // f: a user field's letter; t: a track; x: a hexadecimal digit; 9: a decimal digit; the rest is literal.
  const char* pattern;
  bool takesParameters;
  LetterAnswer answer;
};

constexpr LetterRow kLetterRows[] = {
    {"QRZ", false, PartNumber},     {"QSV", false, Version},      {"Gf0", false, FieldFirst},
    {"Gf1", false, FieldSecond},    {"GfC", false, FieldControl}, {"GS0", false, System},
    {"GL0", false, Leds},           {"Sf0", true, SetFieldFirst}, {"Sf1", true, SetFieldSecond},
    {"SfC", true, SetFieldControl}, {"SS0", true, SetSystem},     {"SL0", true, SetLeds},
    {"FR", false, BeginWrite},      {"FW", false, CommitWrite},   {"FD", false, FactoryDefaults},
    {"QS0", false, DataAvailable},  {"CD0", false, ClearData},    {"CQ", false, ClearOverrun},
    {"QUP", false, Uptime},         {"QDD", false, Counts},       {"GQ0", false, Queue},
    {"Gtx00", false, TrackBlock},   {"BS9", false, Beep},         {"BL9", false, Beep},
};

bool Matches(char pattern, char character) {
  switch (pattern) {
    case 'f': return character >= 'a' && character <= 'k';
    case 't': return character >= '1' && character <= '3';
    case 'x': return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F');
    case '9': return character >= '0' && character <= '9';
    default: return pattern == character;
  }
}

bool Matches(const LetterRow& row, std::string_view command) {
  const std::string_view pattern = row.pattern;
  if (command.size() < pattern.size()) return false;
  if (!row.takesParameters && command.size() != pattern.size()) return false;
  return std::equal(pattern.begin(), pattern.end(), command.begin(),
                    [](char expected, char character) { return Matches(expected, character); });
}

}  // namespace

std::string AnswerMagCommand(MagstripeState& state, const std::string& command) {
  ++state.commands;
  const auto* row = std::find_if(std::begin(kLetterRows), std::end(kLetterRows),
                                 [&](const LetterRow& candidate) { return Matches(candidate, command); });
  if (row != std::end(kLetterRows)) return row->answer(state, command);
  ++state.unknownCommands;
  return kRefused;
}

}  // namespace tavlyn::sim
