// Swipes: tracks, fields of tracks, and what becomes an ID.
#include <algorithm>
#include <optional>
#include <random>
#include <span>

#include "core/state.h"
#include "tests/magstripe/model_bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;

constexpr std::size_t kBuffer = 257;
constexpr const char* kTrack1 = " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_";
constexpr const char* kTracks23 = "0123456789:;<=>?";

class MagModelTracks : public MagModelBench {
 protected:
  void SetUp() override {
    MagModelBench::SetUp();
    Connect();
  }
  // The track as the reader holds it: a header and what follows it.
  void Hold(std::size_t track, Bytes bytes) { magstripe->state.tracks.at(track - 1) = std::move(bytes); }
  static Bytes Track(std::uint16_t track, std::uint16_t convert) {
    const std::uint8_t* bytes = sorbaneGetTrackData(track, convert);
    return bytes == nullptr ? Bytes{} : Bytes(bytes, bytes + kBuffer);
  }
  static Bytes Field(std::uint16_t track, std::uint16_t field, std::uint16_t offset, std::uint16_t length,
                     std::uint16_t term, std::uint16_t convert) {
    const std::uint8_t* bytes = sorbaneGetTrackFieldOffset(track, field, offset, length, term, convert);
    return bytes == nullptr ? Bytes{} : Bytes(bytes, bytes + kBuffer);
  }
  static Bytes Filled(Bytes bytes, std::uint8_t with = 0) {
    bytes.resize(kBuffer, with);
    return bytes;
  }
  static Bytes Filled(const std::string& text, std::uint8_t with = 0) {
    return Filled(Bytes(text.begin(), text.end()), with);
  }
  static Bytes WithHeader(std::uint8_t header, const std::string& text) {
    Bytes bytes(text.begin(), text.end());
    bytes.insert(bytes.begin(), header);
    return Filled(bytes);
  }
};

TEST_F(MagModelTracks, ASwipeIsReadTrackByTrack) {
  SwipeCard("%B12^DOE/J^99?;4000001234567899=3012?+59001=7?");
  EXPECT_EQ(sorbaneIsDataAvailable(), 7U);
  const std::string first = "%B12^DOE/J^99?";
  const Bytes one = Track(1, 1);
  EXPECT_EQ(one[0], first.size() + 1) << "with its LRC";
  EXPECT_EQ(std::string(one.begin() + 1, one.begin() + 1 + static_cast<int>(first.size())), first);
  const Bytes raw = Track(1, 0);
  EXPECT_EQ(one[15], sim::CheckCharacter(std::span(raw).subspan(1, 14)) + 0x20);
  const std::string second = ";4000001234567899=3012?";
  const Bytes two = Track(2, 1);
  EXPECT_EQ(std::string(two.begin() + 1, two.begin() + 1 + static_cast<int>(second.size())), second);
  const Bytes three = Track(3, 0);
  EXPECT_EQ(three[1], 0x0B);
  EXPECT_EQ(three[7], 0x0D);
  EXPECT_EQ(sorbaneIsDataAvailable(), 7U) << "reading tracks leaves it";
  EXPECT_EQ(sorbaneClearDataAvailable(), 1U);
  EXPECT_EQ(sorbaneIsDataAvailable(), 0U);
}

TEST_F(MagModelTracks, OnlyTheBlocksThatTheHeaderNamesAreAsked) {
  struct Row {
    std::uint16_t track;
    std::uint8_t header;
    std::size_t blocks;
  };
  for (const Row& row : {Row{1, 0, 1},
                         {1, 9, 1},
                         {1, 10, 2},
                         {1, 79, 8},
                         {1, 89, 9},
                         {1, 127, 9},
                         {2, 9, 1},
                         {2, 39, 4},
                         {2, 40, 5},
                         {2, 127, 5},
                         {3, 0x80, 1},
                         {3, 0x8A, 2},
                         {3, 107, 11},
                         {3, 127, 11}}) {
    SCOPED_TRACE(std::to_string(row.track) + ' ' + std::to_string(row.header));
    Bytes held(128, 0x05);
    held[0] = row.header;
    Hold(row.track, held);
    ForgetTraffic();
    const Bytes track = Track(row.track, 0);
    Lines expected;
    for (std::size_t block = 0; block < row.blocks; ++block) {
      expected.push_back("G" + std::to_string(row.track) + "0123456789A"[block] + "00");
    }
    EXPECT_EQ(Told(), Exchanged(expected));
    held.resize(10 * row.blocks);
    EXPECT_EQ(track, Filled(held));
  }
}

