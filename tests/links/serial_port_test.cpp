// The byte carrier: which of its three links is used, and what each call does on each of them.
#include "links/serial_port.h"

#include <gtest/gtest.h>

#include "links/link_socket.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;

constexpr platform::Handle kUsb = 77;
constexpr platform::Handle kOpenSocket = 7;
constexpr std::uint32_t kFailed = 0xFFFFFFFF;

const Lines kQuick = {"time-outs 100 1 10 50 500"};
const Lines kConstructed = {"time-outs 250 5 300 50 500"};

class SerialPortTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    host.ports.present = {{1, nullptr}, {3, nullptr}};
    ForgetTraffic();
  }
  void OpenCom() {
    port.SetPortNum(3);
    ASSERT_TRUE(port.Open());
    ForgetTraffic();
  }
  // Everything asked of the system since the last call, not only the traffic.
  void ExpectCalls(const Lines& expected, int line = __builtin_LINE()) {
    EXPECT_EQ(Difference(expected, host.transcript.Lines()), "") << "from line " << line;
    ForgetTraffic();
  }
  void ExpectTimeouts(std::uint32_t interval, std::uint32_t multiplier, std::uint32_t constant) const {
    const auto set = port.Timeouts();
    EXPECT_EQ(set.readInterval, interval);
    EXPECT_EQ(set.readMultiplier, multiplier);
    EXPECT_EQ(set.readConstant, constant);
    EXPECT_EQ(set.writeMultiplier, 50U);
    EXPECT_EQ(set.writeConstant, 500U);
  }

  SerialPort port;
  Bytes buffer = Bytes(4, 0xEE);
};

TEST_F(SerialPortTest, AFreshOneIsPortOneAt9600) {
  EXPECT_FALSE(port.IsOpen());
  EXPECT_FALSE(port.IsOverTcp());
  EXPECT_FALSE(port.HasUsbHandle());
  EXPECT_EQ(port.PortNum(), 1);
  ExpectTimeouts(250, 5, 300);
  ASSERT_TRUE(port.Open());
  const auto& opened = host.ports.opened.at(0);
  EXPECT_EQ(opened.number, 1);
  EXPECT_EQ(opened.line.baud, 9600U);
  EXPECT_EQ(opened.line.parity, 0);
  EXPECT_EQ(opened.line.stopBits, 0);
  EXPECT_EQ(opened.timeouts.readInterval, 250U);
  EXPECT_EQ(opened.timeouts.writeConstant, 500U);
  ExpectCalls({"open COM1"});
}

TEST_F(SerialPortTest, ANumberOutsideTheRangeIsOne) {
  for (const std::int32_t number : {0, -1, 257, 65539}) {
    port.SetPortNum(5);
    port.SetPortNum(number);
    EXPECT_EQ(port.PortNum(), 1) << number;
  }
  port.SetPortNum(256);
  EXPECT_EQ(port.PortNum(), 256);
}

TEST_F(SerialPortTest, ATcpPortHasNoRange) {
  port.SetIpAddr({10, 0, 0, 5});
  EXPECT_TRUE(port.IsOverTcp());
  port.SetPortNum(0);
  EXPECT_EQ(port.PortNum(), 0);
  port.SetPortNum(257);
  EXPECT_EQ(port.PortNum(), 257);
  port.SetPortNum(0x12345);
  EXPECT_EQ(port.PortNum(), 0x2345);
}

TEST_F(SerialPortTest, TheTimeoutSetsReachAnOpenPort) {
  port.UseFastTimeouts();
  ExpectTimeouts(11, 3, 100);
  ExpectCalls({});
  OpenCom();
  EXPECT_EQ(host.ports.opened.at(0).timeouts.readInterval, 11U);
  port.UseNormalTimeouts();
  ExpectTimeouts(750, 3, 500);
  port.UseFastTimeouts();
  port.UseQuickTimeouts();
  ExpectTimeouts(100, 1, 10);
  ExpectCalls({"time-outs 750 3 500 50 500", "time-outs 11 3 100 50 500", "time-outs 100 1 10 50 500"});
}

TEST_F(SerialPortTest, TheOtherSettersLeaveAnOpenPortAlone) {
  OpenCom();
  port.SetPortNum(1);
  port.SetLine({115200, 2, 2});
  ExpectCalls({});
  EXPECT_TRUE(port.Close());
  EXPECT_TRUE(port.Open());
  EXPECT_EQ(host.ports.opened.at(1).number, 1);
  EXPECT_EQ(host.ports.opened.at(1).line.baud, 115200U);
  EXPECT_EQ(host.ports.opened.at(1).line.parity, 2);
  EXPECT_EQ(host.ports.opened.at(1).line.stopBits, 2);
}

TEST_F(SerialPortTest, ASecondOpenFailsAndThePortStaysOpen) {
  OpenCom();
  EXPECT_FALSE(port.Open());
  EXPECT_TRUE(port.IsOpen());
  ExpectCalls({});
  port.SetUsbHandle(kUsb);
  EXPECT_TRUE(port.Open());
  EXPECT_TRUE(port.Open());
  ExpectCalls({});
}

