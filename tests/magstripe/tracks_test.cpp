// Tracks and pieces of them: blocks, conversion, the ways of the extraction.
#include "tests/magstripe/stripe_bench.h"

namespace tavlyn::test {
namespace {

class StripeTracks : public StripeBench {
 protected:
  // A track of a header and raw characters, in as many blocks as it takes.
  void Swipe(int track, std::vector<std::uint8_t> data) {
    data.resize(110);
    for (std::size_t block = 0; block < 11; ++block) {
      std::string reply = "RT ";
      for (std::size_t byte = 0; byte < 10; ++byte) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02X", data[10 * block + byte]);
        reply += pair;
      }
      char name[8];
      std::snprintf(name, sizeof name, "G%d%zX00", track, block);
      stripe->replies[name] = reply;
    }
  }
  static std::vector<std::uint8_t> Bytes(const std::uint8_t* data, std::size_t count) {
    return {data, data + count};
  }
  static std::vector<std::uint8_t> Counted(std::uint8_t header, std::uint8_t first, std::size_t count) {
    std::vector<std::uint8_t> data{header};
    for (std::size_t at = 0; at < count; ++at) data.push_back(static_cast<std::uint8_t>(first + at));
    return data;
  }
  static bool AllFrom(const std::uint8_t* data, std::size_t from, std::uint8_t value) {
    return std::all_of(data + from, data + 257, [value](std::uint8_t byte) { return byte == value; });
  }
};

TEST_F(StripeTracks, FetchesTheBlocksThatTheHeaderTells) {
  Swipe(2, Counted(39, 1, 39));
  const std::uint8_t* data = sorbaneGetTrackData(2, 0);
  ExpectCommands({"G2000", "G2100", "G2200", "G2300"});
  EXPECT_EQ(data[0], 39);
  EXPECT_EQ(data[1], 1);
  EXPECT_EQ(data[39], 39);
  EXPECT_TRUE(AllFrom(data, 40, 0));
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(StripeTracks, HaveMostBlocksEach) {
  for (const auto& [track, blocks] : {std::pair{1, 9U}, {2, 5U}, {3, 11U}}) {
    Swipe(track, Counted(0x7F, 1, 109));
    sorbaneGetTrackData(static_cast<std::uint16_t>(track), 0);
    EXPECT_EQ(stripe->commands.size(), blocks) << track;
    stripe->commands.clear();
  }
  sorbaneGetTrackData(3, 0);
  EXPECT_EQ(stripe->commands.back(), "G3A00");
}

TEST_F(StripeTracks, OtherTracksAreEmptyAndNotAskedFor) {
  Swipe(2, Counted(9, 1, 9));
  sorbaneGetTrackData(2, 1);
  Forget();
  for (const std::uint16_t track : std::initializer_list<std::uint16_t>{0, 4, 65535})
    EXPECT_TRUE(AllFrom(sorbaneGetTrackData(track, 1), 0, 0));
  ExpectTraffic({});
}

TEST_F(StripeTracks, ALostBlockEmptiesTheTrack) {
  Swipe(1, Counted(60, 1, 60));
  stripe->lost = {"G1300"};
  EXPECT_TRUE(AllFrom(sorbaneGetTrackData(1, 1), 0, 0));
  ExpectCommands({"G1000", "G1100", "G1200", "G1300"});
}

TEST_F(StripeTracks, ConvertByTheTableOfTheTrack) {
  const std::string six = " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_";
  const std::string four = "0123456789:;<=>?";
  Swipe(1, Counted(64, 0x40, 64));
  EXPECT_EQ(Bytes(sorbaneGetTrackData(1, 1) + 1, 64), std::vector<std::uint8_t>(six.begin(), six.end()));
  for (const int number : {2, 3}) {
    const auto track = static_cast<std::uint16_t>(number);
    Swipe(track, Counted(16, 0xF0, 16));
    EXPECT_EQ(Bytes(sorbaneGetTrackData(track, 1) + 1, 16),
              std::vector<std::uint8_t>(four.begin(), four.end()));
    EXPECT_TRUE(AllFrom(sorbaneGetTrackData(track, 1), 17, 0));
  }
}

TEST_F(StripeTracks, AHeaderWithoutACountConvertsNothing) {
  for (const std::uint8_t header : {std::uint8_t{0}, std::uint8_t{0x80}}) {
    Swipe(2, Counted(header, 5, 9));
    EXPECT_EQ(Bytes(sorbaneGetTrackData(2, 1), 3), (std::vector<std::uint8_t>{header, 5, 6}));
    ExpectCommands({"G2000"});
  }
}

TEST_F(StripeTracks, ByteByByteFetchesAtZeroAlone) {
  Swipe(2, Counted(9, 1, 9));
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 0, 255), 0U);
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 0, 5), 0U) << "nothing fetched yet";
  ExpectTraffic({});
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 0, 0), 9U);
  ExpectCommands({"G2000"});
  sorbaneGetTrackData(4, 0);
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 0, 5), 5U) << "a copy";
  EXPECT_EQ(sorbaneGetTrackData_BYTE(2, 0, 254), 0U);
  ExpectCommands({});
}

