// Loading a template file: what differs is set by records and committed.
#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "core/openings.h"
#include "core/text.h"
#include "core/wipe.h"
#include "files/template_file.h"
#include "files/template_parse.h"
#include "reader/product.h"

namespace tavlyn {
namespace {

constexpr int kCardLineRoom = 257;

// The records are compared and pushed in this order.
constexpr std::array kPushOrder = {kIDBitCnts,   kTimeParms,    kCfgFlags,     kCfgFlags2, kCfgFlags3,
                                   kIDDispParms, kIDDispParms2, kIDDispParms3, kLEDCtrl,   kBprRlyCtrl};

struct Parsed {
  ~Parsed() { Wipe(&slot.HashKeyData, sizeof slot.HashKeyData); }

  tsCfgSlot slot;
  bool outputFormatGiven = false;
  bool inSepBlock = false;
  std::size_t sepBytes = 0;
};

void TakeEntry(const TemplateEntry& entry, Parsed& parsed) {
  if (!entry.number) return;
  if (entry.option != nullptr) parsed.slot.*entry.option->word = *entry.number;
  if (entry.field == nullptr) return;
  parsed.slot[entry.field->id] = static_cast<std::int16_t>(*entry.number);
  if (entry.field->id == field::IDDispParms_iExOutputFormat) parsed.outputFormatGiven = true;
}

void TakeSepBytes(const SepBytes& line, Parsed& parsed) {
  const std::size_t taken = std::min(line.count, kSepFldBytes - parsed.sepBytes);
  std::copy_n(line.bytes.begin(), taken, parsed.slot.sFldSepData.begin() + parsed.sepBytes);
  parsed.sepBytes += taken;
}

// False at the end of the configuration.
bool TakeLine(std::string_view text, Parsed& parsed) {
  const TemplateLine line = ParseLine(text, parsed.inSepBlock);
  switch (line.kind) {
    case LineKind::kSilent: break;
    case LineKind::kEntry: TakeEntry(ParseEntry(line.text), parsed); break;
    case LineKind::kSepBegin: parsed.inSepBlock = true; break;
    case LineKind::kSepBytes: TakeSepBytes(ParseSepBytes(line.text), parsed); break;
    case LineKind::kSepEnd: return false;
  }
  return true;
}

bool MayPushSepData(const tsCfgSlot& from, const tsCfgSlot& to) {
  return MayLoadSepData(from.sFldSepData[0], to.sFldSepData[0]) && from.sFldSepData != to.sFldSepData;
}

void Push(const tsCfgSlot& from, const tsCfgSlot& to) {
  for (const SavedOption& option : kSavedOptions) {
    if (from.*option.word != to.*option.word)
      reader::SetOption(option.word, static_cast<std::int16_t>(from.*option.word));
  }
  for (const Record record : kPushOrder) {
    if (from.record[record] != to.record[record]) reader::SetRecord(record, from.record[record].data());
  }
  if (MayPushSepData(from, to)) reader::SetSepData(from.sFldSepData);
}

// Fields that the file does not mention keep their values.
void LoadConfig(std::FILE* file) {
  const tsCfgSlot& slot = EntryOfActDev().ActiveSlot();
  Parsed parsed{.slot = slot};
  char line[kTemplateLineRoom];
  while (std::fgets(line, sizeof line, file) != nullptr && TakeLine(line, parsed)) {
  }
  if (parsed.outputFormatGiven && !KeepsOutputFormat(slot.sFldSepData[0])) {
    parsed.slot[field::IDDispParms_iExOutputFormat] = 0;
  }
  Push(parsed.slot, slot);
}

void SkipLine(std::FILE* file) {
  char line[kCardLineRoom];
  [[maybe_unused]] const char* rest = std::fgets(line, sizeof line, file);
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

std::uint32_t LoadTemplateFile(const char* path) {
  const File file = OpenFile(path, "r");
  if (file == nullptr || !HasTitle(file.get())) return 0;
  const std::uint16_t highest = EntryOfActDev().MaxConfig;
  if (highest != 0) return LoadConfigs(file.get(), highest);
  LoadConfig(file.get());
  return WriteCfgLocked();
}

}  // namespace tavlyn
