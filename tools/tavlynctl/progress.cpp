#include "tools/tavlynctl/progress.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "tools/printable.h"
#include "tools/terminal.h"

namespace tavlyn::ctl {
namespace {

bool quiet = false;

}  // namespace

void BeQuiet() { quiet = true; }
bool IsQuiet() { return quiet; }
bool ProgressIsSeen() { return !quiet && ErrorsAreOnTerminal(); }

void LiveLine::Show(const std::string& text) {
  std::string line = Printable(text);
  const std::size_t before = std::exchange(shown_, line.size());
  line.resize(std::max(line.size(), before), ' ');
  std::fprintf(stderr, "\r%s", line.c_str());
  std::fflush(stderr);
}

void LiveLine::Clear() {
  if (shown_ == 0) return;
  Show("");
  std::fputc('\r', stderr);
}

void LiveLine::End() {
  if (shown_ != 0) std::fputc('\n', stderr);
  shown_ = 0;
}

}  // namespace tavlyn::ctl
