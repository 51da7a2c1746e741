// The beeper volume, which any device is asked for.
#include "api.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class Volume : public SerialBench {};

TEST_F(Volume, IsReadAndSet) {
  const auto model = Connected(Reader::Plain());
  ActiveEntry().LastLibErr = 5;
  EXPECT_EQ(GetBeeperVolume(), 2U);
  ExpectTraffic({"set 8C 06", "get 8C 06 02"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  ActiveEntry().LastLibErr = 5;
  EXPECT_EQ(SetBeeperVolume(0x0103), 1U);
  ExpectTraffic({"set 8C 86 03", "get 8C 86 03"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(model->state.volume, 3);
}

TEST_F(Volume, AReaderWithoutTheCommandAnswersZeros) {
  auto model = Reader::Plain();
  model->state.lacks = {{0x8C, 0x06}, {0x8C, 0x86}};
  Connected(model);
  EXPECT_EQ(GetBeeperVolume(), 65535U);
  EXPECT_EQ(SetBeeperVolume(1), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  model->faults.AnswerWith({0x8C, 0x06}, {0, 0, 0, 0, 0, 0, 0, 1}, 1);
  EXPECT_EQ(GetBeeperVolume(), 0U) << "any byte makes it an answer";
  model->faults.AnswerWith({0x8C, 0x86}, {0, 0, 0, 0, 0, 0, 0, 1}, 1);
  EXPECT_EQ(SetBeeperVolume(1), 1U);
}

TEST_F(Volume, TheReportIdCountsForTheGetAlone) {
  auto model = Reader::Kelda(1);
  model->state.lacks = {{0x8C, 0x06}, {0x8C, 0x86}};
  Connected(model);
  EXPECT_EQ(GetBeeperVolume(), 0U);
  EXPECT_EQ(SetBeeperVolume(1), 0U);
}

TEST_F(Volume, AFaultAtEachExchange) {
  const auto model = Connected(Reader::Plain());
  for (const int exchange : {1, 2}) {
    const std::uint32_t word = exchange == 1 ? 0x1000202 : 0x1000000;
    model->faults.Restart();
    model->faults.RefuseAt(exchange, exchange == 1 ? 6 : 1);
    EXPECT_EQ(GetBeeperVolume(), 65535U);
    EXPECT_EQ(GetLastLibErr(), word);
    model->faults.Restart();
    model->faults.RefuseAt(exchange, exchange == 1 ? 6 : 1);
    EXPECT_EQ(SetBeeperVolume(1), 0U);
    EXPECT_EQ(GetLastLibErr(), word);
  }
}

TEST_F(Volume, OnlyTheIndexIsTested) {
  Connected(Reader::Plain());
  SetUnsupportedProductErrorCode(0x8001);
  for (const std::uint32_t kind : {0U, kMagstripe, kSonar}) {
    ActiveEntry().ProductKind = kind;
    EXPECT_EQ(GetBeeperVolume(), 2U) << kind;
    EXPECT_EQ(SetBeeperVolume(2), 1U) << kind;
  }
  ActiveEntry().ProductKind = kReader;
  ForgetTraffic();
  DevCnt = 0;
  EXPECT_EQ(GetBeeperVolume(), 65535U);
  EXPECT_EQ(SetBeeperVolume(2), 0x8001U);
  DevCnt = 1;
  ExpectTraffic({});
}

TEST_F(Volume, OverSerialAReadHasNoStatusAndAWriteHas) {
  AddReader(Reader::Plain());
  EXPECT_EQ(GetBeeperVolume(), 2U);
  ExpectTraffic(FrameLines("0C 06 00 00", {"read 0C", "read 02"}));
  EXPECT_EQ(SetBeeperVolume(0x0103), 1U);
  ExpectTraffic(FrameLines("0C 86 03 00", {"read 0C", "read 90 00"}));
  line->faults.RefuseCommand({0x0C});
  EXPECT_EQ(GetBeeperVolume(), 65535U);
  EXPECT_EQ(SetBeeperVolume(1), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

}  // namespace
}  // namespace tavlyn::test
