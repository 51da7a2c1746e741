#include "tools/tavlynctl/config/meanings.h"

#include <algorithm>

#include "core/sonar_fields.h"
#include "files/template_words.h"
#include "magstripe/text_file.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

constexpr Group kGroups[] = {
#define RECORD(product, name, text) {product, name, text},
#include "tools/tavlynctl/config/meanings.inc"
};

constexpr Meaning kMeanings[] = {
#define OPTION(table, name, kind, meaning, ...) \
  {.group = #table, .key = name, .unit = Unit::kind, .text = meaning, __VA_ARGS__},
#define STRIPE(...) OPTION(__VA_ARGS__)
#define WORD(table, name, shown, ...) OPTION(table, name, __VA_ARGS__, .called = #shown)
#define SENSOR(table, name, ...) WORD(table, #name, __VA_ARGS__)
#define FIELD(record, word, ...) WORD(record, #record "." #word, __VA_ARGS__)
#include "tools/tavlynctl/config/meanings.inc"
#undef WORD
};

consteval bool HasMeaning(std::string_view key) {
  return std::ranges::any_of(kMeanings, [&](const Meaning& one) { return key == one.key; });
}

consteval bool HasField(const Field& field) {
  const std::string_view record = std::string_view(kRecordNames[field.id.record]).substr(2);
  return std::ranges::any_of(kMeanings, [&](const Meaning& one) {
    const std::string_view key = one.key;
    return key.starts_with(record) && key.substr(record.size()).starts_with('.') &&
           key.substr(record.size() + 1) == field.name;
  });
}

// Each word that the library's tables have is here, and nothing else.
consteval bool AllHaveMeanings() {
  std::size_t words = kSavedOptions.size() + sonar::kFields.size();
  for (const Field& field : kFields) {
    if (std::string_view(field.name).starts_with("iPad")) continue;
    if (!HasField(field)) return false;
    ++words;
  }
  for (const SavedOption& one : kSavedOptions) {
    if (!HasMeaning(one.keyword)) return false;
  }
  for (const sonar::Field& field : sonar::kFields) {
    if (!HasMeaning(field.key)) return false;
  }
  for (const magstripe::Setting& one : magstripe::kSettings) {
    if (one.form == magstripe::Form::kKeyTime) continue;
    if (!HasMeaning(one.key)) return false;
    ++words;
  }
  return words == std::size(kMeanings);
}
static_assert(AllHaveMeanings());

// On a hundred columns, beside the longest name and a value.
constexpr std::size_t kLongest = 60;
static_assert(std::ranges::all_of(kMeanings, [](const Meaning& one) {
  return one.text[0] != '\0' && std::string_view(one.text).size() <= kLongest;
}));

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::span<const Group> Groups() { return kGroups; }
std::span<const Meaning> Meanings() { return kMeanings; }

const Meaning& MeaningOf(std::string_view name) {
  return *std::ranges::find_if(kMeanings, [&](const Meaning& one) { return IsOfKey(name, one.key); });
}

bool IsOfKey(std::string_view name, std::string_view key) {
  for (; !key.empty(); key.remove_prefix(1)) {
    if (key.front() == '#' && !name.empty() && IsDigit(name.front())) {
      while (!name.empty() && IsDigit(name.front())) name.remove_prefix(1);
    } else if (name.starts_with(key.front())) {
      name.remove_prefix(1);
    } else {
      return false;
    }
  }
  return name.empty();
}

}  // namespace tavlyn::ctl
