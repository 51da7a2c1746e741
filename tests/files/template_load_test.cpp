// Loading a template: which lines have an effect, and which blocks are then written.
#include <string>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class TemplateRead : public FileBench {
 protected:
  void SetUp() override {
    FileBench::SetUp();
    Use(Reader::Plain());
  }

  // The result of the load, with its traffic compared.
  void ExpectNothingSent(const std::string& lines, const char* file = __builtin_FILE(),
                         int line = __builtin_LINE()) {
    EXPECT_EQ(LoadLines(lines), 1U) << lines << " at line " << line;
    ExpectTraffic(Committed({}, "00"), file, line);
  }
  void ExpectBitStrmTO(int value, const std::string& lines) {
    Slot()[field::TimeParms_iBitStrmTO] = 100;
    EXPECT_EQ(LoadLines(lines), 1U);
    EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], value) << lines;
  }
};

TEST_F(TemplateRead, OneWordChangesOneBlock) {
  EXPECT_EQ(LoadLines("iBitStrmTO = 8     / Wiegand read times out\n"), 1U);
  ExpectTraffic(Committed({"set 81", "set 00 02 14 28 01 01 40 20"}, "02"));
  EXPECT_EQ(reader->state.counters.lastCommitMask, 2);
}

TEST_F(TemplateRead, ValuesAsTheyAreSendNoBlock) {
  ExpectNothingSent("iBitStrmTO = 100\nbFixLenDsp = 0\niTotalBitCnt = 26\n");
  ExpectNothingSent("");
}

TEST_F(TemplateRead, EachRecordSendsItsBlocks) {
  const struct {
    const char* line;
    Lines blocks;
    const char* mask;
  } cases[] = {
      {"AZERTYShiftlock = 1\n", {"set 83", "set 00 00 00 00 00 00 02"}, "08"},
      {"ExtendedPrecisionMath = 1\n", {"set 83", "set 00 00 00 00 00 02 02"}, "08"},
      {"iIDBitCnt = 17\n", {"set 80", "set 03 05 11 11 1A 3A 28 1C"}, "01"},
      {"bFixLenDsp = 1\n", {"set 80", "set 03 05 11 11 1A 3A 28 1D"}, "01"},
      {"iFACIDDelim = 45\n",
       {"set 80", "set 03 05 11 11 1A 2D 28 1D", "set 83", "set 00 00 00 00 00 02 02"},
       "09"},
      {"iUSBKeyRlsTm = 8\n", {"set 81", "set 00 19 14 28 01 02 40 20"}, "02"},
      {"bBeepID = 0\n", {"set 82", "set 01"}, "04"},
      {"bPrxProEm = 1\n", {"set 81", "set 00 19 14 28 01 02 48 20"}, "02"},
      {"iCrdGnChr0 = 64\n", {"set 82", "set 01 00 40"}, "04"},
      {"iTrailChrCnt = 1\niTrailChr0 = 65\n", {"set 82", "set 01 00 40 00 10 41"}, "04"},
      {"iGrnLEDState = 1\n", {"set 82", "set 03 00 40 00 10 41"}, "04"},
      {"iBeeperState = 1\n", {"set 82", "set 0B 00 40 00 10 41"}, "04"},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(LoadLines(one.line), 1U) << one.line;
    SCOPED_TRACE(one.line);
    ExpectTraffic(Committed(one.blocks, one.mask));
  }
}

TEST_F(TemplateRead, CaseOfKeywordsDoesNotMatter) {
  ExpectBitStrmTO(4, "ibitstrmto = 4\n");
  ExpectBitStrmTO(8, "IBITSTRMTO = 8\n");
  EXPECT_EQ(LoadLines("azertyshiftlock = 1\n"), 1U);
  EXPECT_EQ(Slot().AZERTYShiftlock, 1);
}

TEST_F(TemplateRead, AnOptionIsASignedWord) {
  EXPECT_EQ(LoadLines("AZERTYShiftlock = 65535\n"), 1U);
  EXPECT_EQ(Slot().AZERTYShiftlock, -1);
}

