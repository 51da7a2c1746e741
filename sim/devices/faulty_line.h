// What the serial sides of all devices have in common: outgoing bytes are queued until the carrier takes
// them, and the line misbehaves on demand.
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
  // Counted per byte, in both directions; a reader's own faults affect only its feature reports.
  Faults faults;
  // Take stops at the end of one piece of an answer, as transfers on USB do.
  bool inPieces = false;

  // The line is cut after this many more bytes from the device; what was to follow is lost.
  void CutAfter(std::size_t bytes) { untilCut_ = bytes; }
  // Nothing is on its way any more, in either direction.
  void Empty();
  // This many bytes of noise go out at once.
  void Flood(std::size_t bytes);

  void Receive(std::span<const std::uint8_t> bytes) override;
  std::size_t Take(std::span<std::uint8_t> bytes) override;
  bool TakeCut() override;

 protected:
  virtual void TakeByte(std::uint8_t byte) = 0;
  // One piece of an answer.
  void Send(std::span<const std::uint8_t> bytes);
  // Everything that the line behind this one has to send.
  void PassOn(ByteDevice& behind);

 private:
  using Piece = std::deque<std::uint8_t>;

  std::deque<Piece> out_;
  std::optional<std::size_t> untilCut_;
};

}  // namespace tavlyn::sim
