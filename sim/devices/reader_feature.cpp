// The reader's commands over feature reports: one row per command.
#include <algorithm>
#include <array>
#include <cstddef>

#include "sim/devices/reader.h"
#include "sim/devices/reader_actions.h"
#include "sim/devices/reader_extensions.h"

namespace tavlyn::sim {
namespace {

using ReportAnswer = Block (*)(ReaderState&, const Block& command);
using Keep = void (*)(ReaderState&, const Block& command, const Block& data);

struct ReportRow {
  std::array<std::uint8_t, 2> command;
  std::uint8_t length;  // of the bytes that identify the command
  bool plusOnly;        // a plain reader refuses it
  ReportAnswer answer;
  Keep keep;  // what a data report does; null: none is expected
};

Block BlockAnswer(ReaderState& state, const Block& command) { return ReadBlock(state, command[0] - 0x80U); }

void KeepBlock(ReaderState& state, const Block& command, const Block& data) {
  WriteBlock(state, command[0] - 0x80U, data);
}

Block SeparatedAnswer(ReaderState& state, const Block& command) {
  Block page{};
  ReadSeparated(state, command[1] * page.size(), page);
  return page;
}

// A non-zero third byte makes it half of a key.
void KeepSeparated(ReaderState& state, const Block& command, const Block& data) {
  const std::size_t position = command[1] * data.size();
  if (command[2] != 0) {
    WriteHashKey(state, command[2], position, data);
  } else {
    WriteSeparated(state, position, data);
  }
}

Block CardDataAnswer(ReaderState& state, const Block& command) { return Chunk(state.cardData, command[2]); }

Block QueryAnswer(ReaderState& state, const Block&) {
  return {0x89, 0x01, static_cast<std::uint8_t>(state.active),
          static_cast<std::uint8_t>(state.configurations.size())};
}

Block SelectAnswer(ReaderState& state, const Block& command) {
  if (!SelectConfiguration(state, command[2])) return {};
  return {0x89, 0x81, command[2]};
}

Block MoveAnswer(ReaderState& state, const Block& command) {
  if (!MoveBank(state, command[2], command[3])) return {};
  return command;
}

Block FirmwareAnswer(ReaderState& state, const Block& command) {
  const std::uint32_t word = FirmwareWord(state, command[2], command[3]);
  Block reply{command[0], command[1], command[2], command[3]};
  for (std::size_t i = 0; i < 4; ++i) reply[4 + i] = static_cast<std::uint8_t>(word >> (24 - 8 * i) & 0xFF);
  return reply;
}

Block CardTypesAnswer(ReaderState& state, const Block& command) { return CardTypePage(state, command[2]); }

Block SecureReadAnswer(ReaderState& state, const Block& command) { return SecureRead(state.secure, command); }

Block SecureWriteAnswer(ReaderState& state, const Block& command) {
  return SecureWrite(state.secure, command);
}

Block HardwareAnswer(ReaderState& state, const Block&) {
  return {state.installedHardware, 0, 0, 0, state.supportedHardware};
}

Block IdentityAnswer(ReaderState& state, const Block&) { return Chunk(ReadIdentity(state), 0); }

void KeepLuid(ReaderState& state, const Block&, const Block& data) { WriteLuid(state, data[1], data[2]); }

Block ModelAnswer(ReaderState& state, const Block& command) { return ModelChunk(state, command[2]); }

Block QueueAnswer(ReaderState& state, const Block& command) {
  return QueuePage(state, command[2], command[3]);
}

Block BeepAnswer(ReaderState& state, const Block& command) {
  Beep(state, command[2]);
  return command;
}

Block TextAnswer(ReaderState& state, const Block& command) {
  return TextChunk(state, command[2], command[3]);
}

Block EsnAnswer(ReaderState& state, const Block& command) { return Chunk(state.esn, command[2]); }

Block VolumeAnswer(ReaderState& state, const Block&) { return {0x8C, 0x06, state.volume}; }

Block SetVolumeAnswer(ReaderState& state, const Block& command) {
  state.volume = command[2];
  return {0x8C, 0x86, command[2]};
}

Block Id256Answer(ReaderState& state, const Block& command) { return CardIdPage(state, command[1]); }
Block BitCountAnswer(ReaderState& state, const Block&) { return {state.card.bits}; }
Block Id64Answer(ReaderState& state, const Block&) { return CardIdPage(state, 0); }
Block Raw87Answer(ReaderState& state, const Block&) { return state.raw87; }
Block Raw8BAnswer(ReaderState& state, const Block&) { return state.raw8B; }

Block CommitAnswer(ReaderState& state, const Block& command) {
  Commit(state, command[1]);
  return {};
}

Block ResetAnswer(ReaderState& state, const Block&) {
  ResetToFactory(state);
  return {};
}

constexpr ReportRow kReportRows[] = {
    {{0x80}, 1, false, BlockAnswer, KeepBlock},
    {{0x81}, 1, false, BlockAnswer, KeepBlock},
    {{0x82}, 1, false, BlockAnswer, KeepBlock},
    {{0x83}, 1, false, BlockAnswer, KeepBlock},
    {{0x84}, 1, false, BlockAnswer, KeepBlock},
    {{0x85}, 1, false, SeparatedAnswer, KeepSeparated},
    {{0x87}, 1, false, Raw87Answer, nullptr},
    {{0x88, 0x01}, 2, false, CardDataAnswer, nullptr},
    {{0x89, 0x01}, 2, true, QueryAnswer, nullptr},
    {{0x89, 0x03}, 2, true, FirmwareAnswer, nullptr},
    {{0x89, 0x04}, 2, true, CardTypesAnswer, nullptr},
    {{0x89, 0x05}, 2, false, HardwareAnswer, nullptr},
    {{0x89, 0x10}, 2, false, SecureReadAnswer, nullptr},
    {{0x89, 0x81}, 2, true, SelectAnswer, nullptr},
    {{0x89, 0x82}, 2, true, MoveAnswer, nullptr},
    {{0x89, 0x90}, 2, false, SecureWriteAnswer, nullptr},
    {{0x8A}, 1, false, IdentityAnswer, KeepLuid},
    {{0x8B}, 1, false, Raw8BAnswer, nullptr},
    {{0x8C, 0x00}, 2, false, ModeAnswer, nullptr},
    {{0x8C, 0x01}, 2, false, ModelAnswer, nullptr},
    {{0x8C, 0x02}, 2, false, QueueAnswer, nullptr},
    {{0x8C, 0x03}, 2, false, BeepAnswer, nullptr},
    {{0x8C, 0x04}, 2, false, TextAnswer, nullptr},
    {{0x8C, 0x05}, 2, false, EsnAnswer, nullptr},
    {{0x8C, 0x06}, 2, false, VolumeAnswer, nullptr},
    {{0x8C, 0x07}, 2, false, BleAnswer, nullptr},
    {{0x8C, 0x08}, 2, false, AnalyzerAnswer, nullptr},
    {{0x8C, 0x09}, 2, false, RecordAnswer, nullptr},
    {{0x8C, 0x0B}, 2, false, ModuleAnswer, nullptr},
    {{0x8C, 0x80}, 2, false, ModeAnswer, nullptr},
    {{0x8C, 0x86}, 2, false, SetVolumeAnswer, nullptr},
    {{0x8C, 0x87}, 2, false, BleAnswer, nullptr},
    {{0x8C, 0x88}, 2, false, SwitchAnalyzer, nullptr},
    {{0x8D}, 1, false, Id256Answer, nullptr},
    {{0x8E}, 1, false, BitCountAnswer, nullptr},
    {{0x8F}, 1, false, Id64Answer, nullptr},
    {{0x90}, 1, false, CommitAnswer, nullptr},
    {{0xA0}, 1, false, ResetAnswer, nullptr},
};
static_assert(std::ranges::is_sorted(kReportRows, {}, &ReportRow::command), "in the order of the opcodes");

const ReportRow* FindRow(const Block& command) {
  const auto* found = std::find_if(std::begin(kReportRows), std::end(kReportRows), [&](const ReportRow& row) {
    return StartsWith(command, std::span(row.command).first(row.length));
  });
  return found == std::end(kReportRows) ? nullptr : found;
}

}  // namespace

bool Reader::TakeReport(Payload report) {
  const Block block = Chunk(report, 0);
  if (dataMayFollow_) {
    dataMayFollow_ = false;
    const Block command = Chunk(Command(), 0);
    if (!Lacks(state, command)) FindRow(command)->keep(state, command, block);
    return true;
  }
  return !faults.TakeCommandRefusal(block) && TakeCommand(block);
}

bool Reader::TakeCommand(const Block& report) {
  const ReportRow* row = FindRow(report);
  const bool lacked = Lacks(state, report);
  if (row != nullptr && row->plusOnly && !state.plus && !lacked) return false;

  SetCommand(report);
  SetReply({});
  dataMayFollow_ = row != nullptr && row->keep != nullptr;
  if (row == nullptr) {
    ++state.counters.unknownCommands;
  } else if (!lacked) {
    SetReply(row->answer(state, report));
  }
  return true;
}

}  // namespace tavlyn::sim
