// What a command that watches tells, an event a line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/watch/event_command.h"

namespace tavlyn::ctl {

// The device that an event is about.
struct DevicePlace {
  std::int16_t entry = 0;  // in the library's table
  int index = 0;           // in list, at that time
  std::string path;
  std::string serialNumber;  // empty if it has none

  // By what people know it.
  [[nodiscard]] const std::string& Name() const { return serialNumber.empty() ? path : serialNumber; }
};

// Options of commands that watch.
struct EventWords {
  std::string format;   // empty: as usual
  std::string command;  // empty: none

  void Take(Words& words);
};

class Events {
 public:
  Events(const Request& request, const EventWords& words);

  // Stamped with the time and a number; the line is for people. False if the format does not show such an
  // event. Throws Failure if it cannot be shown.
  bool Tell(const char* event, const DevicePlace& place, const Json& found, const std::string& line);
  // Now and then: the command may have ended.
  void Step();

 private:
  const Request& request_;
  const EventWords& words_;
  std::optional<EventCommand> command_;
  std::uint64_t sequence_ = 0;
};

}  // namespace tavlyn::ctl
