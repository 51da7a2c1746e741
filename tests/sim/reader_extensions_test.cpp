// What only some readers have, as their firmware answers.
#include "sim/devices/reader_extensions.h"

#include <gtest/gtest.h>

#include "sim/devices/reader.h"
#include "tests/support/exchange.h"

namespace tavlyn::sim {
namespace {

using test::Ask;
using test::Set;

TEST(ReaderExtensions, TheAnalyzerRecordsCardsWhileItIsOn) {
  const auto reader = Reader::Plain();
  reader->PutCard({1}, 8);
  EXPECT_EQ(Ask(*reader, {0x8C, 0x08}), "8C 08");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x88, 2}), "8C 88 02");
  reader->PutCard({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, 74);
  reader->TakeCard();
  reader->PutCard({0xAA, 0xBB}, 16);
  EXPECT_EQ(Ask(*reader, {0x8C, 0x08}), "8C 08 02 02");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x09, 0}), "01 00 4A");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x09, 0, 1}), "01 02 03 04 05 06 07 08");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x09, 0, 2}), "09 0A");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x09, 1}), "01 00 10");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x09, 2}), "00");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x88, 0}), "8C 88");
  reader->PutCard({1}, 8);
  EXPECT_EQ(Ask(*reader, {0x8C, 0x08}), "8C 08 00 02");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x88, 1}), "8C 88 01");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x08}), "8C 08 01") << "a new list";
}

TEST(ReaderExtensions, TheListIsFullAt255) {
  const auto reader = Reader::Plain();
  Ask(*reader, {0x8C, 0x88, 1});
  for (int card = 0; card < 300; ++card) reader->PutCard({1}, 8);
  EXPECT_EQ(Ask(*reader, {0x8C, 0x08}), "8C 08 01 FF");
}

TEST(ReaderExtensions, ModulesAreSwitchedOneByOne) {
  const auto reader = Reader::Plain();
  EXPECT_EQ(Ask(*reader, {0x8C, 0x0B, 1, 1}), "8C 0B FF 01 81");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x0B, 1, 2}), "8C 0B FF 02 80");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x0B, 2, 2, 0x81}), "8C 0B FF 02 81");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x0B, 1, 2}), "8C 0B FF 02 81");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x0B, 2, 3, 0x81}), "8C 0B 00 03") << "no such module";
}

TEST(ReaderExtensions, ACommitKeepsTheTransparentMode) {
  const auto reader = Reader::Plus(2);
  EXPECT_EQ(Ask(*reader, {0x8C, 0x00}), "8C");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x80, 1}), "8C 80 01");
  reader->PowerCycle();
  EXPECT_EQ(Ask(*reader, {0x8C, 0x00}), "8C");
  Ask(*reader, {0x8C, 0x80, 1});
  EXPECT_TRUE(Set(*reader, {0x90}));
  reader->PowerCycle();
  EXPECT_EQ(Ask(*reader, {0x8C, 0x00}), "8C 00 01");
  EXPECT_EQ(Ask(*Reader::Plain(), {0x8C, 0x80, 1}), "00");
}

TEST(ReaderExtensions, TheBleRadioHasFourConfigurations) {
  const auto reader = Reader::Plus(2);
  EXPECT_EQ(Ask(*reader, {0x8C, 0x07}), "8C 07 80");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x87, 2}), "8C 87 82");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x87, 7}), "8C 87 83");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x07}), "8C 07 83");
  EXPECT_EQ(Ask(*Reader::Plain(), {0x8C, 0x87, 2}), "8C 87");
}

}  // namespace
}  // namespace tavlyn::sim
