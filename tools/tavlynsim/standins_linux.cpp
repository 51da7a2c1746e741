#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "platform/linux/trusted_file.h"
#include "sim/carriers/pseudo_terminal.h"
#include "tools/tavlynsim/standins.h"

namespace tavlyn::sim {
namespace {

namespace fs = std::filesystem;

constexpr const char* kHidStandin = "libhidapi-hidraw.so.0";
constexpr const char* kSearchPath = "LD_LIBRARY_PATH";
constexpr const char* kUsbStandin = "libtavlyn-standin-usb.so";

// Relative to the program the folder is in the same place when built and when installed.
std::optional<fs::path> HidStandinFolder(std::string& problem) {
  std::error_code none;
  const fs::path beside = fs::read_symlink("/proc/self/exe", none).parent_path().parent_path();
  if (fs::exists(beside / TAVLYN_STANDIN_FOLDER / kHidStandin, none)) return beside / TAVLYN_STANDIN_FOLDER;
  problem = std::string("the stand-in ") + kHidStandin + " is not installed";
  return std::nullopt;
}

}  // namespace

bool AddHidStandin(Variables& variables, std::vector<std::string>&, std::string& problem) {
  const auto folder = HidStandinFolder(problem);
  if (!folder) return false;
  Put(variables, kSearchPath, folder->string());
  return true;
}

void JoinSearchPath(Variables& variables) {
  const char* own = std::getenv(kSearchPath);
  const auto path = std::ranges::find(variables, kSearchPath, &Variables::value_type::first);
  if (own == nullptr || *own == '\0' || path == variables.end()) return;
  const bool begins = (own + std::string(":")).starts_with(path->second + ":");
  path->second = begins ? own : path->second + ":" + own;
}

std::optional<std::string> UsbStandin(std::string& problem) {
  const auto folder = HidStandinFolder(problem);
  if (!folder) return std::nullopt;
  const fs::path file = folder->parent_path() / kUsbStandin;
  std::error_code none;
  const fs::path real = fs::canonical(file, none);
  if (platform::IsTrustedFile(platform::Path("%s", real.c_str()))) return file.string();
  problem = file.string() +
            ": tavlynapi loads it only when it and all folders above it belong to root and nobody else may "
            "write to them; install it as root";
  return std::nullopt;
}

std::unique_ptr<Served> MakePort(ByteDevice& device, const std::string& folder, unsigned number,
                                 std::string& problem) {
  const std::string link = folder + "/com" + std::to_string(number);
  auto port = std::make_unique<PseudoTerminal>(device, link);
  if (port->IsPlugged()) return port;
  problem = errno == EEXIST
                ? link + " is there already; remove it, or name another folder in TAVLYNAPI_PORT_DIR"
                : std::strerror(errno);
  return nullptr;
}

}  // namespace tavlyn::sim
