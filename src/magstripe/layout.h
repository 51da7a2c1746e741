// Where each setting is in the bytes of the configuration's commands. The tables serve both directions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <tuple>

#include "core/mirror.h"
#include "magstripe/commands.h"

namespace tavlyn::magstripe {

template <typename Owner>
struct Bits {
  std::uint8_t byte;
  std::uint8_t shift;
  std::uint8_t mask;
  std::uint8_t Owner::*member;
};
using FieldBits = Bits<tsSorbaneField>;
using SystemBits = Bits<tsSorbaneCfg>;

inline constexpr std::array kKeysLowBits = {
    FieldBits{0, 7, 1, &tsSorbaneField::Enable},
    FieldBits{0, 6, 1, &tsSorbaneField::Skip},
    FieldBits{0, 0, 63, &tsSorbaneField::nKeys},
};
inline constexpr std::array kSelectionBits = {
    FieldBits{0, 0, 3, &tsSorbaneField::Track},    FieldBits{0, 5, 1, &tsSorbaneField::ShowSepSen},
    FieldBits{0, 6, 1, &tsSorbaneField::ShowLRC},  FieldBits{0, 7, 1, &tsSorbaneField::IgnoreLRC},
    FieldBits{1, 0, 255, &tsSorbaneField::Field},  FieldBits{2, 0, 255, &tsSorbaneField::ByteOffset},
    FieldBits{3, 0, 255, &tsSorbaneField::Length}, FieldBits{4, 0, 255, &tsSorbaneField::Termination},
};
inline constexpr std::array kSystemBits = {
    SystemBits{0, 7, 1, &tsSorbaneCfg::HaltKBSend},
    SystemBits{0, 6, 1, &tsSorbaneCfg::UseNumKP},
    SystemBits{0, 0, 7, &tsSorbaneCfg::TrackEnables},
    SystemBits{5, 0, 255, &tsSorbaneCfg::Beeper},
};

inline constexpr std::size_t kKeyPressAt = 1;  // times in steps of 4 ms
inline constexpr std::size_t kKeyReleaseAt = 2;
inline constexpr std::size_t kLuidAt = 3;  // low byte first

// Two bits each, in the order of LedColor.
struct LedPlace {
  std::uint8_t byte;
  std::uint8_t shift;
};
inline constexpr std::array<LedPlace, kLeds> kLedPlaces = {{{1, 0}, {0, 6}, {0, 4}, {0, 2}, {0, 0}}};

// No bit of a command belongs to two settings.
template <typename Table>
consteval bool AreApart(const Table& table) {
  std::array<unsigned, std::tuple_size_v<Payload>> taken{};
  for (const auto& bits : table) {
    const unsigned mask = static_cast<unsigned>(bits.mask) << bits.shift;
    if (mask > 0xFF || (taken[bits.byte] & mask) != 0) return false;
    taken[bits.byte] |= mask;
  }
  return true;
}
static_assert(AreApart(kKeysLowBits) && AreApart(kSelectionBits) && AreApart(kSystemBits));

// The three parts in which a user field is sent.
struct FieldPart {
  const Command& read;
  const Command& write;
  std::span<const FieldBits> bits;
  std::uint8_t keys;        // how many key bytes the part has,
  std::uint8_t keysAt;      // from this byte on,
  std::uint8_t firstKey;    // and which
  bool failureLeavesError;  // a lost selection part deliberately leaves no error word
};
inline constexpr std::array kFieldParts = {
    FieldPart{kReadKeysLow, kWriteKeysLow, kKeysLowBits, 8, 1, 0, true},
    FieldPart{kReadKeysHigh, kWriteKeysHigh, {}, 8, 0, 8, true},
    FieldPart{kReadSelection, kWriteSelection, kSelectionBits, 0, 0, 0, false},
};

void UnpackField(const FieldPart& part, const Payload& bytes, tsSorbaneField& field);
Payload PackField(const FieldPart& part, const tsSorbaneField& field);

void UnpackSystem(const Payload& bytes, tsSorbaneCfg& cfg);
Payload PackSystem(const tsSorbaneCfg& cfg);

void UnpackLeds(const Payload& bytes, tsSorbaneCfg& cfg);
Payload PackLeds(const tsSorbaneCfg& cfg);

}  // namespace tavlyn::magstripe
