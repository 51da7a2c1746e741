// The control lines of a serial port, its exclusive mode, and a driver that does not have every speed. A
// pseudo-terminal has no lines, so requests for them are recorded on their way to the kernel; and it accepts
// every speed, so the driver's own is substituted there.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "tests/boundary/bare_port.h"
#include "tests/boundary/failing_calls.h"
#include "tests/boundary/kernel_line.h"

namespace {

using tavlyn::boundary::KernelLine;

std::vector<std::string> lineCalls;
std::optional<std::uint32_t> driverSpeed;  // it has no other
std::uint32_t askedOfDriver = 0;           // as control flags

int SetOnDriver(int descriptor, KernelLine line) {
  constexpr std::uint32_t kSpeedFlags = 0x100F;
  constexpr std::uint32_t kAsNumber = 0x1000;
  askedOfDriver = line.control;
  if (driverSpeed) {
    line.control = (line.control & ~kSpeedFlags) | kAsNumber;
    line.inputSpeed = line.outputSpeed = *driverSpeed;
  }
  return static_cast<int>(syscall(SYS_ioctl, descriptor, tavlyn::boundary::kSetLine, &line));
}

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
  va_list arguments;
  va_start(arguments, request);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  if (request == TIOCMBIS || request == TIOCMBIC) {
    const int lines = *static_cast<const int*>(argument);
    const std::string name = lines == TIOCM_DTR ? "DTR" : lines == TIOCM_RTS ? "RTS" : "other";
    lineCalls.push_back(name + (request == TIOCMBIS ? " up" : " down"));
  }
  if (request == tavlyn::boundary::kGetLine && tavlyn::boundary::FailsNow("get line")) return -1;
  if (request == TCSBRK && tavlyn::boundary::FailsNow("await output")) return -1;
  if (request == tavlyn::boundary::kSetLine)
    return SetOnDriver(descriptor, *static_cast<const KernelLine*>(argument));
  return static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
}

namespace tavlyn::boundary {
namespace {

using Calls = std::vector<std::string>;

constexpr std::uint16_t kLineNumber = 3;
constexpr std::uint32_t kNoSpeed = 0;  // the port would hang up

class HostLines : public testing::Test {
 protected:
  static std::unique_ptr<platform::ComPort> Open(std::uint32_t baud = 9600) {
    return platform::TheHost().ports.Open(kLineNumber, {baud, 0, 0}, {250, 5, 300, 50, 500});
  }
  static Calls TakeCalls() { return std::exchange(lineCalls, {}); }
  // Whether the last close of the port drops its lines.
  [[nodiscard]] bool DropsAtClose() const {
    termios settings{};
    EXPECT_EQ(tcgetattr(near_.get(), &settings), 0);
    return (settings.c_cflag & HUPCL) != 0;
  }
  [[nodiscard]] bool IsExclusive() const {
    int exclusive = -1;
    EXPECT_EQ(ioctl(near_.get(), TIOCGEXCL, &exclusive), 0);
    return exclusive != 0;
  }
  void SetUp() override { TakeCalls(); }

  PortFolder ports_;
  BarePort port_ = AddPort(ports_, kLineNumber);
  Descriptor& near_ = port_.near;
};

TEST_F(HostLines, OpeningRaisesDtrAlone) {
  const auto port = Open();
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(TakeCalls(), (Calls{"DTR up", "RTS down"}));
  EXPECT_TRUE(IsExclusive());
}

TEST_F(HostLines, ClosingDropsDtr) {
  auto port = Open();
  ASSERT_NE(port, nullptr);
  TakeCalls();
  port.reset();
  EXPECT_EQ(TakeCalls(), Calls{"DTR down"});
  EXPECT_FALSE(IsExclusive());
}

TEST_F(HostLines, ReleasedPortKeepsDtr) {
  auto port = Open();
  ASSERT_NE(port, nullptr);
  EXPECT_TRUE(DropsAtClose()) << "a program that dies leaves no line up";
  TakeCalls();
  port->CloseQuietly();
  port.reset();
  EXPECT_EQ(TakeCalls(), Calls{});
  EXPECT_FALSE(DropsAtClose());
  EXPECT_FALSE(IsExclusive());
  ASSERT_NE(Open(), nullptr);
  EXPECT_TRUE(DropsAtClose());
}

TEST_F(HostLines, PortThatCannotBeSetUpIsLeftToOthers) {
  EXPECT_EQ(Open(kNoSpeed), nullptr);
  EXPECT_FALSE(IsExclusive());
  EXPECT_EQ(TakeCalls(), Calls{});
}

// A driver that cannot do what is asked still reports success.
TEST_F(HostLines, ASpeedOfTheDriversOwnHasToBeNearTheOneAskedFor) {
  struct Answer {
    std::uint32_t asked, taken;
    bool opens;
  };
  for (const Answer& one :
       {Answer{250000, 9600, false}, Answer{250000, 244900, false}, Answer{250000, 245000, true},
        Answer{250000, 255000, true}, Answer{250000, 255100, false}, Answer{115200, 9600, false},
        Answer{9600, 9615, true}}) {
    driverSpeed = one.taken;
    EXPECT_EQ(one.opens, Open(one.asked) != nullptr) << one.asked << ' ' << one.taken;
    EXPECT_FALSE(IsExclusive());
  }
  driverSpeed.reset();
  EXPECT_NE(Open(), nullptr);
}

TEST_F(HostLines, ADriverThatDoesNotTellItsSpeedIsNone) {
  const Failing failing("get line", EIO);
  EXPECT_EQ(Open(), nullptr);
  EXPECT_FALSE(IsExclusive());
}

TEST_F(HostLines, APortThatDoesNotTellItsSettingsIsReleasedAllTheSame) {
  const auto port = Open();
  ASSERT_NE(port, nullptr);
  const Failing failing("get line", EIO);
  port->CloseQuietly();
  EXPECT_TRUE(DropsAtClose()) << "nothing was set";
  EXPECT_FALSE(IsExclusive());
}

TEST_F(HostLines, ASignalDoesNotEndAFlush) {
  const auto port = Open();
  ASSERT_NE(port, nullptr);
  {
    const Failing interrupted("await output", EINTR, 3);
    port->Flush();
    EXPECT_EQ(Failing::Left(), 0);
  }
  const Failing failing("await output", EIO, 2);
  port->Flush();
  EXPECT_EQ(Failing::Left(), 1);
}

TEST_F(HostLines, ParityIsAskedForAsOddOrEven) {
  struct Parity {
    std::uint8_t number;
    bool odd;
  };
  for (const Parity& one : {Parity{0, false}, {1, true}, {2, false}}) {
    const auto port =
        platform::TheHost().ports.Open(kLineNumber, {9600, one.number, 0}, {250, 5, 300, 50, 500});
    ASSERT_NE(port, nullptr);
    EXPECT_EQ(one.odd, (askedOfDriver & PARODD) != 0);
    EXPECT_EQ(one.number != 0, (askedOfDriver & PARENB) != 0);
  }
}

}  // namespace
}  // namespace tavlyn::boundary
