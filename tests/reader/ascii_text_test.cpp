// The value forms of the text dialect, and one assignment.
#include "reader/ascii_text.h"

#include <gtest/gtest.h>

#include "links/serial_port.h"
#include "tests/reader/ascii_bench.h"

namespace tavlyn::test {
namespace {

std::int32_t Value(const std::string& text) { return reader::AsciiQuery(":key=" + text + "\r", ":key"); }

TEST(AsciiQuery, KnowsTheFormsOfAValue) {
  EXPECT_EQ(Value("'\\x0D'"), 13);
  EXPECT_EQ(Value("'\\xfF'"), 255);
  EXPECT_EQ(Value("'A'"), 65);
  EXPECT_EQ(Value("'='"), '=');
  EXPECT_EQ(Value("True"), 1);
  EXPECT_EQ(Value("False"), 0);
  EXPECT_EQ(Value("0x1A"), 26);
  EXPECT_EQ(Value("1234"), 1234);
  EXPECT_EQ(Value("-5"), -5);
  EXPECT_EQ(Value(" 7"), 7);
}

TEST(AsciiQuery, WhatDoesNotParseIsZero) {
  EXPECT_EQ(Value(""), 0);
  EXPECT_EQ(Value("x"), 0);
  EXPECT_EQ(Value("0x"), 0);
  EXPECT_EQ(Value("'"), 0);
  EXPECT_EQ(Value("'\\"), 0);
  EXPECT_EQ(Value("'\\x"), 0);
  EXPECT_EQ(Value("'\\xZZ'"), 0);
  EXPECT_EQ(reader::AsciiQuery(":key 5\r", ":key"), 0) << "no equal sign";
}

TEST(AsciiQuery, TheWordsMayStandAnywhereInTheValue) {
  EXPECT_EQ(Value("is True today"), 1);
  EXPECT_EQ(Value("True or False"), 0) << "False is looked for first";
  EXPECT_EQ(Value("true"), 0);
}

TEST(AsciiQuery, TheQuoteFormWinsWhereverItStands) { EXPECT_EQ(Value("5 else='B'"), 'B'); }

TEST(AsciiQuery, AKeyThatIsAbsentOrNotEndedIsZero) {
  EXPECT_EQ(reader::AsciiQuery(":other=5\r", ":key"), 0);
  EXPECT_EQ(reader::AsciiQuery("", ":key"), 0);
  EXPECT_EQ(reader::AsciiQuery(":key=5", ":key"), 0);
  EXPECT_EQ(reader::AsciiQuery(":key=5\n", ":key"), 0);
  EXPECT_EQ(reader::AsciiQuery("key=5\r", ":key"), 0) << "keys have a colon in front";
}

TEST(AsciiQuery, TheFirstLineThatHoldsTheKeyCounts) {
  const std::string text = "RFID:a=1\r:key.more=2\r:key=3\r";
  EXPECT_EQ(reader::AsciiQuery(text, ":key"), 2);
  EXPECT_EQ(reader::AsciiQuery(text, ":key="), 3);
  EXPECT_EQ(reader::AsciiQuery(text, ":a"), 1);
}

TEST(AsciiQuery, OnlyTheLinesFirstEightyCharactersCount) {
  const auto withValueAt = [](std::size_t column) {
    std::string line = ":key=";
    line += std::string(column - line.size(), ' ') + "7";
    return reader::AsciiQuery(line + "\r", ":key");
  };
  EXPECT_EQ(withValueAt(79), 7);
  EXPECT_EQ(withValueAt(80), 0);
}

class AsciiSetTest : public AsciiBench {};

TEST_F(AsciiSetTest, AnAssignmentIsALineOfItsOwnWhoseAnswerIsSwallowed) {
  ascii.acknowledge = "fourteen chars";
  reader::AsciiSet("out.led=%d", -3);
  EXPECT_EQ(ascii.received, "\rrfid:out.led=-3\r");
  ExpectTraffic(
      Join({TextLines("\rrfid:out.led=-3\r"),
            {"read " + sim::HexText({'f', 'o', 'u', 'r', 't', 'e', 'e', 'n', ' ', 'c', 'h', 'a'})}}));
}

TEST_F(AsciiSetTest, CharactersGoOutEscaped) {
  reader::AsciiSet("chr.eol='\\x%02X'", 0x0D);
  reader::AsciiSet("chr.eol='\\x%02X'", 0xAB);
  EXPECT_EQ(ascii.received, "\rrfid:chr.eol='\\x0D'\r\rrfid:chr.eol='\\xAB'\r");
}

TEST_F(AsciiSetTest, ASilentReaderIsWaitedForOnce) {
  ascii.acknowledge.clear();
  const std::uint64_t before = host.clock.tick;
  reader::AsciiSet("op.sdk=%d", 1);
  EXPECT_EQ(host.clock.tick - before, 8U + 300 + 5 * 12) << "15 characters, then one read of 12";
}

TEST_F(AsciiSetTest, AClosedPortGetsNothing) {
  Port().Close();
  ForgetTraffic();
  reader::AsciiSet("op.sdk=%d", 1);
  delete Entry().pSerialPort;
  Entry().pSerialPort = nullptr;
  reader::AsciiSet("op.sdk=%d", 1);
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
