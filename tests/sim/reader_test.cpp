// The card reader model over feature reports, command by command.
#include "sim/devices/reader.h"

#include <gtest/gtest.h>

#include "tests/support/exchange.h"

namespace tavlyn::test {
namespace {

using sim::Block;
using sim::Bytes;
using sim::Reader;
using sim::Settings;

TEST(Reader, ReadsAndStoresEachBlockOfTheActiveConfiguration) {
  const auto reader = Reader::Plus(2);
  for (std::uint8_t number = 0; number < 4; ++number) {
    const auto command = static_cast<std::uint8_t>(0x80 + number);
    reader->state.Working().blocks[number] = {1, 2, 3, 4, 5, 6, 7, number};
    EXPECT_TRUE(Ask(*reader, {command}).starts_with("01 02 03 04 05 06 07"));
    EXPECT_TRUE(Store(*reader, {command}, {9, 8, 7, 6, 5, 4, 3, 2}));
    EXPECT_EQ(reader->state.Working().blocks[number], (Block{9, 8, 7, 6, 5, 4, 3, 2}));
  }
  EXPECT_NE(reader->state.configurations[1].working.blocks[0], reader->state.Working().blocks[0]);
}

TEST(Reader, AFetchEndsAStoreThatGotNoData) {
  const auto reader = Reader::Plain();
  const Block before = reader->state.Working().blocks[0];
  Ask(*reader, {0x80});
  EXPECT_EQ(Ask(*reader, {0x8C, 0x06}), "8C 06 02");
  EXPECT_EQ(reader->state.Working().blocks[0], before);
}

TEST(Reader, KeepsCardTypeAndPriorityAtOnce) {
  const auto reader = Reader::Plus(1);
  reader->state.Working().cardType = 0xEF04;
  reader->state.Working().highPriority = true;
  EXPECT_EQ(Ask(*reader, {0x84}), "00 04 EF 01");
  EXPECT_TRUE(Store(*reader, {0x84}, {0, 0x01, 0xFA, 0}));
  reader->PowerCycle();
  EXPECT_EQ(reader->state.Working().cardType, 0xFA01);
  EXPECT_FALSE(reader->state.Working().highPriority);
}

TEST(Reader, APlainReaderHasNoCardType) {
  const auto reader = Reader::Plain();
  EXPECT_TRUE(Store(*reader, {0x84}, {0, 0x01, 0xFA, 1}));
  EXPECT_EQ(Ask(*reader, {0x84}), "00");
  EXPECT_EQ(reader->state.Working().cardType, 0);
}

TEST(Reader, HoldsSixteenPagesOfSeparatedFields) {
  const auto reader = Reader::Plain();
  EXPECT_EQ(Ask(*reader, {0x85, 0, 0, 0x10}), "0C 00 00 0C");
  for (std::uint8_t page = 0; page < 16; ++page) {
    EXPECT_TRUE(Store(*reader, {0x85, page, 0, 0x10}, {page, 1}));
    EXPECT_EQ(reader->state.Working().separated[page * 8U + 1], 1);
  }
  EXPECT_EQ(Ask(*reader, {0x85, 15, 0, 0x10}), "0F 01");
  EXPECT_TRUE(Store(*reader, {0x85, 16, 0, 0x10}, {1, 1, 1, 1}));
  EXPECT_EQ(Ask(*reader, {0x85, 16, 0, 0x10}), "00");
}

TEST(Reader, TakesTheTwoKeysInHalves) {
  const auto reader = Reader::Plus(1);
  EXPECT_TRUE(Store(*reader, {0x85, 0, 1}, {1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_TRUE(Store(*reader, {0x85, 1, 1}, {9}));
  EXPECT_TRUE(Store(*reader, {0x85, 1, 17}, {0x77}));
  EXPECT_TRUE(Store(*reader, {0x85, 0, 5}, {0x66}));
  const auto& keys = reader->state.Working().hashKeys;
  EXPECT_EQ(keys[0], 1);
  EXPECT_EQ(keys[7], 8);
  EXPECT_EQ(keys[8], 9);
  EXPECT_EQ(keys[16], 0);
  EXPECT_EQ(keys[24], 0x77);
}

TEST(Reader, TellsItsConfigurationsAndSelectsOne) {
  const auto reader = Reader::Plus(3);
  EXPECT_EQ(Ask(*reader, {0x89, 0x01}), "89 01 00 03");
  EXPECT_EQ(Ask(*reader, {0x89, 0x81, 2}), "89 81 02");
  EXPECT_EQ(Ask(*reader, {0x89, 0x01}), "89 01 02 03");
  EXPECT_EQ(Ask(*reader, {0x89, 0x81, 3}), "00");
  EXPECT_EQ(reader->state.active, 2U);
  EXPECT_EQ(reader->state.counters.selections, 1);
}

TEST(Reader, MovesBanksOfEveryConfiguration) {
  const auto reader = Reader::Plus(2);
  auto& configurations = reader->state.configurations;
  configurations[1].user.blocks[0] = {1, 1, 1, 1, 1, 1, 1, 1};
  configurations[1].plus.blocks[0] = {2, 2, 2, 2, 2, 2, 2, 2};
  EXPECT_EQ(Ask(*reader, {0x89, 0x82, 2, 1, 0, 0xFF}), "89 82 02 01 00 FF");
  EXPECT_EQ(configurations[1].working, configurations[1].user);
  reader->PowerCycle();
  EXPECT_EQ(configurations[1].working, configurations[1].user);
  Ask(*reader, {0x89, 0x82, 3, 2, 0, 0xFF});
  EXPECT_EQ(configurations[1].user, configurations[1].plus);
  EXPECT_EQ(reader->state.counters.bankMoves, 2);
  EXPECT_EQ(Ask(*reader, {0x89, 0x82, 4, 1, 0, 0xFF}), "00");
  EXPECT_EQ(reader->state.counters.bankMoves, 2);
}

TEST(Reader, TellsFirmwareWordsHighByteFirst) {
  const auto reader = Reader::Plus(1);
  reader->state.firmware[1][2] = 0x12345678;
  EXPECT_EQ(Ask(*reader, {0x89, 0x03, 1, 2}), "89 03 01 02 12 34 56 78");
  EXPECT_EQ(Ask(*reader, {0x89, 0x03, 3, 0}), "89 03 03");
}

TEST(Reader, ListsCardTypesFourToAPage) {
  const auto reader = Reader::Plus(1);
  reader->state.cardTypes = {0xEF04, 0xF004, 0xF102, 0xFA01, 0x7D01};
  EXPECT_EQ(Ask(*reader, {0x89, 0x04, 0}), "04 EF 04 F0 02 F1 01 FA");
  EXPECT_EQ(Ask(*reader, {0x89, 0x04, 1}), "01 7D");
  EXPECT_EQ(Ask(*reader, {0x89, 0x04, 2}), "00");
}

TEST(Reader, APlainReaderRefusesWhatOnlyAPlusReaderHas) {
  const auto reader = Reader::Plain();
  for (const std::uint8_t command : Bytes{0x01, 0x03, 0x04, 0x81, 0x82})
    EXPECT_FALSE(Set(*reader, {0x89, command}));
  EXPECT_EQ(Ask(*reader, {0x89, 0x05}), "05 00 00 00 0F");
}

TEST(Reader, TellsIdentityAndKeepsALuid) {
  const auto reader = Reader::Plain();
  reader->state.did = 0x7431;
  EXPECT_TRUE(Store(*reader, {0x8A}, {0, 0x34, 0x12}));
  EXPECT_EQ(Ask(*reader, {0x8A}), "34 12 31 74");
}

TEST(Reader, TellsItsTexts) {
  const auto reader = Reader::Plain();
  reader->state.model = "ABCDEFGHIJ";
  reader->state.texts[sim::kFirmwareFile] = "file";
  EXPECT_EQ(Ask(*reader, {0x8C, 0x01, 0}), "41 42 43 44 45 46 47 48");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x01, 1}), "49 4A");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x04, 7, 0}), "66 69 6C 65");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x04, 7, 1}), "00");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x04, 99, 0}), "00");
}

