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
  EXPECT_EQ(false, led["stored"]);
  EXPECT_EQ(true, led["verified"]);
  EXPECT_EQ(3u, led["changes"].size());
  EXPECT_EQ(Json({{"LEDCtrl.iRedLEDState", 0}, {"LEDCtrl.iGrnLEDState", 0}}), ParsedText(ended[2])["fields"]);
  EXPECT_EQ(Json({{"LEDCtrl.bAppCtrlsLED", 0}}), ParsedText(ended[4])["fields"]);
  EXPECT_EQ(1, ended[5].status);
  EXPECT_EQ("BprRlyCtrl.iRelayState", ParsedText(ended[6])["changes"][0]["field"]);
  EXPECT_EQ(1, ended[7].status);
  EXPECT_EQ(1, ended[8].status);
}

TEST_F(TavlynctlOutputs, BeepAndVolume) {
  EXPECT_TRUE(Holds(Traffic("", "beep 3"), "set 1 8C 03 03\n"));
  EXPECT_TRUE(Holds(Traffic("", "beep"), "set 1 8C 03 01\n"));
  EXPECT_TRUE(Holds(Traffic("", "beep 2 --long"), "set 1 8C 03 82\n"));
  const auto ended = Run("", {"ctl beep 2 --json", "ctl volume --json", "ctl volume 1 --json",
                              "ctl volume --json", "ctl volume 256"});
  const Json beep = ParsedText(ended[0]);
  EXPECT_EQ(2, beep["beeps"]);
  EXPECT_EQ(false, beep["long"]);
  EXPECT_EQ(2, ParsedText(ended[1])["volume"]);
  EXPECT_EQ(1, ParsedText(ended[2])["volume"]);
  EXPECT_EQ(1, ParsedText(ended[3])["volume"]);
  EXPECT_EQ(1, ended[4].status);
}

TEST_F(TavlynctlOutputs, FiveLongBeepsAreRefused) {
  EXPECT_EQ(0, Simulated("", "beep 2 --long").status);
  for (const char* words : {"beep 3 --long", "beep 5 --long"}) {
    const Ended beep = Simulated("", words);
    EXPECT_EQ(1, beep.status);
    EXPECT_EQ("tavlynctl: a device makes 1 or 2 long beeps, or 1 to 5 short ones\n", beep.err);
  }
}

}  // namespace
}  // namespace tavlyn::boundary
