// The separator data and the output format while loading a template.
#include <string>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class TemplateSep : public FileBench {
 protected:
  void SetUp() override {
    FileBench::SetUp();
    Use(Reader::Plain());
    ResetArea();
  }
  // Each byte of the area is its own position, except for the format byte and the number of pages.
  static std::uint8_t Original(std::size_t at) {
    return static_cast<std::uint8_t>(at == 0 ? 0x24 : at == 3 ? 0x10 : at);
  }
  static void ResetArea() {
    for (std::size_t at = 0; at < 128; ++at) Slot().sFldSepData[at] = Original(at);
  }
  static void SetFirst(std::uint8_t first) { Slot().sFldSepData[0] = first; }

  void LoadBlock(const std::string& data) {
    EXPECT_EQ(LoadLines("BEGIN sFldSepData\n" + data + "END sFldSepData\n"), 1U);
  }
  // The first bytes of the slot's area after a load of this block.
  void ExpectArea(const std::string& data, std::initializer_list<int> bytes) {
    ResetArea();
    LoadBlock(data);
    std::size_t at = 0;
    for (const int byte : bytes) EXPECT_EQ(Slot().sFldSepData[at++], byte) << data << " at " << at - 1;
    EXPECT_EQ(Slot().sFldSepData[at], Original(at)) << "the next byte stays: " << data;
  }
};

TEST_F(TemplateSep, ABlockReplacesTheStartOfTheArea) {
  LoadBlock("24.42.21.10\n");
  EXPECT_EQ(Slot().sFldSepData[1], 0x42);
  EXPECT_EQ(Slot().sFldSepData[4], 4);
  EXPECT_EQ(Slot().bDirtySep, 0U) << "sent";
  Lines pages;
  const char* rows[] = {"24 42 21 10 04 05 06 07", "08 09 0A 0B 0C 0D 0E 0F"};
  const Lines traffic = TrafficOf(host.transcript.Events());
  ASSERT_GE(traffic.size(), 36U);
  EXPECT_EQ(traffic[0], "set 85 00 00 10");
  EXPECT_EQ(traffic[1], std::string("set ") + rows[0]);
  EXPECT_EQ(traffic[2], "set 85 01 00 10");
  EXPECT_EQ(traffic[3], std::string("set ") + rows[1]);
  EXPECT_EQ(traffic[30], "set 85 0F 00 10");
  EXPECT_EQ(traffic[32], "set 90 20");
}

TEST_F(TemplateSep, SeparatorsOfBytes) {
  ExpectArea("24.aa,bB C\tdd\n", {0x24, 0xAA, 0xBB, 0x0C, 0xDD});
  ExpectArea("24..., \t.1.,22\n", {0x24, 0x01, 0x22});
  ExpectArea("24.0x31.32.\n", {0x24, 0x31, 0x32});
  ExpectArea("24\r\n33\r\n", {0x24, 0x33});
}

TEST_F(TemplateSep, OnlyTheLowByteOfAToken) { ExpectArea("124.1FF\n", {0x24, 0xFF}); }

TEST_F(TemplateSep, ATokenIsTakenAsFarAsItIsHexadecimal) { ExpectArea("24.5G.66\n", {0x24, 0x05, 0x66}); }

TEST_F(TemplateSep, TheFirstBadTokenEndsItsLine) {
  ExpectArea("24.71 / 99 comment\n", {0x24, 0x71});
  ExpectArea("24.72.z.99\n73\n", {0x24, 0x72, 0x73});
  ExpectArea("24.74 \n75 \n", {0x24, 0x74, 0x75});
}

TEST_F(TemplateSep, CommentsAndBlankLinesBetween) {
  ExpectArea("\n/ 11.12.13\n24.\n\n  : 14\n   / 15\n\t81\n", {0x24, 0x81});
}

TEST_F(TemplateSep, ASecondBeginIsData) { ExpectArea("24\nBEGIN sFldSepData\n82\n", {0x24, 0xBE, 0x82}); }

TEST_F(TemplateSep, KeywordsInsideABlockAreData) {
  ExpectArea("24\nbFixLenDsp = 1\n83\n", {0x24, 0xBF, 0x83});
  EXPECT_EQ(Slot()[field::CfgFlags_bFixLenDsp], 0);
}

TEST_F(TemplateSep, BytesBehind128AreDropped) {
  std::string data = "24.00.00.10\n";
  for (int byte = 4; byte < 200; ++byte)
    data += (byte < 128 ? "91" : "92") + std::string(byte % 8 == 7 ? "\n" : ".");
  LoadBlock(data + "\n");
  for (std::size_t at = 4; at < 128; ++at) ASSERT_EQ(Slot().sFldSepData[at], 0x91) << at;
  EXPECT_EQ(Slot().HashKeyData[0][0], 0);
}

TEST_F(TemplateSep, TheEndOfTheBlockEndsTheParse) {
  EXPECT_EQ(LoadLines("bFixLenDsp = 1\nBEGIN sFldSepData\n24.41\nEND sFldSepData\nbStripFac = 0\n"), 1U);
  EXPECT_EQ(Slot()[field::CfgFlags_bFixLenDsp], 1);
  EXPECT_EQ(Slot()[field::CfgFlags_bStripFac], 1);
  EXPECT_EQ(Slot().sFldSepData[1], 0x41);
}

TEST_F(TemplateSep, ABlockWithoutAnEndIsTaken) {
  EXPECT_EQ(LoadLines("BEGIN sFldSepData\n24.43"), 1U);
  EXPECT_EQ(Slot().sFldSepData[1], 0x43);
}

TEST_F(TemplateSep, AnEndOutsideABlockIsAnOrdinaryLine) {
  EXPECT_EQ(LoadLines("END sFldSepData\nbFixLenDsp = 1\n"), 1U);
  EXPECT_EQ(Slot()[field::CfgFlags_bFixLenDsp], 1);
}

