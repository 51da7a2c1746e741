// IDs of a magnetic-stripe reader: the selected piece of the last swipe, as text.
#include <algorithm>
#include <array>
#include <cstdio>
#include <span>

#include "api.h"
#include "core/openings.h"
#include "core/state.h"
#include "magstripe/exchange.h"
#include "magstripe/product.h"
#include "magstripe/tracks.h"

namespace tavlyn::magstripe {
namespace {

constexpr std::uint16_t kMostField = 50;
constexpr std::uint16_t kMostOffset = 100;
constexpr std::uint16_t kTracks = 3;

// Puts the selected piece into the buffer; returns the length of its text.
std::uint16_t TakeId(std::span<std::uint8_t> id) {
  tsSorbaneIdSel& selection = ActiveCfg().IdSel;
  selection.Length = static_cast<std::uint16_t>(id.size());
  const Track& piece = FetchPiece(
      {selection.Track, selection.Field, selection.Offset, selection.Length, selection.Termination}, 1);
  std::ranges::fill(id, std::uint8_t{0});
  std::copy_n(piece.begin(), std::min(piece.size(), id.size()), id.begin());
  EntryOfActDev().LastLibErr = 0;
  Tell(kClearData);
  return static_cast<std::uint16_t>(std::ranges::find(id, std::uint8_t{0}) - id.begin());
}

// The reply has a count in two hexadecimal numbers, low byte first, then a state.
std::uint32_t AskQueue() {
  shared.magstripe.queueCount = 0;
  shared.magstripe.queueState = 0;
  Reply reply;
  if (!Exchange(kQueue, reply)) return 0;
  std::array<char, kPacket + 1> text{};
  std::copy(reply.begin() + kQueue.at, reply.end(), text.begin());
  unsigned low = 0;
  unsigned high = 0;
  unsigned state = 0;
  std::sscanf(text.data(), "%02X%02X%02X", &low, &high, &state);
  shared.magstripe.queueCount = static_cast<std::uint16_t>(high * 256 + low);
  shared.magstripe.queueState = static_cast<std::uint8_t>(state);
  return shared.magstripe.queueCount;
}

}  // namespace

std::uint16_t FetchId(std::uint8_t* buffer, std::int16_t length) {
  return TakeId({buffer, static_cast<std::size_t>(length)});
}

// Deliberately puts the ID into the cache and not into the buffer, whose contents then replace it there. Only
// a call whose buffer is the cache gets anything.
std::uint16_t FetchId32(std::uint8_t* /*buffer*/, std::int16_t length) {
  shared.id.LastIDLen = static_cast<std::uint16_t>(std::min<std::int16_t>(length, kIdBytes));
  return TakeId(std::span(shared.id.LastIDBytes).first(shared.id.LastIDLen));
}

std::uint32_t FetchQueuedId(std::uint16_t /*first*/, std::int16_t /*second*/) {
  return TakeId(shared.magstripe.queuedId);
}

std::uint32_t QueuedIdPart(std::int16_t index) {
  constexpr std::int16_t kCount = 32;
  constexpr std::int16_t kState = 33;
  // Deliberately the first byte, whichever is asked for.
  if (index >= 0 && index < kCount) return shared.magstripe.queuedId[0];
  if (index == kCount) return AskQueue();
  return index == kState ? shared.magstripe.queueState : UnsupportedSigned();
}

}  // namespace tavlyn::magstripe

using namespace tavlyn;
using namespace tavlyn::magstripe;

std::uint32_t sorbaneSetActiveID(std::uint16_t track, std::uint16_t field, std::uint16_t offset,
                                 std::uint16_t term) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  EntryOfActDev().LastLibErr = 0;
  if (track < 1 || track > kTracks || field < 1 || field > kMostField || offset > kMostOffset) return 0;
  tsSorbaneIdSel& selection = ActiveCfg().IdSel;
  selection.Track = track;
  selection.Field = field;
  selection.Offset = offset;
  selection.Termination = term;
  return 1;
}
