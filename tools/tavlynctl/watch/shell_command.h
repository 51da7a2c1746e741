// A command line that the system's shell runs beside the program.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tavlyn::ctl {

class ShellCommand {
 public:
  using Variables = std::vector<std::pair<std::string, std::string>>;

  // With an empty standard input. What is wrong, also below: "could not be started", "ended with 3"; empty if
  // nothing is.
  std::string Start(const std::string& line, const Variables& variables);
  [[nodiscard]] bool IsRunning() const { return process_ != kNone; }
  // Nothing while it runs.
  std::optional<std::string> Ended();
  std::string Wait();

 private:
  static constexpr long long kNone = -1;
  long long process_ = kNone;  // as the system names it
};

}  // namespace tavlyn::ctl
