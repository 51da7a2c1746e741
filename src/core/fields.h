// The words of the configuration records: their names, bounds and keywords, derived from fields.inc.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "api/types.h"

namespace tavlyn {

// The records, in the order of fields.inc and of every list of them.
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

// The public types, in the order of Record.
inline constexpr std::array<const char*, kRecordCount> kRecordNames = {
    "tsIDBitCnts", "tsCfgFlags",     "tsIDDispParms",  "tsTimeParms", "tsCfgFlags2",
    "tsCfgFlags3", "tsIDDispParms2", "tsIDDispParms3", "tsLEDCtrl",   "tsBprRlyCtrl"};

using RecordWords = std::array<std::int16_t, kRecordWords>;
using Records = std::array<RecordWords, kRecordCount>;

struct FieldId {
  Record record;
  std::uint8_t word;

  bool operator==(const FieldId&) const = default;
};

// One name per field: field::CfgFlags_bFixLenDsp and so on.
namespace field {
#define FIELD(record, word, ...) \
  inline constexpr FieldId record##_##word{k##record, offsetof(ts##record, word) / sizeof(std::int16_t)};
#include "core/fields.inc"
}  // namespace field

// A set refuses a word outside these, compared as a signed word. A word that a read delivers becomes least
// when it is below least, and replacement when it is above most.
struct Bounds {
  std::int16_t least = std::numeric_limits<std::int16_t>::min();
  std::int16_t most = std::numeric_limits<std::int16_t>::max();
  std::int16_t replacement = most;

  [[nodiscard]] constexpr std::int16_t Corrected(std::int16_t value) const {
    return value < least ? least : value > most ? replacement : value;
  }
  [[nodiscard]] constexpr bool Limit() const { return *this != Bounds{}; }
  bool operator==(const Bounds&) const = default;
};
consteval Bounds UpTo(std::int16_t most) { return {.most = most}; }

// How a template file shows a word.
enum class Save : std::uint8_t { kUnsaved, kNumber, kFlag };

struct Field {
  FieldId id;
  const char* name;
  const char* keyword = name;  // in a template file
  Save save = Save::kUnsaved;
  Bounds bounds = {};
  std::int16_t step = 1;  // of the byte in which the reader stores it
  const char* comment = "";
};

inline constexpr std::array kFields = {
#define FIELD(record, word, ...) Field{.id = field::record##_##word, .name = #word, __VA_ARGS__},
#include "core/fields.inc"
};

constexpr std::span<const Field, kRecordWords> FieldsOf(Record record) {
  return std::span(kFields).subspan(record * kRecordWords).first<kRecordWords>();
}
constexpr const Field& FieldOf(FieldId id) { return FieldsOf(id.record)[id.word]; }

static_assert(kFields.size() == kRecordCount * kRecordWords);
static_assert(std::ranges::all_of(kFields, [](const Field& each) { return &FieldOf(each.id) == &each; }),
              "the rows are in the order of the public structs");

// The error word of a set whose first word is out of its bounds; the next words have the next error words.
constexpr std::uint32_t ErrorBase(Record record) {
  switch (record) {
    case kIDBitCnts: return TAVLYN_ERR_ID_BIT_CNTS;
    case kIDDispParms: return TAVLYN_ERR_ID_DISP_PARMS;
    case kTimeParms: return TAVLYN_ERR_TIME_PARMS;
    // Deliberately the same for lead and trail characters.
    case kIDDispParms2:
    case kIDDispParms3: return TAVLYN_ERR_CHR_CNT;
    default: return 0;
  }
}
constexpr std::uint32_t ErrorOf(FieldId id) { return ErrorBase(id.record) + id.word; }
static_assert(std::ranges::none_of(kFields, [](const Field& each) {
  return each.bounds.Limit() && ErrorBase(each.id.record) == 0;
}));

// Feature bits that a reader reports in ExFeatures01.
inline constexpr std::int16_t kAsciiConversion = 0x20;
inline constexpr std::int16_t kExtendedSepFields = 0x40;
inline constexpr std::int16_t kWideParity = 0x80;

// The bounds of the parity counts of a reader that reports kWideParity.
inline constexpr Bounds kWideParityBounds = UpTo(142);
constexpr bool IsParityCount(FieldId id) {
  return id == field::IDBitCnts_iLeadParityBitCnt || id == field::IDBitCnts_iTrailParityBitCnt;
}
constexpr Bounds BoundsOf(const Field& each, bool wideParity) {
  return wideParity && IsParityCount(each.id) ? kWideParityBounds : each.bounds;
}

// Brings the words of a record into their bounds. Returns the error word of the first that was outside, or 0.
constexpr std::uint32_t Sanitize(Record record, std::int16_t* words, bool wideParity) {
  std::uint32_t error = 0;
  for (const Field& each : FieldsOf(record)) {
    std::int16_t& word = words[each.id.word];
    const std::int16_t within = BoundsOf(each, wideParity).Corrected(word);
    if (within != word && error == 0) error = ErrorOf(each.id);
    word = within;
  }
  return error;
}

// What a read delivered, brought into the bounds that a set would accept.
constexpr void Sanitize(Records& records) {
  const bool wide = (records[kTimeParms][field::TimeParms_ExFeatures01.word] & kWideParity) != 0;
  for (std::size_t record = 0; record < kRecordCount; ++record) {
    Sanitize(static_cast<Record>(record), records[record].data(), wide);
  }
}

// The error word for the first word that is out of its bounds, or 0.
constexpr std::uint32_t BoundsError(Record record, const std::int16_t* words, bool wideParity = false) {
  RecordWords copy{};
  std::copy_n(words, kRecordWords, copy.begin());
  return Sanitize(record, copy.data(), wideParity);
}

}  // namespace tavlyn
