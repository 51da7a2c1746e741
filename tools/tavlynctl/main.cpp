// Card readers, magnetic-stripe readers and sonar sensors from the command line.
#include "tools/tavlynctl/command_words.h"
#include "tools/tavlynctl/commands.h"

namespace {

using namespace tavlyn::ctl;

Commands AddAll(CLI::App& app, Options& options) {
  Commands commands;
  AddLinks(app, options.link);
  for (const auto add : {AddReads, AddConfig, AddOutputs, AddCards, AddExtensions, AddRaw, AddSecure,
                         AddProducts, AddSerial, AddFind, AddCheck}) {
    add(app, options, commands);
  }
  return commands;
}

int Run(const Command& command, const Options& options) try {
  if (options.link.ascii && options.link.kind == LinkKind::kUsb) {
    throw Failure(kUsage, "--ascii needs --com or --ip");
  }
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
  const Commands commands = AddAll(app, options);
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
