#include "sim/carriers/windows/standin.h"

#include <algorithm>

namespace tavlyn::sim {

Standin& TheStandin() {
  static Standin standin;
  return standin;
}

bool Standin::Run(const std::string& command, std::string& reply) {
  const std::lock_guard lock(mutex_);
  const bool done = rack_.Run(command, reply);
  Update();
  return done;
}

std::vector<std::string> Standin::Paths(bool keyboards) {
  const std::lock_guard lock(mutex_);
  Update();
  std::vector<std::string> paths;
  for (const auto& node : nodes_) {
    const std::string& path = keyboards ? node->KeyboardPath() : node->HidPath();
    if (!path.empty()) paths.push_back(path);
  }
  return paths;
}

std::unique_ptr<HidIdentity> Standin::Identity(HANDLE device) {
  const std::lock_guard lock(mutex_);
  Update();
  const int number = NumberOf(device);
  return number == 0 ? nullptr : std::make_unique<HidIdentity>(*rack_.Identity(number));
}

bool Standin::SetFeature(HANDLE device, std::span<const std::uint8_t> report) {
  const std::lock_guard lock(mutex_);
  const bool done = rack_.SetFeature(NumberOf(device), report);
  Update();
  return done;
}

bool Standin::GetFeature(HANDLE device, std::span<std::uint8_t> report) {
  const std::lock_guard lock(mutex_);
  const bool done = rack_.GetFeature(NumberOf(device), report);
  Update();
  return done;
}

int Standin::NumberOf(HANDLE device) const {
  for (const auto& node : nodes_) {
    if (node->Owns(device)) return node->Number();
  }
  return 0;
}

void Standin::Update() {
  std::erase_if(nodes_, [&](const auto& node) { return !rack_.IsPresent(node->Number()); });
  for (const Rack::Interface& present : rack_.Present()) {
    const bool known = std::any_of(nodes_.begin(), nodes_.end(),
                                   [&](const auto& node) { return node->Number() == present.number; });
    if (!known) nodes_.push_back(std::make_unique<Node>(present.number, present.identity));
  }
  std::vector<std::uint8_t> report;
  for (const auto& node : nodes_) {
    node->Tend();
    while (node->IsOpen() && rack_.TakeInput(node->Number(), report)) node->Deliver(report);
  }
}

}  // namespace tavlyn::sim
