// The command that tavlynsim runs, and the signals that concern it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/carriers/net.h"

namespace tavlyn::sim {

class Child {
 public:
  using Variables = std::vector<std::pair<std::string, std::string>>;

  Child();
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // Takes over what would end tavlynsim from now on.
  bool HoldSignals();
  // False: errno tells why. keepInput: the command reads the standard input, else it finds it empty.
  // preload: DLLs that a Windows program loads before its own.
  bool Start(const std::vector<std::string>& command, const Variables& variables, bool keepInput,
             const std::vector<std::string>& preload);

  // For the owner's loop: what to poll, and within how many milliseconds to come round in any case; below 0
  // without limit.
  void AddTo(std::vector<pollfd>& polled) const;
  [[nodiscard]] static int TurnMs();
  // Hands on what asks the command to end, and gives its exit status once it has. Without a command that was
  // started, what asks to end does so.
  std::optional<int> TakeSignals();

 private:
  struct System;

  std::unique_ptr<System> system_;
};

}  // namespace tavlyn::sim
