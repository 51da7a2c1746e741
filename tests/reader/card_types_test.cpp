// The configurations of a plus reader on the host, and the card types it knows.
#include <numeric>
#include <vector>

#include "api.h"
#include "reader/configuration.h"
#include "tests/support/beside.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

class CardTypes : public BesideReader {
 protected:
  void Use(std::shared_ptr<Reader> model) {
    reader = Connected(std::move(model));
    Entry().CardTypeList.fill(0x1111);
  }
  static std::vector<std::uint16_t> Listed() {
    const auto& list = Entry().CardTypeList;
    const auto end = std::find(list.begin(), list.end(), std::uint16_t{0});
    EXPECT_TRUE(std::all_of(end, list.end(), [](std::uint16_t type) { return type == 0; }));
    return {list.begin(), end};
  }
  std::shared_ptr<Reader> reader;
};

TEST_F(CardTypes, AListEndsAtItsFirst0) {
  Use(Reader::Plus(1));
  reader->state.cardTypes = {0xEF04, 0xF0F4, 0xF102, 0xFA01};
  reader::ReadCardTypeList();
  ExpectTraffic({"set 89 04", "get 04 EF F4 F0 02 F1 01 FA", "set 89 04 01", "get 00"});
  EXPECT_EQ(Listed(), (std::vector<std::uint16_t>{0xEF04, 0xF004, 0xF102, 0xFA01}));
  reader->faults.AnswerWith({0x89, 0x04}, {1, 0, 0, 0, 3, 0, 4, 0}, 1);
  reader::ReadCardTypeList();
  EXPECT_EQ(Listed(), (std::vector<std::uint16_t>{1})) << "what stands behind the 0 does not count";
}

TEST_F(CardTypes, AnEmptyListIsAskedOnce) {
  Use(Reader::Plus(1));
  reader->state.cardTypes.clear();
  reader::ReadCardTypeList();
  ExpectTraffic({"set 89 04", "get 00"});
  EXPECT_TRUE(Listed().empty());
}

TEST_F(CardTypes, ATypeOfDroppedBitsAloneIsStoredAs0) {
  Use(Reader::Plus(1));
  reader->state.cardTypes = {1, 0x0050, 3};
  reader::ReadCardTypeList();
  EXPECT_EQ(Entry().CardTypeList[0], 1);
  EXPECT_EQ(Entry().CardTypeList[1], 0);
  EXPECT_EQ(Entry().CardTypeList[2], 3);
  EXPECT_EQ(IsCardTypeInList(3), 1U) << "all entries are compared";
}

// Its fetches are a byte short; that byte of the caller's buffer does not change.
class ShortOfAByte final : public sim::HidDevice {
 public:
  explicit ShortOfAByte(std::shared_ptr<Reader> whole) : whole_(std::move(whole)) {}
  [[nodiscard]] const sim::HidIdentity& Identity() const override { return whole_->Identity(); }
  bool SetFeature(std::span<const std::uint8_t> payload) override { return whole_->SetFeature(payload); }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    Bytes reply(payload.size());
    if (!whole_->GetFeature(reply)) return false;
    std::copy_n(reply.begin(), reply.size() - (cuts ? 1 : 0), payload.begin());
    cuts = true;
    return true;
  }
  bool TakeInput(Bytes& report) override { return whole_->TakeInput(report); }
  [[nodiscard]] bool Present() const override { return whole_->Present(); }

  bool cuts = false;  // from the next fetch but one

 private:
  std::shared_ptr<Reader> whole_;
};

TEST_F(CardTypes, AByteThatAPageLacksIs0) {
  const auto whole = Reader::Plus(1);
  whole->state.cardTypes = {0x0101, 0x0102, 0x0103, 0x0104, 0x0105, 0x0106, 0x0107, 0x0108};
  const auto cut = std::make_shared<ShortOfAByte>(whole);
  Plug(cut, "short");
  shared.DevCnt = 1;
  Entry().hDev = host.hid.Open("short", platform::OpenMode::kShared);
  reader::ReadCardTypeList();
  EXPECT_EQ(Listed(), (std::vector<std::uint16_t>{0x0101, 0x0102, 0x0103, 0x0104, 0x0105, 0x0106, 0x0107, 8}))
      << "nothing of the page before";
}

