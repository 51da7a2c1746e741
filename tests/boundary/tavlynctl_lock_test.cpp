// Two runs of tavlynctl with one device.
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

const std::string kTwo = "--device plus:2 --device reader";

class TavlynctlLock : public SimulatedRun {
 protected:
  // Runs a command, and a deed while it has its device but, being stopped, does not poll it: the deed's
  // searches would get its answers.
  Ended While(const std::string& command, const std::string& deed) {
    return Run(kTwo, {"upon 'kill -STOP $pid; " + deed + "; kill -INT $pid; kill -CONT $pid' " + kCtl + " " +
                      command})[0];
  }
  static std::string Told(const std::string& words, const std::string& into) {
    return kCtl + " " + words + " >" + into + ".told 2>&1; echo $? >>" + into + ".told";
  }
  [[nodiscard]] std::string Told(const std::string& from) const { return TextOf(folder_ / (from + ".told")); }
};

TEST_F(TavlynctlLock, TheSecondRunTellsWhoHasTheDevice) {
  While("watch", Told("volume 9 --device 0", "held") + "; " + Told("read --timeout 0 --device 0", "read") +
                     "; " + Told("volume 9 --device 1", "other") + "; " + Told("beep --all", "all") + "; " +
                     Told("list", "list") + "; " + Told("complete -- info --device luid:1", "complete"));
  static const std::regex held(
      "tavlynctl: card reader 0 \\(7A31:3BFA Orvantis, /dev/hidraw-sim1\\) is in use by tavlynctl watch "
      "\\(process [0-9]+\\)\n3\n");
  EXPECT_TRUE(std::regex_match(Told("held"), held)) << Told("held");
  EXPECT_TRUE(std::regex_match(Told("read"), held)) << Told("read");
  EXPECT_TRUE(Told("other").ends_with("\n0\n")) << Told("other");
  EXPECT_TRUE(Holds(Told("all"), "1 of 2 devices failed: ") && Told("all").ends_with("\n3\n")) << Told("all");
  EXPECT_TRUE(Told("list").ends_with("\n0\n")) << Told("list");
  EXPECT_TRUE(Told("complete").starts_with("luid:1\t")) << Told("complete");
}

TEST_F(TavlynctlLock, AWatchOfAllHasThemAll) {
  While("watch --all", Told("volume 9 --device 0", "first") + "; " + Told("volume 9 --device 1", "second") +
                           "; " + Told("watch --all", "all"));
  for (const char* one : {"first", "second", "all"}) {
    EXPECT_TRUE(Holds(Told(one), "is in use by tavlynctl watch") && Told(one).ends_with("\n3\n"))
        << Told(one);
  }
}

TEST_F(TavlynctlLock, AKilledHolderLeavesNone) {
  const auto ended = Run(kTwo, {"upon 'kill -KILL $pid' " + kCtl + " watch", "ctl volume 9 --device 0"});
  EXPECT_EQ(ended[0].status, 137);
  EXPECT_EQ(ended[1].status, 0) << ended[1].err;
}

TEST_F(TavlynctlLock, AnotherSimulatorHasOtherDevices) {
  While("watch", kSim + " run --no-interactive -- " + Told("volume 9", "other"));
  EXPECT_TRUE(Told("other").ends_with("\n0\n")) << Told("other");
}

// Its file is in the user's folder while it is held, and not in one where everybody may write.
TEST_F(TavlynctlLock, WhereItIs) {
  const std::string within = "export XDG_RUNTIME_DIR=$PWD/own; ";
  const auto ended =
      Run(kTwo,
          {"mkdir -m 700 own; " + within + "upon 'ls own >held; kill -INT $pid' " + kCtl + " watch", "ls own",
           "chmod 777 own; " + within + "upon 'ls own >open; kill -INT $pid' " + kCtl + " watch"});
  static const std::regex name("tavlynctl-[0-9A-F]{16}\\.lock\n");
  EXPECT_TRUE(std::regex_match(TextOf(folder_ / "held"), name)) << TextOf(folder_ / "held");
  EXPECT_EQ(ended[1].out, "");
  EXPECT_EQ(TextOf(folder_ / "open"), "");
}

}  // namespace
}  // namespace tavlyn::boundary
