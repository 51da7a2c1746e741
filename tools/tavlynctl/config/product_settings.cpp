#include "tools/tavlynctl/config/product_settings.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>

#include "api.h"
#include "core/sonar_fields.h"
#include "core/text.h"
#include "files/template_parse.h"
#include "magstripe/text_file.h"
#include "tools/nearest.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/config/meanings.h"
#include "tools/tavlynctl/config/values.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

struct TextForm {
  std::uint32_t product;
  const char* title;
  char equals;                   // between a name and its number
  std::string_view information;  // before the version in a file that the library has written,
  const char* last;              // which then ends with this
};
constexpr TextForm kForms[] = {
    {kMagstripes, magstripe::kTitle, magstripe::kColon, magstripe::kMark, magstripe::kEnd},
    {kSensors, sonar::kTitle, '=', {&kInformationMark, 1}, sonar::kFields.back().key}};

bool IsKeyTime(const std::string& name) {
  return std::ranges::any_of(magstripe::kSettings, [&](const magstripe::Setting& one) {
    return one.form == magstripe::Form::kKeyTime && name == one.key;
  });
}

const TextForm& FormOf(std::uint32_t product) {
  return *std::ranges::find_if(kForms, [&](const TextForm& one) { return one.product == product; });
}

std::string TextOfFile(const std::string& path) {
  const std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  if (!file || !(text << file.rdbuf())) throw NothingIn(path);
  return text.str();
}

std::vector<NamedSetting> AllSettings() {
  std::vector<NamedSetting> all;
  magstripe::ForEachKey([&](std::size_t row, magstripe::Indices at) {
    const std::string name = magstripe::KeyOf(magstripe::kSettings[row], at).data();
    if (!IsKeyTime(name)) all.push_back({kMagstripes, name});
  });
  for (const sonar::Field& field : sonar::kFields) all.push_back({kSensors, field.key});
  return all;
}

std::string SuggestedSetting(const std::string& name, std::uint32_t product) {
  std::vector<std::string> names;
  for (const NamedSetting& one : SettingNames()) {
    if (one.product == product) names.push_back(one.name);
  }
  return DidYouMean(name, names);
}

struct ReadEntry {
  std::string name;  // empty if the line says nothing
  std::optional<int> number;
};

ReadEntry EntryOf(std::string_view line, std::uint32_t product) {
  const std::string_view content = Content(line);
  if (content.empty()) return {};
  if (product == kSensors) {
    const Entry entry = EntryIn(content);
    return {std::string(entry.key), entry.number};
  }
  const magstripe::Line entry = magstripe::LineOf(line);
  return {std::string(entry.key), entry.number};
}

// What is wrong with an entry; if nothing, it has been added to the settings.
std::string TakeEntry(const ReadEntry& entry, std::uint32_t product, Json& settings) {
  const auto known = FindSetting(entry.name);
  if (!known || known->product != product)
    return "unknown name " + entry.name + SuggestedSetting(entry.name, product);
  if (!entry.number) return entry.name + " has no number";
  settings[known->name] = *entry.number;
  return {};
}

std::string FormatBounds(const std::string& name) {
  const auto* field = std::ranges::find_if(
      sonar::kFields, [&](const sonar::Field& one) { return name == one.key && one.bounds.Limit(); });
  return field != sonar::kFields.end() ? " (it " + RangeText(field->bounds) + ")" : "";
}

Failure NotWritten() { return {kBadFile, "a temporary file cannot be written; is the disk full?"}; }

std::string NameIn(const std::string& word) { return word.substr(0, word.find('=')); }

}  // namespace

const std::vector<NamedSetting>& SettingNames() {
  static const std::vector<NamedSetting> kAll = AllSettings();
  return kAll;
}

std::optional<NamedSetting> FindSetting(const std::string& name) {
  // Sonar files may name a setting in any case, the others not.
  const auto found = std::ranges::find_if(SettingNames(), [&](const NamedSetting& one) {
    return name == one.name || (one.product == kSensors && SameText(name, one.name));
  });
  return found != SettingNames().end() ? std::optional(*found) : std::nullopt;
}

