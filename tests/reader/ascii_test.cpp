// The switch of the dialect of serial readers.
#include "api.h"
#include "tests/support/serial_reader.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class AsciiSwitch : public SerialBench {};

TEST_F(AsciiSwitch, TheDialectIsOneForTheProcess) {
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

TEST_F(AsciiSwitch, TheDialectSurvivesADisconnectButNoReload) {
  AddReader(Reader::Plain());
  EXPECT_EQ(UseAsciiCommandProtocol(1), 1U);
  USBDisconnect();
  EXPECT_EQ(shared.reader.AsciiProtocol, 1);
  Reload();
  EXPECT_EQ(shared.reader.AsciiProtocol, 0);
}

}  // namespace
}  // namespace tavlyn::test
