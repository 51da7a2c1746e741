#include "tools/tavlynd/worker_talk.h"

#include <algorithm>
#include <span>
#include <utility>

#include "tools/tavlynctl/watch/time_stamp.h"

namespace tavlyn::agent {
namespace {

using Kind = Json::value_t;

// More than the library finds on a link.
constexpr std::size_t kMostDevices = 256;
constexpr unsigned kLongestPatience = 600;  // s

struct Member {
  const char* name;
  Kind kind;
};

struct Event {
  const char* name;
  bool hasDevice;
  std::span<const Member> members;
};

constexpr Member kCard[] = {{"bits", Kind::number_unsigned}, {"id", Kind::string}};
constexpr Member kSwipe[] = {{"tracks", Kind::array}};
constexpr Member kPresence[] = {{"present", Kind::boolean}, {"inches", Kind::number_unsigned}};
constexpr Member kReply[] = {{"request", Kind::string}, {"ok", Kind::boolean}};
constexpr Member kNote[] = {{"text", Kind::string}};
constexpr Member kAlive[] = {{"patience", Kind::number_unsigned}};
constexpr Event kEvents[] = {
    {"arrived", true, {}},    {"lost", true, {}},      {"card", true, kCard},
    {"gone", true, kCard},    {"swipe", true, kSwipe}, {"presence", true, kPresence},
    {"reply", false, kReply}, {"note", false, kNote},  {"alive", false, kAlive},
};

bool Has(const Json& object, const Member& member) {
  const auto found = object.find(member.name);
  return found != object.end() && found->type() == member.kind;
}

// Null if there is none of that name, or something is missing.
const Event* EventOf(const Json& said) {
  const std::string name = TextIn(said, "event");
  const auto* event = std::ranges::find_if(kEvents, [&](const Event& one) { return name == one.name; });
  if (event == std::end(kEvents) || !Has(said, {"time", Kind::string})) return nullptr;
  if (!std::ranges::all_of(event->members, [&](const Member& one) { return Has(said, one); })) return nullptr;
  if (!event->hasDevice) return event;
  const Json device = said.value("device", Json());
  const bool isNamed = !TextIn(device, "path").empty() &&
                       (!device.contains("serial") || Has(device, {"serial", Kind::string}));
  return isNamed ? event : nullptr;
}

Json MadeUp(const char* event, const Json& members) {
  Json said{{"event", event}, {"time", ctl::TimeStamp()}};
  said.update(members);
  return said;
}

Json GoneCard(const Json& place, const Json& card) {
  return MadeUp("gone", {{"device", place}, {"bits", card["bits"]}, {"id", card["id"]}});
}

}  // namespace

bool WorkerTalk::Hear(const Json& said, const Pass& pass) {
  const Event* event = EventOf(said);
  if (event == nullptr) return false;
  const std::string name = event->name;
  if (name == "alive") {
    patience_ = std::chrono::seconds(std::min(said["patience"].get<unsigned>(), kLongestPatience));
    return true;
  }
  if (event->hasDevice && !Follow(name, said)) return devices_.size() < kMostDevices;
  if (name == "reply" && std::erase(requests_, said["request"].get<std::string>()) == 0) return true;
  pass(said);
  return true;
}

// False for what does not follow from what was said before.
bool WorkerTalk::Follow(const std::string& event, const Json& said) {
  const std::string path = TextIn(said["device"], "path");
  if (event == "arrived") {
    if (devices_.size() >= kMostDevices) return false;
    return devices_.try_emplace(path, Device{said["device"], {}}).second;
  }
  const auto device = devices_.find(path);
  if (device == devices_.end()) return false;
  if (event == "lost") devices_.erase(device);
  if (event == "card") device->second.on = said;
  if (event == "gone") device->second.on = {};
  return true;
}

bool WorkerTalk::Expect(const std::string& request) {
  if (requests_.size() >= kMostRequests) return false;
  requests_.push_back(request);
  return true;
}

void WorkerTalk::End(const Pass& pass) {
  for (const auto& [path, device] : std::exchange(devices_, {})) {
    if (!device.on.is_null()) pass(GoneCard(device.place, device.on));
    pass(MadeUp("lost", {{"device", device.place}}));
  }
  for (const std::string& request : std::exchange(requests_, {})) {
    const Json error{{"code", "failed"}, {"text", "what looks after the device has ended"}};
    pass(MadeUp("reply", {{"request", request}, {"ok", false}, {"error", error}}));
  }
}

}  // namespace tavlyn::agent
