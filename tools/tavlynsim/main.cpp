// Runs a program with simulated devices.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <optional>

#include "sim/line_place.h"
#include "tools/command_line.h"
#include "tools/printable.h"
#include "tools/tavlynsim/run.h"
#include "tools/terminal.h"

namespace {

using tavlyn::sim::Carrier;
using tavlyn::sim::LineKind;
using tavlyn::sim::RunOptions;

struct Kind {
  const char* word;
  const char* text;
};

constexpr Kind kKinds[] = {
    {"reader", "a card reader of one configuration, 7A31:3BFA"},
    {"plus:N", "a plus reader of 2 to 11 configurations, 7A31:3BFA"},
    {"magstripe", "a magnetic-stripe reader, 7A31:1000"},
    {"sonar", "a sonar sensor, 18C8:2BFA"},
    {"KIND@VID:PID", "any one under another USB identity, such as reader@19E5:2021"},
    {"KIND@7A31:3BFB",
     "a reader that numbers its reports, tells of cards by input reports, has a keyboard beside it"},
    {"KIND@com3", "on serial port COM3, also com3:ascii for one that speaks text"},
    {"KIND@IP:PORT", "behind an Ethernet adapter at an address of this machine, such as 127.0.0.1:10001"},
    {"KIND@bulk", "a bulk device, 171B:1004, for programs that use libusb-0.1"},
    {"KIND,luid=7", "with a LUID of its choice, also serial=0400999999; else the first has 1, the next 2"},
};

int ShowKinds() {
  for (const Kind& kind : kKinds) std::printf("%-16s %s\n", kind.word, kind.text);
  return 0;
}

// Short words for a plain reader on some line.
void AddLines(CLI::App& run, std::vector<std::string>& devices) {
  const auto add = [&](const char* name, const char* type, const char* text, LineKind kind) {
    const char* behind = kind == LineKind::kComAscii ? ":ascii" : "";
    run.add_option_function<std::vector<std::string>>(
           name,
           [&devices, behind](const std::vector<std::string>& places) {
             for (const std::string& place : places) devices.push_back("reader@" + place + behind);
           },
           text)
        ->type_name(type)
        ->check([type, behind, kind](const std::string& place) {
          const auto known = tavlyn::sim::ParseLinePlace(place + behind);
          return known && known->kind == kind ? std::string() : place + " is no " + type;
        })
        ->allow_extra_args(false);
  };
  add("--serial", "COMn", "A reader on a serial port: --device reader@COMn", LineKind::kCom);
  add("--ascii", "COMn", "One that speaks text: --device reader@COMn:ascii", LineKind::kComAscii);
  add("--ethernet", "IP:PORT", "One behind an Ethernet adapter: --device reader@IP:PORT",
      LineKind::kEthernet);
  run.add_flag_callback(
      "--bulk", [&devices] { devices.emplace_back("reader@bulk"); },
      "One behind the endpoints of a bulk device: --device reader@bulk");
}

void AddRun(CLI::App& app, RunOptions& options, std::optional<bool>& interactive) {
  auto* run = app.add_subcommand("run", "Run a command that sees simulated devices");
  run->add_option("--device", options.devices, "A device, may be given again (see tavlynsim devices)")
      ->type_name("KIND")
      ->allow_extra_args(false);
  AddLines(*run, options.lines);
  run->add_flag("--expose", options.exposed, "Let Ethernet adapters listen beyond the loopback");
  run->add_option("--card", options.timetable.cards,
                  "A card for the first device, lowest byte first; may be given again")
      ->type_name("HEX:BITS")
      ->allow_extra_args(false);
  run->add_option("--do", options.orders, "A typed command to start with; may be given again")
      ->type_name("LINE")
      ->allow_extra_args(false);
  const auto addTime = [&](const char* name, std::chrono::milliseconds& time, const char* text) {
    run->add_option_function<int>(
           name, [&time](int ms) { time = std::chrono::milliseconds(ms); }, text)
        ->type_name("MS")
        ->check(tavlyn::WholeNumber(1, 86'400'000));
  };
  addTime("--on", options.timetable.on, "How long each card lies (1500)");
  addTime("--off", options.timetable.off, "How long there is none afterwards (1000)");
  run->add_flag("--repeat", options.timetable.repeat, "Begin again after the last card");
  run->add_flag("--interactive,!--no-interactive", interactive,
                "Take commands from standard input, or do not (default: on a terminal)");
  run->add_option_function<std::string>(
         "--carrier",
         [&options](const std::string& word) {
           options.carrier = word == "uhid" ? Carrier::kUhid : Carrier::kHidapi;
         },
         "hidapi (default): for the command alone. uhid: for this machine")
      ->check(tavlyn::OneOf({"hidapi", "uhid"}))
      ->option_text("WORD");
  run->add_option("COMMAND", options.command,
                  "What to run, behind --; without it devices on lines are there until Ctrl-C");
}

}  // namespace

int main(int argc, char** argv) {
  tavlyn::ShowAllLanguages();
  CLI::App app("Simulated devices for programs that use tavlynapi or hidapi", tavlyn::sim::kProgram);
  app.require_subcommand(1);
  RunOptions options;
  std::optional<bool> interactive;
  AddRun(app, options, interactive);
  app.add_subcommand("devices", "List what can be simulated");
  tavlyn::AddCommonWords(app, [] { return std::string(tavlyn::sim::kProgram) + " " TAVLYN_VERSION; });
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // help
    tavlyn::Tell(tavlyn::sim::kProgram, tavlyn::WrongWords(app, error));
    return tavlyn::sim::kBadUsage;
  }
  if (app.got_subcommand("devices")) return ShowKinds();
  options.devices.insert(options.devices.end(), options.lines.begin(), options.lines.end());
  if (options.devices.empty()) options.devices.emplace_back("reader");
  options.interactive = interactive.value_or(tavlyn::InputIsTerminal());
  return tavlyn::sim::Run(options);
}
