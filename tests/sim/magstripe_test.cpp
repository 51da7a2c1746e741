// The magnetic-stripe reader model, command by command, and the stripes it reads.
#include "sim/devices/magstripe.h"

#include <gtest/gtest.h>

#include <string>

#include "sim/devices/hex.h"
#include "sim/transcript.h"
#include "tests/support/exchange.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::MagCard;
using sim::Magstripe;
using sim::MagstripeLine;

// A packet as the reader accepts it.
Bytes Packet(const std::string& text) {
  Bytes packet(text.begin(), text.end());
  packet.resize(sim::kMagPacketBytes);
  packet.back() = '\r';
  return packet;
}

// The text of a packet, "refused" when the exchange was.
std::string Say(Magstripe& reader, const std::string& command) {
  Bytes report = Packet(command);
  if (!reader.SetFeature(report) || !reader.GetFeature(report)) return "refused";
  EXPECT_EQ(report.back(), '\r') << command;
  report.pop_back();
  while (!report.empty() && report.back() == 0) report.pop_back();
  return {report.begin(), report.end()};
}

MagCard Card(const std::string& text) {
  const auto card = sim::ParseMagCard(text);
  EXPECT_TRUE(card) << text;
  return card.value_or(MagCard{});
}

TEST(MagCard, LaysOutTheThreeTracksWithTheirCheckCharacters) {
  const MagCard card = Card("%B1^A?;12=3?+0>?");
  EXPECT_EQ(sim::HexDigits(card.tracks[0]), "0522113E211F36");
  EXPECT_EQ(sim::HexDigits(card.tracks[1]), "0B01020D030F09");
  EXPECT_EQ(sim::HexDigits(card.tracks[2]), "0B000E0F0A");
  for (std::size_t track = 0; track < sim::kTracks; ++track) {
    EXPECT_TRUE(sim::TrackIsGood(track, card.tracks[track])) << track;
    Bytes spoilt = card.tracks[track];
    spoilt[1] ^= 1U;
    EXPECT_FALSE(sim::TrackIsGood(track, spoilt)) << track;
  }
  EXPECT_FALSE(sim::TrackIsGood(0, {}));
}

TEST(MagCard, TracksStandAloneAndASecondSemicolonIsTheThird) {
  EXPECT_TRUE(Card(";1?").tracks[0].empty());
  EXPECT_TRUE(Card("+1?").tracks[1].empty());
  EXPECT_EQ(Card(";1?;2?").tracks, Card(";1?+2?").tracks);
  EXPECT_EQ(sim::HexDigits(Card(";?").tracks[1]), "0B0F04") << "a track may be empty";
}

TEST(MagCard, WhatIsNoTrackIsRefused) {
  for (const char* text : {"", "12", "%a?", "%A", ";1A?", ";1?%A?", "%A?%A?", ";1?;2?;3?", "+1?;2?", ";1;2?",
                           "%A%B?", ";1? ;2?"}) {
    EXPECT_FALSE(sim::ParseMagCard(text)) << text;
  }
}

TEST(MagCard, AStripeHoldsNoMoreThanItsLength) {
  const struct {
    const char* sentinel;
    std::size_t characters;
  } kLongest[] = {{"%", 76}, {";", 37}, {"+", 104}};
  for (const auto& [sentinel, characters] : kLongest) {
    EXPECT_TRUE(sim::ParseMagCard(sentinel + std::string(characters, '7') + '?')) << sentinel;
    EXPECT_FALSE(sim::ParseMagCard(sentinel + std::string(characters + 1, '7') + '?')) << sentinel;
  }
}

TEST(Magstripe, TellsWhoItIs) {
  Magstripe reader;
  EXPECT_EQ(Say(reader, "QRZ"), "RRZOMS-2100-AKU");
  EXPECT_EQ(Say(reader, "QSV"), "RSV02100304");
  EXPECT_EQ(Say(reader, "QRZ1"), "N");
  EXPECT_EQ(Say(reader, "hello"), "N");
  EXPECT_EQ(reader.state.unknownCommands, 2);
}

