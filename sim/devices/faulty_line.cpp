#include "sim/devices/faulty_line.h"

#include <algorithm>

namespace tavlyn::sim {
namespace {

constexpr std::uint8_t kNoise = 0x5A;

}  // namespace

void FaultyLine::Receive(std::span<const std::uint8_t> bytes) {
  for (std::uint8_t byte : bytes) {
    const Fault fault = faults.Next();
    if (fault == Fault::kVanish) return Silence();
    if (fault == Fault::kRefuse) continue;
    if (fault == Fault::kGarble) Garble({&byte, 1});
    TakeByte(byte);
  }
}

void FaultyLine::Send(std::span<const std::uint8_t> bytes) {
  for (std::uint8_t byte : bytes) {
    const Fault fault = faults.Next();
    if (fault == Fault::kVanish) return;
    if (fault == Fault::kRefuse) continue;
    if (fault == Fault::kGarble) Garble({&byte, 1});
    out_.push_back(byte);
  }
}

void FaultyLine::Flood(std::size_t bytes) { out_.insert(out_.end(), bytes, kNoise); }

std::size_t FaultyLine::Take(std::span<std::uint8_t> bytes) {
  if (faults.Vanished()) return 0;
  const std::size_t count = std::min({bytes.size(), out_.size(), untilCut_.value_or(out_.size())});
  const auto end = out_.begin() + static_cast<std::ptrdiff_t>(count);
  std::copy(out_.begin(), end, bytes.begin());
  out_.erase(out_.begin(), end);
  if (untilCut_) *untilCut_ -= count;
  return count;
}

bool FaultyLine::TakeCut() {
  if (untilCut_ != 0U) return false;
  untilCut_.reset();
  out_.clear();
  Silence();
  return true;
}

}  // namespace tavlyn::sim
