#include "tools/tavlynsim/scenario/rehearsal.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <utility>

#include "sim/devices/reader.h"
#include "tools/path_names.h"
#include "tools/tavlynsim/record/files.h"

namespace tavlyn::sim {
namespace {

namespace fs = std::filesystem;

bool SetWord(Reader& reader, const Words& words, std::string& problem) {
  const auto word = ParseReaderWord(words[1], problem);
  const auto value = word ? ParseWordValue(*word, words[2], problem) : std::nullopt;
  return value && StoreWord(reader.state, *word, *value, problem);
}

bool SetFirmware(Reader& reader, const Words& words, std::string& problem) {
  auto& firmware = reader.state.firmware;
  const auto processor = ParseNumber<std::size_t>(words[1]);
  const auto index = ParseNumber<std::size_t>(words[2]);
  const auto value = ParseNumber<std::uint32_t>(words[3], 16);
  if (!processor || *processor >= firmware.size() || !index || *index >= firmware[0].size() || !value) {
    return Fail(problem,
                "a firmware word is of processor 0 to 2, index 0 to 4, in up to 8 hexadecimal digits");
  }
  firmware[*processor][*index] = *value;
  return true;
}

bool LoadTemplate(Reader& reader, const Words& words, std::string& problem) {
  return StoreTemplate(reader.state, words.back(), problem) || Fail(problem, words[1] + " " + problem);
}

struct Trait {
  const char* name;
  bool (*give)(Reader& reader, const Words& words, std::string& problem);
};
constexpr Trait kTraits[] = {{"set", SetWord}, {"firmware", SetFirmware}, {"template", LoadTemplate}};

void Give(const ScenarioDevice& device, Model& model, std::vector<Mistake>& mistakes) {
  auto* reader = dynamic_cast<Reader*>(&model);
  for (const auto& [line, words] : device.traits) {
    std::string problem;
    const auto* trait = std::ranges::find(kTraits, words[0], &Trait::name);
    if (reader == nullptr && words[0] == "set") {
      const auto setting = FindSetting(words[1]);
      const bool isSet = setting ? StoreSetting(model, *setting, words[2], problem)
                                 : Fail(problem, words[1] + ": this device has no such setting");
      if (!isSet) mistakes.push_back({line, problem});
    } else if (reader == nullptr) {
      mistakes.push_back({line, words[0] + " is for card readers"});
    } else if (!trait->give(*reader, words, problem)) {
      mistakes.push_back({line, problem});
    }
  }
}

// A template becomes the last word of its line.
void TakeTemplates(Scenario& scenario, const fs::path& folder, std::vector<Mistake>& mistakes) {
  for (ScenarioDevice& device : scenario.devices) {
    std::erase_if(device.traits, [&](ScenarioDevice::Trait& trait) {
      if (trait.words[0] != "template") return false;
      std::string problem;
      const auto text = TextOfFile(NameOfPath(folder / PathOf(trait.words[1])), problem);
      if (text) {
        trait.words.push_back(*text);
      } else {
        mistakes.push_back({trait.line, problem});
      }
      return !text;
    });
  }
}

// Whether a device is there when its replug comes depends on the program.
bool DependsOnProgram(const std::string& command) { return command.starts_with("replug"); }

void Rehearse(const Scenario& scenario, std::vector<Mistake>& mistakes) {
  Rack rack;
  const ScenarioModels models = PlugAll(scenario, rack, mistakes);
  if (models.size() != scenario.devices.size()) return;
  std::string reply;
  for (const Action& action : scenario.actions) {
    if (!DependsOnProgram(action.command) && !rack.Run(Addressed(action.device, action.command), reply)) {
      mistakes.push_back({action.line, reply});
    }
  }
  for (const Expectation& expectation : scenario.expectations) {
    if (!Look(expectation.condition, *models[expectation.device])) {
      mistakes.push_back(
          {expectation.line, scenario.devices[expectation.device].name + " has nothing of the kind"});
    }
  }
}

}  // namespace

std::string Addressed(std::size_t device, const std::string& command) {
  return "#" + std::to_string(device + 1) + " " + command;
}

ScenarioModels PlugAll(const Scenario& scenario, Rack& rack, std::vector<Mistake>& mistakes) {
  ScenarioModels models;
  std::string reply;
  for (const ScenarioDevice& device : scenario.devices) {
    if (!rack.Run("plug " + device.kind, reply)) {
      mistakes.push_back({device.line, reply});
      continue;
    }
    models.push_back(rack.Kept().back().model);
    Give(device, *models.back(), mistakes);
  }
  return models;
}

std::optional<Scenario> ReadScenario(const std::string& path, std::vector<std::string>& problems) {
  std::string problem;
  const auto text = TextOfFile(path, problem);
  if (!text) {
    problems.push_back(problem);
    return std::nullopt;
  }
  std::vector<Mistake> mistakes;
  Scenario scenario = ParseScenario(*text, mistakes);
  TakeTemplates(scenario, PathOf(path).parent_path(), mistakes);
  Rehearse(scenario, mistakes);
  std::ranges::stable_sort(mistakes, {}, &Mistake::line);
  for (const Mistake& mistake : mistakes) {
    problems.push_back(path + ":" + std::to_string(mistake.line) + ": " + mistake.text);
  }
  return mistakes.empty() ? std::optional(std::move(scenario)) : std::nullopt;
}

}  // namespace tavlyn::sim
