#include <algorithm>
#include <filesystem>
#include <string>

#include "tools/path_names.h"
#include "tools/tavlynsim/standins.h"

// windows.h has to come after winsock2.h, which standins.h includes.
#include <windows.h>

namespace tavlyn::sim {
namespace {

// HID.DLL first: the other one gets the devices from it.
constexpr const wchar_t* kStandins[] = {L"hid.dll", L"setupapi.dll"};

// The longest path.
constexpr DWORD kPathRoom = 32768;

std::filesystem::path OwnFolder() {
  std::wstring file(kPathRoom, L'\0');
  file.resize(GetModuleFileNameW(nullptr, file.data(), kPathRoom));
  return std::filesystem::path(file).parent_path();
}

// The loader decodes the names in an import table by rules that differ between systems: only ASCII is the
// same everywhere. Empty if there is no such name.
std::string LoadersName(const std::wstring& file) {
  const auto isAscii = [](wchar_t c) { return c < 0x80; };
  std::wstring name = file;
  if (!std::ranges::all_of(name, isAscii) || name.size() >= MAX_PATH) {
    name.assign(kPathRoom, L'\0');
    name.resize(GetShortPathNameW(file.c_str(), name.data(), kPathRoom));
  }
  if (!std::ranges::all_of(name, isAscii) || name.size() >= MAX_PATH) return {};
  return {name.begin(), name.end()};
}

}  // namespace

// When installed they have a folder of their own, so that no other program loads them by accident.
bool AddHidStandin(Variables&, std::vector<std::string>& preload, std::string& problem) {
  std::error_code none;
  const std::filesystem::path own = OwnFolder();
  const std::filesystem::path folder =
      std::filesystem::exists(own / "simulator", none) ? own / "simulator" : own;
  for (const wchar_t* name : kStandins) {
    const std::filesystem::path file = folder / name;
    if (!std::filesystem::exists(file, none)) {
      problem = "the stand-in " + NameOfPath(file) + " is not installed";
      return false;
    }
    preload.push_back(LoadersName(file.wstring()));
    if (!preload.back().empty()) continue;
    problem = "Windows cannot load the stand-ins from " + NameOfPath(folder) +
              "; move tavlynsim to a folder whose name is short and of English letters";
    return false;
  }
  return true;
}

void JoinSearchPath(Variables&) {}

std::optional<std::string> UsbStandin(std::string& problem) {
  problem = "bulk devices are simulated on Linux only";
  return std::nullopt;
}

std::unique_ptr<Served> MakePort(ByteDevice&, const std::string&, unsigned, std::string& problem) {
  problem = "serial ports are simulated on Linux only";
  return nullptr;
}

}  // namespace tavlyn::sim
