// How magnetic-stripe readers are found, over HID and on COM ports.
#include "links/com_search.h"
#include "links/link_socket.h"
#include "links/serial_port.h"
#include "magstripe/product.h"
#include "reader/product.h"
#include "tests/magstripe/stripe_bench.h"

namespace tavlyn::test {
namespace {

class StripeConnect : public Bench {
 protected:
  std::shared_ptr<StripeScript> stripe = std::make_shared<StripeScript>();

  void SetUp() override {
    Bench::SetUp();
    stripe->replies = {{"QRZ", "RRZ"}, {"QSV", "RSV12345678"}};
    SetConnectProduct(2);
    ForgetTraffic();
  }
};

TEST_F(StripeConnect, AConnectFillsTheEntryAndReadsTheConfiguration) {
  Plug(stripe, "stripe");
  std::uint32_t did = 0;
  EXPECT_EQ(USBConnect(&did), 1U);
  EXPECT_EQ(did, 0x1234U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(GetProduct(), kMagstripe);
  EXPECT_EQ(GetDevType(), 0);
  EXPECT_STREQ(DevTable[0].DevName, "stripe");
  EXPECT_EQ(DevTable[0].SorbaneBlock.bOpened, 1U);
  EXPECT_EQ(DevTable[0].bFound, 0);
  EXPECT_EQ(DevTable[0].VidPidRow, -1);
  EXPECT_EQ(stripe->commands.size(), 37U);
  EXPECT_TRUE(host.ports.opened.empty());
}

TEST_F(StripeConnect, ReadersComeFirst) {
  Plug(stripe, "stripe");
  Plug(sim::Reader::Plain(), "reader");
  SetConnectProduct(3);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(GetProduct(), kReader);
}

TEST_F(StripeConnect, AFailedConfigurationReadFailsTheConnect) {
  Plug(stripe, "stripe");
  stripe->lost = {"Gd0"};
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(shared.SearchErr, TAVLYN_ERR_CONNECT);
  EXPECT_EQ(GetLastLibErr(), TAVLYN_ERR_FIELD_PART);
}

TEST_F(StripeConnect, TheLinksAreThoseThatAreAllowed) {
  SetDevTypeSrch(0);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(shared.SearchErr, 0U);
  ExpectTraffic({});
  SetDevTypeSrch(2);
  Plug(stripe, "stripe");
  EXPECT_EQ(USBConnect(nullptr), 0U);
  SetDevTypeSrch(1);
  SetComSrchRange(3, 3);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(shared.SearchErr, TAVLYN_ERR_CONNECT);
  ExpectTraffic({"open COM3 refused"});
}

TEST_F(StripeConnect, ASearchRefusesWhileOneIsOpen) {
  shared.DevCnt = 2;
  DevTable[1].SorbaneBlock.bOpened = 1;
  shared.SearchErr = 5;
  EXPECT_FALSE(magstripe::Search());
  EXPECT_EQ(shared.SearchErr, TAVLYN_ERR_CONNECT);
  shared.DevCnt = 1;
  SetDevTypeSrch(0);
  EXPECT_FALSE(magstripe::Search()) << "the flag of an entry beyond the count";
  EXPECT_EQ(shared.SearchErr, 0U);
  shared.DevCnt = 0;
}

TEST_F(StripeConnect, ErrorsGoToTheEntryBehindTheFirstFound) {
  Plug(stripe, "stripe");
  SetDevTypeSrch(0);
  DevTable[1].LastLibErr = 9;
  EXPECT_TRUE(magstripe::Search());
  EXPECT_EQ(DevTable[1].LastLibErr, 0U);
}

TEST_F(StripeConnect, TheTableHasAnEnd) {
  Plug(stripe, "stripe");
  SetDevTypeSrch(0);
  shared.HidFoundCnt = kTableEntries;
  EXPECT_FALSE(magstripe::Search());
  EXPECT_EQ(shared.DevCnt, 0);
  EXPECT_EQ(host.hid.OpenHandles(), 0U);
}

std::vector<std::uint32_t>& Asked() {
  static std::vector<std::uint32_t> numbers;
  return numbers;
}

// A family's search whose probe the test answers.
bool Search(ComSearch search, bool (*answers)()) {
  search.probe.answers = answers;
  return SearchComs(search);
}

bool AnswersOn5And12() {
  const std::uint32_t number = EntryOfActDev().pSerialPort->PortNum();
  Asked().push_back(number);
  return number == 5 || number == 12;
}

TEST_F(StripeConnect, ComPortsOfTheRangeAndVirtualOnesAreVisited) {
  for (const std::uint16_t number : std::initializer_list<std::uint16_t>{3, 4, 5, 12, 20})
    host.ports.present[number] = nullptr;
  host.ports.virtualNumbers = {12};
  auto* used = new (std::nothrow) SerialPort;
  used->SetPortNum(4);
  DevTable[90].pSerialPort = used;
  SetComSrchRange(3, 6);
  SetBaudRate(19200);
  shared.DevCnt = 1;
  DevTable[1].VidPidRow = DevTable[2].VidPidRow = 5;
  Asked().clear();
  EXPECT_TRUE(Search(magstripe::PortSearch(), AnswersOn5And12));
  EXPECT_EQ(Asked(), (std::vector<std::uint32_t>{3, 5, 12}));
  EXPECT_EQ(shared.DevCnt, 3);
  EXPECT_EQ(shared.ActDev, 0);
  EXPECT_EQ(DevTable[1].ProductKind, kMagstripe);
  EXPECT_EQ(DevTable[1].LinkKind, kBySerialPort);
  EXPECT_EQ(DevTable[1].bFound, 0);
  EXPECT_EQ(DevTable[1].pSerialPort->PortNum(), 5);
  EXPECT_EQ(DevTable[1].VidPidRow, -1);
  EXPECT_EQ(DevTable[2].VidPidRow, -1);
  EXPECT_EQ(DevTable[2].pSerialPort->PortNum(), 12);
  EXPECT_STREQ(DevTable[0].DevName, "COM12:");
  EXPECT_STREQ(DevTable[1].DevName, "");
  EXPECT_EQ(host.ports.opened.front().line.baud, 9600U) << "whatever the readers are searched with";
  EXPECT_EQ(host.ports.opened.front().line.parity, 0);
  EXPECT_EQ(host.ports.opened.front().line.stopBits, 0);
  EXPECT_EQ(host.ports.opened.front().timeouts.readInterval, 11U);
  EXPECT_EQ(host.ports.opened.front().timeouts.readConstant, 100U);
}

TEST_F(StripeConnect, WhatTheScanFoundStaysWhenItIsSwitchedOff) {
  host.ports.present[12] = nullptr;
  host.ports.virtualNumbers = {12};
  SetComSrchRange(3, 6);
  Asked().clear();
  EXPECT_FALSE(Search(magstripe::PortSearch(), [] { return false; }));
  EXPECT_EQ(VirtualComSearchRange(0, 0), 1U);
  EXPECT_EQ(shared.search.VirtualComFlags[12], 1);
  host.ports.virtualNumbers.clear();
  EXPECT_TRUE(Search(magstripe::PortSearch(), AnswersOn5And12));
  EXPECT_EQ(Asked(), std::vector<std::uint32_t>{12});
  EXPECT_EQ(host.ports.scans, 1);
  USBDisconnect();
  EXPECT_EQ(VirtualComSearchRange(1, 2), 1U);
  EXPECT_FALSE(Search(magstripe::PortSearch(), AnswersOn5And12)) << "the next scan no longer finds it";
  EXPECT_EQ(shared.search.VirtualComFlags[12], 0);
}

TEST_F(StripeConnect, APortThatAnOpenSocketMakesOpenIsClosedFirst) {
  host.ports.present[5] = nullptr;
  host.sockets.accepts = [](platform::Address) { return true; };
  for (const bool before : {false, true}) {
    ASSERT_EQ(LinkConnect({{10, 0, 0, 5}, 4001}), 0);
    if (before) DevTable[0].pSerialPort = new (std::nothrow) SerialPort;
    ForgetTraffic();
    EXPECT_TRUE(Search(magstripe::PortSearch(), AnswersOn5And12)) << before;
    EXPECT_FALSE(LinkIsOpen());
    EXPECT_EQ(host.transcript.Lines().front().substr(0, 12), "close socket");
    USBDisconnect();
  }
}

TEST_F(StripeConnect, TheReaderSearchLeavesTheSocketToANewPort) {
  host.sockets.accepts = [](platform::Address) { return true; };
  ASSERT_EQ(LinkConnect({{10, 0, 0, 5}, 4001}), 0);
  SetComSrchRange(5, 5);
  EXPECT_FALSE(Search(reader::PortSearch(), AnswersOn5And12)) << "the port is not there";
  EXPECT_TRUE(LinkIsOpen());
}

TEST_F(StripeConnect, TheFirstAndTheLastPortAreVisited) {
  host.ports.present[1] = nullptr;
  host.ports.present[256] = nullptr;
  SetComSrchRange(1, 256);
  Asked().clear();
  EXPECT_FALSE(Search(magstripe::PortSearch(), AnswersOn5And12));
  EXPECT_EQ(Asked(), (std::vector<std::uint32_t>{1, 256}));
}

TEST_F(StripeConnect, NoPortThatTakesThePacketWholeHasAReader) {
  host.ports.present[3] = nullptr;
  SetDevTypeSrch(1);
  SetComSrchRange(3, 3);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 0);
  EXPECT_EQ(DevTable[0].pSerialPort, nullptr);
  EXPECT_EQ(Slept(), 30U + 30 + 2 + 25 + 2 + 2);
}

TEST_F(StripeConnect, OnePortIsSearchedAfterTheReaderFamily) {
  host.ports.present[3] = nullptr;
  SetConnectProduct(~0U);
  EXPECT_EQ(ComConnectPort(3, nullptr), 0U);
  EXPECT_EQ(shared.SearchErr, TAVLYN_ERR_CONNECT);
  EXPECT_EQ(host.ports.opened.size(), 2U);
  EXPECT_EQ(shared.search.ComSrchLo, 1);
  EXPECT_EQ(shared.search.ComSrchHi, 8);
}

}  // namespace
}  // namespace tavlyn::test
