#include "sim/devices/mag_card.h"

#include <algorithm>
#include <utility>

namespace tavlyn::sim {
namespace {

struct Layout {
  std::uint8_t firstCharacter;  // the character written as 0
  std::uint8_t characters;
  std::uint8_t startSentinel;
  std::uint8_t endSentinel;
  std::size_t longest;  // including sentinels and check character
};

constexpr std::array<Layout, kTracks> kLayouts{{
    {' ', 64, '%' - ' ', '?' - ' ', 79},
    {'0', 16, ';' - '0', '?' - '0', 40},
    {'0', 16, ';' - '0', '?' - '0', 107},
}};

// The track that a sentinel begins, given the number of the track before it (0 for none).
std::size_t TrackBegun(char sentinel, std::size_t before) {
  if (sentinel == '%' && before == 0) return 1;
  if (sentinel == ';' && before < 2) return 2;
  if ((sentinel == ';' || sentinel == '+') && before < 3) return 3;
  return 0;
}

// text: from after the start sentinel to the end sentinel.
bool WriteTrack(const Layout& layout, std::string_view text, Bytes& track) {
  track.push_back(layout.startSentinel);
  for (const char character : text) {
    const int value = static_cast<unsigned char>(character) - layout.firstCharacter;
    if (value < 0 || value >= layout.characters || value == layout.startSentinel) return false;
    track.push_back(static_cast<std::uint8_t>(value));
  }
  track.push_back(CheckCharacter(track));
  return track.size() <= layout.longest;
}

}  // namespace

std::optional<MagCard> ParseMagCard(std::string_view text) {
  MagCard card;
  std::size_t number = 0;
  if (text.empty()) return std::nullopt;
  while (!text.empty()) {
    number = TrackBegun(text.front(), number);
    const std::size_t end = text.find('?');
    if (number == 0 || end == std::string_view::npos) return std::nullopt;
    if (!WriteTrack(kLayouts[number - 1], text.substr(1, end), card.tracks[number - 1])) return std::nullopt;
    text.remove_prefix(end + 1);
  }
  return card;
}

std::uint8_t CheckCharacter(std::span<const std::uint8_t> characters) {
  std::uint8_t check = 0;
  for (const std::uint8_t character : characters) check = static_cast<std::uint8_t>(check ^ character);
  return check;
}

bool TrackIsGood(std::size_t track, std::span<const std::uint8_t> characters) {
  const Layout& layout = kLayouts[track];
  const std::size_t size = characters.size();
  return size >= 3 && characters[0] == layout.startSentinel && characters[size - 2] == layout.endSentinel &&
         characters[size - 1] == CheckCharacter(characters.first(size - 1));
}

}  // namespace tavlyn::sim
