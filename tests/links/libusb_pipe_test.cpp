// The bulk device as a byte carrier: opening it, and the arithmetic of its ring.
#include "links/libusb_pipe.h"

#include <gtest/gtest.h>

#include "api.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using Transfer = sim::VirtualLibusb::Transfer;

constexpr platform::Handle kDevice = 77;

Bytes Count(std::uint8_t first, std::size_t length) {
  Bytes bytes(length);
  for (std::uint8_t& byte : bytes) byte = first++;
  return bytes;
}

class LibusbPipeTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    host.usb.loads = true;
    ForgetTraffic();
  }
  std::int32_t Read(std::size_t length, std::deque<Bytes> pieces) {
    host.usb.toRead = std::move(pieces);
    host.usb.transfers.clear();
    buffer.assign(length, 0xEE);
    return LibusbRead(kDevice, buffer);
  }
  // Puts that many surplus bytes into the ring's count.
  void FillRing(std::size_t count) { ASSERT_EQ(Read(1, {Bytes(count + 1, 0xAA)}), 1); }
  [[nodiscard]] std::size_t BulkReads() const { return host.usb.transfers.size(); }
  void ExpectCalls(const Lines& expected, int line = __builtin_LINE()) {
    EXPECT_EQ(Difference(expected, host.transcript.Lines()), "") << "from line " << line;
    ForgetTraffic();
  }

  Bytes buffer;
};

TEST_F(LibusbPipeTest, WhatIsAskedForComesWithOneTransfer) {
  EXPECT_EQ(Read(4, {{1, 2, 3, 4}}), 4);
  EXPECT_EQ(buffer, (Bytes{1, 2, 3, 4}));
  EXPECT_EQ(host.usb.transfers, (std::vector<Transfer>{{true, 0x83, 32, 250}}));
  EXPECT_EQ(Read(4, {{5, 6, 7, 8}}), 4);
  EXPECT_EQ(buffer, (Bytes{5, 6, 7, 8})) << "the ring was left untouched";
}

TEST_F(LibusbPipeTest, TheSurplusComesBackAsZeros) {
  EXPECT_EQ(Read(25, {Count(1, 32)}), 25);
  EXPECT_EQ(buffer, Count(1, 25));
  EXPECT_EQ(Read(7, {{9}}), 7);
  EXPECT_EQ(buffer, Bytes(7));
  EXPECT_EQ(BulkReads(), 0U);
  EXPECT_EQ(Read(1, {{9}}), 1);
  EXPECT_EQ(buffer, Bytes{9});
}

TEST_F(LibusbPipeTest, TheRingCoversSmallerReadsBitByBit) {
  FillRing(7);
  EXPECT_EQ(Read(3, {{9}}), 3);
  EXPECT_EQ(Read(4, {{9}}), 4);
  EXPECT_EQ(BulkReads(), 0U);
  EXPECT_EQ(Read(1, {{9}}), 1);
  EXPECT_EQ(BulkReads(), 1U);
}

TEST_F(LibusbPipeTest, BytesBehindTheRingsAreAddedToThem) {
  FillRing(7);
  EXPECT_EQ(Read(10, {{1, 2, 3}}), 10);
  EXPECT_EQ(buffer, (Bytes{0, 0, 0, 0, 0, 0, 0, 1, 2, 3}));
  // 7 less the 3 still wanted: the ring's count goes up by 4.
  EXPECT_EQ(Read(4, {{9, 9, 9, 9}}), 4);
  EXPECT_EQ(buffer, Bytes(4));
  EXPECT_EQ(BulkReads(), 0U);
}

TEST_F(LibusbPipeTest, TheCountMayFallBelowZero) {
  FillRing(3);
  EXPECT_EQ(Read(10, {Count(1, 7)}), 10);
  EXPECT_EQ(buffer, (Bytes{0, 0, 0, 1, 2, 3, 4, 5, 6, 7}));
  // 3 less 7 is -4; a surplus of 6 then makes that 2.
  EXPECT_EQ(Read(4, {Count(1, 10)}), 4);
  EXPECT_EQ(buffer, Count(1, 4));
  EXPECT_EQ(Read(2, {{9, 9}}), 2);
  EXPECT_EQ(buffer, Bytes(2));
  EXPECT_EQ(BulkReads(), 0U);
  EXPECT_EQ(Read(1, {{9}}), 1);
  EXPECT_EQ(buffer, Bytes{9});
}

TEST_F(LibusbPipeTest, AShortReadIsNothingEvenBehindRingBytes) {
  EXPECT_EQ(Read(4, {{1}, {2}, {3}}), 0);
  EXPECT_EQ(BulkReads(), 5U);
  FillRing(2);
  EXPECT_EQ(Read(4, {}), 0);
  EXPECT_EQ(BulkReads(), 5U);
}

