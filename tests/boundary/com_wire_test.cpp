// Readers on real pseudo-terminals.
#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>

#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

// A ping waits 50 ms behind the class byte and then for the first byte of an answer, twice.
constexpr int kSilentPort = 2 * (50 + 503);

class ComWire : public Wire {
 protected:
  int TimeOfRead(std::uint32_t length, std::uint32_t expected) {
    Bytes bytes(length);
    const auto read = CALL(library_, ReadSerialPort);
    return TimeOf([&] { EXPECT_EQ(expected, read(bytes.data(), length)); });
  }
};

TEST_F(ComWire, PortConnectFindsItsReader) {
  const PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectToPort(3));
  EXPECT_EQ(reader_->state.did, did_);
  EXPECT_EQ(1, CALL(library_, GetDevCnt)());
  EXPECT_EQ("COM3:", Name());
  tsTimeParms times{};
  EXPECT_EQ(1u, CALL(library_, GetTimeParms)(&times));
  EXPECT_EQ(1000, times.iIDHoldTO);
  EXPECT_EQ(0u, ConnectToPort(3)) << "the table is not empty";
}

TEST_F(ComWire, CardOnASerialReader) {
  const PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectQuickly(3));
  std::array<std::uint8_t, 32> id{};
  const auto read = CALL(library_, GetActiveID32);
  EXPECT_EQ(0, read(id.data(), 32));
  reader_->PutCard({1, 2, 3}, 20);
  Pause(Milliseconds(270));
  EXPECT_EQ(20, read(id.data(), 32));
  EXPECT_EQ(0x030201, id[0] | id[1] << 8 | id[2] << 16);
}

TEST_F(ComWire, RangeConnectFindsEveryReader) {
  const auto second = sim::Reader::Plus(2);
  sim::ReaderFa secondLine(second);
  Answering silent({});
  const PortDevice none(ports_, 2, silent);
  const PortDevice first(ports_, 4, line_);
  const PortDevice last(ports_, 256, secondLine);
  ports_.AddFile(5, "/dev/null");
  CALL(library_, SetComSrchRange)(256, 2);
  EXPECT_EQ(1u, CALL(library_, ComConnect)(&did_));
  ASSERT_EQ(2, CALL(library_, GetDevCnt)());
  EXPECT_EQ("COM4:", Name());
  CALL(library_, SetActDev)(1);
  EXPECT_EQ("COM256:", Name());
}

TEST_F(ComWire, PortOutsideTheRangeIsNotTouched) {
  const PortDevice device(ports_, 9, line_);
  EXPECT_EQ(0u, CALL(library_, ComConnect)(&did_));
  EXPECT_EQ(kNotWritten, did_);
  EXPECT_EQ(0, line_.faults.Exchanges());
}

TEST_F(ComWire, SilentPortCostsTwoPings) {
  Answering silent({});
  const PortDevice device(ports_, 3, silent);
  ExpectTime(kSilentPort, TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(3)); }));
  EXPECT_EQ(kNotWritten, did_);
}

TEST_F(ComWire, WhatIsNoPortCostsNothing) {
  ports_.AddFile(2, "/dev/null");
  ports_.AddFile(3, "/nowhere");
  ports_.AddFile(4, "/tmp");
  ExpectTime(0, TimeOf([&] { EXPECT_EQ(0u, CALL(library_, ComConnect)(&did_)); }));
}

TEST_F(ComWire, NoiseIsNoReader) {
  Flooding noise;
  const PortDevice device(ports_, 3, noise);
  ExpectTime(2 * 50, TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(3)); }));
}

TEST_F(ComWire, RefusalIsNoReader) {
  Answering refusing({0x6D, 0x00});
  const PortDevice device(ports_, 3, refusing);
  ExpectTime(2 * 50, TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(3)); }));
}

// 40 ms to a byte: slower than 300 baud, and still within the time-outs.
TEST_F(ComWire, SlowReaderIsAReader) {
  Answering slow(kPingAnswer);
  const PortDevice device(ports_, 3, slow, {1, Milliseconds(40)});
  EXPECT_EQ(0u, ConnectQuickly(3)) << "the configuration is not that of a reader";
  EXPECT_EQ(1, CALL(library_, GetDevCnt)());
}

