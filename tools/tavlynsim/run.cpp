#include "tools/tavlynsim/run.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/carriers/wire.h"
#include "sim/line_place.h"
#include "tools/command_line.h"
#include "tools/printable.h"
#include "tools/tavlynsim/child.h"
#include "tools/tavlynsim/desk.h"
#include "tools/tavlynsim/line_show.h"
#include "tools/tavlynsim/script.h"
#include "tools/tavlynsim/server.h"
#include "tools/tavlynsim/standins.h"
#include "tools/tavlynsim/typed_lines.h"
#include "tools/tavlynsim/uhid_show.h"
#include "tools/terminal.h"

namespace tavlyn::sim {
namespace {

enum class Carrier { kHidapi, kUhid };

struct RunOptions {
  std::vector<std::string> devices;
  std::vector<std::string> lines;   // devices given by the short options
  std::vector<std::string> orders;  // commands of the rack, run before the command is
  Timetable timetable;
  Carrier carrier = Carrier::kHidapi;
  bool exposed = false;             // to the network, beyond the loopback
  std::optional<bool> interactive;  // if unset, only on a terminal
  std::vector<std::string> command;
};

// A request from the kernel waits no longer than this for the loop.
constexpr int kUhidPollMs = 5;
constexpr std::size_t kAnnouncementBytes = 8;

int Fail(int status, const std::string& problem) {
  Tell(kProgram, problem);
  return status;
}

// The shorter of two waits; below 0 means no limit.
int Shorter(int one, int other) { return one < 0 || other < 0 ? std::max(one, other) : std::min(one, other); }

// The input report with which the first device announces a card; empty for most, which do not.
std::string Announcement(Source& source) {
  const std::vector<Listed> all = source.List();
  const auto numbered =
      std::ranges::find_if(all, [](const Listed& one) { return one.identity.reportId != 0; });
  if (numbered == all.end()) return {};
  char id[4];
  std::snprintf(id, sizeof id, "%02X", numbered->identity.reportId);
  return id + std::string(2 * kAnnouncementBytes, '0');
}

class Simulation {
 public:
  explicit Simulation(const RunOptions& options)
      : options_(options),
        server_(desk_),
        uhid_(desk_),
        lines_(desk_, options.exposed),
        typed_(desk_, *options.interactive) {}

  int Run() {
    if (const int status = Prepare(); status != 0) return status;
    Child::Variables variables;
    if (const int status = Show(variables); status != 0) return status;
    if (options_.command.empty() && desk_.Lines().empty()) return Fail(kBadUsage, "COMMAND is missing");
    if (!options_.command.empty() &&
        !child_.Start(options_.command, variables, !*options_.interactive, preload_)) {
      return Fail(errno == ENOENT ? kNotFound : kCannotRun,
                  options_.command.front() + ": " + std::strerror(errno));
    }
    std::optional<int> status;
    while (!status) status = Turn();
    return *status;
  }

 private:
  // Plugs the devices in and checks the cards.
  int Prepare() {
    std::string reply;
    desk_.Run("record off", reply);  // a long run would fill the memory
    for (const std::string& device : options_.devices) {
      if (!desk_.Run("plug " + device, reply)) return Fail(kBadUsage, reply);
      if (!announcement_) announcement_ = Announcement(desk_);
    }
    desk_.announces = !announcement_->empty();
    script_.emplace(desk_, options_.timetable, *announcement_);
    if (!script_->Check(reply)) return Fail(kBadUsage, reply);
    for (const std::string& order : options_.orders) {
      if (!desk_.Run(order, reply)) return Fail(kBadUsage, reply);
    }
    desk_.onAsked = [this] { script_->Begin(); };
    if (!child_.HoldSignals()) return Fail(kCannotSimulate, std::strerror(errno));
    return 0;
  }

  // Makes the devices visible, and sets the variables by which the command sees them.
  int Show(Child::Variables& variables) {
    std::string problem;
    const bool onUhid = options_.carrier == Carrier::kUhid;
    if (onUhid && !uhid_.Start(problem)) return Fail(kCannotSimulate, problem);
    if (!server_.Open()) return Fail(kCannotSimulate, net::Problem());
    if (!onUhid && !ShowHid(variables, problem)) return Fail(kCannotSimulate, problem);
    return ShowLines(variables, problem) ? 0 : Fail(kCannotSimulate, problem);
  }

