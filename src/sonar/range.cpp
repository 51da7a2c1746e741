// The range of the nearest object, as words and in the form of an ID.
#include <algorithm>
#include <array>

#include "api.h"
#include "core/openings.h"
#include "sonar/exchange.h"
#include "sonar/layout.h"
#include "sonar/product.h"
#include "sonar/records.h"

namespace tavlyn::sonar {
namespace {

enum RangeWord : std::uint8_t { kDistance, kStatusBit0, kStatusBit1, kStatusBit2, kStatus, kRangeWords };

std::uint32_t QueryRange(std::uint16_t* words) {
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = 0;
  Report reply{};
  if (!Ask(Command::kRange, reply)) {
    entry.LastLibErr |= TAVLYN_ERR_COMMAND;
    return 0;
  }
  const std::uint8_t status = reply[1];
  words[kDistance] = InchesOf(reply[2]);
  words[kStatusBit0] = status & 1;
  words[kStatusBit1] = status >> 1 & 1;
  words[kStatusBit2] = status >> 2 & 1;
  words[kStatus] = status;
  return 1;
}

}  // namespace

std::uint16_t FetchId(std::uint8_t* buffer, std::int16_t length) {
  constexpr std::int16_t kIdLength = 4;
  std::array<std::uint16_t, kRangeWords> range{};
  // Deliberately returns an ID even after a failed query.
  QueryRange(range.data());
  const std::uint16_t luid = EntryOfActDev().LUID;
  if (length >= 1) buffer[0] = static_cast<std::uint8_t>(range[kStatusBit0]);
  if (length >= 2) buffer[1] = static_cast<std::uint8_t>(range[kDistance]);
  if (length >= kIdLength) {
    buffer[2] = static_cast<std::uint8_t>(luid);
    buffer[3] = static_cast<std::uint8_t>(luid >> 8);
    std::fill(buffer + kIdLength, buffer + length, std::uint8_t{0});
  }
  return kIdLength;
}

}  // namespace tavlyn::sonar

using namespace tavlyn;

std::uint32_t GetObjRangeInfo(std::uint16_t* words) {
  if (!SonarIsActive()) return UnsupportedSigned();
  return words != nullptr ? sonar::QueryRange(words) : 0;
}
