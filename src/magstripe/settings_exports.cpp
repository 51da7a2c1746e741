// Exports on the mirror of a magnetic-stripe reader. Nothing here is sent but the colours.
#include "api.h"
#include "core/openings.h"
#include "magstripe/outputs.h"

namespace tavlyn {
namespace {

using Member = std::uint8_t tsSorbaneField::*;

tsSorbaneCfg& Cfg() { return EntryOfActDev().SorbaneBlock.Cfg; }

// User fields are numbered from 1; null for a number that is none.
tsSorbaneField* FieldOf(std::uint16_t number) {
  return number >= 1 && number <= kSorbaneFields ? &Cfg().UserField[number - 1U] : nullptr;
}

std::uint32_t GetField(std::uint16_t number, Member member) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  const tsSorbaneField* field = FieldOf(number);
  return field != nullptr ? field->*member : 0;
}

std::uint32_t SetField(std::uint16_t number, Member member, std::uint8_t value) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  tsSorbaneField* field = FieldOf(number);
  if (field == nullptr) return 0;
  field->*member = value;
  return 1;
}

std::uint32_t SetFlag(std::uint16_t number, Member member, std::int16_t on) {
  return SetField(number, member, on != 0 ? 1 : 0);
}

// A key byte of a field, or null.
std::uint8_t* KeyOf(std::uint16_t number, std::uint16_t index) {
  tsSorbaneField* field = FieldOf(number);
  return field != nullptr && index < kSorbaneKeys ? &field->Keybyte[index] : nullptr;
}

constexpr std::uint8_t kTrackBits = 7;

// Which beep an export means, and the nibble that it has in Beeper.
constexpr std::uint16_t kGoodRead = 2;
constexpr std::uint16_t kBadRead = 3;
constexpr int kLongBit = 8;
constexpr int kCountBits = 7;
constexpr std::int16_t kMostBeepCount = 4;
constexpr std::uint32_t kLongFlag = 0x80;

bool IsBeep(std::uint16_t which) { return which == kGoodRead || which == kBadRead; }
int ShiftOf(std::uint16_t which) { return which == kGoodRead ? 4 : 0; }

constexpr std::uint16_t kMostField = 50;
constexpr std::uint16_t kMostOffset = 100;
constexpr std::uint16_t kTracks = 3;
constexpr std::uint16_t kMostColor = 3;

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

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
  if (!MagstripeIsActive()) return UnsupportedValue;
  const std::uint8_t* key = KeyOf(field, index);
  return key != nullptr ? *key : 0;
}

std::uint32_t sorbaneSetFieldKeydata(std::uint16_t field, std::uint16_t index, std::uint8_t value) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  std::uint8_t* key = KeyOf(field, index);
  if (key == nullptr) return 0;
  *key = value;
  return 1;
}

std::uint32_t sorbaneGetTrackEnables() {
  return MagstripeIsActive() ? Cfg().TrackEnables & kTrackBits : UnsupportedValue;
}

std::uint32_t sorbaneSetTrackEnables(std::uint8_t tracks) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  Cfg().TrackEnables = tracks & kTrackBits;
  return 1;
}

std::uint32_t sorbaneGetBeeper(std::uint16_t which) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  if (!IsBeep(which)) return 0;
  const int nibble = Cfg().Beeper >> ShiftOf(which);
  return static_cast<std::uint32_t>(nibble & kCountBits) | ((nibble & kLongBit) != 0 ? kLongFlag : 0);
}

std::uint32_t sorbaneSetBeeper(std::uint16_t which, std::int16_t count, std::int16_t longBeep) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  if (!IsBeep(which) || count < 0 || count > kMostBeepCount) return 0;
  const int nibble = count | (longBeep != 0 ? kLongBit : 0);
  const int others = Cfg().Beeper & ~(0x0F << ShiftOf(which));
  Cfg().Beeper = static_cast<std::uint8_t>(others | nibble << ShiftOf(which));
  return 1;
}

std::uint32_t sorbaneGetLED(std::uint16_t index) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  return index < kSorbaneLeds ? Cfg().LedColor[index] : 0;
}

std::uint32_t sorbaneSetLED(std::uint16_t index, std::uint16_t color) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  if (index >= kSorbaneLeds || color > kMostColor) return 0;
  Cfg().LedColor[index] = static_cast<std::uint8_t>(color);
  return SorbaneShowLeds();
}

std::uint32_t sorbaneSetActiveID(std::uint16_t track, std::uint16_t field, std::uint16_t offset,
                                 std::uint16_t term) {
  if (!MagstripeIsActive()) return UnsupportedValue;
  EntryOfActDev().LastLibErr = 0;
  if (track < 1 || track > kTracks || field < 1 || field > kMostField || offset > kMostOffset) return 0;
  tsSorbaneIdSel& selection = Cfg().IdSel;
  selection.Track = track;
  selection.Field = field;
  selection.Offset = offset;
  selection.Termination = term;
  return 1;
}
