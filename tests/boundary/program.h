// Runs built programs as a person at a shell would.
#pragma once

#include <string>

namespace tavlyn::boundary {

struct Ended {
  int status = -1;  // 128 plus the number of the signal that ended it
  std::string out;
  std::string err;
};

// A line for the shell, its input empty unless the line says otherwise. On Linux its programs share a clock
// that only their waiting advances (quick_time_linux.cpp).
Ended RunLine(const std::string& line);

// A shell function available to every line, and to scripts that begin with its text: "upon DEED PROGRAM
// WORDS" does the deed as soon as the program has written a line to standard error; $pid is the program.
extern const std::string kUpon;

}  // namespace tavlyn::boundary
