#include "tools/tavlynctl/config/fields.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "api.h"
#include "tools/nearest.h"
#include "tools/tavlynctl/config/meanings.h"
#include "tools/tavlynctl/config/product_settings.h"
#include "tools/tavlynctl/config/values.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

constexpr int kMostOfWord = std::numeric_limits<std::int16_t>::max();

// Compares with full names, names alone (suggested with their record), records and the other settings.
std::string Suggestion(const std::string& name) {
  const auto& fields = Fields();
  std::vector<std::string> names;
  names.reserve(3 * fields.size() + SettingNames().size());
  for (const Field& field : fields) names.push_back(FullName(field));
  for (const Field& field : fields) names.emplace_back(field.name);
  for (const Field& field : fields) names.emplace_back(RecordOf(field));
  for (const NamedSetting& setting : SettingNames()) names.push_back(setting.name);
  const auto found = Nearest(name, names);
  if (!found) return "; config show lists them all";
  const bool isShort = *found >= fields.size() && *found < 2 * fields.size();
  return "; did you mean " + names[*found - (isShort ? fields.size() : 0)] + "?";
}

// "iLeadParityBitCnt, iTrailParityBitCnt, …" of a record; empty if there is no such record.
std::string FieldNames(const std::string& record) {
  std::string names;
  for (const Field& field : Fields()) {
    if (record == RecordOf(field)) names += (names.empty() ? "" : ", ") + std::string(field.name);
  }
  return names;
}

// In the active reader.
Bounds ActiveBounds(const Field& field) {
  const bool wide = (ReadRecord(kTimeParms)[field::TimeParms_ExFeatures01.word] & kWideParity) != 0;
  return BoundsOf(field, wide);
}

// Two records share an error word, so the record matters too.
// cppcheck-suppress passedByValue ; an enumeration
[[noreturn]] void RefuseRecord(Record record) {
  const std::uint32_t word = GetLastLibErr();
  const std::string told = ErrorText();
  for (const Field& field : FieldsOf(record)) {
    if (!field.bounds.Limit() || ErrorOf(field.id) != word) continue;
    throw Failure(kUsage, FullName(field) + " " + RangeText(ActiveBounds(field)) + ", " + told);
  }
  throw Failure(kDeviceError, "a record of " + ActiveDeviceName() + " could not be set, " + told);
}

template <typename Type>
bool Get(std::uint32_t (*get)(Type*), RecordWords& words) {
  Type record{};
  static_assert(sizeof record == sizeof words);
  const bool done = get(&record) == 1;
  words = std::bit_cast<RecordWords>(record);
  return done;
}

template <typename Type>
bool Set(std::uint32_t (*set)(const Type*), const RecordWords& words) {
  const auto record = std::bit_cast<Type>(words);
  return set(&record) == 1;
}

struct RecordCalls {
  bool (*get)(RecordWords&);
  bool (*set)(const RecordWords&);
};

