// The command that tavlynsim runs, and its signals.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/carriers/net.h"
#include "tools/tavlynsim/environment.h"

namespace tavlyn::sim {

class Child {
 public:
  Child();
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // From now on handles the signals that would end tavlynsim.
  bool HoldSignals();
  // False on failure, with errno. keepInput: the command gets tavlynsim's standard input, otherwise an empty
  // one. preload: DLLs that a Windows program loads before its own.
  bool Start(const std::vector<std::string>& command, const Variables& variables, bool keepInput,
             const std::vector<std::string>& preload);

  // For the owner's loop: what to poll, and after how many milliseconds to return in any case; below 0 means
  // no limit.
  void AddTo(std::vector<pollfd>& polled) const;
  [[nodiscard]] int TurnMs() const;
  // Passes on requests to end the command, and returns its exit status once it has ended. Without a command
  // such a request ends tavlynsim.
  std::optional<int> TakeSignals();

  // Once; it has some seconds, then it is killed. Nothing without a command.
  void AskToEnd();
  // Whether a command that was asked to end ends with this status.
  [[nodiscard]] static bool IsEndAsked(int status);

 private:
  struct System;

  std::unique_ptr<System> system_;
};

}  // namespace tavlyn::sim
