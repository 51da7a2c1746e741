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
    return TimeOf([&] { EXPECT_EQ(read(bytes.data(), length), expected); });
  }
};

TEST_F(ComWire, PortConnectFindsItsReader) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(ConnectToPort(kDevicePort), 1u);
  EXPECT_EQ(did_, reader_->state.did);
  EXPECT_EQ(CALL(library_, GetDevCnt)(), 1);
  EXPECT_EQ(Name(), "COM" + std::to_string(kDevicePort) + ":");
  tsTimeParms times{};
  EXPECT_EQ(CALL(library_, GetTimeParms)(&times), 1u);
  EXPECT_EQ(times.iIDHoldTO, 1000);
  EXPECT_EQ(ConnectToPort(kDevicePort), 0u) << "the table is not empty";
}

TEST_F(ComWire, CardOnASerialReader) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(ConnectToPort(kDevicePort), 1u);
  std::array<std::uint8_t, 32> id{};
  const auto read = CALL(library_, GetActiveID32);
  EXPECT_EQ(read(id.data(), 32), 0);
  device.With([&] { reader_->PutCard({1, 2, 3}, 20); });
  Pause(Milliseconds(270));
  EXPECT_EQ(read(id.data(), 32), 20);
  EXPECT_EQ(id[0] | id[1] << 8 | id[2] << 16, 0x030201);
}

TEST_F(ComWire, SilentPortCostsTwoPings) {
  Answering silent({});
  PortDevice device(ports_, kDevicePort, silent);
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(kDevicePort)); }), kSilentPort);
  EXPECT_EQ(did_, kNotWritten);
}

TEST_F(ComWire, NoiseIsNoReader) {
  Flooding noise;
  PortDevice device(ports_, kDevicePort, noise);
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(kDevicePort)); }), 2 * 50);
}

TEST_F(ComWire, RefusalIsNoReader) {
  Answering refusing({0x6D, 0x00});
  PortDevice device(ports_, kDevicePort, refusing);
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(kDevicePort)); }), 2 * 50);
}

// 40 ms per byte: slower than 300 baud, and still within the time-outs.
TEST_F(ComWire, SlowReaderIsAReader) {
  Answering slow(kPingAnswer);
  PortDevice device(ports_, kDevicePort, slow, {.betweenBytes = Milliseconds(40)});
  EXPECT_EQ(ConnectToPort(kDevicePort), 0u) << "the configuration is not that of a reader";
  EXPECT_EQ(CALL(library_, GetDevCnt)(), 1);
}

// An answer that breaks off ends after the time for its missing bytes.
TEST_F(ComWire, HalfAnAnswerIsNoReader) {
  Answering broken({0x04, 1, 2});
  PortDevice device(ports_, kDevicePort, broken);
  // Four bytes are waited for; the second ping finds the line empty again.
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(0u, ConnectToPort(kDevicePort)); }), 2 * (50 + 512));
}

TEST_F(ComWire, EveryTimeoutSetIsInForce) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(ConnectToPort(kDevicePort), 1u);
  EXPECT_EQ(TimeOfRead(20, 0), 500 + 3 * 20);
  std::uint8_t bytes[40];
  const auto quick = CALL(library_, QuickReadSerialPort);
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(0u, quick(bytes, sizeof bytes)); }), 10 + 40);
  EXPECT_EQ(TimeOfRead(1, 0), 500 + 3);
  CALL(library_, SetSerialTimeouts)(5000, 5000, 5000);
  EXPECT_EQ(TimeOfRead(90, 0), 10 + 90);
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(0u, quick(bytes, 0)); }), 0);
}

TEST_F(ComWire, SilenceBehindAByteEndsARead) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(ConnectToPort(kDevicePort), 1u);
  // The reader's echo of a command, and nothing after it: 750 ms of silence precede the full 1100 ms.
  line_.faults.AnswerWith({0x0C, 0x06}, {0x0C, 0x07});
  ASSERT_EQ(CALL(library_, WriteSerialPort)("\xFA\x0C\x06\x00\x00", 5), 5u);
  EXPECT_EQ(TimeOfRead(200, 2), 750);
}

