// The search for the reader on the bulk device.
#include "links/libusb_search.h"

#include <gtest/gtest.h>

#include "links/serial_port.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

constexpr Probe kYes{[] { return true; }, kReader};
constexpr Probe kNo{[] { return false; }, kReader};

class LibusbSearchTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    host.usb.loads = host.usb.present = true;
    ForgetTraffic();
  }
};

TEST_F(LibusbSearchTest, WithoutTheDeviceTheTableIsLeftAlone) {
  host.usb.present = false;
  shared.ActDev = 3;
  EXPECT_FALSE(SearchLibusb(kYes));
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
  EXPECT_EQ(shared.DevCnt, 0);
  EXPECT_EQ(shared.ActDev, 3);
}

TEST_F(LibusbSearchTest, FillsTheNextEntry) {
  shared.DevCnt = 2;
  EXPECT_TRUE(SearchLibusb(kYes));
  const tsDevEntry& entry = DevTable[2];
  EXPECT_EQ(shared.DevCnt, 3);
  EXPECT_EQ(shared.ActDev, 2);
  EXPECT_EQ(entry.LinkKind, kBySerialPort);
  EXPECT_EQ(entry.bFound, 1);
  EXPECT_EQ(entry.ProductKind, kReader);
  EXPECT_STREQ(entry.DevName, "/USB/Velmar/Corvane");
  ASSERT_NE(entry.pSerialPort, nullptr);
  EXPECT_TRUE(entry.pSerialPort->HasUsbHandle());
  EXPECT_EQ(entry.pSerialPort->Timeouts().readInterval, 750U);
  EXPECT_TRUE(host.ports.opened.empty());
}

TEST_F(LibusbSearchTest, ASilentDeviceIsGivenBackAndItsObjectGone) {
  EXPECT_FALSE(SearchLibusb(kNo));
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
  EXPECT_EQ(DevTable[0].bFound, 0);
  EXPECT_EQ(shared.DevCnt, 0);
  EXPECT_EQ(host.usb.openHandles, 0);
  const Lines lines = host.transcript.Lines();
  EXPECT_EQ(Lines(lines.end() - 2, lines.end()), (Lines{"usb release 0", "usb close"}));
}

TEST_F(LibusbSearchTest, AnObjectOfTheOldTableIsClosedAndUsed) {
  host.ports.present[3] = nullptr;
  auto* old = new (std::nothrow) SerialPort;  // the entry owns it
  old->SetPortNum(3);
  ASSERT_TRUE(old->Open());
  DevTable[0].pSerialPort = old;
  EXPECT_TRUE(SearchLibusb(kYes));
  EXPECT_EQ(DevTable[0].pSerialPort, old);
  EXPECT_TRUE(host.ports.inUse.empty());
}

TEST_F(LibusbSearchTest, AFullTableTakesNothing) {
  shared.DevCnt = kTableEntries;
  EXPECT_FALSE(SearchLibusb(kYes));
  EXPECT_EQ(shared.DevCnt, kTableEntries);
  EXPECT_EQ(host.usb.openHandles, 0) << "the device is not kept open for nobody";
  shared.DevCnt = 0;
}

}  // namespace
}  // namespace tavlyn::test