  bool ShowHid(Child::Variables& variables, std::string& problem) {
    variables.emplace_back(wire::kSocketVariable, server_.SocketName());
    return options_.command.empty() || AddHidStandin(variables, preload_, problem);
  }

  // If the user has set a port folder it is used, so that programs started elsewhere see the ports too.
  bool ShowLines(Child::Variables& variables, std::string& problem) {
    const char* chosen = std::getenv(kPortFolderVariable);
    const std::string ports = chosen != nullptr ? chosen : server_.Folder();
    if (!lines_.Start(ports, problem)) return false;
    for (const ListedLine& line : desk_.Lines()) {
      const auto needed = NeededFor(line.place, ports, problem);
      if (!needed) return false;
      std::string way;
      for (const auto& [name, value] : *needed) way.append(name).append("=").append(value).append(" ");
      Tell(kProgram, way + ReachedBy(line.place));
      variables.insert(variables.end(), needed->begin(), needed->end());
    }
    return true;
  }

  // The variables by which programs reach a line; none, with the problem, if they cannot.
  std::optional<Child::Variables> NeededFor(const LinePlace& place, const std::string& ports,
                                            std::string& problem) const {
    if (place.kind == LineKind::kEthernet) return Child::Variables{};
    if (place.kind != LineKind::kBulk) return Child::Variables{{kPortFolderVariable, ports}};
    const auto library = UsbStandin(problem);
    if (!library) return std::nullopt;
    return Child::Variables{{kLibusbVariable, *library}, {wire::kSocketVariable, server_.SocketName()}};
  }

  // One turn of the loop; a status once the command has ended.
  std::optional<int> Turn() {
    const bool onUhid = options_.carrier == Carrier::kUhid;
    std::vector<pollfd> polled;
    child_.AddTo(polled);
    typed_.AddTo(polled);
    server_.AddTo(polled);
    uhid_.AddTo(polled);
    lines_.AddTo(polled);
    int timeout = Shorter(PollTimeout(lines_.NextDue()), Child::TurnMs());
    if (onUhid) timeout = Shorter(timeout, kUhidPollMs);
    if (const auto next = script_->UntilNext()) timeout = Shorter(timeout, static_cast<int>(next->count()));
    if (!net::Poll(polled, timeout)) return std::nullopt;
    const auto status = child_.TakeSignals();
    // What was typed before the command ended is still run.
    if (status && !net::Poll(polled, 0)) return status;
    script_->Step();
    typed_.Serve(polled);
    server_.Serve(polled);
    if (onUhid) uhid_.Serve();
    lines_.Serve();
    return status;
  }

  const RunOptions& options_;
  Desk desk_;
  std::optional<std::string> announcement_;  // set once the first device is there
  std::optional<Script> script_;
  Server server_;
  UhidShow uhid_;
  LineShow lines_;
  TypedLines typed_;
  Child child_;
  std::vector<std::string> preload_;
};

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

void AddWords(CLI::App& run, RunOptions& options) {
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
  run.add_option_function<std::string>(
         "--carrier",
         [&options](const std::string& word) {
           options.carrier = word == "uhid" ? Carrier::kUhid : Carrier::kHidapi;
         },
         "hidapi (default): the command, and what it starts, sees the devices through "
         "libhidapi-hidraw.so.0. uhid: they are real hidraw nodes of this machine; needs /dev/uhid "
         "(modprobe uhid) and the right to open it")
      ->check(OneOf({"hidapi", "uhid"}))
      ->option_text("WORD");
  run.add_option("COMMAND", options.command,
                 "What to run, after --; without it devices on lines stay until Ctrl-C");
}

int Run(RunOptions& options) {
  options.devices.insert(options.devices.end(), options.lines.begin(), options.lines.end());
  if (options.devices.empty()) options.devices.emplace_back("reader");
  options.interactive = options.interactive.value_or(InputIsTerminal());
  return Simulation(options).Run();
}

}  // namespace

std::function<int()> AddRun(CLI::App& app) {
  const auto options = std::make_shared<RunOptions>();
  AddWords(*app.add_subcommand("run", "Run a command that sees simulated devices"), *options);
  return [options] { return Run(*options); };
}

}  // namespace tavlyn::sim
