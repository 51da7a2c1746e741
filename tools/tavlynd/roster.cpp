#include "tools/tavlynd/roster.h"

#include <algorithm>

#include "tools/tavlynd/topics.h"

namespace tavlyn::agent {
namespace {

// "com3", "10.0.0.5-10001", "hidraw0"
std::string WithoutSerial(const std::string& link, const std::string& path) {
  std::string name = link.starts_with("usb:") ? path.substr(path.rfind('/') + 1) : link;
  std::ranges::replace(name, ':', '-');
  return name;
}

}  // namespace

std::string Roster::Arrive(const std::string& link, const Json& about) {
  const std::string path = TextIn(about, "path");
  const std::string serial = TextIn(about, "serial");
  std::string first = Level(serial.empty() ? WithoutSerial(link, path) : serial);
  if (first == kAgent) first += "~1";
  std::string name = first;
  const auto isOther = [&](const Device& device) {
    return device.online && (device.link != link || device.path != path);
  };
  for (int number = 2; devices_.contains(name) && isOther(devices_[name]); ++number) {
    name = first + "~" + std::to_string(number);
  }
  devices_[name] = {link, path, about, true};
  return name;
}

std::string Roster::NameAt(const std::string& link, const std::string& path) const {
  const auto found = std::ranges::find_if(devices_, [&](const auto& one) {
    return one.second.online && one.second.link == link && one.second.path == path;
  });
  return found == devices_.end() ? std::string() : found->first;
}

Device* Roster::Find(const std::string& name) {
  const auto found = devices_.find(name);
  return found == devices_.end() ? nullptr : &found->second;
}

}  // namespace tavlyn::agent
