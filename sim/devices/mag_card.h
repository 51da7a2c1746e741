// A card's magnetic stripe as ISO/IEC 7811 lays it out: each track is a start sentinel, its characters, an
// end sentinel and a check character (LRC) over all of them. Track 1 has characters of six bits, tracks 2 and
// 3 of four; the parity bit of each stays with the head that reads it.
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

// A card of tracks as they are printed: "%B12^DOE?;12=34?+56?" is tracks 1, 2 and 3. Track 3 may also begin
// with a second semicolon. None when a character has no place on its track, or a track is longer than its
// stripe or lacks its end sentinel.
std::optional<MagCard> ParseMagCard(std::string_view text);

// Over the characters in front of it.
std::uint8_t CheckCharacter(std::span<const std::uint8_t> characters);
// Sentinels in their places, and the check character agrees.
bool TrackIsGood(std::size_t track, std::span<const std::uint8_t> characters);

}  // namespace tavlyn::sim
