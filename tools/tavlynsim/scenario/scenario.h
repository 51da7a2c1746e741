// What a scenario file says: devices, what happens to them and when, and what is expected of the program that
// uses them.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "sim/words.h"
#include "tools/tavlynsim/scenario/conditions.h"

namespace tavlyn::sim {

// Of the scenario, from its beginning.
using Moment = std::chrono::milliseconds;

struct ScenarioDevice {
  // A line that follows the device's: set, template, firmware.
  struct Trait {
    int line;
    Words words;
  };

  int line;
  std::string name;
  std::string kind;  // as the command plug takes it
  std::vector<Trait> traits{};
};

struct Action {
  int line;
  Moment at;
  std::size_t device;
  std::string command;
  std::string text;  // of the line
};

enum class When : std::uint8_t { kBy, kAt, kFrom, kNever, kEnd };

struct Expectation {
  int line;
  std::string text;  // of the line
  When when;
  Moment from;
  Moment to;
  std::size_t device;
  Condition condition;
};

struct Scenario {
  std::vector<ScenarioDevice> devices;
  std::vector<Action> actions;  // in the order in which they are done
  std::vector<Expectation> expectations;
  bool beginsWithCard = false;  // else with the first exchange
  std::optional<Moment> end;    // of the program
};

struct Mistake {
  int line;
  std::string text;
};

// What each line may be, for its page.
struct ScenarioWords {
  const char* words;
  const char* meaning;
};
std::span<const ScenarioWords> LinesOfScenarios();

// What is wrong with the lines is added to the mistakes.
Scenario ParseScenario(const std::string& text, std::vector<Mistake>& mistakes);

// "2.5 s"
std::string InSeconds(Moment moment);

}  // namespace tavlyn::sim
