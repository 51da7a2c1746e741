// Commands that an application puts together itself.
#include <string>

#include "api.h"
#include "core/state.h"
#include "tests/support/dirty.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

class RawPayload : public SerialBench {
 protected:
  void SetUp() override {
    SerialBench::SetUp();
    model = Connected(Reader::Plain());
    SetRawPayload_index(0, 0);  // the command survives a load in place
    EntryOfActDev().LastLibErr = 5;
  }

  // Positions 1 to 7, then index 8 sends.
  static std::uint32_t SendBytes(Bytes bytes) {
    bytes.resize(8);
    SetRawPayload_index(0, 0);
    for (std::int16_t at = 1; at < 8; ++at) {
      EXPECT_EQ(SetRawPayload_index(at, bytes[static_cast<std::size_t>(at) - 1]), 1U);
    }
    return SetRawPayload_index(8, bytes[7]);
  }

  static Bytes Reply() {
    Bytes bytes;
    for (std::uint16_t at = 0; at < 10; ++at) bytes.push_back(GetRawPayload_index(at));
    return bytes;
  }

  std::shared_ptr<Reader> model;
};

TEST_F(RawPayload, ACommandAndItsReplyAsText) {
  const char* text = SetRawPayload(0x8A, 0, 0, 0, 0, 0, 0, 0);
  EXPECT_STREQ(text, "01.00.31.74.00.00.00.00");
  ExpectTraffic({"set 8A", "get 01 00 31 74"});
  EXPECT_EQ(SetRawPayload(0x8C, 0x01, 0, 0, 0, 0, 0, 0), text) << "one text for all calls";
  EXPECT_STREQ(text, "52.44.52.2D.38.30.35.38");
}

TEST_F(RawPayload, AllEightBytesGoOut) {
  model->faults.AnswerWith({0xF1}, {0xFF, 2, 3, 4, 5, 6, 7, 0xAB});
  EXPECT_STREQ(SetRawPayload(0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8), "FF.02.03.04.05.06.07.AB");
  ExpectTraffic({"set F1 F2 F3 F4 F5 F6 F7 F8", "get FF 02 03 04 05 06 07 AB"});
  EXPECT_EQ(Reply(), (Bytes{0, 0xFF, 2, 3, 4, 5, 6, 7, 0xAB, 0}));
}

TEST_F(RawPayload, IndexEightSends) {
  model->faults.AnswerWith({1}, {9, 8, 7, 6, 5, 4, 3, 2});
  EXPECT_EQ(SetRawPayload_index(0, 9), 1U);
  for (std::int16_t at = 1; at < 8; ++at) {
    EXPECT_EQ(SetRawPayload_index(at, static_cast<std::uint8_t>(at)), 1U);
  }
  ExpectTraffic({});
  EXPECT_EQ(Reply(), Bytes(10));
  EXPECT_EQ(SetRawPayload_index(8, 8), 1U);
  ExpectTraffic({"set 01 02 03 04 05 06 07 08", "get 09 08 07 06 05 04 03 02"});
  EXPECT_EQ(Reply(), (Bytes{0, 9, 8, 7, 6, 5, 4, 3, 2, 0}));
}

TEST_F(RawPayload, HigherIndicesSendToo) {
  SendBytes({1, 2, 3, 4, 5, 6, 7, 8});
  for (const int index : {9, 10, 32767}) {
    ForgetTraffic();
    EXPECT_EQ(SetRawPayload_index(static_cast<std::int16_t>(index), 0xEE), 1U) << index;
    ExpectTraffic({"set 01 02 03 04 05 06 07 08", "get"});
  }
}

TEST_F(RawPayload, ANegativeIndexDoesNothing) {
  SendBytes({1});
  ForgetTraffic();
  EXPECT_EQ(SetRawPayload_index(-1, 5), 0U);
  EXPECT_EQ(SetRawPayload_index(-32768, 5), 0U);
  ExpectTraffic({});
  SetRawPayload_index(8, 0);
  ExpectTraffic({"set 01", "get"});
}

TEST_F(RawPayload, IndexZeroClearsCommandAndReply) {
  model->faults.AnswerWith({1}, {9, 8, 7});
  SendBytes({1, 2, 3});
  EXPECT_EQ(GetRawPayload_index(1), 9);
  ForgetTraffic();
  EXPECT_EQ(SetRawPayload_index(0, 9), 1U);
  EXPECT_EQ(Reply(), Bytes(10));
  EXPECT_EQ(SetRawPayload_index(10, 0), 1U);
  ExpectTraffic({"set 00", "get"});
}

TEST_F(RawPayload, NoReplyHasATenthPosition) {
  EXPECT_EQ(GetRawPayload_index(10), 2);
  EXPECT_EQ(GetRawPayload_index(255), 2);
  EXPECT_EQ(GetRawPayload_index(65535), 2);
}

TEST_F(RawPayload, PositionZeroIsTheReportId) {
  Connected(Reader::Kelda(1));
  EXPECT_EQ(SetActDev(1), 1U);
  EXPECT_STREQ(SetRawPayload(0x8E, 0, 0, 0, 0, 0, 0, 1), "00.00.00.00.00.00.00.00");
  ExpectTraffic({"set [1] 8E 00 00 00 00 00 00 01", "get [1] 00"});
  EXPECT_EQ(GetRawPayload_index(0), 1);
}