TEST_F(MagModelTracks, AnyOtherTrackIsEmpty) {
  SwipeCard("%A?;1?+2?");
  for (const int number : {0, 4, 257, 65535}) {
    const auto track = static_cast<std::uint16_t>(number);
    EXPECT_EQ(Track(track, 0), Filled(Bytes{}));
    EXPECT_EQ(Track(track, 1), Filled(Bytes{}));
  }
  ExpectTraffic({});
}

TEST_F(MagModelTracks, ConversionUsesTheTracksAlphabetAndEndsWithItsData) {
  Bytes all{64};
  for (unsigned value = 0; value < 64; ++value)
    all.push_back(static_cast<std::uint8_t>(value | (value % 2) << 7U));
  Hold(1, all);
  EXPECT_EQ(Track(1, 1), WithHeader(64, kTrack1));
  Bytes sixteen{16};
  for (unsigned value = 0; value < 16; ++value) sixteen.push_back(static_cast<std::uint8_t>(value | 0xA0));
  for (const std::uint16_t track : {std::uint16_t{2}, std::uint16_t{3}}) {
    Hold(track, sixteen);
    EXPECT_EQ(Track(track, 1), WithHeader(16, kTracks23));
    EXPECT_EQ(Track(track, 0), Filled(sixteen));
  }
  Hold(2, {0x82, 1, 2, 3});
  Bytes flagged = WithHeader(0x82, "12");
  flagged[3] = 3;
  EXPECT_EQ(Track(2, 2), flagged) << "what lies behind the count is left as it is";
}

TEST_F(MagModelTracks, AnEmptyHeaderConvertsNothing) {
  for (const std::uint8_t header : {std::uint8_t{0}, std::uint8_t{0x80}}) {
    Hold(2, {header, 1, 2, 3});
    EXPECT_EQ(Track(2, 1), Filled(Bytes{header, 1, 2, 3}));
  }
}

TEST_F(MagModelTracks, AFailedBlockEmptiesTheTrack) {
  Bytes held(91, 0x11);
  held[0] = 90;
  Hold(1, held);
  for (int exchange = 1; exchange <= 18; ++exchange) {
    for (const int kind : {0, 1, 2}) {
      SCOPED_TRACE(exchange);
      magstripe->faults.Restart();
      if (kind == 0) magstripe->faults.RefuseAt(exchange, exchange % 2 == 1 ? 6 : 1);
      if (kind == 1) magstripe->faults.VanishAt(exchange);
      if (kind == 2) magstripe->faults.GarbleAt(exchange);
      EXPECT_EQ(Track(1, 1), Filled(Bytes{}));
      const std::size_t asked = Commands().size();
      if (kind == 0 && exchange % 2 == 0) {
        EXPECT_EQ(asked, static_cast<std::size_t>(exchange) / 2) << "no block after it";
      }
    }
  }
  EXPECT_EQ(GetLastLibErr(), 0x202U) << "of the reports that could not be sent";
}

TEST_F(MagModelTracks, RepliesShorterOrOtherThanABlock) {
  Hold(2, {12, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
  AnswerTo("G20", "R200C0102");
  EXPECT_EQ(Track(2, 0), Filled(Bytes{12, 1, 2, 0, 0, 0, 0, 0, 0, 0, 10, 11, 12}));
  AnswerTo("G21", "R21");
  EXPECT_EQ(Track(2, 0), Filled(Bytes{12, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
  AnswerTo("G20", "R");
  EXPECT_EQ(Track(2, 0), Filled(Bytes{})) << "no header: one block";
  AnswerTo("G20", "R2004G1Z207 0A0B");
  EXPECT_EQ(Track(2, 0), Filled(Bytes{4, 0, 0, 7})) << "no number reads as 0, a blank ends it";
  AnswerTo("G20", "R20040abC1y/A");
  EXPECT_EQ(Track(2, 0), Filled(Bytes{4, 0x0A, 0xBC, 1}));
}

TEST_F(MagModelTracks, ByteByByte) {
  SwipeCard(";12?");
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 1, 4), 0U) << "nothing fetched yet";
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 1, 0), 5U);
  EXPECT_EQ(Commands(), (Lines{"G2000"}));
  Hold(2, {1, 9});
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 1, 1), ';');
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 1, 2), '1');
  EXPECT_EQ(sorbaneGetTrackData_BYTE(1, 0, 3), '2') << "the copy stays, whatever is asked for";
  EXPECT_EQ(sorbaneGetTrackData(3, 0)[0], 0);
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 1, 4), '?');
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 1, 254), 0U);
  ForgetTraffic();
  EXPECT_EQ(sorbaneGetTrackData_BYTE(1, 0, 255), 0U);
  EXPECT_EQ(sorbaneGetTrackData_BYTE(1, 0, 65535), 0U);
  ExpectTraffic({});
}

