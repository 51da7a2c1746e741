// What a device entry holds for a sonar sensor.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "api/sonar.h"

namespace tavlyn {

// The words of all four records by their keys: sonar::PingRateS and so on.
namespace sonar {
enum Word : std::uint8_t {
#define SONAR_WORD(record, name, key, comment) key,
#include "core/sonar_fields.inc"
  kWordCount
};
inline constexpr Word kFirstOfSonarParms = LEDFlagsS;
inline constexpr Word kFirstOfWalkAwayParms = KeyCountWA;
inline constexpr Word kFirstOfWalkUpParms = KeyCountWU;
inline constexpr Word kFirstOfIdleParms = Reserved1I;
}  // namespace sonar

// The public structs and the table are one layout.
#define SONAR_WORD(record, name, key, comment) \
  static_assert(offsetof(ts##record, name) == 2 * (sonar::key - sonar::kFirstOf##record));
#include "core/sonar_fields.inc"

using SonarWords = std::array<std::uint16_t, sonar::kWordCount>;

struct SonarBlock {
  std::uint32_t SonarOpMark;    // of the last halt or reset; nothing decides on it
  std::uint32_t bOpened;        // a search opened the device
  std::uint32_t bParmsValid;    // a read filled the records
  std::uint32_t bSonarChanged;  // what the next write must send
  std::uint32_t bWalkAwayChanged;
  std::uint32_t bWalkUpChanged;
  std::uint32_t bIdleChanged;
  SonarWords words;  // tsSonarParms, tsWalkAwayParms, tsWalkUpParms, tsIdleParms
};

// The records as the sensor read last sent them, before limits; one for the whole process.
inline constinit SonarWords SonarShadow{};

}  // namespace tavlyn
