// The command that tavlynsim runs, and the signals that concern it.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tavlyn::sim {

class Child {
 public:
  using Variables = std::vector<std::pair<std::string, std::string>>;

  Child() = default;
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // Holds back the signals that Fd tells of from now on.
  bool HoldSignals();
  // False: errno tells why. keepInput: the command reads the standard input, else it finds it empty.
  bool Start(const std::vector<std::string>& command, const Variables& variables, bool keepInput);

  // Readable when signals have come.
  [[nodiscard]] int Fd() const { return signals_; }
  // Hands on what asks the command to end, and gives its exit status once it has. Without a command that was
  // started, what asks to end does so.
  std::optional<int> TakeSignals();

 private:
  pid_t pid_ = -1;
  int signals_ = -1;
};

}  // namespace tavlyn::sim
