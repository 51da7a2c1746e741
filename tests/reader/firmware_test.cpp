// Firmware words and the stored banks of a plus reader.
#include "api.h"
#include "reader/product.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr std::uint32_t kOld = 0x01DF01DF;

class Firmware : public Bench {
 protected:
  std::shared_ptr<Reader> reader = Reader::Plus(2);

  void SetUp() override {
    Bench::SetUp();
    Connected(reader);
    for (auto& row : Entry().FWVersion) row.fill(kOld);
    Entry().LastLibErr = 0;
  }
  static tsDevEntry& Entry() { return DevTable[0]; }
};

TEST_F(Firmware, AWordIsAskedHighByteFirstAndKept) {
  EXPECT_EQ(reader::QueryFirmwareWord(0, 1), 0x10070101U);
  ExpectTraffic({"set 89 03 00 01", "get 89 03 00 01 10 07 01 01"});
  EXPECT_EQ(Entry().FWVersion[0][1], 0x10070101U);
  EXPECT_EQ(Entry().FWVersion[0][0], kOld);
}

TEST_F(Firmware, WordsAreKeptAtTheirNumbersModulo3And5) {
  reader->faults.AnswerWith({0x89, 0x03, 5, 8}, {0x89, 0x03, 5, 8, 1, 2, 3, 4});
  EXPECT_EQ(reader::QueryFirmwareWord(5, 8), 0x01020304U);
  EXPECT_EQ(Entry().FWVersion[2][3], 0x01020304U);
}

TEST_F(Firmware, AReplyThatDoesNotRepeatTheRequestIsAWord0) {
  for (const sim::Bytes& reply : {sim::Bytes{0x88, 0x03, 1, 2, 9, 9, 9, 9},
                                  {0x89, 0x02, 1, 2, 9, 9, 9, 9},
                                  {0x89, 0x03, 0, 2, 9, 9, 9, 9},
                                  {0x89, 0x03, 1, 3, 9, 9, 9, 9}}) {
    Entry().FWVersion[1][2] = kOld;
    reader->faults.AnswerWith({0x89, 0x03}, reply, 1);
    EXPECT_EQ(reader::QueryFirmwareWord(1, 2), 0U);
    EXPECT_EQ(Entry().FWVersion[1][2], 0U);
  }
  EXPECT_EQ(Entry().LastLibErr, 0U);
}

TEST_F(Firmware, AFailedSendStoresNothing) {
  reader->faults.RefuseCommand({0x89, 0x03}, 6);
  EXPECT_EQ(reader::QueryFirmwareWord(0, 0), 0U);
  ExpectTraffic(Times(6, {"set 89 03 refused", "sleep 80"}));
  EXPECT_EQ(Entry().LastLibErr, 0x202U);
  EXPECT_EQ(Entry().FWVersion[0][0], kOld);
}

TEST_F(Firmware, AFailedFetchStoresNothingAndIsTold) {
  reader->faults.RefuseReply({0x89, 0x03}, 1);
  Entry().LastLibErr = 1;
  EXPECT_EQ(reader::QueryFirmwareWord(0, 0), 0U);
  EXPECT_EQ(Entry().LastLibErr, 0x1000001U);
  EXPECT_EQ(Entry().FWVersion[0][0], kOld);
}

TEST_F(Firmware, APlainReaderIsNotAsked) {
  for (const std::uint32_t state : {kPlainReader, kPlusUnknown}) {
    Entry().PlusState = state;
    EXPECT_EQ(reader::QueryFirmwareWord(0, 0), 0U);
    EXPECT_EQ(GetFirmwareVersion(0, 0), 0U) << "even with old words";
  }
  ExpectTraffic({});
}

TEST_F(Firmware, GetFirmwareVersionTellsTheKeptWords) {
  Entry().FWVersion[2][4] = 0x11223344;
  EXPECT_EQ(GetFirmwareVersion(2, 4), 0x11223344U);
  EXPECT_EQ(GetFirmwareVersion(3, 0), 0U);
  EXPECT_EQ(GetFirmwareVersion(65535, 0), 0U);
  EXPECT_EQ(GetFirmwareVersion(0, 5), 0U);
  EXPECT_EQ(GetFirmwareVersion(0, 65535), 0U);
  ExpectTraffic({});
}

