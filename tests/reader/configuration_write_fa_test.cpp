// Writing the stored configuration over a serial link.
#include <algorithm>
#include <string>
#include <vector>

#include "api.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

Lines Sent(const std::string& header, const std::string& data) {
  return FrameLines(header, {"read " + header.substr(0, 2), "write " + data, "read 90 00"});
}
// Answered with a status only; such frames have no pause after the class byte.
Lines Told(const std::string& header) { return {"flush", "write FA", "write " + header, "read 90 00"}; }
Lines Store(unsigned wait) {
  return FrameLines("0C 06 00 00", {"read 0C", "read 02", "sleep " + std::to_string(wait)});
}
Lines CardType(const std::string& type) { return Sent("81 04 00 08", "00 " + type + " 00 00 00 00"); }

class CfgWriteFa : public BesideLine {
 protected:
  void Use(std::shared_ptr<Reader> model, std::uint32_t plusState = kPlainReader,
           std::uint16_t maxConfig = 0) {
    AddReader(std::move(model), plusState);
    Entry().MaxConfig = maxConfig;
    EXPECT_EQ(ReadCfg(), 1U);
    ForgetTraffic();
  }
  static tsCfgSlot& Slot(std::size_t number = 0) { return Entry().CfgSlot[number]; }
};

const std::vector<DirtyPart> kFrameParts = {
    {kDirtyLuid, Sent("06 00 00 02", "01 00")},
    {kDirtyFmt, Sent("81 00 00 08", "03 05 11 10 1A 3A 28 1C")},
    {kDirtyTime, Sent("81 01 00 08", "00 19 14 28 01 01 40 20")},
    {kDirtyDisp, Sent("81 02 00 08", "01 10 00 00 00 00 00 00")},
    {kDirtyExt, Sent("81 03 00 08", "00 00 00 00 00 00 00 00")},
};

TEST_F(CfgWriteFa, EveryCombinationOfDirtyPartsSendsItsBlocksAndNamesThem) {
  Use(Reader::Plain());
  ForEachCombination(kFrameParts, [this](unsigned mask, const Lines& expected) {
    SetDirty(Entry(), mask);
    EXPECT_EQ(WriteCfg(), 1U);
    const std::string commit = "02 " + sim::HexText({static_cast<std::uint8_t>(mask)}) + " 00 00";
    // The card type goes to a plain reader too.
    ExpectTraffic(Join({expected, CardType("00 00 00"), Told(commit), Store(20)}));
    EXPECT_EQ(DirtyOf(Entry(), Slot()), 0U);
    EXPECT_EQ(GetLastLibErr(), 0U);
  });
}

TEST_F(CfgWriteFa, AReaderOfTwoConfigurations) {
  Use(Reader::Plus(2), kPlusReader, 1);
  Entry().ActConfig = 1;
  Slot(0).bDirtyTime = 1;
  const auto select = [](const std::string& number) {
    return FrameLines("09 81 " + number + " 00",
                      {"read 09", "read 81 " + number + " 00 00 00 00 00", "read 90 00"});
  };
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(
      Join({select("01"), CardType("04 F0 00"), CardType("04 F0 00"), Told("02 00 00 00"), Store(20),
            select("00"), CardType("04 EF 01"), Sent("81 01 00 08", "00 19 14 28 01 01 40 E0"),
            CardType("04 EF 01"), Told("02 02 00 00"), Store(20), select("01")}));
  EXPECT_EQ(GetActConfig(), 1);
}

TEST_F(CfgWriteFa, TheWaitGoesByTheVolumeCommand) {
  Use(Reader::Plain());
  reader->state.lacks = {{0x8C, 0x06}};
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Slept(), 50U + 50U + 1200U);
  EXPECT_EQ(GetLastLibErr(), 0U) << "no word over serial";
}

struct WriteFault {
  const char* what;
  std::initializer_list<std::uint8_t> frame;
  std::uint32_t result;
};

const WriteFault kFaultRows[] = {
    {"LUID", {0x06}, 0},
    {"block 0", {0x81, 0x00}, 0},
    {"block 1", {0x81, 0x01}, 0},
    {"block 2", {0x81, 0x02}, 0},
    {"block 3", {0x81, 0x03}, 0},
    {"area", {0x0A}, 1},
    {"card type", {0x81, 0x04}, 1},
    {"commit", {0x02}, 0},
};

