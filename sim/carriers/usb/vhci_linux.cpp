#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "sim/carriers/usb/vhci.h"

namespace tavlyn::sim::usb {
namespace {

namespace fs = std::filesystem;

constexpr const char* kController = "/sys/devices/platform/vhci_hcd.0";
constexpr int kFullSpeed = 2;
constexpr int kFree = 4;                 // a port's state
constexpr std::size_t kMostDue = 65536;  // the kernel is asked for no more while it does not take this

struct Port {
  unsigned number = 0;
  int state = 0;
  std::string device;  // its folder in sysfs; 0-0 until the kernel has given it an address
};

// The ports for devices that are not of super speed.
std::vector<Port> Ports() {
  std::vector<Port> ports;
  std::error_code none;
  for (const fs::directory_entry& file : fs::directory_iterator(kController, none)) {
    if (!file.path().filename().string().starts_with("status")) continue;
    std::ifstream lines(file.path());
    for (std::string line; std::getline(lines, line);) {
      std::istringstream words(line);
      std::string hub, speed, id, socket;
      Port port;
      if (words >> hub >> port.number >> port.state >> speed >> id >> socket >> port.device && hub == "hs") {
        ports.push_back(port);
      }
    }
  }
  return ports;
}

bool Write(const std::string& file, const std::string& text) {
  const int fd = open(file.c_str(), O_WRONLY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool written = write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  const int reason = errno;
  close(fd);
  errno = reason;
  return written;
}

std::string FirstWord(const fs::path& file) {
  std::string word;
  std::ifstream(file) >> word;
  return word;
}

// Bus and address, of three digits each. What a device says of itself is read without its lock, which the
// kernel holds while it waits for this very thread.
std::string UsbNode(const fs::path& device) {
  const auto digits = [&](const char* name) {
    const std::string number = FirstWord(device / name);
    return std::string(3 - std::min<std::size_t>(number.size(), 3), '0') + number;
  };
  return "/dev/bus/usb/" + digits("busnum") + "/" + digits("devnum");
}

// Where udev runs, a node has its mode and its other names as soon as udev has it in its records.
bool IsUsable(const fs::path& folder, const std::string& node) {
  std::error_code none;
  return fs::exists(node, none) && (!fs::exists("/run/udev/control", none) ||
                                    fs::exists("/run/udev/data/c" + FirstWord(folder / "dev"), none));
}

bool IsNodeFolder(const fs::path& folder) {
  const std::string kind = folder.parent_path().filename();
  return kind == "hidraw" || kind == "tty";
}

}  // namespace

bool VhciCarrier::Plug() {
  if (fd_ >= 0) return true;
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
  const bool attached = Attach(ends[1]);
  const int reason = errno;
  close(ends[1]);  // the kernel holds it now
  if (!attached) {
    close(ends[0]);
    errno = reason;
    return false;
  }
  fd_ = ends[0];
  session_.emplace(*device_);
  return true;
}

// Another program may have taken a port since the list was read.
bool VhciCarrier::Attach(int fd) {
  errno = ENOENT;
  for (const Port& port : Ports()) {
    errno = EBUSY;
    if (port.state != kFree) continue;
    port_ = port.number;
    const std::string wish = std::to_string(port.number) + " " + std::to_string(fd) + " " +
                             std::to_string(port.number + 1) + " " + std::to_string(kFullSpeed);
    if (Write(std::string(kController) + "/attach", wish)) return true;
    if (errno != EBUSY) return false;
  }
  return false;
}

// The kernel takes the device away with the socket.
void VhciCarrier::Unplug() {
  if (fd_ < 0) return;
  close(fd_);
  fd_ = -1;
  session_.reset();
}

std::vector<std::string> VhciCarrier::Nodes() const {
  std::vector<std::string> nodes;
  const auto ports = Ports();
  const auto port = std::ranges::find(ports, port_, &Port::number);
  if (fd_ < 0 || port == ports.end() || port->device == "0-0") return nodes;
  const fs::path device = fs::path("/sys/bus/usb/devices") / port->device;
  const auto add = [&](const fs::path& folder, const std::string& node) {
    if (IsUsable(folder, node)) nodes.push_back(node);
  };
  std::error_code none;
  const bool configured = fs::exists(device / (port->device + ":1.0"), none);
  if (configured) add(device, UsbNode(device));
  for (const fs::directory_entry& one : fs::recursive_directory_iterator(device / "", none)) {
    if (one.is_directory(none) && IsNodeFolder(one.path())) add(one.path(), "/dev" / one.path().filename());
  }
  return nodes;
}

// The device's own node comes first; drivers add one for each interface of these classes.
std::string VhciCarrier::Node() const {
  const auto wanted = 1 + std::ranges::count_if(device_->GetFace().interfaces, [](const Interface& one) {
                        return one.cls == kHidClass || one.cls == kCommunicationClass;
                      });
  const std::vector<std::string> nodes = Nodes();
  return std::ssize(nodes) == wanted ? nodes.back() : std::string();
}

void VhciCarrier::Serve() {
  if (fd_ < 0) return;
  const bool goesOn = TakeBytes();
  if (goesOn) session_->Serve();
  GiveBytes();
  if (!goesOn || !device_->Present()) Unplug();
}

bool VhciCarrier::TakeBytes() {
  std::array<std::uint8_t, 4096> bytes;
  while (session_->Due().size() < kMostDue) {
    const ssize_t count = recv(fd_, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count < 0 && errno == EAGAIN;
    if (!session_->Receive(std::span(bytes).first(static_cast<std::size_t>(count)))) return false;
  }
  return true;
}

void VhciCarrier::GiveBytes() {
  for (auto due = session_->Due(); !due.empty(); due = session_->Due()) {
    const ssize_t count = send(fd_, due.data(), due.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;  // the next turn of the loop tries again
    session_->Sent(static_cast<std::size_t>(count));
  }
}

}  // namespace tavlyn::sim::usb
