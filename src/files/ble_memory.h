// The two protected blocks that a reader keeps for its BLE radio, in pieces of 128 bytes.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace tavlyn {

inline constexpr std::size_t kBlePiece = 128;
inline constexpr std::size_t kBleDataBytes = 3 * kBlePiece;
inline constexpr std::size_t kBleKeyBytes = kBlePiece;

struct BlePiece {
  std::uint8_t selector;
  std::uint8_t opener;
  std::uint8_t saver;
};

struct BleBlock {
  const char* name;   // in its file
  const char* bytes;  // the name of its bytes there
  std::span<const BlePiece> pieces;
  std::int32_t writeSize;    // payload of a report while it is written
  std::uint32_t beforeSave;  // milliseconds
  [[nodiscard]] std::size_t Size() const { return pieces.size() * kBlePiece; }
};

// The opener carries no piece number, unlike the saver.
inline constexpr std::array kBleDataPieces = {BlePiece{0x00, 0x80, 0x80}, BlePiece{0x01, 0x80, 0x81},
                                              BlePiece{0x02, 0x80, 0x82}};
inline constexpr std::array kBleKeyPieces = {BlePiece{0x10, 0x90, 0x90}};

inline constexpr BleBlock kBleData = {"sFldBleData1", "BleData1", kBleDataPieces, 8, 100};
// Readers expect their key in reports that are one byte longer.
inline constexpr BleBlock kBleKey = {"sFldBleData2", "BleData2", kBleKeyPieces, 9, 0};

// Neither looks at what the reader repeats, only that something came back. What was read before a failure
// stands in the buffer.
void ReadBle(const BleBlock& block, std::span<std::uint8_t> bytes);
bool WriteBle(const BleBlock& block, std::span<const std::uint8_t> bytes);

}  // namespace tavlyn
