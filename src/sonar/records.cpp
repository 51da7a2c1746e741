#include "sonar/records.h"

#include <algorithm>

#include "api.h"

namespace tavlyn::sonar {
namespace {

struct Bounds {
  Word word;
  std::int16_t least;
  std::int16_t most;
  std::int16_t over;
  std::uint32_t error;
};

constexpr std::array kBounds = {
#define SONAR_BOUNDED(key, least, most, over, error) Bounds{key, least, most, over, error},
#include "core/sonar_fields.inc"
};

// The error word of the record's first word out of its range, or 0.
std::uint32_t RangeError(const Record& record, const std::uint16_t* words) {
  for (const Bounds& bounds : kBounds) {
    if (bounds.word < record.first || bounds.word >= record.first + record.words) continue;
    const auto value = static_cast<std::int16_t>(words[bounds.word - record.first]);
    if (value < bounds.least || value > bounds.most) return bounds.error;
  }
  return 0;
}

}  // namespace

void ApplyLimits(SonarWords& words) {
  for (const Bounds& bounds : kBounds) {
    const auto value = static_cast<std::int16_t>(words[bounds.word]);
    if (value < bounds.least) words[bounds.word] = static_cast<std::uint16_t>(bounds.least);
    if (value > bounds.most) words[bounds.word] = static_cast<std::uint16_t>(bounds.over);
  }
}

std::uint32_t GetRecord(RecordId id, std::uint16_t* words) {
  tsDevEntry& entry = EntryOfActDev();
  const Record& record = kRecords[id];
  entry.LastLibErr = TAVLYN_ERR_GET;
  if (words == nullptr) {
    entry.LastLibErr = TAVLYN_ERR_GET_NULL;
    return 0;
  }
  if (entry.SonarBlock.bParmsValid == 0) {
    entry.LastLibErr = TAVLYN_ERR_GET_UNREAD;
    return 0;
  }
  std::copy_n(entry.SonarBlock.words.begin() + record.first, record.words, words);
  entry.LastLibErr = 0;
  return 1;
}

std::uint32_t SetRecord(RecordId id, const std::uint16_t* words) {
  tsDevEntry& entry = EntryOfActDev();
  const Record& record = kRecords[id];
  entry.LastLibErr = TAVLYN_ERR_SET;
  if (words == nullptr) {
    entry.LastLibErr = TAVLYN_ERR_SET_NULL;
    return 0;
  }
  if (const std::uint32_t error = RangeError(record, words); error != 0) {
    entry.LastLibErr = error;
    return 0;
  }
  std::copy_n(words, record.words, entry.SonarBlock.words.begin() + record.first);
  entry.SonarBlock.*record.changed = 1;
  entry.LastLibErr = 0;
  return 1;
}

namespace {

// Every record type is words and nothing else.
template <typename Parms>
std::uint32_t Get(RecordId id, Parms* record) {
  return SonarIsActive() ? GetRecord(id, reinterpret_cast<std::uint16_t*>(record)) : UnsupportedSigned();
}

template <typename Parms>
std::uint32_t Set(RecordId id, const Parms* record) {
  return SonarIsActive() ? SetRecord(id, reinterpret_cast<const std::uint16_t*>(record))
                         : UnsupportedSigned();
}

}  // namespace
}  // namespace tavlyn::sonar

using namespace tavlyn::sonar;

std::uint32_t GetSonarParms(tsSonarParms* record) { return Get(kSonarParms, record); }
std::uint32_t GetWalkAwayParms(tsWalkAwayParms* record) { return Get(kWalkAwayParms, record); }
std::uint32_t GetWalkUpParms(tsWalkUpParms* record) { return Get(kWalkUpParms, record); }
std::uint32_t GetIdleParms(tsIdleParms* record) { return Get(kIdleParms, record); }

std::uint32_t SetSonarParms(const tsSonarParms* record) { return Set(kSonarParms, record); }
std::uint32_t SetWalkAwayParms(const tsWalkAwayParms* record) { return Set(kWalkAwayParms, record); }
std::uint32_t SetWalkUpParms(const tsWalkUpParms* record) { return Set(kWalkUpParms, record); }
std::uint32_t SetIdleParms(const tsIdleParms* record) { return Set(kIdleParms, record); }
