#include "magstripe/tracks.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <tuple>

#include "api.h"
#include "core/openings.h"
#include "magstripe/exchange.h"
#include "magstripe/product.h"

namespace tavlyn::magstripe {
namespace {

constexpr std::uint8_t kHeaderCount = 127;
constexpr std::size_t kBlockBytes = kTrackBlock.received;
static_assert(kBlockBytes == std::tuple_size_v<Payload>);

// A track's coding according to ISO/IEC 7811, and the characters that separate its fields.
struct Coding {
  std::uint8_t lastBlock;
  std::uint8_t mask;
  std::uint8_t base;  // the text character of raw 0
  std::array<std::int8_t, 2> ends;
  std::int8_t start;  // counts like the end of a field when fields are counted, but ends none
};
constexpr std::array<Coding, 3> kCodings = {{
    {8, 63, 0x20, {0x5F, 0x3E}, 0x15},
    {4, 15, 0x30, {0x0F, 0x0D}, 0x0B},
    {10, 15, 0x30, {0x0F, 0x0D}, 0x0B},
}};

const Coding* CodingOf(std::uint16_t track) {
  return track >= 1 && track <= kCodings.size() ? &kCodings[track - 1U] : nullptr;
}

void Convert(const Coding& coding, std::span<std::uint8_t> bytes) {
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>((byte & coding.mask) + coding.base);
}

bool FetchBlocks(std::uint16_t track, std::size_t lastBlock) {
  Payload bytes;
  for (std::size_t block = 0; block <= lastBlock; ++block) {
    if (!Ask(kTrackBlock, bytes, {kDigits[track], kDigits[block]})) return false;
    std::ranges::copy(bytes, std::span(shared.magstripe.track).subspan(kBlockBytes * block).begin());
    if (block == 0) lastBlock = std::min(lastBlock, (shared.magstripe.track[0] & kHeaderCount) / kBlockBytes);
  }
  return true;
}

// Raw bytes by position; zeros beyond the end.
std::int8_t RawAt(std::size_t at) {
  return at < shared.magstripe.track.size() ? static_cast<std::int8_t>(shared.magstripe.track[at])
                                            : std::int8_t{0};
}

bool Ends(const Coding& coding, std::int8_t byte) { return std::ranges::count(coding.ends, byte) != 0; }

std::optional<std::size_t> StartOf(const Coding& coding, const Piece& piece) {
  int remaining = piece.field;
  for (std::size_t at = 1; RawAt(at) != 0;) {
    const std::int8_t byte = RawAt(at);
    if (byte == coding.start || Ends(coding, byte)) --remaining;
    ++at;
    if (remaining == 0 && RawAt(at + piece.offset) != 0) return at + piece.offset;
  }
  return std::nullopt;
}

// Deliberately copies as many bytes as the scan has passed, but from where it stopped, not from where it
// started. Only whether length is zero matters.
void CopyPiece(const Coding& coding, const Piece& piece, std::size_t start) {
  const auto term = static_cast<std::int8_t>(piece.term);
  const auto stops = [&](std::int8_t byte) {
    return byte == term || piece.length == 0 || Ends(coding, byte);
  };
  std::size_t stop = start;
  while (RawAt(stop) != 0 && !stops(RawAt(stop))) ++stop;
  // A scan that reaches the end of the data copies nothing.
  if (RawAt(stop) == 0) return;
  const auto rest = std::span(shared.magstripe.track).subspan(stop);
  std::copy_n(rest.begin(), std::min(stop - start, rest.size()), shared.magstripe.field.begin());
}

constexpr std::uint8_t kTrackBits = 7;

}  // namespace

Track& FetchTrack(std::uint16_t track, std::uint16_t convert) {
  shared.magstripe.track.fill(0);
  const Coding* coding = CodingOf(track);
  if (coding == nullptr) return shared.magstripe.track;
  if (!FetchBlocks(track, coding->lastBlock)) shared.magstripe.track.fill(0);
  const std::size_t count = shared.magstripe.track[0] & kHeaderCount;
  if (convert != 0) Convert(*coding, std::span(shared.magstripe.track).subspan(1, count));
  return shared.magstripe.track;
}

Track& FetchPiece(const Piece& piece, std::uint16_t convert) {
  shared.magstripe.field.fill(0);
  FetchTrack(piece.track, 0);
  const Coding* coding = CodingOf(piece.track);
  if (coding == nullptr) return shared.magstripe.field;
  if (const auto start = StartOf(*coding, piece)) CopyPiece(*coding, piece, *start);
  // Deliberately converts the whole buffer, so that a converted piece has no terminator.
  if (convert != 0) Convert(*coding, shared.magstripe.field);
  return shared.magstripe.field;
}

}  // namespace tavlyn::magstripe

using namespace tavlyn;
using namespace tavlyn::magstripe;

std::uint32_t sorbaneGetTrackEnables() {
  return MagstripeIsActive() ? ActiveCfg().TrackEnables & kTrackBits : shared.UnsupportedValue;
}

std::uint32_t sorbaneSetTrackEnables(std::uint8_t tracks) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  ActiveCfg().TrackEnables = tracks & kTrackBits;
  return 1;
}

const std::uint8_t* sorbaneGetTrackData(std::uint16_t track, std::uint16_t convert) {
  return MagstripeIsActive() ? FetchTrack(track, convert).data() : nullptr;
}

std::uint32_t sorbaneGetTrackData_BYTE(std::uint16_t track, std::uint16_t convert, std::uint16_t index) {
  constexpr std::uint16_t kBeyondTrack = 255;
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  if (index >= kBeyondTrack) return 0;
  if (index == 0) {
    const Track& fetched = FetchTrack(track, convert);
    std::copy(fetched.begin(), fetched.end() - 1, shared.magstripe.trackCopy.begin());
  }
  return shared.magstripe.trackCopy[index];
}

const std::uint8_t* sorbaneGetTrackFieldOffset(std::uint16_t track, std::uint16_t field, std::uint16_t offset,
                                               std::uint16_t length, std::uint16_t term,
                                               std::uint16_t convert) {
  return MagstripeIsActive() ? FetchPiece({track, field, offset, length, term}, convert).data() : nullptr;
}