TEST(Reader, HandsOverQueuedCardsOldestFirst) {
  const auto reader = Reader::Plain();
  sim::QueuedCard first;
  first.id[0] = 0x11;
  first.id[31] = 0x22;
  first.trailer = {1, 2, 3, 4, 5, 6, 7, 8};
  sim::QueuedCard second;
  second.id[0] = 0x33;
  reader->state.queue = {first, second};
  EXPECT_EQ(Ask(*reader, {0x8C, 0x02, 0, 3}), "11");
  EXPECT_EQ(reader->state.counters.lastQueueOptions, 3);
  EXPECT_EQ(Ask(*reader, {0x8C, 0x02, 3, 0}), "00 00 00 00 00 00 00 22");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x02, 4, 0}), "01 02 03 04 05 06 07 08");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x02, 0, 0}), "33");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x02, 5, 0}), "00");
  Ask(*reader, {0x8C, 0x02, 4, 0});
  EXPECT_EQ(Ask(*reader, {0x8C, 0x02, 0, 0}), "00");
}

TEST(Reader, BeepsAndSetsItsVolume) {
  const auto reader = Reader::Plain();
  Ask(*reader, {0x8C, 0x03, 0x82});
  EXPECT_EQ(reader->state.counters.beeps, 1);
  EXPECT_EQ(reader->state.counters.lastBeep, 0x82);
  EXPECT_EQ(Ask(*reader, {0x8C, 0x86, 3}), "8C 86 03");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x06}), "8C 06 03");
}

