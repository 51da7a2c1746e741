// Beep, LEDs and factory reset in the text dialect; everything else still uses frames.
#include <gtest/gtest.h>

#include "links/serial_port.h"
#include "tests/reader/ascii_bench.h"

namespace tavlyn::test {
namespace {

class AsciiOutputs : public AsciiBench {
 protected:
  std::string Sent() {
    std::string text;
    text.swap(ascii.received);
    ForgetTraffic();
    return text;
  }
};

TEST_F(AsciiOutputs, ShortAndLongBeepsHaveTheirOwnText) {
  struct Beep {
    std::uint8_t count;
    std::int16_t longBeep;
    std::string text;
  };
  for (const Beep& beep : {Beep{0, 0, "short=1"},
                           {1, 0, "short=1"},
                           {5, 0, "short=5"},
                           {9, 0, "short=5"},
                           {0, 1, "long=1"},
                           {1, -1, "long=1"},
                           {2, 1, "long=2"},
                           {9, 1, "long=2"}}) {
    EXPECT_EQ(BeepNow(beep.count, beep.longBeep), 1U);
    EXPECT_EQ(Sent(), "\rrfid:out.beep." + beep.text + "\r");
  }
  ascii.acknowledge.clear();
  EXPECT_EQ(BeepNow(1, 0), 1U) << "no answer is looked at";
}

TEST_F(AsciiOutputs, AVolatileLedSetSendsTheStoredStates) {
  const tsLEDCtrl asked{1, 1, 1, 0, 0, 0, 0, 1};
  Entry().LastLibErr = 5;
  EXPECT_EQ(SetLEDCtrl(&asked), 1U);
  ExpectTraffic(Join({TextLines("\rrfid:out.led=255\r"), {"read", "sleep 10", "flush"}}));
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Field(field::LEDCtrl_iRedLEDState), 0) << "the record itself is dropped";
  EXPECT_EQ(Slot().bDirtyDisp, 0U);
}

TEST_F(AsciiOutputs, LedsAreSetByAStoredSetAndAVolatileOne) {
  const tsLEDCtrl stored{1, 0, 1, 0, 0, 0, 0, 0};
  const tsLEDCtrl now{1, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_EQ(SetLEDCtrl(&stored), 1U);
  EXPECT_EQ(Sent(), "");
  EXPECT_EQ(Slot().bDirtyDisp, 1U);
  EXPECT_EQ(SetLEDCtrl(&now), 1U);
  EXPECT_EQ(Sent(), "\rrfid:out.led=2\r");
  EXPECT_EQ(Slot().bDirtyDisp, 1U);
  EXPECT_EQ(SetLEDCtrl(nullptr), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x200001U);
}

TEST_F(AsciiOutputs, ABeeperSetStaysAFrame) {
  const tsBprRlyCtrl now{0, 1, 0, 0, 0, 0, 0, 1};
  EXPECT_EQ(SetBprRlyCtrl(&now), 1U);
  EXPECT_TRUE(ascii.received.starts_with("\xFA\x81\x02")) << ascii.received;
}

TEST_F(AsciiOutputs, AFactoryResetWaitsForTheReadersStoreAndReadsNothing) {
  Field(field::CfgFlags2_bBeepID) = 1;
  Entry().LastLibErr = 5;
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  ExpectTraffic(Join({TextLines("\rRFID:CFG.RESET\r"), {"sleep 1200", "sleep 10", "flush"}}));
  EXPECT_EQ(Field(field::CfgFlags2_bBeepID), 1) << "the mirror is left as it stands";
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(AsciiOutputs, AClosedPortDoesNotShow) {
  Port().Close();
  ForgetTraffic();
  const tsLEDCtrl now{1, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_EQ(BeepNow(1, 0), 1U);
  EXPECT_EQ(SetLEDCtrl(&now), 1U);
  ExpectTraffic({"sleep 10"});
}

TEST_F(AsciiOutputs, EverythingElseStaysInFrames) {
  GetBeeperVolume();
  EXPECT_EQ(ascii.received, std::string("\xFA\x0C\x06\0\0", 5));
  ascii.received.clear();
  Ping();
  EXPECT_TRUE(ascii.received.starts_with("\xFA\x04\xED\xED\x04"));
}

TEST_F(AsciiOutputs, AReportReaderIsNeverSpokenToInText) {
  Entry().LinkKind = kByReports;
  const tsLEDCtrl now{1, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_EQ(BeepNow(1, 0), 0U);
  SetLEDCtrl(&now);
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  EXPECT_EQ(Sent(), "");
}

}  // namespace
}  // namespace tavlyn::test
