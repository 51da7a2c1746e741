// The fields of a configuration by name, and their values in the library's mirror of the active reader's
// selected configuration. Nothing here causes traffic except StoreNow.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/fields.h"
#include "files/template_words.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Every word except the padding.
const std::vector<Field>& Fields();
// "CfgFlags2", without the prefix that it has as a type
std::string_view RecordOf(const Field& field);
// "CfgFlags2.bBeepID"
std::string FullName(const Field& field);
// "takes 0 to 15"
std::string RangeText(const Bounds& bounds);
// By its full name, or by the name alone if only one record has it; otherwise throws Failure, which names the
// nearest.
const Field& FindField(const std::string& name);

// A value for a field.
struct FieldValue {
  Field field;
  std::int16_t value;
};
// From "FIELD=VALUE". Throws Failure for a field or value that no reader has.
FieldValue ParseFieldValue(const std::string& text);
// Keyed by full name.
Json Values(const std::vector<FieldValue>& values);

// Throws Failure for a value outside the range of its field: {"IDBitCnts.iIDBitCnt": 300, …}.
void CheckRanges(const Json& values);

// Throws Failure if the configuration was not read.
RecordWords ReadRecord(Record record);
// Puts the values into the mirror. Throws Failure with the range that the library's error word refers to.
void Store(const std::vector<FieldValue>& values);
// The same for LEDs and relay, sent at once and not stored by the reader.
void StoreNow(const std::vector<FieldValue>& values);

// Everything that a template file contains of a configuration, by full name, in the file's order; a plus
// reader's card type too.
Json Settings();

// The names in Settings of what is in no record.
inline constexpr const char* kCardTypeName = "CardType";
inline constexpr const char* kCardPriorityName = "CardPriority";
std::string SepByteName(std::size_t at);
const char* PriorityText(bool high);
// Adds the selected configuration's card type and priority; nothing for a plain reader.
void DescribeCardType(Json& configuration);

}  // namespace tavlyn::ctl
