#include "tools/tavlynsim/asking.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "sim/carriers/wire.h"
#include "sim/devices/sights.h"
#include "tools/command_line.h"
#include "tools/printable.h"
#include "tools/tavlynsim/environment.h"
#include "tools/tavlynsim/run.h"
#include "tools/tavlynsim/socket_place.h"
#include "tools/tavlynsim/standins.h"

namespace tavlyn::sim {
namespace {

struct AskOptions {
  std::string socket;
  bool json = false;
  std::vector<std::string> lines;
  double seconds = 10;
  std::vector<std::string> seen;
  unsigned device = 0;  // the last one
};

constexpr int kLongestWait = 86'400;
constexpr int kStepMs = 10;

// The simulator at a socket.
class Simulator {
 public:
  explicit Simulator(const std::string& name) : socket_(wire::Connect(name.c_str())) {
    if (socket_ == net::kNone) {
      problem_ = name + ": no tavlynsim is there (" + net::Problem() + ")";
    } else if (!IsTrusted(socket_)) {
      problem_ = name + ": belongs to another user";
      net::Close(socket_);
    }
  }
  ~Simulator() { net::Close(socket_); }
  Simulator(const Simulator&) = delete;
  Simulator& operator=(const Simulator&) = delete;

  [[nodiscard]] const std::string& Problem() const { return problem_; }
  // False, with the problem, if there is no answer.
  bool Ask(wire::Op op, wire::Message& message) {
    message.code = static_cast<std::uint8_t>(op);
    if (socket_ == net::kNone) return false;
    if (wire::Send(socket_, message) && wire::Receive(socket_, message)) return true;
    problem_ = "tavlynsim has ended";
    return false;
  }
  // Until it has hung up.
  void Outwait() const {
    wire::Message none;
    while (wire::Receive(socket_, none)) {
    }
  }

