// The sensor's four parameter records in the mirror.
#pragma once

#include <array>
#include <cstdint>

#include "core/mirror.h"
#include "core/openings.h"

namespace tavlyn::sonar {

struct Record {
  const char* name;
  Word first;
  std::uint8_t words;
  std::uint32_t error;  // of a set whose first bounded word is out of its bounds
  std::uint32_t tsSonarBlock::*changed;
  // Its pages.
  std::uint8_t firstPage;
  std::uint8_t pages;
};

enum RecordId : std::uint8_t { kSonarParms, kWalkAwayParms, kWalkUpParms, kIdleParms };

inline constexpr std::array<Record, 4> kRecords = {{
    {"tsSonarParms", kFirstOfSonarParms, 8, TAVLYN_ERR_SONAR_PARMS, &tsSonarBlock::bSonarChanged, 0, 1},
    {"tsWalkAwayParms", kFirstOfWalkAwayParms, 16, TAVLYN_ERR_WALK_AWAY, &tsSonarBlock::bWalkAwayChanged, 1,
     2},
    {"tsWalkUpParms", kFirstOfWalkUpParms, 16, TAVLYN_ERR_WALK_UP, &tsSonarBlock::bWalkUpChanged, 3, 2},
    {"tsIdleParms", kFirstOfIdleParms, 8, 0, &tsSonarBlock::bIdleChanged, 5, 1},
}};

inline tsSonarBlock& ActiveBlock() { return EntryOfActDev().SonarBlock; }

// What a read delivered, brought into the bounds that a set would accept.
void Sanitize(SonarWords& words);

// What the record exports do on a sensor; all words of the record, from its first.
std::uint32_t GetRecord(RecordId id, std::uint16_t* words);
std::uint32_t SetRecord(RecordId id, const std::uint16_t* words);

}  // namespace tavlyn::sonar
