// Telling plain readers from plus readers, and choosing a configuration.
#include "api.h"
#include "reader/configuration.h"
#include "reader/product.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

class Classify : public Bench {
 protected:
  std::shared_ptr<Reader> reader = Reader::Plus(4);

  // As right after a search: opened, nothing known.
  void SetUp() override {
    Bench::SetUp();
    Connected(reader);
    Entry().PlusState = kPlusUnknown;
    Entry().MaxConfig = 7;
    Entry().ActConfig = 3;
    for (tsCfgSlot& slot : Entry().CfgSlot) slot.CardType = slot.CardPriority = 0x77;
    Entry().LastLibErr = 0;
  }
  static tsDevEntry& Entry() { return DevTable[0]; }
  static Lines Query(const std::string& reply) { return {"set 89 01", reply}; }
};

TEST_F(Classify, APlusReaderTellsItsConfigurationsAndCardType) {
  reader->state.active = 2;
  EXPECT_TRUE(reader::Classify());
  ExpectTraffic({"set 89 01", "get 89 01 02 04", "set 84", "get 00 04 F1"});
  EXPECT_EQ(Entry().PlusState, kPlusReader);
  EXPECT_EQ(Entry().MaxConfig, 3);
  EXPECT_EQ(Entry().ActConfig, 2);
  EXPECT_EQ(Entry().CfgSlot[2].CardType, 0xF104);
  EXPECT_EQ(Entry().CfgSlot[2].CardPriority, 0);
  EXPECT_EQ(Entry().CfgSlot[3].CardType, 0x77) << "only the slot in use is told";
  EXPECT_EQ(Entry().LastLibErr, 0U);
}

TEST_F(Classify, OnlyTheLowestBitIsThePriority) {
  reader->faults.AnswerWith({0x84}, {0xFF, 0x34, 0x12, 0xFF, 0xFF});
  EXPECT_TRUE(reader::Classify());
  EXPECT_EQ(Entry().CfgSlot[0].CardType, 0x1234);
  EXPECT_EQ(Entry().CfgSlot[0].CardPriority, 1);
}

TEST_F(Classify, AConfigurationBeyondTheCountIsLowered) {
  reader->faults.AnswerWith({0x89, 0x01}, {0x89, 0x01, 9, 4});
  EXPECT_TRUE(reader::Classify());
  EXPECT_EQ(Entry().MaxConfig, 3);
  EXPECT_EQ(Entry().ActConfig, 3);
}

TEST_F(Classify, ElevenConfigurationsAreTheMost) {
  reader->faults.AnswerWith({0x89, 0x01}, {0x89, 0x01, 10, 11}, 1);
  EXPECT_TRUE(reader::Classify());
  EXPECT_EQ(Entry().MaxConfig, 10);
  EXPECT_EQ(Entry().ActConfig, 10);
  for (const int count : {12, 255, 0}) {
    Entry().PlusState = kPlusReader;
    Entry().ActConfig = 3;
    reader->faults.AnswerWith({0x89, 0x01}, {0x89, 0x01, 1, static_cast<std::uint8_t>(count)}, 1);
    ForgetTraffic();
    EXPECT_FALSE(reader::Classify()) << count;
    ExpectTraffic({"set 89 01", "get"});
    EXPECT_EQ(Entry().PlusState, kPlusUnknown);
    EXPECT_EQ(Entry().MaxConfig, 0);
    EXPECT_EQ(Entry().ActConfig, 0);
  }
  EXPECT_EQ(Entry().LastLibErr, 0U);
}

TEST_F(Classify, ALostCommandMeansPlain) {
  reader->faults.RefuseCommand({0x89, 0x01});
  EXPECT_FALSE(reader::Classify());
  ExpectTraffic(Times(6, {"set 89 01 refused", "sleep 80"}));
  EXPECT_EQ(Entry().PlusState, kPlainReader);
  EXPECT_EQ(Entry().MaxConfig, 0);
  EXPECT_EQ(Entry().ActConfig, 3);
  EXPECT_EQ(Entry().LastLibErr, 0x202U);
}

TEST_F(Classify, ALostOrStrangeReplyMeansNotKnown) {
  reader->faults.RefuseReply({0x89, 0x01}, 1);
  Entry().PlusState = kPlusReader;
  EXPECT_FALSE(reader::Classify());
  ExpectTraffic(Query("get refused"));
  EXPECT_EQ(Entry().PlusState, kPlusUnknown);
  EXPECT_EQ(Entry().MaxConfig, 0);
  EXPECT_EQ(Entry().ActConfig, 3) << "not lowered here";

  reader->faults.AnswerWith({0x89, 0x01}, {0x88, 0x01, 0, 4});
  Entry().PlusState = kPlusReader;
  EXPECT_FALSE(reader::Classify());
  ExpectTraffic(Query("get 88 01 00 04"));
  EXPECT_EQ(Entry().PlusState, kPlusUnknown);
  EXPECT_EQ(Entry().LastLibErr, 0U);
}

