// Card readers, magnetic-stripe readers and sonar sensors from the command line.
#include <algorithm>
#include <filesystem>
#include <span>
#include <string_view>

#include "api.h"
#include "tools/common_words.h"
#include "tools/path_names.h"
#include "tools/tavlynctl/command_words.h"
#include "tools/tavlynctl/commands.h"
#include "tools/tavlynctl/secrets.h"
#include "tools/tavlynctl/standard_files.h"
#include "tools/terminal.h"
#include "tools/wrong_words.h"

namespace {

using namespace tavlyn::ctl;
namespace fs = std::filesystem;

// The library may be another than the one that came with the program.
std::string Version() {
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t build = 0;
  GetLibVersion(&major, &minor, &build);
  return std::string(kProgram) + " " TAVLYN_VERSION ", library " + std::to_string(major) + "." +
         std::to_string(minor) + "." + std::to_string(build);
}

Commands AddAll(CLI::App& app, Options& options) {
  Commands commands;
  AddLinks(app, options.link);
  for (const auto add : {AddReads, AddConfig, AddOutputs, AddCards, AddExtensions, AddRaw, AddSecure,
                         AddProducts, AddSerial, AddFind, AddCheck}) {
    add(app, options, commands);
  }
  return commands;
}

// A device in a file's place may never end.
void NeedFiles(const Options& options) {
  for (const std::string& path : options.files) {
    std::error_code unknown;
    const fs::file_status status = fs::status(tavlyn::PathOf(path), unknown);
    if (fs::is_directory(status)) throw Failure(kBadFile, path + " is a folder, not a file");
    if (fs::exists(status) && !fs::is_regular_file(status))
      throw Failure(kBadFile, path + " is not a regular file");
  }
}

int Run(const Command& command, const Options& options) try {
  if (options.link.ascii && options.link.kind == LinkKind::kUsb) {
    throw Failure(kUsage, "--ascii needs --com or --ip");
  }
  if (HandlesKeys(command.name)) ForbidCoreImage();
  NeedFiles(options);
  Show(command.run(options), options.json);
  return kOk;
} catch (const Failure& failure) {
  return ShowFailure(failure, command.name, options.json);
}

// Whether JSON is wanted is told by the words themselves, as not all of them were understood.
int Refuse(const CLI::App& app, const CLI::ParseError& error, std::span<char*> words) {
  const std::string command = tavlyn::GivenCommand(app);
  const bool json = std::ranges::find(words, std::string_view("--json")) != words.end();
  const Failure failure(kUsage, tavlyn::WrongWords(app, error, MayHoldKeys(command)));
  return ShowFailure(failure, command, json);
}

}  // namespace

int main(int argc, char** argv) {
  tavlyn::ShowAllLanguages();
  if (OutputIsMissing()) {
    const Failure closed(kBadFile, "the standard output is closed; >/dev/null drops what is shown");
    return ShowFailure(closed, "", false);
  }
  CLI::App app("Card readers, magnetic-stripe readers and sonar sensors from the command line", kProgram);
  app.require_subcommand(1);
  Options options;
  app.add_flag("--json", options.json, "One JSON object instead of text");
  const Commands commands = AddAll(app, options);
  tavlyn::AddCommonWords(app, Version);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // help
    return Refuse(app, error, {argv, static_cast<std::size_t>(argc)});
  }
  for (const Command& command : commands) {
    if (command.app->parsed()) return Run(command, options);
  }
  return kUsage;
}