TEST(Reader, TellsSerialNumberCardDataAndRawPages) {
  const auto reader = Reader::Plain();
  reader->state.esn[31] = 0x5F;
  reader->state.cardData[39] = 0x99;
  reader->state.raw87 = {0x87, 1};
  reader->state.raw8B = {0x8B, 2};
  EXPECT_EQ(Ask(*reader, {0x8C, 0x05, 0}), "40 41 42 43 44 45 46 47");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x05, 3}), "58 59 5A 5B 5C 5D 5E 5F");
  EXPECT_EQ(Ask(*reader, {0x88, 0x01, 4}), "00 00 00 00 00 00 00 99");
  EXPECT_EQ(Ask(*reader, {0x87}), "87 01");
  EXPECT_EQ(Ask(*reader, {0x8B}), "8B 02");
}

TEST(Reader, TellsTheCardThatLiesOnIt) {
  const auto reader = Reader::Plain();
  EXPECT_EQ(Ask(*reader, {0x8E}), "00");
  reader->PutCard({1, 2, 3, 4, 5, 6, 7, 8, 9}, 66);
  EXPECT_EQ(Ask(*reader, {0x8F}), "01 02 03 04 05 06 07 08");
  EXPECT_EQ(Ask(*reader, {0x8D, 1}), "09");
  EXPECT_EQ(Ask(*reader, {0x8E}), "42");
  reader->PutCard({1, 2, 3});
  EXPECT_EQ(Ask(*reader, {0x8E}), "18");
  reader->TakeCard();
  EXPECT_EQ(Ask(*reader, {0x8F}), "00");
  EXPECT_EQ(Ask(*reader, {0x8E}), "00");
}

TEST(Reader, OnlyWhatWasCommittedOutlivesThePower) {
  const auto reader = Reader::Plus(1);
  const Settings factory = reader->state.Working();
  const Block changed{7, 7, 7, 7, 7, 7, 7, 7};
  for (const std::uint8_t command : Bytes{0x80, 0x81, 0x82, 0x83, 0x85}) {
    EXPECT_TRUE(Store(*reader, {command}, {7, 7, 7, 7, 7, 7, 7, 7}));
  }
  EXPECT_TRUE(Store(*reader, {0x85, 0, 1}, {6}));
  EXPECT_TRUE(Store(*reader, {0x8A}, {0, 0x34, 0x12}));
  EXPECT_TRUE(Set(*reader, {0x90, 0x05}));
  reader->PowerCycle();
  EXPECT_EQ(reader->state.Working().blocks[0], changed);
  EXPECT_EQ(reader->state.Working().blocks[1], factory.blocks[1]);
  EXPECT_EQ(reader->state.Working().blocks[2], changed);
  EXPECT_EQ(reader->state.Working().blocks[3], factory.blocks[3]);
  EXPECT_EQ(reader->state.Working().separated, factory.separated);
  EXPECT_EQ(reader->state.Working().hashKeys, factory.hashKeys);
  EXPECT_EQ(reader->state.luid, 1);
  EXPECT_EQ(reader->state.counters.lastCommitMask, 0x05);
}

