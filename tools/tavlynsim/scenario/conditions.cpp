#include "tools/tavlynsim/scenario/conditions.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "sim/devices/hex.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/reader.h"

namespace tavlyn::sim {
namespace {

// The outputs are bits of a block that a program writes.
constexpr std::size_t kOutputBlock = 2;
struct NamedOutput {
  const char* name;
  Output bit;
};
constexpr NamedOutput kOutputs[] = {
    {"red LED", kRedLed}, {"green LED", kGreenLed}, {"relay", kRelay}, {"beeper", kBeeper}};

bool ParseOutput(const Words& words, Condition& condition, std::string& problem) {
  const std::string& state = words.back();
  std::string name = words[0];
  if (words[0] == "led" && words.size() == 3) name = words[1] + " LED";
  const auto* output = std::ranges::find(kOutputs, name, &NamedOutput::name);
  const bool isLed = words[0] == "led";
  if (output == std::end(kOutputs) || words.size() != (isLed ? 3U : 2U) ||
      (state != "on" && state != "off")) {
    return Fail(problem, isLed ? "an LED is red or green, on or off" : name + " is on or off");
  }
  condition.bit = output->bit;
  condition.number = state == "on" ? 1 : 0;
  return true;
}

std::optional<Sight> LookAtOutput(const Condition& condition, const Model& model) {
  const auto* reader = dynamic_cast<const Reader*>(&model);
  if (reader == nullptr) return std::nullopt;
  const ReaderState& state = reader->state;
  const std::uint8_t now = state.configurations.at(state.active).working.blocks[kOutputBlock][0];
  const bool on = reader->Present() && (now & condition.bit) != 0;
  const auto* output = std::ranges::find(kOutputs, condition.bit, &NamedOutput::bit);
  return Sight{on == (condition.number != 0),
               std::string("the ") + output->name + " is " + (on ? "on" : "off")};
}

bool ParseCount(const Words& words, Condition& condition, std::string& problem) {
  const auto number = words.size() == 2 ? ParseNumber<int>(words[1]) : std::nullopt;
  if (!number || *number < 0) return Fail(problem, words[0] + " needs a number");
  condition.number = *number;
  return true;
}

std::string Times(int number) { return std::to_string(number) + (number == 1 ? " time" : " times"); }

std::optional<Sight> LookAtBeeps(const Condition& condition, const Model& model) {
  int heard = 0;
  if (const auto* reader = dynamic_cast<const Reader*>(&model)) {
    heard = reader->state.sights.Beeps();
  } else if (const auto* magstripe = dynamic_cast<const Magstripe*>(&model)) {
    for (const MagBeep& beep : magstripe->state.beeps) heard += beep.count;
  } else {
    return std::nullopt;
  }
  return Sight{heard == condition.number, "it beeped " + Times(heard)};
}

std::optional<Sight> LookAtExchanges(const Condition& condition, const Model&) {
  return Sight{condition.seen >= condition.number,
               "there were " + std::to_string(condition.seen) + " exchanges"};
}

bool ParseCommand(const Words& words, Condition& condition, std::string& problem) {
  const auto prefix = words.size() >= 2 ? ParseHex(words[1]) : std::nullopt;
  const auto count = words.size() == 3 ? ParseNumber<int>(words[2]) : std::optional(-1);
  if (!prefix || prefix->empty() || !count || words.size() > 3) {
    return Fail(problem, "command needs hexadecimal bytes, then perhaps how often");
  }
  condition.prefix = *prefix;
  condition.number = *count;
  return true;
}

std::optional<Sight> LookAtCommand(const Condition& condition, const Model&) {
  const bool holds = condition.number < 0 ? condition.seen > 0 : condition.seen == condition.number;
  return Sight{holds, "command " + HexDigits(condition.prefix) + " was sent " + Times(condition.seen)};
}

bool ParsePresence(const Words& words, Condition& condition, std::string& problem) {
  condition.number = words[0] == "present" ? 1 : 0;
  return words.size() == 1 || Fail(problem, words[0] + " stands alone");
}

std::optional<Sight> LookAtPresence(const Condition& condition, const Model& model) {
  const bool present = model.Present();
  return Sight{present == (condition.number != 0), present ? "it is there" : "it is gone"};
}

bool ParseWord(const Words& words, Condition& condition, std::string& problem) {
  if (words.size() != 3 || words[1] != "is") {
    std::string all;
    for (const ConditionKind& kind : ConditionKinds())
      all += (all.empty() ? "" : ", ") + std::string(kind.words);
    return Fail(problem, words[0] + ": no such expectation; there are " + all);
  }
  condition.setting = FindSetting(words[0]);
  if (condition.setting) {
    const auto number = ParseNumber<int>(words[2]);
    condition.number = number.value_or(0);
    return number || Fail(problem, words[2] + ": " + words[0] + " is a number");
  }
  const auto word = ParseReaderWord(words[0], problem);
  const auto value = word ? ParseWordValue(*word, words[2], problem) : std::nullopt;
  if (!value) return false;
  condition.word = *word;
  condition.number = *value;
  return true;
}

std::optional<Sight> LookAtWord(const Condition& condition, const Model& model) {
  if (condition.setting) {
    const auto value = StoredSetting(model, *condition.setting);
    if (!value) return std::nullopt;
    return Sight{*value == condition.number, NameOf(*condition.setting) + " is " + std::to_string(*value)};
  }
  const auto* reader = dynamic_cast<const Reader*>(&model);
  if (reader == nullptr || condition.word.configuration >= reader->state.configurations.size())
    return std::nullopt;
  const int value = StoredWord(reader->state, condition.word);
  return Sight{value == condition.number, NameOf(condition.word) + " is " + std::to_string(value)};
}

// The last one takes what no other has.
constexpr ConditionKind kConditions[] = {
    {"relay on|off", "the relay of a card reader", ParseOutput, LookAtOutput},
    {"led red|green on|off", "an LED of a card reader that the program drives", ParseOutput, LookAtOutput},
    {"beeper on|off", "the beeper's steady tone", ParseOutput, LookAtOutput},
    {"beeped N", "how often it beeped since the beginning", ParseCount, LookAtBeeps},
    {"command HEX [N]", "a command that begins so was sent, or was sent so often", ParseCommand,
     LookAtCommand},
    {"exchanges N", "there were at least so many commands", ParseCount, LookAtExchanges},
    {"present", "it is plugged in", ParsePresence, LookAtPresence},
    {"absent", "it is not", ParsePresence, LookAtPresence},
    {"WORD is VALUE",
     "what the device has stored, by the names of tavlynctl config: iIDHoldTO is 1000, iIDHoldTO@1 for the "
     "second configuration of a card reader, MaxDistS is 40 of a sonar sensor, LedColor[0] is 2 of a "
     "magnetic-stripe reader",
     ParseWord, LookAtWord},
};

}  // namespace

std::span<const ConditionKind> ConditionKinds() { return kConditions; }

bool ParseCondition(const Words& words, Condition& condition, std::string& problem) {
  if (words.empty()) return Fail(problem, "what is expected is missing");
  const auto* kind = std::ranges::find_if(kConditions, [&](const ConditionKind& one) {
    const std::string_view all = one.words;
    return all.substr(0, all.find(' ')) == words[0];
  });
  if (kind == std::end(kConditions)) --kind;
  condition.kind = kind;
  return kind->parse(words, condition, problem);
}

void NoteSent(Condition& condition, std::span<const std::uint8_t> command) {
  if (StartsWith(command, condition.prefix)) ++condition.seen;
}

}  // namespace tavlyn::sim