TEST_F(TemplateSep, BeginAndNameMayStandAnywhereOnTheLineButInTheirCase) {
  EXPECT_EQ(LoadLines("xxsFldSepDataxxBEGINxx\n24.44\nxENDx = sFldSepData\nbFixLenDsp = 1\n"), 1U);
  EXPECT_EQ(Slot().sFldSepData[1], 0x44);
  EXPECT_EQ(Slot()[field::CfgFlags_bFixLenDsp], 0);
  EXPECT_EQ(LoadLines("begin sFldSepData\nBEGIN sfldsepdata\n24.45\nbFixLenDsp = 1\n"), 1U);
  EXPECT_EQ(Slot().sFldSepData[1], 0x44);
  EXPECT_EQ(Slot()[field::CfgFlags_bFixLenDsp], 1);
  EXPECT_EQ(LoadLines("/ BEGIN sFldSepData\n24.46\nEND sFldSepData\nbFixLenDsp = 0\n"), 1U);
  EXPECT_EQ(Slot().sFldSepData[1], 0x44);
  EXPECT_EQ(Slot()[field::CfgFlags_bFixLenDsp], 0);
}

TEST_F(TemplateSep, InformationLinesNeitherBeginNorEndABlock) {
  EXPECT_EQ(LoadLines(" : BEGIN sFldSepData\n24.46\nbFixLenDsp = 1\n"), 1U);
  EXPECT_EQ(Slot().sFldSepData[1], 1);
  EXPECT_EQ(Slot()[field::CfgFlags_bFixLenDsp], 1);
  LoadBlock("24\n: END sFldSepData\n / END sFldSepData\n47\n");
  EXPECT_EQ(Slot().sFldSepData[1], 0x47);
}

TEST_F(TemplateSep, WithoutABlockTheAreaStays) {
  EXPECT_EQ(LoadLines("bFixLenDsp = 1\n24.47\n"), 1U);
  EXPECT_EQ(Slot().sFldSepData[1], 1);
  EXPECT_EQ(reader->state.counters.lastCommitMask, 1);
}

TEST_F(TemplateSep, TheFormatByteIsNeverChanged) {
  const auto area = Slot().sFldSepData;
  LoadBlock("25.42\n");
  EXPECT_EQ(Slot().sFldSepData, area);
  LoadBlock("00.42\n");
  EXPECT_EQ(Slot().sFldSepData, area);
  LoadBlock("00.00.33\n");
  EXPECT_EQ(Slot().sFldSepData, area);
  EXPECT_EQ(reader->state.counters.lastCommitMask, 0);
}

TEST_F(TemplateSep, AnEmptyAreaIsNotFilled) {
  SetFirst(0);
  const auto area = Slot().sFldSepData;
  LoadBlock("00.42\n");
  EXPECT_EQ(Slot().sFldSepData, area);
  LoadBlock("24.42\n");
  EXPECT_EQ(Slot().sFldSepData, area);
}

TEST_F(TemplateSep, AFormatByteWithNothingBehindItIsEnough) {
  LoadBlock("24.00\n");
  EXPECT_EQ(Slot().sFldSepData[1], 0);
}

TEST_F(TemplateSep, TheOutputFormatNeedsItsFormatByte) {
  EXPECT_EQ(LoadLines("iExOutputFormat = 3\n"), 1U);
  EXPECT_EQ(Slot()[field::IDDispParms_iExOutputFormat], 3);
  SetFirst(0x25);
  EXPECT_EQ(LoadLines("iExOutputFormat = 1\nBEGIN sFldSepData\n24.00\nEND sFldSepData\n"), 1U)
      << "the file's own format byte does not count";
  EXPECT_EQ(Slot()[field::IDDispParms_iExOutputFormat], 0);
}

TEST_F(TemplateSep, AFileWithoutAnOutputFormatLeavesIt) {
  SetFirst(12);
  Slot()[field::IDDispParms_iExOutputFormat] = 3;
  EXPECT_EQ(LoadLines("iIDDispLen = 6\n"), 1U);
  EXPECT_EQ(Slot()[field::IDDispParms_iExOutputFormat], 3);
  EXPECT_EQ(LoadLines("iExOutputFormat = x\n"), 1U);
  EXPECT_EQ(Slot()[field::IDDispParms_iExOutputFormat], 3);
  EXPECT_EQ(LoadLines("IEXOUTPUTFORMAT = 3\n"), 1U);
  EXPECT_EQ(Slot()[field::IDDispParms_iExOutputFormat], 0);
}

TEST_F(TemplateSep, TheShortFormMovesDownByTwoBytes) {
  sim::Settings& stored = reader->state.Working();
  stored.separated = {0x1C, 0x11, 0xAA, 0x10};
  for (std::size_t at = 4; at < 128; ++at) stored.separated[at] = static_cast<std::uint8_t>(at);
  const std::string saved = Save();
  Slot().HashKeyData[0] = {0xE0, 0xE1, 0xE2};
  EXPECT_EQ(Load(saved), 1U);
  EXPECT_EQ(Slot().sFldSepData[0], 0x1C);
  EXPECT_EQ(Slot().sFldSepData[1], 0x11);
  for (std::size_t at = 2; at < 126; ++at) ASSERT_EQ(Slot().sFldSepData[at], at + 2);
  EXPECT_EQ(Slot().sFldSepData[126], 0) << "as the keys were when the file was saved";
  EXPECT_EQ(Slot().sFldSepData[127], 0);
  EXPECT_EQ(Slot().HashKeyData[0][0], 0xE0);
}

}  // namespace
}  // namespace tavlyn::test
