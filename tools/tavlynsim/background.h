// Serving without a terminal, and telling others that it has begun.
#pragma once

#include <optional>
#include <string>

namespace tavlyn::sim {

// Goes on in a new process that no terminal ends; it keeps only the standard streams and two more descriptors
// open (below 0: none). In the old process waits until the new one calls BeAlone, and returns the exit
// status, or that of the new process if it ends before. None in the new process.
class Background {
 public:
  std::optional<int> Begin(int kept, int keptToo);
  // Lets the old process end, and lets go of the standard streams.
  void BeAlone();

 private:
  [[maybe_unused]] int told_ = -1;  // on Linux
};

// Why there can be no background on this system; empty if there can.
std::string WhyNoBackground();

// A descriptor to which a line is written once.
bool IsOpen(int descriptor);
void TellAt(int descriptor, const std::string& line);

// A program that no longer reads what it is told does not end this one.
void OutliveReaders();

}  // namespace tavlyn::sim
