// LEDs, beeper and relay at once, and the beep.
#include "reader/outputs.h"

#include "api.h"
#include "reader/configuration.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Block;
using sim::Reader;

constexpr tsLEDCtrl kLeds{1, 0, 1, 0, 0, 0, 0, 1};
constexpr tsBprRlyCtrl kOutputs{0, 1, 1, 0, 0, 0, 0, 1};

class Outputs : public BesideReader {
 protected:
  void Use(std::shared_ptr<Reader> model) { reader = Connected(std::move(model)); }
  static tsCfgSlot& Slot() { return EntryOfActDev().ActiveSlot(); }
  std::shared_ptr<Reader> reader;
};

TEST_F(Outputs, AVolatileSetSendsBlock2AndCommitsNothing) {
  Use(Reader::Plain());
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  ExpectTraffic({"set 82", "set 02 12"});
  EXPECT_EQ(Slot().bDirtyDisp, 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  const tsBprRlyCtrl outputs{0, 1, 1, 0, 0, 0, 0, -1};
  EXPECT_EQ(SetBprRlyCtrl(&outputs), 1U);
  ExpectTraffic({"set 82", "set 0E 12"});
  EXPECT_EQ(Slot().bDirtyDisp, 0U);
  EXPECT_EQ(reader->state.counters.commits, 0);
  EXPECT_EQ(reader->state.Working().blocks[2], (sim::Block{0x0E, 0x12}));
  EXPECT_EQ(Slot()[field::LEDCtrl_bVolatile], 1) << "as given, until the next read";
}

TEST_F(Outputs, AVolatileSetLastsUntilTheReaderRestarts) {
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

TEST_F(Outputs, ACommitOfBlock2KeepsAVolatileSet) {
  Use(Reader::Plain());
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  const tsIDDispParms2 lead{1, 'a', 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(SetIDDispParms2(&lead), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(reader->state.Active().stored.blocks[2], (Block{0x02, 0x12, 0, 0, 0x01, 'a'}));
}

TEST_F(Outputs, AVolatileSetLeavesTheDirtyFlag) {
  Use(Reader::Plain());
  for (const std::uint32_t dirty : {0U, 1U}) {
    Slot().bDirtyDisp = dirty;
    EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
    EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
    EXPECT_EQ(Slot().bDirtyDisp, dirty);
  }
}

TEST_F(Outputs, ANumberedReport) {
  Use(Reader::Kelda(1));
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  ExpectTraffic({"set [1] 82", "set [1] 02 12"});
  EXPECT_EQ(BeepNow(1, 0), 1U);
  ExpectTraffic({"set [1] 8C 03 01", "get [1] 8C 03 01"});
}

TEST_F(Outputs, ReportsDoNotKnowTheAsciiDialect) {
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

TEST_F(Outputs, AnOtherSetSendsNothing) {
  Use(Reader::Plain());
  const tsLEDCtrl leds{1, 0, 1, 0, 0, 0, 0, 0};
  EXPECT_EQ(SetLEDCtrl(&leds), 1U);
  EXPECT_EQ(Slot().bDirtyDisp, 1U);
  Slot().bDirtyDisp = 0;
  const tsBprRlyCtrl outputs{0, 1, 1, 0, 0, 0, 0, 0};
  EXPECT_EQ(SetBprRlyCtrl(&outputs), 1U);
  EXPECT_EQ(Slot().bDirtyDisp, 1U);
  ExpectTraffic({});
}

TEST_F(Outputs, WhatIsNotYetWrittenGoesOutWithAVolatileSet) {
  Use(Reader::Plain());
  const tsIDDispParms2 lead{2, 'a', 'b', 'c', '!', '?', 0, 0};
  EXPECT_EQ(SetIDDispParms2(&lead), 1U);
  const tsIDDispParms3 trail{2, 'x', 'y', 'z', 0, 0, 0, 0};
  EXPECT_EQ(SetIDDispParms3(&trail), 1U);
  const tsLEDCtrl leds{0, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_EQ(SetLEDCtrl(&leds), 1U);
  ExpectTraffic({"set 82", "set 00 10 21 3F 12 61 62 78"});
}

TEST_F(Outputs, AnUnreadSlotCanBeSet) {
  Use(Reader::Plain());
  Slot().bCfgLoaded = 0;
  const tsLEDCtrl leds{0, 1, 1, 0, 0, 0, 0, 1};
  EXPECT_EQ(SetLEDCtrl(&leds), 1U);
  ExpectTraffic({"set 82", "set 03 10"});
  tsLEDCtrl back{};
  EXPECT_EQ(GetLEDCtrl(&back), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x100002U);
}

TEST_F(Outputs, AFailureOfTheVolatileSendIsDropped) {
  Use(Reader::Plain());
  StartTrace();
  const auto refuse = [this](int report) {
    reader->faults.Restart();
    reader->faults.RefuseAt(report, 6);
    EntryOfActDev().LastLibErr = 5;
  };
  const auto expectDropped = [this] {
    EXPECT_EQ(GetLastLibErr(), 0U);
    ExpectTrace({"WrtIDFrmtParms2 ERROR CODE 0x00040000"});
    EXPECT_EQ(Slot().bDirtyDisp, 0U);
  };
  for (const int exchange : {1, 2}) {
    refuse(exchange);
    EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
    expectDropped();
    refuse(exchange);
    EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
    expectDropped();
    EXPECT_EQ(Slot()[field::BprRlyCtrl_iRelayState], 1) << "the record is stored";
    EntryOfActDev().LastLibErr = 0;
    reader->faults.Restart();
    reader->faults.RefuseAt(exchange, 6);
    EXPECT_FALSE(reader::WriteDispBlock(Slot()));
    EXPECT_EQ(GetLastLibErr(), 0x40202U);
    ExpectTrace({"WrtIDFrmtParms2 ERROR CODE 0x00040000"});
  }
}

TEST_F(Outputs, BeepCodes) {
  Use(Reader::Plain());
  struct Row {
    std::uint8_t count;
    std::int16_t longBeep;
    int code;
  };
  for (const Row& row : {Row{0, 0, 0x01},
                         {1, 0, 0x01},
                         {2, 0, 0x02},
                         {5, 0, 0x05},
                         {6, 0, 0x05},
                         {9, 0, 0x05},
                         {255, 0, 0x05},
                         {0, 1, 0x81},
                         {1, 1, 0x81},
                         {1, -256, 0x81},
                         {2, 1, 0x82},
                         {3, 1, 0x82},
                         {255, 1, 0x82}}) {
    EntryOfActDev().LastLibErr = 5;
    EXPECT_EQ(BeepNow(row.count, row.longBeep), 1U);
    EXPECT_EQ(reader->state.counters.lastBeep, row.code) << int{row.count} << ' ' << row.longBeep;
    EXPECT_EQ(GetLastLibErr(), 0U);
  }
  ForgetTraffic();
  EXPECT_EQ(BeepNow(3, 0), 1U);
  const Lines lines = host.transcript.Lines();
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines.front(), "mutex lock");
  EXPECT_EQ(lines.back(), "mutex unlock");
  ExpectTraffic({"set 8C 03 03", "get 8C 03 03"});
}

TEST_F(Outputs, AFailedBeep) {
  Use(Reader::Plain());
  reader->faults.RefuseCommand({0x8C, 0x03}, 6);
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000202U);
  reader->faults.RefuseReply({0x8C, 0x03}, 1);
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  reader->faults.AnswerWith({0x8C, 0x03}, {0, 0, 0});
  EXPECT_EQ(BeepNow(1, 0), 1U) << "the answer is not looked at";
}

TEST_F(Outputs, AFastStoreIsToldByTheVolumeCommand) {
  Use(Reader::Plain());
  EntryOfActDev().LastLibErr = 5;
  EXPECT_TRUE(reader::IsFastStoreReader());
  ExpectTraffic({"set 8C 06", "get 8C 06 02"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  reader->faults.AnswerWith({0x8C, 0x06}, {0, 0, 0, 0, 0, 0, 0, 1}, 1);
  EXPECT_TRUE(reader::IsFastStoreReader()) << "any byte";
  reader->faults.AnswerWith({0x8C, 0x06}, {0}, 1);
  EXPECT_FALSE(reader::IsFastStoreReader());
  EXPECT_EQ(GetLastLibErr(), 0U);
  reader->faults.RefuseReply({0x8C, 0x06}, 1);
  EXPECT_FALSE(reader::IsFastStoreReader());
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  reader->faults.RefuseCommand({0x8C, 0x06}, 6);
  EXPECT_FALSE(reader::IsFastStoreReader());
  EXPECT_EQ(GetLastLibErr(), 0x1000202U);
}

class OutputsFa : public BesideLine {};

TEST_F(OutputsFa, AVolatileSetIsOneFrame) {
  AddReader(Reader::Plain());
  EXPECT_EQ(ReadCfg(), 1U);
  ForgetTraffic();
  StartTrace();
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  ExpectTraffic(FrameLines("81 02 00 08", {"read 81", "write 02 12 00 00 00 00 00 00", "read 90 00"}));
  EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
  ExpectTraffic(FrameLines("81 02 00 08", {"read 81", "write 0E 12 00 00 00 00 00 00", "read 90 00"}));
  EXPECT_EQ(Entry().CfgSlot[0].bDirtyDisp, 0U);
  EXPECT_TRUE(reader::WriteDispBlock(Entry().ActiveSlot()));
  line->faults.RefuseReply({0x81, 0x02}, 1);
  Entry().LastLibErr = 5;
  EXPECT_EQ(SetBprRlyCtrl(&kOutputs), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  line->faults.RefuseCommand({0x81, 0x02}, 2);
  EXPECT_EQ(SetLEDCtrl(&kLeds), 1U);
  EXPECT_FALSE(reader::WriteDispBlock(Entry().ActiveSlot()));
  EXPECT_EQ(GetLastLibErr(), 0U) << "no error word over serial";
  ExpectTrace({});
}

TEST_F(OutputsFa, ABeepIsAStatusWithoutWaits) {
  AddReader(Reader::Plain());
  EXPECT_EQ(BeepNow(2, 1), 1U);
  ExpectTraffic({"flush", "write FA", "write 0C 03 82 00", "read 90 00"});
  EXPECT_EQ(reader->state.counters.lastBeep, 0x82);
  line->faults.RefuseCommand({0x0C, 0x03}, 1);
  Entry().LastLibErr = 5;
  EXPECT_EQ(BeepNow(2, 1), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(OutputsFa, ASilentBeepFails) {
  AddReader(Reader::Plain());
  line->faults.RefuseReply({0x0C, 0x03}, 1);
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  AddScript({{0x6A, 0x80}, {0x90, 0x00}});
  Port().Close();
  EXPECT_EQ(BeepNow(1, 0), 0U);
}

TEST_F(OutputsFa, AFastStoreIsToldByTheVolumeCommand) {
  AddReader(Reader::Plain());
  EXPECT_TRUE(reader::IsFastStoreReader());
  ExpectTraffic(FrameLines("0C 06 00 00", {"read 0C", "read 02"}));
  line->faults.RefuseCommand({0x0C, 0x06}, 1);
  EXPECT_FALSE(reader::IsFastStoreReader());
  AddReader(Reader::Plus(4), kPlusReader);
  Entry().MaxConfig = 3;
  line->faults.RefuseCommand({0x0C, 0x06});
  EXPECT_TRUE(reader::IsFastStoreReader());
  Entry().MaxConfig = 2;
  EXPECT_FALSE(reader::IsFastStoreReader());
}

}  // namespace
}  // namespace tavlyn::test