TEST_F(TemplateRead, SeparatorsOfAnEntry) {
  ExpectBitStrmTO(8, "iBitStrmTO,8\n");
  ExpectBitStrmTO(8, "iBitStrmTO=8\n");
  ExpectBitStrmTO(8, "iBitStrmTO 8\n");
  ExpectBitStrmTO(8, "iBitStrmTO\t8\n");
  ExpectBitStrmTO(8, "iBitStrmTO ,=\t= 8 9\n");
  ExpectBitStrmTO(8, "=iBitStrmTO=8\n");
  ExpectBitStrmTO(100, "iBitStrmTO;8\n");
  ExpectBitStrmTO(100, "iBitStrmTO:8\n");
}

TEST_F(TemplateRead, LeadingCharactersOfALine) {
  ExpectBitStrmTO(8, "   iBitStrmTO = 8\n");
  ExpectBitStrmTO(8, "\t\x01\x1F\x80\xC3\xFF iBitStrmTO = 8\n");
  ExpectBitStrmTO(100, "\x7FiBitStrmTO = 8\n");
  ExpectBitStrmTO(100, "  : iBitStrmTO = 8\n");
  ExpectBitStrmTO(100, "  / iBitStrmTO = 8\n");
  ExpectBitStrmTO(100, ":iBitStrmTO = 8\n/iBitStrmTO = 12\n");
  ExpectBitStrmTO(8, "\r\niBitStrmTO = 8\r\n");
}

TEST_F(TemplateRead, ValuesThatDoNotScanChangeNothing) {
  ExpectBitStrmTO(100, "iBitStrmTO = abc\n");
  ExpectBitStrmTO(100, "iBitStrmTO =\n");
  ExpectBitStrmTO(100, "iBitStrmTO =");
  ExpectBitStrmTO(100, "iBitStrmTO\n");
  ExpectBitStrmTO(100, "iBitStrmTO = /8\n");
  ExpectBitStrmTO(100, "iBitStrmTO = \"8\"\n");
  ExpectBitStrmTO(100, "iBitStrm = 8\niBitStrmTOO = 8\nxiBitStrmTO = 8\n");
}

TEST_F(TemplateRead, ValuesAreDecimalAndCutToSixteenBits) {
  ExpectBitStrmTO(8, "iBitStrmTO = 8abc\n");
  ExpectBitStrmTO(12, "iBitStrmTO = 012\n");
  ExpectBitStrmTO(8, "iBitStrmTO = +8\n");
  ExpectBitStrmTO(0, "iBitStrmTO = 0x10\n");
  ExpectBitStrmTO(8, "iBitStrmTO = 65544\n");
  ExpectBitStrmTO(-1, "iBitStrmTO = -1\n");
}

TEST_F(TemplateRead, TheLastOfTwoLinesCounts) {
  ExpectBitStrmTO(12, "iBitStrmTO = 8\niBitStrmTO = 12\n");
  ExpectBitStrmTO(12, "iBitStrmTO = 8\niBitStrmTO = 12\niBitStrmTO = x\n");
}

