// The rack inside the stand-in HID.DLL with a node for each interface that is present.
#pragma once

#include <windows.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "sim/carriers/windows/node.h"
#include "sim/rack.h"

namespace tavlyn::sim {

class Standin {
 public:
  bool Run(const std::string& command, std::string& reply);
  // The paths of a class, in the order of plugging.
  std::vector<std::string> Paths(bool keyboards);

  // Null when the handle leads to no device that is present. The copy stays good when the device goes.
  std::unique_ptr<HidIdentity> Identity(HANDLE device);
  bool SetFeature(HANDLE device, std::span<const std::uint8_t> report);
  bool GetFeature(HANDLE device, std::span<std::uint8_t> report);

 private:
  // Makes the nodes match the rack and hands queued input reports on.
  void Update();
  int NumberOf(HANDLE device) const;  // 0: none

  std::mutex mutex_;
  Rack rack_;
  std::vector<std::unique_ptr<Node>> nodes_;
};

Standin& TheStandin();

}  // namespace tavlyn::sim
