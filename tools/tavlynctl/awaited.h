// A library call cannot be interrupted. This tells people what it is about and how long it may take.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "tools/tavlynctl/progress.h"

namespace tavlyn::ctl {

class Awaited {
 public:
  using Seconds = std::chrono::duration<double>;

  // A connect begins. Says how long it usually takes, unless that is negligible: on a terminal in a line that
  // counts, elsewhere at once. Some seconds after that, on a terminal after one, says what it waits for and
  // how long it may go on.
  Awaited(const std::string& where, Seconds usual, Seconds most);
  ~Awaited();
  Awaited(const Awaited&) = delete;
  Awaited& operator=(const Awaited&) = delete;

  // What follows may pause for longer, as a write does.
  void Connected() { Do("waiting for the device"); }
  void Do(const std::string& what);
  // Until the next Do the program waits for people.
  void Rest();

 private:
  void WaitFor(Seconds patience);
  void Watch();
  void Count();

  const std::string where_;
  const Seconds most_;
  const bool seen_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool over_ = false;
  bool resting_ = false;
  std::string what_;
  Seconds usual_;                                // of what it does now; 0: not known
  std::chrono::steady_clock::time_point began_;  // to do that
  std::chrono::steady_clock::time_point end_;    // of the patience
  std::chrono::system_clock::time_point look_;   // when that is looked at
  LiveLine line_;
  std::thread watching_;
};

// What the library is to do next for the command's connect: "writing the configuration".
void NowDoing(const std::string& what);
// People are asked, or work in an editor.
void NowResting();

}  // namespace tavlyn::ctl
