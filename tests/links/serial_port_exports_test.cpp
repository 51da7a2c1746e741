// Raw bytes through the active device's port, by buffer and by single characters.
#include <gtest/gtest.h>

#include "api.h"
#include "links/com_search.h"
#include "links/link_socket.h"
#include "links/serial_port.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;

class RawSerial : public SerialBench {
 protected:
  void UseLine() { AddLine(script); }
  Bytes buffer = Bytes(4, 0xEE);
};

TEST_F(RawSerial, ReadsThroughTheActivePort) {
  UseLine();
  com->toRead = {1, 2, 3, 4, 5};
  EXPECT_EQ(ReadSerialPort(buffer.data(), 4), 4U);
  EXPECT_EQ(buffer, (Bytes{1, 2, 3, 4}));
  EXPECT_EQ(ReadSerialPort(buffer.data(), 4), 1U);
  EXPECT_EQ(ReadSerialPort(buffer.data(), 0), 0U);
  ExpectTraffic({"read 01 02 03 04", "read 05"});
  EXPECT_EQ(host.mutex.Depth(), 0);
}

TEST_F(RawSerial, TheQuickReadPutsTheTimeoutsBack) {
  UseLine();
  com->toRead = {1};
  EXPECT_EQ(QuickReadSerialPort(buffer.data(), 0), 0U);
  EXPECT_EQ(host.transcript.Lines(), Lines{});
  EXPECT_EQ(QuickReadSerialPort(buffer.data(), 4), 1U);
  EXPECT_EQ(host.transcript.Lines(),
            (Lines{"time-outs 100 1 10 50 500", "read 01", "time-outs 250 5 300 50 500"}));
}

TEST_F(RawSerial, AWriteIsFollowedByAFlush) {
  UseLine();
  com->writeLimit = 2;
  EXPECT_EQ(WriteSerialPort("abc", 3), 2U);
  ExpectTraffic({"write 61 62", "flush"});
  EXPECT_EQ(WriteSerialPort("abc", 0), 0U);
  ExpectTraffic({});
}

TEST_F(RawSerial, AClosedOrAbsentPortMovesNothing) {
  UseLine();
  Port().Close();
  ForgetTraffic();
  const auto expectNothing = [&] {
    EXPECT_EQ(ReadSerialPort(buffer.data(), 4), 0U);
    EXPECT_EQ(QuickReadSerialPort(buffer.data(), 4), 0U);
    EXPECT_EQ(WriteSerialPort("abc", 3), 0U);
    SetSerialTimeouts(1, 1, 1);
    EXPECT_EQ(readSerialPort_char(-1), 0U);
    EXPECT_EQ(quickReadSerialPort_char(-1), 0U);
    EXPECT_EQ(host.transcript.Lines(), Lines{});
  };
  expectNothing();
  EXPECT_EQ(Port().Timeouts().readInterval, 250U);
  delete Entry().pSerialPort;
  Entry().pSerialPort = nullptr;
  expectNothing();
}

TEST_F(RawSerial, TheOpenSocketTakesTheBytesOfEveryPort) {
  UseLine();
  OpenSocket();
  host.sockets.toReceive = {Bytes{1, 2, 3, 4}};
  EXPECT_EQ(ReadSerialPort(buffer.data(), 4), 4U);
  EXPECT_EQ(WriteSerialPort("ab", 2), 2U);
  ExpectTraffic({"sleep 30", "sleep 20", "recv 01 02 03 04", "send 61 62", "sleep 20"});
  EXPECT_EQ(ReadSerialPort(buffer.data(), 4), 0xFFFFFFFFU) << "a failed receive";
  shared.link.LinkSocket = platform::kNoHandle;
}

TEST_F(RawSerial, TheTimeoutsBecomeTheQuickOnesWhateverIsAskedFor) {
  UseLine();
  SetSerialTimeouts(5000, 5000, 5000);
  EXPECT_EQ(host.transcript.Lines(), Lines{"time-outs 100 1 10 50 500"});
  EXPECT_EQ(com->timeouts.readInterval, 100U);
  ForgetTraffic();
  Port().SetUsbHandle(77);
  Port().UseNormalTimeouts();
  SetSerialTimeouts(1, 1, 1);
  EXPECT_EQ(host.transcript.Lines(), Lines{});
  EXPECT_EQ(Port().Timeouts().readInterval, 750U);
}

TEST_F(RawSerial, CharactersComeOutOfAPrivateBuffer) {
  UseLine();
  com->toRead = {0x41, 0xFF, 0x7F};
  EXPECT_EQ(readSerialPort_char(-1), 3U);
  EXPECT_EQ(readSerialPort_char(0), 0x41U);
  EXPECT_EQ(readSerialPort_char(1), 0xFFFFFFFFU);
  EXPECT_EQ(readSerialPort_char(2), 0x7FU);
  EXPECT_EQ(readSerialPort_char(3), 0U);
  EXPECT_EQ(readSerialPort_char(1023), 0U);
  EXPECT_EQ(readSerialPort_char(1024), 0U);
  EXPECT_EQ(readSerialPort_char(-2), 0U);
  EXPECT_EQ(readSerialPort_char(INT16_MIN), 0U);
  EXPECT_EQ(readSerialPort_char(-1), 0U);
  EXPECT_EQ(readSerialPort_char(0), 0U) << "emptied by each fetch";
}

TEST_F(RawSerial, TheQuickCharactersHaveABufferOfTheirOwn) {
  UseLine();
  com->toRead.assign(1500, 0x80);
  EXPECT_EQ(readSerialPort_char(-1), 1024U);
  EXPECT_EQ(quickReadSerialPort_char(-1), 476U);
  EXPECT_EQ(quickReadSerialPort_char(475), 0xFFFFFF80U);
  EXPECT_EQ(quickReadSerialPort_char(476), 0U);
  EXPECT_EQ(readSerialPort_char(1023), 0xFFFFFF80U);
  EXPECT_EQ(quickReadSerialPort_char(1024), 0U);
  EXPECT_EQ(quickReadSerialPort_char(-2), 0U);
}

TEST_F(RawSerial, WithTheSocketGoneInTheMiddleReadsEndInBoundedTime) {
  UseLine();
  OpenSocket();
  host.sockets.toReceive = {Bytes{1}, Bytes{}, Bytes{}, Bytes{}, Bytes{}};
  EXPECT_EQ(ReadSerialPort(buffer.data(), 4), 0U);
  EXPECT_EQ(Slept(), 130U);
  shared.link.LinkSocket = platform::kNoHandle;
}

TEST_F(RawSerial, TheBaudRateIsKeptForTheNextSearch) {
  UseLine();
  EXPECT_EQ(shared.search.DefaultBaud, 9600U);
  SetBaudRate(57600);
  EXPECT_EQ(shared.search.DefaultBaud, 57600U);
  EXPECT_EQ(host.transcript.Lines(), Lines{});
}

}  // namespace
}  // namespace tavlyn::test