TEST_F(Classify, APlainReaderIsNotAskedAgain) {
  Entry().PlusState = kPlainReader;
  EXPECT_FALSE(reader::Classify());
  ExpectTraffic({});
  EXPECT_EQ(Entry().PlusState, kPlainReader);
  EXPECT_EQ(Entry().MaxConfig, 0);
}

TEST_F(Classify, AFailedCardTypeLeavesTheStateAsItWas) {
  for (const std::uint32_t before : {kPlusUnknown, kPlusReader}) {
    Entry().PlusState = before;
    Entry().LastLibErr = 1;
    reader->faults.RefuseReply({0x84}, 1);
    EXPECT_FALSE(reader::Classify());
    ExpectTraffic({"set 89 01", "get", "set 84", "get refused"});
    EXPECT_EQ(Entry().PlusState, before);
    EXPECT_EQ(Entry().MaxConfig, 3);
    EXPECT_EQ(Entry().LastLibErr, 0x20001U);

    Entry().LastLibErr = 1;
    reader->faults.RefuseCommand({0x84}, 6);
    EXPECT_FALSE(reader::Classify());
    ExpectTraffic(Join({{"set 89 01", "get"}, Times(6, {"set 84 refused", "sleep 80"})}));
    EXPECT_EQ(Entry().PlusState, before);
    EXPECT_EQ(Entry().LastLibErr, 0x20202U);
    EXPECT_EQ(Entry().CfgSlot[0].CardType, 0x77);
  }
}

TEST_F(Classify, SelectingIsForPlusReaders) {
  for (const std::uint32_t state : {kPlusUnknown, kPlainReader}) {
    Entry().PlusState = state;
    EXPECT_FALSE(reader::SelectConfig(1));
    EXPECT_EQ(Entry().ActConfig, 3);
  }
  ExpectTraffic({});
}

TEST_F(Classify, SelectingTellsTheReaderAndTheHost) {
  Entry().PlusState = kPlusReader;
  EXPECT_TRUE(reader::SelectConfig(2));
  ExpectTraffic({"set 89 81 02", "get 89 81 02"});
  EXPECT_EQ(Entry().ActConfig, 2);
  EXPECT_EQ(reader->state.active, 2U);
}

TEST_F(Classify, TheHostStaysOnTheNewNumberWhenTheReaderRefuses) {
  Entry().PlusState = kPlusReader;
  const auto expectFailure = [&](const Lines& traffic) {
    Entry().ActConfig = 0;
    Entry().LastLibErr = 0;
    EXPECT_FALSE(reader::SelectConfig(1));
    ExpectTraffic(traffic);
    EXPECT_EQ(Entry().ActConfig, 1);
  };
  reader->faults.RefuseCommand({0x89, 0x81}, 6);
  expectFailure(Times(6, {"set 89 81 01 refused", "sleep 80"}));
  EXPECT_EQ(Entry().LastLibErr, 0x202U);
  reader->faults.RefuseReply({0x89, 0x81}, 1);
  expectFailure({"set 89 81 01", "get refused"});
  EXPECT_EQ(Entry().LastLibErr, 0U);
  reader->faults.AnswerWith({0x89, 0x81}, {0x89, 0x80, 1}, 1);
  expectFailure({"set 89 81 01", "get 89 80 01"});
  reader->faults.AnswerWith({0x89, 0x81}, {0x00, 0x81, 1}, 1);
  expectFailure({"set 89 81 01", "get 00 81 01"});
}

class ClassifyFa : public SerialBench {
 protected:
  static Lines Query(const Lines& rest) { return FrameLines("09 01 00 00", rest); }
  static Lines Answered() { return Query({"read 09", "read", "read 90 00"}); }

  static Bytes Answer(std::initializer_list<std::uint8_t> data) {
    Bytes bytes{0x09};
    bytes.insert(bytes.end(), data);
    bytes.insert(bytes.end(), {0x90, 0x00});
    return bytes;
  }
  // One answer to an entry as a search leaves it.
  void Ask(std::initializer_list<std::uint8_t> data, std::uint32_t state = kPlusUnknown) {
    AddScript({Answer(data)}, state);
    Entry().MaxConfig = 7;
    Entry().ActConfig = 3;
  }
};

TEST_F(ClassifyFa, APlusReaderTellsEverythingAtOnce) {
  Ask({1, 2, 5, 0, 0x34, 0x12, 0xFF});
  EXPECT_TRUE(reader::Classify());
  ExpectTraffic(Answered());
  EXPECT_EQ(Entry().PlusState, kPlusReader);
  EXPECT_EQ(Entry().MaxConfig, 4);
  EXPECT_EQ(Entry().ActConfig, 2);
  EXPECT_EQ(Entry().CfgSlot[2].CardType, 0x1234);
  EXPECT_EQ(Entry().CfgSlot[2].CardPriority, 1);
}

