#include "tools/tavlynsim/simulation_words.h"

#include <CLI/CLI.hpp>
#include <chrono>

#include "sim/line_place.h"
#include "tools/command_line.h"
#include "tools/tavlynsim/speed.h"
#include "tools/terminal.h"

namespace tavlyn::sim {
namespace {

// Short options for a plain reader on a line.
void AddLines(CLI::App& run, std::vector<std::string>& devices) {
  const auto add = [&](const char* name, const char* type, const char* text, LineKind kind) {
    const char* suffix = kind == LineKind::kComAscii ? ":ascii" : "";
    run.add_option_function<std::vector<std::string>>(
           name,
           [&devices, suffix](const std::vector<std::string>& places) {
             for (const std::string& place : places) devices.push_back("reader@" + place + suffix);
           },
           text)
        ->type_name(type)
        ->check([type, suffix, kind](const std::string& place) {
          const auto known = ParseLinePlace(place + suffix);
          return known && known->kind == kind ? std::string() : place + " is not of the form " + type;
        })
        ->allow_extra_args(false);
  };
  add("--serial", "COMn", "A reader on a serial port: --device reader@COMn", LineKind::kCom);
  add("--ascii", "COMn", "A reader on a serial port that also speaks text: --device reader@COMn:ascii",
      LineKind::kComAscii);
  add("--ethernet", "IP:PORT", "A reader behind an Ethernet adapter: --device reader@IP:PORT",
      LineKind::kEthernet);
  run.add_flag_callback(
      "--bulk", [&devices] { devices.emplace_back("reader@bulk"); },
      "A reader as a bulk device for libusb-0.1: --device reader@bulk");
}

void AddScenario(CLI::App& run, SimulationOptions& options) {
  auto* scenario =
      run.add_option("--scenario", options.scenario,
                     "Devices, what happens to them, and what is expected of the program, as this file says")
          ->type_name("FILE");
  for (const char* other : {"--device", "--serial", "--ascii", "--ethernet", "--bulk", "--card"}) {
    scenario->excludes(run.get_option(other));
  }
  run.add_option("--junit", options.junit, "Write what came of the scenario to this file, for a CI system")
      ->type_name("FILE")
      ->needs(scenario);
}

}  // namespace

void AddSimulationWords(CLI::App& run, SimulationOptions& options) {
  run.add_option("--device", options.devices,
                 "A device (see tavlynsim devices), may be repeated; one plain reader without any")
      ->type_name("KIND")
      ->allow_extra_args(false);
  AddLines(run, options.lines);
  run.add_flag("--expose", options.exposed,
               "Let Ethernet adapters listen beyond the loopback, where anyone on the network can use them");
  run.add_option("--card", options.timetable.cards,
                 "A card for the first device, lowest byte first, of no more bits than its bytes hold; may "
                 "be repeated")
      ->type_name("HEX:BITS")
      ->allow_extra_args(false);
  run.add_option("--do", options.orders, "A typed command to start with; may be repeated")
      ->type_name("LINE")
      ->allow_extra_args(false);
  const auto addTime = [&](const char* name, std::chrono::milliseconds& time, const char* text) {
    run.add_option_function<int>(
           name, [&time](int ms) { time = std::chrono::milliseconds(ms); }, text)
        ->type_name("MS")
        ->check(WholeNumber(1, 86'400'000));
  };
  addTime("--on", options.timetable.on, "How long each card stays (1500)");
  addTime("--off", options.timetable.off, "How long there is none after it (1000)");
  run.add_flag("--repeat", options.timetable.repeat, "Begin again after the last card");
  run.add_flag("--interactive,!--no-interactive", options.interactive,
               "Take commands from standard input, or do not (default: on a terminal)");
  AddScenario(run, options);
  auto* speed = run.add_option("--speed", options.speed,
                               "Time for the program and the devices goes so many times as fast, 1 to 1000; "
                               "max: sleeping takes no time")
                    ->type_name("N")
                    ->check(SpeedProblem);
  AddRecordingWords(run, options.recording);
  run.add_option(
         "--state", options.state,
         "Keep in this file, from run to run, what the devices keep without power; made if it is not there")
      ->type_name("FILE");
  run.add_option_function<std::string>(
         "--carrier",
         [&options](const std::string& word) {
           if (word == "uhid") options.carrier = Carrier::kUhid;
           if (word == "vhci") options.carrier = Carrier::kVhci;
         },
         "hidapi (default): programs see the devices through libhidapi-hidraw.so.0. "
         "uhid: they are real hidraw nodes of this machine; needs /dev/uhid "
         "(modprobe uhid) and the right to open it. vhci: they are whole USB devices of this machine; needs "
         "vhci_hcd (modprobe vhci-hcd) and root")
      ->check(OneOf({"hidapi", "uhid", "vhci"}))
      ->excludes(speed)
      ->option_text("WORD");
}

void Complete(SimulationOptions& options) {
  options.devices.insert(options.devices.end(), options.lines.begin(), options.lines.end());
  if (options.devices.empty() && options.scenario.empty()) options.devices.emplace_back("reader");
  options.interactive = options.interactive.value_or(InputIsTerminal());
}

}  // namespace tavlyn::sim