TEST(Reader, CommitsFieldsKeysAndLuidByTheirBits) {
  const auto reader = Reader::Plus(1);
  Store(*reader, {0x85, 0, 0, 0x10}, {5, 0, 0, 1});
  Store(*reader, {0x85, 0, 17}, {6});
  Store(*reader, {0x8A}, {0, 0x34, 0x12});
  EXPECT_TRUE(Set(*reader, {0x90, 0xA0}));
  reader->PowerCycle();
  EXPECT_EQ(reader->state.Working().separated[0], 5);
  EXPECT_EQ(reader->state.Working().hashKeys[16], 6);
  EXPECT_EQ(reader->state.luid, 0x1234);
}

TEST(Reader, AFactoryResetLeavesTheUserDefaults) {
  const auto reader = Reader::Plus(2);
  auto& configuration = reader->state.configurations[1];
  const Settings factory = configuration.factory;
  configuration.working.blocks[0] = configuration.stored.blocks[0] = configuration.user.blocks[0] = Block{9};
  EXPECT_TRUE(Set(*reader, {0xA0}));
  EXPECT_EQ(configuration.working, factory);
  EXPECT_EQ(configuration.stored, factory);
  EXPECT_EQ(configuration.user.blocks[0], Block{9});
  EXPECT_EQ(reader->state.counters.factoryResets, 1);
}

TEST(Reader, AnswersUnknownCommandsWithZeros) {
  const auto reader = Reader::Plain();
  EXPECT_EQ(Ask(*reader, {0x8C, 0x7F, 1}), "00");
  EXPECT_EQ(Ask(*reader, {0x89}), "00");
  EXPECT_EQ(reader->state.counters.unknownCommands, 2);
}

TEST(Reader, AnswersWhatItLacksWithZerosAndDropsTheData) {
  const auto reader = Reader::Plain();
  reader->state.lacks = {{0x8C, 0x06}, {0x85}, {0x89, 0x01}};
  EXPECT_EQ(Ask(*reader, {0x8C, 0x06}), "00");
  EXPECT_EQ(Ask(*reader, {0x8C, 0x86, 1}), "8C 86 01");
  EXPECT_EQ(Ask(*reader, {0x89, 0x01}), "00");
  const auto before = reader->state.Working().separated;
  EXPECT_TRUE(Store(*reader, {0x85, 0, 0, 0x10}, {0xA0}));
  EXPECT_EQ(reader->state.Working().separated, before);
  EXPECT_EQ(reader->state.counters.factoryResets, 0);
}

TEST(Reader, TakesShortReportsAndRefusesLongOnes) {
  const auto reader = Reader::Plain();
  EXPECT_TRUE(reader->SetFeature(Bytes{0x8C, 0x06}));
  Bytes shortReply(3);
  EXPECT_TRUE(reader->GetFeature(shortReply));
  EXPECT_EQ(shortReply, (Bytes{0x8C, 0x06, 2}));
  EXPECT_FALSE(reader->SetFeature(Bytes(10)));
  Bytes longReply(10);
  EXPECT_FALSE(reader->GetFeature(longReply));
}

TEST(Reader, KeldaNumbersItsReportsAndQueuesInput) {
  const auto reader = Reader::Kelda();
  EXPECT_EQ(reader->Identity().pid, 0x3BFB);
  EXPECT_EQ(reader->Identity().reportId, 1);
  ASSERT_EQ(reader->Identity().usages.size(), 1U);
  EXPECT_EQ(reader->Identity().usages[0].page, 0xFFA0);
  EXPECT_EQ(reader->Identity().usages[0].usage, 0xA000);
  Bytes report;
  EXPECT_FALSE(reader->TakeInput(report));
  reader->QueueInput({1, 0x11});
  reader->QueueInput({1, 0x22});
  EXPECT_TRUE(reader->TakeInput(report));
  EXPECT_EQ(report, (Bytes{1, 0x11}));
  EXPECT_TRUE(reader->TakeInput(report));
  EXPECT_FALSE(reader->TakeInput(report));
}