std::uint32_t ProductOfWords(const std::vector<std::string>& words) {
  std::optional<NamedSetting> first;
  for (const std::string& word : words) {
    NamedSetting one = FindSetting(NameIn(word)).value_or(NamedSetting{kReaders, NameIn(word)});
    if (first && first->product != one.product) {
      // If it is not a setting it must at least be a field.
      for (const NamedSetting* each : {&*first, &one}) {
        if (each->product == kReaders) FindField(each->name);
      }
      throw Failure(kUsage, first->name + " is for a " + ProductName(first->product) + ", " + one.name +
                                " for a " + ProductName(one.product));
    }
    first = std::move(one);
  }
  return first->product;
}

Json ParseSettings(const std::vector<std::string>& words) {
  Json wanted = Json::object();
  for (const std::string& word : words) {
    const std::string name = NameIn(word);
    if (name == word) throw Failure(kUsage, word + " is not SETTING=VALUE");
    const std::string known = FindSetting(name)->name;
    const Meaning& meaning = MeaningOf(known);
    const auto value = NumberOf(meaning, std::string_view(word).substr(name.size() + 1));
    if (!value)
      throw Failure(kUsage, std::string(word).append(": ").append(known) + " " + WhatItTakes(meaning));
    wanted[known] = *value;
  }
  return wanted;
}

std::uint32_t ProductOfFile(const std::string& path) {
  const std::string head = TextOfFile(path).substr(0, kTitleWithin);
  for (const TextForm& form : kForms) {
    if (head.find(form.title) != std::string::npos) return form.product;
  }
  return kReaders;
}

void RefuseSecure(std::uint32_t product) {
  throw Failure(kUsage, std::string("files of a ") + ProductName(product) + " have no integrity trailer");
}

SettingsFile ReadSettings(const std::string& path, std::uint32_t product) {
  const TextForm& form = FormOf(product);
  std::istringstream text(TextOfFile(path));
  const std::string mark = std::string(form.information) + kLibraryVersion;
  SettingsFile file;
  bool written = false;
  bool ended = false;
  int number = 0;
  for (std::string line; std::getline(text, line);) {
    ++number;
    if (line.ends_with('\r')) line.pop_back();
    written = written || line.starts_with(mark);
    const ReadEntry entry = EntryOf(line, product);
    ended = ended || line.starts_with(form.last) || SameText(entry.name, form.last);
    if (entry.name.empty() || IsKeyTime(entry.name)) continue;
    const std::string wrong = TakeEntry(entry, product, file.settings);
    if (!wrong.empty()) file.ignored.push_back("line " + std::to_string(number) + ": " + wrong);
  }
  if (file.settings.empty()) throw Failure(kBadFile, path + " holds no configuration");
  if (written && !ended) throw Failure(kBadFile, path + " ends in the middle of its configuration");
  return file;
}

Json SettingsIn(const std::string& path, const Failure& otherwise) try {
  return ReadSettings(path, GetProduct()).settings;
} catch (const Failure&) {
  throw otherwise;
}

Json MirrorSettings() {
  const TemporaryFile file;
  WriteDevCfgToFile(file.Path().c_str());
  return SettingsIn(file.Path(), NotWritten());
}

void LoadMirror(const std::string& path, const Json& wanted, const std::string& what) {
  if (ReadDevCfgFmFile(path.c_str()) != 1) throw Failure(kBadFile, "the settings could not be loaded");
  const Json loaded = MirrorSettings();
  std::string refused;
  for (const auto& [name, value] : wanted.items()) {
    if (loaded[name] == value) continue;
    refused += (refused.empty() ? "" : ", ") + name + " = " + value.dump() + FormatBounds(name);
  }
  if (!refused.empty()) throw Failure(kUsage, ActiveDeviceName() + " does not accept " + what + refused);
}

// The library has calls only for some settings; a file may name any.
void StoreSettings(const Json& wanted) {
  const TextForm& form = FormOf(GetProduct());
  const TemporaryFile file;
  {
    std::ofstream text(file.Path());
    text << kCommentMark << kCommentMark << form.title << '\n';
    for (const auto& [name, value] : wanted.items()) text << name << form.equals << value << '\n';
    if (!text.flush()) throw NotWritten();
  }
  LoadMirror(file.Path(), wanted, "");
}

}  // namespace tavlyn::ctl
