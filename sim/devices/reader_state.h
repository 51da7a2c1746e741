// Everything that a card reader stores. Tests and demos set it up directly; the models in reader.h and
// reader_fa.h work on it.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "sim/devices/extension_state.h"
#include "sim/devices/faults.h"
#include "sim/devices/reader_secure.h"
#include "sim/devices/sights.h"

namespace tavlyn::sim {

// One bank of one configuration.
struct Settings {
  std::array<Block, 4> blocks{};  // as on the wire: blocks[0][0] is the first byte of block 0
  std::array<std::uint8_t, 128> separated{};
  std::array<std::uint8_t, 32> hashKeys{};
  std::uint16_t cardType = 0;
  bool highPriority = false;

  bool operator==(const Settings&) const = default;
};

struct Configuration {
  Settings working;  // what the reader uses; lost with the power
  Settings stored;   // what a commit stores, and what the reader starts with
  Settings user;     // the user defaults, bank 2
  Settings plus;     // the plus defaults, bank 3
  Settings factory;

  // The same contents in every bank.
  static Configuration Of(const Settings& settings) {
    return {settings, settings, settings, settings, settings};
  }
};

struct Card {
  Bytes id;  // lowest byte first, at most 32
  std::uint8_t bits = 0;
};

struct QueuedCard {
  std::array<std::uint8_t, 32> id{};
  Block trailer{};
};

// Device texts, by their number in the text command.
enum ReaderText : std::uint8_t {
  kSerialNumber = 2,
  kPlatform = 3,
  kFullFirmwareVersion = 4,
  kBuildDate = 5,
  kCopyright = 6,
  kFirmwareFile = 7,
  kCpuInfo = 8,
};

// What the reader has been told to do, for tests to check.
struct ReaderCounters {
  int commits = 0;
  std::uint8_t lastCommitMask = 0;
  int factoryResets = 0;
  int selections = 0;
  int bankMoves = 0;
  int beeps = 0;
  std::uint8_t lastBeep = 0;
  std::uint8_t lastQueueOptions = 0;
  int unknownCommands = 0;
};

struct ReaderState {
  bool plus = false;
  std::vector<Configuration> configurations = std::vector<Configuration>(1);  // 1 to 11
  std::size_t active = 0;

  std::uint16_t luid = 0;        // working
  std::uint16_t storedLuid = 0;  // committed
  std::uint16_t did = 0;

  std::string model;  // 24 characters at most
  std::map<std::uint8_t, std::string> texts;
  std::array<std::array<std::uint32_t, 5>, 3> firmware{};  // [processor][index]
  std::vector<std::uint16_t> cardTypes;
  std::array<std::uint8_t, 32> esn{};
  std::uint8_t volume = 0;
  std::uint8_t installedHardware = 0;
  std::uint8_t supportedHardware = 0;
  std::uint8_t baudCode = 0;
  Block raw87{};
  Block raw8B{};

  SecureMemory secure;

  Card card;  // on the reader now; 0 bits if there is none
  std::array<std::uint8_t, 40> cardData{};
  std::deque<QueuedCard> queue;
  std::deque<Bytes> inputs;  // queued input reports, with their report ID

  ExtensionState extensions;

  // Commands that this firmware does not have, by their leading feature-report bytes: answered with zeros,
  // refused on the serial side.
  std::vector<Bytes> lacks;

  ReaderCounters counters;
  Sights sights;

  Configuration& Active() { return configurations.at(active); }
  Settings& Working() { return Active().working; }
};

// Realistic contents of a reader fresh from the factory.
ReaderState PlainReaderState();
ReaderState PlusReaderState(int configurations);

}  // namespace tavlyn::sim
