// The configuration records by name and number, derived from fields.inc.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "api/types.h"

namespace tavlyn {

// In the order in which the records stand in fields.inc and in every listing of them.
enum Record : std::uint8_t {
  kIDBitCnts,
  kCfgFlags,
  kIDDispParms,
  kTimeParms,
  kCfgFlags2,
  kCfgFlags3,
  kIDDispParms2,
  kIDDispParms3,
  kLEDCtrl,
  kBprRlyCtrl,
};
inline constexpr std::size_t kRecordCount = 10;
inline constexpr std::size_t kRecordWords = 8;

using RecordWords = std::array<std::int16_t, kRecordWords>;

struct FieldId {
  Record record;
  std::uint8_t word;
};

// One name per field: field::CfgFlags_bFixLenDsp and so on.
namespace field {
#define FIELD(record, word, name) inline constexpr FieldId record##_##name{k##record, word};
#include "core/fields.inc"
}  // namespace field

inline constexpr std::int16_t kAnyLeast = std::numeric_limits<std::int16_t>::min();
inline constexpr std::int16_t kWideParityLimit = 142;

struct FieldBounds {
  FieldId field;
  std::int16_t least;
  std::int16_t most;
  std::int16_t over;
  std::uint32_t error;
};

inline constexpr std::array kFieldBounds = {
#define BOUNDED(record, word, name, least, most, over, error) \
  FieldBounds{field::record##_##name, least, most, over, error},
#include "core/fields.inc"
};

// The counts to which kWideParityLimit applies where the reader reports kWideParity.
constexpr bool IsParityCount(FieldId id) { return id.record == kIDBitCnts && id.word <= 1; }

// The error word of the first word out of its bounds, or 0.
constexpr std::uint32_t BoundsError(Record record, const std::int16_t* words, bool wideParity = false) {
  for (const FieldBounds& bounds : kFieldBounds) {
    if (bounds.field.record != record) continue;
    const std::int16_t most = wideParity && IsParityCount(bounds.field) ? kWideParityLimit : bounds.most;
    const std::int16_t value = words[bounds.field.word];
    if (value < bounds.least || value > most) return bounds.error;
  }
  return 0;
}

// The public structs and the table are one layout.
#define FIELD(record, word, name) static_assert(offsetof(ts##record, name) == 2 * (word));
#include "core/fields.inc"

// Feature bits that a reader reports in ExFeatures01.
inline constexpr std::int16_t kAsciiConversion = 0x20;
inline constexpr std::int16_t kExtendedSepFields = 0x40;
inline constexpr std::int16_t kWideParity = 0x80;

}  // namespace tavlyn
