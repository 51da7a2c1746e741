// Commands typed while the simulation runs.
#pragma once

#include <string>

#include "sim/carriers/source.h"

namespace tavlyn::sim {

class TypedLines {
 public:
  TypedLines(Source& source, bool wanted);

  // -1 once there is nothing more to come; poll() leaves such a number out by itself.
  [[nodiscard]] int Fd() const { return fd_; }
  // Reads what is there and runs each whole line; replies go to the standard error.
  void Serve();

 private:
  void RunLine(const std::string& line);

  Source& source_;
  int fd_;
  std::string unfinished_;
};

}  // namespace tavlyn::sim
