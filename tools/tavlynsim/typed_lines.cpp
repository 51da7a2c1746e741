#include "tools/tavlynsim/typed_lines.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace tavlyn::sim {

TypedLines::TypedLines(Source& source, bool wanted) : source_(source), fd_(wanted ? STDIN_FILENO : -1) {}

void TypedLines::Serve() {
  char bytes[512];
  const ssize_t count = read(fd_, bytes, sizeof bytes);
  if (count < 0 && errno == EINTR) return;
  if (count <= 0) {
    fd_ = -1;
    return;
  }
  unfinished_.append(bytes, static_cast<std::size_t>(count));
  for (std::size_t end = unfinished_.find('\n'); end != std::string::npos; end = unfinished_.find('\n')) {
    RunLine(unfinished_.substr(0, end));
    unfinished_.erase(0, end + 1);
  }
}

void TypedLines::RunLine(const std::string& line) {
  if (line.find_first_not_of(" \t\r") == std::string::npos) return;
  std::string reply;
  const bool done = source_.Run(line, reply);
  while (!reply.empty() && reply.back() == '\n') reply.pop_back();
  if (done && reply.empty()) reply = "ok";
  std::fprintf(stderr, "tavlynsim: %s\n", reply.c_str());
}

}  // namespace tavlyn::sim
