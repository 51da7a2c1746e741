// tavlynsim --speed: how fast time goes for programs and devices. What would take hours here ends at once.
#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class Speed : public SimulatedRun {
 protected:
  // On the machine's own time, which the speed multiplies.
  Ended Run(const std::string& options, const std::string& command) {
    return RunLine("unset LD_PRELOAD TAVLYN_QUICK_CLOCK; cd " + folder_.string() +
                   "; export TMPDIR=" + folder_.string() + " ctl=" + kCtl + " sim=" + kSim + "; " + kSim +
                   " " + options + " -- sh -c '" + command + "'");
  }
};

TEST_F(Speed, WhatAProgramSleepsComesSooner) {
  const Ended ended =
      Run("run --speed 1000", "before=$(date +%s); sleep 900; echo $(($(date +%s) - before))");
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_GE(std::stoi(ended.out), 900) << ended.out;
}

// 22 ways, which would take half an hour and more.
TEST_F(Speed, EveryWayOfWaitingComesSooner) {
  const Ended ended = Run("run --speed 1000", "exec " TAVLYN_WAITS " 100");
  EXPECT_EQ(ended.out, "waited\n") << ended.err;
}

TEST_F(Speed, ProgramsHaveOneTime) {
  const Ended ended = Run("run --speed 1000",
                          "before=$(date +%s); (sleep 500; date +%s >first) & sleep 1000; wait; "
                          "echo $(($(cat first) - before)) $(($(date +%s) - before))");
  EXPECT_EQ(ended.status, 0) << ended.err;
  std::istringstream times(ended.out);
  int first = 0;
  int both = 0;
  ASSERT_TRUE(times >> first >> both) << ended.out;
  EXPECT_GE(first, 500);
  EXPECT_GE(both, 1000);
  EXPECT_GE(both, first);
}

TEST_F(Speed, SleepingTakesNoTimeAtAll) {
  const Ended ended = Run("run --speed max", "sleep 30000 && echo over");
  EXPECT_EQ(ended.out, "over\n") << ended.err;
}

TEST_F(Speed, CardsComeAndGoByTheSameTime) {
  const std::string cards = " --card 01020304:26 --card 0A0B:16";
  const std::string shown = "card 26 bits 04030201\ngone 26 bits 04030201\ncard 16 bits 0B0A\n";
  // 100 times as fast each card is there for seconds, so that a busy machine misses none.
  for (const char* times : {" --speed 100 --on 300000 --off 60000", " --speed max --on 5000 --off 20000"}) {
    const Ended ended = Run("run" + cards + times, "exec $ctl watch --count 3");
    EXPECT_EQ(ended.out, shown) << times << ended.err;
  }
}

// With a number a busy machine's own slowness would count against the reader's time-outs.
TEST_F(Speed, ADeviceThatIsSlowIsSlowByTheSameTime) {
  const Ended ended =
      Run("run --serial COM3 --do \"delay 100\" --speed max", "$ctl --com 3 list >/dev/null && echo found");
  EXPECT_EQ(ended.out, "found\n") << ended.err;
}

TEST_F(Speed, AScenarioKeepsItsOrder) {
  const Ended ended = Run("run --speed max --scenario " TAVLYN_SCENARIOS "/away.scenario",
                          "$ctl watch --count 4 --timeout 60 >/dev/null");
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_TRUE(ended.err.ends_with("away.scenario: 2 of 2 expectations met\n")) << ended.err;
}

// The card is there until it is taken away, however late it is looked for.
TEST_F(Speed, ProgramsThatAreStartedElsewhereHaveTheClock) {
  for (const char* speed : {"1000", "max"}) {
    const Ended ended =
        RunLine("unset LD_PRELOAD TAVLYN_QUICK_CLOCK; export TMPDIR=" + folder_.string() + "; eval \"$(" +
                kSim + " serve --background --speed " + speed +
                " --card 0102:13 --on 86400000)\"; sleep 900; " + kCtl + " watch --count 1; " + kSim +
                " do take; " + kSim + " stop; ls " + folder_.string() + "; sleep 1; echo over");
    EXPECT_EQ(ended.out, "card 13 bits 0201\nover\n") << speed << ended.err;
  }
}

TEST_F(Speed, IsOneOfSome) {
  for (const char* speed : {"0", "0.5", "2000", "fast", "10x", "''", "nan"}) {
    const Ended ended = RunLine(kSim + " run --speed " + speed + " -- echo ran");
    EXPECT_EQ(ended.status, 1) << speed;
    EXPECT_TRUE(Holds(ended.err, " is no speed: 1 to 1000, or max")) << ended.err;
  }
  const Ended kernel = RunLine(kSim + " run --speed 2 --carrier uhid -- echo ran");
  EXPECT_EQ(kernel.status, 1);
  EXPECT_TRUE(Holds(kernel.err, "--speed")) << kernel.err;
}

}  // namespace
}  // namespace tavlyn::boundary
