// Card type and priority of a configuration, set on the host and sent to the reader.
#include <string>

#include "api.h"
#include "reader/configuration.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class CardPriority : public BesideReader {
 protected:
  void Use(std::shared_ptr<Reader> model) { reader = Connected(std::move(model)); }

  std::shared_ptr<Reader> reader;
};

TEST_F(CardPriority, IsSetOnTheHostAlone) {
  Use(Reader::Plus(2));
  for (const int priority : {1, -1, 2, 0x100, -32768}) {
    EXPECT_EQ(SetCardTypePriority(0x12F4, static_cast<std::int16_t>(priority)), 1U);
    EXPECT_EQ(GetCardType(), 0x12F4) << "no bit of it is dropped";
    EXPECT_EQ(GetCardPriority(), 1) << priority;
  }
  EXPECT_EQ(SetCardTypePriority(0xFFFF, 0), 1U);
  EXPECT_EQ(GetCardType(), 0xFFFF);
  EXPECT_EQ(GetCardPriority(), 0);
  EXPECT_EQ(Entry().CfgSlot[1].CardType, 0xF004) << "of the active configuration alone";
  EXPECT_EQ(DirtyOf(Entry(), Entry().CfgSlot[0]), 0U);
  ExpectTraffic({});
}

TEST_F(CardPriority, NeedsAPlusReader) {
  Use(Reader::Plus(1));
  SetUnsupportedProductErrorCode(0x8001);
  const auto refused = [] {
    EXPECT_EQ(SetCardTypePriority(0x1234, 1), 0U);
    EXPECT_EQ(Entry().CfgSlot[0].CardType, 0xEF04);
  };
  Entry().PlusState = kPlainReader;
  refused();
  Entry().PlusState = kPlusUnknown;
  refused();
}

TEST_F(CardPriority, GoesOutAsACommandWithData) {
  Use(Reader::Plus(1));
  Entry().LastLibErr = 5;
  EXPECT_EQ(SetCardTypePriority(0xABCD, 1), 1U);
  Entry().CfgSlot[0].CardPriority = 0x8000;
  EXPECT_TRUE(reader::WriteCardType());
  ExpectTraffic({"set 84", "set 00 CD AB 01", "sleep 10"});
  EXPECT_EQ(reader->state.Active().stored.cardType, 0xABCD);
  EXPECT_EQ(Entry().LastLibErr, 5U);
  Entry().CfgSlot[0].CardPriority = 0;
  EXPECT_TRUE(reader::WriteCardType());
  ExpectTraffic({"set 84", "set 00 CD AB", "sleep 10"});
}

TEST_F(CardPriority, AFailureOfEitherReport) {
  Use(Reader::Plus(1));
  Entry().LastLibErr = 0;
  reader->faults.RefuseCommand({0x84}, 6);
  EXPECT_FALSE(reader::WriteCardType());
  ExpectTraffic(Refused("84"));
  EXPECT_EQ(GetLastLibErr(), 0x20202U);
  reader->faults.Restart();
  reader->faults.RefuseAt(2, 6);
  EXPECT_FALSE(reader::WriteCardType());
  ExpectTraffic(Join({{"set 84"}, Refused("00 04 EF 01")}));
  EXPECT_EQ(GetLastLibErr(), 0x20202U);
}

TEST_F(CardPriority, APlainReaderIsNotTold) {
  Use(Reader::Plus(1));
  for (const std::uint32_t state : {kPlainReader, kPlusUnknown}) {
    Entry().PlusState = state;
    EXPECT_FALSE(reader::WriteCardType());
  }
  ExpectTraffic({});
}

class CardPriorityFa : public BesideLine {};

TEST_F(CardPriorityFa, GoesToAnyReaderAndIsTriedTwice) {
  AddReader(Reader::Plus(1), kPlainReader);
  Entry().CfgSlot[0].CardType = 0xABCD;
  Entry().CfgSlot[0].CardPriority = 7;
  const Lines sent = FrameLines("81 04 00 08", {"read 81", "write 00 CD AB 01 00 00 00 00", "read 90 00"});
  const Lines refused = FrameLines("81 04 00 08", {"read 6D", "read 00"});
  EXPECT_TRUE(reader::WriteCardType());
  ExpectTraffic(sent);
  line->faults.RefuseCommand({0x81, 0x04}, 1);
  EXPECT_TRUE(reader::WriteCardType());
  ExpectTraffic(Join({refused, sent}));
  line->faults.RefuseCommand({0x81, 0x04}, 2);
  EXPECT_FALSE(reader::WriteCardType());
  ExpectTraffic(Join({refused, refused}));
  EXPECT_EQ(GetLastLibErr(), 0U);
}

}  // namespace
}  // namespace tavlyn::test
