// What differs between the active device and a file, or between two files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

struct Side {
  std::string name;
  std::uint32_t product;
  std::vector<Json> configurations;
  bool isDevice;

  [[nodiscard]] Json Description() const {
    return {{"name", name}, {"configurations", configurations.size()}};
  }
};

Side ActiveDeviceSide();
// Throws Failure if it is no configuration file.
Side FileSide(const std::string& path);

// Rows of configuration, field, left and right; only: of this configuration.
Json Differences(const Side& left, const Side& right, std::optional<int> only = {});

}  // namespace tavlyn::ctl
