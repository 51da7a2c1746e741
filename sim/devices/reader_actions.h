// What the reader's firmware does with its state, over whichever wire a command came.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "sim/devices/reader_state.h"

namespace tavlyn::sim {

bool Lacks(const ReaderState& state, std::span<const std::uint8_t> featureCommand);

// Block 4 carries card type and priority; a plain reader has neither and ignores it.
Block ReadBlock(ReaderState& state, std::size_t number);
void WriteBlock(ReaderState& state, std::size_t number, const Block& data);

// Both act on the part that is inside the area.
void ReadSeparated(ReaderState& state, std::size_t position, std::span<std::uint8_t> bytes);
void WriteSeparated(ReaderState& state, std::size_t position, std::span<const std::uint8_t> bytes);
// Keys are numbered by the place of their first byte, from 1: 1 and 17.
void WriteHashKey(ReaderState& state, std::size_t selector, std::size_t offset,
                  std::span<const std::uint8_t> bytes);
// Whether the feature bit for extended separated-field commands is set in the configuration in use.
bool HasExtendedSeparated(ReaderState& state);

std::array<std::uint8_t, 4> ReadIdentity(const ReaderState& state);
void WriteLuid(ReaderState& state, std::uint8_t low, std::uint8_t high);

Block TextChunk(const ReaderState& state, std::uint8_t text, std::size_t chunk);
Block ModelChunk(const ReaderState& state, std::size_t chunk);
Block CardTypePage(const ReaderState& state, std::size_t page);
std::uint32_t FirmwareWord(const ReaderState& state, std::size_t processor, std::size_t index);
// Page 4 returns the rest of the oldest queued card and removes it.
Block QueuePage(ReaderState& state, std::size_t page, std::uint8_t options);
Block CardIdPage(const ReaderState& state, std::size_t page);

// False if there is no such configuration.
bool SelectConfiguration(ReaderState& state, std::size_t number);
// Banks: 1 the working set, 2 the user defaults, 3 the plus defaults; of every configuration at once.
bool MoveBank(ReaderState& state, std::uint8_t from, std::uint8_t to);
void Beep(ReaderState& state, std::uint8_t code);
void Commit(ReaderState& state, std::uint8_t mask);
void ResetToFactory(ReaderState& state);
void LoseWorkingMemory(ReaderState& state);

// bytes[8*number] onward, zeros after the end.
Block Chunk(std::span<const std::uint8_t> bytes, std::size_t number);

}  // namespace tavlyn::sim
