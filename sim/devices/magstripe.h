// The magnetic-stripe reader. Commands are short texts in packets of 24 bytes that end in a carriage return,
// and so are its answers; over USB each is a feature report.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"
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
  // Working memory is lost, committed memory comes back.
  void PowerCycle();

 private:
  bool TakeReport(Payload report) override;
};

// The same reader's serial side: a command is what stands in front of a carriage return, zeros aside.
class MagstripeLine final : public ByteDevice {
 public:
  explicit MagstripeLine(std::shared_ptr<Magstripe> reader);

  // Counted per byte, in both directions; the reader's own faults act on its feature reports only.
  Faults faults;

  void Receive(std::span<const std::uint8_t> bytes) override;
  std::size_t Take(std::span<std::uint8_t> bytes) override;

 private:
  void Run();

  std::shared_ptr<Magstripe> reader_;
  std::string command_;
  std::deque<std::uint8_t> out_;
};

}  // namespace tavlyn::sim
