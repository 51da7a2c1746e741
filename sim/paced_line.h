// Paces the bytes between a device model and a stream: what the device sends goes out as slowly as is wanted.
// Independent of the operating system; callers pass the time in.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "sim/devices/device.h"

namespace tavlyn::sim {

struct LineManner {
  std::chrono::milliseconds delay{0};         // before each answer
  std::chrono::milliseconds betweenBytes{0};  // 0: an answer goes out in one piece
};

class PacedLine {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit PacedLine(ByteDevice& device) : device_(device) {}

  LineManner manner;

  // Bytes from the other side. After a long silence they begin a new command.
  void Receive(std::span<const std::uint8_t> bytes, Time now);
  // What is due to go out now; may be empty.
  std::span<const std::uint8_t> Due(Time now);
  // This many of these bytes went out.
  void Sent(std::size_t count, Time now);
  // When the next bytes are due; none if nothing is queued.
  [[nodiscard]] std::optional<Time> NextDue() const;
  // True once, when the device has cut the line and everything it sent before has gone out.
  bool TakeCut();
  // The other side is gone: what was still queued is lost.
  void Hangup();

 private:
  void Fetch(Time now);

  ByteDevice& device_;
  std::vector<std::uint8_t> waiting_;
  Time due_{};
  Time lastReceived_{};
};

}  // namespace tavlyn::sim
