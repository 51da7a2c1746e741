// The text file of a sonar sensor's records.
#include <algorithm>
#include <array>
#include <string_view>

#include "core/text.h"
#include "sonar/product.h"
#include "sonar/records.h"

namespace tavlyn::sonar {
namespace {

// A longer line is read in pieces, each as a line of its own.
constexpr std::size_t kLineRoom = 128;

// The records are set in this order, and the error word is that of the last.
constexpr std::array kLoadOrder = {kWalkAwayParms, kWalkUpParms, kSonarParms, kIdleParms};

void TakeLine(std::string_view line, SonarWords& words) {
  const Entry entry = EntryIn(Content(line));
  if (!entry.number) return;
  const auto named =
      std::ranges::find_if(kFields, [&](const Field& each) { return SameText(entry.key, each.key); });
  if (named != kFields.end()) words[static_cast<std::size_t>(named - kFields.begin())] = *entry.number;
}

}  // namespace

std::uint32_t SaveFile(const char* path) {
  const File file = OpenFile(path, "wt");
  if (file == nullptr) return 0;
  WriteHeading(file.get(), kTitle);
  const SonarWords& words = ActiveBlock().words;
  for (const Record& record : kRecords) {
    WriteSection(file.get(), record.name);
    for (std::size_t at = record.first; at < std::size_t{record.first} + record.words; ++at) {
      WriteEntry(file.get(), kFields[at].key, words[at], kFields[at].comment);
    }
  }
  return 1;
}

std::uint32_t LoadFile(const char* path) {
  const File file = OpenFile(path, "rt");
  if (file == nullptr) return 0;
  // Words that the file does not name keep their values.
  SonarWords words = ActiveBlock().words;
  Lines<kLineRoom> lines(file.get());
  std::string_view line;
  while (lines.Next(line)) TakeLine(line, words);
  // A record with a value out of its range is dropped as a whole; the others are stored.
  for (const RecordId id : kLoadOrder) SetRecord(id, words.data() + kRecords[id].first);
  return 1;
}

}  // namespace tavlyn::sonar
