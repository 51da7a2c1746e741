// Exports that ask a magnetic-stripe reader: the state of the last swipe, its tracks, counts.
#include <algorithm>

#include "api.h"
#include "core/openings.h"
#include "magstripe/tracks.h"
#include "magstripe/transactions.h"

namespace tavlyn {
namespace {

constexpr std::size_t kCountBytes = 8;

// A number of so many bytes, low byte first, out of an answer; 0 without one.
std::uint32_t Count(const SorbaneCommand& command, std::size_t at, std::size_t width) {
  std::array<std::uint8_t, kCountBytes> bytes;
  SorbaneAsk(command, bytes);
  std::uint32_t number = 0;
  for (std::size_t byte = width; byte-- > 0;) number = number << 8 | bytes[at + byte];
  return number;
}

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t sorbaneIsDataAvailable() {
  if (!MagstripeIsActive()) return UnsupportedValue;
  SorbaneReply reply;
  return SorbaneQuery(sorbane::kStatus, reply) ? reply[sorbane::kStatus.at] & 7U : 0U;
}

std::uint32_t sorbaneClearDataAvailable() {
  if (!MagstripeIsActive()) return UnsupportedValue;
  return SorbaneTell(sorbane::kClearData) ? 1 : 0;
}

// Tests for no device.
std::uint32_t sorbaneClearOverrun() { return SorbaneTell(sorbane::kClearOverrun) ? 1 : 0; }

std::uint32_t sorbaneGetSystemUptime() {
  return MagstripeIsActive() ? Count(sorbane::kUptime, 0, 4) : UnsupportedValue;
}

std::uint32_t sorbaneGetSystemCardsRead() {
  return MagstripeIsActive() ? Count(sorbane::kUptime, 4, 4) : UnsupportedValue;
}

std::uint32_t sorbaneGetSystemInternalCount(std::uint32_t index) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  return index < kCountBytes / 2 ? Count(sorbane::kCounts, 2 * index, 2) : 0;
}

const std::uint8_t* sorbaneGetTrackData(std::uint16_t track, std::uint16_t convert) {
  return MagstripeIsActive() ? FetchTrack(track, convert).data() : nullptr;
}

std::uint32_t sorbaneGetTrackData_BYTE(std::uint16_t track, std::uint16_t convert, std::uint16_t index) {
  constexpr std::uint16_t kBeyondTrack = 255;
  if (!MagstripeIsActive()) return UnsupportedValue;
  if (index >= kBeyondTrack) return 0;
  if (index == 0) {
    const SorbaneTrack& fetched = FetchTrack(track, convert);
    std::copy(fetched.begin(), fetched.end() - 1, Sorbane.trackCopy.begin());
  }
  return Sorbane.trackCopy[index];
}

const std::uint8_t* sorbaneGetTrackFieldOffset(std::uint16_t track, std::uint16_t field, std::uint16_t offset,
                                               std::uint16_t length, std::uint16_t term,
                                               std::uint16_t convert) {
  return MagstripeIsActive() ? FetchPiece({track, field, offset, length, term}, convert).data() : nullptr;
}
