// Records in the mirror of a magnetic-stripe reader: the times and the user fields. Nothing is sent from
// here.
#include <algorithm>

#include "api.h"
#include "core/openings.h"
#include "magstripe/product.h"

namespace tavlyn::magstripe {
namespace {

using Member = std::uint8_t tsSorbaneField::*;

// User fields are numbered from 1; null for any other number.
tsSorbaneField* UserFieldOf(std::uint16_t number) {
  return number >= 1 && number <= kUserFields ? &ActiveCfg().UserField[number - 1U] : nullptr;
}

std::uint32_t GetField(std::uint16_t number, Member member) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  const tsSorbaneField* field = UserFieldOf(number);
  return field != nullptr ? field->*member : 0;
}

std::uint32_t SetField(std::uint16_t number, Member member, std::uint8_t value) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  tsSorbaneField* field = UserFieldOf(number);
  if (field == nullptr) return 0;
  field->*member = value;
  return 1;
}

std::uint32_t SetFlag(std::uint16_t number, Member member, std::int16_t on) {
  return SetField(number, member, on != 0 ? 1 : 0);
}

// A key byte of a field, or null.
std::uint8_t* KeyByteOf(std::uint16_t number, std::uint16_t index) {
  tsSorbaneField* field = UserFieldOf(number);
  return field != nullptr && index < kFieldKeys ? &field->Keybyte[index] : nullptr;
}

}  // namespace

std::uint32_t GetTimeParms(std::int16_t* words) {
  tsDevEntry& entry = EntryOfActDev();
  if (words == nullptr) {
    entry.LastLibErr = TAVLYN_ERR_GET_NULL;
    return 0;
  }
  std::ranges::copy(entry.CfgSlot[0].record[kTimeParms], words);
  entry.LastLibErr = 0;
  return 1;
}

std::uint32_t SetTimeParms(const std::int16_t* words) {
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = words == nullptr ? TAVLYN_ERR_SET_NULL : BoundsError(kTimeParms, words);
  if (entry.LastLibErr != 0) return 0;
  tsCfgSlot& slot = entry.CfgSlot[0];
  // The last word is the flags byte, which a set leaves alone.
  std::copy_n(words, kRecordWords - 1, slot.record[kTimeParms].begin());
  slot.bDirtyTime = 1;
  return 1;
}

std::uint16_t* GetKeyTime(KeyTime which) {
  tsSorbaneCfg& cfg = ActiveCfg();
  return which == KeyTime::kPress ? &cfg.KeyPressTime : &cfg.KeyReleaseTime;
}

}  // namespace tavlyn::magstripe

using namespace tavlyn;
using namespace tavlyn::magstripe;

// clang-format off
std::uint32_t sorbaneGetFieldEnable(std::uint16_t field) { return GetField(field, &tsSorbaneField::Enable); }
std::uint32_t sorbaneSetFieldEnable(std::uint16_t field, std::int16_t on) { return SetFlag(field, &tsSorbaneField::Enable, on); }
std::uint32_t sorbaneGetFieldSkip(std::uint16_t field) { return GetField(field, &tsSorbaneField::Skip); }
std::uint32_t sorbaneSetFieldSkip(std::uint16_t field, std::int16_t on) { return SetFlag(field, &tsSorbaneField::Skip, on); }
std::uint32_t sorbaneGetFieldShowSepSen(std::uint16_t field) { return GetField(field, &tsSorbaneField::ShowSepSen); }
std::uint32_t sorbaneSetFieldShowSepSen(std::uint16_t field, std::int16_t on) { return SetFlag(field, &tsSorbaneField::ShowSepSen, on); }
std::uint32_t sorbaneGetFieldShowLRC(std::uint16_t field) { return GetField(field, &tsSorbaneField::ShowLRC); }
std::uint32_t sorbaneSetFieldShowLRC(std::uint16_t field, std::int16_t on) { return SetFlag(field, &tsSorbaneField::ShowLRC, on); }
std::uint32_t sorbaneGetFieldIgnoreLRC(std::uint16_t field) { return GetField(field, &tsSorbaneField::IgnoreLRC); }
std::uint32_t sorbaneSetFieldIgnoreLRC(std::uint16_t field, std::int16_t on) { return SetFlag(field, &tsSorbaneField::IgnoreLRC, on); }
std::uint32_t sorbaneGetFieldTrack(std::uint16_t field) { return GetField(field, &tsSorbaneField::Track); }
std::uint32_t sorbaneSetFieldTrack(std::uint16_t field, std::uint8_t value) { return SetField(field, &tsSorbaneField::Track, value); }
std::uint32_t sorbaneGetFieldMagField(std::uint16_t field) { return GetField(field, &tsSorbaneField::Field); }
std::uint32_t sorbaneSetFieldMagField(std::uint16_t field, std::uint8_t value) { return SetField(field, &tsSorbaneField::Field, value); }
std::uint32_t sorbaneGetFieldOffset(std::uint16_t field) { return GetField(field, &tsSorbaneField::ByteOffset); }
std::uint32_t sorbaneSetFieldOffset(std::uint16_t field, std::uint8_t value) { return SetField(field, &tsSorbaneField::ByteOffset, value); }
std::uint32_t sorbaneGetFieldLength(std::uint16_t field) { return GetField(field, &tsSorbaneField::Length); }
std::uint32_t sorbaneSetFieldLength(std::uint16_t field, std::uint8_t value) { return SetField(field, &tsSorbaneField::Length, value); }
std::uint32_t sorbaneGetFieldTerm(std::uint16_t field) { return GetField(field, &tsSorbaneField::Termination); }
std::uint32_t sorbaneSetFieldTerm(std::uint16_t field, std::uint8_t value) { return SetField(field, &tsSorbaneField::Termination, value); }
std::uint32_t sorbaneGetFieldKeyCount(std::uint16_t field) { return GetField(field, &tsSorbaneField::nKeys); }
std::uint32_t sorbaneSetFieldKeyCount(std::uint16_t field, std::uint8_t value) { return SetField(field, &tsSorbaneField::nKeys, value); }
// clang-format on

std::uint32_t sorbaneGetFieldKeydata(std::uint16_t field, std::uint16_t index) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  const std::uint8_t* key = KeyByteOf(field, index);
  return key != nullptr ? *key : 0;
}

std::uint32_t sorbaneSetFieldKeydata(std::uint16_t field, std::uint16_t index, std::uint8_t value) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  std::uint8_t* key = KeyByteOf(field, index);
  if (key == nullptr) return 0;
  *key = value;
  return 1;
}
