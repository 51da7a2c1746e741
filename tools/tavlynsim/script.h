// Cards that come and go by the clock: each is on the reader for a while, followed by a gap.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "sim/source.h"

namespace tavlyn::sim {

struct Timetable {
  std::vector<std::string> cards;  // as the card command takes them
  std::chrono::milliseconds on{1500};
  std::chrono::milliseconds off{1000};
  bool repeat = false;
};

// Acts on the device plugged in first. It begins when a program first asks for a card, so that a program that
// is slow to start misses none.
class Script {
 public:
  using Clock = std::chrono::steady_clock;

  // announce: an input report to queue with each card, for readers that announce their cards; may be empty.
  Script(Source& source, Timetable timetable, std::string announce);

  // False, with the reason, if one of the cards is not valid.
  bool Check(std::string& reason);

  void Begin();
  // Time until the next step; none if there is nothing to wait for.
  [[nodiscard]] std::optional<std::chrono::milliseconds> UntilNext() const;
  // Does what is due.
  void Step();

 private:
  void Lay();
  void Take();

  Source& source_;
  Timetable timetable_;
  std::string announce_;
  std::size_t next_ = 0;  // card
  bool lies_ = false;
  bool begun_ = false;
  std::optional<Clock::time_point> due_;
};

}  // namespace tavlyn::sim
