// Gives devices what a scenario says of them, and tries its commands before anything runs.
#pragma once

#include <string>
#include <vector>

#include "sim/rack.h"
#include "tools/tavlynsim/scenario/scenario.h"

namespace tavlyn::sim {

// The scenario of a file, in which every line is good; none, with what is wrong, each with FILE:LINE. Its
// templates are in the traits then, as texts.
std::optional<Scenario> ReadScenario(const std::string& path, std::vector<std::string>& problems);

// The devices as plugged in, in the order of the scenario.
using ScenarioModels = std::vector<std::shared_ptr<Model>>;
// Plugs them into a rack that is empty.
ScenarioModels PlugAll(const Scenario& scenario, Rack& rack, std::vector<Mistake>& mistakes);

// "#2 ", before a command for a device.
std::string Addressed(std::size_t device, const std::string& command);

}  // namespace tavlyn::sim
