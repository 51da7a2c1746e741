// The baud code that a serial reader stores, and the switch of dialects.
#include "api.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class SerialExports : public SerialBench {};

TEST_F(SerialExports, TheBaudCodeIsReadWithoutAStatus) {
  AddReader(Reader::Plain());
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(ReadBaudRate(), 3U);
  ExpectTraffic(FrameLines("0D 01 00 00", {"read 0D", "read 03"}));
  line->faults.RefuseCommand({0x0D, 0x01}, 1);
  EXPECT_EQ(ReadBaudRate(), 65535U);
  ExpectTraffic(FrameLines("0D 01 00 00", {"read 6D", "read 00"}));
  EXPECT_EQ(GetLastLibErr(), 5U);
}

TEST_F(SerialExports, TheBaudCodeIsWrittenOnceByItsLowByte) {
  AddReader(Reader::Plain());
  EXPECT_EQ(WriteBaudRate(0x1205), 1U);
  ExpectTraffic(FrameLines("0D 81 05 00", {"read 0D", "read 90 00"}));
  EXPECT_EQ(reader->state.baudCode, 5);
  line->faults.RefuseCommand({0x0D, 0x81}, 1);
  EXPECT_EQ(WriteBaudRate(6), 0U);
  ExpectTraffic(FrameLines("0D 81 06 00", {"read 6D", "read 00"}));
}

TEST_F(SerialExports, OnlyASerialLinkHasABaudCode) {
  AddReader(Reader::Plain());
  EntryOfActDev().LinkKind = kByReports;
  EXPECT_EQ(ReadBaudRate(), 65535U);
  EXPECT_EQ(WriteBaudRate(5), 0U);
  EntryOfActDev().LinkKind = kBySerialPort;
  ExpectTraffic({});
}

TEST_F(SerialExports, TheKindOfProductIsNotTested) {
  AddReader(Reader::Plain());
  EntryOfActDev().ProductKind = kMagstripe;
  EXPECT_EQ(ReadBaudRate(), 3U);
  EXPECT_EQ(WriteBaudRate(4), 1U);
}

TEST_F(SerialExports, TheDialectIsOneForTheProcess) {
  AddReader(Reader::Plain());
  EXPECT_EQ(UseAsciiCommandProtocol(0x8000), 1U);
  EXPECT_NE(shared.reader.AsciiProtocol, 0);
  EXPECT_EQ(UseAsciiCommandProtocol(0), 1U);
  EXPECT_EQ(shared.reader.AsciiProtocol, 0);
  SetUnsupportedProductErrorCode(0x8001);
  for (const std::uint32_t kind : {0U, kMagstripe, kSonar}) {
    EntryOfActDev().ProductKind = kind;
    EXPECT_EQ(UseAsciiCommandProtocol(1), 0x8001U);
  }
  shared.DevCnt = 0;
  EXPECT_EQ(UseAsciiCommandProtocol(1), 0x8001U);
  shared.DevCnt = 1;
  EXPECT_EQ(shared.reader.AsciiProtocol, 0);
  ExpectTraffic({});
}

TEST_F(SerialExports, TheDialectSurvivesADisconnectButNoReload) {
  AddReader(Reader::Plain());
  EXPECT_EQ(UseAsciiCommandProtocol(1), 1U);
  USBDisconnect();
  EXPECT_EQ(shared.reader.AsciiProtocol, 1);
  Reload();
  EXPECT_EQ(shared.reader.AsciiProtocol, 0);
}

}  // namespace
}  // namespace tavlyn::test
