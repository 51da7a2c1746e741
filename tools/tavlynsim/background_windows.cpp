#include "tools/tavlynsim/background.h"

namespace tavlyn::sim {

std::optional<int> Background::Begin(int, int) { return std::nullopt; }

void Background::BeAlone() {}

std::string WhyNoBackground() {
  return "--background, --with-parent and --ready-fd are there on Linux only; start /b begins tavlynsim "
         "serve in the background, tavlynsim wait waits for it, and --with-process ends it with a process";
}

bool IsOpen(int) { return false; }

void TellAt(int, const std::string&) {}

void OutliveReaders() {}

}  // namespace tavlyn::sim
