// What the serial sides of all devices have in common: bytes out are queued until the carrier takes them, and
// the line misbehaves as it is told.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"

namespace tavlyn::sim {

class FaultyLine : public ByteDevice {
 public:
  // Counted per byte, in both directions; a reader's own faults act on its feature reports only.
  Faults faults;
  // Take stops where one piece of an answer ends, as transfers on USB do.
  bool inPieces = false;

  // The line is cut once so many more bytes have left the device; what was to follow them is lost.
  void CutAfter(std::size_t bytes) { untilCut_ = bytes; }
  // So many bytes of noise go out at once.
  void Flood(std::size_t bytes);

  void Receive(std::span<const std::uint8_t> bytes) override;
  std::size_t Take(std::span<std::uint8_t> bytes) override;
  bool TakeCut() override;

 protected:
  virtual void TakeByte(std::uint8_t byte) = 0;
  // One piece of an answer.
  void Send(std::span<const std::uint8_t> bytes);
  // All that a line behind this one has to say.
  void PassOn(ByteDevice& behind);

 private:
  using Piece = std::deque<std::uint8_t>;

  std::deque<Piece> out_;
  std::optional<std::size_t> untilCut_;
};

}  // namespace tavlyn::sim
