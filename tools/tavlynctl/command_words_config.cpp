// config, cards and check.
#include "tools/tavlynctl/command_words.h"
#include "tools/tavlynctl/commands.h"
#include "tools/word_checks.h"

namespace tavlyn::ctl {
namespace {

constexpr int kHighestConfiguration = 10;

}  // namespace

void AddConfig(CLI::App& app, Options& options, Commands& commands) {
  CLI::App& config = *app.add_subcommand("config", "The configuration of a device");
  config.require_subcommand(1);
  CLI::App* show = Add(config, "show", "Every record and field, or every setting", options);
  CLI::App* get = Add(config, "get", "Single fields", options);
  get->add_option("FIELD", options.words)->required();
  CLI::App* set = Add(config, "set", "Sets fields, and reads them back", options);
  set->add_option("FIELD=VALUE", options.words)->required();
  CLI::App* save = Add(config, "save", "Saves every configuration as a file", options);
  CLI::App* load = Add(config, "load", "Loads a file, and reads the device back", options);
  CLI::App* diff = Add(config, "diff", "Compares a device with a file, or two files", options);
  CLI::App* reset = Add(config, "reset", "Loads the factory configuration", options);
  reset->add_flag("--yes", options.yes, "Do it");
  CLI::App* defaults = Add(config, "defaults", "Moves the defaults that a plus reader keeps", options);
  AddChoice(defaults, options, "WHAT", {"save", "restore", "plus"});
  AddFile(save, options);
  AddFile(load, options);
  diff->add_option("FILE", options.files, "One, compared with the device, or two")->required();
  save->add_flag("--secure", options.secure, "With a trailer that finds damage, but no intent");
  load->add_flag("--secure", options.secure, "Only a file with a trailer");
  load->add_flag("--strict", options.strict, "Only a file of which nothing is ignored");
  for (CLI::App* command : {set, load, reset}) AddDryRun(command, options);
  for (CLI::App* command : {show, save, reset}) AddProduct(command, options);
  for (CLI::App* command : {show, diff}) {
    command->add_option("--config", options.config, "Only this configuration of a plus reader")
        ->check(WholeNumber(0, kHighestConfiguration));
  }
  for (CLI::App* command : {get, set}) {
    command->add_option("--config", options.config, "Configuration of a plus reader (0)")
        ->check(WholeNumber(0, kHighestConfiguration));
  }
  for (CLI::App* command : {show, get, set, save, load, diff, reset, defaults}) AddDevice(command, options);
  commands.insert(commands.end(), {{show, "config show", ShowConfig},
                                   {get, "config get", GetConfig},
                                   {set, "config set", SetConfig},
                                   {save, "config save", SaveConfig},
                                   {load, "config load", LoadConfig},
                                   {diff, "config diff", DiffConfig},
                                   {reset, "config reset", ResetConfig},
                                   {defaults, "config defaults", MoveDefaults}});
}

void AddCards(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* cards = Add(app, "cards", "The card type of each configuration of a plus reader", options);
  CLI::App* set = Add(*cards, "set", "Sets card type and priority, and reads them back", options);
  set->add_option("INDEX", options.index, "Configuration")
      ->required()
      ->check(WholeNumber(0, kHighestConfiguration));
  set->add_option("TYPE", options.cardType, "Card type, hexadecimal")->required();
  AddChoice(set, options, "PRIORITY", {"high", "low"});
  AddDryRun(set, options);
  for (CLI::App* command : {cards, set}) AddDevice(command, options);
  // The inner word first: the outer counts as given too.
  commands.insert(commands.end(), {{set, "cards set", SetCard}, {cards, "cards", Cards}});
}

void AddCheck(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* check =
      Add(app, "check", "Whether a file was damaged since it was written; no proof against intent", options);
  AddFile(check, options);
  check->add_flag("--ini", options.ini, "A key-load ini file");
  commands.push_back({check, "check", CheckFile});
}

}  // namespace tavlyn::ctl