TEST(Magstripe, AReportWithoutItsCarriageReturnIsNoPacket) {
  Magstripe reader;
  EXPECT_TRUE(Set(reader, {'Q', 'R', 'Z'}));
  EXPECT_EQ(Get(reader), "00");
  EXPECT_EQ(reader.state.commands, 0);
}

TEST(Magstripe, KeepsElevenFieldsInThreeParts) {
  Magstripe reader;
  EXPECT_EQ(Say(reader, "FR"), "R");
  for (char letter = 'a'; letter <= 'k'; ++letter) {
    const std::string field(1, letter);
    const std::string mark = sim::HexDigits(Bytes{static_cast<std::uint8_t>(letter)});
    EXPECT_EQ(Say(reader, "S" + field + "0C3" + mark + "020304050607"), "N") << "a byte is missing";
    EXPECT_EQ(Say(reader, "S" + field + "0C3" + mark + "0203040506070800"), "R");
    EXPECT_EQ(Say(reader, "S" + field + "1" + mark + "111213141516170000"), "R");
    EXPECT_EQ(Say(reader, "S" + field + "CE2" + mark + "030405"), "R");
    EXPECT_EQ(Say(reader, "G" + field + "0"), "R" + field + "0C3" + mark + "02030405060708");
    EXPECT_EQ(Say(reader, "G" + field + "1"), "R" + field + "1" + mark + "11121314151617");
    EXPECT_EQ(Say(reader, "G" + field + "C"), "R" + field + "CE2" + mark + "030405");
  }
  EXPECT_EQ(Say(reader, "Gl0"), "N");
  EXPECT_EQ(Say(reader, "Ga2"), "N");
}

TEST(Magstripe, AWriteIsOpenedAndCommitted) {
  Magstripe reader;
  const sim::MagSettings factory = reader.state.stored;
  EXPECT_EQ(Say(reader, "SS0050203040506"), "N") << "not opened";
  EXPECT_EQ(Say(reader, "FW"), "N");
  EXPECT_EQ(Say(reader, "FR"), "R");
  EXPECT_EQ(Say(reader, "SS0050203040506"), "R");
  EXPECT_EQ(Say(reader, "GS0"), "RS0050203040506");
  reader.PowerCycle();
  EXPECT_EQ(reader.state.working, factory);
  EXPECT_FALSE(reader.state.writing);
  Say(reader, "FR");
  Say(reader, "SS0050203040506");
  EXPECT_EQ(Say(reader, "FW"), "R");
  EXPECT_EQ(Say(reader, "SS0FFFFFFFFFFFF"), "N");
  reader.PowerCycle();
  EXPECT_EQ(Say(reader, "GS0"), "RS0050203040506");
  EXPECT_EQ(Say(reader, "FD"), "R");
  reader.PowerCycle();
  EXPECT_EQ(reader.state.working, factory);
}

TEST(Magstripe, TakesItsLedColoursAtAnyTime) {
  Magstripe reader;
  EXPECT_EQ(Say(reader, "SL0FF02"), "R");
  EXPECT_EQ(Say(reader, "GL0"), "RL0FF02");
  EXPECT_EQ(Say(reader, "SL0G102"), "N");
  reader.PowerCycle();
  EXPECT_EQ(Say(reader, "GL0"), "RL02701");
}

TEST(Magstripe, ASwipeIsReadInBlocksOfTen) {
  Magstripe reader;
  EXPECT_EQ(Say(reader, "QS0"), "RS000");
  EXPECT_EQ(Say(reader, "G2000"), "R20" + std::string(20, '0'));
  reader.Swipe(Card("%B1^A?;1234567890=12?"));
  EXPECT_EQ(Say(reader, "QS0"), "RS003");
  EXPECT_EQ(Say(reader, "G1000"), "R10070522113E211F360000");
  EXPECT_EQ(Say(reader, "G2000"), "R20100B0102030405060708");
  EXPECT_EQ(Say(reader, "G2100").substr(0, 19), "R2109000D01020F0B00");
  EXPECT_EQ(Say(reader, "G3000"), "R30" + std::string(20, '0'));
  EXPECT_EQ(Say(reader, "G3A00"), "R3A" + std::string(20, '0'));
  for (const char* wrong : {"G0000", "G4000", "G2G00", "G200"}) EXPECT_EQ(Say(reader, wrong), "N") << wrong;
}

