// The events of a worker's watch, on their way to the parent.
#pragma once

#include <chrono>
#include <string>

#include "tools/tavlynctl/watch/events.h"
#include "tools/tavlynctl/watch/watching.h"
#include "tools/tavlynd/worker/channel.h"

namespace tavlyn::agent {

class ToldEvents : public ctl::Events {
 public:
  explicit ToldEvents(Channel& channel) : channel_(channel) {}

  bool Tell(const char* event, const ctl::DevicePlace& place, const Json& found,
            const std::string& line) override;
  void Begin(const ctl::DevicePlace& place) override;
  void Note(const std::string& text) override;
  void BeginSearch() override;

  void Reply(const Json& reply);
  // What follows may last that long: the parent ends a worker that has not spoken again then.
  void Expect(std::chrono::seconds patience);
  // The same for what is usual, told now and then.
  void Step() override;

 private:
  void Say(const char* event, const Json& said);

  Channel& channel_;
  std::chrono::seconds patience_{0};
  ctl::Clock::time_point said_;
};

// Everything that identifies a device, and what it says about itself when it has arrived.
Json PlaceOf(const ctl::DevicePlace& place);
// Of the active device.
Json DescriptionAt(const ctl::DevicePlace& place);

// A write of ten configurations; or a plus reader that has gone, which the library asks for a long time.
inline constexpr std::chrono::seconds kLongPatience(240);

}  // namespace tavlyn::agent
