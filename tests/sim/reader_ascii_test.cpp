// The card reader model's text dialect, line by line and through the library's exports.
#include "sim/devices/reader_ascii.h"

#include <gtest/gtest.h>

#include <string>

#include "api.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;
using sim::ReaderAscii;

const std::string kDone = "OK\rOrvantis>";

std::string Say(ReaderAscii& reader, const std::string& text) {
  reader.Receive(Bytes(text.begin(), text.end()));
  std::string answer;
  std::uint8_t byte = 0;
  while (reader.Take({&byte, 1}) == 1) answer += static_cast<char>(byte);
  return answer;
}

bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class ReaderAsciiTest : public testing::Test {
 protected:
  void SetUp() override { Say(reader, "\rRFID:cmd.echo=0\rRFID:cmd.prompt=1\r"); }
  ReaderAscii reader{Reader::Plain()};
};

TEST(ReaderAscii, EchoesAndPromptsAsItIsTold) {
  ReaderAscii reader(Reader::Plain());
  EXPECT_EQ(Say(reader, "\rRFID:x\r"), "\rRFID:x\rOK\rOrvantis>");
  EXPECT_EQ(Say(reader, "RFID:cmd.echo=0\r"), "RFID:cmd.echo=0\r" + kDone);
  EXPECT_EQ(Say(reader, "rfid:x\r"), kDone);
  EXPECT_EQ(Say(reader, "RFID:cmd.prompt=0\r"), "OK\r");
}

TEST_F(ReaderAsciiTest, ListsItsVariables) {
  const std::string list = Say(reader, "RFID:VAR\r");
  EXPECT_GT(list.size(), 700U);
  EXPECT_LT(list.size(), 2047U);
  EXPECT_TRUE(list.ends_with("Orvantis>"));
  for (const char* line : {"RFID:out.led=255\r", ":time.hold=1000\r", ":time.lo=2000\r", ":wieg.qual=False\r",
                           ":wieg.qual.bits=26\r", ":wieg.id.bits=16\r", ":wieg.strip.lead.bits=1\r",
                           ":wieg.strip.trail.bits=1\r", ":chr.fac=':'\r", ":chr.eol='('\r",
                           ":disp.fac.send=True\r", ":dev.luid=0x0001\r"}) {
    EXPECT_TRUE(Holds(list, line)) << line << "\n" << list;
  }
  EXPECT_LT(list.find(":wieg.qual="), list.find(":wieg.qual.bits="));
}

TEST_F(ReaderAsciiTest, KeepsWhatIsAssigned) {
  for (const char* line : {"out.led=2", "wieg.id.bits=24", "wieg.strip.trail.bits=20", "chr.eol='\\x0D'",
                           "chr.1='A'", "disp.id.hex=1", "op.sdk=True", "chr.count.lead=1"}) {
    EXPECT_EQ(Say(reader, "\rrfid:" + std::string(line) + "\r"), kDone);
  }
  const std::string list = Say(reader, "RFID:VAR\r");
  for (const char* line :
       {":out.led=2\r", ":wieg.id.bits=24\r", ":wieg.strip.trail.bits=20\r", ":chr.eol='\\x0D'\r",
        ":chr.1='A'\r", ":disp.id.hex=True\r", ":op.sdk=True\r", ":chr.count.lead=1\r"}) {
    EXPECT_TRUE(Holds(list, line)) << line;
  }
  EXPECT_EQ(reader.Device().state.Active().stored, reader.Device().state.Working());
  Say(reader, "RFID:CFG.RESET\r");
  EXPECT_TRUE(Holds(Say(reader, "RFID:VAR\r"), ":wieg.id.bits=16\r"));
}

TEST_F(ReaderAsciiTest, TellsVersionAndCard) {
  EXPECT_EQ(Say(reader, "\rRFID:DEV.VER\r"), "{0074.3.1}\r\nOrvantis>");
  EXPECT_EQ(Say(reader, "\rRFID:QID.ID\r"), "{0000,1,0001,0;0}\r\nOrvantis>");
  reader.Device().PutCard({0xAB, 0x12}, 26);
  EXPECT_EQ(Say(reader, "\rRFID:QID.ID\r"), "{0000,1,0001,26;12AB}\r\nOrvantis>");
}