// An answer that breaks off ends after the time for its missing bytes.
TEST_F(ComWire, HalfAnAnswerIsNoReader) {
  Answering broken({0x04, 1, 2});
  const PortDevice device(ports_, 3, broken);
  // Four bytes are waited for; the second ping finds the line empty again.
  ExpectTime(2 * (50 + 512), TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(3)); }));
}

TEST_F(ComWire, LineThatHangsUpInAConnect) {
  const PortDevice device(ports_, 3, line_, {.closesAfter = 40});
  const int took = TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(3)); });
  EXPECT_LT(took, 2000);
  EXPECT_EQ(1, CALL(library_, GetDevCnt)());
  EXPECT_EQ(kNotWritten, did_);
  std::array<std::uint8_t, 32> id{};
  EXPECT_EQ(0, CALL(library_, GetActiveID32)(id.data(), 32));
  EXPECT_NE(0u, CALL(library_, GetLastLibErr)() & TAVLYN_ERR_COMMAND);
}

TEST_F(ComWire, EveryTimeoutSetIsInForce) {
  const PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectQuickly(3));
  ExpectTime(500 + 3 * 20, TimeOfRead(20, 0));
  std::uint8_t bytes[40];
  const auto quick = CALL(library_, QuickReadSerialPort);
  ExpectTime(10 + 40, TimeOf([&] { EXPECT_EQ(0u, quick(bytes, sizeof bytes)); }));
  ExpectTime(500 + 3, TimeOfRead(1, 0));
  CALL(library_, SetSerialTimeouts)(5000, 5000, 5000);
  ExpectTime(10 + 90, TimeOfRead(90, 0));
  ExpectTime(0, TimeOf([&] { EXPECT_EQ(0u, quick(bytes, 0)); }));
}

TEST_F(ComWire, SilenceBehindAByteEndsARead) {
  const PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectQuickly(3));
  // The reader's echo of a command, and nothing behind it: 750 ms of silence come before the whole 1100 ms.
  line_.faults.AnswerWith({0x0C, 0x06}, {0x0C, 0x07});
  ASSERT_EQ(5u, CALL(library_, WriteSerialPort)("\xFA\x0C\x06\x00\x00", 5));
  ExpectTime(750, TimeOfRead(200, 2));
}

TEST_F(ComWire, RawBytesPass) {
  const PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectQuickly(3));
  ASSERT_EQ(5u, CALL(library_, WriteSerialPort)("\xFA\x04\x00\x00\x04", 5));
  Bytes bytes(7);
  EXPECT_EQ(7u, CALL(library_, ReadSerialPort)(bytes.data(), 7));
  EXPECT_EQ(0x04, bytes[0]);
  EXPECT_EQ(0x90, bytes[5]);
  ASSERT_EQ(5u, CALL(library_, WriteSerialPort)("\xFA\x04\x00\x00\x04", 5));
  EXPECT_EQ(7u, CALL(library_, readSerialPort_char)(-1));
  EXPECT_EQ(0xFFFFFF90u, CALL(library_, readSerialPort_char)(5));
}

TEST_F(ComWire, BaudCode) {
  const PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectQuickly(3));
  EXPECT_EQ(1u, CALL(library_, WriteBaudRate)(5));
  EXPECT_EQ(5u, CALL(library_, ReadBaudRate)());
  EXPECT_EQ(5, reader_->state.baudCode);
}

TEST_F(ComWire, DisconnectedPortCanBeOpenedAgain) {
  const PortDevice device(ports_, 3, line_);
  ASSERT_EQ(1u, ConnectQuickly(3));
  EXPECT_EQ(1u, CALL(library_, ComDisconnect)());
  EXPECT_EQ(0u, CALL(library_, ComDisconnect)());
  CALL(library_, USBDisconnect)();
  EXPECT_EQ(1u, ConnectQuickly(3));
}

// A reader of the text dialect. It answers the probe of the other dialect and refuses all else there.
class TextReader final : public sim::ByteDevice {
 public:
  std::atomic<int> pieces = 0;
  std::string hold = "1000";
  std::string id = "{1F4,0,0,26;12AB}";

