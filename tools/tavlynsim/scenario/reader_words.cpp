#include "tools/tavlynsim/scenario/reader_words.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>
#include <vector>

#include "core/mirror.h"
#include "files/template_parse.h"
#include "reader/layout.h"
#include "sim/words.h"
#include "tools/nearest.h"

namespace tavlyn::sim {
namespace {

using reader::BlockNumber;

constexpr BlockNumber kBlocks[] = {reader::kFormatBlock, reader::kTimeBlock, reader::kDisplayBlock,
                                   reader::kExtensionBlock};

constexpr std::size_t kLastConfiguration = 10;

std::string FullNameOf(const Field& field) {
  return std::string(kRecordNames[field.id.record]).substr(2) + "." + field.name;
}

// Its words, as the library has them.
tsCfgSlot SlotOf(const Settings& settings) {
  tsCfgSlot slot{};
  for (const BlockNumber number : kBlocks) reader::TakeBlock(number, settings.blocks[number], slot, true);
  return slot;
}

void Store(tsCfgSlot& slot, Configuration& configuration) {
  slot[field::TimeParms_iTPCfgFlg3] = reader::Flags3Byte(slot);
  for (Settings* bank : {&configuration.stored, &configuration.working}) {
    for (const BlockNumber number : kBlocks) {
      // The first byte of this one is the reader's own.
      const std::uint8_t own = bank->blocks[number][0];
      bank->blocks[number] = reader::BuildBlock(number, slot, reader::HasExtendedFields(slot));
      if (number == reader::kTimeBlock) bank->blocks[number][0] = own;
    }
  }
}

// A configuration of a template file.
struct Loaded {
  tsCfgSlot slot;
  Configuration* to;
  std::size_t separated = 0;  // bytes so far

  void Take(const TemplateEntry& entry) {
    if (!entry.number) return;
    if (entry.option != nullptr) slot.*entry.option->word = *entry.number != 0;
    if (entry.field == nullptr || entry.field->save == Save::kUnsaved) return;
    const bool isFlag = entry.field->save == Save::kFlag;
    slot[entry.field->id] =
        isFlag ? std::int16_t{*entry.number != 0} : static_cast<std::int16_t>(*entry.number);
  }
  void Take(const SepBytes& line) {
    for (std::size_t i = 0; i < line.count && separated < to->stored.separated.size(); ++i, ++separated) {
      if (separated == 0 && !MayLoadSepData(line.bytes[i], to->stored.separated[0])) return;
      to->stored.separated[separated] = to->working.separated[separated] = line.bytes[i];
    }
  }
};

}  // namespace

std::string NameOf(const ReaderWord& word) {
  const std::string name = FieldOf(word.id).name;
  return word.configuration == 0 ? name : name + "@" + std::to_string(word.configuration);
}

std::optional<ReaderWord> ParseReaderWord(const std::string& text, std::string& problem) {
  const std::string name = text.substr(0, text.find('@'));
  ReaderWord word;
  if (name != text) {
    const auto number = ParseNumber<std::size_t>(text.substr(name.size() + 1));
    if (!number || *number > kLastConfiguration) {
      problem = text + ": after @ is a configuration, 0 to 10";
      return std::nullopt;
    }
    word.configuration = *number;
  }
  std::vector<std::string> names;
  for (const Field& field : kFields) {
    if (field.save == Save::kUnsaved) continue;
    if (name == field.name || name == FullNameOf(field)) {
      word.id = field.id;
      return word;
    }
    names.emplace_back(field.name);
  }
  problem = name + ": no word of a reader's configuration" + DidYouMean(name, names);
  return std::nullopt;
}

std::optional<std::int16_t> ParseWordValue(const ReaderWord& word, const std::string& text,
                                           std::string& problem) {
  const Field& field = FieldOf(word.id);
  const Bounds bounds = field.save == Save::kFlag ? UpTo(1) : field.bounds;
  const int least = std::max<int>(bounds.least, 0);
  const int most =
      std::min<int>(bounds.most, field.bounds.Limit() || field.save == Save::kFlag ? bounds.most : 255);
  const auto value = ParseNumber<int>(text);
  if (!value || *value < least || *value > most || *value % field.step != 0) {
    problem = text + ": " + field.name + " is " + std::to_string(least) + " to " + std::to_string(most);
    if (field.step > 1) problem += " in steps of " + std::to_string(field.step);
    return std::nullopt;
  }
  return static_cast<std::int16_t>(*value);
}

std::int16_t StoredWord(const ReaderState& state, const ReaderWord& word) {
  return SlotOf(state.configurations.at(word.configuration).stored)[word.id];
}

bool StoreWord(ReaderState& state, const ReaderWord& word, std::int16_t value, std::string& problem) {
  if (word.configuration >= state.configurations.size()) {
    const std::size_t count = state.configurations.size();
    return Fail(problem,
                "the reader has " + std::to_string(count) + " configuration" + (count > 1 ? "s" : ""));
  }
  Configuration& configuration = state.configurations[word.configuration];
  tsCfgSlot slot = SlotOf(configuration.stored);
  slot[word.id] = value;
  Store(slot, configuration);
  return true;
}

bool StoreTemplate(ReaderState& state, const std::string& text, std::string& problem) {
  if (!HasTitle(std::string_view(text))) return Fail(problem, "is not a configuration file");
  std::istringstream lines(text);
  std::size_t next = 0;
  std::optional<Loaded> loaded;
  bool inSeparated = false;
  for (std::string line; std::getline(lines, line);) {
    const TemplateLine parsed = ParseLine(line, inSeparated);
    if (parsed.text.starts_with(kNextConfigMark) && loaded) {
      Store(loaded->slot, *loaded->to);
      loaded.reset();
      ++next;
    }
    if (!loaded && next < state.configurations.size()) {
      loaded = Loaded{SlotOf(state.configurations[next].stored), &state.configurations[next]};
    }
    if (!loaded) break;
    if (parsed.kind == tavlyn::LineKind::kEntry) loaded->Take(ParseEntry(parsed.text));
    if (parsed.kind == tavlyn::LineKind::kSepBytes) loaded->Take(ParseSepBytes(parsed.text));
    inSeparated = parsed.kind == tavlyn::LineKind::kSepBegin ||
                  (inSeparated && parsed.kind != tavlyn::LineKind::kSepEnd);
  }
  if (loaded) Store(loaded->slot, *loaded->to);
  return true;
}

}  // namespace tavlyn::sim
