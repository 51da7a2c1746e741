// Serial ports whose time-outs mean what they do on Windows. They are set through the kernel's own interface,
// because that of libc has names for a few speeds only.
#include <asm/ioctls.h>
#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <limits>
#include <memory>
#include <new>

#include "platform/allocated.h"
#include "platform/linux/com_paths.h"
#include "platform/parts.h"

namespace tavlyn::platform {
namespace {

constexpr std::uint32_t kForever = std::numeric_limits<std::uint32_t>::max();

std::uint64_t Now() { return TheClock().Tick(); }

// Milliseconds from now until a moment; 0 when it has passed.
int Until(std::uint64_t moment) {
  const std::uint64_t now = Now();
  return moment > now ? static_cast<int>(std::min<std::uint64_t>(moment - now, 0x7FFFFFFF)) : 0;
}

// Waits for the descriptor; a negative time means no limit. True when it is ready.
bool WaitFor(int descriptor, short what, int milliseconds) {
  pollfd one{descriptor, what, 0};
  int ready = poll(&one, 1, milliseconds);
  while (ready < 0 && errno == EINTR) ready = poll(&one, 1, milliseconds);
  return ready > 0;
}

using Settings = termios2;

// The flag of a speed that has one. Any other speed is passed to the driver as a number.
tcflag_t SpeedFlag(std::uint32_t baud) {
  struct Speed {
    std::uint32_t baud;
    tcflag_t flag;
  };
  constexpr Speed kNamed[] = {{110, B110},       {300, B300},      {600, B600},       {1200, B1200},
                              {2400, B2400},     {4800, B4800},    {9600, B9600},     {19200, B19200},
                              {38400, B38400},   {57600, B57600},  {115200, B115200}, {230400, B230400},
                              {460800, B460800}, {921600, B921600}};
  const auto* named = std::ranges::find(kNamed, baud, &Speed::baud);
  return named != std::end(kNamed) ? named->flag : static_cast<tcflag_t>(BOTHER);
}

// A driver that cannot run at a speed takes the nearest one it can, or keeps its own, and reports no failure.
// Two ends understand each other as long as they differ by no more than a fiftieth.
bool RunsAt(int descriptor, std::uint32_t baud) {
  Settings taken{};
  if (ioctl(descriptor, TCGETS2, &taken) != 0) return false;
  const std::uint32_t low = std::min(taken.c_ospeed, baud);
  const std::uint32_t high = std::max(taken.c_ospeed, baud);
  return high - low <= baud / 50;
}

// Raw: no flag of input, output or dialogue is set.
bool SetLine(int descriptor, const ComLine& line) {
  if (line.baud == 0) return false;
  Settings settings{};
  // HUPCL: DTR drops when the program ends without closing the port.
  settings.c_cflag = SpeedFlag(line.baud) | CS8 | CLOCAL | CREAD | HUPCL;
  if (line.parity != 0) settings.c_cflag |= PARENB;
  if (line.parity == 1) settings.c_cflag |= PARODD;
  if (line.stopBits != 0) settings.c_cflag |= CSTOPB;
  settings.c_ispeed = settings.c_ospeed = line.baud;
  return ioctl(descriptor, TCSETS2, &settings) == 0 && RunsAt(descriptor, line.baud);
}

// A pseudo-terminal has no such lines; that is not a failure.
void SetModemLine(int descriptor, int line, bool on) { ioctl(descriptor, on ? TIOCMBIS : TIOCMBIC, &line); }
void SetDtr(int descriptor, bool on) { SetModemLine(descriptor, TIOCM_DTR, on); }

// After this, closing the port leaves DTR as it is.
void KeepDtr(int descriptor) {
  Settings settings{};
  if (ioctl(descriptor, TCGETS2, &settings) != 0) return;
  settings.c_cflag &= ~static_cast<tcflag_t>(HUPCL);
  ioctl(descriptor, TCSETS2, &settings);
}

// Opens the port for this process alone; -1 when that fails. The exclusive mode does not keep root out; the
// lock does, provided that the other program asks for it.
int OpenHeld(const Path& path) {
  const int descriptor = open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return -1;
  if (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    close(descriptor);
    return -1;
  }
  ioctl(descriptor, TIOCEXCL);
  return descriptor;
}

// Closing alone would not end them: the mode lasts while anyone else has the port open, the lock while a
// child of this process has.
void CloseHeld(int descriptor) {
  ioctl(descriptor, TIOCNXCL);
  flock(descriptor, LOCK_UN);
  close(descriptor);
}

void Drop(int descriptor, int queues) { ioctl(descriptor, TCFLSH, queues); }

class SystemComPort final : public ComPort, public Allocated {
 public:
  explicit SystemComPort(const ComTimeouts& timeouts) : timeouts_(timeouts) {}
  ~SystemComPort() override {
    if (descriptor_ < 0) return;
    SetDtr(descriptor_, false);
    Shut();
  }