TEST_F(TemplateRead, ARepeatedNameReachesItsFirstPlaceOnly) {
  EXPECT_EQ(LoadLines("iPad4 = 4\niPad5 = 5\niPad6 = 6\niPad7 = 7\niPad3 = 3\niPad0 = 9\n"), 1U);
  EXPECT_EQ(Slot().record[kIDBitCnts], (RecordWords{1, 1, 16, 26, 4, 5, 6, 7}));
  EXPECT_EQ(Slot().record[kLEDCtrl], (RecordWords{0, 1, 0, 3, 0, 0, 0, 0}));
  EXPECT_EQ(Slot().record[kBprRlyCtrl], (RecordWords{9, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Slot().record[kTimeParms], (RecordWords{100, 1000, 2000, 4, 4, 0x20, 0, 0x40}));
  EXPECT_EQ(Slot().record[kIDDispParms], (RecordWords{':', 0x28, 5, 3, 0, 0, 0, 0}));
  ExpectTraffic(Committed({"set 80", "set 03 05 11 10 1A 3A 28 1C", "set 82", "set 01 10"}, "05"));
}

TEST_F(TemplateRead, TheByteFormOfTheThirdFlagsIsNotTaken) {
  EXPECT_EQ(LoadLines("iTPCfgFlg3 = 255\n"), 1U);
  EXPECT_EQ(Slot()[field::TimeParms_iTPCfgFlg3], 0x40);
  ExpectTraffic(Committed({"set 81", "set 00 19 14 28 01 01 40 20"}, "02"));
}

TEST_F(TemplateRead, UnsavedKeywordsAreTaken) {
  EXPECT_EQ(LoadLines("isASCIIpresent = 7\n"), 1U);
  EXPECT_EQ(Slot()[field::CfgFlags2_isASCIIpresent], 7);
  ExpectTraffic(Committed({"set 82", "set 01 10"}, "04"));
}

TEST_F(TemplateRead, AVolatileLightShowsAtOnce) {
  EXPECT_EQ(LoadLines("iGrnLEDState = 1\nbVolatile_LC = 1\n"), 1U);
  EXPECT_EQ(Slot()[field::LEDCtrl_bVolatile], 1);
  EXPECT_EQ(reader->state.Working().blocks[2][0], 3);
}

TEST_F(TemplateRead, FieldsThatAreNotMentionedStay) {
  ASSERT_EQ(SetAZERTYShiftLock(1), 1U);
  Slot()[field::IDDispParms2_iLeadChr2] = 'q';
  EXPECT_EQ(LoadLines("iLeadChrCnt = 1\n"), 1U);
  EXPECT_EQ(Slot().AZERTYShiftlock, 1);
  EXPECT_EQ(Slot()[field::IDDispParms2_iLeadChr2], 'q');
}

TEST_F(TemplateRead, AValueOutOfRangeKeepsItsWholeRecord) {
  EXPECT_EQ(LoadLines("iBitStrmTO = 1021\niIDHoldTO = 50\nbFixLenDsp = 1\n"), 1U);
  EXPECT_EQ(Slot().record[kTimeParms], (RecordWords{100, 1000, 2000, 4, 4, 0x20, 0, 0x40}));
  EXPECT_EQ(Slot()[field::CfgFlags_bFixLenDsp], 1);
  ExpectTraffic(Committed({"set 80", "set 03 05 11 10 1A 3A 28 1D"}, "01"));
}

TEST_F(TemplateRead, EveryRangeTestHolds) {
  for (const char* line :
       {"iLeadParityBitCnt = 16", "iTrailParityBitCnt = 16", "iIDBitCnt = 0", "iIDBitCnt = 256",
        "iTotalBitCnt = 25", "iTotalBitCnt = 256", "iFACIDDelim = 256", "iELDelim = 256", "iIDDispLen = 26",
        "iFACDispLen = 26", "iBitStrmTO = 1021", "iIDHoldTO = 12751", "iIDLockOutTm = 12751",
        "iUSBKeyPrsTm = 1021", "iUSBKeyRlsTm = 1021", "iLeadChrCnt = 4", "iTrailChrCnt = 4"})
    ExpectNothingSent(std::string(line) + "\n");
  EXPECT_EQ(GetLastLibErr(), 0U) << "the write has cleared it";
}

TEST_F(TemplateRead, LongLinesArriveInPieces) {
  // 127 characters are one piece; what follows is a line of its own.
  const std::string comment = "/" + std::string(126, 'c');
  ExpectBitStrmTO(8, comment + "iBitStrmTO = 8\n");
  ExpectBitStrmTO(100, comment.substr(1) + "iBitStrmTO = 8\n");
  const std::string blanks(113, ' ');
  ExpectBitStrmTO(8, blanks + "iBitStrmTO = 8\n");
  // The piece ends after the first digit of 12.
  ExpectBitStrmTO(1, blanks + "iBitStrmTO = 12\n");
  const std::string twice = comment + "/" + std::string(126, 'c');
  ExpectBitStrmTO(8, twice + "iBitStrmTO = 8\n");
  ExpectBitStrmTO(8, "/" + std::string(125, 'c') + "\niBitStrmTO = 8\n");
}

TEST_F(TemplateRead, AKeywordAsLongAsALineIsUnknown) {
  ExpectNothingSent(std::string(126, 'k') + "\n" + std::string(127, 'k') + " 8\n" + std::string(300, 'k') +
                    "\n");
}

TEST_F(TemplateRead, ANulEndsItsLine) {
  ExpectBitStrmTO(100, std::string("iBitStrmTO = \0008\n", 16));
  ExpectBitStrmTO(8, std::string("iBitStrmTO = 8\0 9\n", 18));
}

TEST_F(TemplateRead, TheTitleStandsInTheFirst128Bytes) {
  constexpr std::size_t kLength = 57;
  const std::string title = std::string(kTitleLine).substr(1, kLength);
  ASSERT_TRUE(title.ends_with("File ---"));
  const std::string lines = "\niBitStrmTO = 8\n";
  EXPECT_EQ(Load(title + lines), 1U);
  EXPECT_EQ(Load(std::string(128 - kLength, '/') + title + lines), 1U);
  EXPECT_EQ(Load("/" + std::string(5, '\0') + title + lines), 1U) << "behind a NUL";
  EXPECT_EQ(Load("iBitStrmTO = 12\n" + title + "\n"), 1U) << "and the file is read from its start";
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 12);
  ForgetTraffic();
  EXPECT_EQ(Load(std::string(129 - kLength, '/') + title + lines), 0U);
  EXPECT_EQ(Load(title.substr(1) + lines), 0U);
  std::string upper = title;
  upper[4] = 't';
  EXPECT_EQ(Load(upper + lines), 0U);
  EXPECT_EQ(Load(title.substr(0, kLength - 1)), 0U);
  EXPECT_EQ(Load(""), 0U);
  ExpectTraffic({});
}

TEST_F(TemplateRead, AFailedCommitIsZero) {
  reader->faults.RefuseCommand({0x90});
  EXPECT_EQ(LoadLines("iBitStrmTO = 8\n"), 0U);
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 8);
  EXPECT_EQ(Slot().bDirtyTime, 1U) << "to be sent again";
}

