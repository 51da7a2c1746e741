// The control lines of a serial port and its exclusive mode. A pseudo-terminal has no lines, so what is asked
// of them is noted on its way to the kernel.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

#include <cstdarg>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/boundary/bare_port.h"

namespace {

std::vector<std::string> lineCalls;

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
  return static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
}

namespace tavlyn::boundary {
namespace {

using Calls = std::vector<std::string>;

constexpr std::uint16_t kLineNumber = 3;
constexpr std::uint32_t kNoSuchSpeed = 12345;

class HostLines : public testing::Test {
 protected:
  static std::unique_ptr<platform::ComPort> Open(std::uint32_t baud = 9600) {
    return platform::TheHost().ports.Open(kLineNumber, {baud, 0, 0}, {250, 5, 300, 50, 500});
  }
  static Calls TakeCalls() { return std::exchange(lineCalls, {}); }
  // Whether the last close of the port drops its lines.
  [[nodiscard]] bool DropsAtClose() const {
    termios settings{};
    EXPECT_EQ(0, tcgetattr(near_.get(), &settings));
    return (settings.c_cflag & HUPCL) != 0;
  }
  [[nodiscard]] bool IsExclusive() const {
    int exclusive = -1;
    EXPECT_EQ(0, ioctl(near_.get(), TIOCGEXCL, &exclusive));
    return exclusive != 0;
  }
  void SetUp() override { TakeCalls(); }

  PortFolder ports_;
  BarePort port_ = AddPort(ports_, kLineNumber);
  Descriptor& near_ = port_.near;
};

TEST_F(HostLines, OpeningRaisesDtrAlone) {
  const auto port = Open();
  ASSERT_NE(nullptr, port);
  EXPECT_EQ((Calls{"DTR up", "RTS down"}), TakeCalls());
  EXPECT_TRUE(IsExclusive());
}

TEST_F(HostLines, ClosingDropsDtr) {
  auto port = Open();
  ASSERT_NE(nullptr, port);
  TakeCalls();
  port.reset();
  EXPECT_EQ(Calls{"DTR down"}, TakeCalls());
  EXPECT_FALSE(IsExclusive());
}

TEST_F(HostLines, ReleasedPortKeepsDtr) {
  auto port = Open();
  ASSERT_NE(nullptr, port);
  EXPECT_TRUE(DropsAtClose()) << "a program that dies leaves no line up";
  TakeCalls();
  port->CloseQuietly();
  port.reset();
  EXPECT_EQ(Calls{}, TakeCalls());
  EXPECT_FALSE(DropsAtClose());
  EXPECT_FALSE(IsExclusive());
  ASSERT_NE(nullptr, Open());
  EXPECT_TRUE(DropsAtClose());
}

TEST_F(HostLines, PortThatCannotBeSetUpIsLeftToOthers) {
  EXPECT_EQ(nullptr, Open(kNoSuchSpeed));
  EXPECT_FALSE(IsExclusive());
  EXPECT_EQ(Calls{}, TakeCalls());
}

}  // namespace
}  // namespace tavlyn::boundary
