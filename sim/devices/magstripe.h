// The magnetic-stripe reader. Commands and answers are short texts, each ending in a carriage return, in
// packets of 24 bytes; over USB each packet is a feature report.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "sim/devices/faulty_line.h"
#include "sim/devices/magstripe_state.h"
#include "sim/devices/model.h"

namespace tavlyn::sim {

inline constexpr std::size_t kMagPacketBytes = 24;
using MagPacket = std::array<std::uint8_t, kMagPacketBytes>;

class Magstripe final : public Model {
 public:
  explicit Magstripe(MagstripeState initial = NewMagstripeState());

  MagstripeState state;

  void Swipe(const MagCard& card) { TakeSwipe(state, card); }
  void SetLuid(std::uint16_t luid) override;
  void Keep(Memory& memory) override;
  void PowerCycle() override;

 private:
  bool TakeReport(Payload report) override;
};

// The same reader's serial side: a command is whatever precedes a carriage return, apart from zeros.
class MagstripeLine final : public FaultyLine {
 public:
  explicit MagstripeLine(std::shared_ptr<Magstripe> reader);

  void Silence() override { command_.clear(); }

 private:
  void TakeByte(std::uint8_t byte) override;
  void Run();

  std::shared_ptr<Magstripe> reader_;
  std::string command_;
};

}  // namespace tavlyn::sim