// Start sentinel, two characters, separator, one character, end sentinel.
const std::vector<std::uint8_t> kShortSwipe = {6, 0x0B, 0x01, 0x02, 0x0D, 0x05, 0x0F};

TEST_F(StripeTracks, APieceIsTakenFromWhereItEnds) {
  Swipe(2, kShortSwipe);
  const std::uint8_t* piece = sorbaneGetTrackFieldOffset(2, 1, 0, 8, 255, 0);
  EXPECT_EQ(Bytes(piece, 3), (std::vector<std::uint8_t>{0x0D, 0x05, 0x00}));
  EXPECT_TRUE(AllFrom(piece, 2, 0));
  EXPECT_EQ(Bytes(sorbaneGetTrackFieldOffset(2, 2, 0, 8, 255, 0), 2), (std::vector<std::uint8_t>{0x0F, 0}));
}

TEST_F(StripeTracks, APieceStopsAtItsByteAndStartsAtItsOffset) {
  Swipe(3, {9, 0x0B, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x0F});
  EXPECT_EQ(Bytes(sorbaneGetTrackFieldOffset(3, 1, 0, 8, 3, 0), 3), (std::vector<std::uint8_t>{3, 4, 0}));
  EXPECT_EQ(Bytes(sorbaneGetTrackFieldOffset(3, 1, 2, 8, 5, 0), 3), (std::vector<std::uint8_t>{5, 6, 0}));
  EXPECT_EQ(Bytes(sorbaneGetTrackFieldOffset(3, 1, 2, 1, 6, 0), 4), (std::vector<std::uint8_t>{6, 7, 15, 0}))
      << "the length itself is not looked at";
}

TEST_F(StripeTracks, APieceCanBeEmpty) {
  Swipe(2, kShortSwipe);
  EXPECT_TRUE(AllFrom(sorbaneGetTrackFieldOffset(2, 1, 0, 0, 255, 0), 0, 0)) << "length 0";
  EXPECT_TRUE(AllFrom(sorbaneGetTrackFieldOffset(2, 9, 0, 8, 255, 0), 0, 0)) << "no such field";
  EXPECT_TRUE(AllFrom(sorbaneGetTrackFieldOffset(2, 1, 65535, 8, 255, 0), 0, 0)) << "beyond the buffer";
  Swipe(2, {3, 0x0B, 0x01, 0x02});
  EXPECT_TRUE(AllFrom(sorbaneGetTrackFieldOffset(2, 1, 0, 8, 0, 0), 0, 0)) << "the data end first";
}

TEST_F(StripeTracks, Track1HasMarkersOfItsOwn) {
  Swipe(1, {7, 0x15, 0x21, 0x22, 0x3E, 0x23, 0x5F, 0x01});
  EXPECT_EQ(Bytes(sorbaneGetTrackFieldOffset(1, 1, 0, 8, 255, 0), 3),
            (std::vector<std::uint8_t>{0x3E, 0x23, 0}));
  EXPECT_EQ(Bytes(sorbaneGetTrackFieldOffset(1, 2, 0, 8, 255, 0), 2), (std::vector<std::uint8_t>{0x5F, 0}));
}

