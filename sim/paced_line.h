// The way between a device model and a stream of bytes, in time: what the device sends goes out as slowly as
// is wanted. Knows no operating system; times are given to it.
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
  std::chrono::milliseconds delay{0};         // in front of each answer
  std::chrono::milliseconds betweenBytes{0};  // 0: an answer goes out in one piece
};

class PacedLine {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit PacedLine(ByteDevice& device) : device_(device) {}

  LineManner manner;

  // Bytes of the other side. Behind a long silence they begin a new command.
  void Receive(std::span<const std::uint8_t> bytes, Time now);
  // What is to go out now; empty while there is nothing, or it is too early.
  std::span<const std::uint8_t> Due(Time now);
  // So many of these bytes did go out.
  void Sent(std::size_t count, Time now);
  // When there is something to go out; none while there is nothing.
  [[nodiscard]] std::optional<Time> NextDue() const;
  // True once, when the device has cut the line and all that it had sent is out.
  bool TakeCut();
  // The other side has gone: what was on its way is lost.
  void Hangup();

 private:
  void Fetch(Time now);

  ByteDevice& device_;
  std::vector<std::uint8_t> waiting_;
  Time due_{};
  Time lastReceived_{};
};

}  // namespace tavlyn::sim