TEST_F(CardTypes, AListThatNeverEndsHas256Pages) {
  Use(Reader::Plus(1));
  reader->state.cardTypes.resize(2000);
  std::iota(reader->state.cardTypes.begin(), reader->state.cardTypes.end(), std::uint16_t{0x0101});
  for (auto& type : reader->state.cardTypes) type |= 0x0100;
  reader::ReadCardTypeList();
  EXPECT_EQ(TrafficOf(host.transcript.Events()).size(), 512U);
  EXPECT_NE(Entry().CardTypeList[1023], 0);
  EXPECT_EQ(Entry().CardTypeList[1024], 0);
}

TEST_F(CardTypes, APageThatCannotBeSentIsSkipped) {
  Use(Reader::Plus(1));
  reader->faults.RefuseCommand({0x89, 0x04, 0}, 6);
  reader::ReadCardTypeList();
  ExpectTraffic(Join({Times(6, {"set 89 04 refused", "sleep 80"}), {"set 89 04 01", "get 01 7D"}}));
  EXPECT_EQ(Listed(), (std::vector<std::uint16_t>{0x7D01}));
}

TEST_F(CardTypes, AReaderThatTakesNoPageIsTriedForAllOfThem) {
  Use(Reader::Plus(1));
  reader->faults.RefuseCommand({0x89, 0x04});
  reader::ReadCardTypeList();
  EXPECT_EQ(TrafficOf(host.transcript.Events()).size(), 256U * 12U);
  EXPECT_EQ(Slept(), 256U * 480U);
  EXPECT_TRUE(Listed().empty());
}

TEST_F(CardTypes, ALostPageEndsTheList) {
  Use(Reader::Plus(1));
  Entry().LastLibErr = 5;
  reader->faults.RefuseReply({0x89, 0x04, 1}, 1);
  reader::ReadCardTypeList();
  ExpectTraffic({"set 89 04", "get", "set 89 04 01", "get refused"});
  EXPECT_EQ(Listed().size(), 4U) << "what was read stays";
  EXPECT_EQ(Entry().LastLibErr, 5U);
}

TEST_F(CardTypes, AnUnknownListRejectsNothing) {
  Use(Reader::Plain());
  Entry().CardTypeList.fill(0);
  EXPECT_EQ(IsCardTypeInList(0x1234), 1U);
  EXPECT_EQ(IsCardTypeInList(-1), 1U);
}

TEST_F(CardTypes, BitsAreComparedButForFour) {
  Use(Reader::Plus(1));
  Entry().CardTypeList.fill(0);
  Entry().CardTypeList[0] = 0xFA01;
  Entry().CardTypeList[1024] = 0x1204;
  EXPECT_EQ(IsCardTypeInList(0x1234), 1U);
  EXPECT_EQ(IsCardTypeInList(0x1204), 1U);
  EXPECT_EQ(IsCardTypeInList(0x1205), 0U);
  EXPECT_EQ(IsCardTypeInList(static_cast<std::int16_t>(0xFAF1)), 1U);
  EXPECT_EQ(IsCardTypeInList(0x0100), 0U);
  ExpectTraffic({});
}

TEST_F(CardTypes, ATypeThatRestrictsNothingIsAlwaysKnown) {
  for (const std::int16_t type : {std::int16_t{0}, std::int16_t{0xF0}, std::int16_t{0x50}}) {
    EXPECT_EQ(IsCardTypeInList(type), 1U) << "with no device";
  }
  EXPECT_EQ(IsCardTypeInList(0x1234), 0U);
  Use(Reader::Plus(1));
  Entry().ProductKind = kMagstripe;
  EXPECT_EQ(IsCardTypeInList(0xF0), 1U);
  EXPECT_EQ(IsCardTypeInList(0x1234), 0U);
  Entry().ProductKind = kReader;
}

TEST_F(CardTypes, TheConfigurationsOfAPlusReader) {
  Use(Reader::Plus(3));
  EXPECT_EQ(GetMaxConfig(), 2);
  EXPECT_EQ(GetActConfig(), 0);
  EXPECT_EQ(GetCardType(), 0xEF04);
  EXPECT_EQ(GetCardPriority(), 1);
  EXPECT_EQ(SetActConfig(2), 1U);
  EXPECT_EQ(GetActConfig(), 2);
  EXPECT_EQ(GetCardType(), 0xF104);
  EXPECT_EQ(GetCardPriority(), 0);
  EXPECT_EQ(SetActConfig(3), 0U);
  EXPECT_EQ(SetActConfig(255), 0U);
  EXPECT_EQ(GetActConfig(), 2);
  Entry().CfgSlot[2].CardPriority = 0x8000;
  EXPECT_EQ(GetCardPriority(), -32768) << "sign-extended";
  EXPECT_EQ(reader->state.active, 0U) << "the reader is not told";
  ExpectTraffic({});
}

