#include "sim/devices/reader_extensions.h"

#include <algorithm>

#include "sim/devices/device.h"
#include "sim/devices/reader_actions.h"

namespace tavlyn::sim {
namespace {

constexpr std::uint16_t kPlainRecord = 1;
constexpr std::size_t kMostRecords = 255;

constexpr std::uint8_t kSetBit = 0x80;  // of a command: sets what it otherwise reads
constexpr std::uint8_t kBlePresent = 0x80;

constexpr std::uint8_t kSetModule = 2;
constexpr std::uint8_t kModuleConfirmed = 0xFF;
constexpr std::uint8_t kModuleOn = 0x81;
constexpr std::uint8_t kModuleOff = 0x80;

}  // namespace

void AnalyzeCard(ReaderState& state) {
  ExtensionState& extensions = state.extensions;
  if (extensions.analyzer == 0 || extensions.analyzed.size() >= kMostRecords) return;
  extensions.analyzed.push_back({kPlainRecord, state.card.bits, state.card.id});
}

Block AnalyzerAnswer(ReaderState& state, const Block& command) {
  const std::size_t count = std::min(state.extensions.analyzed.size(), kMostRecords);
  return {command[0], command[1], state.extensions.analyzer, static_cast<std::uint8_t>(count)};
}

Block SwitchAnalyzer(ReaderState& state, const Block& command) {
  // Switching it on begins a new list.
  if (state.extensions.analyzer == 0 && command[2] != 0) state.extensions.analyzed.clear();
  state.extensions.analyzer = command[2];
  return {command[0], command[1], command[2], command[3]};
}

Block RecordAnswer(ReaderState& state, const Block& command) {
  if (command[2] >= state.extensions.analyzed.size()) return {};
  const AnalyzerRecord& record = state.extensions.analyzed[command[2]];
  if (command[3] != 0) return Chunk(record.data, command[3] - 1U);
  return {Low(record.type), High(record.type), Low(record.bits), High(record.bits)};
}

Block ModuleAnswer(ReaderState& state, const Block& command) {
  const auto module = state.extensions.modules.find(command[3]);
  if (module == state.extensions.modules.end()) return {command[0], command[1], 0, command[3]};
  if (command[2] == kSetModule) module->second = command[4] == kModuleOn;
  return {command[0], command[1], kModuleConfirmed, command[3], module->second ? kModuleOn : kModuleOff};
}

Block ModeAnswer(ReaderState& state, const Block& command) {
  if (!state.extensions.hasTransparentMode) return {};
  if ((command[1] & kSetBit) != 0) state.extensions.transparent = command[2];
  return {command[0], command[1], state.extensions.transparent};
}

Block BleAnswer(ReaderState& state, const Block& command) {
  ExtensionState& extensions = state.extensions;
  if (!extensions.hasBle) return {command[0], command[1]};
  if ((command[1] & kSetBit) != 0) extensions.ble = command[2] & 3U;
  return {command[0], command[1], static_cast<std::uint8_t>(kBlePresent | extensions.ble)};
}

}  // namespace tavlyn::sim
