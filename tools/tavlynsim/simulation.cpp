#include "tools/tavlynsim/simulation.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "sim/carriers/wire.h"
#include "tools/printable.h"
#include "tools/tavlynsim/record/devices.h"
#include "tools/tavlynsim/record/files.h"
#include "tools/tavlynsim/run.h"
#include "tools/tavlynsim/scenario/results.h"
#include "tools/tavlynsim/speed.h"
#include "tools/tavlynsim/standins.h"

namespace tavlyn::sim {
namespace {

// A request from the kernel waits no longer than this for the loop.
constexpr int kKernelPollMs = 5;
constexpr std::size_t kAnnouncementBytes = 8;

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

}  // namespace

Simulation::Simulation(const SimulationOptions& options)
    : options_(options),
      server_(desk_),
      kernel_(desk_),
      lines_(desk_, options.exposed),
      typed_(desk_, *options.interactive) {}

Simulation::~Simulation() { LeaveClock(options_.speed); }

int Simulation::Begin(const std::string& place) {
  if (const int status = Prepare(); status != 0) return status;
  std::string problem;
  return Show(place, problem) ? 0 : Fail(kCannotSimulate, problem);
}

int Simulation::Accompany(const std::vector<std::string>& command) {
  Variables variables = needed_;
  JoinSearchPath(variables);
  if (!child_.Start(command, variables, !*options_.interactive, preload_)) {
    return Fail(errno == ENOENT ? kNotFound : kCannotRun, command.front() + ": " + std::strerror(errno));
  }
  std::optional<int> status;
  while (!status) status = Turn(nullptr);
  // The end of the scenario is no failure of the command.
  const bool wasAsked = play_ && play_->IsOver() && Child::IsEndAsked(*status);
  return TellEnd(wasAsked ? 0 : *status);
}

int Simulation::Offer() {
  if (!preload_.empty() && !desk_.List().empty()) {
    return Fail(
        kCannotSimulate,
        "on Windows only a program that tavlynsim run starts sees HID devices; --ethernet is for all");
  }
  // Ports may be plugged in later.
  if (!ports_.empty()) Put(needed_, kPortFolderVariable, ports_);
  server_.Offer(needed_);
  return 0;
}

// Being ended by a signal is the usual end and no failure.
int Simulation::Serve(const Companion& companion, bool awaited) {
  while (!server_.IsToEnd() && !companion.HasEnded()) {
    if (Turn(&companion) || (play_ && play_->IsOver() && !awaited)) break;
  }
  return TellEnd(0);
}

int Simulation::TellEnd(int wanted) {
  const auto [status, lines] = EndWith(wanted);
  std::string text;
  for (const std::string& line : lines) {
    text += line + "\n";
    Tell(kProgram, line);
  }
  server_.TellEnd(status, text);
  return status;
}

Simulation::Ending Simulation::EndWith(int status) {
  std::string problem;
  if (!options_.state.empty() && !state_.IsKept(problem)) return {kCannotSimulate, {problem}};
  return play_ ? Judged(status) : Ending{status, {}};
}

Simulation::Ending Simulation::Judged(int status) {
  const std::vector<Verdict>& verdicts = play_->Finish();
  Ending ending{status == 0 && !AreAllMet(verdicts) ? kNotMet : status, LinesOf(options_.scenario, verdicts)};
  if (options_.junit.empty()) return ending;
  const std::string problem = WriteWhole(options_.junit, JunitText(options_.scenario, verdicts));
  if (problem.empty()) return ending;
  ending.status = kCannotSimulate;
  ending.lines.push_back(options_.junit + ": " + problem);
  return ending;
}

bool Simulation::PlugScenario() {
  if (options_.scenario.empty()) return true;
  std::vector<std::string> problems;
  auto scenario = ReadScenario(options_.scenario, problems);
  for (const std::string& problem : problems) Tell(kProgram, problem);
  if (!scenario) return false;
  std::vector<Mistake> none;
  ScenarioModels models = PlugAll(*scenario, *desk_.Simulated(), none);
  play_.emplace(desk_, *std::move(scenario), std::move(models));
  desk_.Simulated()->onTaken.emplace_back(
      [this](const Model& model, std::span<const std::uint8_t> command) { play_->NoteSent(model, command); });
  return true;
}

bool Simulation::Plug(std::string& problem) {
  for (const std::string& device : options_.devices) {
    if (IsSimulated(device) && !desk_.Run("plug " + device, problem)) return false;
  }
  announcement_ = Announcement(desk_);
  return true;
}

// Plugs the devices in and checks the cards.
int Simulation::Prepare() {
  std::string reply;
  const Rack* rack = desk_.Simulated();
  desk_.Run("record off", reply);  // a long run would fill the memory
  if (!PutOtherDevices(desk_, options_.devices, reply)) return Fail(kCannotSimulate, reply);
  if (!Plug(reply)) return Fail(kBadUsage, reply);
  if (!PlugScenario()) return kBadUsage;
  if (!options_.state.empty() && !state_.Keep(options_.state, desk_.Simulated(), reply)) {
    return Fail(kCannotSimulate, reply);
  }
  desk_.announces = !announcement_->empty();
  script_.emplace(desk_, options_.timetable, *announcement_);
  if (!script_->Check(reply)) return Fail(kBadUsage, reply);
  for (const std::string& order : options_.orders) {
    if (!desk_.Run(order, reply)) return Fail(kBadUsage, reply);
  }
  if (!options_.junit.empty()) NoteExchanges(desk_, *rack, options_.recording.kept.keys, *play_);
  if (!BeginRecording(desk_, options_.recording, reply)) return Fail(kCannotSimulate, reply);
  desk_.onAsked = [this] {
    script_->Begin();
    if (play_) play_->NoteAsked();
  };
  if (!child_.HoldSignals()) return Fail(kCannotSimulate, std::strerror(errno));
  return 0;
}

// Makes the devices visible, and sets the variables by which programs see them.
bool Simulation::Show(const std::string& place, std::string& problem) {
  AddClock(options_.speed, needed_);
  const bool onKernel = options_.carrier != Carrier::kHidapi;
  if (onKernel && !kernel_.Start(options_.carrier, problem)) return false;
  if (!server_.Open(place, problem)) return false;
  Put(needed_, wire::kSocketVariable, server_.SocketName());
  return (onKernel || ShowHid(problem)) && ShowLines(problem);
}

// Without HID devices nobody misses their stand-in.
bool Simulation::ShowHid(std::string& problem) {
  return AddHidStandin(needed_, preload_, problem) || desk_.List().empty();
}

// If the user has set a port folder it is used, so that programs started elsewhere see the ports too.
bool Simulation::ShowLines(std::string& problem) {
  const char* chosen = std::getenv(kPortFolderVariable);
  std::error_code none;
  ports_ = chosen != nullptr ? std::filesystem::absolute(chosen, none).string() : server_.Folder();
  if (!lines_.Start(ports_, problem)) return false;
  for (const ListedLine& line : desk_.Lines()) {
    const auto needed = NeededFor(line.place, problem);
    if (!needed) return false;
    std::string way;
    for (const auto& [name, value] : *needed) way.append(name).append("=").append(value).append(" ");
    Tell(kProgram, way + ReachedBy(line.place));
    PutAll(needed_, *needed);
  }
  return true;
}

// The variables by which programs reach a line; none, with the problem, if they cannot.
std::optional<Variables> Simulation::NeededFor(const LinePlace& place, std::string& problem) const {
  const bool onKernel = IsUsb(place) && options_.carrier == Carrier::kVhci;
  if (place.kind == LineKind::kEthernet || onKernel) return Variables{};
  if (place.kind == LineKind::kAcm) {
    problem = "a virtual serial port is there with --carrier vhci only; on a serial port it is reader@com3";
    return std::nullopt;
  }
  if (place.kind != LineKind::kBulk) return Variables{{kPortFolderVariable, ports_}};
  const auto library = UsbStandin(problem);
  if (!library) return std::nullopt;
  return Variables{{kLibusbVariable, *library}, {wire::kSocketVariable, server_.SocketName()}};
}

int Simulation::PollTime(const Companion* companion) const {
  int time = Shorter(PollTimeout(lines_.NextDue()), child_.TurnMs());
  if (options_.carrier != Carrier::kHidapi) time = Shorter(time, kKernelPollMs);
  if (companion != nullptr) time = Shorter(time, companion->TurnMs());
  const auto shorten = [&](std::optional<std::chrono::milliseconds> next) {
    if (next) time = Shorter(time, static_cast<int>(next->count()));
  };
  shorten(script_->UntilNext());
  if (play_) shorten(play_->UntilNext());
  return time;
}

// Programs that were started elsewhere go on after the end of a scenario, and count no more.
void Simulation::PlayOn(bool serves) {
  play_->Step();
  if (!play_->IsOver()) return;
  child_.AskToEnd();
  if (serves) play_->Finish();
}

std::optional<int> Simulation::Turn(const Companion* companion) {
  std::vector<pollfd> polled;
  child_.AddTo(polled);
  typed_.AddTo(polled);
  server_.AddTo(polled);
  kernel_.AddTo(polled);
  lines_.AddTo(polled);
  if (companion != nullptr) companion->AddTo(polled);
  if (!net::Poll(polled, PollTime(companion))) return std::nullopt;
  const auto status = child_.TakeSignals();
  // What was typed before the command ended is still run.
  if (status && !net::Poll(polled, 0)) return status;
  script_->Step();
  if (play_) PlayOn(companion != nullptr);
  typed_.Serve(polled);
  server_.Serve(polled);
  kernel_.Serve();
  lines_.Serve();
  return status;
}

}  // namespace tavlyn::sim
