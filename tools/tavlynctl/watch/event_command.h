// A command of the user's that is run for each event: one at a time, in their order, while the watch goes on.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "tools/tavlynctl/watch/event_format.h"
#include "tools/tavlynctl/watch/shell_command.h"

namespace tavlyn::ctl {

class EventCommand {
 public:
  explicit EventCommand(std::string command) : command_(std::move(command)) {}
  // Waits until the command has run for every event, after a Ctrl-C only until it has ended for this one.
  ~EventCommand();
  EventCommand(const EventCommand&) = delete;
  EventCommand& operator=(const EventCommand&) = delete;

  void Add(std::uint64_t sequence, EventVariables variables);
  // Starts the next one when the last one has ended.
  void Step();

 private:
  struct Waiting {
    std::uint64_t sequence;
    EventVariables variables;
  };

  void Start();
  void TellEnd(const std::string& end) const;

  const std::string command_;
  std::deque<Waiting> waiting_;
  ShellCommand running_;
  std::uint64_t sequence_ = 0;  // of the event that it runs for
};

}  // namespace tavlyn::ctl
