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
  EXPECT_EQ("\rRFID:x\rOK\rOrvantis>", Say(reader, "\rRFID:x\r"));
  EXPECT_EQ("RFID:cmd.echo=0\r" + kDone, Say(reader, "RFID:cmd.echo=0\r"));
  EXPECT_EQ(kDone, Say(reader, "rfid:x\r"));
  EXPECT_EQ("OK\r", Say(reader, "RFID:cmd.prompt=0\r"));
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
    EXPECT_EQ(kDone, Say(reader, "\rrfid:" + std::string(line) + "\r"));
  }
  const std::string list = Say(reader, "RFID:VAR\r");
  for (const char* line :
       {":out.led=2\r", ":wieg.id.bits=24\r", ":wieg.strip.trail.bits=20\r", ":chr.eol='\\x0D'\r",
        ":chr.1='A'\r", ":disp.id.hex=True\r", ":op.sdk=True\r", ":chr.count.lead=1\r"}) {
    EXPECT_TRUE(Holds(list, line)) << line;
  }
  EXPECT_EQ(reader.Device().state.Working(), reader.Device().state.Active().stored);
  Say(reader, "RFID:CFG.RESET\r");
  EXPECT_TRUE(Holds(Say(reader, "RFID:VAR\r"), ":wieg.id.bits=16\r"));
}

TEST_F(ReaderAsciiTest, TellsVersionAndCard) {
  EXPECT_EQ("{0074.3.1}\r\nOrvantis>", Say(reader, "\rRFID:DEV.VER\r"));
  EXPECT_EQ("{0000,1,0001,0;0}\r\nOrvantis>", Say(reader, "\rRFID:QID.ID\r"));
  reader.Device().PutCard({0xAB, 0x12}, 26);
  EXPECT_EQ("{0000,1,0001,26;12AB}\r\nOrvantis>", Say(reader, "\rRFID:QID.ID\r"));
}

TEST_F(ReaderAsciiTest, Beeps) {
  Say(reader, "\rrfid:out.beep.short=3\r");
  EXPECT_EQ(3, reader.Device().state.counters.lastBeep);
  Say(reader, "\rrfid:out.beep.long=2\r");
  EXPECT_EQ(0x82, reader.Device().state.counters.lastBeep);
}

TEST_F(ReaderAsciiTest, IgnoresWhatIsNotForIt) {
  EXPECT_EQ("", Say(reader, "hello\r\r\rRFID\r" + std::string(1000, 'x') + "\r"));
  EXPECT_EQ(kDone, Say(reader, "RFID:BOGUS\r"));
  EXPECT_EQ(1, reader.Device().state.counters.unknownCommands);
  EXPECT_EQ(kDone, Say(reader, "rfid:there.is.none=1\r"));
  Say(reader, "RFID:QID");
  reader.Silence();
  EXPECT_EQ("", Say(reader, ".ID\r"));
}

TEST_F(ReaderAsciiTest, AnswersFramesBetweenItsLines) {
  const std::string ping("\xFA\x04\xED\xED\x04", 5);
  EXPECT_EQ(std::string("\x04\x01\0\x31\x74\x90\0", 7), Say(reader, "\r" + ping));
  EXPECT_EQ(kDone, Say(reader, "RFID:x\r"));
  reader.speaksFrames = false;
  EXPECT_EQ("", Say(reader, ping));
}

TEST_F(ReaderAsciiTest, MisbehavesByCommand) {
  reader.faults.RefuseReply({'V', 'A', 'R'}, 1);
  EXPECT_EQ("", Say(reader, "RFID:VAR\r"));
  reader.faults.AnswerWith({'Q', 'I', 'D'}, {'{'}, 1);
  EXPECT_EQ("{", Say(reader, "RFID:QID.ID\r"));
  reader.faults.RefuseCommand({'c', 'h', 'r', '.', '1'}, 1);
  EXPECT_EQ("", Say(reader, "rfid:chr.1='A'\r"));
  EXPECT_EQ(0, reader.Device().state.Working().blocks[2][5]);
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
  ASSERT_EQ(1U, ReadCfg());
  EXPECT_EQ(0x7431, Entry().DID);
  EXPECT_EQ(1, Entry().LUID);
  tsIDBitCnts counts{};
  ASSERT_EQ(1U, GetIDBitCnts(&counts));
  EXPECT_EQ(16, counts.iIDBitCnt);
  EXPECT_EQ(26, counts.iTotalBitCnt);
  tsTimeParms times{};
  ASSERT_EQ(1U, GetTimeParms(&times));
  EXPECT_EQ(1000, times.iIDHoldTO);
}

TEST_F(AsciiExports, WriteWhatTheModelThenTells) {
  ASSERT_EQ(1U, ReadCfg());
  tsIDBitCnts counts{};
  ASSERT_EQ(1U, GetIDBitCnts(&counts));
  counts.iIDBitCnt = 24;
  ASSERT_EQ(1U, SetIDBitCnts(&counts));
  ASSERT_EQ(1U, WriteCfg());
  EXPECT_EQ(24, model.Device().state.Working().blocks[0][3]);
  EXPECT_EQ(0, model.Device().state.counters.unknownCommands);
  const sim::Settings written = model.Device().state.Working();
  ASSERT_EQ(1U, ReadCfg());
  ASSERT_EQ(1U, WriteCfg());
  EXPECT_EQ(written, model.Device().state.Working());
}

TEST_F(AsciiExports, ReadCards) {
  ASSERT_EQ(1U, ReadCfg());
  std::array<std::uint8_t, 8> id{};
  LetTimePass();
  EXPECT_EQ(0, GetActiveID(id.data(), 8));
  model.Device().PutCard({0xAB, 0x12}, 26);
  LetTimePass();
  EXPECT_EQ(26, GetActiveID(id.data(), 8));
  EXPECT_EQ(0xAB, id[0]);
  EXPECT_EQ(0x12, id[1]);
}

}  // namespace
}  // namespace tavlyn::test