TEST_F(CardTypes, OnlyAPlusReaderHasThem) {
  Use(Reader::Plus(3));
  EXPECT_EQ(SetActConfig(2), 1U);
  for (const std::uint32_t state : {kPlainReader, kPlusUnknown}) {
    Entry().PlusState = state;
    EXPECT_EQ(GetMaxConfig(), 0);
    EXPECT_EQ(GetActConfig(), 0);
    EXPECT_EQ(SetActConfig(0), 0U);
    EXPECT_EQ(GetCardType(), -1);
    EXPECT_EQ(GetCardPriority(), -1);
  }
  EXPECT_EQ(Entry().ActConfig, 2);
}

class CardTypesFa : public BesideLine {
 protected:
  void Read(std::deque<Bytes> replies) {
    AddScript(std::move(replies), kPlusReader);
    Entry().CardTypeList.fill(0x1111);
    shared.reader.StatusWord = 0x5555;
    reader::ReadCardTypeList();
  }
  static Lines Page(const std::string& number, const Lines& rest) {
    return FrameLines("09 04 " + number + " 00", Join({{"sleep 10"}, rest}));
  }
};

const Bytes kPage = {0x09, 9, 9, 1, 1, 2, 2, 0xF3, 3, 4, 4, 0x90, 0x00};
const Bytes kLastPage = {0x09, 9, 9, 5, 5, 0, 0, 6, 6, 7, 7, 0x90, 0x00};

TEST_F(CardTypesFa, APageIsOneReadOfThirteenBytes) {
  Read({kPage, kLastPage});
  ExpectTraffic(Join({Page("00", {"read 09 09 09 01 01 02 02 F3 03 04 04 90 00", "sleep 2"}),
                      Page("01", {"read 09 09 09 05 05 00 00 06 06 07 07 90 00", "sleep 2"})}));
  EXPECT_EQ(shared.reader.StatusWord, 0x9000U);
  const std::array<std::uint16_t, 6> expected = {0x0101, 0x0202, 0x0303, 0x0404, 0x0505, 0};
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), Entry().CardTypeList.begin()));
}

TEST_F(CardTypesFa, AnotherStatusEndsTheList) {
  Bytes refused = kPage;
  refused[11] = 0x6A;
  Read({refused, kPage});
  ExpectTraffic(Page("00", {"read", "sleep 10"}));
  EXPECT_EQ(shared.reader.StatusWord, 0x6A00U);
  EXPECT_EQ(Entry().CardTypeList[0], 0);
}

TEST_F(CardTypesFa, AShortOrStrangeReplyEndsTheList) {
  Read({Bytes(kPage.begin(), kPage.end() - 1)});
  ExpectTraffic(Page("00", {"read"}));
  EXPECT_EQ(shared.reader.StatusWord, 0U);
  EXPECT_EQ(Entry().CardTypeList[0], 0);
  Bytes strange = kPage;
  strange[0] = 0x0A;
  Read({strange});
  ExpectTraffic(Page("00", {"read"}));
  EXPECT_EQ(Entry().CardTypeList[0], 0);
  Read({});
  ExpectTraffic(Page("00", {"read"}));
}

TEST_F(CardTypesFa, AShortWriteEndsTheList) {
  AddScript({kPage}, kPlusReader);
  com->writeLimit = 0;
  reader::ReadCardTypeList();
  ExpectTraffic({"flush", "write"});
  com->writeLimit = 3;
  reader::ReadCardTypeList();
  ExpectTraffic({"flush", "write FA", "sleep 50", "write 09 04 00"});
}

TEST_F(CardTypesFa, InSocketModeThereIsNoPauseBehindTheClassByte) {
  AddScript({kLastPage}, kPlusReader);
  Port().SetIpAddr({});
  reader::ReadCardTypeList();
  ExpectTraffic({"flush", "purge", "write FA", "write 09 04 00 00", "sleep 10", "read", "sleep 2"});
}

TEST_F(CardTypesFa, WithoutAnOpenPortTheListIsEmpty) {
  AddScript({kPage}, kPlusReader);
  Entry().CardTypeList.fill(0x1111);
  shared.reader.StatusWord = 0x5555;
  Port().Close();
  reader::ReadCardTypeList();
  EXPECT_EQ(Entry().CardTypeList[0], 0);
  EXPECT_EQ(shared.reader.StatusWord, 0U);
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
