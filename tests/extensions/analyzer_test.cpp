// The card analyzer.
#include <algorithm>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <span>

#include "api.h"
#include "tests/support/dirty.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

struct Free {
  void operator()(CardAnalyzerRecord* records) const { std::free(records); }
};
using Records = std::unique_ptr<CardAnalyzerRecord[], Free>;

Bytes Counted(std::size_t count) {
  Bytes bytes(count);
  std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
  return bytes;
}

// The first bytes of the reader's data as they are in a record, after zeros.
Bytes Reversed(Bytes data) {
  data.resize(32);
  std::ranges::reverse(data);
  return data;
}

Bytes BitsOf(const CardAnalyzerRecord& record) {
  const std::span bits(record.CardBits);
  return {bits.begin(), bits.end()};
}

Lines AnalyzerFailure(const std::string& routine) {
  const std::string tag = "CardAnalyzer::" + routine;
  return {tag + " ERROR CODE: 65536", tag + " Failed !!"};
}

class Analyzer : public SerialBench {
 protected:
  void SetUp() override {
    SerialBench::SetUp();
    Use(Reader::Plain());
  }

  void Use(std::shared_ptr<Reader> reader_) {
    model = Connected(std::move(reader_));
    SetActDev(static_cast<std::int16_t>(shared.DevCnt - 1));
    EntryOfActDev().LastLibErr = 5;
  }

  std::vector<sim::AnalyzerRecord>& List() { return model->state.extensions.analyzed; }

  // What it returns of a list, with the count fresh from a query.
  Records Fetch() {
    EXPECT_EQ(GetCardAnalyzerStatus(), 0U);
    ForgetTraffic();
    return Records(GetCardAnalyzerData());
  }

  // For one record.
  CardAnalyzerRecord FetchOne(std::uint16_t bits, Bytes data) {
    List() = {{0x1234, bits, std::move(data)}};
    const Records records = Fetch();
    return records != nullptr ? records[0] : CardAnalyzerRecord{};
  }

  static void TraceFailures() { shared.SearchErr = 0x10000; }

  std::shared_ptr<Reader> model;
};

TEST_F(Analyzer, TheStatusBringsTheCount) {
  EXPECT_EQ(GetCardCount(), 0U) << "before any query";
  model->state.extensions.analyzer = 0xFE;
  List().resize(3);
  EXPECT_EQ(GetCardAnalyzerStatus(), 254U);
  ExpectTraffic({"set 8C 08", "get 8C 08 FE 03"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetCardCount(), 3U);
  ExpectTraffic({});
}

TEST_F(Analyzer, AnAnswerToSomethingElseIsNoStatus) {
  StartTrace();
  List().resize(3);
  EXPECT_EQ(GetCardAnalyzerStatus(), 0U);
  for (const Bytes& answer : {Bytes{0x8D, 0x08, 1, 9}, Bytes{0x8C, 0x09, 1, 9}, Bytes{}}) {
    model->faults.AnswerWith({0x8C, 0x08}, answer, 1);
    EntryOfActDev().LastLibErr = 5;
    EXPECT_EQ(GetCardAnalyzerStatus(), 0xFFFFFFFFU);
    EXPECT_EQ(GetLastLibErr(), 0U);
    EXPECT_EQ(GetCardCount(), 3U);
  }
  ExpectTrace({});
}

TEST_F(Analyzer, AFailedStatusKeepsTheCount) {
  StartTrace();
  TraceFailures();
  List().resize(3);
  EXPECT_EQ(GetCardAnalyzerStatus(), 0U);
  ForgetTraffic();
  model->faults.RefuseNext(6);
  EXPECT_EQ(GetCardAnalyzerStatus(), 0xFFFFFFFFU);
  ExpectTraffic(Refused("8C 08"));
  EXPECT_EQ(GetLastLibErr(), 0x5000202U);
  ExpectTrace(AnalyzerFailure("getCardAnalyzerStatus"));
  model->faults.RefuseReply({0x8C}, 1);
  EXPECT_EQ(GetCardAnalyzerStatus(), 0xFFFFFFFFU);
  EXPECT_EQ(GetLastLibErr(), 0x5000002U);
  ExpectTrace(AnalyzerFailure("getCardAnalyzerStatus"));
  EXPECT_EQ(GetCardCount(), 3U);
}

TEST_F(Analyzer, TheStateIsPassedOn) {
  EXPECT_EQ(SetCardAnalyzerControlState(0x101), 1U);
  ExpectTraffic({"set 8C 88 01", "get 8C 88 01"});
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetCardAnalyzerStatus(), 1U);
  EXPECT_EQ(SetCardAnalyzerControlState(0xFFFFFFFF), 1U);
  EXPECT_EQ(GetCardAnalyzerStatus(), 255U);
  EXPECT_EQ(SetCardAnalyzerControlState(0), 1U);
  EXPECT_EQ(GetCardAnalyzerStatus(), 0U);
}