TEST_F(TemplateRead, ALoadShowsInTheTraceAsAWrite) {
  StartTrace();
  EXPECT_EQ(WriteCfg(), 1U);
  const Lines traced = Trace();
  ExpectTrace(traced);
  EXPECT_EQ(LoadLines("iTotalBitCnt = 30\n"), 1U);
  ExpectTrace(traced);
}

TEST_F(TemplateRead, ASaveLoadsBackWithoutAChange) {
  MakeDistinct(reader->state.Working());
  const std::string saved = Save();
  ForgetTraffic();
  EXPECT_EQ(Load(saved), 1U);
  ExpectTraffic(Committed({}, "00"));
  EXPECT_EQ(Save(), saved);
}

TEST_F(TemplateRead, ASaveMovesToAnotherReader) {
  MakeDistinct(reader->state.Working());
  const std::string saved = Save();
  const sim::Settings wanted = reader->state.Working();
  reader->state.Working().blocks = {sim::Block{1, 1, 0x11, 1, 26, 1, 1, 0},
                                    sim::Block{0, 1, 1, 1, 1, 1, 0, 0xE0}, sim::Block{}, sim::Block{}};
  for (std::size_t at = 4; at < 128; ++at) reader->state.Working().separated[at] = 0x55;
  ASSERT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Load(saved), 1U);
  EXPECT_EQ(reader->state.Working().blocks, wanted.blocks);
  EXPECT_EQ(reader->state.Working().separated, wanted.separated);
  EXPECT_EQ(Save(), saved);
  EXPECT_EQ(Load(CrLf(saved)), 1U);
  EXPECT_EQ(Save(), saved);
}

}  // namespace
}  // namespace tavlyn::test
