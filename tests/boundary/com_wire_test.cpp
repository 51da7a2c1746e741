// Readers on COM ports: pseudo-terminals on Linux, a cable on Windows.
#include <algorithm>
#include <array>

#include "sim/devices/reader_ascii.h"
#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

// A ping waits 50 ms after the class byte and then for the first byte of an answer, twice.
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
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(1u, ConnectToPort(kDevicePort));
  EXPECT_EQ(reader_->state.did, did_);
  EXPECT_EQ(1, CALL(library_, GetDevCnt)());
  EXPECT_EQ("COM" + std::to_string(kDevicePort) + ":", Name());
  tsTimeParms times{};
  EXPECT_EQ(1u, CALL(library_, GetTimeParms)(&times));
  EXPECT_EQ(1000, times.iIDHoldTO);
  EXPECT_EQ(0u, ConnectToPort(kDevicePort)) << "the table is not empty";
}

TEST_F(ComWire, CardOnASerialReader) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(1u, ConnectToPort(kDevicePort));
  std::array<std::uint8_t, 32> id{};
  const auto read = CALL(library_, GetActiveID32);
  EXPECT_EQ(0, read(id.data(), 32));
  device.With([&] { reader_->PutCard({1, 2, 3}, 20); });
  Pause(Milliseconds(270));
  EXPECT_EQ(20, read(id.data(), 32));
  EXPECT_EQ(0x030201, id[0] | id[1] << 8 | id[2] << 16);
}

TEST_F(ComWire, SilentPortCostsTwoPings) {
  Answering silent({});
  PortDevice device(ports_, kDevicePort, silent);
  EXPECT_EQ(kSilentPort, TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(kDevicePort)); }));
  EXPECT_EQ(kNotWritten, did_);
}

TEST_F(ComWire, NoiseIsNoReader) {
  Flooding noise;
  PortDevice device(ports_, kDevicePort, noise);
  EXPECT_EQ(2 * 50, TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(kDevicePort)); }));
}

TEST_F(ComWire, RefusalIsNoReader) {
  Answering refusing({0x6D, 0x00});
  PortDevice device(ports_, kDevicePort, refusing);
  EXPECT_EQ(2 * 50, TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(kDevicePort)); }));
}

// 40 ms per byte: slower than 300 baud, and still within the time-outs.
TEST_F(ComWire, SlowReaderIsAReader) {
  Answering slow(kPingAnswer);
  PortDevice device(ports_, kDevicePort, slow, {.betweenBytes = Milliseconds(40)});
  EXPECT_EQ(0u, ConnectToPort(kDevicePort)) << "the configuration is not that of a reader";
  EXPECT_EQ(1, CALL(library_, GetDevCnt)());
}

// An answer that breaks off ends after the time for its missing bytes.
TEST_F(ComWire, HalfAnAnswerIsNoReader) {
  Answering broken({0x04, 1, 2});
  PortDevice device(ports_, kDevicePort, broken);
  // Four bytes are waited for; the second ping finds the line empty again.
  EXPECT_EQ(2 * (50 + 512), TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(kDevicePort)); }));
}

TEST_F(ComWire, EveryTimeoutSetIsInForce) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(1u, ConnectToPort(kDevicePort));
  EXPECT_EQ(500 + 3 * 20, TimeOfRead(20, 0));
  std::uint8_t bytes[40];
  const auto quick = CALL(library_, QuickReadSerialPort);
  EXPECT_EQ(10 + 40, TimeOf([&] { EXPECT_EQ(0u, quick(bytes, sizeof bytes)); }));
  EXPECT_EQ(500 + 3, TimeOfRead(1, 0));
  CALL(library_, SetSerialTimeouts)(5000, 5000, 5000);
  EXPECT_EQ(10 + 90, TimeOfRead(90, 0));
  EXPECT_EQ(0, TimeOf([&] { EXPECT_EQ(0u, quick(bytes, 0)); }));
}

