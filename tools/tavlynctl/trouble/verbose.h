// -v: the library's trace on standard error; -vv: what goes over the wire as well.
#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace tavlyn::ctl {

// The program's option; it may also follow a command.
void AddVerboseWords(CLI::App& app, int& verbose);

// From now on each line goes to standard error at once, so that a crash loses none and no file is left; does
// nothing for 0. With 2 the bytes are among them, with the name of their command.
void BeginTrace(int verbose);

// Collects the lines of a trace while the object lasts, in place of where they went before.
class CollectedTrace {
 public:
  explicit CollectedTrace(int verbose);
  ~CollectedTrace();
  CollectedTrace(const CollectedTrace&) = delete;
  CollectedTrace& operator=(const CollectedTrace&) = delete;

  [[nodiscard]] const std::string& Text() const;
};

}  // namespace tavlyn::ctl
