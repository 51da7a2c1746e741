// What a recording does not keep: the IDs of cards, in whose place others stand, and keys, which are covered.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"
#include "tools/tavlynsim/record/recording.h"

namespace tavlyn::sim {

// What was asked to be kept all the same.
struct Kept {
  bool ids = false;
  bool keys = false;
};

// Stand-ins for IDs: the same one for the same ID, as long as it is and of as many bits. They are drawn by
// chance, so that nothing leads from one back to its ID, which is short enough for all to be tried.
class StandIns {
 public:
  // Zeros stay, because they say that there is no card.
  void Replace(std::span<std::int16_t> id);
  // Raw characters of a block of a track: digits become other digits, letters other letters.
  void ReplaceTrack(int track, std::size_t block, std::span<std::uint8_t> raw);

 private:
  std::uint8_t DrawByte(unsigned bits, bool isHighest);

  std::random_device chance_;
  std::map<Shown, Shown> known_;
  std::map<std::size_t, unsigned> steps_;  // by place on a track
};

// Follows the reports of one device, because what one holds depends on the one before.
class Mask {
 public:
  Mask(const HidIdentity& identity, Kept kept, StandIns& standIns);

  // Reports with their report ID in byte 0, as they are to be kept.
  Shown Sent(std::span<const std::uint8_t> report);
  Shown Received(std::span<const std::uint8_t> report);
  Shown Input(std::span<const std::uint8_t> report);

 private:
  enum class Product { kReader, kMagstripe, kSonar };
  using Command = std::array<std::uint8_t, 5>;

  void MaskTrack(Shown& shown);

  Product product_;
  Kept kept_;
  StandIns& standIns_;
  Command command_{};
  bool mayStore_ = false;  // a report that comes before a fetch is the data of the command
};

}  // namespace tavlyn::sim
