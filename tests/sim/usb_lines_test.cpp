// Byte streams as USB devices: what their requests and endpoints do.
#include <gtest/gtest.h>

#include "sim/carriers/usb/line_functions.h"
#include "sim/devices/reader_fa.h"

namespace tavlyn::test {
namespace {

using sim::usb::Bytes;
using std::chrono::milliseconds;

const Bytes kAskAlive = {0xFA, 0x04, 0xED, 0xED, 4};
constexpr std::size_t kAlive = 7;
constexpr std::uint8_t kAcmOut = 0x02;
constexpr std::uint8_t kAcmIn = 0x82;

class UsbLinesTest : public testing::Test {
 protected:
  sim::ReaderFa line{sim::Reader::Plain()};
  sim::LineManner manner;
  sim::usb::SerialFunction serial{line, manner};
  sim::usb::BulkFunction bulk{line};
};

TEST_F(UsbLinesTest, BulkTransfersCarryTheLine) {
  line.inPieces = true;
  EXPECT_EQ(bulk.In(0x83, 64), Bytes());
  bulk.Out(0x03, kAskAlive);
  EXPECT_EQ(bulk.In(0x83, 64).size(), 1U) << "a transfer ends with a piece of the answer";
  EXPECT_EQ(bulk.In(0x83, 2).size(), 2U) << "no more than there is room for";
}

TEST_F(UsbLinesTest, APortCarriesTheLine) {
  serial.Out(kAcmOut, kAskAlive);
  EXPECT_EQ(serial.In(0x81, 8), Bytes()) << "it gives no notice";
  EXPECT_EQ(serial.In(kAcmIn, 4).size(), 4U);
  EXPECT_EQ(serial.In(kAcmIn, 64).size(), kAlive - 4);
}

TEST_F(UsbLinesTest, APortAnswersAsSlowlyAsIsWanted) {
  manner.delay = milliseconds(3'600'000);
  serial.Out(kAcmOut, kAskAlive);
  EXPECT_EQ(serial.In(kAcmIn, 64), Bytes());
}

TEST_F(UsbLinesTest, APortKeepsItsLineCoding) {
  Bytes coding{0x00, 0xC2, 0x01, 0, 0, 0, 8};
  EXPECT_TRUE(AnswerControl(serial, {0x21, 0x20, 0, 0, 7}, coding));
  Bytes data;
  EXPECT_TRUE(AnswerControl(serial, {0xA1, 0x21, 0, 0, 7}, data));
  EXPECT_EQ(data, (Bytes{0x00, 0xC2, 0x01, 0, 0, 0, 8}));
  Bytes wrong{1, 2, 3};
  EXPECT_FALSE(AnswerControl(serial, {0x21, 0x20, 0, 0, 3}, wrong));
  EXPECT_FALSE(AnswerControl(serial, {0xA1, 0x21, 0, 1, 7}, data)) << "the data interface has none";
}

TEST_F(UsbLinesTest, WhatWasLeftIsLostWhenThePortIsClosed) {
  serial.Out(kAcmOut, kAskAlive);
  Bytes none;
  EXPECT_TRUE(AnswerControl(serial, {0x21, 0x22, 1, 0, 0}, none));
  EXPECT_EQ(serial.In(kAcmIn, 1).size(), 1U);
  EXPECT_TRUE(AnswerControl(serial, {0x21, 0x22, 0, 0, 0}, none));
  EXPECT_EQ(serial.In(kAcmIn, 64), Bytes());
}

TEST_F(UsbLinesTest, ACutTakesTheDeviceOffTheBus) {
  line.CutAfter(3);
  serial.Out(kAcmOut, kAskAlive);
  EXPECT_EQ(serial.In(kAcmIn, 64).size(), 3U);
  EXPECT_FALSE(serial.Present());
  EXPECT_TRUE(bulk.Present());
  line.CutAfter(0);
  EXPECT_EQ(bulk.In(0x83, 64), Bytes());
  EXPECT_FALSE(bulk.Present());
}

}  // namespace
}  // namespace tavlyn::test