TEST_F(RawPayload, ACommandThatCannotBeSentCountsAsStored) {
  model->faults.AnswerWith({1}, {9, 8, 7});
  SendBytes({1});
  for (const int index : {8, 9, 10}) {
    ForgetTraffic();
    model->faults.RefuseNext(6);
    EXPECT_EQ(SetRawPayload_index(static_cast<std::int16_t>(index), 0), index < 10 ? 1U : 0U) << index;
    ExpectTraffic(Refused("01"));
    EXPECT_EQ(GetLastLibErr(), 0x202U);
    EXPECT_EQ(GetRawPayload_index(1), 9) << "the last reply stays";
  }
}

TEST_F(RawPayload, AReplyThatDoesNotComeClearsTheLast) {
  StartTrace();
  model->faults.AnswerWith({1}, {9, 8, 7, 6, 5, 4, 3, 2});
  for (const int index : {8, 9, 10}) {
    SendBytes({1});
    EXPECT_EQ(GetRawPayload_index(8), 2);
    model->faults.RefuseReply({1}, 1);
    EXPECT_EQ(SetRawPayload_index(static_cast<std::int16_t>(index), 0), 0U) << index;
    EXPECT_EQ(Reply(), Bytes(10));
  }
  EXPECT_EQ(GetLastLibErr(), 5U) << "left alone";
  ExpectTrace({});
}

TEST_F(RawPayload, TheTextOfAFailureIsZeros) {
  SendBytes({0x8A});
  model->faults.RefuseNext(6);
  EXPECT_STREQ(SetRawPayload(0x8A, 0, 0, 0, 0, 0, 0, 0), "00.00.00.00.00.00.00.00");
  model->faults.RefuseReply({0x8A}, 1);
  EXPECT_STREQ(SetRawPayload(0x8A, 0, 0, 0, 0, 0, 0, 0), "00.00.00.00.00.00.00.00");
}

TEST_F(RawPayload, OverASerialLinkTheReplyStandsOnePositionLower) {
  AddReader(Reader::Plain());
  Entry().LastLibErr = 5;
  EXPECT_STREQ(SetRawPayload(0xFA, 0x0C, 0x01, 0, 0, 0xEE, 0xEE, 0xEE), "44.52.2D.38.30.35.38.00");
  ExpectTraffic(FrameLines("0C 01 00 00", {"read 0C", "read 52 44 52 2D 38 30 35 38"}));
  EXPECT_EQ(Reply(), (Bytes{'R', 'D', 'R', '-', '8', '0', '5', '8', 0, 0}));
  EXPECT_EQ(GetLastLibErr(), 5U);
}

TEST_F(RawPayload, OverASerialLinkTheClassByteIsTheCallers) {
  AddScript({{0x0C, 1, 2, 3, 4, 5, 6, 7, 8}});
  EXPECT_EQ(SendBytes({0x55, 0x0C, 0x01, 0x02, 0x03}), 0U) << "nobody answers another class";
  ExpectTraffic({"flush", "write 55", "sleep 50", "write 0C 01 02 03", "read"});
  EXPECT_EQ(SendBytes({0xFA, 0x0C, 0x01, 0x02, 0x03}), 1U);
  ExpectTraffic(FrameLines("0C 01 02 03", {"read 0C", "read 01 02 03 04 05 06 07 08"}));
}

TEST_F(RawPayload, OverASerialLinkIndicesAboveNineGiveZero) {
  AddReader(Reader::Plain());
  EXPECT_EQ(SendBytes({0xFA, 0x0C, 0x01}), 1U);
  EXPECT_EQ(SetRawPayload_index(9, 0), 1U);
  EXPECT_EQ(SetRawPayload_index(10, 0), 0U);
  EXPECT_EQ(GetRawPayload_index(0), 'R') << "sent all the same";
}

TEST_F(RawPayload, OverASerialLinkAFailureClearsTheReply) {
  AddReader(Reader::Plain());
  EXPECT_EQ(SendBytes({0xFA, 0x0C, 0x01}), 1U);
  line->faults.RefuseCommand({0x0C}, 1);
  EXPECT_EQ(SetRawPayload_index(8, 0), 0U);
  EXPECT_EQ(Reply(), Bytes(10));
  EXPECT_EQ(SetRawPayload_index(8, 0), 1U);
  line->faults.RefuseReply({0x0C}, 1);
  EXPECT_EQ(SetRawPayload_index(9, 0), 0U);
  EXPECT_EQ(Reply(), Bytes(10));
  Port().Close();
  EXPECT_EQ(SetRawPayload_index(8, 0), 0U);
}

TEST_F(RawPayload, TheTextDialectDoesNotMatter) {
  AddReader(Reader::Plain());
  UseAsciiCommandProtocol(1);
  EXPECT_STREQ(SetRawPayload(0xFA, 0x0C, 0x01, 0, 0, 0, 0, 0), "44.52.2D.38.30.35.38.00");
}

TEST_F(RawPayload, WithoutAReplyTheTextRepeatsTheAnswer) {
  const auto text = [] { return SetRawPayload(1, 2, 3, 4, 5, 6, 7, 8); };
  SendBytes({0x8A});
  ForgetTraffic();
  SetUnsupportedProductErrorCode(0x80F1);
  EntryOfActDev().ProductKind = kSonar;
  EXPECT_STREQ(text(), "00.00.00.00.00.00.00.00");
  EntryOfActDev().ProductKind = 3;
  EXPECT_STREQ(text(), "F1.F1.F1.F1.F1.F1.F1.F1");
  EntryOfActDev().ProductKind = kReader;
  shared.DevCnt = 0;
  EXPECT_STREQ(text(), "F1.F1.F1.F1.F1.F1.F1.F1");
  shared.DevCnt = 1;
}

}  // namespace
}  // namespace tavlyn::test
