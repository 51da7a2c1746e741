// What last went over between a program and a device, as people read it. A program that polls would fill any
// such list with one exchange: each is there once, when it last went over.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "tools/tavlynsim/record/masks.h"

namespace tavlyn::sim {

class Desk;
class Play;
class Rack;

class LastExchanges {
 public:
  // words: "> 00 8F 00", or what came back, "< 00 8F 01", at this time.
  void Take(const std::string& time, const std::string& words);
  // "0.5 s > 00 8F 00 < 00 8F 01 (34 times)"
  [[nodiscard]] std::vector<std::string> Lines() const;

 private:
  struct Exchange {
    std::string time;
    std::string words;
    int times = 1;
  };

  void Fold();

  std::deque<Exchange> last_;  // the newest is not folded yet
};

// Has the exchanges on the desk noted by the play. Like a recording: keys are covered unless they are kept,
// and then lines are left out.
void NoteExchanges(Desk& desk, const Rack& rack, bool keepsKeys, Play& play);

}  // namespace tavlyn::sim
