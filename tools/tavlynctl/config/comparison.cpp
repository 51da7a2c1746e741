#include "tools/tavlynctl/config/comparison.h"

#include <algorithm>

#include "api.h"
#include "tools/tavlynctl/config/product_settings.h"
#include "tools/tavlynctl/config/saving.h"
#include "tools/tavlynctl/config/template_file.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {
namespace {

Json SettingsAt(const Side& side, std::size_t index) {
  return index < side.configurations.size() ? side.configurations[index] : Json::object();
}

// A file leaves open what it does not mention, so other values of the device are not differences.
void AddDifferences(std::size_t index, const Side& left, const Side& right, Json& rows) {
  const Json mine = SettingsAt(left, index);
  const Json theirs = SettingsAt(right, index);
  const auto add = [&](const std::string& name) {
    const Json a = mine.value(name, Json());
    const Json b = theirs.value(name, Json());
    if (a != b) rows.push_back({{"configuration", index}, {"field", name}, {"left", a}, {"right", b}});
  };
  for (const auto& [name, value] : theirs.items()) {
    if (!left.isDevice || mine.contains(name)) add(name);
  }
  if (left.isDevice) return;
  for (const auto& [name, value] : mine.items()) {
    if (!theirs.contains(name)) add(name);
  }
}

}  // namespace

Side ActiveDeviceSide() { return {ActiveDeviceName(), GetProduct(), PresentSettings(), true}; }

Side FileSide(const std::string& path) {
  const std::uint32_t product = ProductOfFile(path);
  if (product == kReaders) return {path, product, ReadTemplate(path).configurations, false};
  return {path, product, {ReadSettings(path, product).settings}, false};
}

Json Differences(const Side& left, const Side& right, std::optional<int> only) {
  Json rows = Json::array();
  const std::size_t count = std::max(left.configurations.size(), right.configurations.size());
  for (std::size_t index = 0; index < count; ++index) {
    if (!only || *only == static_cast<int>(index)) AddDifferences(index, left, right, rows);
  }
  return rows;
}

}  // namespace tavlyn::ctl
