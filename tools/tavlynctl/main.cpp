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

void AddDryRun(CLI::App* command, Options& options) {
  command->add_flag("--dry-run", options.dryRun, "Only tell what would change");
}

void AddFiles(CLI::App* command, Options& options, int most) {
  command->add_option("FILE", options.files)->required()->expected(1, most);
}

void AddChoice(CLI::App* command, Options& options, const char* name, const std::vector<std::string>& words) {
  command->add_option(name, options.choice)->required()->check(CLI::IsMember(words));
}

using Commands = std::vector<Command>;

void AddReads(CLI::App& app, Options& options, Commands& commands) {
  commands.push_back({Add(app, "list", "The readers that are found", options), "list", List});
  CLI::App* info = Add(app, "info", "What a reader tells of itself", options);
  CLI::App* read = Add(app, "read", "The card that lies on a reader, or the next that comes", options);
  read->add_option("--timeout", options.timeout, "Seconds to wait for a card (10)")
      ->check(CLI::NonNegativeNumber);
  CLI::App* watch = Add(app, "watch", "A line for each card that comes or goes, until Ctrl-C", options);
  watch->add_option("--count", options.count, "End after so many lines")->check(CLI::PositiveNumber);
  watch->add_option("--timeout", options.timeout, "End after so many seconds")->check(CLI::NonNegativeNumber);
  for (CLI::App* command : {info, read, watch}) AddDevice(command, options);
  commands.insert(commands.end(), {{info, "info", Info}, {read, "read", Read}, {watch, "watch", Watch}});
}

