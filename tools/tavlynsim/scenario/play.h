// A scenario while it is played: does what is due, and watches what is expected.
#pragma once

#include <chrono>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "sim/source.h"
#include "tools/tavlynsim/scenario/last_exchanges.h"
#include "tools/tavlynsim/scenario/rehearsal.h"
#include "tools/tavlynsim/scenario/scenario.h"

namespace tavlyn::sim {

// Of an expectation, or of a command that could not be done.
struct Verdict {
  int line;
  std::string text;  // of the line
  bool met;
  Moment at;         // when it was decided
  std::string seen;  // "at 5 s the relay is off"
  bool isCommand = false;
  std::vector<std::string>
      exchanges{};  // the last ones with the device, if they are noted and something is wrong
};

class Play {
 public:
  using Clock = std::chrono::steady_clock;

  // source: where commands go; those of time 0 at once, so that faults count from the first exchange.
  Play(Source& source, Scenario scenario, ScenarioModels models);

  // An exchange with a device, or the first request for a card, may be what it begins with.
  void NoteSent(const Model& model, std::span<const std::uint8_t> command);
  void NoteAsked();
  // What went over, as a recording has it.
  void NoteExchange(std::size_t device, const std::string& words);

  // Time until the next step; none if there is nothing to wait for.
  [[nodiscard]] std::optional<std::chrono::milliseconds> UntilNext() const;
  void Step();
  // The scenario wants the program to end.
  [[nodiscard]] bool IsOver() const { return over_; }

  // When the program has ended: everything is decided, once.
  const std::vector<Verdict>& Finish();

 private:
  struct Watched {
    Expectation expectation;
    std::optional<Verdict> verdict{};
    int awaited = 0;  // exchanges until the last ones are taken: that which decided it may not be over
  };

  void Begin();
  [[nodiscard]] Moment Now() const;
  void DoUntil(Moment moment);
  void Do(const Action& action);
  void Look(Moment now);
  void LookAt(Watched& watched, Moment now);
  void Decide(Watched& watched, Moment now, bool met, const std::string& seen);
  void TakeExchanges(Watched& watched);
  void DecideLast(Watched& watched, Moment now);
  [[nodiscard]] std::optional<Moment> Next() const;

  Source& source_;
  Scenario scenario_;
  ScenarioModels models_;
  std::vector<Watched> watched_;
  std::vector<Verdict> failed_;    // commands
  std::vector<Verdict> verdicts_;  // in the order of the lines
  bool finished_ = false;
  std::vector<LastExchanges> exchanges_;  // of each device
  std::size_t next_ = 0;                  // action
  std::optional<Clock::time_point> begun_;
  Moment looked_{-1};  // when everything that is due had been done
  bool over_ = false;
};

}  // namespace tavlyn::sim
