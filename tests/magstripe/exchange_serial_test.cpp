// On a serial line a packet that is sent completely is not followed by a read.
#include "core/state.h"
#include "links/serial_port.h"
#include "tests/magstripe/model_bench.h"

namespace tavlyn::test {
namespace {

class MagModelSerial : public MagModelBench {
 protected:
  void AddLine() {
    shared.ActDev = shared.DevCnt++;
    EntryOfActDev().LinkKind = kBySerialPort;
    EntryOfActDev().ProductKind = kMagstripe;
    auto made = std::make_unique<sim::VirtualComPort>(host.transcript, line);
    port = made.get();
    EntryOfActDev().pSerialPort = new (std::nothrow) SerialPort(std::move(made));  // the entry owns it
    ForgetTraffic();
  }

  sim::MagstripeLine line{magstripe};
  sim::VirtualComPort* port = nullptr;
};

TEST_F(MagModelSerial, AWholePacketGetsNoReply) {
  AddLine();
  EXPECT_EQ(BeepNow(2, 0), 0U);
  ExpectTraffic({"write 42 53 32 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0D", "sleep 2"});
  EXPECT_EQ(magstripe->state.beeps.size(), 1U) << "the reader took it";
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
}

TEST_F(MagModelSerial, OneByteWrittenCountsAsGood) {
  AddLine();
  port->writeLimit = 1;
  const sim::Bytes reply = Packet("R");
  port->toRead.assign(reply.begin(), reply.end());
  EXPECT_EQ(BeepNow(2, 0), 1U);
  ExpectTraffic({"write 42", "read"});
  EXPECT_EQ(BeepNow(2, 0), 0U) << "nothing came";
}

TEST_F(MagModelSerial, NoPortNoReply) {
  shared.ActDev = shared.DevCnt++;
  EntryOfActDev().LinkKind = kBySerialPort;
  EntryOfActDev().ProductKind = kMagstripe;
  EXPECT_EQ(BeepNow(1, 0), 0U);
  ExpectTraffic({"sleep 2"});
}

TEST_F(MagModelSerial, ASearchOfPortsFindsNone) {
  host.ports.present[3] = &line;
  SetDevTypeSrch(1);
  SetConnectProduct(2);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 0);
  const std::string packet = "write 51 52 5A 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0D";
  Lines lines;
  for (const std::string& text : TrafficOf(host.transcript.Events())) {
    if (!text.starts_with("open")) lines.push_back(text);
  }
  EXPECT_EQ(Difference({"sleep 30", "write 0D 0D", "flush", "sleep 30", "purge", packet, "sleep 2",
                        "sleep 25", packet, "sleep 2", "sleep 2"},
                       lines),
            "");
}

}  // namespace
}  // namespace tavlyn::test
