// What a card reader keeps without power.
#include <optional>

#include "sim/devices/hex.h"
#include "sim/devices/memory.h"
#include "sim/devices/reader.h"

namespace tavlyn::sim {
namespace {

constexpr const char* kItem = "item-";

struct KeptBank {
  const char* name;
  Settings Configuration::*settings;
};
constexpr KeptBank kKeptBanks[] = {
    {"stored", &Configuration::stored}, {"user", &Configuration::user}, {"plus", &Configuration::plus}};

void PassSettings(Memory& memory, const std::string& name, Settings& settings) {
  for (std::size_t i = 0; i < settings.blocks.size(); ++i) {
    memory.Pass(name + "-block-" + std::to_string(i), settings.blocks[i]);
  }
  memory.Pass(name + "-separated", settings.separated);
  memory.Pass(name + "-hash-keys", settings.hashKeys);
  memory.PassNumber(name + "-card-type", settings.cardType);
  memory.PassNumber(name + "-high-priority", settings.highPriority, 1);
}

// An item's name ends in the three bytes by which the reader knows it.
void PassItems(Memory& memory, SecureItems& items) {
  for (const std::string& name : memory.NamesWith(kItem)) {
    const auto bytes = ParseHex(std::string_view(name).substr(std::char_traits<char>::length(kItem)));
    if (bytes && bytes->size() == 3) items[{(*bytes)[0], (*bytes)[1], (*bytes)[2]}] = {};
  }
  for (auto& [known, bytes] : items) memory.PassAny(kItem + HexDigits(known), bytes);
}

}  // namespace

void Reader::Keep(Memory& memory) {
  memory.PassNumber("luid", state.storedLuid);
  memory.PassNumber("active", state.active, state.configurations.size() - 1);
  memory.PassNumber("volume", state.volume, 0xFF);
  memory.PassNumber("transparent", state.extensions.storedTransparent, 0xFF);
  memory.PassNumber("ble-mode", state.extensions.ble, 3);
  for (auto& [number, on] : state.extensions.modules) {
    memory.PassNumber("module-" + std::to_string(number), on, 1);
  }
  for (std::size_t i = 0; i < state.configurations.size(); ++i) {
    for (const KeptBank& bank : kKeptBanks) {
      PassSettings(memory, bank.name + ("-" + std::to_string(i)), state.configurations[i].*bank.settings);
    }
  }
  PassItems(memory, state.secure.storedItems);
  for (std::size_t i = 0; i < state.secure.storedBle.size(); ++i) {
    memory.Pass("ble-" + std::to_string(i), state.secure.storedBle[i]);
  }
  if (memory.IsTaken()) PowerCycle();
}

}  // namespace tavlyn::sim
