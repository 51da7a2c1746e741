#include "sim/devices/faulty_line.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tavlyn::sim {
namespace {

constexpr std::uint8_t kNoise = 0x5A;

}  // namespace

void FaultyLine::Receive(std::span<const std::uint8_t> bytes) {
  for (std::uint8_t byte : bytes) {
    const Fault fault = faults.Next();
    if (fault == Fault::kVanish) return Silence();
    if (fault == Fault::kRefuse || fault == Fault::kDrop) continue;
    if (fault == Fault::kGarble) Garble({&byte, 1});
    TakeByte(byte);
  }
}

void FaultyLine::Send(std::span<const std::uint8_t> bytes) {
  Piece piece;
  for (std::uint8_t byte : bytes) {
    const Fault fault = faults.Next();
    if (fault == Fault::kVanish) return out_.clear();  // nothing gets through any more
    if (fault == Fault::kRefuse || fault == Fault::kDrop) continue;
    if (fault == Fault::kGarble) Garble({&byte, 1});
    piece.push_back(byte);
  }
  if (!piece.empty()) out_.push_back(std::move(piece));
}

void FaultyLine::PassOn(ByteDevice& behind) {
  std::array<std::uint8_t, 64> piece;
  while (const std::size_t count = behind.Take(piece)) Send(std::span(piece).first(count));
}

void FaultyLine::Flood(std::size_t bytes) {
  if (bytes > 0) out_.emplace_back(bytes, kNoise);
}

std::size_t FaultyLine::Take(std::span<std::uint8_t> bytes) {
  if (faults.Vanished()) return 0;
  const std::size_t most = std::min(bytes.size(), untilCut_.value_or(bytes.size()));
  std::size_t taken = 0;
  while (taken < most && !out_.empty()) {
    Piece& piece = out_.front();
    const std::size_t count = std::min(most - taken, piece.size());
    const auto end = piece.begin() + static_cast<std::ptrdiff_t>(count);
    std::copy(piece.begin(), end, bytes.begin() + static_cast<std::ptrdiff_t>(taken));
    piece.erase(piece.begin(), end);
    taken += count;
    if (piece.empty()) out_.pop_front();
    if (inPieces) break;
  }
  if (untilCut_) *untilCut_ -= taken;
  return taken;
}

bool FaultyLine::TakeCut() {
  if (untilCut_ != 0U) return false;
  Empty();
  return true;
}

void FaultyLine::Empty() {
  untilCut_.reset();
  out_.clear();
  Silence();
}

}  // namespace tavlyn::sim