TEST_F(SerialPortTest, APortThatIsNotThereDoesNotOpen) {
  port.SetPortNum(10);
  EXPECT_FALSE(port.Open());
  EXPECT_FALSE(port.IsOpen());
  EXPECT_FALSE(port.Close());
  ExpectCalls({"open COM10 refused"});
}

TEST_F(SerialPortTest, CloseDropsDtrAndReleaseDoesNot) {
  EXPECT_FALSE(port.Close());
  port.Release();
  ExpectCalls({});
  OpenCom();
  EXPECT_TRUE(port.Close());
  EXPECT_FALSE(port.IsOpen());
  EXPECT_FALSE(port.Close());
  ExpectCalls({"close COM3"});
  OpenCom();
  port.Release();
  EXPECT_FALSE(port.IsOpen());
  EXPECT_FALSE(port.Close());
  ExpectCalls({"close COM3 quietly"});
  EXPECT_TRUE(port.Open()) << "usable again";
}

TEST_F(SerialPortTest, CloseClosesASocketThatThePortNeverUsed) {
  OpenCom();
  shared.link.LinkSocket = kOpenSocket;
  EXPECT_TRUE(port.Close());
  EXPECT_FALSE(LinkIsOpen());
  ExpectCalls({"close socket 7"});
  EXPECT_TRUE(port.IsOpen()) << "the COM port is untouched";
  EXPECT_TRUE(port.Close());
  ExpectCalls({"close COM3"});
  SerialPort other;
  shared.link.LinkSocket = kOpenSocket;
  EXPECT_TRUE(other.IsOpen());
  EXPECT_TRUE(other.Close());
}

TEST_F(SerialPortTest, ASocketThatDoesNotCloseStaysOpen) {
  shared.link.LinkSocket = kOpenSocket;
  host.sockets.closeResult = -1;
  EXPECT_TRUE(port.Close());
  EXPECT_TRUE(LinkIsOpen());
  EXPECT_TRUE(port.IsOpen());
}

TEST_F(SerialPortTest, ReleaseDoesNotLookAtTheSocket) {
  OpenCom();
  shared.link.LinkSocket = kOpenSocket;
  port.Release();
  EXPECT_TRUE(LinkIsOpen());
  ExpectCalls({"close COM3 quietly"});
}

TEST_F(SerialPortTest, CloseAndReleaseGiveTheUsbDeviceBack) {
  host.usb.loads = true;
  for (const bool release : {false, true}) {
    OpenCom();
    shared.link.LinkSocket = kOpenSocket;
    port.SetUsbHandle(kUsb);
    if (release) {
      port.Release();
    } else {
      EXPECT_TRUE(port.Close());
    }
    EXPECT_FALSE(port.HasUsbHandle());
    EXPECT_TRUE(LinkIsOpen());
    ExpectCalls({"usb release 0", "usb close"});
    shared.link.LinkSocket = platform::kNoHandle;
    EXPECT_TRUE(port.Close()) << "the COM port was left open";
  }
}

TEST_F(SerialPortTest, TheUsbDeviceComesFirst) {
  OpenCom();
  shared.link.LinkSocket = kOpenSocket;
  port.SetUsbHandle(kUsb);
  host.usb.toRead = {{1, 2, 3, 4}};
  host.usb.writeResult = -1;
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(port.Read(buffer), 4U);
  EXPECT_EQ(buffer, (Bytes{1, 2, 3, 4}));
  EXPECT_EQ(port.Write(Bytes{9, 8}), 2U) << "as asked, whatever happened";
  EXPECT_EQ(port.QuickRead(buffer), 0U);
  port.WriteText("ABC");
  port.Flush();
  port.DrainFlush();
  port.UseFastTimeouts();
  port.SetLine({1, 1, 1});
  ExpectCalls({"read 01 02 03 04", "write 09 08"});
  using LineTransfer = sim::VirtualLibusb::Transfer;
  EXPECT_EQ(host.usb.transfers, (std::vector<LineTransfer>{{true, 0x83, 32, 250}, {false, 0x03, 2, 250}}));
  EXPECT_EQ(port.Read(buffer), 0U);
  EXPECT_EQ(buffer, Bytes(4)) << "zeroed before the read";
  port.ClearInput();
  ExpectCalls(Times(10, {"read refused"}));
}

