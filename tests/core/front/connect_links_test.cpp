// A connect that finds its reader on a serial port, behind an Ethernet adapter or on the bulk device.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "api.h"
#include "core/state.h"
#include "links/link_socket.h"
#include "links/serial_port.h"
#include "sim/devices/reader_fa.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

const std::string kNoUsbReader = "tavlyn_USBConnect USBConnect failed to find any devices";

// A far end that sends its answers as the device's firmware does: echo, data and status each in a packet of
// its own.
class InPackets final : public sim::ByteDevice {
 public:
  explicit InPackets(sim::ByteDevice& device) : device_(device) {}

  void Receive(std::span<const std::uint8_t> bytes) override { device_.Receive(bytes); }

  std::size_t Take(std::span<std::uint8_t> bytes) override {
    if (packets_.empty()) Split();
    if (packets_.empty()) return 0;
    const sim::Bytes packet = packets_.front();
    packets_.pop_front();
    const std::size_t count = std::min(packet.size(), bytes.size());
    std::copy_n(packet.begin(), count, bytes.begin());
    return count;
  }

 private:
  void Split() {
    sim::Bytes all(256);
    all.resize(device_.Take(all));
    if (all.empty()) return;
    const auto size = static_cast<std::ptrdiff_t>(all.size());
    const bool hasStatus = size >= 3 && all.at(all.size() - 2) == 0x90 && all.back() == 0;
    const std::ptrdiff_t dataEnd = hasStatus ? size - 2 : size;
    packets_.emplace_back(all.begin(), all.begin() + 1);
    if (dataEnd > 1) packets_.emplace_back(all.begin() + 1, all.begin() + dataEnd);
    if (hasStatus) packets_.emplace_back(all.end() - 2, all.end());
  }

  sim::ByteDevice& device_;
  std::deque<sim::Bytes> packets_;
};

class ConnectLinksTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    SetConnectProduct(1);
    host.ports.clock = &host.clock;
    ForgetTraffic();
  }
  void Use(std::shared_ptr<Reader> model) {
    reader = std::move(model);
    line = std::make_unique<sim::ReaderFa>(reader);
    host.ports.onTimeout = [this] { line->Silence(); };
    for (const std::size_t cpu : {0U, 1U, 2U}) {
      reader->state.firmware.at(cpu) = {0x100 + static_cast<std::uint32_t>(cpu), 7, 0, 0, 0};
    }
  }
  void AcceptAdapter() {
    host.sockets.accepts = [](platform::Address peer) {
      return peer.ip == std::array<std::uint8_t, 4>{10, 0, 0, 5} && peer.port == 4001;
    };
    SetIpPort(10, 0, 0, 5, 4001);
    SetDevTypeSrch(2);
  }
  static bool Told(const std::string& text) {
    const Lines trace = Trace();
    return std::find(trace.begin(), trace.end(), text) != trace.end();
  }

  std::shared_ptr<Reader> reader;
  std::unique_ptr<sim::ReaderFa> line;
  std::uint32_t did = 0;
};

TEST_F(ConnectLinksTest, AReaderOnASerialPort) {
  Use(Reader::Plus(2));
  reader->state.did = 0xABCD;
  host.ports.present[8] = line.get();
  SetDevTypeSrch(1);
  StartTrace();
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_EQ(did, 0xABCDU);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_STREQ(DevTable[0].DevName, "COM8:");
  EXPECT_EQ(DevTable[0].PlusState, kPlusReader);
  EXPECT_EQ(shared.SearchErr, 0U);
  EXPECT_FALSE(Told(kNoUsbReader));
  EXPECT_TRUE(Told("USBConnect Success !!"));
  for (std::uint16_t cpu = 0; cpu <= 2; ++cpu) EXPECT_EQ(GetFirmwareVersion(cpu, 0), 0x100U + cpu);
}

TEST_F(ConnectLinksTest, TheSerialStageFollowsTheUsbStage) {
  Use(Reader::Plain());
  host.ports.present[1] = line.get();
  StartTrace();
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_TRUE(Told(kNoUsbReader));
  const auto connects = [](const sim::Event& event) { return event.kind == sim::EventKind::kConnect; };
  const auto events = host.transcript.Events();
  EXPECT_TRUE(std::none_of(events.begin(), events.end(), connects)) << "and ends the search";
}

