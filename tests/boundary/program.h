// Runs built programs as a person at a shell would.
#pragma once

#include <string>

namespace tavlyn::boundary {

struct Ended {
  int status = -1;  // 128 and the number when a signal ended it
  std::string out;
  std::string err;
};

// A line for the shell, its input empty unless the line says otherwise.
Ended RunLine(const std::string& line);

}  // namespace tavlyn::boundary
