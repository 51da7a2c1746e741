// Parses any scenario. One without mistakes is given to devices, played to its end, and judged; each mistake
// names a line.
#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/require.h"
#include "sim/rack_source.h"
#include "tools/tavlynsim/scenario/play.h"
#include "tools/tavlynsim/scenario/rehearsal.h"
#include "tools/tavlynsim/scenario/results.h"

namespace tavlyn::fuzz {
namespace {

using sim::Mistake;

// A flood takes the memory that it is told to.
bool HasFlood(const sim::Scenario& scenario) {
  return std::ranges::any_of(scenario.actions, [](const sim::Action& one) {
    return one.command.find("flood") != std::string::npos;
  });
}

void Play(const sim::Scenario& scenario) {
  sim::RackSource source;
  std::vector<Mistake> mistakes;
  sim::ScenarioModels models = sim::PlugAll(scenario, source.Devices(), mistakes);
  if (!mistakes.empty()) return;
  Require(models.size() == scenario.devices.size());
  sim::Play play(source, scenario, models);
  for (const auto& model : models) play.NoteSent(*model, std::vector<std::uint8_t>{0x90, 1, 2, 3});
  play.NoteAsked();
  for (std::size_t i = 0; i < models.size(); ++i) play.NoteExchange(i, "> 00 90");
  const auto verdicts = play.Finish();
  Require(verdicts.size() >= scenario.expectations.size());
  Require(sim::LinesOf("any", verdicts).size() <= verdicts.size() + 1);
  Require(!sim::JunitText("any", verdicts).empty());
}

void Parse(std::string_view text) {
  std::vector<Mistake> mistakes;
  const sim::Scenario scenario = sim::ParseScenario(std::string(text), mistakes);
  for (const Mistake& mistake : mistakes)
    Require(mistake.line >= (text.empty() ? 0 : 1) && !mistake.text.empty());
  for (const sim::Action& action : scenario.actions) Require(action.device < scenario.devices.size());
  for (const sim::Expectation& one : scenario.expectations) Require(one.device < scenario.devices.size());
  if (mistakes.empty() && !HasFlood(scenario)) Play(scenario);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Parse(tavlyn::fuzz::TextOf(data, size));
  return 0;
}
