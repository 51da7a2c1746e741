// What a scenario can expect of a device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "sim/devices/model.h"
#include "sim/devices/sights.h"
#include "sim/words.h"
#include "tools/tavlynsim/scenario/reader_words.h"
#include "tools/tavlynsim/scenario/settings.h"

namespace tavlyn::sim {

struct ConditionKind;

struct Condition {
  const ConditionKind* kind = nullptr;
  int number = 0;  // that is expected
  Output bit{};    // that is looked at
  Bytes prefix{};  // of a command
  ReaderWord word{};
  std::optional<DeviceSetting> setting{};  // in its place

  int seen = 0;  // commands with this prefix
};

struct Sight {
  bool holds;
  std::string text;  // what is there: "the relay is off"
};

struct ConditionKind {
  const char* words;
  const char* meaning;
  // False, with the problem, if the words are not such a condition.
  bool (*parse)(const Words& words, Condition& condition, std::string& problem);
  // None if the device has nothing of the kind.
  std::optional<Sight> (*look)(const Condition& condition, const Model& model);
};
std::span<const ConditionKind> ConditionKinds();

bool ParseCondition(const Words& words, Condition& condition, std::string& problem);
// Counts what was sent to its device.
void NoteSent(Condition& condition, std::span<const std::uint8_t> command);
inline std::optional<Sight> Look(const Condition& condition, const Model& model) {
  return condition.kind->look(condition, model);
}

}  // namespace tavlyn::sim