TEST_F(SerialPortTest, TheOpenSocketComesBeforeTheComPort) {
  OpenCom();
  shared.link.LinkSocket = kOpenSocket;
  host.sockets.toReceive = {Bytes{1, 2, 3, 4}, Bytes{5, 6, 7, 8}, Bytes(128, 9)};
  EXPECT_EQ(port.Read(buffer), 4U);
  ExpectCalls({"sleep 30", "sleep 20", "recv 01 02 03 04"});
  EXPECT_EQ(port.QuickRead(buffer), 4U);
  ExpectCalls({"sleep 30", "sleep 20", "recv 05 06 07 08"});
  port.ClearInput();
  ExpectTraffic({"sleep 30", "sleep 20", "recv"});
  EXPECT_TRUE(host.sockets.toReceive.empty());
  EXPECT_EQ(port.Write(Bytes{9, 8}), 2U);
  ExpectCalls({"send 09 08", "sleep 20"});
  host.sockets.sendResult = -1;
  EXPECT_EQ(port.Write(Bytes{9}), kFailed);
  ExpectCalls({"send 09 refused", "sleep 20"});
  port.Flush();
  ExpectCalls({});
  port.DrainFlush();
  ExpectCalls({"sleep 10"});
  port.UseNormalTimeouts();
  ExpectCalls({"time-outs 750 3 500 50 500"});
}

TEST_F(SerialPortTest, ClearingASocketIsARequestFor128Bytes) {
  shared.link.LinkSocket = kOpenSocket;
  host.sockets.toReceive = {Bytes(63), Bytes(1), Bytes(64)};
  port.ClearInput();
  EXPECT_EQ(host.sockets.toReceive.size(), 1U) << "half of them end it, less do not";
  shared.link.LinkSocket = platform::kNoHandle;
}

TEST_F(SerialPortTest, OpensATcpConnectionInSocketMode) {
  host.sockets.accepts = [](platform::Address peer) { return peer.port == 4001; };
  port.SetIpAddr({10, 0, 0, 5});
  port.SetPortNum(4000);
  EXPECT_FALSE(port.IsOpen()) << "the mode alone opens nothing";
  EXPECT_EQ(port.Read(buffer), 0U);
  EXPECT_FALSE(port.Open());
  EXPECT_FALSE(LinkIsOpen());
  port.SetPortNum(4001);
  EXPECT_TRUE(port.Open());
  EXPECT_TRUE(LinkIsOpen());
  ExpectTraffic({"connect 10.0.0.5:4000 refused", "connect 10.0.0.5:4001"});
  EXPECT_TRUE(port.Close());
  EXPECT_FALSE(LinkIsOpen());
  EXPECT_TRUE(port.IsOverTcp()) << "never cleared";
  EXPECT_TRUE(host.ports.opened.empty());
}

TEST_F(SerialPortTest, AClosedPortMovesNothing) {
  EXPECT_EQ(port.Read(buffer), 0U);
  EXPECT_EQ(port.QuickRead(buffer), 0U);
  EXPECT_EQ(port.Write(buffer), 0U);
  port.ClearInput();
  port.Flush();
  ExpectCalls({});
  port.DrainFlush();
  ExpectCalls({"sleep 10"});
  port.WriteText("ABC");
  ExpectCalls({"sleep 1", "sleep 1"});
}

TEST_F(SerialPortTest, AComPortReadsWritesAndPurges) {
  auto com = std::make_unique<sim::VirtualComPort>(host.transcript);
  com->toRead = {1, 2, 3, 4, 5, 6};
  com->writeLimit = 2;
  SerialPort script(std::move(com));
  EXPECT_EQ(script.Read(buffer), 4U);
  EXPECT_EQ(script.Write(Bytes{7, 8, 9}), 2U);
  script.ClearInput();
  EXPECT_EQ(script.Read(buffer), 0U);
  script.Flush();
  script.DrainFlush();
  ExpectCalls({"read 01 02 03 04", "write 07 08", "purge", "read", "flush", "sleep 10", "flush"});
}

TEST_F(SerialPortTest, QuickReadPutsTheTimeoutsBack) {
  OpenCom();
  EXPECT_EQ(port.QuickRead({}), 0U);
  ExpectCalls({});
  EXPECT_EQ(port.QuickRead(buffer), 0U);
  ExpectCalls(Join({kQuick, {"read"}, kConstructed}));
  ExpectTimeouts(250, 5, 300);
  port.UseFastTimeouts();
  ForgetTraffic();
  port.QuickRead(buffer);
  ExpectCalls(Join({kQuick, {"read"}, {"time-outs 11 3 100 50 500"}}));
  ExpectTimeouts(11, 3, 100);
}

TEST_F(SerialPortTest, TextGoesOutInPairsWithAPauseBehindEach) {
  OpenCom();
  port.WriteText("ABCDE");
  ExpectCalls({"write 41 42", "sleep 1", "write 43 44", "sleep 1", "write 45", "sleep 1"});
  port.WriteText("ABCD");
  ExpectCalls({"write 41 42", "sleep 1", "write 43 44", "sleep 1"});
  port.WriteText("A");
  ExpectCalls({"write 41", "sleep 1"});
  port.WriteText("");
  ExpectCalls({});
  shared.link.LinkSocket = kOpenSocket;
  host.sockets.sendResult = -1;
  port.WriteText("ABC");
  ExpectCalls({"send 41 42 refused", "sleep 1", "send 43 refused", "sleep 1"});
}

}  // namespace
}  // namespace tavlyn::test
