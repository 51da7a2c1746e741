// The devices of the stand-in HID.DLL, with a node for each interface present.
#pragma once

#include <winsock2.h>

// winsock2.h has to come first.
#include <windows.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "sim/carriers/windows/node.h"
#include "sim/source.h"

namespace tavlyn::sim {

// The length of a feature report including its report ID, the only one that the system passes; 0 if it has
// none.
inline std::size_t FeatureReportBytes(const HidIdentity& identity) {
  return identity.featureBytes == 0 ? 0 : identity.featureBytes + 1;
}

class Standin {
 public:
  Standin();

  bool Run(const std::string& command, std::string& reply);
  // The paths of a class, in the order of plugging.
  std::vector<std::string> Paths(bool keyboards);

  // Null if the handle's device is not present. The copy stays valid when the device goes.
  std::unique_ptr<HidIdentity> Identity(HANDLE device);
  bool SetFeature(HANDLE device, std::span<const std::uint8_t> report);
  bool GetFeature(HANDLE device, std::span<std::uint8_t> report);

 private:
  struct Present {
    Listed listed;
    std::unique_ptr<Node> node;
  };

  // Makes the nodes match the source and passes queued input reports on.
  void Update();
  // True if the call returned kDone. It is made only for a device that is present and a report of its length.
  template <typename Call>
  bool Exchange(HANDLE device, std::size_t length, Call call);
  // Null if it is not present.
  const Present* Find(HANDLE device) const;

  std::mutex mutex_;
  Source& source_;
  std::vector<Present> nodes_;
  bool takesInput_ = true;
  std::optional<std::chrono::steady_clock::time_point> exchanged_;  // the last feature report
};

Standin& TheStandin();

}  // namespace tavlyn::sim
