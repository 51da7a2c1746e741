#include "sim/paced_line.h"

#include <array>

namespace tavlyn::sim {
namespace {

// Longer than a host pauses within a command, shorter than it waits before it retries.
constexpr std::chrono::milliseconds kLongSilence(300);

}  // namespace

void PacedLine::Receive(std::span<const std::uint8_t> bytes, Time now) {
  if (now - lastReceived_ > kLongSilence) device_.Silence();
  lastReceived_ = now;
  device_.Receive(bytes);
}

void PacedLine::Fetch(Time now) {
  std::array<std::uint8_t, 512> piece;
  while (const std::size_t count = device_.Take(piece)) {
    if (waiting_.empty()) due_ = now + manner.delay;
    waiting_.insert(waiting_.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
  }
}

std::span<const std::uint8_t> PacedLine::Due(Time now) {
  Fetch(now);
  if (waiting_.empty() || now < due_) return {};
  const std::span<const std::uint8_t> all(waiting_);
  return manner.betweenBytes.count() > 0 ? all.first(1) : all;
}

void PacedLine::Sent(std::size_t count, Time now) {
  waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(count));
  if (count > 0) due_ = now + manner.betweenBytes;
}

std::optional<PacedLine::Time> PacedLine::NextDue() const {
  if (waiting_.empty()) return std::nullopt;
  return due_;
}

bool PacedLine::TakeCut() { return waiting_.empty() && device_.TakeCut(); }

void PacedLine::Hangup() {
  waiting_.clear();
  device_.Silence();
  std::array<std::uint8_t, 512> lost;
  while (device_.Take(lost) > 0) {
  }
}

}  // namespace tavlyn::sim