TEST_F(ComWire, RawBytesPass) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(ConnectToPort(kDevicePort), 1u);
  ASSERT_EQ(CALL(library_, WriteSerialPort)("\xFA\x04\x00\x00\x04", 5), 5u);
  Bytes bytes(7);
  EXPECT_EQ(CALL(library_, ReadSerialPort)(bytes.data(), 7), 7u);
  EXPECT_EQ(bytes[0], 0x04);
  EXPECT_EQ(bytes[5], 0x90);
  ASSERT_EQ(CALL(library_, WriteSerialPort)("\xFA\x04\x00\x00\x04", 5), 5u);
  EXPECT_EQ(CALL(library_, readSerialPort_char)(-1), 7u);
  EXPECT_EQ(CALL(library_, readSerialPort_char)(5), 0xFFFFFF90u);
}

TEST_F(ComWire, BaudCode) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(ConnectToPort(kDevicePort), 1u);
  EXPECT_EQ(CALL(library_, WriteBaudRate)(5), 1u);
  EXPECT_EQ(CALL(library_, ReadBaudRate)(), 5u);
  EXPECT_EQ(reader_->state.baudCode, 5);
}

TEST_F(ComWire, DisconnectedPortCanBeOpenedAgain) {
  PortDevice device(ports_, kDevicePort, line_);
  ASSERT_EQ(ConnectToPort(kDevicePort), 1u);
  EXPECT_EQ(CALL(library_, ComDisconnect)(), 1u);
  EXPECT_EQ(CALL(library_, ComDisconnect)(), 0u);
  CALL(library_, USBDisconnect)();
  EXPECT_EQ(ConnectToPort(kDevicePort), 1u);
}

class AsciiWire : public ComWire {
 protected:
  void SetUp() override {
    Wire::SetUp();
    ASSERT_EQ(ConnectToPort(kDevicePort), 1u);
    ASSERT_EQ(CALL(library_, UseAsciiCommandProtocol)(1), 1u);
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
  const int took = TimeOf([&] { ASSERT_EQ(CALL(library_, ReadCfg)(), 1u); });
  // Each of the two answers ends with 750 ms of silence.
  EXPECT_EQ(took, 2 * 750 + static_cast<int>((Slept() - before).count()));
  EXPECT_EQ(CALL(library_, GetLUID)(), 0x1Au);
  EXPECT_EQ(CALL(library_, GetDID)(), reader_->state.did);
  tsTimeParms times{};
  EXPECT_EQ(CALL(library_, GetTimeParms)(&times), 1u);
  EXPECT_EQ(times.iIDHoldTO, 1000);

  Pause(Milliseconds(270));
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(CALL(library_, GetActiveID)(id.data(), 8), 26);
  EXPECT_EQ(id[0] | id[1] << 8 | id[2] << 16, 0x0112AB);
}

// "\rRFID:QID.ID\r" is thirteen characters.
TEST_F(AsciiWire, TextGoesOutInPairs) {
  const int before = SleepsOf(Milliseconds(1));
  std::array<std::uint8_t, 8> id{};
  Pause(Milliseconds(270));
  EXPECT_EQ(CALL(library_, GetActiveID)(id.data(), 8), 0) << "no card";
  EXPECT_EQ(SleepsOf(Milliseconds(1)) - before, 7);
}

TEST_F(AsciiWire, AnswerThatBreaksOff) {
  device_.With([&] { text_.faults.AnswerWith({'Q', 'I', 'D'}, {'{', '1', ',', '2'}); });
  CALL(library_, SetSerialTimeouts)(0, 0, 0);
  std::array<std::uint8_t, 8> id{};
  Pause(Milliseconds(270));
  // 300 reads of a byte with 10 ms after each; all but the echo of thirteen characters and these four wait 11
  // ms in vain. Before them seven pairs are sent, and 10 ms later what has arrived is dropped.
  EXPECT_EQ(TimeOf([&] { EXPECT_EQ(0, CALL(library_, GetActiveID)(id.data(), 8)); }),
            7 + 10 + 300 * 10 + (300 - 13 - 4) * 11);
  EXPECT_EQ(CALL(library_, GetLastLibErr)(), TAVLYN_ERR_ASCII_ANSWER);
}

}  // namespace
}  // namespace tavlyn::boundary
