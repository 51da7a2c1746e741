#include <filesystem>

#include "tools/tavlynsim/standins.h"

// windows.h has to come behind winsock2.h, which standins.h brings.
#include <windows.h>

namespace tavlyn::sim {
namespace {

namespace fs = std::filesystem;

// HID.DLL first: the other one asks it for the devices.
constexpr const char* kStandins[] = {"hid.dll", "setupapi.dll"};

fs::path OwnFolder() {
  char file[MAX_PATH];
  const DWORD length = GetModuleFileNameA(nullptr, file, sizeof file);
  return fs::path(std::string(file, length)).parent_path();
}

}  // namespace

// Installed they have a folder of their own, so that no program is given them that did not ask.
bool AddHidStandin(Child::Variables&, std::vector<std::string>& preload, std::string& problem) {
  std::error_code none;
  const fs::path own = OwnFolder();
  const fs::path folder = fs::exists(own / "simulator", none) ? own / "simulator" : own;
  for (const char* name : kStandins) {
    if (!fs::exists(folder / name, none)) {
      problem = std::string("the stand-in ") + name + " is not installed";
      return false;
    }
    preload.push_back((folder / name).string());
  }
  return true;
}

std::optional<std::string> UsbStandin(std::string& problem) {
  problem = "bulk devices are simulated on Linux only";
  return std::nullopt;
}

}  // namespace tavlyn::sim