  void Receive(std::span<const std::uint8_t> bytes) override {
    ++pieces;
    for (const std::uint8_t byte : bytes) {
      if (byte == 0xFA || !frame_.empty()) {
        TakeFrameByte(byte);
      } else if (byte == '\r') {
        Answer();
      } else {
        text_ += static_cast<char>(byte);
      }
    }
  }
  std::size_t Take(std::span<std::uint8_t> bytes) override {
    const std::size_t count = std::min(bytes.size(), out_.size());
    std::memcpy(bytes.data(), out_.data(), count);
    out_.erase(0, count);
    return count;
  }

 private:
  void TakeFrameByte(std::uint8_t byte) {
    frame_ += static_cast<char>(byte);
    if (frame_.size() < 5) return;
    out_ += frame_ == "\xFA\x04\xED\xED\x04" ? std::string("\x04\x01\x00\x31\x74\x90\x00", 7)
                                             : std::string("\x6D\x00", 2);
    frame_.clear();
  }
  void Answer() {
    if (text_ == "RFID:VAR") {
      out_ += "RFID:time.hold=" + hold + "\r\nRFID:chr.eol='\\x0D'\r\nRFID:op.sdk=True\r\nRFID:chr.1='A'\r\n";
      out_ += "RFID:dev.luid=0x1A\r\n" + std::string(700, '.') + "\r\nOrvantis>";
    } else if (text_ == "RFID:DEV.VER") {
      out_ += "\r\n{7.4.3}\r\nOrvantis>";
    } else if (text_ == "RFID:QID.ID") {
      out_ += "\r\n" + id + "\r\nOrvantis>";
    }
    text_.clear();
  }

  std::string frame_;
  std::string text_;
  std::string out_;
};

class AsciiWire : public ComWire {
 protected:
  void SetUp() override {
    Wire::SetUp();
    ASSERT_EQ(0u, ConnectQuickly(3)) << "its configuration cannot be read in the usual dialect";
    ASSERT_EQ(1, CALL(library_, GetDevCnt)());
    ASSERT_EQ(1u, CALL(library_, UseAsciiCommandProtocol)(1));
  }

  TextReader text_;
  PortDevice device_{ports_, 3, text_};
};

TEST_F(AsciiWire, ConfigurationAndCard) {
  // Each of the two answers ends with 750 ms of silence.
  const int paced = static_cast<int>(Slept().count());
  const int took = TimeOf([&] { ASSERT_EQ(1u, CALL(library_, ReadCfg)()); });
  ExpectTime(2 * 750 + static_cast<int>(Slept().count()) - paced, took);
  tsTimeParms times{};
  EXPECT_EQ(1u, CALL(library_, GetTimeParms)(&times));
  EXPECT_EQ(1000, times.iIDHoldTO);
  tsIDDispParms2 characters{};
  EXPECT_EQ(1u, CALL(library_, GetIDDispParms2)(&characters));
  EXPECT_EQ('A', characters.iLeadChr0);
  EXPECT_EQ(0x743u, CALL(library_, GetDID)());
  EXPECT_EQ(0x1Au, CALL(library_, GetLUID)());

  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(26, CALL(library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ(0xAB, id[0]);
  EXPECT_EQ(0x12, id[1]);
}

TEST_F(AsciiWire, TextGoesOutInPairs) {
  const int before = SleepsOf(Milliseconds(1));
  text_.pieces = 0;
  std::array<std::uint8_t, 8> id{};
  CALL(library_, GetActiveID)(id.data(), 8);
  // "\rRFID:QID.ID\r" is thirteen characters.
  EXPECT_EQ(7, SleepsOf(Milliseconds(1)) - before);
  EXPECT_GE(text_.pieces, 4) << "they did not arrive as they were sent";
}

TEST_F(AsciiWire, AnswerThatBreaksOff) {
  text_.id = "{1F4,0,0,26;12";
  std::array<std::uint8_t, 8> id{};
  CALL(library_, SetSerialTimeouts)(0, 0, 0);
  // 300 reads of a byte, most of them in vain for 11 ms, with 10 ms between them.
  const int took = TimeOf([&] { EXPECT_EQ(0, CALL(library_, GetActiveID)(id.data(), 8)); });
  EXPECT_EQ(static_cast<std::uint32_t>(TAVLYN_ERR_ASCII_ANSWER), CALL(library_, GetLastLibErr)());
  EXPECT_GE(took, 300 * 10);
  EXPECT_LE(took, 300 * (10 + 11 + 2) + kLate);
}

}  // namespace
}  // namespace tavlyn::boundary
