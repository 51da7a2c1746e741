// The devices of the stand-in HID.DLL with a node for each interface that is present.
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

// The length of a feature report with its report ID: the only one that the system hands on. 0: it has none.
inline std::size_t FeatureReportBytes(const HidIdentity& identity) {
  return identity.featureBytes == 0 ? 0 : identity.featureBytes + 1;
}

class Standin {
 public:
  Standin();

  bool Run(const std::string& command, std::string& reply);
  // The paths of a class, in the order of plugging.
  std::vector<std::string> Paths(bool keyboards);

  // Null when the handle leads to no device that is present. The copy stays good when the device goes.
  std::unique_ptr<HidIdentity> Identity(HANDLE device);
  bool SetFeature(HANDLE device, std::span<const std::uint8_t> report);
  bool GetFeature(HANDLE device, std::span<std::uint8_t> report);

 private:
  struct Present {
    Listed listed;
    std::unique_ptr<Node> node;
  };

  // Makes the nodes match the source and hands queued input reports on.
  void Update();
  // True: the call came back with kDone. It is made only for a device that is present and the right length.
  template <typename Call>
  bool Exchange(HANDLE device, std::size_t length, Call call);
  // Null: none that is present.
  const Present* Find(HANDLE device) const;

  std::mutex mutex_;
  Source& source_;
  std::vector<Present> nodes_;
  bool takesInput_ = true;
  std::optional<std::chrono::steady_clock::time_point> exchanged_;  // a feature report, last
};

Standin& TheStandin();

}  // namespace tavlyn::sim
