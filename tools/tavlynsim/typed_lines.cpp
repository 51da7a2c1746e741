#include "tools/tavlynsim/typed_lines.h"

#include <cstdio>

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
  while (!reply.empty() && reply.back() == '\n') reply.pop_back();
  if (done && reply.empty()) reply = "ok";
  std::fprintf(stderr, "tavlynsim: %s\n", reply.c_str());
}

}  // namespace tavlyn::sim