TEST_F(Analyzer, TheStateHasToBeEchoed) {
  StartTrace();
  TraceFailures();
  const Bytes echo{0x8C, 0x88, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00};
  for (std::size_t at = 0; at < 8; ++at) {
    Bytes answer = echo;
    answer[at] ^= 0x10;
    model->faults.AnswerWith({0x8C, 0x88}, answer, 1);
    const bool counts = at < 4;
    EXPECT_EQ(SetCardAnalyzerControlState(2), counts ? 0U : 1U) << at;
    EXPECT_EQ(GetLastLibErr(), counts ? 0x5000001U : 0U) << at;
    ExpectTrace(counts ? AnalyzerFailure("setCardAnalyzerControlState") : Lines{});
  }
}

TEST_F(Analyzer, AFailedSwitch) {
  StartTrace();
  TraceFailures();
  model->faults.RefuseNext(6);
  EXPECT_EQ(SetCardAnalyzerControlState(1), 0U);
  ExpectTraffic(Refused("8C 88 01"));
  EXPECT_EQ(GetLastLibErr(), 0x5000203U);
  model->faults.RefuseReply({0x8C}, 1);
  EXPECT_EQ(SetCardAnalyzerControlState(1), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x5000001U);
  ExpectTrace(Times(2, AnalyzerFailure("setCardAnalyzerControlState")));
}

