// What a magnetic-stripe reader keeps, and what its firmware does with it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "sim/devices/mag_card.h"

namespace tavlyn::sim {

inline constexpr std::size_t kUserFields = 11;

// A user field as its three commands carry it.
struct UserField {
  std::array<std::uint8_t, 9> first{};   // flags and key count, keys 0 to 7
  std::array<std::uint8_t, 8> second{};  // keys 8 to 15
  std::array<std::uint8_t, 5> control{};

  bool operator==(const UserField&) const = default;
};

struct MagSettings {
  std::array<UserField, kUserFields> fields;
  std::array<std::uint8_t, 6> system{};  // flags and track enables, two times, LUID, beeper
  std::array<std::uint8_t, 2> leds{};

  bool operator==(const MagSettings&) const = default;
};

struct MagBeep {
  int count;
  bool isLong;

  bool operator==(const MagBeep&) const = default;
};

struct MagstripeState {
  static constexpr std::size_t kQueueRoom = 4;
  // One swipe as the reader holds it: for each track a header, then its characters. The header is 0 if
  // nothing was read, else the number of characters, with bit 7 set for a bad read.
  using Swipe = std::array<Bytes, kTracks>;

  std::string partNumber = "OMS-2100-AKU";  // at most 20 characters
  std::uint16_t did = 0x0210;
  std::uint16_t firmware = 0x0304;

  MagSettings working;
  MagSettings stored;
  bool writing = false;  // between the commands that begin and commit a configuration

  Swipe tracks;                // read by the last swipe; kept when its data-available state is cleared
  std::uint8_t available = 0;  // bits 0 to 2: tracks with data
  std::deque<Swipe> waiting;   // swipes after the one that is available
  std::uint8_t overruns = 0;   // swipes lost since this was cleared, because too many were waiting

  std::uint32_t cardsRead = 0;
  std::uint16_t goodTracks = 0;
  std::uint16_t badTracks = 0;
  std::uint16_t commands = 0;
  std::uint16_t unknownCommands = 0;
  std::vector<MagBeep> beeps;
  // Milliseconds since the reader was powered; 0 if unset.
  std::function<std::uint64_t()> uptime;
};

MagSettings FactoryMagSettings();
MagstripeState NewMagstripeState();

void TakeSwipe(MagstripeState& state, const MagCard& card);
void ClearAvailable(MagstripeState& state);
void LoseWorkingMemory(MagstripeState& state);

// The firmware's answer to a command of its language: "R" and more, or "N" when it refuses.
std::string AnswerMagCommand(MagstripeState& state, const std::string& command);

}  // namespace tavlyn::sim
