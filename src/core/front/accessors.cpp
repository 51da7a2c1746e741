// The words of the records one by one. Nothing here has state or traffic of its own: a getter is a record
// get; a setter is a record get, one changed word, and a record set.
#include <type_traits>

#include "api.h"
#include "core/fields.h"
#include "core/openings.h"
#include "core/state.h"

namespace tavlyn {
namespace {

// Words that deliberately cannot be read, or cannot be written.
constexpr bool IsNeverRead(FieldId id) { return id == field::CfgFlags3_bNotBootDev; }
constexpr bool IsNeverWritten(FieldId id) { return IsNeverRead(id) || id == field::TimeParms_ExFeatures01; }

constexpr bool IsKeyTime(FieldId id) {
  return id == field::TimeParms_iUSBKeyPrsTm || id == field::TimeParms_iUSBKeyRlsTm;
}

// Null when the active device keeps no such word outside its records.
std::uint16_t* KeyTimeWord(FieldId id) {
  const auto keyTime = ActiveRoutine(&Product::keyTime);
  if (keyTime == nullptr) return nullptr;
  return keyTime(id == field::TimeParms_iUSBKeyPrsTm ? KeyTime::kPress : KeyTime::kRelease);
}

// A key time is accessed through the record only where it is one of its words.
bool IsOutsideRecord(FieldId id) {
  const Product* product = ActiveProduct();
  return IsKeyTime(id) && (product == nullptr || !product->keyTimesInRecord);
}

std::int16_t GetWord(FieldId id) {
  if (IsNeverRead(id)) return static_cast<std::int16_t>(shared.UnsupportedValue);
  if (IsOutsideRecord(id)) {
    const std::uint16_t* word = KeyTimeWord(id);
    return static_cast<std::int16_t>(word != nullptr ? *word : shared.UnsupportedValue);
  }
  if (!ActiveInRange()) return static_cast<std::int16_t>(shared.UnsupportedValue);
  RecordWords words{};
  const std::uint32_t result = GetActiveRecord(id.record, words.data());
  return result == 1 ? words[id.word] : static_cast<std::int16_t>(result);
}

std::uint16_t SetWord(FieldId id, std::int16_t value) {
  if (IsNeverWritten(id)) return shared.UnsupportedValue;
  if (IsOutsideRecord(id)) {
    std::uint16_t* word = KeyTimeWord(id);
    if (word == nullptr) return shared.UnsupportedValue;
    *word = static_cast<std::uint16_t>(value);
    return 1;
  }
  if (!ActiveInRange()) return shared.UnsupportedValue;
  RecordWords words{};
  const auto got = static_cast<std::uint16_t>(GetActiveRecord(id.record, words.data()));
  if (got != 1) return got;
  words[id.word] = value;
  return static_cast<std::uint16_t>(SetActiveRecord(id.record, words.data()));
}

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

// Each word becomes two exports, as iIDHoldTO of TimeParms becomes getTimeParms_iIDHoldTO and
// setTimeParms_iIDHoldTO. A name that the public header does not declare does not compile.
#define FIELD(record, name, ...)                                                                     \
  static_assert(std::is_same_v<decltype(&::get##record##_##name), std::int16_t (*)()>);              \
  static_assert(std::is_same_v<decltype(&::set##record##_##name), std::uint16_t (*)(std::int16_t)>); \
  std::int16_t get##record##_##name() { return GetWord(field::record##_##name); }                    \
  std::uint16_t set##record##_##name(std::int16_t value) { return SetWord(field::record##_##name, value); }
#include "core/fields.inc"
