// Loading a template file: what differs goes through the record sets and is committed.
#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "api.h"
#include "core/openings.h"
#include "core/text.h"
#include "core/wipe.h"
#include "files/template_file.h"
#include "files/template_format.h"
#include "reader/records.h"

namespace tavlyn {
namespace {

constexpr std::size_t kTitleWithin = 128;
constexpr int kLineRoom = 128;
constexpr int kCardLineRoom = 257;
// First byte of a separator area whose reader keeps iExOutputFormat.
constexpr std::uint8_t kExtendedFormat = 0x24;
// The eleventh configuration of a reader is never loaded.
constexpr unsigned kLoadedConfigs = 10;

// In this order the records are compared and pushed.
constexpr std::array kPushOrder = {kIDBitCnts,   kTimeParms,    kCfgFlags,     kCfgFlags2, kCfgFlags3,
                                   kIDDispParms, kIDDispParms2, kIDDispParms3, kLEDCtrl,   kBprRlyCtrl};

struct Parsed {
  ~Parsed() { Wipe(&slot.HashKeyData, sizeof slot.HashKeyData); }

  tsCfgSlot slot;
  bool outputFormatGiven = false;
  bool inSepBlock = false;
  std::size_t sepBytes = 0;
};

void StoreKeyword(std::string_view keyword, std::uint16_t value, Parsed& parsed) {
  for (const SavedOption& option : kSavedOptions) {
    if (!SameText(keyword, option.keyword)) continue;
    parsed.slot.*option.word = value;
    return;
  }
  const auto named =
      std::ranges::find_if(kFields, [&](const Field& each) { return SameText(keyword, each.keyword); });
  if (named == kFields.end()) return;
  parsed.slot[named->id] = static_cast<std::int16_t>(value);
  if (named->id == field::IDDispParms_iExOutputFormat) parsed.outputFormatGiven = true;
}

void TakeSepBytes(std::string_view line, Parsed& parsed) {
  Tokens tokens(line);
  for (std::string_view token = tokens.Next(kDataDelimiters); !token.empty();
       token = tokens.Next(kDataDelimiters)) {
    unsigned byte = 0;
    if (parsed.sepBytes >= kSepFldBytes || !Scan(token, "%x", byte)) return;
    parsed.slot.sFldSepData[parsed.sepBytes++] = static_cast<std::uint8_t>(byte);
  }
}

void TakeEntry(std::string_view line, Parsed& parsed) {
  Tokens tokens(line);
  const std::string_view keyword = tokens.Next(kEntryDelimiters);
  const std::string_view value = tokens.Next(kEntryDelimiters);
  std::uint16_t number = 0;
  if (!value.empty() && Scan(value, "%hu", number)) StoreKeyword(keyword, number, parsed);
}

// False at the end of the configuration.
bool TakeLine(std::string_view line, Parsed& parsed) {
  line = Content(line);
  if (line.empty()) return true;
  const bool named = line.find(kSepBlockName) != std::string_view::npos;
  if (parsed.inSepBlock) {
    if (named && line.find("END") != std::string_view::npos) return false;
    TakeSepBytes(line, parsed);
  } else if (named && line.find("BEGIN") != std::string_view::npos) {
    parsed.inSepBlock = true;
    parsed.sepBytes = 0;
  } else {
    TakeEntry(line, parsed);
  }
  return true;
}

// A file may change the separator data but never its format byte.
bool MayPushSepData(const tsCfgSlot& from, const tsCfgSlot& to) {
  const auto& area = from.sFldSepData;
  return (area[0] != 0 || area[1] != 0) && to.sFldSepData[0] != 0 && area[0] == to.sFldSepData[0] &&
         area != to.sFldSepData;
}

void Push(const tsCfgSlot& from, const tsCfgSlot& to) {
  if (from.AZERTYShiftlock != to.AZERTYShiftlock)
    SetAZERTYShiftLock(static_cast<std::int16_t>(from.AZERTYShiftlock));
  if (from.ExtendedPrecisionMath != to.ExtendedPrecisionMath) {
    SetExtendedPrecisionMath(static_cast<std::int16_t>(from.ExtendedPrecisionMath));
  }
  for (const Record record : kPushOrder) {
    if (from.record[record] != to.record[record]) SetRecord(record, from.record[record].data());
  }
  if (MayPushSepData(from, to)) SetSepFldData(from.sFldSepData.data(), kSepFldBytes);
}

// Fields that the file does not mention keep their values.
void LoadConfig(std::FILE* file) {
  const tsCfgSlot& slot = EntryOfActDev().ActiveSlot();
  Parsed parsed{.slot = slot};
  char line[kLineRoom];
  while (std::fgets(line, sizeof line, file) != nullptr && TakeLine(line, parsed)) {
  }
  if (parsed.outputFormatGiven && slot.sFldSepData[0] != kExtendedFormat) {
    parsed.slot[field::IDDispParms_iExOutputFormat] = 0;
  }
  Push(parsed.slot, slot);
}

void SkipLine(std::FILE* file) {
  char line[kCardLineRoom];
  if (std::fgets(line, sizeof line, file) == nullptr) return;
}

// A good card type clears the priority, which its own line then sets; a bad line leaves what is there.
void LoadCard(std::FILE* file, tsCfgSlot& slot) {
  long type = 0;
  if (std::fscanf(file, "CardType: %ld", &type) == 1) {
    slot.CardType = static_cast<std::uint16_t>(type);
    slot.CardPriority = 0;
  }
  SkipLine(file);
  int priority = 0;
  if (std::fscanf(file, "CardPriority: %d", &priority) == 1)
    slot.CardPriority = static_cast<std::uint16_t>(priority);
  SkipLine(file);
}

std::uint32_t LoadConfigs(std::FILE* file, unsigned highest) {
  tsDevEntry& entry = EntryOfActDev();
  const std::uint8_t remembered = entry.ActConfig;
  std::uint32_t result = 1;
  for (unsigned config = 0; config <= highest && config < kLoadedConfigs; ++config) {
    UseConfig(static_cast<std::uint8_t>(config));
    LoadConfig(file);
    LoadCard(file, entry.CfgSlot[config]);
    // Deliberately the slot after the one just loaded.
    entry.CfgSlot[config + 1].bCfgLoaded = 1;
    SkipLine(file);
    if (result != 0) result = WriteCfgLocked();
  }
  // After a failure the configuration last handled stays active.
  if (result != 0) UseConfig(remembered);
  return result;
}

}  // namespace

bool HasTitle(std::FILE* file) {
  std::array<char, kTitleWithin> head;
  const std::size_t got = std::fread(head.data(), 1, head.size(), file);
  const bool found = std::string_view(head.data(), got).find(kTemplateTitle) != std::string_view::npos;
  std::rewind(file);
  return found;
}

std::uint32_t LoadTemplateFile(const char* path) {
  const File file = OpenFile(path, "r");
  if (file == nullptr || !HasTitle(file.get())) return 0;
  const std::uint16_t highest = EntryOfActDev().MaxConfig;
  if (highest != 0) return LoadConfigs(file.get(), highest);
  LoadConfig(file.get());
  return WriteCfgLocked();
}

}  // namespace tavlyn
