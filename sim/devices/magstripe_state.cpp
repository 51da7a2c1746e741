#include "sim/devices/magstripe_state.h"

#include <algorithm>
#include <utility>

namespace tavlyn::sim {
namespace {

constexpr std::uint8_t kEnabled = 0x80;
constexpr std::uint8_t kBadRead = 0x80;
constexpr std::uint8_t kTrackMask = 0x07;
constexpr std::uint8_t kGoodTwoBadLong = 0x29;  // upper nibble: good read, lower: bad; bit 3 of each: long

bool IsEnabled(const MagstripeState& state, std::size_t track) {
  return (state.working.system[0] >> track & 1U) != 0;
}

Bytes ReadTrack(MagstripeState& state, std::size_t track, const Bytes& characters) {
  if (characters.empty() || !IsEnabled(state, track)) return {0};
  const bool good = TrackIsGood(track, characters);
  ++(good ? state.goodTracks : state.badTracks);
  Bytes read{static_cast<std::uint8_t>(characters.size() | (good ? 0U : kBadRead))};
  read.insert(read.end(), characters.begin(), characters.end());
  return read;
}

void MakeAvailable(MagstripeState& state, MagstripeState::Swipe swipe) {
  state.tracks = std::move(swipe);
  state.available = 0;
  for (std::size_t track = 0; track < kTracks; ++track) {
    if (state.tracks[track][0] != 0) state.available |= static_cast<std::uint8_t>(1U << track);
  }
}

}  // namespace

MagSettings FactoryMagSettings() {
  MagSettings settings;
  for (std::size_t track = 0; track < kTracks; ++track) {
    UserField& field = settings.fields[track];
    field.first = {kEnabled | 2, 0x28, 0x00};  // Enter follows the track
    field.control = {static_cast<std::uint8_t>(track + 1), 1, 0, 0xFF, 0xFF};
  }
  settings.system = {kTrackMask, 2, 2, 1, 0, kGoodTwoBadLong};
  settings.leds = {0x27, 0x01};
  return settings;
}

MagstripeState NewMagstripeState() {
  MagstripeState state;
  state.working = state.stored = FactoryMagSettings();
  state.tracks.fill({0});
  return state;
}

void TakeSwipe(MagstripeState& state, const MagCard& card) {
  MagstripeState::Swipe swipe;
  for (std::size_t track = 0; track < kTracks; ++track) {
    swipe[track] = ReadTrack(state, track, card.tracks[track]);
  }
  const bool anything =
      std::any_of(swipe.begin(), swipe.end(), [](const Bytes& read) { return read[0] != 0; });
  if (!anything) return;
  ++state.cardsRead;
  if (state.available == 0) {
    MakeAvailable(state, std::move(swipe));
  } else if (state.waiting.size() < MagstripeState::kQueueRoom) {
    state.waiting.push_back(std::move(swipe));
  } else if (state.overruns < 0xFF) {
    ++state.overruns;
  }
}

void ClearAvailable(MagstripeState& state) {
  state.available = 0;
  if (state.waiting.empty()) return;
  MakeAvailable(state, std::move(state.waiting.front()));
  state.waiting.pop_front();
}

void LoseWorkingMemory(MagstripeState& state) {
  state.working = state.stored;
  state.writing = false;
  state.tracks.fill({0});
  state.available = 0;
  state.waiting.clear();
  state.overruns = 0;
  state.cardsRead = 0;
  state.goodTracks = state.badTracks = state.commands = state.unknownCommands = 0;
}

}  // namespace tavlyn::sim
