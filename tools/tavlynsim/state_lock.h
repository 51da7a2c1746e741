// Two simulators do not keep their devices in one file.
#pragma once

#include <cstdint>
#include <string>

namespace tavlyn::sim {

// A file beside it, locked and gone with the object.
class StateLock {
 public:
  StateLock() = default;
  ~StateLock();
  StateLock(const StateLock&) = delete;
  StateLock& operator=(const StateLock&) = delete;

  // Does not wait. False, with the problem, if another has it or there can be none.
  bool Take(const std::string& path, std::string& problem);

 private:
  std::string name_;
  std::intptr_t file_ = -1;
};

}  // namespace tavlyn::sim