TEST(Reader, RefusesTheExchangesItIsToldTo) {
  const auto reader = Reader::Plain();
  reader->faults.RefuseAt(2);
  EXPECT_TRUE(Set(*reader, {0x8A}));
  EXPECT_EQ(Get(*reader), "refused");
  EXPECT_EQ(Get(*reader), "01 00 31 74");
  reader->faults.RefuseNext(3);
  EXPECT_FALSE(Set(*reader, {0x8A}));
  EXPECT_FALSE(Set(*reader, {0x8A}));
  EXPECT_EQ(Get(*reader), "refused");
  EXPECT_TRUE(Set(*reader, {0x8A}));
  EXPECT_EQ(reader->faults.Exchanges(), 7);
  reader->faults.RefuseFrom(9);
  EXPECT_TRUE(Set(*reader, {0x8A}));
  for (int i = 0; i < 20; ++i) EXPECT_FALSE(Set(*reader, {0x8A}));
  reader->faults.Restart();
  EXPECT_TRUE(Set(*reader, {0x8A}));
}

TEST(Reader, ARefusedDataReportMayBeSentAgain) {
  const auto reader = Reader::Plain();
  reader->faults.RefuseAt(2);
  EXPECT_FALSE(Store(*reader, {0x80}, {1}));
  EXPECT_TRUE(Set(*reader, {2}));
  EXPECT_EQ(reader->state.Working().blocks[0], Block{2});
}

TEST(Reader, RefusesCommandsByTheirLeadingBytes) {
  const auto reader = Reader::Plain();
  reader->faults.RefuseCommand({0x8C, 0x04});
  reader->faults.RefuseReply({0x8C, 0x01}, 1);
  EXPECT_FALSE(Set(*reader, {0x8C, 0x04, 7}));
  EXPECT_TRUE(Set(*reader, {0x8C, 0x06}));
  EXPECT_TRUE(Set(*reader, {0x8C, 0x01, 0}));
  EXPECT_EQ(Get(*reader), "refused");
  EXPECT_NE(Ask(*reader, {0x8C, 0x01, 0}), "refused");
}

TEST(Reader, GivesScriptedAnswersTheLongestMatchFirst) {
  const auto reader = Reader::Plus(1);
  reader->faults.AnswerWith({0x89, 0x03, 1}, {1});
  reader->faults.AnswerWith({0x89}, {2}, 1);
  EXPECT_EQ(Ask(*reader, {0x89, 0x03, 1, 0}), "01");
  EXPECT_EQ(Ask(*reader, {0x89, 0x01}), "02");
  EXPECT_EQ(Ask(*reader, {0x89, 0x01}), "89 01 00 01");
}

TEST(Reader, GarblesEitherDirection) {
  const auto reader = Reader::Plain();
  reader->faults.GarbleAt(2);
  EXPECT_EQ(Ask(*reader, {0x8C, 0x06}), "73 F9 FD FF FF FF FF FF");
  reader->faults.GarbleAt(3);
  EXPECT_TRUE(Set(*reader, {0x6F}));
  EXPECT_EQ(reader->state.counters.commits, 1);
}

TEST(Reader, VanishesForGoodUntilItIsBack) {
  const auto reader = Reader::Plain();
  reader->QueueInput({0});
  reader->faults.VanishAt(2);
  EXPECT_TRUE(Set(*reader, {0x8A}));
  EXPECT_TRUE(reader->Present());
  EXPECT_EQ(Get(*reader), "refused");
  EXPECT_FALSE(reader->Present());
  EXPECT_FALSE(Set(*reader, {0x8A}));
  Bytes report;
  EXPECT_FALSE(reader->TakeInput(report));
  reader->faults.Restart();
  EXPECT_TRUE(reader->Present());
  reader->Unplug();
  EXPECT_FALSE(reader->Present());
  EXPECT_FALSE(Set(*reader, {0x8A}));
  reader->PlugIn();
  EXPECT_TRUE(Set(*reader, {0x8A}));
}

}  // namespace
}  // namespace tavlyn::test
