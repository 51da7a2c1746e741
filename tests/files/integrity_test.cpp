// Saving and loading configurations with an integrity trailer.
#include <string>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class SecureFiles : public FileBench {
 protected:
  void SetUp() override {
    FileBench::SetUp();
    SetUnsupportedProductErrorCode(0x8001);
  }
  void UseDistinct() {
    Use(Reader::Plain());
    MakeDistinct(reader->state.Working());
  }
  static std::string Saved() {
    return std::string(kTitleLine) + kVersionLines + kDistinctFields + kSepNote + kDistinctSep;
  }
  std::uint32_t Write() { return WriteDevCfgToSecureFile(File().c_str()); }
  std::uint32_t Read(const std::string& text) {
    Store(File("read.txt"), text);
    return ReadDevCfgFromSecureFile(File("read.txt").c_str());
  }
};

TEST_F(SecureFiles, EveryByteOfASave) {
  UseDistinct();
  ASSERT_EQ(ReadCfg(), 1U);
  const Lines read = TrafficOf(host.transcript.Events());
  ForgetTraffic();
  Entry().LastLibErr = 5;
  EXPECT_EQ(Write(), 1U);
  EXPECT_EQ(Fetch(File()), SavedSecureOf(Saved()));
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic(read);
  EXPECT_EQ(CheckTamperedFile(File().c_str(), 0), 1U);
}

TEST_F(SecureFiles, ASaveReplacesAnEarlierOne) {
  UseDistinct();
  EXPECT_EQ(Write(), 1U);
  EXPECT_EQ(Write(), 1U);
  EXPECT_EQ(Fetch(File()), SavedSecureOf(Saved()));
}

TEST_F(SecureFiles, AFailedReadIsSavedAndSealed) {
  UseDistinct();
  reader->faults.RefuseReply({0x80});
  EXPECT_EQ(Write(), 1U);
  EXPECT_EQ(Fetch(File()), SavedSecureOf(std::string(kTitleLine) + kVersionLines));
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
}

TEST_F(SecureFiles, AFileThatCannotBeOpenedForWriting) {
  UseDistinct();
  Entry().LastLibErr = 5;
  EXPECT_EQ(WriteDevCfgToSecureFile(File("missing/file").c_str()), 0x8001U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic({});
}

TEST_F(SecureFiles, ALoadOfAWholeFile) {
  Use(Reader::Plain());
  Entry().LastLibErr = 5;
  EXPECT_EQ(Read(SecureOf(std::string(kTitleLine) + "iBitStrmTO = 8\n")), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic(Committed({"set 81", "set 00 02 14 28 01 01 40 20"}, "02"));
}

TEST_F(SecureFiles, FilesOfEitherSystemLoadOnBoth) {
  Use(Reader::Plain());
  for (const std::string lineEnd : {"\n", "\r\n"}) {
    const std::string title = std::string(kTitleLine);
    const std::string body = title.substr(0, title.size() - 1) + lineEnd + "iBitStrmTO = 8" + lineEnd;
    const std::string marker = "/--- iEndOfHwgFile " + lineEnd;
    Slot()[field::TimeParms_iBitStrmTO] = 100;
    EXPECT_EQ(Read(body + marker + "iEndOfHwgFile = " + SumText(body)), 1U);
    EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 8);
  }
}

TEST_F(SecureFiles, TheTrailerLinesOfAnEndlessBlockAreNoData) {
  Use(Reader::Plain());
  Slot().sFldSepData[0] = 0x24;
  Slot().sFldSepData[3] = 1;
  EXPECT_EQ(Read(SecureOf(std::string(kTitleLine) + "BEGIN sFldSepData\n24.11\n")), 1U);
  EXPECT_EQ(Slot().sFldSepData[1], 0x11);
  EXPECT_EQ(Slot().sFldSepData[2], 0) << "i is no hexadecimal digit";
}

TEST_F(SecureFiles, ASaveOfOneReaderLoadsIntoAnother) {
  UseDistinct();
  EXPECT_EQ(Write(), 1U);
  const sim::Settings wanted = reader->state.Working();
  reader->state.Working().blocks[0][4] = 77;
  ASSERT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(ReadDevCfgFromSecureFile(File().c_str()), 1U);
  EXPECT_EQ(reader->state.Working(), wanted);
}

TEST_F(SecureFiles, ATrailerOfABleFileIsAccepted) {
  Use(Reader::Plain());
  EXPECT_EQ(Read(BleOf(std::string(kTitleLine) + "iBitStrmTO = 8\n")), 1U);
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 8);
}

TEST_F(SecureFiles, ARefusedFileDoesNothing) {
  Use(Reader::Plain());
  const std::string lines = std::string(kTitleLine) + "iBitStrmTO = 8\n";
  std::string tampered = SecureOf(lines);
  tampered[tampered.find("= 8") + 2] = '9';
  for (const std::string& text : {tampered, lines, std::string(), IniOf(lines)}) {
    Entry().LastLibErr = 5;
    EXPECT_EQ(Read(text), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x91000005U);
  }
  Entry().LastLibErr = 0x02000000;
  EXPECT_EQ(ReadDevCfgFromSecureFile(File("missing").c_str()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x93000000U);
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 100);
  ExpectTraffic({});
}

TEST_F(SecureFiles, AWholeFileThatIsNoTemplate) {
  Use(Reader::Plain());
  Entry().LastLibErr = 5;
  EXPECT_EQ(Read(SecureOf("iBitStrmTO = 8\n")), 0x8001U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic({});
}

TEST_F(SecureFiles, ACommitThatFails) {
  Use(Reader::Plain());
  reader->faults.RefuseCommand({0x90});
  EXPECT_EQ(Read(SecureOf(std::string(kTitleLine) + "iBitStrmTO = 8\n")), 0x8001U);
}

TEST_F(SecureFiles, LoadingWithoutAReader) {
  Use(Reader::Plain());
  const std::string lines = std::string(kTitleLine) + "iBitStrmTO = 8\n";
  Entry().ProductKind = 3;
  Entry().LastLibErr = 5;
  EXPECT_EQ(Read(SecureOf(lines)), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Read(lines), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x91000000U);
  Entry().ProductKind = kReader;
  shared.DevCnt = 0;
  Entry().LastLibErr = 5;
  EXPECT_EQ(Read(SecureOf(lines)), 1U);
  EXPECT_EQ(Entry().LastLibErr, 5U);
  EXPECT_EQ(Read(lines), 0U);
  EXPECT_EQ(Entry().LastLibErr, 0x91000005U) << "of the entry that the active index names";
  shared.DevCnt = 1;
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 100);
  ExpectTraffic({});
}

TEST_F(SecureFiles, SeveralConfigurations) {
  Use(Reader::Plus(3));
  for (std::size_t config = 0; config < 3; ++config) {
    MakeDistinct(reader->state.configurations[config].working);
    reader->state.configurations[config].working.blocks[0][4] = static_cast<std::uint8_t>(100 + config);
  }
  EXPECT_EQ(Write(), 1U);
  EXPECT_EQ(CheckTamperedFile(File().c_str(), 0), 1U);
  for (sim::Configuration& configuration : reader->state.configurations)
    configuration.working.blocks[0][4] = 30;
  ASSERT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(ReadDevCfgFromSecureFile(File().c_str()), 1U);
  for (std::size_t config = 0; config < 3; ++config)
    EXPECT_EQ(reader->state.configurations[config].working.blocks[0][4], 100 + config);
}

}  // namespace
}  // namespace tavlyn::test
