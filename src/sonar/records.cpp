#include "sonar/records.h"

#include <algorithm>

#include "api.h"

namespace tavlyn::sonar {
namespace {

// Brings the words of a record into their bounds. Returns the error word of the first that was outside, or 0.
// The bounded words of a record have consecutive error words.
std::uint32_t Sanitize(const Record& record, std::uint16_t* words) {
  std::uint32_t first = 0;
  std::uint32_t error = record.error;
  for (std::size_t at = 0; at < record.words; ++at) {
    const Bounds& bounds = kFields[record.first + at].bounds;
    if (!bounds.Limit()) continue;
    const auto value = static_cast<std::int16_t>(words[at]);
    const std::int16_t within = bounds.Corrected(value);
    if (within != value && first == 0) first = error;
    words[at] = static_cast<std::uint16_t>(within);
    ++error;
  }
  return first;
}

// The error word for the record's first word that is out of its bounds, or 0.
std::uint32_t BoundsError(const Record& record, const std::uint16_t* words) {
  SonarWords copy{};
  std::copy_n(words, record.words, copy.begin());
  return Sanitize(record, copy.data());
}

}  // namespace

void Sanitize(SonarWords& words) {
  for (const Record& record : kRecords) Sanitize(record, words.data() + record.first);
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
  if (const std::uint32_t error = BoundsError(record, words); error != 0) {
    entry.LastLibErr = error;
    return 0;
  }
  std::copy_n(words, record.words, entry.SonarBlock.words.begin() + record.first);
  entry.SonarBlock.*record.changed = 1;
  entry.LastLibErr = 0;
  return 1;
}

namespace {

// Every record type consists of words only.
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
