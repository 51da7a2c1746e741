#include "tools/tavlynctl/watch/event_command.h"

#include <utility>

#include "tools/printable.h"
#include "tools/tavlynctl/process.h"

namespace tavlyn::ctl {
namespace {

// A command that hangs must not fill the memory.
constexpr std::size_t kMostWaiting = 1000;

}  // namespace

EventCommand::~EventCommand() {
  while (running_.IsRunning()) {
    TellEnd(running_.Wait());
    if (!IsStopped()) Start();
  }
  if (waiting_.empty()) return;
  Tell(kProgram, "the command was not run for the last " + std::to_string(waiting_.size()) + " events");
}

void EventCommand::Add(std::uint64_t sequence, EventVariables variables) {
  if (waiting_.size() == kMostWaiting) {
    Tell(kProgram, "the command is not run for event " + std::to_string(sequence) + ": it is " +
                       std::to_string(kMostWaiting) + " events late");
    return;
  }
  waiting_.push_back({sequence, std::move(variables)});
  Step();
}

void EventCommand::Step() {
  if (running_.IsRunning()) {
    const auto end = running_.Ended();
    if (!end) return;
    TellEnd(*end);
  }
  Start();
}

void EventCommand::Start() {
  while (!waiting_.empty() && !running_.IsRunning()) {
    const Waiting next = std::move(waiting_.front());
    waiting_.pop_front();
    sequence_ = next.sequence;
    TellEnd(running_.Start(command_, next.variables));
  }
}

void EventCommand::TellEnd(const std::string& end) const {
  if (!end.empty()) Tell(kProgram, "the command for event " + std::to_string(sequence_) + " " + end);
}

}  // namespace tavlyn::ctl
