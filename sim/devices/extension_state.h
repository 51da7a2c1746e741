// What only some readers have besides their card radio.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

namespace tavlyn::sim {

// A card as the analyzer has seen it.
struct AnalyzerRecord {
  std::uint16_t type = 0;
  std::uint16_t bits = 0;
  std::vector<std::uint8_t> data;  // lowest byte first
};

struct ExtensionState {
  // While its state is not 0 the analyzer records every card placed on the reader.
  std::uint8_t analyzer = 0;
  std::vector<AnalyzerRecord> analyzed;

  std::map<std::uint8_t, bool> modules;  // those that the reader has

  bool hasTransparentMode = false;
  std::uint8_t transparent = 0;        // working
  std::uint8_t storedTransparent = 0;  // committed

  bool hasBle = false;
  std::uint8_t ble = 0;  // how the BLE radio and the card radio work together
};

}  // namespace tavlyn::sim
