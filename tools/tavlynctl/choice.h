// Which device a command is about, as --device or TAVLYNCTL_DEVICE names it.
#pragma once

#include <string>

namespace tavlyn::ctl {

inline constexpr const char* kDeviceVariable = "TAVLYNCTL_DEVICE";

struct DeviceChoice {
  std::string word = {};  // empty: none was given
  bool isVariable = false;
  bool changes = false;  // the command changes a device: of several, one has to be chosen
  bool takesAll = false;
  bool all = false;
};

// Devices are numbered over all products, as list shows them.
DeviceChoice DeviceAt(int index);

enum class NameKind { kNone, kIndex, kSerialNumber, kLuid, kPath, kSerialNumberOrPath, kWrong };

struct DeviceName {
  NameKind kind = NameKind::kNone;
  std::string text = {};
  int number = 0;  // an index or a LUID
};

// A number of up to three digits is an index; anything else without a prefix ("luid:5") is a serial number or
// a path.
DeviceName ParseDeviceName(const std::string& word);
// Whether the active device is called that; indices are up to the caller.
bool ActiveDeviceIs(const DeviceName& name);
// "serial number". What was given is not repeated: it may be a key that came after the wrong option.
std::string KindText(const DeviceName& name);
// What chooses a device by that serial number.
std::string SerialNumberWord(const std::string& serial);
// Asks the active device; empty if it has none.
std::string ActiveSerialNumber();

}  // namespace tavlyn::ctl