TEST_F(StripeTracks, AConvertedPieceHasNoEnd) {
  Swipe(2, kShortSwipe);
  const std::uint8_t* piece = sorbaneGetTrackFieldOffset(2, 1, 0, 8, 255, 1);
  EXPECT_EQ(Bytes(piece, 3), (std::vector<std::uint8_t>{'=', '5', '0'}));
  EXPECT_TRUE(AllFrom(piece, 2, '0'));
  EXPECT_TRUE(AllFrom(sorbaneGetTrackFieldOffset(1, 1, 0, 8, 255, 1), 0, ' '));
  EXPECT_TRUE(AllFrom(sorbaneGetTrackFieldOffset(4, 1, 0, 8, 255, 1), 0, 0)) << "a track without a table";
}

TEST_F(StripeTracks, TheActiveIdIsTheSelectedPieceAsText) {
  Swipe(2, kShortSwipe);
  EXPECT_EQ(sorbaneSetActiveID(2, 1, 0, 255), 1U);
  Entry().LastLibErr = 5;
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(GetActiveID(id.data(), 8), 8U);
  ExpectCommands({"G2000", "CD0"});
  EXPECT_EQ(std::string(id.begin(), id.end()), "=5000000");
  EXPECT_EQ(Cfg().IdSel.Length, 8);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(StripeTracks, ALongBufferGetsTheWholePieceAndZeros) {
  Swipe(2, kShortSwipe);
  sorbaneSetActiveID(2, 1, 0, 255);
  std::array<std::uint8_t, 300> id;
  id.fill(7);
  EXPECT_EQ(GetActiveID(id.data(), 300), 257U);
  EXPECT_EQ(id[256], '0');
  EXPECT_EQ(id[257], 0);
  EXPECT_EQ(id[299], 0);
}

TEST_F(StripeTracks, TheLongActiveIdStaysOutOfTheBuffer) {
  Swipe(2, kShortSwipe);
  sorbaneSetActiveID(2, 1, 0, 255);
  std::array<std::uint8_t, 40> id;
  id.fill(7);
  EXPECT_EQ(GetActiveID32(id.data(), 40), 32U);
  ExpectCommands({"G2000", "CD0"});
  EXPECT_EQ(id[0], 7);
  EXPECT_EQ(id[39], 7);
  EXPECT_EQ(Cfg().IdSel.Length, 32);
  for (std::int16_t at = 0; at < 32; ++at)
    EXPECT_EQ(getActiveID_byte(at), 7) << "what the buffer held has taken its place in the cache";
  LetTimePass();
  EXPECT_EQ(getActiveID32(20), 20U);
  EXPECT_EQ(getActiveID_byte(0), '=');
  EXPECT_EQ(getActiveID_byte(20), 0);
}

TEST_F(StripeTracks, TheQueuedIdIsHandedOutByItsFirstByte) {
  Swipe(2, kShortSwipe);
  sorbaneSetActiveID(2, 1, 0, 255);
  Entry().LastLibErr = 5;
  EXPECT_EQ(GetQueuedID(1, 1), 32U);
  ExpectCommands({"G2000", "CD0"});
  EXPECT_EQ(Cfg().IdSel.Length, 32);
  EXPECT_EQ(GetLastLibErr(), 0U);
  for (std::int16_t index = 0; index < 32; ++index) EXPECT_EQ(GetQueuedID_index(index), '=') << index;
  ExpectCommands({});
}

TEST_F(StripeTracks, TheQueueIsAskedAtIndex32) {
  EXPECT_EQ(GetQueuedID_index(33), 0U);
  stripe->replies["GQ0"] = "RQ0 0201AB04";
  EXPECT_EQ(GetQueuedID_index(32), 0x102U);
  EXPECT_EQ(GetQueuedID_index(33), 0xABU);
  stripe->lost = {"GQ0"};
  EXPECT_EQ(GetQueuedID_index(32), 0U);
  EXPECT_EQ(GetQueuedID_index(33), 0U);
  SetUnsupportedProductErrorCode(0x8001);
  EXPECT_EQ(GetQueuedID_index(34), 0xFFFF8001U);
  EXPECT_EQ(GetQueuedID_index(-1), 0xFFFF8001U);
}

}  // namespace
}  // namespace tavlyn::test
