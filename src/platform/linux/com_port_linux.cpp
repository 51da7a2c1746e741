// A serial port through termios, with the meaning that COM time-outs have elsewhere.
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>

#include "platform/linux/com_paths.h"
#include "platform/linux/parts.h"

namespace tavlyn::platform {
namespace {

constexpr std::uint32_t kForever = std::numeric_limits<std::uint32_t>::max();

std::uint64_t Now() { return TheHost().clock.Tick(); }

// Milliseconds from now until a moment; 0 when it has passed.
int Until(std::uint64_t moment) {
  const std::uint64_t now = Now();
  return moment > now ? static_cast<int>(std::min<std::uint64_t>(moment - now, 0x7FFFFFFF)) : 0;
}

// Waits for the descriptor; a negative limit means without one. True when it is ready.
bool WaitFor(int descriptor, short what, int milliseconds) {
  pollfd one{descriptor, what, 0};
  int ready = poll(&one, 1, milliseconds);
  while (ready < 0 && errno == EINTR) ready = poll(&one, 1, milliseconds);
  return ready > 0;
}

speed_t SpeedOf(std::uint32_t baud) {
  constexpr std::array<std::pair<std::uint32_t, speed_t>, 14> kSpeeds = {{{110, B110},
                                                                          {300, B300},
                                                                          {600, B600},
                                                                          {1200, B1200},
                                                                          {2400, B2400},
                                                                          {4800, B4800},
                                                                          {9600, B9600},
                                                                          {19200, B19200},
                                                                          {38400, B38400},
                                                                          {57600, B57600},
                                                                          {115200, B115200},
                                                                          {230400, B230400},
                                                                          {460800, B460800},
                                                                          {921600, B921600}}};
  for (const auto& [rate, speed] : kSpeeds) {
    if (rate == baud) return speed;
  }
  return B0;
}

bool SetLine(int descriptor, const ComLine& line) {
  termios settings{};
  const speed_t speed = SpeedOf(line.baud);
  if (speed == B0 || tcgetattr(descriptor, &settings) != 0) return false;
  cfmakeraw(&settings);
  settings.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF | IXANY);
  settings.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS | PARENB | PARODD | CSTOPB);
  // HUPCL: DTR drops when the program ends without closing the port.
  settings.c_cflag |= CLOCAL | CREAD | HUPCL;
  if (line.parity != 0) settings.c_cflag |= PARENB;
  if (line.parity == 1) settings.c_cflag |= PARODD;
  if (line.stopBits != 0) settings.c_cflag |= CSTOPB;
  settings.c_cc[VMIN] = 0;
  settings.c_cc[VTIME] = 0;
  return cfsetspeed(&settings, speed) == 0 && tcsetattr(descriptor, TCSANOW, &settings) == 0;
}

// A pseudo-terminal has no such lines; that is no failure.
void SetModemLine(int descriptor, int line, bool on) { ioctl(descriptor, on ? TIOCMBIS : TIOCMBIC, &line); }
void SetDtr(int descriptor, bool on) { SetModemLine(descriptor, TIOCM_DTR, on); }

// From now on a close drops DTR no longer.
void KeepDtr(int descriptor) {
  termios settings{};
  if (tcgetattr(descriptor, &settings) != 0) return;
  settings.c_cflag &= ~static_cast<tcflag_t>(HUPCL);
  tcsetattr(descriptor, TCSANOW, &settings);
}

// The exclusive mode belongs to the port and would outlast this opening while anyone else has it open.
void CloseShared(int descriptor) {
  ioctl(descriptor, TIOCNXCL);
  close(descriptor);
}

class LinuxComPort final : public ComPort {
 public:
  LinuxComPort(int descriptor, const ComTimeouts& timeouts) : descriptor_(descriptor), timeouts_(timeouts) {}
  ~LinuxComPort() override {
    if (descriptor_ < 0) return;
    SetDtr(descriptor_, false);
    Shut();
  }

  std::uint32_t Read(std::span<std::uint8_t> bytes) override;
  std::uint32_t Write(std::span<const std::uint8_t> bytes) override;
  void SetTimeouts(const ComTimeouts& timeouts) override { timeouts_ = timeouts; }
  void PurgeInput() override { tcflush(descriptor_, TCIFLUSH); }
  void Flush() override {
    while (tcdrain(descriptor_) != 0 && errno == EINTR) {
    }
    PurgeInput();
  }
  void CloseQuietly() override {
    KeepDtr(descriptor_);
    Shut();
  }

 private:
  void Shut() {
    CloseShared(descriptor_);
    descriptor_ = -1;
  }

  // What there is to wait before the next byte, -1 for no limit.
  [[nodiscard]] int Wait(bool limited, std::uint64_t end, bool begun, std::uint64_t lastByte) const {
    int wait = limited ? Until(end) : -1;
    if (begun && timeouts_.readInterval != 0 && timeouts_.readInterval != kForever) {
      const int silence = Until(lastByte + timeouts_.readInterval);
      wait = wait < 0 ? silence : std::min(wait, silence);
    }
    return wait;
  }

  int descriptor_;
  ComTimeouts timeouts_;
};

std::uint32_t LinuxComPort::Read(std::span<std::uint8_t> bytes) {
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

std::uint32_t LinuxComPort::Write(std::span<const std::uint8_t> bytes) {
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

}  // namespace

std::unique_ptr<ComPort> LinuxComPorts::Open(std::uint16_t number, const ComLine& line,
                                             const ComTimeouts& timeouts) {
  const int descriptor = open(ComPath(number).c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  ioctl(descriptor, TIOCEXCL);
  if (isatty(descriptor) == 0 || !SetLine(descriptor, line)) {
    CloseShared(descriptor);
    return nullptr;
  }
  tcflush(descriptor, TCIOFLUSH);
  SetDtr(descriptor, true);
  // Opening has raised RTS too, which is off without flow control.
  SetModemLine(descriptor, TIOCM_RTS, false);
  return std::make_unique<LinuxComPort>(descriptor, timeouts);
}

}  // namespace tavlyn::platform
