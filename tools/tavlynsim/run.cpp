#include "tools/tavlynsim/run.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "tools/printable.h"
#include "tools/tavlynsim/simulation.h"
#include "tools/tavlynsim/simulation_words.h"
#include "tools/tavlynsim/speed.h"

namespace tavlyn::sim {
namespace {

struct RunOptions {
  SimulationOptions simulation;
  std::vector<std::string> command;
};

int Run(RunOptions& options) {
  if (options.command.empty())
    return Fail(kBadUsage, "COMMAND is missing; tavlynsim serve has devices for programs started elsewhere");
  if (const std::string problem = TakeSpeed(options.simulation.speed); !problem.empty())
    return Fail(kCannotSimulate, problem);
  Complete(options.simulation);
  Simulation simulation(options.simulation);
  const int status = simulation.Begin();
  return status != 0 ? status : simulation.Accompany(options.command);
}

}  // namespace

int Fail(int status, const std::string& problem) {
  Tell(kProgram, problem);
  return status;
}

std::function<int()> AddRun(CLI::App& app) {
  const auto options = std::make_shared<RunOptions>();
  CLI::App& run = *app.add_subcommand("run", "Run a command that sees simulated devices");
  AddSimulationWords(run, options->simulation);
  run.add_option("COMMAND", options->command, "What to run, after --");
  return [options] { return Run(*options); };
}

}  // namespace tavlyn::sim
