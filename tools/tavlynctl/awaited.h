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

  // Says at once how long the operation usually takes, unless that is negligible; and when it takes longer,
  // how long it may go on.
  Awaited(const std::string& what, Seconds usual, Seconds most);
  ~Awaited();
  Awaited(const Awaited&) = delete;
  Awaited& operator=(const Awaited&) = delete;

 private:
  void Watch(Seconds usual, Seconds most);

  std::mutex mutex_;
  std::condition_variable changed_;
  bool over_ = false;
  std::thread watching_;
};

}  // namespace tavlyn::ctl
