// The words of the command line, and which command they mean. Every area adds its own.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "tools/tavlynctl/commands.h"

namespace tavlyn::ctl {

struct Command {
  CLI::App* app;
  const char* name;
  Json (*run)(const Options&);
};
using Commands = std::vector<Command>;

// A command below another or the program, and what commands have in common.
CLI::App* Add(CLI::App& parent, const char* name, const char* text, Options& options);
void AddDevice(CLI::App* command, Options& options);
// --product, for commands that take several.
void AddProduct(CLI::App* command, Options& options);
void AddDryRun(CLI::App* command, Options& options);
// What ends a command that waits or watches.
CLI::Option* AddCount(CLI::App* command, Options& options, const char* text);
void AddTimeout(CLI::App* command, Options& options, const char* text);
void AddFile(CLI::App* command, Options& options);
void AddChoice(CLI::App* command, Options& options, const char* name, const std::vector<std::string>& words);

void AddLinks(CLI::App& app, Link& link);
void AddReads(CLI::App& app, Options& options, Commands& commands);
void AddConfig(CLI::App& app, Options& options, Commands& commands);
void AddOutputs(CLI::App& app, Options& options, Commands& commands);
void AddCards(CLI::App& app, Options& options, Commands& commands);
void AddExtensions(CLI::App& app, Options& options, Commands& commands);
void AddRaw(CLI::App& app, Options& options, Commands& commands);
void AddSecure(CLI::App& app, Options& options, Commands& commands);
void AddProducts(CLI::App& app, Options& options, Commands& commands);
void AddSerial(CLI::App& app, Options& options, Commands& commands);
void AddFind(CLI::App& app, Options& options, Commands& commands);
void AddCheck(CLI::App& app, Options& options, Commands& commands);

}  // namespace tavlyn::ctl
