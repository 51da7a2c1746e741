// What tavlynctl shows on a terminal while something lasts.
#include <gtest/gtest.h>

#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlProgress : public SimulatedRun {
 protected:
  // A step: a command on a terminal.
  static std::string OnTerminal(const std::string& words) {
    return "NO_COLOR=1 script -qec \"" TAVLYNCTL " " + words + "\" /dev/null </dev/null";
  }
};

TEST_F(TavlynctlProgress, ReadCountsDown) {
  const auto ended = Run("", {OnTerminal("read --timeout 3"), OnTerminal("--quiet read --timeout 3"),
                              "ctl read --timeout 3", OnTerminal("read --timeout 0")});
  const std::string line = "\rlay a card on reader 0 ";
  std::size_t at = 0;
  for (const char* left : {"(3 s)", "(2 s)", "(1 s)"}) {
    at = ended[0].out.find(line + left, at);
    EXPECT_NE(at, std::string::npos) << left << ended[0].out;
  }
  // It has gone when the message comes.
  const std::string blank(line.size() - 1 + 5, ' ');
  EXPECT_TRUE(ended[0].out.ends_with("\r" + blank + "\rtavlynctl: no card came in time\r\n")) << ended[0].out;
  EXPECT_EQ(ended[1].out, "tavlynctl: no card came in time\r\n");
  EXPECT_EQ(ended[2].err, "tavlynctl: no card came in time\n");
  EXPECT_FALSE(Holds(ended[3].out, "lay a card")) << ended[3].out;
}

// By the machine's own clock, and ended as soon as the line is there.
TEST_F(TavlynctlProgress, ALongSearchIsCounted) {
  const auto ended =
      Run("--serial COM3", {"unset LD_PRELOAD; " + OnTerminal("--com 3-5 list") + " | head -c 28"});
  EXPECT_EQ(ended[0].out, "\rsearching on COM3 to COM5: ");
}

TEST_F(TavlynctlProgress, QuietSaysNothingOfASearch) {
  const auto ended = Run("--serial COM3", {"ctl --com 3-5 list", "ctl --com 3-5 list --quiet"});
  EXPECT_EQ(ended[0].err, "searching on COM3 to COM5 takes up to 5 seconds\n");
  EXPECT_EQ(ended[1].err, "");
  EXPECT_EQ(ended[1].status, 0);
}

// The program's clock goes on by five seconds, and half a real one is left to show something.
TEST_F(TavlynctlProgress, NothingIsShownWhilePeopleWork) {
  const auto ended =
      Run("", {"export EDITOR='sleep 5; env -u LD_PRELOAD sleep 0.6; true'; " + OnTerminal("config edit")});
  EXPECT_EQ(ended[0].out, "device   0\r\nwritten  no\r\nchanges  none\r\n");
}

}  // namespace
}  // namespace tavlyn::boundary
