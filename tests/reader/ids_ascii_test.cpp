// Reading an ID in the text dialect.
#include <gtest/gtest.h>

#include "links/link_socket.h"
#include "links/serial_port.h"
#include "reader/ascii.h"
#include "tests/reader/ascii_bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;

const Bytes kId = {0xAB, 0x12, 0, 0, 0, 0, 0, 0};
const Bytes kNoId = Bytes(8);

class AsciiId : public AsciiBench {
 protected:
  void SetUp() override {
    AsciiBench::SetUp();
    Field(field::TimeParms_iIDHoldTO) = 1000;
    LetTimePass();
  }
  std::uint16_t Fetch(const std::string& answer) {
    ascii.id = answer;
    EntryOfActDev().LastLibErr = 0;
    buffer.assign(8, 0);
    return reader::AsciiGetId(buffer.data(), 8);
  }
  Bytes buffer;
};

TEST_F(AsciiId, AFreshIdComesLowestByteFirst) {
  EXPECT_EQ(Fetch("{1F4,0,0,26;12AB}"), 26);
  EXPECT_EQ(buffer, kId);
  EXPECT_EQ(Fetch("noise {1F4,-3,FF,64;FEDCBA9876543210} noise"), 64);
  EXPECT_EQ(buffer, (Bytes{0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE}));
}

TEST_F(AsciiId, TheAnswerIsCollectedByteByByte) {
  const std::string answer = "{0,0,0,26;1}";
  EXPECT_EQ(Fetch(answer + "behind"), 26);
  Lines expected = Join({{"flush"}, TextLines(kAsciiId)});
  for (const char character : answer) {
    expected.push_back("read " + sim::HexText({static_cast<std::uint8_t>(character)}));
    expected.emplace_back("sleep 10");
  }
  ExpectTraffic(Join({expected, {"sleep 10", "flush"}}));
}

TEST_F(AsciiId, AnOldIdIsNone) {
  EXPECT_EQ(Fetch("{7D0,0,0,26;12AB}"), 0);
  EXPECT_EQ(buffer, kNoId);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Fetch("{3E8,0,0,26;12AB}"), 26) << "as old as it may be";
  EXPECT_EQ(Fetch("{3E9,0,0,26;12AB}"), 0);
}

TEST_F(AsciiId, FewBitsAreNoCard) {
  EXPECT_EQ(Fetch("{1F4,0,0,10;12AB}"), 0);
  EXPECT_EQ(Fetch("{1F4,0,0,-26;12AB}"), 0);
  EXPECT_EQ(Fetch("{1F4,0,0,11;12AB}"), 11);
}

TEST_F(AsciiId, AnAnswerThatDoesNotParseIsNone) {
  for (const std::string& answer : {std::string("{1F4,0,0,26,12AB}"), std::string("{1F4,0,0,26;}"),
                                    std::string("{1F4,0,26;12AB}"), std::string("{}"), std::string("{;}"),
                                    std::string("{zz,0,0,26;12AB}"), std::string("; {1,2,3,26 4}")}) {
    EXPECT_EQ(Fetch(answer), 0) << answer;
    EXPECT_EQ(GetLastLibErr(), 0U) << answer;
  }
}

TEST_F(AsciiId, ASilentReaderIsAskedThreeHundredTimes) {
  EXPECT_EQ(Fetch(""), 0);
  EXPECT_EQ(GetLastLibErr(), 261U);
  ExpectTraffic(
      Join({{"flush"}, TextLines(kAsciiId), Times(300, {"read", "sleep 10"}), {"sleep 10", "flush"}}));
}

TEST_F(AsciiId, AnAnswerWithOneBraceIsNone) {
  for (const std::string& answer : {std::string("{1F4,0,0,26;12AB"), std::string("1F4,0,0,26;12AB}")}) {
    EXPECT_EQ(Fetch(answer), 0);
    EXPECT_EQ(GetLastLibErr(), 261U);
  }
}

TEST_F(AsciiId, AFloodIsGivenUpAfterTwoHundredBytes) {
  ForgetTraffic();
  EXPECT_EQ(Fetch(std::string(4096, 'x')), 0);
  EXPECT_EQ(GetLastLibErr(), 261U);
  EXPECT_EQ(Slept(), 7U + 200 * 10 + 10);
  EXPECT_EQ(Fetch(std::string(170, 'x') + "{1F4,0,0,26;12AB}" + std::string(4096, 'y')), 26);
}

TEST_F(AsciiId, ShortBuffersAndClosedPortsHaveTheirOwnWords) {
  ascii.id = "{1F4,0,0,26;12AB}";
  buffer.assign(8, 0xEE);
  EXPECT_EQ(reader::AsciiGetId(buffer.data(), 7), 0);
  EXPECT_EQ(GetLastLibErr(), 256U);
  EXPECT_EQ(reader::AsciiGetId(buffer.data(), -1), 0);
  EXPECT_EQ(GetLastLibErr(), 256U);
  Port().Close();
  EXPECT_EQ(reader::AsciiGetId(buffer.data(), 8), 0);
  EXPECT_EQ(GetLastLibErr(), 257U);
  EXPECT_EQ(reader::AsciiGetId(buffer.data(), 7), 0);
  EXPECT_EQ(GetLastLibErr(), 256U) << "the length is tested first";
  delete Entry().pSerialPort;
  Entry().pSerialPort = nullptr;
  EXPECT_EQ(reader::AsciiGetId(buffer.data(), 8), 0);
  EXPECT_EQ(GetLastLibErr(), 257U);
  EXPECT_EQ(ascii.received, "");
  EXPECT_EQ(buffer, Bytes(8, 0xEE));
}

TEST_F(AsciiId, BothIdReadsKnowTheDialect) {
  ascii.id = "{1F4,0,0,26;12AB}";
  buffer.assign(8, 0xEE);
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 26);
  EXPECT_EQ(buffer, kId);
  LetTimePass();
  buffer.assign(32, 0xEE);
  EXPECT_EQ(GetActiveID32(buffer.data(), 32), 26);
  Bytes expected(32);
  std::copy(kId.begin(), kId.end(), expected.begin());
  EXPECT_EQ(buffer, expected);
  LetTimePass();
  EXPECT_EQ(GetActiveID(buffer.data(), 7), 0);
  EXPECT_EQ(GetLastLibErr(), 256U);
}

TEST_F(AsciiId, ASocketThatIsGoneInTheMiddleEndsInBoundedTime) {
  OpenSocket();
  host.sockets.toReceive = {Bytes{'{'}, Bytes{'1'}, Bytes{}, Bytes{}, Bytes{}};
  ForgetTraffic();
  EXPECT_EQ(Fetch(""), 0);
  EXPECT_EQ(GetLastLibErr(), 261U);
  EXPECT_LE(Slept(), 300U * 140 + 100);
  shared.link.LinkSocket = platform::kNoHandle;
}

TEST_F(AsciiId, ASerialReaderAloneIsSpokenToInText) {
  Entry().LinkKind = kByReports;
  buffer.assign(8, 0);
  EXPECT_EQ(GetActiveID(buffer.data(), 8), 0);
  EXPECT_EQ(ascii.received, "");
}

}  // namespace
}  // namespace tavlyn::test