TEST_F(ReaderAsciiTest, Beeps) {
  Say(reader, "\rrfid:out.beep.short=3\r");
  EXPECT_EQ(reader.Device().state.counters.lastBeep, 3);
  Say(reader, "\rrfid:out.beep.long=2\r");
  EXPECT_EQ(reader.Device().state.counters.lastBeep, 0x82);
}

TEST_F(ReaderAsciiTest, IgnoresWhatIsNotForIt) {
  EXPECT_EQ(Say(reader, "hello\r\r\rRFID\r" + std::string(1000, 'x') + "\r"), "");
  EXPECT_EQ(Say(reader, "RFID:BOGUS\r"), kDone);
  EXPECT_EQ(reader.Device().state.counters.unknownCommands, 1);
  EXPECT_EQ(Say(reader, "rfid:there.is.none=1\r"), kDone);
  Say(reader, "RFID:QID");
  reader.Silence();
  EXPECT_EQ(Say(reader, ".ID\r"), "");
}

TEST_F(ReaderAsciiTest, AnswersFramesBetweenItsLines) {
  const std::string ping("\xFA\x04\xED\xED\x04", 5);
  EXPECT_EQ(Say(reader, "\r" + ping), std::string("\x04\x01\0\x31\x74\x90\0", 7));
  EXPECT_EQ(Say(reader, "RFID:x\r"), kDone);
  reader.speaksFrames = false;
  EXPECT_EQ(Say(reader, ping), "");
}

TEST_F(ReaderAsciiTest, MisbehavesByCommand) {
  reader.faults.RefuseReply({'V', 'A', 'R'}, 1);
  EXPECT_EQ(Say(reader, "RFID:VAR\r"), "");
  reader.faults.AnswerWith({'Q', 'I', 'D'}, {'{'}, 1);
  EXPECT_EQ(Say(reader, "RFID:QID.ID\r"), "{");
  reader.faults.RefuseCommand({'c', 'h', 'r', '.', '1'}, 1);
  EXPECT_EQ(Say(reader, "rfid:chr.1='A'\r"), "");
  EXPECT_EQ(reader.Device().state.Working().blocks[2][5], 0);
}

class AsciiExports : public SerialBench {
 protected:
  void SetUp() override {
    SerialBench::SetUp();
    AddLine(model);
    com->clock = &host.clock;
    com->timeouts = Port().Timeouts();
    UseAsciiCommandProtocol(1);
  }
  ReaderAscii model{Reader::Plain()};
};

TEST_F(AsciiExports, ReadTheConfiguration) {
  ASSERT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Entry().DID, 0x7431);
  EXPECT_EQ(Entry().LUID, 1);
  tsIDBitCnts counts{};
  ASSERT_EQ(GetIDBitCnts(&counts), 1U);
  EXPECT_EQ(counts.iIDBitCnt, 16);
  EXPECT_EQ(counts.iTotalBitCnt, 26);
  tsTimeParms times{};
  ASSERT_EQ(GetTimeParms(&times), 1U);
  EXPECT_EQ(times.iIDHoldTO, 1000);
}

TEST_F(AsciiExports, WriteWhatTheModelThenTells) {
  ASSERT_EQ(ReadCfg(), 1U);
  tsIDBitCnts counts{};
  ASSERT_EQ(GetIDBitCnts(&counts), 1U);
  counts.iIDBitCnt = 24;
  ASSERT_EQ(SetIDBitCnts(&counts), 1U);
  ASSERT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(model.Device().state.Working().blocks[0][3], 24);
  EXPECT_EQ(model.Device().state.counters.unknownCommands, 0);
  const sim::Settings written = model.Device().state.Working();
  ASSERT_EQ(ReadCfg(), 1U);
  ASSERT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(model.Device().state.Working(), written);
}

TEST_F(AsciiExports, ReadCards) {
  ASSERT_EQ(ReadCfg(), 1U);
  std::array<std::uint8_t, 8> id{};
  LetTimePass();
  EXPECT_EQ(GetActiveID(id.data(), 8), 0);
  model.Device().PutCard({0xAB, 0x12}, 26);
  LetTimePass();
  EXPECT_EQ(GetActiveID(id.data(), 8), 26);
  EXPECT_EQ(id[0], 0xAB);
  EXPECT_EQ(id[1], 0x12);
}

}  // namespace
}  // namespace tavlyn::test
