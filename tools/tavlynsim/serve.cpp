#include "tools/tavlynsim/serve.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "tools/command_line.h"
#include "tools/tavlynsim/background.h"
#include "tools/tavlynsim/companion.h"
#include "tools/tavlynsim/run.h"
#include "tools/tavlynsim/simulation.h"
#include "tools/tavlynsim/simulation_words.h"
#include "tools/tavlynsim/speed.h"
#include "tools/tavlynsim/standins.h"

namespace tavlyn::sim {
namespace {

constexpr int kLargest = std::numeric_limits<int>::max();

struct ServeOptions {
  SimulationOptions simulation;
  std::string socket;
  bool json = false;
  bool background = false;
  bool withParent = false;
  std::optional<int> process;
  std::optional<int> readyAt;  // a descriptor
};

void AddWords(CLI::App& serve, ServeOptions& options) {
  AddSimulationWords(serve, options.simulation);
  serve
      .add_option("--socket", options.socket,
                  "Where programs reach the devices, a new file; by default in a new folder")
      ->type_name("FILE");
  serve.add_flag("--json", options.json, "Print the variables as JSON, on one line");
  serve.add_flag("--background", options.background,
                 "Return as soon as the devices are there; tavlynsim stop ends them");
  serve.add_flag("--with-parent", options.withParent, "End with the process that started tavlynsim");
  serve.add_option("--with-process", options.process, "End with this process")
      ->type_name("PID")
      ->check(WholeNumber(1, kLargest));
  serve
      .add_option("--ready-fd", options.readyAt,
                  "Write a line, the socket, to this file descriptor when the devices are there")
      ->type_name("N")
      ->check(WholeNumber(0, kLargest));
}

// Empty if the words go together, and this system can do it.
std::string WhyNot(const ServeOptions& options) {
  const bool alone = options.background || options.withParent || options.readyAt;
  if (alone && !WhyNoBackground().empty()) return WhyNoBackground();
  if (options.background && options.simulation.interactive.value_or(false))
    return "--background has no standard input for --interactive";
  if (options.withParent && options.process) return "--with-parent and --with-process exclude each other";
  if (options.readyAt && !IsOpen(*options.readyAt))
    return "--ready-fd: " + std::to_string(*options.readyAt) + " is not open";
  return {};
}

void PrintNeeded(Variables needed, bool json) {
  JoinSearchPath(needed);
  std::fputs((json ? JsonLine(needed) : ShellLines(needed)).c_str(), stdout);
  std::fflush(stdout);
}

int ServeHere(const ServeOptions& options, const Companion& companion, Background* background) {
  Simulation simulation(options.simulation);
  if (const int status = simulation.Begin(options.socket); status != 0) return status;
  if (const int status = simulation.Offer(); status != 0) return status;
  PrintNeeded(simulation.Needed(), options.json);
  if (options.readyAt) TellAt(*options.readyAt, simulation.SocketName() + "\n");
  if (background != nullptr) background->BeAlone();
  return simulation.Serve(companion, background != nullptr);
}

int Serve(ServeOptions& options) {
  if (const std::string problem = WhyNot(options); !problem.empty()) return Fail(kBadUsage, problem);
  if (const std::string problem = TakeSpeed(options.simulation.speed); !problem.empty())
    return Fail(kCannotSimulate, problem);
  if (options.background) options.simulation.interactive = false;
  Complete(options.simulation);
  OutliveReaders();
  Companion companion;
  if (options.withParent) companion.BeParent();
  if (options.process) companion.Be(*options.process);
  if (!options.background) return ServeHere(options, companion, nullptr);
  Background background;
  const auto status = background.Begin(static_cast<int>(companion.Kept()), options.readyAt.value_or(-1));
  return status ? *status : ServeHere(options, companion, &background);
}

}  // namespace

std::function<int()> AddServe(CLI::App& app) {
  const auto options = std::make_shared<ServeOptions>();
  AddWords(*app.add_subcommand("serve", "Have simulated devices for programs started elsewhere"), *options);
  return [options] { return Serve(*options); };
}

}  // namespace tavlyn::sim
