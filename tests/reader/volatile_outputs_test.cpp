// Outputs driven at once: what such a set leaves behind on either side, and the beep of other products.
#include "api.h"
#include "core/state.h"
#include "tests/support/beside.h"
#include "tests/support/cfg_marks.h"

namespace tavlyn::test {
namespace {

using sim::Block;
using sim::Reader;

class VolatileOutputs : public BesideReader {
 protected:
  void Use(std::shared_ptr<Reader> model) { reader = Connected(std::move(model)); }
  static tsCfgSlot& Slot() { return EntryOfActDev().CfgSlot[0]; }

  std::shared_ptr<Reader> reader;
};

constexpr tsLEDCtrl kLeds{1, 0, 1, 0, 0, 0, 0, 1};
constexpr tsBprRlyCtrl kOutputs{0, 1, 1, 0, 0, 0, 0, 1};

TEST_F(VolatileOutputs, LastUntilTheReaderRestarts) {
  Use(Reader::Plain());
  const Block before = reader->state.Active().stored.blocks[2];
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
  EXPECT_EQ(reader->state.Working().blocks[2], (Block{0x0E, 0x12}));
  EXPECT_EQ(reader->state.Active().stored.blocks[2], before);
  ForgetTraffic();
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({{"set 90"}, FastStore()}));
  reader->PowerCycle();
  EXPECT_EQ(reader->state.Working().blocks[2], before);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Slot()[field::LEDCtrl_bVolatile], 0);
  EXPECT_EQ(Slot()[field::BprRlyCtrl_bVolatile], 0);
  EXPECT_EQ(Slot()[field::LEDCtrl_iGrnLEDState], 0);
}

TEST_F(VolatileOutputs, ACommitOfBlock2KeepsThem) {
  Use(Reader::Plain());
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  const tsIDDispParms2 lead{1, 'a', 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(SetIDDispParms2(&lead), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(reader->state.Active().stored.blocks[2], (Block{0x02, 0x12, 0, 0, 0x01, 'a'}));
}

TEST_F(VolatileOutputs, ADirtyMarkStaysOverBothSets) {
  Use(Reader::Plain());
  for (const std::uint32_t mark : {0U, 1U}) {
    Slot().bDirtyDisp = mark;
    EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
    EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
    EXPECT_EQ(Slot().bDirtyDisp, mark);
  }
}

TEST_F(VolatileOutputs, AFailureOfTheRelayIsDroppedAtEachReport) {
  Use(Reader::Plain());
  StartTrace();
  for (const int report : {1, 2}) {
    reader->PowerCycle();
    reader->faults.Restart();
    reader->faults.RefuseAt(report, 6);
    Entry().LastLibErr = 5;
    EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
    EXPECT_EQ(GetLastLibErr(), 0U);
    ExpectTrace({"WrtIDFrmtParms2 ERROR CODE 0x00040000"});
    EXPECT_EQ(Slot()[field::BprRlyCtrl_iRelayState], 1) << "the record is stored";
    EXPECT_EQ(Slot().bDirtyDisp, 0U);
  }
}

TEST_F(VolatileOutputs, ANumberedReport) {
  Use(Reader::Kelda(1));
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  ExpectTraffic({"set [1] 82", "set [1] 02 12"});
  EXPECT_EQ(BeepNow(1, 0), 1U);
  ExpectTraffic({"set [1] 8C 03 01", "get [1] 8C 03 01"});
}

TEST_F(VolatileOutputs, ReportsDoNotKnowTheAsciiDialect) {
  Use(Reader::Plain());
  EXPECT_EQ(UseAsciiCommandProtocol(1), 1U);
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  ExpectTraffic({"set 82", "set 02 12"});
  EXPECT_EQ(Slot()[field::LEDCtrl_iGrnLEDState], 1);
  EXPECT_EQ(BeepNow(2, 0), 1U);
  ExpectTraffic({"set 8C 03 02", "get 8C 03 02"});
  Slot().bDirtyTime = 1;
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({{"set 81", "set 00 19 14 28 01 01 40 20", "set 90 02"}, FastStore()}));
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  EXPECT_EQ(reader->state.counters.factoryResets, 1);
  EXPECT_EQ(UseAsciiCommandProtocol(0), 1U);
}

TEST_F(VolatileOutputs, TakeNoLock) {
  Use(Reader::Plain());
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
  ExpectNoLock();
}

TEST_F(VolatileOutputs, ASonarSensorDoesNotBeep) {
  Use(Reader::Plain());
  SetUnsupportedProductErrorCode(0x8001);
  Entry().ProductKind = kSonar;
  EXPECT_EQ(BeepNow(1, 0), 0x8001U);
  EXPECT_EQ(host.transcript.Lines(), (Lines{"mutex lock", "mutex unlock"}));
  Entry().ProductKind = kReader;
}

class VolatileOutputsFa : public BesideLine {};

TEST_F(VolatileOutputsFa, ARelayIsOneFrame) {
  AddReader(Reader::Plain());
  EXPECT_EQ(ReadCfg(), 1U);
  ForgetTraffic();
  EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
  ExpectTraffic(FrameLines("81 02 00 08", {"read 81", "write 0D 10 00 00 00 00 00 00", "read 90 00"}));
  EXPECT_EQ(Entry().CfgSlot[0].bDirtyDisp, 0U);
  line->faults.RefuseReply({0x81, 0x02}, 1);
  Entry().LastLibErr = 5;
  EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(VolatileOutputsFa, ASilentBeepFails) {
  AddReader(Reader::Plain());
  line->faults.RefuseReply({0x0C, 0x03}, 1);
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  AddScript({{0x6A, 0x80}, {0x90, 0x00}});
  Port().Close();
  EXPECT_EQ(BeepNow(1, 0), 0U);
}

}  // namespace
}  // namespace tavlyn::test
