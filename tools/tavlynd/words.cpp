#include "tools/tavlynd/words.h"

#include <CLI/CLI.hpp>

#include "tools/command_line.h"
#include "tools/reference.h"
#include "tools/tavlynd/settings.h"

namespace tavlyn::agent {
namespace {

constexpr ExitStatus kStatuses[] = {
    {"0", "Ended by SIGTERM or SIGINT; with --check, the settings are right."},
    {"1", "Wrong command line."},
    {"2", "The settings have mistakes, each of which is told with its line."},
    {"3", "The agent cannot run: another one has its spool."},
};

}  // namespace

void AddWords(CLI::App& app, CommandLine& line) {
  line.settings = kSettingsFile;
  app.add_flag("--check", line.check, "Tell the mistakes in the settings file, and end");
  app.add_option("FILE", line.settings, "The settings file (" + line.settings + ")");
  app.set_version_flag("--version", std::string(kProgram) + " " TAVLYN_VERSION, "Print the version");
}

std::span<const ExitStatus> ExitStatuses() { return kStatuses; }

}  // namespace tavlyn::agent
