// A library call cannot be interrupted. This tells people how long it may take.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tavlyn::ctl {

class Awaited {
 public:
  using Seconds = std::chrono::duration<double>;

  // A connect begins. Says at once how long it usually takes, unless that is negligible; and some
  // seconds after that, on a terminal after one, what it waits for and how long it may go on.
  Awaited(const std::string& where, Seconds usual, Seconds most);
  ~Awaited();
  Awaited(const Awaited&) = delete;
  Awaited& operator=(const Awaited&) = delete;

  // What follows may pause for longer, as a write does.
  void Connected();

 private:
  void WaitFor(Seconds patience);
  void Watch(Seconds most);

  const std::string where_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool over_ = false;
  std::chrono::steady_clock::time_point end_;   // of the patience
  std::chrono::system_clock::time_point look_;  // when that is looked at
  std::thread watching_;
};

}  // namespace tavlyn::ctl
