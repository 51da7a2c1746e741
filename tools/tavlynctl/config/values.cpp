#include "tools/tavlynctl/config/values.h"

#include <algorithm>
#include <charconv>

#include "core/text.h"
#include "tools/tavlynctl/hex.h"

namespace tavlyn::ctl {
namespace {

struct UnitRow {
  Unit unit;
  const char* name;
  const char* suffix;  // after a number, also where people write one
  const char* takes;
};
// In the order of Unit.
constexpr UnitRow kUnits[] = {
    {Unit::kFlag, "flag", "", ""},
    {Unit::kChoice, "choice", "", ""},
    {Unit::kNumber, "number", "", "a number: 26 or 0x1A"},
    {Unit::kCount, "count", "", "a count: 2 or 0x2"},
    {Unit::kBits, "bits", "bits", "bits: 26, 0x1A or 26bits"},
    {Unit::kLength, "characters", "characters", "characters: 16 or 0x10"},
    {Unit::kCharacter, "character code", "", "a character or its code: a, ':', 58, 0x3A, tab, cr or lf"},
    {Unit::kMilliseconds, "milliseconds", "ms", "milliseconds: 1500, 0x5DC, 1500ms or 1.5s"},
    {Unit::kSeconds, "seconds", "s", "seconds: 90, 0x5A, 90s or 1.5min"},
    {Unit::kDebounce, "seconds or minutes", "", "seconds or minutes, as the sensor counts: 5 or 0x5"},
    {Unit::kInches, "inches", "in", "inches: 30, 0x1E or 30in"},
    {Unit::kSensorUnits, "sensor units, 3.472 to an inch", "", "sensor units, 3.472 to an inch: 10 or 0xA"},
    {Unit::kBlankSteps, "steps of 43 us", "", "steps of 43 us: 25 or 0x19"},
    {Unit::kMask, "bits of a mask", "", "the bits of a mask: 0x29 or 41"},
    {Unit::kKeyCode, "key code", "", "a key code: 0x2C or 44"},
    {Unit::kModifiers, "modifier bits", "", "modifier bits: 0x08 or 8"},
};

constexpr const UnitRow& UnitRowOf(Unit unit) { return kUnits[static_cast<std::size_t>(unit)]; }
static_assert(std::ranges::all_of(kUnits, [](const UnitRow& one) { return &UnitRowOf(one.unit) == &one; }));

constexpr NamedNumber kSwitches[] = {{0, "off"}, {1, "on"}};
constexpr NamedNumber kOtherSwitches[] = {{0, "no"}, {1, "yes"}, {0, "false"}, {1, "true"}};
constexpr NamedNumber kCharacters[] = {{9, "tab"}, {10, "lf"}, {13, "cr"}, {27, "esc"}, {32, "space"}};

struct Scale {
  const char* suffix;
  int milliseconds;
};
constexpr Scale kTimes[] = {{"ms", 1}, {"s", 1000}, {"min", 60'000}};

// No word of a configuration is longer, in any unit.
constexpr int kMostDigits = 9;

bool TakesSwitches(const Meaning& meaning) {
  return meaning.unit == Unit::kFlag || (meaning.unit == Unit::kChoice && meaning.names[2].word == nullptr);
}

std::optional<int> NumberNamed(std::span<const NamedNumber> all, std::string_view word) {
  const auto named = std::ranges::find_if(
      all, [&](const NamedNumber& one) { return one.word != nullptr && SameText(word, one.word); });
  return named != all.end() ? std::optional<int>(named->number) : std::nullopt;
}

const char* WordFor(std::span<const NamedNumber> all, int number) {
  const auto named = std::ranges::find_if(
      all, [&](const NamedNumber& one) { return one.word != nullptr && one.number == number; });
  return named != all.end() ? named->word : nullptr;
}

std::optional<int> CharacterCode(std::string_view text) {
  if (text.size() == 3 && text.front() == '\'' && text.back() == '\'')
    text = text.substr(1, 1);
  else if (text.size() != 1 || (text[0] >= '0' && text[0] <= '9'))
    return NumberNamed(kCharacters, text);
  return static_cast<std::uint8_t>(text[0]);
}

// All of the text, in digits of that base.
std::optional<int> Digits(std::string_view text, int base) {
  int number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
  return number;
}

// Leading zeros would mean another base to some people.
std::optional<int> WholeNumberIn(std::string_view text) {
  const bool negative = text.starts_with('-');
  const std::string_view digits = negative ? text.substr(1) : text;
  if (digits.starts_with('-')) return std::nullopt;
  if (digits.starts_with("0x") || digits.starts_with("0X")) {
    const std::string_view hex = digits.substr(2);
    return negative || hex.starts_with('-') ? std::nullopt : Digits(hex, 16);
  }
  if (digits.size() > 1 && digits.front() == '0') return std::nullopt;
  return Digits(text, 10);
}

// "1.5" in thousandths.
std::optional<long long> Thousandths(std::string_view text) {
  const std::size_t point = std::min(text.find('.'), text.size());
  const auto whole = WholeNumberIn(text.substr(0, point));
  if (!whole || *whole < 0 || point > kMostDigits) return std::nullopt;
  std::string rest(point < text.size() ? text.substr(point + 1) : std::string_view("0"));
  if (rest.empty() || rest.size() > 3 || rest.front() == '-') return std::nullopt;
  rest.resize(3, '0');
  const auto part = Digits(rest, 10);
  return part ? std::optional(1000LL * *whole + *part) : std::nullopt;
}

std::string_view WithoutBlank(std::string_view text) {
  return text.ends_with(' ') ? text.substr(0, text.size() - 1) : text;
}

// "1.5s", as a whole number of the unit.
std::optional<int> TimeIn(Unit unit, std::string_view text) {
  for (const Scale& scale : kTimes) {
    if (!text.ends_with(scale.suffix)) continue;
    const auto number =
        Thousandths(WithoutBlank(text.substr(0, text.size() - std::string_view(scale.suffix).size())));
    if (!number) continue;
    const long long divisor = 1000LL * (unit == Unit::kSeconds ? 1000 : 1);
    const long long value = *number * scale.milliseconds;
    if (value % divisor != 0 || value / divisor > 1'000'000'000) return std::nullopt;
    return static_cast<int>(value / divisor);
  }
  return std::nullopt;
}

}  // namespace

const char* NameOf(Unit unit) { return UnitRowOf(unit).name; }

std::optional<int> NumberOf(const Meaning& meaning, std::string_view text) {
  if (const auto named = NumberNamed(WordsOf(meaning), text)) return named;
  if (TakesSwitches(meaning)) {
    if (const auto named = NumberNamed(kSwitches, text)) return named;
    if (const auto named = NumberNamed(kOtherSwitches, text)) return named;
  }
  if (meaning.unit == Unit::kCharacter) {
    if (const auto code = CharacterCode(text)) return code;
  }
  if (meaning.unit == Unit::kMilliseconds || meaning.unit == Unit::kSeconds) {
    if (const auto time = TimeIn(meaning.unit, text)) return time;
  }
  const std::string_view suffix = UnitRowOf(meaning.unit).suffix;
  if (!suffix.empty() && text.ends_with(suffix))
    text = WithoutBlank(text.substr(0, text.size() - suffix.size()));
  return WholeNumberIn(text);
}

std::string WhatItTakes(const Meaning& meaning) {
  const std::vector<NamedNumber> words = WordsOf(meaning);
  if (meaning.unit != Unit::kFlag && meaning.unit != Unit::kChoice)
    return std::string("takes ") + UnitRowOf(meaning.unit).takes;
  std::string text = "takes ";
  for (std::size_t at = 0; at < words.size(); ++at) {
    if (at > 0) text += at + 1 < words.size() ? ", " : " or ";
    text += std::string(words[at].word) + " (" + std::to_string(words[at].number) + ")";
  }
  return text;
}

std::string ShownValue(const Meaning& meaning, int value) {
  switch (meaning.unit) {
    case Unit::kFlag:
    case Unit::kChoice:
      if (const char* word = WordFor(WordsOf(meaning), value)) return word;
      break;
    case Unit::kCharacter:
      if (const char* word = WordFor(kCharacters, value)) return std::to_string(value) + " " + word;
      if (value > ' ' && value < 0x7F) return std::to_string(value) + " '" + static_cast<char>(value) + "'";
      break;
    case Unit::kMask:
    case Unit::kKeyCode:
    case Unit::kModifiers:
      return value < 0 ? std::to_string(value) : "0x" + Hex(static_cast<unsigned>(value), 2);
    default: break;
  }
  const std::string suffix = UnitRowOf(meaning.unit).suffix;
  if (suffix.empty()) return std::to_string(value);
  const bool single = value == 1 && suffix.size() > 2;
  return std::to_string(value) + " " + (single ? suffix.substr(0, suffix.size() - 1) : suffix);
}

std::vector<NamedNumber> WordsOf(const Meaning& meaning) {
  if (meaning.unit == Unit::kFlag) return {std::begin(kSwitches), std::end(kSwitches)};
  std::vector<NamedNumber> words;
  std::ranges::copy_if(meaning.names, std::back_inserter(words),
                       [](const NamedNumber& one) { return one.word != nullptr; });
  return words;
}

}  // namespace tavlyn::ctl