TEST_F(MagModelTracks, AFieldIsTakenFromThePlaceWhereItEnds) {
  Hold(2, {6, 0x0B, 0x01, 0x02, 0x0D, 0x05, 0x0F});
  EXPECT_EQ(Field(2, 1, 0, 8, 0xFF, 0), Filled(Bytes{0x0D, 0x05}));
  EXPECT_EQ(Field(2, 1, 0, 8, 0xFF, 1), Filled("=5", '0'));
  EXPECT_EQ(Field(2, 1, 0, 1, 0xFF, 0), Filled(Bytes{0x0D, 0x05})) << "any length but 0 is alike";
  EXPECT_EQ(Field(2, 1, 0, 0, 0xFF, 0), Filled(Bytes{}));
  EXPECT_EQ(Field(2, 1, 0, 8, 0x02, 0), Filled(Bytes{0x02}));
  EXPECT_EQ(Field(2, 1, 1, 8, 0xFF, 0), Filled(Bytes{0x0D}));
  EXPECT_EQ(Field(2, 2, 0, 8, 0xFF, 0), Filled(Bytes{0x0F}));
  EXPECT_EQ(Field(2, 3, 0, 8, 0xFF, 0), Filled(Bytes{})) << "the data ends";
  EXPECT_EQ(Field(2, 1, 9, 8, 0xFF, 0), Filled(Bytes{}));
  EXPECT_EQ(Field(2, 9, 0, 8, 0xFF, 1), Filled("", '0'));
  EXPECT_EQ(Field(1, 1, 0, 8, 0xFF, 1), Filled("", ' ')) << "nothing was read there";
  EXPECT_EQ(Field(4, 1, 0, 8, 0xFF, 1), Filled(Bytes{}));
}

// A field of a raw track, strictly by its rules: markers are counted from the first character on; the field
// begins offset characters after the last of them, unless that is a zero; it ends at term or at a marker that
// separates, and has that many bytes from there.
Bytes FieldByTheRules(const Bytes& track, bool first, int field, std::size_t offset, int length, int term) {
  const auto at = [&](std::size_t i) { return i < track.size() ? static_cast<std::int8_t>(track[i]) : 0; };
  const int a = first ? 0x15 : 0x0B;
  const int b = first ? 0x5F : 0x0F;
  const int c = first ? 0x3E : 0x0D;
  Bytes result;
  std::optional<std::size_t> start;
  int remaining = field;
  for (std::size_t i = 1; at(i) != 0 && !start; ++i) {
    if (at(i) == a || at(i) == b || at(i) == c) --remaining;
    if (remaining == 0 && at(i + 1 + offset) != 0) start = i + 1 + offset;
  }
  for (std::size_t q = start.value_or(0); start && at(q) != 0; ++q) {
    if (at(q) != static_cast<std::int8_t>(term) && length != 0 && at(q) != b && at(q) != c) continue;
    for (std::size_t i = 0; i < q - *start; ++i) result.push_back(static_cast<std::uint8_t>(at(q + i)));
    break;
  }
  return result;
}

TEST_F(MagModelTracks, FieldsOfAnyTrackFollowTheRules) {
  std::mt19937 random(7);
  const auto below = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
  int found = 0;
  for (int round = 0; round < 3000; ++round) {
    const auto track = static_cast<std::uint16_t>(1 + below(3));
    const std::array<std::uint8_t, 10> likely{0x15, 0x5F, 0x3E, 0x0B, 0x0F, 0x0D, 1, 2, 0x81, 0x7F};
    const auto count = static_cast<std::uint8_t>(1 + below(track == 2 ? 49 : 79));
    Bytes held{count};
    while (held.size() <= count) {
      held.push_back(below(3) == 0 ? likely.at(below(10)) : static_cast<std::uint8_t>(1 + below(255)));
    }
    if (below(4) == 0) held[1 + below(count)] = 0;
    const auto field = static_cast<std::uint16_t>(below(6));
    const auto offset = static_cast<std::uint16_t>(below(5));
    const auto length = static_cast<std::uint16_t>(below(4));
    const auto term = static_cast<std::uint16_t>(1 + below(255));
    Hold(track, held);
    const Bytes expected = Filled(FieldByTheRules(Filled(held), track == 1, field, offset, length, term));
    found += expected == Filled(Bytes{}) ? 0 : 1;
    ASSERT_EQ(Field(track, field, offset, length, term, 0), expected)
        << sim::HexText(held) << " track " << track << " field " << field << " offset " << offset
        << " length " << length << " term " << term;
    Bytes text = expected;
    for (std::uint8_t& byte : text) {
      byte = static_cast<std::uint8_t>(track == 1 ? kTrack1[byte & 63U] : kTracks23[byte & 15U]);
    }
    ASSERT_EQ(Field(track, field, offset, length, term, 1), text);
    ForgetTraffic();
  }
  EXPECT_GT(found, 300);
}

