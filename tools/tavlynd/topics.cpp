#include "tools/tavlynd/topics.h"

#include "tools/printable.h"
#include "tools/tavlynd/service.h"

namespace tavlyn::agent {
namespace {

constexpr std::size_t kLongestName = 64;

constexpr TopicKind kTopics[] = {
    {"card", "readers", false, "a card was laid down"},
    {"gone", "readers", false, "it is no longer there"},
    {"swipe", "magnetic-stripe readers", false, "a card was swiped"},
    {"presence", "sonar sensors", false, "somebody has come or left"},
    {"state", "all, agent", true,
     "`online`; a device that is unplugged is `lost`, an agent that is not there `offline`"},
    {"info", "all, agent", true, "what it is"},
    {"command", "all", false, "what it is to do"},
    {"reply", "all, agent", false, "what has become of that"},
};

}  // namespace

std::span<const TopicKind> TopicKinds() { return kTopics; }

std::string Level(const std::string& text) {
  std::string level = Printable(text).substr(0, kLongestName);
  for (char& c : level) {
    if (std::string_view("+#/$%? ").find(c) != std::string_view::npos ||
        (static_cast<unsigned char>(c) & 0x80U) != 0) {
      c = '_';
    }
  }
  return level.empty() ? "_" : level;
}

Topics::Topics(const Settings& settings)
    : prefix_(settings.prefix),
      site_(settings.site),
      host_(settings.host.empty() ? Level(HostName()) : settings.host) {}

std::string Topics::Begin() const { return prefix_ + "/" + site_ + "/" + host_ + "/"; }

std::string Topics::Of(const std::string& device, const char* end) const {
  return Begin() + device + "/" + end;
}

std::string Topics::DeviceOfCommand(const std::string& topic) const {
  const std::string before = Begin();
  const std::string after = "/command";
  if (!topic.starts_with(before) || !topic.ends_with(after) || topic.size() <= before.size() + after.size())
    return {};
  const std::string device = topic.substr(before.size(), topic.size() - before.size() - after.size());
  return Level(device) == device ? device : std::string();
}

std::string Topics::ClientId() const { return std::string(kProgram) + "-" + site_ + "-" + host_; }

}  // namespace tavlyn::agent