TEST_F(ComWire, SilenceBehindAByteEndsARead) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(1u, ConnectToPort(kDevicePort));
  // The reader's echo of a command, and nothing after it: 750 ms of silence precede the full 1100 ms.
  line_.faults.AnswerWith({0x0C, 0x06}, {0x0C, 0x07});
  ASSERT_EQ(5u, CALL(library_, WriteSerialPort)("\xFA\x0C\x06\x00\x00", 5));
  EXPECT_EQ(750, TimeOfRead(200, 2));
}

TEST_F(ComWire, RawBytesPass) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(1u, ConnectToPort(kDevicePort));
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
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(1u, ConnectToPort(kDevicePort));
  EXPECT_EQ(1u, CALL(library_, WriteBaudRate)(5));
  EXPECT_EQ(5u, CALL(library_, ReadBaudRate)());
  EXPECT_EQ(5, reader_->state.baudCode);
}

TEST_F(ComWire, DisconnectedPortCanBeOpenedAgain) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(1u, ConnectToPort(kDevicePort));
  EXPECT_EQ(1u, CALL(library_, ComDisconnect)());
  EXPECT_EQ(0u, CALL(library_, ComDisconnect)());
  CALL(library_, USBDisconnect)();
  EXPECT_EQ(1u, ConnectToPort(kDevicePort));
}

class AsciiWire : public ComWire {
 protected:
  void SetUp() override {
    Wire::SetUp();
    ASSERT_EQ(1u, ConnectToPort(kDevicePort));
    ASSERT_EQ(1u, CALL(library_, UseAsciiCommandProtocol)(1));
  }

  sim::ReaderAscii text_{reader_};
  PortDevice device_{ports_, kDevicePort, text_};
};

TEST_F(AsciiWire, ConfigurationAndCard) {
  device_.With([&] {
    reader_->state.luid = 0x1A;
    reader_->PutCard({0xAB, 0x12, 1, 0}, 26);
  });
  const auto before = Slept();
  const int took = TimeOf([&] { ASSERT_EQ(1u, CALL(library_, ReadCfg)()); });
  // Each of the two answers ends with 750 ms of silence.
  EXPECT_EQ(2 * 750 + static_cast<int>((Slept() - before).count()), took);
  EXPECT_EQ(0x1Au, CALL(library_, GetLUID)());
  EXPECT_EQ(reader_->state.did, CALL(library_, GetDID)());
  tsTimeParms times{};
  EXPECT_EQ(1u, CALL(library_, GetTimeParms)(&times));
  EXPECT_EQ(1000, times.iIDHoldTO);

  Pause(Milliseconds(270));
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(26, CALL(library_, GetActiveID)(id.data(), 8));
  EXPECT_EQ(0x0112AB, id[0] | id[1] << 8 | id[2] << 16);
}

// "\rRFID:QID.ID\r" is thirteen characters.
TEST_F(AsciiWire, TextGoesOutInPairs) {
  const int before = SleepsOf(Milliseconds(1));
  std::array<std::uint8_t, 8> id{};
  Pause(Milliseconds(270));
  EXPECT_EQ(0, CALL(library_, GetActiveID)(id.data(), 8)) << "no card";
  EXPECT_EQ(7, SleepsOf(Milliseconds(1)) - before);
}

TEST_F(AsciiWire, AnswerThatBreaksOff) {
  device_.With([&] { text_.faults.AnswerWith({'Q', 'I', 'D'}, {'{', '1', ',', '2'}); });
  CALL(library_, SetSerialTimeouts)(0, 0, 0);
  std::array<std::uint8_t, 8> id{};
  Pause(Milliseconds(270));
  // 300 reads of a byte with 10 ms after each; all but the echo of thirteen characters and these four wait 11
  // ms in vain. Before them seven pairs are sent, and 10 ms later what has arrived is dropped.
  EXPECT_EQ(7 + 10 + 300 * 10 + (300 - 13 - 4) * 11,
            TimeOf([&] { EXPECT_EQ(0, CALL(library_, GetActiveID)(id.data(), 8)); }));
  EXPECT_EQ(TAVLYN_ERR_ASCII_ANSWER, CALL(library_, GetLastLibErr)());
}

}  // namespace
}  // namespace tavlyn::boundary