  void Own(int descriptor) { descriptor_ = descriptor; }

  std::uint32_t Read(std::span<std::uint8_t> bytes) override;
  std::uint32_t Write(std::span<const std::uint8_t> bytes) override;
  void SetTimeouts(const ComTimeouts& timeouts) override { timeouts_ = timeouts; }
  void PurgeInput() override { Drop(descriptor_, TCIFLUSH); }
  void Flush() override {
    constexpr int kAwaitOutput = 1;  // 0 would send a break
    while (ioctl(descriptor_, TCSBRK, kAwaitOutput) != 0 && errno == EINTR) {
    }
    PurgeInput();
  }
  void CloseQuietly() override {
    KeepDtr(descriptor_);
    Shut();
  }

 private:
  void Shut() {
    CloseHeld(descriptor_);
    descriptor_ = -1;
  }

  // How long to wait for the next byte; -1 for no limit.
  [[nodiscard]] int Wait(bool limited, std::uint64_t end, bool begun, std::uint64_t lastByte) const {
    int wait = limited ? Until(end) : -1;
    if (begun && timeouts_.readInterval != 0 && timeouts_.readInterval != kForever) {
      const int silence = Until(lastByte + timeouts_.readInterval);
      wait = wait < 0 ? silence : std::min(wait, silence);
    }
    return wait;
  }

  int descriptor_ = -1;
  ComTimeouts timeouts_;
};

std::uint32_t SystemComPort::Read(std::span<std::uint8_t> bytes) {
  const bool atOnce = timeouts_.readInterval == kForever;
  const bool limited = timeouts_.readMultiplier != 0 || timeouts_.readConstant != 0 || atOnce;
  const std::uint64_t start = Now();
  const std::uint64_t end =
      start + static_cast<std::uint64_t>(timeouts_.readMultiplier) * bytes.size() + timeouts_.readConstant;
  std::size_t got = 0;
  std::uint64_t lastByte = start;
  while (got < bytes.size() && WaitFor(descriptor_, POLLIN, Wait(limited, end, got > 0, lastByte))) {
    const ssize_t count = read(descriptor_, bytes.data() + got, bytes.size() - got);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count <= 0) break;
    got += static_cast<std::size_t>(count);
    lastByte = Now();
  }
  return static_cast<std::uint32_t>(got);
}

std::uint32_t SystemComPort::Write(std::span<const std::uint8_t> bytes) {
  const bool limited = timeouts_.writeMultiplier != 0 || timeouts_.writeConstant != 0;
  const std::uint64_t end =
      Now() + static_cast<std::uint64_t>(timeouts_.writeMultiplier) * bytes.size() + timeouts_.writeConstant;
  std::size_t sent = 0;
  while (sent < bytes.size() && WaitFor(descriptor_, POLLOUT, limited ? Until(end) : -1)) {
    const ssize_t count = write(descriptor_, bytes.data() + sent, bytes.size() - sent);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count <= 0) break;
    sent += static_cast<std::size_t>(count);
  }
  return static_cast<std::uint32_t>(sent);
}

class SystemComPorts final : public ComPorts {
 public:
  std::unique_ptr<ComPort> Open(std::uint16_t number, const ComLine& line,
                                const ComTimeouts& timeouts) override {
    // Allocated before the port is opened, which would otherwise have no owner.
    std::unique_ptr<SystemComPort> port(new (std::nothrow) SystemComPort(timeouts));
    if (port == nullptr) return nullptr;
    const int descriptor = OpenHeld(ComPath(number));
    if (descriptor < 0) return nullptr;
    if (!SetLine(descriptor, line)) {
      CloseHeld(descriptor);
      return nullptr;
    }
    Drop(descriptor, TCIOFLUSH);
    SetDtr(descriptor, true);
    // Opening has raised RTS too, which has to be off without flow control.
    SetModemLine(descriptor, TIOCM_RTS, false);
    port->Own(descriptor);
    return port;
  }

  void FindVirtual(PortFlags flags) override { FindVirtualPorts(flags); }
};

constinit NeverDestroyed<SystemComPorts> portsPart;

}  // namespace

ComPorts& TheComPorts() { return portsPart; }

}  // namespace tavlyn::platform
