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

// Where they go.
class Events {
 public:
  virtual ~Events() = default;

  // The line is for people. False if such an event is not shown. Throws Failure if it cannot be shown.
  virtual bool Tell(const char* event, const DevicePlace& place, const Json& found,
                    const std::string& line) = 0;
  // A device was there from the beginning; it is active.
  virtual void Begin(const DevicePlace& place) = 0;
  // Something that people should know.
  virtual void Note(const std::string& text) = 0;
  // A search begins, which may take minutes.
  virtual void BeginSearch() {}
  // Now and then.
  virtual void Step() {}
};

// To the standard output and to a command, stamped with the time and a number.
class ShownEvents : public Events {
 public:
  ShownEvents(const Request& request, const EventWords& words);

  bool Tell(const char* event, const DevicePlace& place, const Json& found, const std::string& line) override;
  void Begin(const DevicePlace& place) override;
  void Note(const std::string& text) override;
  // The command may have ended.
  void Step() override;

 private:
  const Request& request_;
  const EventWords& words_;
  std::optional<EventCommand> command_;
  std::uint64_t sequence_ = 0;
};

}  // namespace tavlyn::ctl
