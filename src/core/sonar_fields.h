// The words of a sonar sensor's records: their keys, bounds and steps, derived from sonar_fields.inc.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "api/sonar.h"
#include "core/fields.h"

namespace tavlyn {
namespace sonar {

// The first line of the records' text file.
inline constexpr const char* kTitle = "--- Sonar Configuration Template File ---";

// The words of all four records by their keys: sonar::PingRateS and so on.
enum Word : std::uint8_t {
#define FIELD(record, name, key, ...) key,
#include "core/sonar_fields.inc"
  kWordCount
};
inline constexpr Word kFirstOfSonarParms = LEDFlagsS;
inline constexpr Word kFirstOfWalkAwayParms = KeyCountWA;
inline constexpr Word kFirstOfWalkUpParms = KeyCountWU;
inline constexpr Word kFirstOfIdleParms = Reserved1I;

inline constexpr double kUnitsPerInch = 3.472222;

struct Field {
  const char* key;
  Bounds bounds = {};
  std::uint8_t step = 1;  // of the byte in which the sensor stores it
  bool inches = false;    // a distance, which the sensor stores in its own units
  bool readOnly = false;  // the sensor takes no other value
  const char* comment = "";
};

// Indexed by Word.
inline constexpr std::array kFields = {
#define FIELD(record, name, word, ...) Field{.key = #word, __VA_ARGS__},
#include "core/sonar_fields.inc"
};

// The public structs and the table have the same layout.
#define FIELD(record, name, key, ...) \
  static_assert(offsetof(ts##record, name) == 2 * (key - kFirstOf##record));
#include "core/sonar_fields.inc"

}  // namespace sonar

using SonarWords = std::array<std::uint16_t, sonar::kWordCount>;

}  // namespace tavlyn
