#include "sim/devices/reader_actions.h"

#include <algorithm>

#include "sim/devices/device.h"

namespace tavlyn::sim {
namespace {

constexpr std::uint8_t kExtendedSeparatedBit = 0x40;  // of block 1, last byte

constexpr std::uint8_t kCommitSeparated = 0x20;
constexpr std::uint8_t kCommitLuid = 0x80;

Settings* BankOf(Configuration& configuration, std::uint8_t number) {
  switch (number) {
    case 1: return &configuration.working;
    case 2: return &configuration.user;
    case 3: return &configuration.plus;
    default: return nullptr;
  }
}

std::span<const std::uint8_t> BytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::uint16_t Word(std::uint8_t low, std::uint8_t high) {
  return static_cast<std::uint16_t>(low + (high << 8));
}

}  // namespace

bool Lacks(const ReaderState& state, std::span<const std::uint8_t> featureCommand) {
  return std::any_of(state.lacks.begin(), state.lacks.end(),
                     [&](const Bytes& prefix) { return StartsWith(featureCommand, prefix); });
}

Block ReadBlock(ReaderState& state, std::size_t number) {
  const Settings& working = state.Working();
  if (number < working.blocks.size()) return working.blocks[number];
  if (!state.plus) return {};
  return {0, Low(working.cardType), High(working.cardType), working.highPriority};
}

void WriteBlock(ReaderState& state, std::size_t number, const Block& data) {
  Configuration& active = state.Active();
  if (number < active.working.blocks.size()) {
    active.working.blocks[number] = data;
    return;
  }
  if (!state.plus) return;
  // The card type is stored at once: the commit mask has no bit for it.
  for (Settings* bank : {&active.working, &active.stored}) {
    bank->cardType = Word(data[1], data[2]);
    bank->highPriority = (data[3] & 1) != 0;
  }
}

void ReadSeparated(ReaderState& state, std::size_t position, std::span<std::uint8_t> bytes) {
  const auto& area = state.Working().separated;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = position + i < area.size() ? area[position + i] : std::uint8_t{0};
  }
}

void WriteSeparated(ReaderState& state, std::size_t position, std::span<const std::uint8_t> bytes) {
  auto& area = state.Working().separated;
  for (std::size_t i = 0; i < bytes.size() && position + i < area.size(); ++i) area[position + i] = bytes[i];
}

void WriteHashKey(ReaderState& state, std::size_t selector, std::size_t offset,
                  std::span<const std::uint8_t> bytes) {
  if (selector != 1 && selector != 17) return;
  auto& keys = state.Working().hashKeys;
  const std::size_t first = selector - 1 + offset;
  for (std::size_t i = 0; i < bytes.size() && first + i < keys.size(); ++i) keys[first + i] = bytes[i];
}

bool HasExtendedSeparated(ReaderState& state) {
  return (state.Working().blocks[1][7] & kExtendedSeparatedBit) != 0;
}

std::array<std::uint8_t, 4> ReadIdentity(const ReaderState& state) {
  return {Low(state.luid), High(state.luid), Low(state.did), High(state.did)};
}

void WriteLuid(ReaderState& state, std::uint8_t low, std::uint8_t high) { state.luid = Word(low, high); }

Block Chunk(std::span<const std::uint8_t> bytes, std::size_t number) {
  Block chunk{};
  for (std::size_t i = 0; i < chunk.size() && number * chunk.size() + i < bytes.size(); ++i) {
    chunk[i] = bytes[number * chunk.size() + i];
  }
  return chunk;
}

Block TextChunk(const ReaderState& state, std::uint8_t text, std::size_t chunk) {
  const auto found = state.texts.find(text);
  return found == state.texts.end() ? Block{} : Chunk(BytesOf(found->second), chunk);
}

Block ModelChunk(const ReaderState& state, std::size_t chunk) { return Chunk(BytesOf(state.model), chunk); }

Block CardTypePage(const ReaderState& state, std::size_t page) {
  Block types{};
  for (std::size_t i = 0; i < 4 && page * 4 + i < state.cardTypes.size(); ++i) {
    types[2 * i] = Low(state.cardTypes[page * 4 + i]);
    types[2 * i + 1] = High(state.cardTypes[page * 4 + i]);
  }
  return types;
}

std::uint32_t FirmwareWord(const ReaderState& state, std::size_t processor, std::size_t index) {
  if (processor >= state.firmware.size() || index >= state.firmware[processor].size()) return 0;
  return state.firmware[processor][index];
}

Block QueuePage(ReaderState& state, std::size_t page, std::uint8_t options) {
  state.counters.lastQueueOptions = options;
  if (state.queue.empty()) return {};
  if (page < 4) return Chunk(state.queue.front().id, page);
  if (page > 4) return {};
  const Block trailer = state.queue.front().trailer;
  state.queue.pop_front();
  return trailer;
}

Block CardIdPage(const ReaderState& state, std::size_t page) { return Chunk(state.card.id, page); }

bool SelectConfiguration(ReaderState& state, std::size_t number) {
  if (number >= state.configurations.size()) return false;
  state.active = number;
  ++state.counters.selections;
  return true;
}

bool MoveBank(ReaderState& state, std::uint8_t from, std::uint8_t to) {
  for (Configuration& configuration : state.configurations) {
    const Settings* source = BankOf(configuration, from);
    Settings* target = BankOf(configuration, to);
    if (source == nullptr || target == nullptr) return false;
    *target = *source;
    if (target == &configuration.working) configuration.stored = *source;
  }
  ++state.counters.bankMoves;
  return true;
}

void Beep(ReaderState& state, std::uint8_t code) {
  ++state.counters.beeps;
  state.counters.lastBeep = code;
  state.sights.HearBeep(code);
}

void Commit(ReaderState& state, std::uint8_t mask) {
  Configuration& active = state.Active();
  for (std::size_t i = 0; i < active.working.blocks.size(); ++i) {
    if ((mask >> i & 1) != 0) active.stored.blocks[i] = active.working.blocks[i];
  }
  if ((mask & kCommitSeparated) != 0) {
    active.stored.separated = active.working.separated;
    active.stored.hashKeys = active.working.hashKeys;
  }
  KeepItems(state.secure);
  if ((mask & kCommitLuid) != 0) state.storedLuid = state.luid;
  state.extensions.storedTransparent = state.extensions.transparent;  // the mask has no bit for it
  ++state.counters.commits;
  state.counters.lastCommitMask = mask;
}

void ResetToFactory(ReaderState& state) {
  for (Configuration& configuration : state.configurations) {
    configuration.working = configuration.stored = configuration.factory;
  }
  ++state.counters.factoryResets;
}

void LoseWorkingMemory(ReaderState& state) {
  for (Configuration& configuration : state.configurations) configuration.working = configuration.stored;
  LoseUnkept(state.secure);
  state.luid = state.storedLuid;
  state.extensions.transparent = state.extensions.storedTransparent;
  state.extensions.analyzer = 0;
  state.extensions.analyzed.clear();
  state.queue.clear();
  state.inputs.clear();
}

}  // namespace tavlyn::sim
