// analyzer, module, transparent and ble.
#include "tools/tavlynctl/command_words.h"
#include "tools/tavlynctl/commands.h"
#include "tools/word_checks.h"

namespace tavlyn::ctl {
namespace {

void AddAnalyzer(CLI::App& app, Options& options, Commands& commands) {
  CLI::App& analyzer = *app.add_subcommand("analyzer", "The list of cards that a reader has seen");
  analyzer.require_subcommand(1);
  CLI::App* start = Add(analyzer, "start", "Switches the card analyzer on", options);
  start->add_option("STATE", options.state, "What the reader is told (1)")->check(WholeNumber(0, 255));
  CLI::App* stop = Add(analyzer, "stop", "Switches it off", options);
  CLI::App* status = Add(analyzer, "status", "Its state and the number of cards", options);
  CLI::App* list = Add(analyzer, "list", "The cards, with the bits of each", options);
  for (CLI::App* command : {start, stop, status, list}) AddDevice(command, options);
  commands.insert(commands.end(), {{start, "analyzer start", StartAnalyzer},
                                   {stop, "analyzer stop", StopAnalyzer},
                                   {status, "analyzer status", AnalyzerStatus},
                                   {list, "analyzer list", ListAnalyzed}});
}

void AddBle(CLI::App& app, Options& options, Commands& commands) {
  CLI::App& ble = *app.add_subcommand("ble", "The BLE radio of a reader, and what the reader keeps for it");
  ble.require_subcommand(1);
  CLI::App* status = Add(ble, "status", "Whether a reader has the radio, and its configuration", options);
  CLI::App* set = Add(ble, "set", "Sets the configuration, and reads it back", options);
  set->add_option("CONFIGURATION", options.index)->required()->check(WholeNumber(0, 3));
  CLI::App* save = Add(ble, "save", "Saves what the reader keeps as a file", options);
  CLI::App* load = Add(ble, "load", "Loads such a file", options);
  for (CLI::App* command : {save, load}) {
    command->add_flag("--keys", options.keys, "Keys in place of data");
    AddFile(command, options);
  }
  for (CLI::App* command : {status, set, save, load}) AddDevice(command, options);
  commands.insert(commands.end(), {{status, "ble status", BleStatus},
                                   {set, "ble set", SetBle},
                                   {save, "ble save", SaveBle},
                                   {load, "ble load", LoadBle}});
}

}  // namespace

void AddExtensions(CLI::App& app, Options& options, Commands& commands) {
  AddAnalyzer(app, options, commands);
  CLI::App& module = *app.add_subcommand("module", "A module of a reader, by its number");
  module.require_subcommand(1);
  CLI::App* get = Add(module, "get", "Whether it is on", options);
  CLI::App* set = Add(module, "set", "Switches it, and reads it back", options);
  for (CLI::App* command : {get, set}) {
    command->add_option("NUMBER", options.index)->required()->check(WholeNumber(0, 255));
  }
  AddChoice(set, options, "STATE", {"on", "off"});
  CLI::App* transparent = Add(app, "transparent", "Tells or switches the transparent mode", options);
  AddChoice(transparent, options, "WHAT", {"on", "off", "status"});
  transparent->add_flag("--store", options.store, "For good");
  AddBle(app, options, commands);
  for (CLI::App* command : {get, set, transparent}) AddDevice(command, options);
  commands.insert(commands.end(), {{get, "module get", GetModule},
                                   {set, "module set", SetModule},
                                   {transparent, "transparent", TransparentMode}});
}

}  // namespace tavlyn::ctl