TEST(Magstripe, MarksATrackThatIsNotGood) {
  Magstripe reader;
  MagCard card = Card("%A?;12?");
  card.tracks[1].back() ^= 1U;
  reader.Swipe(card);
  EXPECT_EQ(Say(reader, "G2000").substr(0, 5), "R2085");
  EXPECT_EQ(Say(reader, "G1000").substr(0, 5), "R1004");
  EXPECT_EQ(Say(reader, "QS0"), "RS003");
  EXPECT_EQ(Say(reader, "QDD").substr(0, 11), "RDD01000100");
}

TEST(Magstripe, ReadsTheTracksThatAreEnabled) {
  Magstripe reader;
  reader.state.working.system[0] = 0x02;
  reader.Swipe(Card("%A?;12?+3?"));
  EXPECT_EQ(Say(reader, "QS0"), "RS002");
  EXPECT_EQ(Say(reader, "CD0"), "R");
  reader.Swipe(Card("%A?+3?"));
  EXPECT_EQ(Say(reader, "QS0"), "RS000");
  EXPECT_EQ(reader.state.cardsRead, 1U);
}

TEST(Magstripe, SwipesWaitUntilTheFirstIsClearedAndTheSurplusIsLost) {
  Magstripe reader;
  for (const char* card : {";1?", ";2?", ";3?", ";4?", ";5?", ";6?", ";7?"}) reader.Swipe(Card(card));
  EXPECT_EQ(Say(reader, "GQ0"), "RQ0 04000204");
  EXPECT_EQ(Say(reader, "G2000").substr(3, 6), "040B01");
  for (const char* next : {"040B02", "040B03", "040B04", "040B05"}) {
    EXPECT_EQ(Say(reader, "CD0"), "R");
    EXPECT_EQ(Say(reader, "G2000").substr(3, 6), next);
    EXPECT_EQ(Say(reader, "QS0"), "RS002");
  }
  Say(reader, "CD0");
  EXPECT_EQ(Say(reader, "QS0"), "RS000");
  EXPECT_EQ(Say(reader, "G2000").substr(3, 6), "040B05") << "clearing the state leaves the data";
  EXPECT_EQ(Say(reader, "GQ0"), "RQ0 00000204");
  EXPECT_EQ(Say(reader, "CQ"), "R");
  EXPECT_EQ(Say(reader, "GQ0"), "RQ0 00000004");
  EXPECT_EQ(reader.state.cardsRead, 7U);
}

TEST(Magstripe, CountsCardsAndSeconds) {
  Magstripe reader;
  EXPECT_EQ(Say(reader, "QUP"), "RUP" + std::string(16, '0'));
  reader.state.uptime = [] { return std::uint64_t{0x01020304} * 1000; };
  reader.state.cardsRead = 0x00010203;
  EXPECT_EQ(Say(reader, "QUP"), "RUP0403020103020100");
}

TEST(Magstripe, ForgetsWhatItCountedWithoutPower) {
  Magstripe reader;
  MagCard card = Card("%A?;12?");
  card.tracks[1].back() ^= 1U;
  for (int swipe = 0; swipe < 6; ++swipe) reader.Swipe(card);
  Say(reader, "hello");
  EXPECT_EQ(Say(reader, "QDD"), "RDD0600060002000100");
  reader.PowerCycle();
  EXPECT_EQ(Say(reader, "QDD"), "RDD0000000001000000");
  EXPECT_EQ(Say(reader, "QS0"), "RS000");
  EXPECT_EQ(Say(reader, "GQ0"), "RQ0 00000004");
  EXPECT_EQ(Say(reader, "G2000"), "R20" + std::string(20, '0'));
  EXPECT_EQ(Say(reader, "QUP"), "RUP" + std::string(16, '0'));
}

