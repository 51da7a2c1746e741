// Simulated devices while they are there: made visible to programs and served in one loop.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynsim/child.h"
#include "tools/tavlynsim/companion.h"
#include "tools/tavlynsim/desk.h"
#include "tools/tavlynsim/environment.h"
#include "tools/tavlynsim/kernel_show.h"
#include "tools/tavlynsim/line_show.h"
#include "tools/tavlynsim/scenario/play.h"
#include "tools/tavlynsim/script.h"
#include "tools/tavlynsim/server.h"
#include "tools/tavlynsim/simulation_words.h"
#include "tools/tavlynsim/state_file.h"
#include "tools/tavlynsim/typed_lines.h"

namespace tavlyn::sim {

class Simulation {
 public:
  explicit Simulation(const SimulationOptions& options);
  ~Simulation();
  Simulation(const Simulation&) = delete;
  Simulation& operator=(const Simulation&) = delete;

  // Plugs the devices in and makes them visible. place: of the socket, see Server. 0, or an exit status, when
  // the reason has been told.
  int Begin(const std::string& place = {});
  // By these programs see the devices.
  [[nodiscard]] const Variables& Needed() const { return needed_; }

  // Serves a command until it has ended; its exit status.
  int Accompany(const std::vector<std::string>& command);
  // Before Serve: whoever asks is told what programs need. Like Begin.
  int Offer();
  [[nodiscard]] const std::string& SocketName() const { return server_.SocketName(); }
  // Serves whoever comes until a signal, a program, the end of the companion, or that of the scenario ends
  // it; the latter does not if a program is to take the results.
  int Serve(const Companion& companion, bool awaited);

 private:
  int Prepare();
  bool Plug(std::string& problem);
  // Those of the scenario; false if it cannot be played, which has been told.
  bool PlugScenario();
  // What is told at the end, and the status then.
  struct Ending {
    int status;
    std::vector<std::string> lines;
  };
  // With this status, unless the memory of the devices could not be kept, or the scenario was not met.
  Ending EndWith(int status);
  // The same, told here and to the program that wanted the end; the status.
  int TellEnd(int wanted);
  Ending Judged(int status);
  void PlayOn(bool serves);
  bool Show(const std::string& place, std::string& problem);
  bool ShowHid(std::string& problem);
  bool ShowLines(std::string& problem);
  std::optional<Variables> NeededFor(const LinePlace& place, std::string& problem) const;
  // One turn of the loop; a status once the command has ended, or a signal ends tavlynsim.
  std::optional<int> Turn(const Companion* companion);
  [[nodiscard]] int PollTime(const Companion* companion) const;

  const SimulationOptions& options_;
  Desk desk_;
  std::optional<std::string> announcement_;  // set once the first device is there
  std::optional<Script> script_;
  std::optional<Play> play_;
  Server server_;
  KernelShow kernel_;
  LineShow lines_;
  TypedLines typed_;
  Child child_;
  Variables needed_;
  std::string ports_;  // the folder of the serial ports
  std::vector<std::string> preload_;
  StateFile state_;  // let go before whoever stopped this learns that it has ended
};

}  // namespace tavlyn::sim