TEST_F(MagModelTracks, AFieldNearTheEndOfTheBuffer) {
  Bytes held(110, 0x07);
  held[0] = 0x7F;
  held[108] = 0x0B;
  Hold(3, held);
  EXPECT_EQ(Field(3, 1, 0, 1, 0x07, 0), Filled(Bytes{}));
  EXPECT_EQ(Field(3, 1, 65535, 1, 0xFF, 0), Filled(Bytes{}));
  EXPECT_EQ(Field(3, 65535, 65535, 65535, 65535, 1), Filled("", '0'));
}

TEST_F(MagModelTracks, TheIdIsTheSelectedField) {
  EXPECT_EQ(sorbaneSetActiveID(2, 1, 0, 0xFF), 1U);
  SwipeCard(";12=34?");
  LetTimePass();
  ForgetTraffic();
  Bytes out(10, 0xEE);
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(GetActiveID(out.data(), 8), 8U);
  EXPECT_EQ(Commands(), (Lines{"G2000", "CD0"}));
  EXPECT_EQ(EntryOfActDev().SorbaneBlock.Cfg.IdSel.Length, 8);
  EXPECT_EQ(std::string(out.begin(), out.begin() + 8), "=3000000");
  EXPECT_EQ(out[8], 0xEE);
  EXPECT_EQ(sorbaneIsDataAvailable(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  LetTimePass();
  EXPECT_EQ(GetActiveID(out.data(), 0), 0U);
}

TEST_F(MagModelTracks, ALongBufferGetsTheWholePieceAndZeros) {
  EXPECT_EQ(sorbaneSetActiveID(2, 1, 0, 0xFF), 1U);
  SwipeCard(";12=34?");
  LetTimePass();
  Bytes out(300, 0xEE);
  EXPECT_EQ(GetActiveID(out.data(), 300), kBuffer);
  Bytes expected = Filled("=3", '0');
  expected.resize(300);
  EXPECT_EQ(out, expected);
}

TEST_F(MagModelTracks, TheSelectionAtStartFindsNothingButStillAnswers) {
  SwipeCard(";12=34?");
  LetTimePass();
  Bytes out(8, 0xEE);
  EXPECT_EQ(GetActiveID(out.data(), 8), 8U);
  EXPECT_EQ(std::string(out.begin(), out.end()), "00000000");
}

TEST_F(MagModelTracks, TheIdBeginsBehindTheSelectedOffset) {
  EXPECT_EQ(sorbaneSetActiveID(2, 1, 1, 0xFF), 1U);
  SwipeCard(";12=34?");
  LetTimePass();
  Bytes out(8, 0xEE);
  EXPECT_EQ(GetActiveID(out.data(), 8), 8U);
  EXPECT_EQ(std::string(out.begin(), out.end()), "=0000000");
}

TEST_F(MagModelTracks, TheSelectionAtStartIsATrackTwoWithoutSentinel) {
  Hold(2, {8, 0x01, 0x02, 0x03, 0x04, 0x0D, 0x05, 0x06, 0x07});
  LetTimePass();
  Bytes out(8, 0xEE);
  EXPECT_EQ(GetActiveID(out.data(), 8), 8U);
  EXPECT_EQ(std::string(out.begin(), out.end()), "=5600000");
}

TEST_F(MagModelTracks, TheLongIdDoesNotReachItsCaller) {
  EXPECT_EQ(sorbaneSetActiveID(2, 1, 0, 0xFF), 1U);
  SwipeCard(";12=34?");
  for (const std::int16_t length : {std::int16_t{8}, std::int16_t{32}, std::int16_t{40}}) {
    LetTimePass();
    ForgetTraffic();
    Bytes out(40, 0xEE);
    EXPECT_EQ(GetActiveID32(out.data(), length), static_cast<std::uint32_t>(std::min<int>(length, 32)));
    EXPECT_EQ(Commands(), (Lines{"G2000", "CD0"}));
    EXPECT_EQ(out, Bytes(40, 0xEE));
    EXPECT_EQ(getActiveID_byte(0), 0xEE) << "the caller's bytes took its place";
    EXPECT_EQ(EntryOfActDev().SorbaneBlock.Cfg.IdSel.Length, std::min<int>(length, 32));
  }
}

TEST_F(MagModelTracks, AnIdForCallersWithoutABuffer) {
  EXPECT_EQ(sorbaneSetActiveID(2, 1, 0, 0xFF), 1U);
  SwipeCard(";12=34?");
  LetTimePass();
  EXPECT_EQ(getActiveID(4), 4U);
  EXPECT_EQ(getActiveID_byte(0), '=');
  EXPECT_EQ(getActiveID_byte(1), '3');
  EXPECT_EQ(getActiveID_byte(3), '0');
  SwipeCard(";12=34?");
  LetTimePass();
  EXPECT_EQ(getActiveID32(20), 20U);
  EXPECT_EQ(getActiveID_byte(0), '=');
  EXPECT_EQ(getActiveID_byte(20), 0);
}

TEST_F(MagModelTracks, AnIdOfASwipeThatCannotBeFetched) {
  EXPECT_EQ(sorbaneSetActiveID(2, 1, 0, 0xFF), 1U);
  for (int exchange = 1; exchange <= 4; ++exchange) {
    SCOPED_TRACE(exchange);
    SwipeCard(";12=34?");
    LetTimePass();
    magstripe->faults.Restart();
    magstripe->faults.VanishAt(exchange);
    Bytes out(8, 0xEE);
    EXPECT_EQ(GetActiveID(out.data(), 8), 8U);
    EXPECT_EQ(std::string(out.begin(), out.end()), exchange <= 2 ? "00000000" : "=3000000");
    EXPECT_EQ(GetLastLibErr(), exchange == 4 ? 0U : 0x202U);
    magstripe->faults.Restart();
    magstripe->state.available = 0;
  }
}

TEST_F(MagModelTracks, SelectionsOutOfRangeChangeNothing) {
  EXPECT_EQ(sorbaneSetActiveID(2, 1, 0, 0xFF), 1U);
  for (const auto& [track, field, offset] : {std::array<std::uint16_t, 3>{0, 1, 0},
                                             {4, 1, 0},
                                             {1, 0, 0},
                                             {1, 51, 0},
                                             {1, 1, 101},
                                             {1, 65535, 0}}) {
    EXPECT_EQ(sorbaneSetActiveID(track, field, offset, 0), 0U);
  }
  EXPECT_EQ(sorbaneSetActiveID(3, 50, 100, 0), 1U);
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(sorbaneSetActiveID(1, 51, 0, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  LetTimePass();
  ForgetTraffic();
  Bytes out(4);
  GetActiveID(out.data(), 4);
  EXPECT_EQ(Commands().front(), "G3000") << "the last that was taken";
}

TEST_F(MagModelTracks, AQueuedId) {
  EXPECT_EQ(GetQueuedID_index(33), 0U);
  EXPECT_EQ(sorbaneSetActiveID(2, 1, 0, 0xFF), 1U);
  for (const char* card : {";12=34?", ";5=6?", ";7=8?"}) SwipeCard(card);
  ForgetTraffic();
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(GetQueuedID(0, 0), 32U);
  EXPECT_EQ(Commands(), (Lines{"G2000", "CD0"}));
  EXPECT_EQ(GetLastLibErr(), 0U);
  for (const std::int16_t index : {std::int16_t{0}, std::int16_t{1}, std::int16_t{31}}) {
    EXPECT_EQ(GetQueuedID_index(index), std::uint32_t{'='});
  }
  ExpectTraffic({});
  AnswerTo("GQ0", "RQ0?12345678");
  EXPECT_EQ(GetQueuedID_index(32), 0x3412U);
  EXPECT_EQ(GetQueuedID_index(33), 0x56U);
  EXPECT_EQ(GetQueuedID_index(32), 1U) << "one more swipe waits";
  EXPECT_EQ(GetQueuedID_index(33), 0U);
  AnswerTo("GQ0", "RQ0?01000700");
  EXPECT_EQ(GetQueuedID_index(32), 1U);
  AnswerTo("GQ0", "N");
  EXPECT_EQ(GetQueuedID_index(32), 0U);
  EXPECT_EQ(GetQueuedID_index(33), 0U) << "both are forgotten first";
  SetUnsupportedProductErrorCode(0x8001);
  for (const std::int16_t index : {std::int16_t{-1}, std::int16_t{34}}) {
    EXPECT_EQ(GetQueuedID_index(index), 0xFFFF8001U);
  }
}

}  // namespace
}  // namespace tavlyn::test
