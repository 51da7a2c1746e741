// The card reader model's serial side, frame by frame.
#include "sim/devices/reader_fa.h"

#include <gtest/gtest.h>

#include "tests/support/exchange.h"

namespace tavlyn::test {
namespace {

using sim::Block;
using sim::Reader;
using sim::ReaderFa;

TEST(ReaderFa, TellsTheCardAndItsBitCount) {
  ReaderFa reader(Reader::Plain());
  reader.Device().PutCard({0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99}, 66);
  EXPECT_EQ(Talk(reader, {0xFA, 0, 0, 0, 0x0C}), "00 00 42 00 00 11 22 33 44 55 66 77 88 90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0, 0, 0, 0x24}).size(), (1 + 36 + 2) * 3U - 1);
}

TEST(ReaderFa, SaysBehindItsDataThatThereIsNoId) {
  ReaderFa reader(Reader::Plain());
  EXPECT_EQ(Talk(reader, {0xFA, 0, 0, 0, 0x0C}), "00 00 00 00 00 00 00 00 00 00 00 00 00 6A 82");
}

TEST(ReaderFa, ReadsAndStoresBlocks) {
  ReaderFa reader(Reader::Plain());
  for (std::uint8_t number = 0; number < 4; ++number) {
    EXPECT_EQ(Talk(reader, {0xFA, 0x81, number, 0, 8}), "81");
    EXPECT_EQ(Talk(reader, {1, 2, 3, 4, 5, 6, 7, 8}), "90 00");
    EXPECT_EQ(Talk(reader, {0xFA, 0x01, number, 0, 8}), "01 01 02 03 04 05 06 07 08 90 00");
  }
  EXPECT_EQ(Talk(reader, {0xFA, 0x01, 4, 0, 8}), "6D 00");
}

TEST(ReaderFa, StoresACardType) {
  ReaderFa reader(Reader::Plus(1));
  Talk(reader, {0xFA, 0x81, 4, 0, 8});
  EXPECT_EQ(Talk(reader, {0, 0x01, 0xFA, 1, 0, 0, 0, 0}), "90 00");
  EXPECT_EQ(reader.Device().state.Working().cardType, 0xFA01);
}

TEST(ReaderFa, TellsIdentityAlsoToThePing) {
  ReaderFa reader(Reader::Plain());
  EXPECT_EQ(Talk(reader, {0xFA, 0x06, 0, 0, 2}), "06");
  EXPECT_EQ(Talk(reader, {0x34, 0x12}), "90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x04, 0, 0, 4}), "04 34 12 31 74 90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x04, 0xED, 0xED, 4}), "04 34 12 31 74 90 00");
}

TEST(ReaderFa, CommitsAndResetsWithoutAnEcho) {
  ReaderFa reader(Reader::Plain());
  EXPECT_EQ(Talk(reader, {0xFA, 0x02, 0x2F, 0, 0}), "90 00");
  EXPECT_EQ(reader.Device().state.counters.lastCommitMask, 0x2F);
  EXPECT_EQ(Talk(reader, {0xFA, 0x03, 0, 0, 0}), "90 00");
  EXPECT_EQ(reader.Device().state.counters.factoryResets, 1);
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x03, 0x82, 0}), "90 00");
  EXPECT_EQ(reader.Device().state.counters.lastBeep, 0x82);
}

TEST(ReaderFa, TellsItsConfigurationsAndSelectsOne) {
  ReaderFa reader(Reader::Plus(3));
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0x01, 0, 0}), "09 01 00 03 00 04 EF 01 90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0x81, 2, 0}), "09 81 02 00 00 00 00 00 90 00");
  EXPECT_EQ(reader.Device().state.active, 2U);
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0x81, 3, 0}), "6A 86");
}

TEST(ReaderFa, MovesABankOnceTheWholeFrameIsThere) {
  ReaderFa reader(Reader::Plus(1));
  auto& configuration = reader.Device().state.configurations[0];
  configuration.working.blocks[0] = Block{9};
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0x82, 2, 1}), "");
  EXPECT_EQ(Talk(reader, {0, 0xFF}), "09 82 02 01 00 00 90 00");
  EXPECT_EQ(configuration.working, configuration.user);
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0x82, 0, 1, 0, 0xFF}), "6A 86");
}

TEST(ReaderFa, TellsFirmwareCardTypesAndHardware) {
  ReaderFa reader(Reader::Plus(1));
  reader.Device().state.firmware[1][2] = 0x12345678;
  reader.Device().state.cardTypes = {0xEF04};
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0x03, 1, 2}), "09 03 01 02 12 34 56 78 90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0x04, 0, 0}), "09 04 00 04 EF 00 00 00 00 00 00 90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0x05, 0, 0}), "09 00 05 00 00 00 0F 00 00");
}

TEST(ReaderFa, APlainReaderRefusesWhatOnlyAPlusReaderHas) {
  ReaderFa reader(Reader::Plain());
  for (const std::uint8_t command : sim::Bytes{0x01, 0x03, 0x04, 0x81}) {
    EXPECT_EQ(Talk(reader, {0xFA, 0x09, command, 0, 0}), "6D 00");
  }
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0x82, 2, 1, 0, 0xFF}), "6D 00");
}

