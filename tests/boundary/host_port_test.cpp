// The serial port of Linux on a real pseudo-terminal: the time-outs in all their combinations, queues, and
// who may open it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <optional>
#include <vector>

#include "links/serial_port.h"
#include "platform/platform.h"
#include "tests/boundary/bare_port.h"
#include "tests/boundary/calls.h"
#include "tests/boundary/failing_calls.h"
#include "tests/boundary/kernel_line.h"
#include "tests/boundary/passing.h"
#include "tests/boundary/read_cases.h"

namespace tavlyn::boundary {
namespace {

using platform::ComPort;
using platform::ComTimeouts;
using platform::TheHost;

constexpr std::uint16_t kNumber = 3;
constexpr ComTimeouts kUsual{250, 5, 300, 50, 500};
constexpr ComTimeouts kAtOnce{kAllOnes, 0, 0, 50, 500};

std::unique_ptr<ComPort> Open(const ComTimeouts& timeouts = kUsual) {
  return TheHost().ports.Open(kNumber, {9600, 0, 0}, timeouts);
}

std::string Read(ComPort& port, std::size_t length) {
  Bytes bytes(length);
  const std::uint32_t count = port.Read(bytes);
  return {bytes.begin(), bytes.begin() + count};
}

std::uint32_t Write(ComPort& port, const std::string& text) {
  return port.Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

class HostPort : public testing::Test {
 protected:
  PortFolder ports_;
  BarePort port_ = AddPort(ports_, kNumber);
  Descriptor& far_ = port_.far;
};

class HostPortRead : public HostPort, public testing::WithParamInterface<ReadCase> {};

TEST_P(HostPortRead, TakesItsTime) {
  const ReadCase& one = GetParam();
  const auto port = Open({one.interval, one.multiplier, one.constant, 50, 500});
  ASSERT_NE(port, nullptr);
  std::vector<Script::Step> steps;
  for (const int at : one.arrivals) steps.push_back({at, [&] { Send(far_.get(), "x"); }});
  const Script sender(steps);
  std::string got;
  EXPECT_EQ(TimeOf([&] { got = Read(*port, one.length); }), one.took);
  EXPECT_EQ(got, std::string(one.count, 'x'));
}

INSTANTIATE_TEST_SUITE_P(Timeouts, HostPortRead, testing::ValuesIn(kReadCases),
                         [](const auto& one) { return std::string(one.param.name); });

TEST_F(HostPort, AtOnceTakesAllThatIsThere) {
  const auto port = Open(kAtOnce);
  ASSERT_NE(port, nullptr);
  Send(far_.get(), "abcdef");
  EXPECT_EQ(Read(*port, 4), "abcd");
  EXPECT_EQ(Read(*port, 4), "ef");
}

TEST_F(HostPort, TimeoutsOfAnOpenPortCanBeChanged) {
  const auto port = Open({0, 0, 30000, 50, 500});
  ASSERT_NE(port, nullptr);
  port->SetTimeouts({0, 0, 100, 50, 500});
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(Read(*port, 4), ""); }), 100);
}