void AddConfig(CLI::App& app, Options& options, Commands& commands) {
  CLI::App& config = *app.add_subcommand("config", "The configuration of a reader");
  config.require_subcommand(1);
  CLI::App* show = Add(config, "show", "Every record and field", options);
  CLI::App* get = Add(config, "get", "Single fields", options);
  get->add_option("FIELD", options.words)->required();
  CLI::App* set = Add(config, "set", "Sets fields, and reads them back", options);
  set->add_option("FIELD=VALUE", options.words)->required();
  CLI::App* save = Add(config, "save", "Saves every configuration as a file", options);
  CLI::App* load = Add(config, "load", "Loads a file, and reads the reader back", options);
  CLI::App* diff = Add(config, "diff", "Compares a reader with a file, or two files", options);
  CLI::App* reset = Add(config, "reset", "Loads the factory configuration", options);
  reset->add_flag("--yes", options.yes, "Do it");
  CLI::App* defaults = Add(config, "defaults", "Moves the defaults that a plus reader keeps", options);
  AddChoice(defaults, options, "WHAT", {"save", "restore", "plus"});
  AddFiles(save, options, 1);
  AddFiles(load, options, 1);
  AddFiles(diff, options, 2);
  save->add_flag("--secure", options.secure, "With an integrity trailer");
  load->add_flag("--secure", options.secure, "Only a file with an integrity trailer");
  for (CLI::App* command : {set, load}) AddDryRun(command, options);
  for (CLI::App* command : {show, diff}) {
    command->add_option("--config", options.config, "Only this configuration of a plus reader");
  }
  for (CLI::App* command : {get, set}) {
    command->add_option("--config", options.config, "Configuration of a plus reader (0)");
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

void AddOutputs(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* beep = Add(app, "beep", "Beeps now", options);
  beep->add_option("COUNT", options.count, "Beeps (1)")->check(CLI::Range(1, 5));
  beep->add_flag("--long", options.longBeep, "One or two long beeps");
  CLI::App* led = Add(app, "led", "Switches the LEDs", options);
  led->add_option("COLOUR", options.words, "red, green or both words; off; auto: as the reader itself does")
      ->required()
      ->check(CLI::IsMember({"red", "green", "off", "auto"}));
  CLI::App* relay = Add(app, "relay", "Switches the relay", options);
  AddChoice(relay, options, "STATE", {"on", "off"});
  for (CLI::App* command : {led, relay}) command->add_flag("--store", options.store, "For good");
  CLI::App* volume = Add(app, "volume", "Tells or sets the volume of the beeper", options);
  volume->add_option("N", options.volume)->check(CLI::Range(0, 255));
  for (CLI::App* command : {beep, led, relay, volume}) AddDevice(command, options);
  commands.insert(
      commands.end(),
      {{beep, "beep", Beep}, {led, "led", Led}, {relay, "relay", Relay}, {volume, "volume", Volume}});
}

void AddCards(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* cards = Add(app, "cards", "The card type of each configuration of a plus reader", options);
  CLI::App* set = Add(*cards, "set", "Sets card type and priority, and reads them back", options);
  set->add_option("INDEX", options.index, "Configuration")->required();
  set->add_option("TYPE", options.cardType, "Card type, hexadecimal")->required();
  AddChoice(set, options, "PRIORITY", {"high", "low"});
  AddDryRun(set, options);
  for (CLI::App* command : {cards, set}) AddDevice(command, options);
  // The inner word first: the outer counts as given too.
  commands.insert(commands.end(), {{set, "cards set", SetCard}, {cards, "cards", Cards}});
}

void AddAnalyzer(CLI::App& app, Options& options, Commands& commands) {
  CLI::App& analyzer = *app.add_subcommand("analyzer", "The list of cards that a reader has seen");
  analyzer.require_subcommand(1);
  CLI::App* start = Add(analyzer, "start", "Switches the card analyzer on", options);
  start->add_option("STATE", options.state, "What the reader is told (1)")->check(CLI::Range(0, 255));
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
  set->add_option("CONFIGURATION", options.index)->required()->check(CLI::Range(0, 3));
  CLI::App* save = Add(ble, "save", "Saves what the reader keeps as a file", options);
  CLI::App* load = Add(ble, "load", "Loads such a file", options);
  for (CLI::App* command : {save, load}) {
    command->add_flag("--keys", options.keys, "Keys in place of data");
    AddFiles(command, options, 1);
  }
  for (CLI::App* command : {status, set, save, load}) AddDevice(command, options);
  commands.insert(commands.end(), {{status, "ble status", BleStatus},
                                   {set, "ble set", SetBle},
                                   {save, "ble save", SaveBle},
                                   {load, "ble load", LoadBle}});
}

void AddExtensions(CLI::App& app, Options& options, Commands& commands) {
  AddAnalyzer(app, options, commands);
  CLI::App& module = *app.add_subcommand("module", "A module of a reader, by its number");
  module.require_subcommand(1);
  CLI::App* get = Add(module, "get", "Whether it is on", options);
  CLI::App* set = Add(module, "set", "Switches it, and reads it back", options);
  for (CLI::App* command : {get, set}) {
    command->add_option("NUMBER", options.index)->required()->check(CLI::Range(0, 255));
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

void AddRaw(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* queue = Add(app, "queue", "The oldest ID that was read while nobody asked", options);
  queue->add_flag("--first", options.first, "The first option that is passed on to the reader");
  queue->add_flag("--second", options.second, "The second one");
  CLI::App* raw = Add(app, "raw", "Sends a command of eight bytes and shows the reply", options);
  raw->add_option("HEX", options.words, "Bytes; those left out are 0")->required()->expected(1, 8);
  CLI::App* text = Add(app, "text", "The texts that a reader holds", options);
  for (CLI::App* command : {queue, raw, text}) AddDevice(command, options);
  commands.insert(commands.end(), {{queue, "queue", Queue}, {raw, "raw", Raw}, {text, "text", Texts}});
}

void AddSecure(CLI::App& app, Options& options, Commands& commands) {
  CLI::App& keys = *app.add_subcommand("keys", "Key files");
  CLI::App& secure = *app.add_subcommand("secure", "Single items of the protected memory");
  for (CLI::App* group : {&keys, &secure}) group->require_subcommand(1);
  CLI::App* load = Add(keys, "load", "Writes the items of a key-load ini file", options);
  load->add_flag("--dry-run", options.dryRun, "Only test whether the file is as it was written");
  CLI::App* read = Add(secure, "read", "Reads one item", options);
  read->add_flag("--show-keys", options.showKeys, "Print its bytes");
  CLI::App* write = Add(secure, "write", "Writes one item", options);
  for (CLI::App* command : {read, write}) {
    command->add_option("HEADER", options.header, "Four bytes, hexadecimal; the third is the length")
        ->required();
  }
  write->add_option("DATA", options.data, "Hexadecimal; - takes it from the standard input")->required();
  AddFiles(load, options, 1);
  for (CLI::App* command : {load, read, write}) AddDevice(command, options);
  commands.insert(commands.end(), {{load, "keys load", LoadKeys},
                                   {read, "secure read", ReadSecure},
                                   {write, "secure write", WriteSecure}});
}

// Options of the program, also taken behind a command.
void AddLinks(CLI::App& app, Link& link) {
  app.fallthrough();
  const auto add = [&](const char* name, bool (*take)(const std::string&, Link&), const char* text) {
    return app.add_option_function<std::string>(
        name,
        [&link, take, name](const std::string& word) {
          if (!take(word, link)) throw CLI::ValidationError(name, word + " cannot be meant");
        },
        text);
  };
  CLI::Option* com = add("--com", TakePorts, "Search this COM port, or these")->type_name("N|LO-HI");
  CLI::Option* ip = add("--ip", TakePeer, "Search behind the Ethernet adapter of this address");
  ip->type_name("A.B.C.D:PORT")->excludes(com);
  app.add_option("--baud", link.baud, "Speed of the COM ports (9600)")->needs(com);
  app.add_flag("--ascii", link.ascii, "Speak the text dialect of serial readers");
}

void AddFind(CLI::App& app, Options& options, Commands& commands) {
  CLI::App* find = Add(app, "find", "The Ethernet adapters of an address range", options);
  find->add_option_function<std::string>(
          "RANGE",
          [&options](const std::string& word) {
            options.range = ParseRange(word);
            if (!options.range) throw CLI::ValidationError("RANGE", word + " is no address range");
          },
          "A.B.C.D or A.B.C.FIRST-LAST; this host's own network without it")
      ->type_name("");
  commands.push_back({find, "find", Find});
}

void AddSerial(CLI::App& app, Options& options, Commands& commands) {
  CLI::App& serial = *app.add_subcommand("serial", "The serial side of a reader");
  serial.require_subcommand(1);
  CLI::App* baud = Add(serial, "baud", "Tells or sets the code of the reader's baud rate", options);
  baud->add_option("CODE", options.code)->check(CLI::Range(0, 255));
  CLI::App* write = Add(serial, "write", "Sends raw bytes", options);
  write->add_option("HEX", options.words)->required();
  write->add_option("--read", options.count, "Bytes to read afterwards, at most")->check(CLI::Range(1, 1024));
  CLI::App* read = Add(serial, "read", "Reads raw bytes", options);
  read->add_option("COUNT", options.count, "At most")->required()->check(CLI::Range(1, 1024));
  for (CLI::App* command : {baud, write, read}) AddDevice(command, options);
  commands.insert(commands.end(), {{baud, "serial baud", SerialBaud},
                                   {write, "serial write", SerialWrite},
                                   {read, "serial read", SerialRead}});
}

Commands AddAll(CLI::App& app, Options& options) {
  Commands commands;
  AddLinks(app, options.link);
  AddReads(app, options, commands);
  AddConfig(app, options, commands);
  AddOutputs(app, options, commands);
  AddCards(app, options, commands);
  AddExtensions(app, options, commands);
  AddRaw(app, options, commands);
  AddSecure(app, options, commands);
  AddSerial(app, options, commands);
  AddFind(app, options, commands);
  CLI::App* check = Add(app, "check", "Whether a file is as it was written", options);
  AddFiles(check, options, 1);
  check->add_flag("--ini", options.ini, "A key-load ini file");
  commands.push_back({check, "check", CheckFile});
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
