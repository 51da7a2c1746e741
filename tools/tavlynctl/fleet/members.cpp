#include "tools/tavlynctl/fleet/members.h"

#include <map>

namespace tavlyn::ctl {
namespace {

// A broker sends what it kept when it accepts a subscription; some send part of it a little later.
constexpr std::chrono::milliseconds kQuiet{300};

}  // namespace

std::optional<FleetTopic> ParseFleetTopic(const std::string& prefix, const std::string& topic) {
  if (!topic.starts_with(prefix + '/')) return std::nullopt;
  FleetTopic parsed;
  std::string* const levels[] = {&parsed.site, &parsed.host, &parsed.device, &parsed.end};
  std::size_t begin = prefix.size() + 1;
  for (std::string* level : levels) {
    const std::size_t end = topic.find('/', begin);
    if ((end == std::string::npos) != (level == &parsed.end)) return std::nullopt;
    *level = topic.substr(begin, end == std::string::npos ? end : end - begin);
    begin = end + 1;
  }
  return parsed;
}

Json ValueAt(const Json& object, const char* key) {
  return object.is_object() && object.contains(key) ? object[key] : Json();
}

Json Member::Row() const { return {{"site", topic.site}, {"host", topic.host}, {"device", topic.device}}; }

std::vector<Member> GatherMembers(Broker& broker, const FleetWords& words) {
  broker.Subscribe({words.Topic("state"), words.Topic("info"), words.AgentTopic("state")}, 0);
  std::map<std::string, Member> found;
  while (const auto heard = broker.Hear(kQuiet)) {
    const auto topic = ParseFleetTopic(words.prefix, heard->topic);
    if (!topic || heard->payload.empty()) continue;
    Member& member = found[topic->Place()];
    member.topic = *topic;
    const Json said = ParseObject(heard->payload);
    if (topic->end == "info") member.info = said;
    if (topic->end == "state") member.state = Cell(ValueAt(said, "state"));
  }
  std::vector<Member> members;
  for (const auto& [place, member] : found) {
    if (member.topic.device == kAgentDevice || member.state.empty()) continue;
    const auto agent =
        found.find(member.topic.site + '/' + member.topic.host + '/' + std::string(kAgentDevice));
    members.push_back(member);
    if (agent == found.end() || !agent->second.IsOnline()) members.back().state = "offline";
  }
  if (members.empty()) {
    throw Failure(kNoDevice, "the broker knows no device at " + words.Topic("state") +
                                 "; is an agent (tavlynd) connected, are --to and --prefix right, and do the "
                                 "access rules let " +
                                 (words.user.empty() ? "clients without --user" : words.user) +
                                 " read there? A broker may not say that they do not");
  }
  return members;
}

}  // namespace tavlyn::ctl