TEST_F(ConnectLinksTest, AFailedReadOnASerialPortFailsTheConnect) {
  Use(Reader::Plain());
  line->faults.RefuseCommand({0x04, 0x00});
  host.ports.present[1] = line.get();
  SetDevTypeSrch(1);
  EXPECT_EQ(USBConnect(&did), 0U);
  EXPECT_EQ(shared.SearchErr, 0x10000U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_TRUE(DevTable[0].pSerialPort->IsOpen());
}

TEST_F(ConnectLinksTest, DisconnectClosesAndFreesThePort) {
  Use(Reader::Plain());
  host.ports.present[1] = line.get();
  SetDevTypeSrch(1);
  ASSERT_EQ(USBConnect(nullptr), 1U);
  ForgetTraffic();
  EXPECT_EQ(USBDisconnect(), 1U);
  EXPECT_EQ(host.transcript.Lines(), (Lines{"mutex lock", "close COM1", "mutex unlock"}));
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
}

TEST_F(ConnectLinksTest, ASecondConnectUsesTheOldObjectAgain) {
  Use(Reader::Plain());
  host.ports.present[1] = line.get();
  SetDevTypeSrch(1);
  ASSERT_EQ(USBConnect(nullptr), 1U);
  const SerialPort* port = DevTable[0].pSerialPort;
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(DevTable[0].pSerialPort, port);
}

TEST_F(ConnectLinksTest, AReaderBehindAnAdaptersSerialSide) {
  Use(Reader::Plain());
  host.sockets.device = line.get();
  AcceptAdapter();
  StartTrace();
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_EQ(did, reader->state.did);
  EXPECT_EQ(DevTable[0].LinkKind, kBySerialPort);
  EXPECT_EQ(DevTable[0].ProductKind, kReader);
  EXPECT_STREQ(DevTable[0].DevName, "MAC:00:00:00:00:00:00 TCP/IP:10.0.0.5;Port:4001");
  EXPECT_EQ(shared.link.TunnelLink, 0);
  EXPECT_TRUE(Told("USBConnect Success !!"));
  EXPECT_TRUE(LinkIsOpen());
  EXPECT_EQ(USBDisconnect(), 1U);
  EXPECT_FALSE(LinkIsOpen());
}

TEST_F(ConnectLinksTest, OnNoLinkButHidHasAReaderTheFiltersOfARow) {
  Use(Reader::Plain());
  InPackets packets(*line);
  const std::vector<std::function<void()>> links = {[&] { host.ports.present[8] = line.get(); },
                                                    [&] {
                                                      host.sockets.device = line.get();
                                                      AcceptAdapter();
                                                    },
                                                    [&] {
                                                      host.usb.loads = host.usb.present = true;
                                                      host.usb.device = &packets;
                                                    }};
  for (const std::function<void()>& attach : links) {
    const auto listed = Reader::Plain();
    listed->identity.pid = 0x3B57;
    Plug(listed, "listed");
    ASSERT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(GetVidPidFilterMask(1), 0x2000U) << "a pair of the table";
    USBDisconnect();
    host.hid.Unplug("listed");
    attach();
    ASSERT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(GetVidPidFilterMask(1), 0x8000U) << DevTable[0].DevName;
    EXPECT_EQ(GetVidPidFilterCompare(1), 0x8000U);
    EXPECT_EQ(DevTable[0].VidPidRow, -1);
    USBDisconnect();
    host.ports.present.clear();
    SetDevTypeSrch(-1);
  }
}

TEST_F(ConnectLinksTest, TheTunnelIsTriedNextAndCannotAnswer) {
  AcceptAdapter();
  StartTrace();
  EXPECT_EQ(USBConnect(&did), 0U);
  ExpectTrace({"USBConnect ENTER", "USBConnect EXIT"});
  EXPECT_EQ(shared.SearchErr, 0U);
  const Lines traffic = TrafficOf(host.transcript.Events());
  const auto tunnel = std::find(traffic.rbegin(), traffic.rend(), "connect 10.0.0.5:4001");
  EXPECT_EQ(std::count(traffic.begin(), traffic.end(), "connect 10.0.0.5:4001"), 2);
  EXPECT_EQ(Lines(tunnel.base(), traffic.end()), Lines{}) << "its frames carry no report of eight bytes";
  EXPECT_EQ(shared.link.TunnelLink, 0);
  EXPECT_FALSE(LinkIsOpen());
  EXPECT_EQ(GetDevCnt(), 0);
}

TEST_F(ConnectLinksTest, WithNothingAttachedNothingLeavesTheHost) {
  EXPECT_EQ(USBConnect(&did), 0U);
  EXPECT_EQ(Slept(), 2U * 254 * 2) << "two sweeps, 2 ms for each address";
  for (const sim::Event& event : host.transcript.Events()) {
    if (event.kind == sim::EventKind::kConnect || event.kind == sim::EventKind::kSendTo) {
      EXPECT_FALSE(event.ok) << event.Line();
    }
  }
  EXPECT_EQ(shared.link.TunnelLink, 1) << "left behind by the failed passes";
  EXPECT_FALSE(LinkIsOpen());
  SetConnectProduct(0);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(shared.link.TunnelLink, 0) << "cleared by the next connect";
}

TEST_F(ConnectLinksTest, AConnectEndsTheTunnelOfTheLastOne) {
  shared.link.LinkSocket = 7;
  shared.link.TunnelLink = 1;
  SetConnectProduct(0);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(host.transcript.Lines(), (Lines{"mutex lock", "close socket 7", "mutex unlock"}));
  shared.link.LinkSocket = 7;
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_TRUE(LinkIsOpen()) << "a socket that is no tunnel stays";
  shared.link.LinkSocket = platform::kNoHandle;
}

TEST_F(ConnectLinksTest, TheDefaultSearchWithNothingAttachedSendsNothing) {
  SetConnectProduct(0xFFFFFFFF);
  EXPECT_EQ(USBConnect(&did), 0U);
  EXPECT_GE(Slept(), 1016U);
  for (const sim::Event& event : host.transcript.Events()) {
    if (event.kind == sim::EventKind::kConnect || event.kind == sim::EventKind::kSendTo) {
      EXPECT_FALSE(event.ok) << event.Line();
    }
  }
}

TEST_F(ConnectLinksTest, AReaderOnTheBulkDeviceGetsTwoRowsOfFirmwareWords) {
  Use(Reader::Plus(2));
  reader->state.configurations.at(1).working.cardType = 0x1234;
  InPackets packets(*line);
  host.usb.loads = host.usb.present = true;
  host.usb.device = &packets;
  StartTrace();
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_EQ(did, reader->state.did);
  EXPECT_STREQ(DevTable[0].DevName, "/USB/Velmar/Corvane");
  EXPECT_EQ(DevTable[0].PlusState, kPlusReader);
  EXPECT_EQ(DevTable[0].CfgSlot[1].CardType, 0x1234)
      << "its number of configurations is asked before they are read";
  EXPECT_EQ(GetProduct(), 1U);
  EXPECT_EQ(GetFirmwareVersion(0, 0), 0x100U);
  EXPECT_EQ(GetFirmwareVersion(1, 0), 0x101U);
  EXPECT_EQ(GetFirmwareVersion(2, 0), 0U);
  EXPECT_FALSE(Told("USBConnect Success !!")) << "that line belongs to the other stages";
  EXPECT_FALSE(Told(kNoUsbReader));
  EXPECT_TRUE(host.ports.opened.empty());
  EXPECT_EQ(USBDisconnect(), 1U);
  EXPECT_EQ(host.usb.openHandles, 0);
}

TEST_F(ConnectLinksTest, ThePlainReaderOnTheBulkDeviceIsClassified) {
  Use(Reader::Plain());
  InPackets packets(*line);
  host.usb.loads = host.usb.present = true;
  host.usb.device = &packets;
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_EQ(DevTable[0].PlusState, kPlainReader);
}

TEST_F(ConnectLinksTest, ASilentBulkDeviceLetsTheSearchGoOn) {
  Use(Reader::Plain());
  host.usb.loads = host.usb.present = true;
  host.ports.present[1] = line.get();
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_STREQ(DevTable[0].DevName, "COM1:");
  EXPECT_EQ(host.usb.openHandles, 0);
}

TEST_F(ConnectLinksTest, WithoutTheReaderBitTheBulkDeviceIsNotOpened) {
  host.usb.loads = host.usb.present = true;
  SetConnectProduct(0);
  EXPECT_EQ(USBConnect(&did), 0U);
  EXPECT_EQ(host.transcript.Lines(),
            (Lines{"mutex lock", "usb load", "usb busses", "usb devices", "mutex unlock"}));
}

}  // namespace
}  // namespace tavlyn::test
