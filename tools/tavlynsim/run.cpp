#include "tools/tavlynsim/run.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "sim/carriers/wire.h"
#include "tools/printable.h"
#include "tools/tavlynsim/child.h"
#include "tools/tavlynsim/desk.h"
#include "tools/tavlynsim/line_show.h"
#include "tools/tavlynsim/server.h"
#include "tools/tavlynsim/standins.h"
#include "tools/tavlynsim/typed_lines.h"
#include "tools/tavlynsim/uhid_show.h"

namespace tavlyn::sim {
namespace {

// A kernel's question waits no longer than this for the loop to come round.
constexpr int kUhidPollMs = 5;
constexpr std::size_t kAnnouncementBytes = 8;

int Fail(int status, const std::string& problem) {
  Tell(kProgram, problem);
  return status;
}

// Of two times to wait; below 0 is without end.
int Shorter(int one, int other) { return one < 0 || other < 0 ? std::max(one, other) : std::min(one, other); }

// The input report with which the first device tells of a card; empty for the most, which do not.
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
        typed_(desk_, options.interactive) {}

  int Run() {
    if (const int status = Prepare(); status != 0) return status;
    Child::Variables variables;
    if (const int status = Show(variables); status != 0) return status;
    if (options_.command.empty() && desk_.Lines().empty()) return Fail(kBadUsage, "COMMAND is missing");
    if (!options_.command.empty() &&
        !child_.Start(options_.command, variables, !options_.interactive, preload_)) {
      return Fail(errno == ENOENT ? kNotFound : kCannotRun,
                  options_.command.front() + ": " + std::strerror(errno));
    }
    std::optional<int> status;
    while (!status) status = Turn();
    return *status;
  }

 private:
  // Plugs the devices in and looks at the cards.
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

  // Makes the devices visible, and gives the variables by which the command sees them.
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

  // A user's own port folder is used where one is set, so that programs started elsewhere see the ports too.
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

  // The variables by which programs reach a line; none, with the problem, when they cannot.
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
    // What was typed until the command ended is done still.
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
  std::optional<std::string> announcement_;  // once the first device is there
  std::optional<Script> script_;
  Server server_;
  UhidShow uhid_;
  LineShow lines_;
  TypedLines typed_;
  Child child_;
  std::vector<std::string> preload_;
};

}  // namespace

int Run(const RunOptions& options) { return Simulation(options).Run(); }

}  // namespace tavlyn::sim