TEST(Magstripe, Beeps) {
  Magstripe reader;
  EXPECT_EQ(Say(reader, "BS3"), "R");
  EXPECT_EQ(Say(reader, "BL2"), "R");
  EXPECT_EQ(Say(reader, "BS0"), "N");
  EXPECT_EQ(Say(reader, "BS6"), "N");
  EXPECT_EQ(reader.state.beeps, (std::vector<sim::MagBeep>{{3, false}, {2, true}}));
}

TEST(Magstripe, Faults) {
  Magstripe reader;
  Say(reader, "QSV");
  reader.faults.RefuseNext();
  EXPECT_EQ(Say(reader, "QRZ"), "refused");
  reader.faults.DropAt(reader.faults.Exchanges() + 1);
  EXPECT_EQ(Say(reader, "QRZ"), "RSV02100304") << "it was never told";
  reader.faults.DelayAt(reader.faults.Exchanges() + 2);
  EXPECT_EQ(Say(reader, "QRZ"), "RSV02100304");
  EXPECT_EQ(Say(reader, "QRZ"), "RRZOMS-2100-AKU");
  reader.faults.RefuseCommand({'Q', 'S'}, 1);
  EXPECT_EQ(Say(reader, "QSV"), "refused");
  reader.faults.AnswerWith({'Q', 'S'}, Packet("RSV"), 1);
  EXPECT_EQ(Say(reader, "QSV"), "RSV");
  reader.faults.GarbleAt(reader.faults.Exchanges() + 1);
  Bytes report = Packet("QSV");
  EXPECT_TRUE(reader.SetFeature(report));
  EXPECT_TRUE(reader.GetFeature(report));
  EXPECT_EQ(report, Bytes(sim::kMagPacketBytes)) << "no packet";
  reader.faults.VanishAt(reader.faults.Exchanges() + 2);
  EXPECT_EQ(Say(reader, "QRZ"), "refused");
  EXPECT_FALSE(reader.Present());
  reader.faults.Restart();
  EXPECT_EQ(Say(reader, "QRZ"), "RRZOMS-2100-AKU");
}

class MagstripeSerial : public ::testing::Test {
 protected:
  std::string Say(const std::string& bytes) {
    line.Receive(Bytes(bytes.begin(), bytes.end()));
    Bytes answer(64);
    answer.resize(line.Take(answer));
    return {answer.begin(), answer.end()};
  }
  static std::string Padded(std::string text) {
    text.resize(sim::kMagPacketBytes);
    text.back() = '\r';
    return text;
  }

  std::shared_ptr<Magstripe> reader = std::make_shared<Magstripe>();
  MagstripeLine line{reader};
};

TEST_F(MagstripeSerial, AnswersCommandsInPackets) {
  EXPECT_EQ(Say(Padded("QRZ")), Padded("RRZOMS-2100-AKU"));
  EXPECT_EQ(Say("QSV\r"), Padded("RSV02100304"));
  EXPECT_EQ(Say("\r\r"), "");
  EXPECT_EQ(Say("QS"), "");
  EXPECT_EQ(Say("V\r"), Padded("RSV02100304"));
}

TEST_F(MagstripeSerial, FaultsCountBytes) {
  line.faults.RefuseAt(1);
  EXPECT_EQ(Say("QSV\r"), Padded("N"));
  line.faults.Restart();
  line.faults.DropAt(5);
  EXPECT_EQ(Say("QSV\r").substr(0, 3), "SV0");
  line.faults.Restart();
  line.faults.VanishAt(6);
  EXPECT_EQ(Say("QSV\r"), "");
  line.faults.Restart();
  line.faults.RefuseReply({'Q', 'S'}, 1);
  EXPECT_EQ(Say("QSV\r"), "");
  reader->Unplug();
  EXPECT_EQ(Say("QSV\r"), "");
}

}  // namespace
}  // namespace tavlyn::test