#define CALLS(name)                                                    \
  {                                                                    \
    [](RecordWords& words) { return Get(Get##name, words); },          \
        [](const RecordWords& words) { return Set(Set##name, words); } \
  }
// In the order of Record.
constexpr RecordCalls kCalls[kRecordCount] = {
    CALLS(IDBitCnts), CALLS(Flags),        CALLS(IDDispParms),  CALLS(TimeParms), CALLS(Flags2),
    CALLS(Flags3),    CALLS(IDDispParms2), CALLS(IDDispParms3), CALLS(LEDCtrl),   CALLS(BprRlyCtrl)};
#undef CALLS

void StoreRecord(Record record, const RecordWords& words) {
  if (!kCalls[record].set(words)) RefuseRecord(record);
}

void StoreRecords(const std::vector<FieldValue>& values, bool now) {
  for (std::size_t index = 0; index < kRecordCount; ++index) {
    const auto record = static_cast<Record>(index);
    const auto concerns = [&](const FieldValue& one) { return one.field.id.record == record; };
    if (std::ranges::none_of(values, concerns)) continue;
    RecordWords words = ReadRecord(record);
    for (const FieldValue& one : values) {
      if (concerns(one)) words[one.field.id.word] = one.value;
    }
    if (now) words[field::LEDCtrl_bVolatile.word] = 1;
    StoreRecord(record, words);
    // bNotBootDev is in a block that only other records mark as dirty.
    if (record == kCfgFlags3) StoreRecord(kCfgFlags2, ReadRecord(kCfgFlags2));
  }
}

void AddSepBytes(Json& settings) {
  std::array<std::uint8_t, kSepFldBytes> bytes{};
  if (GetSepFldData(bytes.data(), kSepFldBytes) != 1) {
    throw Failure(kDeviceError, "separator data of " + ActiveDeviceName() + ": " + ErrorText());
  }
  for (std::size_t at = 0; at < bytes.size(); ++at) settings[SepByteName(at)] = Hex(bytes[at], 2);
}

}  // namespace

const std::vector<Field>& Fields() {
  static const std::vector<Field> kNamed = [] {
    std::vector<Field> named;
    std::ranges::copy_if(kFields, std::back_inserter(named),
                         [](const Field& one) { return !std::string_view(one.name).starts_with("iPad"); });
    return named;
  }();
  return kNamed;
}

std::string RangeText(const Bounds& bounds) {
  return "takes " + std::to_string(std::max<int>(bounds.least, 0)) + " to " + std::to_string(bounds.most);
}

std::string_view RecordOf(const Field& field) {
  return std::string_view(kRecordNames[field.id.record]).substr(2);
}

std::string FullName(const Field& field) { return std::string(RecordOf(field)) + "." + field.name; }

const Field& FindField(const std::string& name) {
  const Field* found = nullptr;
  for (const Field& field : Fields()) {
    if (name == FullName(field)) return field;
    if (name != field.name) continue;
    if (found != nullptr) {
      throw Failure(kUsage,
                    "more than one record has " + name + ": " + FullName(*found) + " and " + FullName(field));
    }
    found = &field;
  }
  if (found != nullptr) return *found;
  const std::string inside = FieldNames(name);
  if (!inside.empty()) throw Failure(kUsage, name + " is a record; its fields are " + inside);
  throw Failure(kUsage, "there is no field " + name + Suggestion(name));
}

FieldValue ParseFieldValue(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) throw Failure(kUsage, text + " is not FIELD=VALUE");
  const Field& field = FindField(text.substr(0, equals));
  if (field.save == Save::kUnsaved) throw Failure(kUsage, FullName(field) + " cannot be set");
  const Meaning& meaning = MeaningOf(FullName(field));
  const auto value = NumberOf(meaning, std::string_view(text).substr(equals + 1));
  if (!value) throw Failure(kUsage, text + ": " + FullName(field) + " " + WhatItTakes(meaning));
  const bool isFlag = field.save == Save::kFlag;
  if (*value < 0 || *value > (isFlag ? 1 : kMostOfWord)) {
    throw Failure(kUsage, text + ": " + FullName(field) + " " +
                              (isFlag ? WhatItTakes(meaning) : RangeText(field.bounds)));
  }
  return {field, static_cast<std::int16_t>(*value)};
}

Json Values(const std::vector<FieldValue>& values) {
  Json named = Json::object();
  for (const FieldValue& one : values) named[FullName(one.field)] = one.value;
  return named;
}

void CheckRanges(const Json& values) {
  for (const Field& field : kFields) {
    const std::string name = FullName(field);
    if (!field.bounds.Limit() || !values.contains(name)) continue;
    const auto value = values[name].get<std::int16_t>();
    const Bounds bounds = ActiveBounds(field);
    if (bounds.Corrected(value) == value) continue;
    throw Failure(kUsage, name + " = " + std::to_string(value) + ": it " + RangeText(bounds));
  }
}

RecordWords ReadRecord(Record record) {
  RecordWords words{};
  if (kCalls[record].get(words)) return words;
  throw Failure(kDeviceError,
                std::string(kRecordNames[record]) + " of " + ActiveDeviceName() + ": " + ErrorText());
}

void Store(const std::vector<FieldValue>& values) { StoreRecords(values, false); }
void StoreNow(const std::vector<FieldValue>& values) { StoreRecords(values, true); }

Json Settings() {
  Json settings{{kSavedOptions[0].keyword, GetAZERTYShiftLock()},
                {kSavedOptions[1].keyword, GetExtendedPrecisionMath()}};
  std::array<RecordWords, kRecordCount> records;
  for (std::size_t i = 0; i < kRecordCount; ++i) records[i] = ReadRecord(static_cast<Record>(i));
  for (const Field& field : Fields()) {
    if (field.save == Save::kUnsaved) continue;
    settings[FullName(field)] = records[field.id.record][field.id.word];
  }
  AddSepBytes(settings);
  if (const std::int32_t type = GetCardType(); type >= 0) {
    settings[kCardTypeName] = Hex(static_cast<unsigned>(type), 4);
    settings[kCardPriorityName] = PriorityText(GetCardPriority() != 0);
  }
  return settings;
}

std::string SepByteName(std::size_t at) {
  return std::string(kSepBlockName) + "[" + std::to_string(at) + "]";
}

const char* PriorityText(bool high) { return high ? "high" : "low"; }

void DescribeCardType(Json& configuration) {
  const std::int32_t type = GetCardType();
  if (type < 0) return;
  configuration["card_type"] = Hex(static_cast<unsigned>(type), 4);
  configuration["priority"] = PriorityText(GetCardPriority() != 0);
}

}  // namespace tavlyn::ctl
