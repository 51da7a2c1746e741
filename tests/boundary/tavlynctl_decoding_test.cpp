// What the bits of a card say, without a device; and layouts as people write them.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"
#include "tools/tavlynctl/cards/decoding.h"

namespace tavlyn::boundary {
namespace {

using Decoded = ctl::Json;

// A card by its bits as it sends them.
Decoded CardOf(const std::string& bits, const ctl::Handing& handing = {},
               const std::vector<ctl::Layout>& layouts = ctl::BuiltInLayouts()) {
  std::vector<unsigned> bytes((bits.size() + 7) / 8);
  for (std::size_t at = 0; at < bits.size(); ++at) {
    const std::size_t place = bits.size() - 1 - at;
    if (bits[at] == '1') bytes[place / 8] |= 1U << place % 8;
  }
  Decoded card{{"bits", bits.size()}, {"bytes", bytes}};
  ctl::Decode(handing, layouts, card);
  return card;
}

// The lines that tell what a layout makes of it.
std::string LayoutLines(const Decoded& card) {
  std::string told;
  for (const std::string& line : ctl::DecodedLines(card)) {
    if (line.find(" bits, ") != std::string::npos) told += line + "\n";
  }
  return told;
}

constexpr const char* k26 = "10000110010000111000001111";

TEST(TavlynctlDecoding, ACardOfEachLayout) {
  const struct {
    const char* bits;
    const char* lines;
  } kCards[] = {
      {k26, "26 bits, parity good: facility 12, card 34567 (26-bit standard)\n"},
      {"101001101001010000111000001110", "30 bits, parity good: facility 1234, card 34567 (30-bit)\n"},
      {"10000000000000000000000000000011", "32 bits, no parity: card 2147483651 (32-bit serial number)\n"},
      {"011000110000010101000110010011100", "33 bits, parity good: facility 99, card 345678 (33-bit)\n"},
      {"1000100100011010010000111000001110",
       "34 bits, parity good: facility 4660, card 34567 (34-bit)\n"
       "34 bits, parity good: card 305432327 (34-bit serial number)\n"},
      {"11010011010010100010101010010100100", "35 bits, parity good: facility 1234, card 567890 (35-bit)\n"},
      {"0000100100011010010101000110010011101",
       "37 bits, parity good: card 2443527758 (37-bit)\n"
       "37 bits, parity good: facility 4660, card 345678 (37-bit with facility)\n"},
      {"110100101101011010000111111010011001011101100011",
       "48 bits, parity good: facility 1234567, card 7654321 (48-bit)\n"},
      {"00000100101000011011001011000011110101001110010111110110",
       "56 bits, no parity: card 1303689068602870 (56-bit serial number)\n"},
      {"0000001001010000110110010110000111101010011100101111101100",
       "58 bits, parity good: card 1303689068602870 (58-bit serial number)\n"},
      {"1110000000000100000000010000000000010010001101000101011001111000",
       "64 bits, no parity: card 16142028064219747960 (64-bit serial number)\n"},
      {"111100000000001000000000100000000000100100011010001010110011110000",
       "66 bits, parity good: card 16142028064219747960 (66-bit serial number)\n"}};
  for (const auto& card : kCards) EXPECT_EQ(LayoutLines(CardOf(card.bits)), card.lines);
}

// Whichever bit of such a card is turned, a parity bit of its layout shows it.
TEST(TavlynctlDecoding, EachWrongBitIsSeen) {
  for (const std::string& good : {std::string(k26), std::string("11010011010010100010101010010100100"),
                                  std::string("110100101101011010000111111010011001011101100011")}) {
    for (std::size_t at = 0; at < good.size(); ++at) {
      std::string bits = good;
      bits[at] = bits[at] == '0' ? '1' : '0';
      EXPECT_EQ(CardOf(bits)["layouts"][0]["parity"], "bad") << good.size() << " bits, bit " << at + 1;
    }
  }
  std::string bits = k26;
  bits[1] = '1';
  bits[24] = '0';
  EXPECT_TRUE(LayoutLines(CardOf(bits)).starts_with("26 bits, parity bad at bits 1, 26: "));
}

TEST(TavlynctlDecoding, WhatIsStrippedIsNotTested) {
  const std::string handed = std::string(k26).substr(1, 24);
  const Decoded card = CardOf(handed, {.leading = 1, .trailing = 1, .idBits = 16, .notes = {}});
  EXPECT_EQ(card["sent"], "?" + handed + "?");
  EXPECT_EQ(card["reader"]["letters"], "PFFFFFFFFCCCCCCCCCCCCCCCCP");
  EXPECT_EQ(card["reader"]["fields"], Decoded({{"facility", 12}, {"card", 34567}}));
  EXPECT_EQ(LayoutLines(card), "26 bits, parity stripped: facility 12, card 34567 (26-bit standard)\n");
  EXPECT_EQ(
      card["notes"][0],
      "the reader strips 1 leading bit and 1 trailing bit; set iLeadParityBitCnt and iTrailParityBitCnt to 0 "
      "to see parity");

  // The second of 35 bits is parity, but over bits that came; a reader that strips more takes a number's
  // bits.
  const std::string long35 = "11010011010010100010101010010100100";
  EXPECT_EQ(CardOf(long35.substr(1, 33), {1, 1, {}, {}})["layouts"][0]["parity"], "stripped");
  EXPECT_EQ(CardOf("0" + long35.substr(2, 32), {1, 1, {}, {}})["layouts"][0]["parity"], "bad");
  EXPECT_EQ(CardOf(long35.substr(3, 31), {3, 1, {}, {}})["layouts"], Decoded::array());
}

TEST(TavlynctlDecoding, AReaderThatSplitsNothing) {
  EXPECT_EQ(CardOf("1101", {0, 0, 255, {}})["reader"]["fields"], Decoded({{"card", 13}}));
  EXPECT_EQ(CardOf("1101", {0, 0, 3, {}})["reader"]["fields"], Decoded({{"facility", 1}, {"card", 5}}));
  EXPECT_FALSE(CardOf("1101").contains("reader"));
  // Beyond 64 bits a number is a text.
  EXPECT_EQ(CardOf("1" + std::string(64, '0'), {0, 0, 255, {}})["reader"]["fields"]["card"],
            "18446744073709551616");
}

TEST(TavlynctlDecoding, TheLongestCard) {
  const Decoded card = CardOf(std::string(255, '1'));
  EXPECT_EQ(card["numbers"][0]["decimal"],
            "57896044618658097711785492504343953926634992332820282019728792003956564819967");
  EXPECT_EQ(card["numbers"][0]["hexadecimal"], "7F" + std::string(62, 'F'));
  EXPECT_EQ(card["numbers"][1]["hexadecimal"], std::string(62, 'F') + "7F");
  const std::vector<std::string> lines = ctl::DecodedLines(card);
  EXPECT_EQ(lines[10], "      251");
  EXPECT_EQ(lines[11], "bits  11111");
}

TEST(TavlynctlDecoding, BothByteOrders) {
  const Decoded card = CardOf("11000000110000001000000001");
  const Decoded numbers{{{"order", "as sent"}, {"hexadecimal", "03030201"}, {"decimal", "50528769"}},
                        {{"order", "bytes reversed"}, {"hexadecimal", "01020303"}, {"decimal", "16909059"}}};
  EXPECT_EQ(card["numbers"], numbers);
}

// Where the number stands: "10-25 as sent", and so on.
std::string Found(const std::string& bits, const std::string& number, const ctl::Handing& handing = {}) {
  Decoded card = CardOf(bits, handing);
  ctl::AddPlaces(ctl::ParseSought(number), card);
  std::string told;
  for (const Decoded& place : card["found"]) {
    told += place["bits"].get<std::string>() + " (" + place["with_zeros"].get<std::string>() + ") " +
            place["form"].get<std::string>() + " " + place["order"].get<std::string>() + "\n";
  }
  return told;
}

TEST(TavlynctlDecoding, ANumberIsFound) {
  EXPECT_EQ(Found(k26, "34567"), "10-25 (8-25) binary as sent\n");
  EXPECT_EQ(Found(k26, "0x8707"), "10-25 (8-25) binary as sent\n");
  EXPECT_EQ(Found(std::string(k26).substr(1, 24), "34567", {1, 1, {}, {}}), "10-25 (8-25) binary as sent\n");
  EXPECT_EQ(Found("1110000011100001", "34567"), "16-1 (16-1) binary lowest bit first\n");
  EXPECT_EQ(Found("0000011110000111", "34567"), "9-16 1-8 (9-16 1-8) binary bytes reversed\n");
  EXPECT_EQ(Found("1110000111100000", "34567"), "8-1 16-9 (8-1 16-9) binary bits of each byte reversed\n");
  EXPECT_EQ(Found("00110100010101100111", "34567"), "1-20 (1-20) decimal digits as sent\n");
  EXPECT_EQ(Found("10000111", "9999"), "");
  // The highest byte of ten bits has two: what fills it is not in the card.
  EXPECT_EQ(Found("1100000001", "259"), "10 1-2 (3-10 1-2) binary bytes reversed\n");
}

TEST(TavlynctlDecoding, AFieldThatHasTheNumberIsNamed) {
  Decoded card = CardOf(k26);
  ctl::AddPlaces(ctl::ParseSought("12"), card);
  EXPECT_EQ(card["named"], Decoded({"facility of 26-bit standard"}));
}

TEST(TavlynctlDecoding, WhatIsNoNumberIsNotSearched) {
  for (const char* text :
       {"", "0", "0x", "-1", "12a", " 12", "18446744073709551616", "0x10000000000000000"}) {
    EXPECT_THROW(ctl::ParseSought(text), ctl::Failure) << text;
  }
  EXPECT_EQ(ctl::ParseSought("18446744073709551615").value, UINT64_MAX);
}

TEST(TavlynctlDecoding, ALayoutOfOnesOwn) {
  const auto layouts =
      ctl::ParseLayouts("# a remark\r\n\r\n  four : 4 bits , card 3-4, issue 2, odd 1 over 2 3-4\r\n", "own");
  ASSERT_EQ(layouts.size(), 1U);
  const Decoded card = CardOf("1011", {}, layouts);
  EXPECT_EQ(card["layouts"][0]["letters"], "PICC");
  EXPECT_EQ(LayoutLines(card), "4 bits, parity good: card 3, issue 0 (four)\n");
}

TEST(TavlynctlDecoding, WhatIsWrongWithALayout) {
  const struct {
    const char* line;
    const char* problem;
  } kLines[] = {
      {"26 bits, card 1-2", "it does not begin with a name and a colon"},
      {": 26 bits, card 1-2", "it does not begin with a name and a colon"},
      {"a: card 1-2", "after the name comes the length, as in \"26 bits\""},
      {"a: 256 bits, card 1-2", "\"256\" is not a number from 1 to 255"},
      {"a: 0 bits, card 1-2", "\"0\" is not a number from 1 to 255"},
      {"a:", "the layout has no field"},
      {"a: 26 bits, even 1 over 2-3", "the layout has no field"},
      {"a: 26 bits, , card 1-2", "a part is empty"},
      {"a: 26 bits, card 1-27", "\"27\" is not a number from 1 to 26"},
      {"a: 26 bits, card 0-2", "\"0\" is not a number from 1 to 26"},
      {"a: 26 bits, card 1-", "\"\" is not a number from 1 to 26"},
      {"a: 26 bits, card 9-8", "\"9-8\" ends before it begins"},
      {"a: 26 bits, card 1-2, card 3-4", "there are two fields \"card\""},
      {"a: 99 bits, card 1-65", "\"card\" has more than 64 bits"},
      {"a: 26 bits, Card 1-2", "\"Card\" does not begin a field, as in \"card 10-25\", or a parity bit"},
      {"a: 26 bits, card", "\"card\" does not begin a field, as in \"card 10-25\", or a parity bit"},
      {"a: 26 bits, card 2-3, even 1 2-3", "parity is written \"even BIT over BITS\""},
      {"a: 26 bits, card 2-3, odd 27 over 2-3", "\"27\" is not a number from 1 to 26"},
      {"a: 26 bits, card 2-3, odd 1 over 2-27", "\"27\" is not a number from 1 to 26"},
      {"a: 26 bits, card 2-3, odd 1 over 1-13", "bit 1 is among the bits \"1-13\" that it watches over"}};
  for (const auto& one : kLines) {
    try {
      ctl::ParseLayouts(std::string("# first\n") + one.line + "\n", "own.txt");
      ADD_FAILURE() << one.line;
    } catch (const ctl::Failure& failure) {
      EXPECT_EQ(failure.what(), std::string("own.txt, line 2: ") + one.problem);
      EXPECT_EQ(failure.code, ctl::kBadFile);
    }
  }
}

}  // namespace
}  // namespace tavlyn::boundary