TEST_F(Firmware, SendGetFWVersionEndsARowAtItsFirst0) {
  Entry().ActConfig = 1;
  Entry().LastLibErr = 5;
  SendGetFWVersion();
  ExpectTraffic({"set 89 03", "get", "set 89 03 00 01", "get", "set 89 03 00 02", "get", "set 89 03 01",
                 "get", "set 89 03 01 01", "get", "set 89 03 02", "get"});
  EXPECT_EQ(Entry().FWVersion[0], (std::array<std::uint32_t, 6>{0x10072005, 0x10070101, 0, 0, 0, 0}));
  EXPECT_EQ(Entry().FWVersion[1], (std::array<std::uint32_t, 6>{0x20010009, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Entry().FWVersion[2], (std::array<std::uint32_t, 6>{}));
  EXPECT_EQ(Entry().ActConfig, 0);
  EXPECT_EQ(Entry().LastLibErr, 5U) << "not cleared";
}

TEST_F(Firmware, SendGetFWVersionReadsAtMostFiveWordsOfARow) {
  reader->state.firmware[0] = {1, 2, 3, 4, 5};
  SendGetFWVersion();
  EXPECT_EQ(Entry().FWVersion[0], (std::array<std::uint32_t, 6>{1, 2, 3, 4, 5, 0}));
  EXPECT_EQ(GetFirmwareVersion(0, 4), 5U);
}

TEST_F(Firmware, SendGetFWVersionGoesOverAllDevices) {
  const auto second = Reader::Plus(2);
  second->state.firmware[1][0] = 0x99;
  Plug(second);
  SetConnectProduct(1);
  USBDisconnect();
  ASSERT_EQ(USBConnect(nullptr), 1U);
  ASSERT_EQ(GetDevCnt(), 2);
  for (int index : {0, 1}) DevTable[static_cast<std::size_t>(index)].FWVersion[1].fill(kOld);
  EXPECT_EQ(SetActDev(1), 1U);
  DevTable[1].ActConfig = 1;
  SendGetFWVersion();
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(DevTable[1].ActConfig, 0);
  EXPECT_EQ(DevTable[0].FWVersion[1][0], 0x20010009U);
  EXPECT_EQ(DevTable[1].FWVersion[1][0], 0x99U);
}

TEST_F(Firmware, SendGetFWVersionClearsTheConfigurationOfTheDeviceActiveBefore) {
  Plug(Reader::Plus(2));
  SetConnectProduct(1);
  USBDisconnect();
  ASSERT_EQ(USBConnect(nullptr), 1U);
  ASSERT_EQ(GetDevCnt(), 2);
  DevTable[0].ActConfig = 1;
  DevTable[1].ActConfig = 1;
  SendGetFWVersion();
  EXPECT_EQ(DevTable[0].ActConfig, 0);
  EXPECT_EQ(DevTable[1].ActConfig, 1) << "entry 0 was the active one";
}

class FirmwareFa : public SerialBench {};

TEST_F(FirmwareFa, AWordIsAskedOnceAndNotKept) {
  AddReader(Reader::Plus(2), kPlusReader);
  EXPECT_EQ(reader::QueryFirmwareWord(0, 1), 0x10070101U);
  ExpectTraffic(FrameLines("09 03 00 01", {"read 09", "read 03 00 01 10 07 01 01", "read 90 00"}));
  EXPECT_EQ(Entry().FWVersion[0][1], 0U);
  line->faults.RefuseCommand({0x09, 0x03}, 1);
  EXPECT_EQ(reader::QueryFirmwareWord(0, 1), 0U);
  ExpectTraffic(FrameLines("09 03 00 01", {"read 6D", "read 00"}));
  EXPECT_EQ(Entry().LastLibErr, 0U);
}

TEST_F(FirmwareFa, AnAnswerToAnotherQuestionIsAWord1) {
  AddScript({{0x09, 2, 1, 2, 9, 9, 9, 9, 0x90, 0},
             {0x09, 3, 0, 2, 9, 9, 9, 9, 0x90, 0},
             {0x09, 3, 1, 7, 0x80, 0, 0, 9, 0x90, 0}},
            kPlusReader);
  EXPECT_EQ(reader::QueryFirmwareWord(1, 2), 1U);
  EXPECT_EQ(reader::QueryFirmwareWord(1, 2), 1U);
  EXPECT_EQ(reader::QueryFirmwareWord(1, 2), 0x80000009U) << "the index is not compared";
}

TEST_F(FirmwareFa, SendGetFWVersionKeepsTheWords) {
  AddReader(Reader::Plus(2), kPlusReader);
  SendGetFWVersion();
  EXPECT_EQ(Entry().FWVersion[0], (std::array<std::uint32_t, 6>{0x10072005, 0x10070101, 0, 0, 0, 0}));
  EXPECT_EQ(GetFirmwareVersion(1, 0), 0x20010009U);
}

}  // namespace
}  // namespace tavlyn::test