TEST_F(ClassifyFa, TheModelAnswersSo) {
  AddReader(Reader::Plus(3), kPlusUnknown);
  EXPECT_TRUE(reader::Classify());
  ExpectTraffic(Query({"read 09", "read 01 00 03 00 04 EF 01", "read 90 00"}));
  EXPECT_EQ(Entry().MaxConfig, 2);
  EXPECT_EQ(Entry().CfgSlot[0].CardType, 0xEF04);
}

TEST_F(ClassifyFa, AConfigurationBeyondTheCountIsLowered) {
  Ask({1, 10, 3, 0, 4, 0, 0});
  EXPECT_TRUE(reader::Classify());
  EXPECT_EQ(Entry().MaxConfig, 2);
  EXPECT_EQ(Entry().ActConfig, 2);
  EXPECT_EQ(Entry().CfgSlot[2].CardType, 4);
}

TEST_F(ClassifyFa, StrangeAnswersMeanPlain) {
  for (const auto data : {std::initializer_list<std::uint8_t>{0, 0, 1, 0, 0, 0, 0},
                          {2, 0, 1, 0, 0, 0, 0},
                          {1, 11, 1, 0, 0, 0, 0},
                          {1, 0, 1, 1, 0, 0, 0},
                          {1, 0, 0, 1, 0, 0, 0}}) {
    Ask(data, kPlusReader);
    EXPECT_FALSE(reader::Classify());
    ExpectTraffic(Answered());
    EXPECT_EQ(Entry().PlusState, kPlainReader);
    EXPECT_EQ(Entry().MaxConfig, 0);
    EXPECT_EQ(Entry().ActConfig, 3);
  }
}

TEST_F(ClassifyFa, AnImpossibleCountCountsAsAPlusReaderWithNothingLearnt) {
  for (const std::uint8_t count : {std::uint8_t{0}, std::uint8_t{12}, std::uint8_t{255}}) {
    for (const std::uint32_t state : {kPlusUnknown, kPlusReader}) {
      Ask({1, 2, count, 0, 0x34, 0x12, 1}, state);
      EXPECT_TRUE(reader::Classify());
      EXPECT_EQ(Entry().PlusState, state);
      EXPECT_EQ(Entry().MaxConfig, 0) << "cleared in front";
      EXPECT_EQ(Entry().ActConfig, 3);
      EXPECT_EQ(Entry().CfgSlot[2].CardType, 0);
    }
  }
}

TEST_F(ClassifyFa, ElevenConfigurationsAreTheMost) {
  Ask({1, 10, 11, 0, 0, 0, 0});
  EXPECT_TRUE(reader::Classify());
  EXPECT_EQ(Entry().MaxConfig, 10);
  EXPECT_EQ(Entry().ActConfig, 10);
}

TEST_F(ClassifyFa, AFailureIsTriedOnceMore) {
  AddScript({{0x6D, 0x00}, Answer({1, 0, 2, 0, 0, 0, 0})}, kPlusUnknown);
  EXPECT_TRUE(reader::Classify());
  ExpectTraffic(Join({Query({"read 6D", "read 00"}), Answered()}));
  EXPECT_EQ(Entry().PlusState, kPlusReader);
}

TEST_F(ClassifyFa, TwoFailuresMeanPlain) {
  AddScript({}, kPlusUnknown);
  EXPECT_FALSE(reader::Classify());
  ExpectTraffic(Times(2, Query({"read"})));
  EXPECT_EQ(Entry().PlusState, kPlainReader);
  EXPECT_EQ(Entry().LastLibErr, 0U);
  EXPECT_FALSE(reader::Classify());
  ExpectTraffic({});
}

TEST_F(ClassifyFa, SelectingIsTriedOnceMore) {
  AddReader(Reader::Plus(3), kPlusReader);
  EXPECT_TRUE(reader::SelectConfig(1));
  const Lines good = FrameLines("09 81 01 00", {"read 09", "read 81 01 00 00 00 00 00", "read 90 00"});
  ExpectTraffic(good);
  EXPECT_EQ(reader->state.active, 1U);

  line->faults.RefuseCommand({0x09, 0x81}, 1);
  EXPECT_TRUE(reader::SelectConfig(1));
  ExpectTraffic(Join({FrameLines("09 81 01 00", {"read 6D", "read 00"}), good}));

  EXPECT_FALSE(reader::SelectConfig(7));
  ExpectTraffic(Times(2, FrameLines("09 81 07 00", {"read 6A", "read 86"})));
  EXPECT_EQ(Entry().ActConfig, 7) << "the host stays on the new number";
  EXPECT_EQ(Entry().LastLibErr, 0U);
  Entry().ActConfig = 0;
}

TEST_F(ClassifyFa, SelectingIsForPlusReaders) {
  AddReader(Reader::Plus(3), kPlainReader);
  EXPECT_FALSE(reader::SelectConfig(1));
  EXPECT_EQ(Entry().ActConfig, 0);
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
