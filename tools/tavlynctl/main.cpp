// Card readers from the command line.
#include <CLI/CLI.hpp>

#include "tools/tavlynctl/commands.h"

namespace {

using namespace tavlyn::ctl;

struct Command {
  CLI::App* app;
  const char* name;
  Json (*run)(const Options&);
};

CLI::App* Add(CLI::App& parent, const char* name, const char* text, Options& options) {
  CLI::App* command = parent.add_subcommand(name, text);
  command->add_flag("--json", options.json, "One JSON object instead of text");
  return command;
}

void AddDevice(CLI::App* command, Options& options) {
  command->add_option("--device", options.device, "Index of the device, as list shows it (0)");
}

std::vector<Command> AddAll(CLI::App& app, Options& options) {
  CLI::App* list = Add(app, "list", "The readers that are plugged in", options);
  CLI::App* info = Add(app, "info", "What a reader tells of itself", options);
  CLI::App* read = Add(app, "read", "The card that lies on a reader, or the next that comes", options);
  read->add_option("--timeout", options.timeout, "Seconds to wait for a card (10)")
      ->check(CLI::NonNegativeNumber);
  CLI::App* watch = Add(app, "watch", "A line for each card that comes or goes, until Ctrl-C", options);
  watch->add_option("--count", options.count, "End after so many lines")->check(CLI::PositiveNumber);
  watch->add_option("--timeout", options.timeout, "End after so many seconds")->check(CLI::NonNegativeNumber);
  CLI::App* config = app.add_subcommand("config", "The configuration of a reader");
  config->require_subcommand(1);
  CLI::App* show = Add(*config, "show", "Every record and field", options);
  show->add_option("--config", options.config, "Only this configuration of a plus reader");
  for (CLI::App* command : {info, read, watch, show}) AddDevice(command, options);
  return {{list, "list", List},
          {info, "info", Info},
          {read, "read", Read},
          {watch, "watch", Watch},
          {show, "config show", ShowConfig}};
}

int Run(const Command& command, const Options& options) try {
  Show(command.run(options), options.json);
  return kOk;
} catch (const Failure& failure) {
  ShowFailure(failure, command.name, options.json);
  return failure.code;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Card readers from the command line", "tavlynctl");
  app.require_subcommand(1);
  Options options;
  const std::vector<Command> commands = AddAll(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kOk : kUsage;
  }
  for (const Command& command : commands) {
    if (command.app->parsed()) return Run(command, options);
  }
  return kUsage;
}
