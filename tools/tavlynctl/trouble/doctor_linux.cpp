#include <dlfcn.h>
#include <grp.h>
#include <link.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/linux/com_paths.h"
#include "platform/linux/libusb_file.h"
#include "platform/linux/trusted_file.h"
#include "tools/tavlynctl/reach/nodes_linux.h"
#include "tools/tavlynctl/reach/reach.h"
#include "tools/tavlynctl/trouble/doctor.h"
#include "tools/tavlynctl/trouble/doctor_nodes_linux.h"

namespace tavlyn::ctl {
namespace {

constexpr const char* kHidapi = "libhidapi-hidraw.so.0";
constexpr const char* kTrustedCopy = "/opt/tavlyn/libusb-0.1.so.4";

// So that a shell takes it as it is.
std::string ShellWord(const std::string& text) {
  constexpr const char* kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._+-";
  if (text.find_first_not_of(kPlain) == std::string::npos) return text;
  std::string word = "'";
  for (const char one : text) word += one == '\'' ? std::string("'\\''") : std::string(1, one);
  return word + "'";
}

std::string FileOf(void* library) {
  const link_map* map = nullptr;
  if (dlinfo(library, RTLD_DI_LINKMAP, static_cast<void*>(&map)) != 0 || map == nullptr) return kHidapi;
  return platform::RealPath(platform::Path("%s", map->l_name)).c_str();
}

Finding OfHidapi() {
  constexpr const char* kStep = "hidapi";
  void* library = dlopen(kHidapi, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    return Problem(kStep, kNoDevice,
                   std::string(kHidapi) + " cannot be loaded, and nothing on USB is found without it",
                   "sudo apt install libhidapi-hidraw0");
  }
  const auto version = reinterpret_cast<const char* (*)()>(dlsym(library, "hid_version_str"));
  const std::string text =
      FileOf(library) + (version != nullptr ? std::string(", version ") + version() : "");
  dlclose(library);
  return Fine(kStep, text);
}

Finding OfLibusb() {
  constexpr const char* kStep = "libusb-0.1";
  const platform::Path file = platform::LibusbFile();
  if (file.IsEmpty())
    return Fine(kStep, "not there; only the bulk device needs it (sudo apt install libusb-0.1-4)");
  const std::string path = file.c_str();
  const std::string part = platform::UntrustedPart(file).c_str();
  if (part.empty()) return Fine(kStep, path);
  return Warning(kStep,
                 path + " is refused, because others than root may change it: " + part + ", " + ModeOf(part),
                 "sudo install -D -m 644 " + ShellWord(path) + " " + kTrustedCopy +
                     " && export TAVLYNAPI_LIBUSB=" + kTrustedCopy);
}

// The group is not for people where it is root's, and no help where it may not write either.
std::string LineForPort(const std::string& file) {
  constexpr mode_t kGroupMay = S_IRGRP | S_IWGRP;
  struct stat status {};
  const bool isThere = stat(file.c_str(), &status) == 0;
  // cppcheck-suppress getgrgidCalled ; no other thread asks for a group
  const group* members = getgrgid(status.st_gid);
  if (!isThere || status.st_gid == 0 || (status.st_mode & kGroupMay) != kGroupMay || members == nullptr)
    return "sudo setfacl -m u:$USER:rw " + ShellWord(file);
  return std::string("sudo usermod -a -G ") + members->gr_name + " $USER";
}

std::string ComFile(unsigned number) { return platform::ComPath(static_cast<std::uint16_t>(number)).c_str(); }

// "COM3 is /dev/tavlyn/com3 (/dev/ttyACM3), mode 0660, owner root, group dialout".
std::string PortText(unsigned number) {
  const std::string file = ComFile(number);
  const std::string real = platform::RealPath(platform::Path("%s", file.c_str())).c_str();
  return "COM" + std::to_string(number) + " is " + file + (real == file ? "" : " (" + real + ")") + ", " +
         ModeOf(file);
}

std::string HeldText(const std::string& file) {
  const std::string holders = HoldersOf(file);
  return holders.empty() ? "" : ", held by " + holders;
}

Finding OfAskedPort(unsigned number, bool isOnly) {
  constexpr const char* kStep = "port";
  const Port port = LookAtPort(number);
  const std::string file = ComFile(number);
  switch (port.state) {
    case PortState::kFree: return Fine(kStep, PortText(number));
    case PortState::kForbidden: return Problem(kStep, kNoPermission, port.text, LineForPort(file));
    case PortState::kHeld: return Problem(kStep, kNoPermission, port.text, LineForHolders(HoldersOf(file)));
    case PortState::kMissing: break;
  }
  // Of a range, ports may be missing.
  if (!isOnly) return Fine(kStep, port.text);
  return Problem(kStep, kNoDevice, port.text, "ls -l /dev/tavlyn /dev/ttyS* /dev/ttyACM* /dev/ttyUSB*");
}

// The kernel has a file for each serial port that a machine might have.
bool HasHardware(const std::string& file) {
  int type = -1;
  std::ifstream("/sys/class/tty/" + std::filesystem::path(file).filename().string() + "/type") >> type;
  return type != 0;
}

}  // namespace

std::string SystemName() {
  utsname names{};
  uname(&names);
  std::string text = std::string(names.sysname) + " " + names.release + " " + names.machine;
  constexpr std::string_view kKey = "PRETTY_NAME=\"";
  std::ifstream release("/etc/os-release");
  for (std::string line; std::getline(release, line);) {
    if (line.starts_with(kKey) && line.ends_with('"'))
      text += ", " + line.substr(kKey.size(), line.size() - kKey.size() - 1);
  }
  return text;
}

void LookAtLibraries(Findings& findings) {
  findings.push_back(OfHidapi());
  findings.push_back(OfLibusb());
}

void LookAtPorts(const Link& link, Findings& findings) {
  if (link.kind == LinkKind::kSerial) {
    for (unsigned number = link.firstPort; number <= link.lastPort; ++number)
      findings.push_back(OfAskedPort(number, link.firstPort == link.lastPort));
    return;
  }
  for (unsigned number = 1; number <= platform::kHighestCom; ++number) {
    const std::string file = ComFile(number);
    if (access(file.c_str(), F_OK) != 0 || !HasHardware(file)) continue;
    findings.push_back(Fine("port", PortText(number) + HeldText(file)));
  }
}

}  // namespace tavlyn::ctl
