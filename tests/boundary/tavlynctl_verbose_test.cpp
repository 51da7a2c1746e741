// -v and -vv: the library's trace on standard error, and what goes over the wire.
#include <gtest/gtest.h>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

using TavlynctlVerbose = SimulatedRun;

TEST_F(TavlynctlVerbose, TheTraceGoesToStandardErrorAndIntoNoFile) {
  const auto ended = Run("", {"export XDG_STATE_HOME=$PWD/state; ctl -v list --json",
                              "export XDG_STATE_HOME=$PWD/state; ctl list --json; ls state"});
  EXPECT_EQ(ended[0].status, 0);
  EXPECT_TRUE(Holds(ended[0].err, " USBConnect ENTER\n")) << ended[0].err;
  EXPECT_TRUE(Holds(ended[0].err, " tavlyn_ReadCfgOneConfig Model Number of Device is : RDR-80581AKU\n"));
  EXPECT_FALSE(Holds(ended[0].err, " wire ")) << ended[0].err;
  EXPECT_EQ(ended[1].out, ended[0].out);
  EXPECT_FALSE(Holds(ended[1].err, "USBConnect")) << ended[1].err;
  EXPECT_TRUE(Holds(ended[1].err, "No such file")) << ended[1].err;
}

TEST_F(TavlynctlVerbose, WhatIsShownBeforeAnEndStays) {
  const auto ended = Run("--do 'vanish 20'", {"ctl info --verbose"});
  EXPECT_EQ(ended[0].status, kDeviceError);
  EXPECT_TRUE(Holds(ended[0].err, " Failed !!\n")) << ended[0].err;
}

TEST_F(TavlynctlVerbose, ReportsHaveTheNameOfTheirCommand) {
  const std::string err = Run("", {"ctl beep 2 -vv"})[0].err;
  EXPECT_TRUE(Holds(err, " wire reader > 00 8C 03 02 00 00 00 00 00  Beep\n")) << err;
  EXPECT_TRUE(Holds(err, " wire reader > 00 80 00 00 00 00 00 00 00  ReadBlock or WriteBlock\n")) << err;
  EXPECT_TRUE(Holds(err, "  reply to ReadBlock\n")) << err;
}

TEST_F(TavlynctlVerbose, DataGoesWithTheCommandThatStoresIt) {
  const std::string err = Run("", {"ctl config set iIDHoldTO=500 -vv"})[0].err;
  EXPECT_TRUE(Holds(err, "  data of WriteBlock\n")) << err;
  EXPECT_TRUE(Holds(err, "  Commit\n")) << err;
}

TEST_F(TavlynctlVerbose, FramesOnASerialPort) {
  const std::string err = Run("--serial COM3", {"ctl --com 3 beep -vv"})[0].err;
  EXPECT_TRUE(Holds(err, " wire reader > FA\n")) << err;
  EXPECT_TRUE(Holds(err, " wire reader > 04 00 00 04  Identity\n")) << err;
  EXPECT_TRUE(Holds(err, " wire reader < 04  reply to Identity\n")) << err;
  EXPECT_TRUE(Holds(err, " wire reader > 0C 03 01 00  Beep\n")) << err;
}

TEST_F(TavlynctlVerbose, TextOfASerialReader) {
  const std::string err = Run("--device reader@com3:ascii", {"ctl --com 3 --ascii info -vv"})[0].err;
  EXPECT_TRUE(Holds(err, "  \"RFID:VAR\\r\"\n")) << err;
}

TEST_F(TavlynctlVerbose, ReportsOfTheOtherProducts) {
  const std::string magstripe = Run("--device magstripe", {"ctl info -vv"})[0].err;
  EXPECT_TRUE(Holds(magstripe, "  Identify\n")) << magstripe;
  EXPECT_TRUE(Holds(magstripe, "  reply to Identify\n")) << magstripe;
  const std::string sonar = Run("--device sonar", {"ctl range -vv"})[0].err;
  EXPECT_TRUE(Holds(sonar, " wire sonar > 00 8F 00 00 00 00 00 00 00  Range\n")) << sonar;
}

// Neither the bytes of an item nor those of a key file, on their way there or back.
TEST_F(TavlynctlVerbose, KeysAreCovered) {
  const auto ended = Run("", {"echo A1B2C3D4E5 | ctl secure write 20070509 - -vv",
                              "ctl secure read 20070509 -vv", "ctl raw 8A A1 B2 C3 D4 -vv"});
  for (const Ended& one : ended) {
    EXPECT_EQ(one.status, 0) << one.err;
    EXPECT_FALSE(Holds(one.err, "A1 B2") || Holds(one.err, "C3 D4")) << one.err;
  }
  EXPECT_TRUE(Holds(ended[0].err, " wire reader > 00 89 90 00 01 ** ** ** **  WriteItem\n")) << ended[0].err;
  EXPECT_TRUE(Holds(ended[1].err, " wire reader < 00 89 10 00 01 ** ** ** **  reply to ReadItem\n"))
      << ended[1].err;
  EXPECT_TRUE(Holds(ended[2].err, " wire reader > 00 8A ** ** ** ** ** ** **  ")) << ended[2].err;
}

}  // namespace
}  // namespace tavlyn::boundary
