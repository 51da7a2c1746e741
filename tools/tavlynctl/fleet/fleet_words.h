// Options that every command of the fleet has: which broker, and which devices.
#pragma once

#include <string>
#include <vector>

#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {

inline constexpr double kPatience = 10;  // seconds

struct FleetWords {
  std::string url;
  std::string to = "+/+/+";
  std::string prefix = "tavlyn";
  std::string user;
  std::string passwordFile;
  std::string ca;
  std::string certificate;
  std::string key;
  bool plain = false;

  void Take(Words& words);
  // Throws Failure if they do not go together.
  void Check() const;

  // PREFIX/SITE/HOST/DEVICE/END, for the devices that are chosen.
  [[nodiscard]] std::string Topic(const char* end) const;
  // The agents of their machines.
  [[nodiscard]] std::string AgentTopic(const char* end) const;
};

// --patience.
void TakePatience(Words& words, double& seconds);

}  // namespace tavlyn::ctl
