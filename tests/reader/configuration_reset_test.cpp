// The factory configuration: the command, its wait, and the read after it.
#include <algorithm>
#include <string>

#include "api.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr const char* kEnter = "ResetFactoryDflts ENTER";
constexpr const char* kExit = "ResetFactoryDflts EXIT";
constexpr const char* kResetCode = "tavlyn_ResetFactoryDflts ERROR CODE: 0";
constexpr const char* kResetFailed = "tavlyn_ResetFactoryDflts Failed !!";
constexpr const char* kSuccessLine = "tavlyn_ResetFactoryDflts Success !!";

class FactoryReset : public BesideReader {
 protected:
  void Use(std::shared_ptr<Reader> model) {
    reader = Connected(std::move(model));
    for (sim::Configuration& configuration : reader->state.configurations) {
      configuration.working.blocks[0][4] = configuration.stored.blocks[0][4] = 77;
    }
    EXPECT_EQ(ReadCfg(), 1U);
    SetDirty(Entry(), kAllDirty);
    ForgetTraffic();
  }
  static tsCfgSlot& Slot(std::size_t number = 0) { return Entry().CfgSlot[number]; }

  std::shared_ptr<Reader> reader;
};

TEST_F(FactoryReset, IsReadBackAsAReadWouldBe) {
  for (const int configurations : {0, 1, 3}) {
    SCOPED_TRACE(configurations);
    if (configurations != 0) {
      TearDown();
      SetUp();
    }
    Use(configurations == 0 ? Reader::Plain() : Reader::Plus(configurations));
    Entry().ActConfig = configurations == 3 ? 2 : 0;
    EXPECT_EQ(ReadCfg(), 1U);
    const Lines read = TrafficOf(host.transcript.Events());
    ForgetTraffic();
    EXPECT_EQ(ResetFactoryDflts(), 1U);
    Lines reset = TrafficOf(host.transcript.Events());
    ASSERT_EQ(reset.size(), read.size() + 2);
    EXPECT_EQ(reset[0], "set A0");
    EXPECT_EQ(reset[1], "sleep 1200");
    reset.erase(reset.begin(), reset.begin() + 2);
    // The answers differ by what the reset has changed.
    for (Lines* lines : {&reset, const_cast<Lines*>(&read)}) {
      for (std::string& line : *lines) line = line.starts_with("get") ? "get" : line;
    }
    EXPECT_EQ(Difference(read, reset), "");
    for (std::size_t number = 0; number < reader->state.configurations.size(); ++number) {
      EXPECT_EQ(Slot(number)[field::IDBitCnts_iTotalBitCnt], 26);
    }
    EXPECT_EQ(reader->state.counters.factoryResets, 1);
    EXPECT_EQ(GetLastLibErr(), 0U);
    if (configurations == 3) {
      EXPECT_EQ(GetActConfig(), 2);
      EXPECT_EQ(reader->state.active, 2U);
    }
    EXPECT_EQ(Entry().CardTypeList[0], configurations == 0 ? 0 : 0xEF04);
  }
}

TEST_F(FactoryReset, LeavesTheSlotClean) {
  Use(Reader::Plain());
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  EXPECT_EQ(DirtyOf(Entry(), Slot()), unsigned{kDirtyDisp}) << "which a read does not clear";
}

TEST_F(FactoryReset, TheTraceOfASuccess) {
  Use(Reader::Plain());
  StartTrace();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  ExpectTrace({kEnter, kReadModel, kSuccessLine, kExit});
}

TEST_F(FactoryReset, ARefusedCommand) {
  Use(Reader::Plain());
  StartTrace();
  Entry().LastLibErr = 5;
  reader->faults.RefuseCommand({0xA0}, 6);
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x80202U);
  ExpectTraffic(Refused("A0"));
  ExpectTrace({kEnter, kResetCode, kResetFailed, kExit});
  EXPECT_EQ(DirtyOf(Entry(), Slot()), kAllDirty);
  EXPECT_EQ(Slot()[field::IDBitCnts_iTotalBitCnt], 77);
}

TEST_F(FactoryReset, AFailedRead) {
  Use(Reader::Plain());
  StartTrace();
  reader->faults.RefuseReply({0x8A}, 1);
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  ExpectTraffic({"set A0", "sleep 1200", "set 8A", "get refused"});
  ExpectTrace({kEnter, kReadCode, kResetFailed, kExit});
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
  EXPECT_EQ(reader->state.counters.factoryResets, 1);
}

TEST_F(FactoryReset, AFailedWalkStillAsksForTheCardTypes) {
  Use(Reader::Plus(2));
  StartTrace();
  reader->faults.RefuseReply({0x81}, 1);
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  const Lines traffic = TrafficOf(host.transcript.Events());
  ASSERT_GE(traffic.size(), 8U);
  const Lines tail(traffic.end() - 8, traffic.end());
  EXPECT_EQ(
      Difference({"set 89 81", "get", "set 89 81", "get", "set 89 04", "get", "set 89 04 01", "get"}, tail),
      "");
  ExpectTrace({kEnter, kReadCode, kReadFailed, kResetFailed, kExit});
}

TEST_F(FactoryReset, IsTracedWithoutAReaderToo) {
  Use(Reader::Plain());
  StartTrace();
  Entry().ProductKind = 3;
  ResetFactoryDflts();
  const Lines kind = Trace();
  ASSERT_EQ(kind.size(), 3U);
  EXPECT_EQ(kind.front(), kEnter);
  EXPECT_TRUE(kind[1].ends_with(" Failed !!")) << kind[1];
  EXPECT_EQ(kind.back(), kExit);
  ExpectTrace(kind);
  Entry().ProductKind = kReader;
  shared.DevCnt = 0;
  ResetFactoryDflts();
  ExpectTrace(kind);
  shared.DevCnt = 1;
}

class FactoryResetFa : public BesideLine {};

TEST_F(FactoryResetFa, IsAStatusWithoutAPause) {
  AddReader(Reader::Plain());
  StartTrace();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  const Lines traffic = TrafficOf(host.transcript.Events());
  ASSERT_GE(traffic.size(), 5U);
  const Lines head(traffic.begin(), traffic.begin() + 5);
  EXPECT_EQ(Difference({"flush", "write FA", "write 03 00 00 00", "read 90 00", "sleep 1200"}, head), "");
  ExpectTrace({kEnter, kReadModel, kSuccessLine, kExit});
  EXPECT_NE(Entry().CfgSlot[0].bCfgLoaded, 0U);
}

TEST_F(FactoryResetFa, ARefusedCommand) {
  AddReader(Reader::Plain());
  StartTrace();
  Entry().LastLibErr = 5;
  line->faults.RefuseCommand({0x03}, 1);
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  ExpectTraffic({"flush", "write FA", "write 03 00 00 00", "read 6D 00"});
  ExpectTrace({kEnter, kResetFailed, kExit});
  EXPECT_EQ(GetLastLibErr(), 0U) << "no error bit over serial";
}

TEST_F(FactoryResetFa, AFailedRead) {
  AddReader(Reader::Plain());
  StartTrace();
  line->faults.RefuseCommand({0x01, 0x01}, 1);
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  ExpectTrace({kEnter, kResetFailed, kExit});
}

}  // namespace
}  // namespace tavlyn::test