TEST(ReaderFa, TheOlderReaderWritesItsSeparatedFieldsByInstructionTen) {
  ReaderFa reader(Reader::Plain());
  EXPECT_EQ(Talk(reader, {0xFA, 0x0A, 0, 0, 2}), "0A");
  EXPECT_EQ(Talk(reader, {5, 6}), "90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0, 0, 8}), "09 05 06 00 0C 00 00 00 00 90 00");
}

TEST(ReaderFa, TheExtendedReaderReadsThemByTheSameInstruction) {
  ReaderFa reader(Reader::Plus(1));
  EXPECT_EQ(Talk(reader, {0xFA, 0x8A, 0, 0, 2}), "8A");
  EXPECT_EQ(Talk(reader, {5, 6}), "90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0A, 0, 0, 8}), "0A 05 06 00 0C 00 00 00 00 90 00");
}

TEST(ReaderFa, TakesAHeaderWithoutData) {
  ReaderFa reader(Reader::Plus(1));
  EXPECT_EQ(Talk(reader, {0xFA, 0x8A, 0, 0, 0}), "8A 90 00");
}

TEST(ReaderFa, TakesAKeyInOneFrame) {
  ReaderFa reader(Reader::Plus(1));
  Talk(reader, {0xFA, 0x8A, 0, 17, 16});
  EXPECT_EQ(Talk(reader, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 0xFA}), "90 00");
  EXPECT_EQ(reader.Device().state.Working().hashKeys[16], 1);
  EXPECT_EQ(reader.Device().state.Working().hashKeys[31], 0xFA);
  EXPECT_EQ(reader.Device().state.Working().separated[0], 12);
}

TEST(ReaderFa, TellsTextsAndQueuedCardsWithoutAStatus) {
  ReaderFa reader(Reader::Plain());
  reader.Device().state.model = "AB";
  reader.Device().state.texts[sim::kSerialNumber] = "C";
  reader.Device().state.queue.resize(1);
  reader.Device().state.queue[0].id[8] = 0x77;
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x01, 0, 0}), "0C 41 42 00 00 00 00 00 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x04, 2, 0}), "0C 43 00 00 00 00 00 00 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x02, 1, 2}), "0C 77 00 00 00 00 00 00 00");
}

TEST(ReaderFa, TellsAndSetsVolumeAndBaudCode) {
  ReaderFa reader(Reader::Plain());
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x86, 1, 0}), "0C 90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x06, 0, 0}), "0C 01");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0D, 0x81, 5, 0}), "0D 90 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0D, 0x01, 0, 0}), "0D 05");
}

TEST(ReaderFa, RefusesWhatItLacksByItsReportName) {
  ReaderFa reader(Reader::Plain());
  reader.Device().state.lacks = {{0x85}, {0x8C, 0x04, 0x07}};
  EXPECT_EQ(Talk(reader, {0xFA, 0x09, 0, 0, 8}), "6D 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x04, 7, 0}), "6D 00");
  EXPECT_NE(Talk(reader, {0xFA, 0x0C, 0x04, 4, 0}), "6D 00");
}

TEST(ReaderFa, SkipsNoiseAndForgetsABrokenFrameInSilence) {
  ReaderFa reader(Reader::Plain());
  EXPECT_EQ(Talk(reader, {0x0D, 0x55}), "");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C}), "");
  reader.Silence();
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x06, 0, 0}), "0C 02");
  EXPECT_EQ(Talk(reader, {0xFA, 0x7E, 0, 0, 0}), "6D 00");
}

TEST(ReaderFa, MisbehavesByCommand) {
  ReaderFa reader(Reader::Plain());
  reader.faults.RefuseCommand({0x01, 0x02});
  reader.faults.RefuseReply({0x04});
  reader.faults.AnswerWith({0x0C, 0x06}, {0x0C}, 1);
  reader.faults.AnswerWith({0x81, 0x00}, {0x66, 0x01}, 1);
  EXPECT_EQ(Talk(reader, {0xFA, 0x01, 2, 0, 8}), "6D 00");
  EXPECT_EQ(Talk(reader, {0xFA, 0x04, 0, 0, 4}), "");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x06, 0, 0}), "0C");
  EXPECT_EQ(Talk(reader, {0xFA, 0x81, 0, 0, 8}), "66 01");
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x06, 0, 0}), "0C 02");
}

TEST(ReaderFa, LosesAndGarblesSingleBytes) {
  ReaderFa reader(Reader::Plain());
  reader.faults.RefuseAt(7);  // five bytes in, the echo out, then the volume
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x06, 0, 0}), "0C");
  reader.faults.Restart();
  reader.faults.GarbleAt(6);
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x06, 0, 0}), "F3 02");
  reader.faults.Restart();
  reader.faults.RefuseAt(1);
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x06, 0, 0}), "");
}

TEST(ReaderFa, VanishesInTheMiddleOfItsAnswer) {
  ReaderFa reader(Reader::Plain());
  reader.faults.VanishAt(7);
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x06, 0, 0}), "");
  EXPECT_TRUE(reader.faults.Vanished());
  EXPECT_EQ(Talk(reader, {0xFA, 0x0C, 0x06, 0, 0}), "");
}

}  // namespace
}  // namespace tavlyn::test
