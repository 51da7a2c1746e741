// PREFIX/SITE/HOST/DEVICE/END.
#pragma once

#include <span>
#include <string>

#include "tools/tavlynd/settings.h"

namespace tavlyn::agent {

// A row for each end of a topic; docs/tavlynd.md derives from it.
struct TopicKind {
  const char* end;
  const char* devices;  // who has it
  bool retained;
  const char* meaning;
};
std::span<const TopicKind> TopicKinds();

// In place of a device: the agent itself.
inline constexpr const char* kAgent = "agent";

// As one level: what MQTT or the rules of brokers give a meaning becomes _.
std::string Level(const std::string& text);

class Topics {
 public:
  explicit Topics(const Settings& settings);

  // What all of them begin with.
  [[nodiscard]] std::string Begin() const;
  [[nodiscard]] std::string Of(const std::string& device, const char* end) const;
  // What is subscribed: the commands for all of its devices and itself.
  [[nodiscard]] std::string Commands() const { return Of("+", "command"); }
  // The device of a command's topic; empty if it is no such topic.
  [[nodiscard]] std::string DeviceOfCommand(const std::string& topic) const;
  // By which the broker knows the agent.
  [[nodiscard]] std::string ClientId() const;

 private:
  std::string prefix_;
  std::string site_;
  std::string host_;
};

}  // namespace tavlyn::agent