 private:
  net::Socket socket_;
  std::string problem_;
};

bool IsDone(const wire::Message& answer) { return answer.code == static_cast<std::uint8_t>(Outcome::kDone); }

constexpr const char* kOfRun = "these devices are those of tavlynsim run and end with its COMMAND";

int Env(const AskOptions& options) {
  Simulator simulator(options.socket);
  wire::Message message;
  if (!simulator.Ask(wire::Op::kVariables, message)) return Fail(kCannotSimulate, simulator.Problem());
  if (!IsDone(message)) return Fail(kCannotSimulate, kOfRun);
  Variables variables = Unpacked(message.body);
  JoinSearchPath(variables);
  std::fputs((options.json ? JsonLine(variables) : ShellLines(variables)).c_str(), stdout);
  return 0;
}

int Do(const AskOptions& options) {
  Simulator simulator(options.socket);
  for (const std::string& line : options.lines) {
    wire::Message message;
    message.body.assign(line.begin(), line.end());
    if (!simulator.Ask(wire::Op::kRun, message)) return Fail(kCannotSimulate, simulator.Problem());
    const std::string reply(message.body.begin(), message.body.end());
    if (!IsDone(message)) return Fail(kBadUsage, reply);
    std::istringstream lines(reply);
    for (std::string one; std::getline(lines, one);) PrintLine(stdout, one);
  }
  return 0;
}

// How many of what is to be seen, one after the other, are among the lines of a reply.
std::size_t CountSeen(const std::string& reply, const std::vector<std::string>& wanted) {
  std::istringstream lines(reply);
  std::size_t count = 0;
  for (std::string line; count < wanted.size() && std::getline(lines, line);) count += line == wanted[count];
  return count;
}

int TellUnseen(const std::string& missing, const std::string& reply) {
  std::fputs(("tavlynsim: not seen: " + missing + "; seen:\n").c_str(), stderr);
  std::istringstream lines(reply);
  for (std::string line; std::getline(lines, line);) PrintLine(stderr, "  " + line);
  return kNotMet;
}

// Whether the devices are there, and everything was seen, or this was the last look.
bool IsOver(const AskOptions& options, bool last, int& status) {
  Simulator simulator(options.socket);
  const bool looks = !options.seen.empty();
  const std::string line = options.device == 0 ? "seen" : "#" + std::to_string(options.device) + " seen";
  wire::Message message;
  if (looks) message.body.assign(line.begin(), line.end());
  if (!simulator.Ask(looks ? wire::Op::kRun : wire::Op::kVariables, message)) {
    if (last) status = Fail(kCannotSimulate, simulator.Problem());
    return last;
  }
  const std::string reply(message.body.begin(), message.body.end());
  if (looks && !IsDone(message)) {
    status = Fail(kBadUsage, reply);
    return true;
  }
  const std::size_t count = CountSeen(reply, options.seen);
  status = 0;
  if (count == options.seen.size()) return true;
  if (last) status = TellUnseen(options.seen[count], reply);
  return last;
}

int Wait(const AskOptions& options) {
  for (const std::string& line : options.seen) {
    if (!Sights::CanBe(line))
      return Fail(kBadUsage, line + ": seen has no such line; it has " + Sights::kLines);
  }
  int status = 0;
  for (int left = static_cast<int>(options.seconds * 1000); !IsOver(options, left <= 0, status);
       left -= kStepMs) {
    std::vector<pollfd> none;
    net::Poll(none, kStepMs);
  }
  return status;
}

int Stop(const AskOptions& options) {
  Simulator simulator(options.socket);
  wire::Message message;
  if (!simulator.Ask(wire::Op::kEnd, message)) return Fail(kCannotSimulate, simulator.Problem());
  if (!IsDone(message)) return Fail(kCannotSimulate, kOfRun);
  std::istringstream lines(std::string(message.body.begin(), message.body.end()));
  const auto status = static_cast<int>(message.key);
  simulator.Outwait();
  for (std::string line; std::getline(lines, line);) Tell(kProgram, line);
  return status;
}

struct Asking {
  const char* name;
  const char* text;
  int (*execute)(const AskOptions& options);
  void (*addWords)(CLI::App& command, AskOptions& options);
};

constexpr Asking kAskings[] = {
    {"env", "Print what programs need to see the devices of tavlynsim serve, as lines for a shell", Env,
     [](CLI::App& command, AskOptions& options) {
       command.add_flag("--json", options.json, "Print it as JSON, on one line");
     }},
    {"do", "Run typed commands while programs use the devices", Do,
     [](CLI::App& command, AskOptions& options) {
       command.add_option("LINE", options.lines, "A typed command, such as 'card 0102:13'; help lists them")
           ->required();
     }},
    {"wait", "Wait until there are devices, or until something was seen of a reader", Wait,
     [](CLI::App& command, AskOptions& options) {
       command.add_option("--seconds", options.seconds, "How long at most (10)")
           ->type_name("S")
           ->check(Seconds(kLongestWait));
       command
           .add_option("--seen", options.seen, "A line that seen prints; if repeated, one after the other")
           ->type_name("LINE")
           ->allow_extra_args(false);
       command.add_option("--device", options.device, "Of this device, from 1 (the last)")->type_name("N");
     }},
    {"stop", "End tavlynsim serve, and tell what came of its scenario", Stop, [](CLI::App&, AskOptions&) {}},
};

// Without --socket the simulator of the surroundings.
int Execute(const Asking& asking, AskOptions options) {
  const char* around = std::getenv(wire::kSocketVariable);
  if (options.socket.empty() && around != nullptr) options.socket = around;
  if (options.socket.empty())
    return Fail(kBadUsage, std::string("--socket is missing, and ") + wire::kSocketVariable + " is not set");
  return asking.execute(options);
}

}  // namespace

std::function<int()> AddAsking(CLI::App& app) {
  const auto options = std::make_shared<AskOptions>();
  for (const Asking& asking : kAskings) {
    CLI::App& command = *app.add_subcommand(asking.name, asking.text);
    command.add_option("--socket", options->socket, "That of tavlynsim serve (default: TAVLYNSIM_SOCKET)")
        ->type_name("FILE");
    asking.addWords(command, *options);
  }
  return [&app, options] {
    for (const Asking& asking : kAskings) {
      if (app.got_subcommand(asking.name)) return Execute(asking, *options);
    }
    return kBadUsage;
  };
}

}  // namespace tavlyn::sim
