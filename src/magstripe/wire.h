// Where each setting stands in the bytes of the configuration's commands. The tables serve both directions.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/mirror.h"
#include "magstripe/commands.h"

namespace tavlyn {

// The bytes of any command of the configuration.
using SorbanePayload = std::array<std::uint8_t, 10>;

template <typename Owner>
struct SorbaneBits {
  std::uint8_t byte;
  std::uint8_t shift;
  std::uint8_t mask;
  std::uint8_t Owner::*member;
};
using SorbaneFieldBits = SorbaneBits<tsSorbaneField>;
using SorbaneSystemBits = SorbaneBits<tsSorbaneCfg>;

inline constexpr std::array kSorbaneKeysLowBits = {
    SorbaneFieldBits{0, 7, 1, &tsSorbaneField::Enable},
    SorbaneFieldBits{0, 6, 1, &tsSorbaneField::Skip},
    SorbaneFieldBits{0, 0, 63, &tsSorbaneField::nKeys},
};
inline constexpr std::array kSorbaneSelectionBits = {
    SorbaneFieldBits{0, 0, 3, &tsSorbaneField::Track},
    SorbaneFieldBits{0, 5, 1, &tsSorbaneField::ShowSepSen},
    SorbaneFieldBits{0, 6, 1, &tsSorbaneField::ShowLRC},
    SorbaneFieldBits{0, 7, 1, &tsSorbaneField::IgnoreLRC},
    SorbaneFieldBits{1, 0, 255, &tsSorbaneField::Field},
    SorbaneFieldBits{2, 0, 255, &tsSorbaneField::ByteOffset},
    SorbaneFieldBits{3, 0, 255, &tsSorbaneField::Length},
    SorbaneFieldBits{4, 0, 255, &tsSorbaneField::Termination},
};
inline constexpr std::array kSorbaneSystemBits = {
    SorbaneSystemBits{0, 7, 1, &tsSorbaneCfg::HaltKBSend},
    SorbaneSystemBits{0, 6, 1, &tsSorbaneCfg::UseNumKP},
    SorbaneSystemBits{0, 0, 7, &tsSorbaneCfg::TrackEnables},
    SorbaneSystemBits{5, 0, 255, &tsSorbaneCfg::Beeper},
};

// The three parts in which a user field travels.
struct SorbaneFieldPart {
  const SorbaneCommand& read;
  const SorbaneCommand& write;
  std::span<const SorbaneFieldBits> bits;
  std::uint8_t keys;        // how many key bytes the part carries,
  std::uint8_t keysAt;      // from this byte on,
  std::uint8_t firstKey;    // and which
  bool failureLeavesError;  // a lost control part deliberately leaves no error word
};
inline constexpr std::array kSorbaneFieldParts = {
    SorbaneFieldPart{sorbane::kReadKeysLow, sorbane::kWriteKeysLow, kSorbaneKeysLowBits, 8, 1, 0, true},
    SorbaneFieldPart{sorbane::kReadKeysHigh, sorbane::kWriteKeysHigh, {}, 8, 0, 8, true},
    SorbaneFieldPart{sorbane::kReadSelection, sorbane::kWriteSelection, kSorbaneSelectionBits, 0, 0, 0,
                     false},
};

void UnpackField(const SorbaneFieldPart& part, const SorbanePayload& bytes, tsSorbaneField& field);
SorbanePayload PackField(const SorbaneFieldPart& part, const tsSorbaneField& field);

void UnpackSystem(const SorbanePayload& bytes, tsSorbaneCfg& cfg);
SorbanePayload PackSystem(const tsSorbaneCfg& cfg);

void UnpackLeds(const SorbanePayload& bytes, tsSorbaneCfg& cfg);
SorbanePayload PackLeds(const tsSorbaneCfg& cfg);

}  // namespace tavlyn
