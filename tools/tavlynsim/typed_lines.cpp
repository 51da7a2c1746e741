#include "tools/tavlynsim/typed_lines.h"

#include <cstdio>
#include <sstream>

#include "tools/printable.h"
#include "tools/tavlynsim/run.h"

namespace tavlyn::sim {

void TypedLines::Take(const std::string& text) {
  unfinished_ += text;
  for (std::size_t end = unfinished_.find('\n'); end != std::string::npos; end = unfinished_.find('\n')) {
    RunLine(unfinished_.substr(0, end));
    unfinished_.erase(0, end + 1);
  }
}

void TypedLines::RunLine(const std::string& line) {
  const std::size_t last = line.find_last_not_of(" \t\r");
  if (last == std::string::npos) return;
  std::string reply;
  const bool done = source_.Run(line.substr(0, last + 1), reply);
  if (done && reply.empty()) reply = "ok";
  std::istringstream lines(reply);
  std::getline(lines, reply);
  Tell(kProgram, reply);
  while (std::getline(lines, reply)) PrintLine(stderr, reply);
}

}  // namespace tavlyn::sim
