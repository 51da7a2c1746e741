#include "tools/tavlynd/roster.h"

#include <algorithm>
#include <filesystem>

#include "tools/tavlynd/topics.h"

namespace tavlyn::agent {
namespace {

// Nodes are numbered as devices are plugged in; the port stays the same.
std::string UsbName(const std::string& path) {
  const std::string node = path.substr(path.rfind('/') + 1);
  std::error_code unknown;
  const auto place = std::filesystem::canonical("/sys/class/hidraw/" + node + "/device", unknown);
  const std::string port = UsbPortIn(place.string());
  return port.empty() ? node : "usb-" + port;
}

// "com3", "10.0.0.5-10001", "usb-1-2.4"
std::string WithoutSerial(const std::string& link, const std::string& path) {
  std::string name = link.starts_with("usb:") ? UsbName(path) : link;
  std::ranges::replace(name, ':', '-');
  return name;
}

}  // namespace

std::string UsbPortIn(const std::string& place) {
  std::size_t end = place.rfind(':');
  while (end != std::string::npos && end > 0) {
    const std::size_t begin = place.rfind('/', end) + 1;
    std::string port = place.substr(begin, end - begin);
    const bool isPort =
        port.find('-') != std::string::npos && port.find_first_not_of("0123456789-.") == std::string::npos;
    if (isPort) return port;
    if (begin < 2) break;
    end = place.rfind(':', begin - 1);
  }
  return {};
}

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
