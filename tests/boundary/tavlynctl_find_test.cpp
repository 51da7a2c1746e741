// tavlynctl looking for Ethernet adapters on the loopback network.
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "tests/boundary/far_end.h"
#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

TEST(TavlynctlFind, FindShowsEveryAdapter) {
  Answering nobody({});
  const TcpDevice first({127, 5, 1, 3}, nobody);
  const TcpDevice second({127, 5, 1, 5}, nobody, {}, sim::kBridgeMac);
  const Ended found = RunLine(kCtl + " find 127.5.1.2-5");
  EXPECT_EQ(found.status, 0);
  EXPECT_EQ(found.out, "adapters\n  address\n  127.5.1.3\n  127.5.1.5\n");
  EXPECT_EQ(found.err, "asking 127.5.1.2 to 5\n");
  const Ended one = RunLine(kCtl + " find 127.5.1.3");
  EXPECT_EQ(one.out, "adapters\n  address\n  127.5.1.3\n");
  EXPECT_EQ(one.err, "asking 127.5.1.3\n");
}

TEST(TavlynctlFind, FindTellsATerminalWhereItIs) {
  if (RunLine("command -v script").status != 0) GTEST_SKIP() << "no program that makes a terminal";
  const Ended none = RunLine("script -qec '" + std::string(TAVLYNCTL) + " find 127.5.3.1-2' /dev/null");
  EXPECT_EQ(none.status, 2);
  EXPECT_TRUE(Holds(none.out, "\rasking 127.5.3.2       (2 of 2, found 0)\r\n")) << none.out;
}

// A key typed on the terminal where it runs.
TEST(TavlynctlFind, CtrlCLeavesTheCursorOnANewLine) {
  int terminal = -1;
  const pid_t pid = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (pid == 0) execl(TAVLYNCTL, TAVLYNCTL, "find", "127.5.4.1-254", nullptr);
  ASSERT_GT(pid, 0);
  std::string shown;
  bool pressed = false;
  char part[256];
  for (ssize_t count = 0; (count = read(terminal, part, sizeof part)) > 0;) {
    shown.append(part, static_cast<std::size_t>(count));
    if (pressed || !Holds(shown, "asking 127.5.4.1 ")) continue;
    pressed = write(terminal, "\x03", 1) == 1;
  }
  close(terminal);
  int status = 0;
  EXPECT_EQ(waitpid(pid, &status, 0), pid);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
  EXPECT_TRUE(shown.ends_with("\r\n")) << shown;
  EXPECT_TRUE(Holds(shown, "asking 127.5.4.1       (1 of 254, found 0), up to 127 s more")) << shown;
}

TEST(TavlynctlFind, FindTellsHowLongItTakes) {
  const Ended told = RunLine("upon 'kill -TERM $pid' " + kCtl + " find 127.5.5.1-254");
  EXPECT_EQ(128 + SIGTERM, told.status);
  EXPECT_TRUE(told.err.starts_with("asking 127.5.5.1 to 254 takes up to 127 seconds\n")) << told.err;
}

TEST(TavlynctlFind, FindWithoutAdapters) {
  const Ended none = RunLine(kCtl + " find 127.5.2.1-2 --json");
  EXPECT_EQ(none.status, 2);
  EXPECT_TRUE(Holds(none.err, "tavlynctl: no adapter answered\n"));
  EXPECT_EQ(Json::parse(none.out)["error"]["code"], 2);
}

}  // namespace
}  // namespace tavlyn::boundary
