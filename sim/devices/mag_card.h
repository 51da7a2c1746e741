// A card's magnetic stripe as ISO/IEC 7811 lays it out: each track is a start sentinel, its characters, an
// end sentinel and a check character (LRC) over all of them. Track 1 has characters of six bits, tracks 2 and
// 3 of four; the head that reads them drops their parity bits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "sim/devices/faults.h"

namespace tavlyn::sim {

inline constexpr std::size_t kTracks = 3;

struct MagCard {
  std::array<Bytes, kTracks> tracks;  // empty: nothing is written there
};

// Makes a card from tracks as printed: "%B12^DOE?;12=34?+56?" is tracks 1, 2 and 3. Track 3 may also begin
// with a second semicolon. None if a track cannot encode a character, is longer than its stripe or lacks its
// end sentinel.
std::optional<MagCard> ParseMagCard(std::string_view text);

// The check character over these characters.
std::uint8_t CheckCharacter(std::span<const std::uint8_t> characters);
// Whether the sentinels are in place and the check character matches.
bool TrackIsGood(std::size_t track, std::span<const std::uint8_t> characters);

}  // namespace tavlyn::sim
