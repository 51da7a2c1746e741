// The devices that there are, and those that there were.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "tools/tavlynd/lines.h"

namespace tavlyn::agent {

struct Device {
  std::string link;
  std::string path;
  Json about;  // null for one that has not arrived since the start
  bool online = false;
};

// "1-2.4" of "…/usb1/1-2/1-2.4/1-2.4:1.0/…", where the system has a device; empty if that is no USB port.
std::string UsbPortIn(const std::string& place);

class Roster {
 public:
  // Its name: that of a device by its serial number, or without one by its link or port; of two that have the
  // same, the later one gets another.
  std::string Arrive(const std::string& link, const Json& about);
  // Empty if there is none.
  [[nodiscard]] std::string NameAt(const std::string& link, const std::string& path) const;
  // Null if there is none of that name.
  Device* Find(const std::string& name);
  // Of an earlier run.
  void Remember(const std::string& name) { devices_.try_emplace(name); }
  [[nodiscard]] const std::map<std::string, Device>& All() const { return devices_; }

 private:
  std::map<std::string, Device> devices_;
};

}  // namespace tavlyn::agent
