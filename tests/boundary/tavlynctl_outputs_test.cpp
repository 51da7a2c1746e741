// tavlynctl switching beeper, LEDs and relay of simulated readers.
#include <gtest/gtest.h>

#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlOutputs : public SimulatedRun {};

TEST_F(TavlynctlOutputs, LedsAndRelay) {
  const std::string now = Traffic("", "led red green");
  EXPECT_TRUE(Holds(now, "set 1 82\nset 1 03 12\n")) << now;
  EXPECT_FALSE(Holds(now, "set 1 90"));
  const std::string stored = Traffic("", "relay on --store");
  EXPECT_TRUE(Holds(stored, "set 1 82\nset 1 05 10\n")) << stored;
  EXPECT_TRUE(Holds(stored, "set 1 90 04\n"));

  const auto ended =
      Run("", {"ctl led green --json", "ctl led off", "ctl config get iRedLEDState iGrnLEDState --json",
               "ctl led auto", "ctl config get bAppCtrlsLED --json", "ctl led red off", "ctl relay on --json",
               "ctl relay middle", "ctl led blue"});
  const Json led = ParsedText(ended[0]);
  EXPECT_EQ(led["stored"], false);
  EXPECT_EQ(led["verified"], true);
  EXPECT_EQ(led["changes"].size(), 3u);
  EXPECT_EQ(ParsedText(ended[2])["fields"], Json({{"LEDCtrl.iRedLEDState", 0}, {"LEDCtrl.iGrnLEDState", 0}}));
  EXPECT_EQ(ParsedText(ended[4])["fields"], Json({{"LEDCtrl.bAppCtrlsLED", 0}}));
  EXPECT_EQ(ended[5].status, 1);
  EXPECT_EQ(ParsedText(ended[6])["changes"][0]["field"], "BprRlyCtrl.iRelayState");
  EXPECT_EQ(ended[7].status, 1);
  EXPECT_EQ(ended[8].status, 1);
}

TEST_F(TavlynctlOutputs, BeepAndVolume) {
  EXPECT_TRUE(Holds(Traffic("", "beep 3"), "set 1 8C 03 03\n"));
  EXPECT_TRUE(Holds(Traffic("", "beep"), "set 1 8C 03 01\n"));
  EXPECT_TRUE(Holds(Traffic("", "beep 2 --long"), "set 1 8C 03 82\n"));
  const auto ended = Run("", {"ctl beep 2 --json", "ctl volume --json", "ctl volume 1 --json",
                              "ctl volume --json", "ctl volume 256"});
  const Json beep = ParsedText(ended[0]);
  EXPECT_EQ(beep["beeps"], 2);
  EXPECT_EQ(beep["long"], false);
  EXPECT_EQ(ParsedText(ended[1])["volume"], 2);
  EXPECT_EQ(ParsedText(ended[2])["volume"], 1);
  EXPECT_EQ(ParsedText(ended[3])["volume"], 1);
  EXPECT_EQ(ended[4].status, 1);
}

TEST_F(TavlynctlOutputs, FiveLongBeepsAreRefused) {
  EXPECT_EQ(Simulated("", "beep 2 --long").status, 0);
  for (const char* words : {"beep 3 --long", "beep 5 --long"}) {
    const Ended beep = Simulated("", words);
    EXPECT_EQ(beep.status, 1);
    EXPECT_EQ(beep.err, "tavlynctl: a device makes 1 or 2 long beeps, or 1 to 5 short ones\n");
  }
}

}  // namespace
}  // namespace tavlyn::boundary