TEST_F(CfgWriteFa, AFaultAtEachFrame) {
  Use(Reader::Plain());
  StartTrace();
  for (const WriteFault& row : kFaultRows) {
    for (const bool refused : {true, false}) {
      SCOPED_TRACE(std::string(row.what) + (refused ? " refused" : " silent"));
      line->faults.Restart();
      line->Silence();
      if (refused) {
        line->faults.RefuseCommand(row.frame, 2);
      } else {
        line->faults.RefuseReply(row.frame, 2);
      }
      SetDirty(Entry(), kAllDirty);
      Entry().bSepFldCapable = Entry().bPartNumberPending = 1;
      const int commits = reader->state.counters.commits;
      EXPECT_EQ(WriteCfg(), row.result);
      EXPECT_EQ(GetLastLibErr(), 0U);
      EXPECT_EQ(DirtyOf(Entry(), Slot()), row.result == 0 ? kAllDirty : 0U);
      EXPECT_EQ(Entry().bSepFldCapable, std::string(row.what) == "area" ? 0U : 1U);
      EXPECT_EQ(Entry().bPartNumberPending, 1U);
      EXPECT_EQ(reader->state.counters.commits, commits + static_cast<int>(row.result));
      if (row.result == 1) {
        EXPECT_EQ(reader->state.counters.lastCommitMask, kAllDirty);
        ExpectTrace({"WriteCfg ENTER", "WriteCfg Success !!", "WriteCfg EXIT"});
      } else {
        ExpectTrace({"WriteCfg ENTER", "WriteCfg EXIT"});
      }
      line->faults.Restart();
      line->Silence();
      SetDirty(Entry(), kAllDirty);
      EXPECT_EQ(WriteCfg(), 1U) << "the same again works";
      ExpectTrace({"WriteCfg ENTER", "WriteCfg Success !!", "WriteCfg EXIT"});
    }
  }
}

TEST_F(CfgWriteFa, AFailedFrameEndsTheWrite) {
  Use(Reader::Plain());
  SetDirty(Entry(), kAllDirty);
  line->faults.RefuseCommand({0x81, 0x01}, 1);
  EXPECT_EQ(WriteCfg(), 0U);
  ExpectTraffic(Join({kFrameParts[0].lines, kFrameParts[1].lines,
                      FrameLines("81 01 00 08", {"read 6D", "read 00"}), Store(20)}));
}

TEST_F(CfgWriteFa, ALostCardTypeIsSentOnceMore) {
  Use(Reader::Plain());
  const Lines lost = FrameLines("81 04 00 08", {"read 6D", "read 00"});
  line->faults.RefuseCommand({0x81, 0x04}, 1);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({lost, CardType("00 00 00"), Told("02 00 00 00"), Store(20)}));
  line->faults.RefuseCommand({0x81, 0x04}, 2);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({lost, lost, Told("02 00 00 00"), Store(20)}));
}

TEST_F(CfgWriteFa, AnotherStatusOfABlockIsAFailure) {
  Use(Reader::Plain());
  // Only the echo: a reader would then take the data and send its status, so the test has its own far end.
  AddScript({{0x81, 0x6A, 0x80}});
  Slot().bDirtyFmt = 1;
  EXPECT_EQ(WriteCfg(), 0U);
  EXPECT_EQ(Slot().bDirtyFmt, 1U);
}

TEST_F(CfgWriteFa, AClosedPortFailsAtTheFirstFrame) {
  Use(Reader::Plain());
  Port().Close();
  ForgetTraffic();
  SetDirty(Entry(), kDirtyFmt);
  EXPECT_EQ(WriteCfg(), 0U);
  EXPECT_EQ(Slept(), 1200U);
  EXPECT_EQ(DirtyOf(Entry(), Slot()), kDirtyFmt);
}

TEST_F(CfgWriteFa, AnExcessMakesBlock3Dirty) {
  Use(Reader::Plus(1), kPlusReader);
  const tsIDBitCnts counts{20, 16, 16, 26, 0, 0, 0, 0};
  EXPECT_EQ(SetIDBitCnts(&counts), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(reader->state.counters.lastCommitMask, 0x09);
  EXPECT_EQ(reader->state.Active().stored.blocks[0][2], 0xFF);
  EXPECT_EQ(reader->state.Active().stored.blocks[3], (sim::Block{5, 1}));
}

TEST_F(CfgWriteFa, AllBlocksComeBackAfterARestart) {
  Use(Reader::Plain());
  const tsCfgFlags flags{0, 1, 0, 1, 0, 1, 0, 1};
  const tsIDDispParms display{'-', 13, 25, 24, 0, 0, 0, 0};
  const tsTimeParms times{1001, 130, 12749, 7, 1019, 0x20, 0, 0};
  const tsIDDispParms2 lead{1, 'a', 0, 0, 'g', 'h', 0, 0};
  EXPECT_EQ(SetFlags(&flags), 1U);
  EXPECT_EQ(SetIDDispParms(&display), 1U);
  EXPECT_EQ(SetTimeParms(&times), 1U);
  EXPECT_EQ(SetIDDispParms2(&lead), 1U);
  EXPECT_EQ(SetAZERTYShiftLock(1), 1U);
  EXPECT_EQ(SetLUID(0xBEEF), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(reader->state.counters.lastCommitMask, 0x8F);
  reader->PowerCycle();
  Slot() = {};
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Slot().record[kCfgFlags], (RecordWords{0, 1, 0, 1, 0, 1, 0, 1}));
  EXPECT_EQ(Slot().record[kIDDispParms], (RecordWords{'-', 13, 25, 24, 0, 0, 0, 0}));
  EXPECT_EQ(Slot().record[kTimeParms], (RecordWords{1000, 100, 12700, 4, 1016, 0x20, 0, 0x40}));
  EXPECT_EQ(Slot().record[kIDDispParms2], (RecordWords{1, 'a', 0, 0, 'g', 'h', 0, 0}));
  EXPECT_EQ(GetAZERTYShiftLock(), 1U);
  EXPECT_EQ(GetLUID(), 0xBEEFU);
}

}  // namespace
}  // namespace tavlyn::test