TEST_F(Analyzer, NoRecordsAreAnEmptyArray) {
  const Records records = Fetch();
  EXPECT_NE(records, nullptr);
  ExpectTraffic({});
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(Analyzer, ARecordOf26Bits) {
  const CardAnalyzerRecord record = FetchOne(26, {1, 2, 3, 4, 5, 6, 7, 8});
  ExpectTraffic({"set 8C 09", "get 34 12 1A", "set 8C 09 00 01", "get 01 02 03 04 05 06 07 08"});
  EXPECT_EQ(record.RecType, 0x1234U);
  EXPECT_EQ(record.BitCount, 26U);
  EXPECT_EQ(BitsOf(record), Reversed({1, 2, 3, 4}));
  EXPECT_EQ(BitsOf(record)[28], 4);
  EXPECT_EQ(BitsOf(record)[31], 1);
}

TEST_F(Analyzer, ARecordOfNoBits) {
  const CardAnalyzerRecord record = FetchOne(0, Counted(8));
  ExpectTraffic({"set 8C 09", "get 34 12"});
  EXPECT_EQ(record.BitCount, 0U);
  EXPECT_EQ(BitsOf(record), Bytes(32));
}

TEST_F(Analyzer, ARecordOf256BitsIsFull) {
  const CardAnalyzerRecord record = FetchOne(256, Counted(40));
  ExpectTraffic({"set 8C 09", "get 34 12 00 01", "set 8C 09 00 01", "get", "set 8C 09 00 02", "get",
                 "set 8C 09 00 03", "get", "set 8C 09 00 04", "get 19 1A 1B 1C 1D 1E 1F 20"});
  EXPECT_EQ(record.BitCount, 256U);
  EXPECT_EQ(BitsOf(record), Reversed(Counted(32)));
}

TEST_F(Analyzer, EachCountOfBitsHasItsBytes) {
  for (std::uint16_t bits = 1; bits <= 256; ++bits) {
    ASSERT_EQ(BitsOf(FetchOne(bits, Counted(40))), Reversed(Counted((bits + 7U) / 8))) << bits;
    ASSERT_EQ(TrafficOf(host.transcript.Events()).size(), 2U + 2U * ((bits + 63U) / 64)) << bits;
  }
}

TEST_F(Analyzer, DataBeyondARecordIsFetchedAndDropped) {
  for (const std::uint16_t bits :
       {std::uint16_t{257}, std::uint16_t{320}, std::uint16_t{321}, std::uint16_t{448}}) {
    const CardAnalyzerRecord record = FetchOne(bits, Counted(64));
    EXPECT_EQ(record.BitCount, bits);
    EXPECT_EQ(BitsOf(record), Reversed(Counted(32))) << bits;
    EXPECT_EQ(TrafficOf(host.transcript.Events()).size(), 2U + 2U * ((bits + 63U) / 64)) << bits;
  }
}

TEST_F(Analyzer, BlockNumbersWrapInTheirByte) {
  const CardAnalyzerRecord record = FetchOne(0xFFFF, Counted(32));
  EXPECT_EQ(record.BitCount, 0xFFFFU);
  EXPECT_EQ(BitsOf(record), Reversed(Counted(32)));
  const Lines traffic = TrafficOf(host.transcript.Events());
  ASSERT_EQ(traffic.size(), 2U + 2U * 1024U);
  EXPECT_EQ(traffic[2 * 255], "set 8C 09 00 FF");
  EXPECT_EQ(traffic[2 * 256], "set 8C 09");
  EXPECT_EQ(traffic[2 * 257], "set 8C 09 00 01");
}

TEST_F(Analyzer, RecordsComeInTheReadersOrder) {
  List() = {{1, 8, {0xA0}}, {2, 16, {0xB0, 0xB1}}};
  const Records records = Fetch();
  ExpectTraffic({"set 8C 09", "get 01 00 08", "set 8C 09 00 01", "get A0", "set 8C 09 01", "get 02 00 10",
                 "set 8C 09 01 01", "get B0 B1"});
  EXPECT_EQ(records[0].RecType, 1U);
  EXPECT_EQ(BitsOf(records[0]), Reversed({0xA0}));
  EXPECT_EQ(records[1].RecType, 2U);
  EXPECT_EQ(BitsOf(records[1]), Reversed({0xB0, 0xB1}));
}

TEST_F(Analyzer, AFullListHas255Records) {
  for (std::uint16_t number = 0; number < 300; ++number) List().push_back({number, 8, {0xFF}});
  const Records records = Fetch();
  ASSERT_EQ(GetCardCount(), 255U);
  for (std::size_t number = 0; number < 255; ++number) EXPECT_EQ(records[number].RecType, number);
}

TEST_F(Analyzer, TheCountIsNotAskedForAgain) {
  List() = {{1, 8, {0xA0}}, {2, 8, {0xB0}}};
  EXPECT_EQ(GetCardAnalyzerStatus(), 0U);
  Use(Reader::Plain());
  List() = {{7, 8, {0xC0}}};
  const Records records(GetCardAnalyzerData());
  EXPECT_EQ(GetCardCount(), 2U);
  EXPECT_EQ(records[0].RecType, 7U);
  EXPECT_EQ(records[1].RecType, 0U) << "this reader has no second one";
  EXPECT_EQ(BitsOf(records[1]), Bytes(32));
}

TEST_F(Analyzer, ALostHeadLeavesAnEmptyRecord) {
  StartTrace();
  TraceFailures();
  for (const bool sendFails : {true, false}) {
    List() = {{1, 8, {0xA0}}, {2, 8, {0xB0}}};
    EXPECT_EQ(GetCardAnalyzerStatus(), 0U);
    if (sendFails) {
      model->faults.RefuseCommand({0x8C, 0x09, 0x01, 0x00}, 6);
    } else {
      model->faults.RefuseReply({0x8C, 0x09, 0x01, 0x00}, 1);
    }
    const Records records(GetCardAnalyzerData());
    EXPECT_EQ(records[0].RecType, 1U);
    EXPECT_EQ(records[1].RecType, 0U);
    EXPECT_EQ(BitsOf(records[1]), Bytes(32));
    EXPECT_EQ(GetLastLibErr(), sendFails ? 0x5000203U : 0x5000003U);
    ExpectTrace(AnalyzerFailure("getCardAnalyzerData"));
  }
}

TEST_F(Analyzer, ALostBlockIsPassedOver) {
  StartTrace();
  TraceFailures();
  for (std::uint8_t lost = 1; lost <= 4; ++lost) {
    for (const bool sendFails : {true, false}) {
      if (sendFails) {
        model->faults.RefuseCommand({0x8C, 0x09, 0x00, lost}, 6);
      } else {
        model->faults.RefuseReply({0x8C, 0x09, 0x00, lost}, 1);
      }
      const CardAnalyzerRecord record = FetchOne(250, Counted(32));
      Bytes expected = Counted(32);
      std::fill_n(expected.begin() + 8 * (lost - 1), 8, std::uint8_t{0});
      EXPECT_EQ(BitsOf(record), Reversed(expected)) << int{lost};
      EXPECT_EQ(GetLastLibErr(), sendFails ? 0x5000203U : 0x5000003U) << int{lost};
      ExpectTrace(AnalyzerFailure("getCardAnalyzerData"));
    }
  }
}

TEST_F(Analyzer, BytesBehindTheDataAreClearedWhateverWasLost) {
  model->faults.RefuseReply({0x8C, 0x09, 0x00, 0x01}, 1);
  Bytes expected = Counted(13);
  std::fill_n(expected.begin(), 8, std::uint8_t{0});
  EXPECT_EQ(BitsOf(FetchOne(100, Counted(16))), Reversed(expected));
}

TEST_F(Analyzer, TheWordTellsOfTheLastRecordAlone) {
  List() = {{1, 8, {0xA0}}, {2, 8, {0xB0}}};
  EXPECT_EQ(GetCardAnalyzerStatus(), 0U);
  model->faults.RefuseReply({0x8C, 0x09, 0x00, 0x01}, 1);
  const Records records(GetCardAnalyzerData());
  EXPECT_EQ(BitsOf(records[0]), Bytes(32));
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(Analyzer, NumberedReports) {
  Use(Reader::Kelda(2));
  EXPECT_EQ(SetCardAnalyzerControlState(1), 1U);
  model->PutCard({1, 2, 3}, 24);
  EXPECT_EQ(GetCardAnalyzerStatus(), 1U);
  ForgetTraffic();
  const Records records(GetCardAnalyzerData());
  ExpectTraffic({"set [1] 8C 09", "get [1] 01 00 18", "set [1] 8C 09 00 01", "get [1] 01 02 03"});
  EXPECT_EQ(BitsOf(records[0]), Reversed({1, 2, 3}));
}

TEST_F(Analyzer, OnlyAReaderOnReportsHasOne) {
  List().resize(2);
  EXPECT_EQ(GetCardAnalyzerStatus(), 0U);
  ForgetTraffic();
  DevTable[0].LinkKind = kBySerialPort;
  DevTable[0].LastLibErr = 5;
  EXPECT_EQ(GetCardAnalyzerStatus(), 5U);
  EXPECT_EQ(SetCardAnalyzerControlState(1), 0U);
  EXPECT_EQ(GetCardAnalyzerData(), nullptr);
  EXPECT_EQ(GetCardCount(), 2U) << "looks at no device";
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic({});
  DevTable[0].LinkKind = kByReports;
}

}  // namespace
}  // namespace tavlyn::test
