// The fields of a configuration by name, and their values in the selected configuration of the active reader,
// as the library mirrors it. Nothing here causes traffic, but for StoreNow.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/fields.h"
#include "files/template_words.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Every word but the padding.
const std::vector<Field>& Fields();
// "CfgFlags2", without the prefix that it has as a type
std::string_view RecordOf(const Field& field);
// "CfgFlags2.bBeepID"
std::string FullName(const Field& field);
// "takes 0 to 15"
std::string RangeText(const Bounds& bounds);
// By its full name, or by the name alone where only one record has it; else throws Failure, which names the
// nearest.
const Field& FindField(const std::string& name);

// A value for a field.
struct FieldValue {
  Field field;
  std::int16_t value;
};
// From "FIELD=VALUE". Throws Failure for what no reader keeps.
FieldValue ParseFieldValue(const std::string& text);
// By full names.
Json Values(const std::vector<FieldValue>& values);

// Throws Failure for a value outside the range of its field: {"IDBitCnts.iIDBitCnt": 300, …}.
void CheckRanges(const Json& values);

// Throws Failure when the configuration was not read.
RecordWords ReadRecord(Record record);
// Puts the values into the mirror. Throws Failure with the range that the library's error word names.
void Store(const std::vector<FieldValue>& values);
// The same for LEDs and relay, sent at once and not for the reader's storage.
void StoreNow(const std::vector<FieldValue>& values);

// Everything of a configuration that a template file holds, by full name, in its order; a plus reader's card
// type too.
Json Settings();

// How settings name what stands in no record.
inline constexpr const char* kCardTypeName = "CardType";
inline constexpr const char* kCardPriorityName = "CardPriority";
std::string SepByteName(std::size_t at);
const char* PriorityText(bool high);

}  // namespace tavlyn::ctl