// Far more than fits into a pseudo-terminal, and a far end that does not read.
TEST_F(HostPort, WriteEndsAfterItsTime) {
  const std::string much(100'000, 'y');
  struct WriteCase {
    std::uint32_t multiplier, constant;
    int took;
  };
  for (const WriteCase& one : {WriteCase{0, 200, 200}, WriteCase{0, 1, 1}}) {
    const auto port = Open({0, 0, 0, one.multiplier, one.constant});
    ASSERT_NE(port, nullptr);
    std::uint32_t count = 0;
    EXPECT_EQ(TimeOf([&] { count = Write(*port, much); }), one.took);
    EXPECT_LT(count, much.size());
    tcflush(far_.get(), TCIOFLUSH);
  }
}

// Neither limit: the write waits for the far end, which reads later.
TEST_F(HostPort, WriteWithoutALimitWaits) {
  const std::string much(50'000, 'y');
  const auto port = Open({0, 0, 0, 0, 0});
  ASSERT_NE(port, nullptr);
  std::string got;
  std::vector<Script::Step> steps;
  for (int at = 300; at < 400; ++at) steps.push_back({at, [&] { got += ReadAll(far_.get()); }});
  const Script reader(steps);
  EXPECT_GE(TimeOf([&] { EXPECT_EQ(Write(*port, much), much.size()); }), 300);
  EXPECT_EQ(got + ReadAll(far_.get()), much);
}

TEST_F(HostPort, EveryByteValuePasses) {
  std::string all;
  for (int value = 0; value < 256; ++value) all += static_cast<char>(value);
  const auto port = Open();
  ASSERT_NE(port, nullptr);
  Send(far_.get(), all);
  EXPECT_EQ(Read(*port, all.size()), all);
  EXPECT_EQ(Write(*port, all), all.size());
  EXPECT_EQ(ReadAll(far_.get()), all);
}

TEST_F(HostPort, QueuesHoldAThousandBytes) {
  const std::string much(1024, 'z');
  const auto port = Open();
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(Write(*port, much), much.size());
  Send(far_.get(), much);
  EXPECT_EQ(Read(*port, much.size()), much);
  EXPECT_EQ(ReadAll(far_.get()), much);
}

TEST_F(HostPort, OpeningEmptiesTheQueue) {
  Send(far_.get(), "for nobody");
  const auto port = Open(kAtOnce);
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(Read(*port, 16), "");
}

TEST_F(HostPort, PurgeDropsWhatHasArrivedAlone) {
  const auto port = Open(kAtOnce);
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(Write(*port, "out"), 3u);
  Send(far_.get(), "in");
  port->PurgeInput();
  EXPECT_EQ(Read(*port, 16), "");
  EXPECT_EQ(ReadAll(far_.get()), "out");
}

// Bytes that the other side has not read yet must not be lost.
TEST_F(HostPort, FlushKeepsWhatWasWritten) {
  const auto port = Open(kAtOnce);
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(Write(*port, "out"), 3u);
  Send(far_.get(), "in");
  port->Flush();
  EXPECT_EQ(Read(*port, 16), "");
  EXPECT_EQ(ReadAll(far_.get()), "out");
  Send(far_.get(), "later");
  EXPECT_EQ(Read(*port, 16), "later");
}

TEST_F(HostPort, LineIsRawAtItsSpeed) {
  const auto port = TheHost().ports.Open(kNumber, {19200, 2, 2}, kUsual);
  ASSERT_NE(port, nullptr);
  termios line{};
  ASSERT_EQ(tcgetattr(far_.get(), &line), 0);
  EXPECT_EQ(cfgetospeed(&line), static_cast<speed_t>(B19200));
  EXPECT_EQ(line.c_cflag & CSTOPB, static_cast<tcflag_t>(CSTOPB));
  EXPECT_EQ(line.c_lflag & (ICANON | ECHO | ISIG), 0u);
  EXPECT_EQ(line.c_iflag & (IXON | IXOFF | ICRNL), 0u);
  EXPECT_EQ(line.c_oflag & OPOST, 0u);
}

TEST_F(HostPort, EverySpeedOpensThatTheDriverTakes) {
  for (const std::uint32_t baud :
       {110U,   300U,    600U,    1200U,   2400U,   4800U,   9600U,   14400U,  19200U,  38400U,   56000U,
        57600U, 115200U, 128000U, 230400U, 250000U, 256000U, 460800U, 500000U, 921600U, 1000000U, 12345U}) {
    EXPECT_NE(TheHost().ports.Open(kNumber, {baud, 0, 0}, kUsual), nullptr) << baud;
    EXPECT_EQ(SpeedOf(far_.get()), baud);
  }
  EXPECT_EQ(TheHost().ports.Open(kNumber, {0, 0, 0}, kUsual), nullptr) << "0 would hang up";
}

TEST_F(HostPort, WhatIsMissingOrNoPortDoesNotOpen) {
  EXPECT_EQ(TheHost().ports.Open(4, {}, kUsual), nullptr);
  ports_.AddFile(4, "/dev/null");
  EXPECT_EQ(TheHost().ports.Open(4, {}, kUsual), nullptr);
}

TEST_F(HostPort, HangUpEndsAReadAtOnce) {
  const auto port = Open({0, 0, 5000, 50, 500});
  ASSERT_NE(port, nullptr);
  far_.Close();
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(Read(*port, 4), ""); }), 0);
  EXPECT_EQ(Write(*port, "x"), 0u);
}

TEST_F(HostPort, ClosedPortMovesNothingAndOpensAgain) {
  auto port = Open();
  ASSERT_NE(port, nullptr);
  port->CloseQuietly();
  EXPECT_EQ(Read(*port, 4), "");
  EXPECT_EQ(Write(*port, "x"), 0u);
  port = Open();
  ASSERT_NE(port, nullptr);
  Send(far_.get(), "back");
  EXPECT_EQ(Read(*port, 4), "back");
}

// What a program without standard input is given first.
TEST_F(HostPort, DescriptorZeroIsAPortLikeAnyOther) {
  const int input = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
  close(STDIN_FILENO);
  auto port = Open();
  EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), FD_CLOEXEC) << "it is the port's";
  if (port != nullptr) {
    EXPECT_EQ(Write(*port, "out"), 3u);
  }
  EXPECT_EQ(ReadAll(far_.get()), "out");
  port.reset();
  EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1) << "closed with the port";
  dup2(input, STDIN_FILENO);
  close(input);
}

