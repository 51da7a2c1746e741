// The devices of the fleet, as the broker remembers them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/tavlynctl/bounded_json.h"
#include "tools/tavlynctl/fleet/broker.h"

namespace tavlyn::ctl {

// PREFIX/SITE/HOST/DEVICE/END.
struct FleetTopic {
  std::string site;
  std::string host;
  std::string device;
  std::string end;

  [[nodiscard]] std::string Place() const { return site + '/' + host + '/' + device; }
};
std::optional<FleetTopic> ParseFleetTopic(const std::string& prefix, const std::string& topic);
inline constexpr std::string_view kAgentDevice = "agent";

// Null if there is none.
Json ValueAt(const Json& object, const char* key);

struct Member {
  FleetTopic topic;
  std::string state;  // online, lost; offline like its agent
  Json info;          // null if nobody has told

  [[nodiscard]] bool IsOnline() const { return state == "online"; }
  // Where it is, to begin a row.
  [[nodiscard]] Json Row() const;
};

// Sorted by place. Throws Failure if there is none.
std::vector<Member> GatherMembers(Broker& broker, const FleetWords& words);

}  // namespace tavlyn::ctl