TEST_F(LibusbPipeTest, FiveTransfersAreTheMost) {
  EXPECT_EQ(Read(6, {{1}, {2}, {3}, {4}, {5}, {6}}), 0);
  EXPECT_EQ(BulkReads(), 5U);
  EXPECT_EQ(Read(5, {{1}, {2}, {3}, {4}, {5}}), 5);
  EXPECT_EQ(buffer, Count(1, 5));
  EXPECT_EQ(Read(160, {Count(0, 32), Count(32, 32), Count(64, 32), Count(96, 32), Count(128, 32)}), 160);
  EXPECT_EQ(buffer, Count(0, 160));
}

TEST_F(LibusbPipeTest, AFailedTransferCountsAsEmpty) {
  EXPECT_EQ(Read(4, {{}, {1, 2}, {}, {3, 4}}), 4);
  EXPECT_EQ(buffer, Count(1, 4));
}

TEST_F(LibusbPipeTest, RingBytesCountInTheResultOnlyOfAQuickRead) {
  FillRing(2);
  EXPECT_EQ(Read(6, {{1, 2}, {3}, {4}}), 6) << "three transfers";
  FillRing(4);  // 2 less 4 is -2, and two more are wanted
  EXPECT_EQ(Read(6, {{1}, {2}, {3}, {4}}), 4) << "four transfers";
  EXPECT_EQ(buffer, (Bytes{0, 0, 1, 2, 3, 4}));
}

TEST_F(LibusbPipeTest, TheRingOutlivesTheHandle) {
  FillRing(5);
  CloseLibusbDevice(kDevice);
  EXPECT_EQ(Read(5, {{1, 2, 3, 4, 5}}), 5);
  EXPECT_EQ(buffer, Bytes(5));
}

TEST_F(LibusbPipeTest, ADrainTakesEverything) {
  host.usb.toRead = {Count(1, 25), Count(26, 25), Count(51, 3)};
  LibusbDrain(kDevice);
  EXPECT_EQ(BulkReads(), 7U) << "two full passes, and one of five transfers that comes short";
  EXPECT_TRUE(host.usb.toRead.empty());
  FillRing(7);
  host.usb.toRead.clear();
  LibusbDrain(kDevice);
  EXPECT_EQ(Read(4, {{1, 2, 3, 4}}), 4);
  EXPECT_EQ(buffer, Count(1, 4)) << "the ring's bytes are dropped";
}

TEST_F(LibusbPipeTest, WritesGoToTheOutEndpoint) {
  LibusbWrite(kDevice, Bytes{1, 2});
  EXPECT_EQ(host.usb.transfers, (std::vector<Transfer>{{false, 0x03, 2, 250}}));
  ExpectCalls({"write 01 02"});
}

TEST_F(LibusbPipeTest, ARefreshStopsAtItsFirstFailure) {
  host.usb.loads = false;
  host.usb.busses = 0;
  RefreshLibusb();
  EXPECT_EQ(host.usb.loadsAsked, 1);
  ExpectCalls({});
  host.usb.loads = true;
  host.usb.busses = -1;
  RefreshLibusb();
  ExpectCalls({"usb load", "usb busses"});
  host.usb.busses = 0;
  RefreshLibusb();
  ExpectCalls({"usb load", "usb busses", "usb devices"});
}

TEST_F(LibusbPipeTest, EveryConnectLoadsAnew) {
  SetConnectProduct(0);
  USBConnect(nullptr);
  USBConnect(nullptr);
  EXPECT_EQ(host.usb.loadsAsked, 2);
}

TEST_F(LibusbPipeTest, OpeningClaimsConfiguresAndEmptiesTheDevice) {
  EXPECT_EQ(OpenLibusbDevice(), platform::kNoHandle);
  ExpectCalls({"usb open"});
  host.usb.loads = host.usb.present = true;
  host.usb.toRead = {Count(1, 25)};
  EXPECT_NE(OpenLibusbDevice(), platform::kNoHandle);
  ExpectCalls(Join({{"usb open", "usb claim 0", "usb configuration 1", "read " + sim::HexText(Count(1, 25))},
                    Times(5, {"read refused"})}));
  EXPECT_EQ(host.usb.openHandles, 1);
}

TEST_F(LibusbPipeTest, AnInterfaceThatIsTakenClosesTheDevice) {
  host.usb.loads = host.usb.present = true;
  host.usb.claimResult = -1;
  EXPECT_EQ(OpenLibusbDevice(), platform::kNoHandle);
  ExpectCalls({"usb open", "usb claim 0", "usb close"});
  EXPECT_EQ(host.usb.openHandles, 0);
}

TEST_F(LibusbPipeTest, ClosingGivesTheInterfaceBackFirst) {
  CloseLibusbDevice(kDevice);
  ExpectCalls({"usb release 0", "usb close"});
}

}  // namespace
}  // namespace tavlyn::test