// Not even root, who may open exclusively opened files, or this program itself.
TEST_F(HostPort, APortHasOneHolder) {
  auto port = Open();
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(Open(), nullptr);
  const int other = open(ports_.PathOf(kNumber).c_str(), O_RDWR | O_NOCTTY);
  if (other >= 0) {
    EXPECT_NE(flock(other, LOCK_EX | LOCK_NB), 0) << "told to whoever asks";
    close(other);
  }
  EXPECT_EQ(Write(*port, "out"), 3u) << "the one that was refused has changed nothing";
  EXPECT_EQ(ReadAll(far_.get()), "out");
  port.reset();
  EXPECT_NE(Open(), nullptr);
}

// A child inherits its parent's open files.
TEST_F(HostPort, AChildKeepsNoPortHeld) {
  auto port = Open();
  ASSERT_NE(port, nullptr);
  const pid_t child = fork();
  if (child == 0) {
    pause();
    _exit(0);
  }
  port.reset();
  EXPECT_NE(Open(), nullptr);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

// Root may open exclusively opened files; nobody else may.
TEST_F(HostPort, OpenPortIsExclusive) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become someone else";
  std::filesystem::permissions(ports_.PathOf(kNumber), std::filesystem::perms(0666));
  const auto errorOfAStranger = [&] {
    const pid_t child = fork();
    if (child == 0) {
      constexpr uid_t kAnyUser = 65534;
      if (setuid(kAnyUser) != 0) _exit(255);
      _exit(open(ports_.PathOf(kNumber).c_str(), O_RDWR | O_NOCTTY) < 0 ? errno : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WEXITSTATUS(status);
  };
  auto port = Open();
  ASSERT_NE(port, nullptr);
  EXPECT_EQ(errorOfAStranger(), EBUSY);
  port.reset();
  EXPECT_EQ(errorOfAStranger(), 0);
}

// Two, two, one, with a pause of a millisecond after each, in which the far end checks.
TEST_F(HostPort, TextIsPaced) {
  SerialPort port;
  port.SetPortNum(kNumber);
  ASSERT_TRUE(port.Open());
  std::vector<std::string> pieces;
  const auto look = [&] { pieces.push_back(ReadAll(far_.get())); };
  const Script reader({{1, look}, {2, look}, {3, look}});
  EXPECT_EQ(TimeOf([&] { port.WriteText("ABCDE"); }), 3);
  EXPECT_EQ(pieces, (std::vector<std::string>{"AB", "CD", "E"}));
}

// Signals, and somebody else who was quicker after the wait: it goes on.
TEST_F(HostPort, WhatInterruptsEndsNothing) {
  struct Interruption {
    const char* call;
    int error;
  };
  const auto port = Open({0, 0, 1000, 0, 1000});
  ASSERT_NE(port, nullptr);
  for (const Interruption& one : {Interruption{"poll", EINTR}, {"read", EINTR}, {"read", EAGAIN}}) {
    Send(far_.get(), "abcd");
    const Failing interrupted(one.call, one.error, 3);
    EXPECT_EQ(Read(*port, 4), "abcd") << one.call << one.error;
    EXPECT_EQ(Failing::Left(), 0);
  }
  for (const Interruption& one : {Interruption{"poll", EINTR}, {"write", EINTR}, {"write", EAGAIN}}) {
    const Failing interrupted(one.call, one.error, 3);
    EXPECT_EQ(Write(*port, "abcd"), 4u) << one.call << one.error;
    EXPECT_EQ(Failing::Left(), 0);
    EXPECT_EQ(ReadAll(far_.get()), "abcd");
  }
}

TEST_F(HostPort, WhatFailsEndsWithWhatThereWas) {
  const auto port = Open({0, 0, 1000, 0, 1000});
  ASSERT_NE(port, nullptr);
  Send(far_.get(), "ab");
  for (const char* call : {"poll", "read"}) {
    const Failing failing(call, EIO, 2);
    EXPECT_EQ(TimeOf([&] { EXPECT_EQ(Read(*port, 4), ""); }), 0) << call;
    EXPECT_EQ(Failing::Left(), 1);
  }
  EXPECT_EQ(Read(*port, 2), "ab");
  for (const char* call : {"poll", "write"}) {
    const Failing failing(call, EIO, 2);
    EXPECT_EQ(TimeOf([&] { EXPECT_EQ(Write(*port, "abcd"), 0u); }), 0) << call;
    EXPECT_EQ(Failing::Left(), 1);
  }
}

}  // namespace
}  // namespace tavlyn::boundary
