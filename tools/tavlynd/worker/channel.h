// What a worker says to its parent on standard output, and takes on standard input.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "tools/tavlynd/lines.h"

namespace tavlyn::agent {

// Thrown when the parent has gone.
struct ParentGone {};

class Channel {
 public:
  // From now on the parent's end ends this process, even amid a search: the next agent's worker asks the same
  // devices, and two that ask take each other's replies. Throws ParentGone.
  Channel();

  // Waits until the parent has heard it, or has gone.
  void Say(const Json& said);
  // The next object; waits at most so long for it. Null for a line that is none.
  std::optional<Json> Take(std::chrono::milliseconds longest);

 private:
  // Nothing if there is nothing in that time.
  static std::string Received(std::chrono::milliseconds longest);

  Lines lines_;
};

// As long as it lasts, the parent's end lets a command be finished within a time: a configuration that is
// being written is not cut off.
class Command {
 public:
  Command();
  ~Command();
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
};

}  // namespace tavlyn::agent
