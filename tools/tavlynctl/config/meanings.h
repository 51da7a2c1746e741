// What the words of a configuration mean, and their units (meanings.inc).
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "core/fields.h"

namespace tavlyn::ctl {

enum class Unit : std::uint8_t {
  kFlag,
  kChoice,  // of the named values
  kNumber,
  kCount,
  kBits,
  kLength,
  kCharacter,
  kMilliseconds,
  kSeconds,
  kDebounce,
  kInches,
  kSensorUnits,
  kBlankSteps,
  kMask,
  kKeyCode,
  kModifiers,
};

struct NamedNumber {
  std::int16_t number = 0;
  const char* word = nullptr;
};

// A record, or a group of settings.
struct Group {
  std::uint32_t product;
  const char* name;  // "TimeParms"
  const char* text;
};

struct Meaning {
  const char* group;
  const char* key;  // "TimeParms.iIDHoldTO", "PingRateS", "UserField[#].Track"
  Unit unit;
  const char* text;
  std::array<NamedNumber, 4> names = {};  // as many as have a word
  const char* note = "";
  const char* called = "";  // by the bindings; empty for what is in none of their records
};

// In the order of the table.
std::span<const Group> Groups();
std::span<const Meaning> Meanings();

// Of a word that is not padding: "TimeParms.iIDHoldTO"; of a setting, with its indices: "LedColor[0]".
const Meaning& MeaningOf(std::string_view name);

// Whether a name is that of a setting, or has the # of its key for indices.
bool IsOfKey(std::string_view name, std::string_view key);

}  // namespace tavlyn::ctl
