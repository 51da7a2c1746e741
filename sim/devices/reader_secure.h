// The reader's protected memory. Items are sent in blocks of four bytes between a header and an end, and a
// commit stores the completed ones. The BLE radio's pieces are written as items are; they have a save of
// their own.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <vector>

namespace tavlyn::sim {

using Block = std::array<std::uint8_t, 8>;

inline constexpr std::size_t kBlePieceBytes = 128;

// Keyed by H0, H1 and H3 of their header.
using SecureItems = std::map<std::array<std::uint8_t, 3>, std::vector<std::uint8_t>>;
// The three pieces of the data, then the key.
using BleMemory = std::array<std::array<std::uint8_t, kBlePieceBytes>, 4>;

struct SecureMemory {
  SecureItems items;        // completed; lost with the power
  SecureItems storedItems;  // what a commit has stored
  BleMemory ble{};
  BleMemory storedBle{};

  // The transfer in progress.
  struct Transfer {
    Block header{};  // the packet; zeros when there is none
    std::vector<std::uint8_t> bytes;
    std::vector<bool> blocks;  // of a write: which blocks have arrived
  };
  Transfer write;
  Transfer read;
};

// Answers to 89 10 and 89 90: a command that is understood is echoed, zeros mean that there is no such thing.
Block SecureRead(SecureMemory& memory, const Block& command);
Block SecureWrite(SecureMemory& memory, const Block& command);

void KeepItems(SecureMemory& memory);
void LoseUnkept(SecureMemory& memory);

}  // namespace tavlyn::sim
