#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "sim/carriers/pseudo_terminal.h"

namespace tavlyn::sim {
namespace {

// While a port is closed the kernel reports that endlessly, but never its opening: hence this polling
// interval.
constexpr std::chrono::milliseconds kBetweenLooks(10);

constexpr const char* kPorts = "/dev/pts/";
constexpr const char* kProcesses = "/proc/";

// By way of this process: when it is gone the link leads nowhere, even if the number of its port is in use
// again.
std::string WayTo(const std::string& port) {
  std::string way = kProcesses + std::to_string(getpid()) + "/root" + port;
  return access(way.c_str(), F_OK) == 0 ? way : port;
}

// Empty if it is not a link.
std::string TargetOf(const std::string& link) {
  std::array<char, 64> target;
  const ssize_t length = readlink(link.c_str(), target.data(), target.size());
  return {target.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
}

int OpenMaster(char* port, std::size_t size) {
  const int master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (master < 0) return -1;
  termios settings{};
  const bool ready = grantpt(master) == 0 && unlockpt(master) == 0 && ptsname_r(master, port, size) == 0 &&
                     tcgetattr(master, &settings) == 0;
  cfmakeraw(&settings);
  if (ready && tcsetattr(master, TCSANOW, &settings) == 0) return master;
  const int reason = errno;
  close(master);
  errno = reason;
  return -1;
}

}  // namespace

PseudoTerminal::PseudoTerminal(ByteDevice& device, std::string link) : line_(device), link_(std::move(link)) {
  Plug();
}

bool PseudoTerminal::Plug() {
  if (IsPlugged()) return true;
  std::array<char, 64> port{};
  master_ = OpenMaster(port.data(), port.size());
  if (master_ < 0) return false;
  hungUp_ = full_ = false;
  port_ = WayTo(port.data());
  if (MakeLink()) return true;
  const int reason = errno;
  Unplug();
  errno = reason;
  return false;
}

// A killed carrier leaves its link behind, which then leads nowhere.
bool PseudoTerminal::MakeLink() const {
  if (symlink(port_.c_str(), link_.c_str()) == 0) return true;
  if (errno != EEXIST) return false;
  const std::string target = TargetOf(link_);
  if (target == port_) return true;
  const bool isOurs = target.starts_with(kPorts) || target.starts_with(kProcesses);
  const bool isLeft = isOurs && access(target.c_str(), F_OK) != 0;
  errno = EEXIST;
  return isLeft && unlink(link_.c_str()) == 0 && symlink(port_.c_str(), link_.c_str()) == 0;
}

void PseudoTerminal::Unplug() {
  if (!IsPlugged()) return;
  if (TargetOf(link_) == port_) unlink(link_.c_str());
  close(master_);
  master_ = -1;
  line_.Hangup();
}

void PseudoTerminal::AddTo(std::vector<pollfd>& polled) const {
  if (IsPlugged() && !hungUp_) {
    polled.push_back({master_, static_cast<short>(full_ ? POLLIN | POLLOUT : POLLIN), 0});
  }
}

std::optional<PseudoTerminal::Clock::time_point> PseudoTerminal::NextDue() const {
  if (!IsPlugged()) return std::nullopt;
  if (hungUp_) return Clock::now() + kBetweenLooks;
  return full_ ? std::nullopt : line_.NextDue();
}

void PseudoTerminal::Serve() {
  if (!IsPlugged()) return;
  const bool open = TakeBytes();
  if (!open && !hungUp_) line_.Hangup();
  hungUp_ = !open;
  if (open) GiveBytes();
  if (!line_.TakeCut()) return;
  Unplug();
  Plug();
}

bool PseudoTerminal::TakeBytes() {
  std::array<std::uint8_t, 512> bytes;
  for (;;) {
    const ssize_t count = read(master_, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count < 0 && errno == EAGAIN;
    line_.Receive(std::span(bytes).first(static_cast<std::size_t>(count)), Clock::now());
  }
}

void PseudoTerminal::GiveBytes() {
  full_ = false;
  for (auto due = line_.Due(Clock::now()); !due.empty(); due = line_.Due(Clock::now())) {
    const ssize_t count = write(master_, due.data(), due.size());
    if (count < 0 && errno == EINTR) continue;
    full_ = count < 0 && errno == EAGAIN;
    if (count <= 0) return;
    line_.Sent(static_cast<std::size_t>(count), Clock::now());
  }
}

}  // namespace tavlyn::sim
