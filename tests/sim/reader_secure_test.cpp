// The reader model's protected memory.
#include "sim/devices/reader_secure.h"

#include <gtest/gtest.h>

#include "sim/devices/reader.h"
#include "tests/support/exchange.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

constexpr std::array<std::uint8_t, 3> kReference = {2, 1, 0};

TEST(ReaderSecure, AnItemEndsAndIsKeptByACommit) {
  const auto reader = Reader::Plain();
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0, 2, 1, 5, 0}), "89 90 00 00 02 01 05");
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 1, 1, 2, 3, 4}), "89 90 00 01 01 02 03 04");
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 2, 5}), "89 90 00 02 05");
  EXPECT_TRUE(reader->state.secure.items.empty());
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0xFF}), "89 90 00 FF");
  EXPECT_EQ(reader->state.secure.items.at(kReference), (Bytes{1, 2, 3, 4, 5}));
  EXPECT_TRUE(reader->state.secure.storedItems.empty());
  EXPECT_TRUE(Set(*reader, {0x90}));
  reader->PowerCycle();
  EXPECT_EQ(reader->state.secure.items.at(kReference), (Bytes{1, 2, 3, 4, 5}));
}

TEST(ReaderSecure, WithoutACommitAnItemIsLostWithThePower) {
  const auto reader = Reader::Plain();
  Ask(*reader, {0x89, 0x90, 0, 0, 2, 1, 1, 0});
  Ask(*reader, {0x89, 0x90, 0, 1, 9});
  Ask(*reader, {0x89, 0x90, 0, 0xFF});
  EXPECT_EQ(reader->state.secure.items.size(), 1U);
  reader->PowerCycle();
  EXPECT_TRUE(reader->state.secure.items.empty());
}

TEST(ReaderSecure, AnItemThatLacksABlockIsDropped) {
  const auto reader = Reader::Plain();
  Ask(*reader, {0x89, 0x90, 0, 0, 2, 1, 8, 0});
  Ask(*reader, {0x89, 0x90, 0, 2, 5});
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0xFF}), "00");
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0xFF}), "00") << "nothing is under way";
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 1, 5}), "00");
  EXPECT_TRUE(reader->state.secure.items.empty());
}

TEST(ReaderSecure, ABlockBehindTheEndGoesNowhere) {
  const auto reader = Reader::Plain();
  Ask(*reader, {0x89, 0x90, 0, 0, 2, 1, 4, 0});
  Ask(*reader, {0x89, 0x90, 0, 1, 1, 2, 3, 4});
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 2, 9}), "89 90 00 02 09");
  Ask(*reader, {0x89, 0x90, 0, 0xFF});
  EXPECT_EQ(reader->state.secure.items.at(kReference), (Bytes{1, 2, 3, 4}));
}

TEST(ReaderSecure, AnItemIsReadBackByItsNameAndLength) {
  const auto reader = Reader::Plain();
  reader->state.secure.items[{7, 8, 9}] = {1, 2, 3, 4, 5};
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 0, 7, 8, 5, 8}), "00");
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 0, 7, 8, 4, 9}), "00");
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 1}), "00");
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 0, 7, 8, 5, 9}), "89 10 00 00 07 08 05 09");
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 1}), "89 10 00 01 01 02 03 04");
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 2}), "89 10 00 02 05");
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 3}), "00");
}

TEST(ReaderSecure, APieceForTheRadioIsWrittenClosedAndSaved) {
  const auto reader = Reader::Plain();
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0, 0x11, 1, 0x80, 3}), "00") << "no such piece";
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0, 0x11, 1, 0x7C, 2}), "00") << "a piece has 128 bytes";
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0, 0x11, 1, 0x80, 2}), "89 90 00 00 11 01 80 02");
  for (std::uint8_t block = 1; block <= 32; ++block) Ask(*reader, {0x89, 0x90, 0, block, block});
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0xFF, 0, 0, 0, 2}), "89 90 00 FF 00 00 00 02");
  EXPECT_EQ(reader->state.secure.ble[2][4], 2);
  EXPECT_EQ(reader->state.secure.ble[2][124], 32);
  EXPECT_EQ(reader->state.secure.storedBle[2][124], 0);
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0xFF, 0, 0, 0, 0x82}), "89 90 00 FF 00 00 00 82");
  EXPECT_EQ(Ask(*reader, {0x89, 0x90, 0, 0xFF, 0, 0, 0, 0x83}), "00");
  reader->PowerCycle();
  EXPECT_EQ(reader->state.secure.ble[2][124], 32);
}

TEST(ReaderSecure, APieceThatWasNotSavedIsLostWithThePower) {
  const auto reader = Reader::Plain();
  Ask(*reader, {0x89, 0x90, 0, 0, 0x11, 1, 0x80, 0x10});
  for (std::uint8_t block = 1; block <= 32; ++block) Ask(*reader, {0x89, 0x90, 0, block, block});
  Ask(*reader, {0x89, 0x90, 0, 0xFF, 0, 0, 0, 0x10});
  EXPECT_EQ(reader->state.secure.ble[3][0], 1);
  reader->PowerCycle();
  EXPECT_EQ(reader->state.secure.ble[3][0], 0);
}

TEST(ReaderSecure, APieceForTheRadioIsSelectedOpenedAndRead) {
  const auto reader = Reader::Plain();
  reader->state.secure.ble[1][126] = 0x55;
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 0, 0x10, 1, 0, 0x80}), "00") << "nothing is selected";
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 0, 0x10, 1, 0, 3}), "00") << "no such piece";
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 0, 0x10, 1, 0, 1}), "89 10 00 00 10 01 00 01");
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 0, 0x10, 1, 0, 0x90}), "00") << "that opens the key";
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 0, 0x10, 1, 0, 0x80}), "89 10 00 00 10 01 00 80");
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 32}), "89 10 00 20 00 00 55");
  EXPECT_EQ(Ask(*reader, {0x89, 0x10, 0, 33}), "00");
}

TEST(ReaderSecure, OneByteMoreCarriesNothing) {
  const auto reader = Reader::Plain();
  EXPECT_TRUE(reader->SetFeature(Bytes{0x8C, 0x06, 0, 0, 0, 0, 0, 0, 0x77}));
  Bytes reply(9, 0xEE);
  EXPECT_TRUE(reader->GetFeature(reply));
  EXPECT_EQ(reply, (Bytes{0x8C, 0x06, 2, 0, 0, 0, 0, 0, 0}));
}

}  // namespace
}  // namespace tavlyn::test
