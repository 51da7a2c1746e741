// What tavlynctl shows to people who do not know it: the first steps, examples, suggestions, colours.
#include <gtest/gtest.h>

#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlHelp : public SimulatedRun {};

TEST_F(TavlynctlHelp, WithoutACommandItShowsWhatIsAttachedAndWhatIsNext) {
  struct Case {
    const char* devices;
    const char* found;
    const char* next;
  };
  constexpr Case kCases[] = {
      {"", "  0      card reader ", "tavlynctl read "},
      {"--device sonar", "  0      sonar sensor ", "tavlynctl range "},
      {"--device magstripe", "  0      magstripe reader ", "tavlynctl swipe watch "},
      {"--device plus:2 --do 'refuse 20'", "problem  the configuration of card reader 0 ",
       "tavlynctl config show "},
      {"--do unplug", "problem  no device is plugged in\n", "tavlynctl find "},
  };
  for (const Case& one : kCases) {
    const Ended ended = Run(one.devices, {"ctl"})[0];
    EXPECT_EQ(ended.status, 0) << one.devices << ended.err;
    EXPECT_EQ(ended.err, "") << one.devices;
    EXPECT_TRUE(Holds(ended.out, one.found)) << ended.out;
    EXPECT_TRUE(Holds(ended.out, one.next)) << ended.out;
  }
}

TEST_F(TavlynctlHelp, WithoutACommandItIsJsonToo) {
  const auto ended = Run("", {"ctl --json", "ctl --quiet", "ctl"});
  const Json document = Json::parse(ended[0].out);
  EXPECT_EQ(document["schema"], 1);
  EXPECT_EQ(document["devices"][0]["serial_number"], "0400123456");
  EXPECT_EQ(document["steps"][0]["next"], "tavlynctl read");
  EXPECT_EQ(ended[1].out, ended[2].out);
  const Json none = Json::parse(Run("--do unplug", {"ctl --json"})[0].out);
  EXPECT_EQ(none["problem"], "no device is plugged in");
}

TEST_F(TavlynctlHelp, HasExamples) {
  const std::string all = RunLine(kCtl + " --help").out;
  EXPECT_TRUE(Holds(all, "\n  Example: tavlynctl range --watch --count 10\n\nMany machines:\n")) << all;
  EXPECT_TRUE(Holds(all, "\n  Example: tavlynctl analyzer start\n")) << all;
  EXPECT_FALSE(Holds(RunLine(kCtl + " config --help").out, "Example: \n"));
  EXPECT_TRUE(Holds(RunLine(kCtl + " config set --help").out,
                    "Example: tavlynctl config set bBeepID=off iIDHoldTO=1.5s --dry-run\n"));
  EXPECT_TRUE(Holds(RunLine(kCtl + " ble --help").out, "Example: tavlynctl ble status\n"));
  EXPECT_FALSE(Holds(RunLine(kCtl + " fleet --help").out, "Example: tavlynctl list\n"));
}

TEST_F(TavlynctlHelp, SuggestsWhatIsBelowACommand) {
  EXPECT_EQ(RunLine(kCtl + " cards st 1 EF04 high").err,
            "tavlynctl: st was not expected; did you mean set? tavlynctl cards --help says more\n");
  const Ended part = Simulated("--device magstripe", "magfield set 11 lenght=3");
  EXPECT_TRUE(part.err.ends_with("; did you mean length?\n")) << part.err;
}

TEST_F(TavlynctlHelp, ColoursAreForTerminalsThatWantThem) {
  const std::string list = "script -qec '" + kCtl + " list' /dev/null";
  const auto ended = Run("", {"TERM=xterm " + list, "NO_COLOR=1 TERM=xterm " + list, "TERM=dumb " + list,
                              "TERM=xterm script -qec '" + kCtl + " --json list' /dev/null",
                              "TERM=xterm ctl list", "TERM=xterm script -qec '" + kCtl + " lisp' /dev/null"});
  EXPECT_TRUE(Holds(ended[0].out, "  \033[1mindex  product ")) << ended[0].out;
  for (std::size_t i = 1; i < 5; ++i) EXPECT_FALSE(Holds(ended[i].out, "\033")) << i << ended[i].out;
  EXPECT_TRUE(ended[5].out.starts_with("\033[31mtavlynctl:\033[0m there is no command lisp")) << ended[5].out;
}

}  // namespace
}  // namespace tavlyn::boundary
