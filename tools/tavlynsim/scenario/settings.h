// The settings of magnetic-stripe readers and sonar sensors, by the names and in the numbers of tavlynctl
// config.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "magstripe/text_file.h"
#include "sim/devices/model.h"

namespace tavlyn::sim {

struct DeviceSetting {
  bool isSonars = false;
  std::size_t row = 0;  // of the product's table
  magstripe::Indices at{};
};

// None if neither product has it.
std::optional<DeviceSetting> FindSetting(const std::string& name);
std::string NameOf(const DeviceSetting& setting);

// As stored; none if the device is of another product.
std::optional<int> StoredSetting(const Model& model, const DeviceSetting& setting);
// False, with the problem, if the device has no such setting, or not this value of it.
bool StoreSetting(Model& model, const DeviceSetting& setting, const std::string& value, std::string& problem);

}  // namespace tavlyn::sim
