#include <windows.h>

#include <array>
#include <string>

#include "tools/tavlynctl/reach/reach.h"
#include "tools/tavlynctl/trouble/doctor.h"

namespace tavlyn::ctl {
namespace {

constexpr unsigned kHighestPort = 256;

// The driver's name of a port, such as "\Device\Serial0"; empty if there is no such port.
std::string PortDevice(unsigned number) {
  std::array<char, 512> device{};
  const std::string name = "COM" + std::to_string(number);
  const DWORD length = QueryDosDeviceA(name.c_str(), device.data(), static_cast<DWORD>(device.size()));
  return length != 0 ? device.data() : "";
}

Finding OfLibrary(const char* file) {
  std::array<char, MAX_PATH> folder{};
  GetSystemDirectoryA(folder.data(), static_cast<UINT>(folder.size()));
  const std::string path = std::string(folder.data()) + "\\" + file;
  if (GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES) return Fine(file, path);
  return Problem(file, kNoDevice, path + " is not there, and nothing on USB is found without it",
                 "sfc /scannow");
}

Finding OfLibusb() {
  std::array<char, MAX_PATH> folder{};
  GetSystemDirectoryA(folder.data(), static_cast<UINT>(folder.size()));
  const std::string path = std::string(folder.data()) + "\\libusb0.dll";
  const bool isThere = GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
  return Fine("libusb0.dll", isThere ? path + ", loaded if its signature is good"
                                     : "not there; only the bulk device needs it");
}

std::string PortText(unsigned number) { return "COM" + std::to_string(number) + " is " + PortDevice(number); }

Finding OfAskedPort(unsigned number, bool isOnly) {
  constexpr const char* kStep = "port";
  const Port port = LookAtPort(number);
  switch (port.state) {
    case PortState::kFree: return Fine(kStep, PortText(number));
    case PortState::kForbidden:
    case PortState::kHeld: return Problem(kStep, kNoPermission, port.text, "tasklist");
    case PortState::kMissing: break;
  }
  return isOnly ? Problem(kStep, kNoDevice, port.text, "mode") : Fine(kStep, port.text);
}

}  // namespace

std::string SystemName() {
  constexpr const char* kKey = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
  std::string text = "Windows";
  for (const char* value : {"ProductName", "DisplayVersion", "CurrentBuildNumber"}) {
    std::array<char, 128> found{};
    auto size = static_cast<DWORD>(found.size());
    if (RegGetValueA(HKEY_LOCAL_MACHINE, kKey, value, RRF_RT_REG_SZ, nullptr, found.data(), &size) ==
        ERROR_SUCCESS) {
      text += std::string(", ") + found.data();
    }
  }
  return text;
}

// HID.DLL and SETUPAPI.DLL come with the system.
void LookAtLibraries(Findings& findings) {
  for (const char* file : {"hid.dll", "setupapi.dll"}) findings.push_back(OfLibrary(file));
  findings.push_back(OfLibusb());
}

// Every user may open these devices.
void LookAtNodes(Findings& /*findings*/) {}

void LookAtPorts(const Link& link, Findings& findings) {
  if (link.kind == LinkKind::kSerial) {
    for (unsigned number = link.firstPort; number <= link.lastPort; ++number)
      findings.push_back(OfAskedPort(number, link.firstPort == link.lastPort));
    return;
  }
  for (unsigned number = 1; number <= kHighestPort; ++number) {
    if (!PortDevice(number).empty()) findings.push_back(Fine("port", PortText(number)));
  }
}

}  // namespace tavlyn::ctl
