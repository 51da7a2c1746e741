// The stored banks of a plus reader.
#include <functional>
#include <string>
#include <vector>

#include "api.h"
#include "reader/product.h"
#include "tests/support/dirty.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class Banks : public Bench {
 protected:
  void Use(std::shared_ptr<Reader> model) { reader = Connected(std::move(model)); }
  static tsDevEntry& Entry() { return DevTable[0]; }

  std::shared_ptr<Reader> reader;
};

Lines Moved(const std::string& from, const std::string& to) {
  const std::string command = "89 82 " + from + ' ' + to + " 00 FF";
  return {"set " + command, "get " + command, "sleep 100"};
}

TEST_F(Banks, EachNameIsAMove) {
  Use(Reader::Plus(2));
  auto& configurations = reader->state.configurations;
  configurations[1].user.blocks[0][4] = 50;
  EXPECT_EQ(ResetUserDflts(), 1U);
  ExpectTraffic(Moved("02", "01"));
  EXPECT_EQ(configurations[1].working.blocks[0][4], 50);
  configurations[0].working.blocks[0][4] = 60;
  EXPECT_EQ(SaveUserDflts(), 1U);
  ExpectTraffic(Moved("01", "02"));
  EXPECT_EQ(configurations[0].user.blocks[0][4], 60);
  configurations[0].plus.blocks[0][4] = 70;
  EXPECT_EQ(tavlynPlusDefaults(), 1U);
  ExpectTraffic(Join({Moved("03", "02"), Moved("03", "01")}));
  EXPECT_EQ(configurations[0].user.blocks[0][4], 70);
  EXPECT_EQ(configurations[0].working.blocks[0][4], 70);
  EXPECT_EQ(Entry().CfgSlot[0][field::IDBitCnts_iTotalBitCnt], 26) << "the mirror is not read again";
}

TEST_F(Banks, TheFirstMoveToThePlusDefaultsIsNotAnsweredFor) {
  Use(Reader::Plus(1));
  reader->faults.RefuseReply({0x89, 0x82, 3, 2}, 1);
  EXPECT_EQ(tavlynPlusDefaults(), 1U);
  ExpectTraffic(Join({{"set 89 82 03 02 00 FF", "get refused"}, Moved("03", "01")}));
  reader->faults.RefuseReply({0x89, 0x82, 3, 1}, 1);
  EXPECT_EQ(tavlynPlusDefaults(), 0U);
  ExpectTraffic(Join({Moved("03", "02"), {"set 89 82 03 01 00 FF", "get refused"}}));
}

TEST_F(Banks, NumbersAreCutToThreeBits) {
  Use(Reader::Plus(1));
  EXPECT_EQ(PlusBlockMove(9, 10), 1U);
  ExpectTraffic(Moved("01", "02"));
  EXPECT_EQ(PlusBlockMove(-7, 0x7FF9), 1U);
  ExpectTraffic(Moved("01", "01"));
  EXPECT_EQ(PlusBlockMove(8, 7), 1U) << "the answer is not looked at";
  ExpectTraffic({"set 89 82 00 07 00 FF", "get 00", "sleep 100"});
  reader->faults.GarbleAt(reader->faults.Exchanges() + 2);
  EXPECT_EQ(PlusBlockMove(1, 2), 1U);
  ExpectTraffic({"set 89 82 01 02 00 FF", "get", "sleep 100"});
}

TEST_F(Banks, Failures) {
  Use(Reader::Plus(1));
  StartTrace();
  const std::vector<std::function<std::uint32_t()>> moves = {
      ResetUserDflts, SaveUserDflts, tavlynPlusDefaults, [] { return PlusBlockMove(1, 3); }};
  for (const auto& move : moves) {
    Entry().LastLibErr = 4;
    reader->faults.RefuseReply({0x89, 0x82}, 2);
    EXPECT_EQ(move(), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x1000004U) << "joins what stands there";
    reader->faults.Restart();
    Entry().LastLibErr = 4;
    reader->faults.RefuseCommand({0x89, 0x82}, 12);
    EXPECT_EQ(move(), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x202U) << "that of the channel, no bit of its own";
    reader->faults.Restart();
    Entry().LastLibErr = 4;
    ForgetTraffic();
    EXPECT_EQ(move(), 1U);
    EXPECT_EQ(GetLastLibErr(), 4U);
  }
  ExpectTrace({});
}

TEST_F(Banks, AFailedMoveDoesNotWait) {
  Use(Reader::Plus(1));
  reader->faults.RefuseReply({0x89, 0x82}, 1);
  EXPECT_EQ(PlusBlockMove(1, 2), 0U);
  ExpectTraffic({"set 89 82 01 02 00 FF", "get refused"});
  reader->faults.RefuseCommand({0x89, 0x82}, 6);
  EXPECT_EQ(PlusBlockMove(1, 2), 0U);
  ExpectTraffic(Refused("89 82 01 02 00 FF"));
}

TEST_F(Banks, OnlyAPlusReaderHasThem) {
  Use(Reader::Plus(1));
  for (const std::uint32_t state : {kPlainReader, kPlusUnknown}) {
    Entry().PlusState = state;
    EXPECT_EQ(PlusBlockMove(1, 2), 0U);
    EXPECT_EQ(ResetUserDflts(), 0U);
    EXPECT_EQ(SaveUserDflts(), 0U);
    EXPECT_EQ(tavlynPlusDefaults(), 0U);
  }
  ExpectTraffic({});
}

class BanksFa : public SerialBench {};

// Two bytes more than any other frame, and five data bytes.
Lines MovedFa(const std::string& numbers) {
  return FrameLines("09 82 " + numbers + " 00 FF",
                    {"read 09", "read 82 " + numbers + " 00 00", "read 90 00"});
}

TEST_F(BanksFa, AMoveIsALongerFrame) {
  AddReader(Reader::Plus(1), kPlusReader);
  EXPECT_EQ(PlusBlockMove(9, 10), 1U);
  ExpectTraffic(Join({MovedFa("01 02"), {"sleep 100"}}));
  EXPECT_EQ(tavlynPlusDefaults(), 1U);
  ExpectTraffic(Join({MovedFa("03 02"), {"sleep 100"}, MovedFa("03 01"), {"sleep 100"}}));
}

TEST_F(BanksFa, AMoveIsTriedTwice) {
  AddReader(Reader::Plus(1), kPlusReader);
  Entry().LastLibErr = 4;
  const Lines refused = FrameLines("09 82 01 02 00 FF", {"read 6D", "read 00"});
  line->faults.RefuseCommand({0x09, 0x82}, 1);
  EXPECT_EQ(PlusBlockMove(1, 2), 1U);
  ExpectTraffic(Join({refused, MovedFa("01 02"), {"sleep 100"}}));
  line->faults.RefuseReply({0x09, 0x82}, 1);
  EXPECT_EQ(PlusBlockMove(1, 2), 1U);
  ExpectTraffic(Join({FrameLines("09 82 01 02 00 FF", {"read"}), MovedFa("01 02"), {"sleep 100"}}));
  line->faults.RefuseCommand({0x09, 0x82}, 2);
  EXPECT_EQ(PlusBlockMove(1, 2), 0U);
  ExpectTraffic(Join({refused, refused}));
  EXPECT_EQ(GetLastLibErr(), 4U) << "no word over serial";
}

}  // namespace
}  // namespace tavlyn::test
