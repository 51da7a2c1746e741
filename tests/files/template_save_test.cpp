// Saving a reader's configuration: every byte of the file, its results and its traffic.
#include <string>

#include "tests/files/file_bench.h"
#include "tests/reader/ascii_bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class TemplateWrite : public FileBench {
 protected:
  void UseDistinct() {
    Use(Reader::Plain());
    MakeDistinct(reader->state.Working());
  }
  static std::string Heading() { return std::string(kTitleLine) + kVersionLines; }
  static std::string Block() { return std::string(kDistinctFields) + kSepNote + kDistinctSep; }
};

TEST_F(TemplateWrite, EveryByteOfASingleConfiguration) {
  UseDistinct();
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  EXPECT_EQ(Fetch(File()), OnDisk(Heading() + Block()));
}

TEST_F(TemplateWrite, AsksWhatAReadAsks) {
  UseDistinct();
  EXPECT_EQ(ReadCfg(), 1U);
  const Lines read = TrafficOf(host.transcript.Events());
  ForgetTraffic();
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  ExpectTraffic(read);
}

TEST_F(TemplateWrite, ReplacesALongerFile) {
  UseDistinct();
  Store(File(), std::string(100000, 'x'));
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  EXPECT_EQ(Fetch(File()), OnDisk(Heading() + Block()));
}

TEST_F(TemplateWrite, NibblesAboveNineTakeTwoDigits) {
  UseDistinct();
  reader->state.did = 0xF0A9;
  // The heading is written before the reader is asked, and so has the number known by then.
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_NE(Save().find(OnDisk("\n:Device FW Version: 150.109 \n")), std::string::npos);
  reader->state.did = 0x0000;
  EXPECT_NE(Save().find(OnDisk("\n:Device FW Version: 150.109 \n")), std::string::npos);
  EXPECT_NE(Save().find(OnDisk("\n:Device FW Version: 00.00 \n")), std::string::npos);
}

TEST_F(TemplateWrite, AFailedReadLeavesTheHeadingAlone) {
  UseDistinct();
  reader->faults.RefuseReply({0x80});
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 0xFFFFU);
  EXPECT_EQ(Fetch(File()), OnDisk(Heading()));
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
}

TEST_F(TemplateWrite, TheErrorWordIsThatOfTheRead) {
  UseDistinct();
  Entry().LastLibErr = 0x91000000;
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(TemplateWrite, AFileThatCannotBeOpenedAsksNothing) {
  UseDistinct();
  Entry().LastLibErr = 5;
  EXPECT_EQ(WriteDevCfgToFile(File("missing/file.txt").c_str()), 0U);
  EXPECT_EQ(GetLastLibErr(), 5U);
  ExpectTraffic({});
}

TEST_F(TemplateWrite, ASaveIsNotTraced) {
  UseDistinct();
  StartTrace();
  EXPECT_EQ(ReadCfg(), 1U);
  const Lines traced = Trace();
  ExpectTrace(traced);
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  ExpectTrace(traced);
}

class TemplateWriteSeveral : public TemplateWrite {
 protected:
  static std::string CardLines(int type, int priority) {
    return "CardType: " + std::to_string(type) +
           " / Card type code\nCardPriority: " + std::to_string(priority) +
           " / 0=Low, 1=High Priority\n##NEXTCONFIG##\n";
  }
  void UseDistinctPlus(int configurations) {
    Use(Reader::Plus(configurations));
    for (sim::Configuration& configuration : reader->state.configurations)
      MakeDistinct(configuration.working);
  }
};

TEST_F(TemplateWriteSeveral, EveryByteOfTwoConfigurations) {
  UseDistinctPlus(2);
  reader->state.configurations[1].working.blocks[0][4] = 201;
  reader->state.configurations[1].working.cardType = 0x0104;
  reader->state.configurations[1].working.highPriority = false;
  std::string other = Block();
  other.replace(other.find("iTotalBitCnt = 200"), 18, "iTotalBitCnt = 201");
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  EXPECT_EQ(Fetch(File()), OnDisk(Heading() + Block() + CardLines(0xEF04, 1) + other + CardLines(0x0104, 0)));
}

TEST_F(TemplateWriteSeveral, AReaderOfOneOfSeveralHasNoCardLines) {
  UseDistinctPlus(1);
  ASSERT_EQ(Entry().MaxConfig, 0);
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  EXPECT_EQ(Fetch(File()), OnDisk(Heading() + Block()));
}

TEST_F(TemplateWriteSeveral, AllElevenAreSaved) {
  UseDistinctPlus(11);
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  std::string expected = Heading();
  for (int config = 0; config < 11; ++config)
    expected += Block() + CardLines(0xEF04 + 0x0100 * config, config == 0 ? 1 : 0);
  EXPECT_EQ(Fetch(File()), OnDisk(expected));
}

TEST_F(TemplateWriteSeveral, EachConfigurationIsReadOnItsOwn) {
  UseDistinctPlus(3);
  Lines expected;
  for (std::uint8_t config = 0; config < 3; ++config) {
    ASSERT_EQ(SetActConfig(config), 1U);
    ASSERT_EQ(ReadCfg(), 1U);
  }
  expected = TrafficOf(host.transcript.Events());
  ASSERT_EQ(SetActConfig(1), 1U);
  ForgetTraffic();
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  ExpectTraffic(expected);
  EXPECT_EQ(GetActConfig(), 1) << "put back on the host";
  EXPECT_EQ(reader->state.active, 2U) << "but not in the reader";
}

TEST_F(TemplateWriteSeveral, AFailedReadStillHasItsCardLines) {
  UseDistinctPlus(2);
  ASSERT_EQ(ReadCfg(), 1U);
  reader->faults.RefuseReply({0x80}, 1);
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 1U);
  EXPECT_EQ(Fetch(File()), OnDisk(Heading() + CardLines(0xEF04, 1) + Block() + CardLines(0xF004, 0)));
}

TEST_F(TemplateWriteSeveral, NoConfigurationReadAtAll) {
  UseDistinctPlus(2);
  ASSERT_EQ(ReadCfg(), 1U);
  ASSERT_EQ(SetActConfig(1), 1U);
  reader->faults.RefuseReply({0x80});
  EXPECT_EQ(WriteDevCfgToFile(File().c_str()), 0xFFFFU);
  EXPECT_EQ(Fetch(File()), OnDisk(Heading() + CardLines(0xEF04, 1) + CardLines(0xF004, 0)));
  EXPECT_EQ(GetActConfig(), 1);
}

// In the text dialect a flag can have any value, and one that has no key stays as it was set.
class TemplateWriteText : public AsciiBench {};

TEST_F(TemplateWriteText, AFlagThatIsSetIsSavedAsOne) {
  ascii.version = "{A1.2.3}...." + kAsciiPrompt;
  ascii.variables = Listing(":disp.id.hex=5\r:op.cont=5\r");
  Slot().record[kCfgFlags3].fill(5);
  const std::string file = (Folder() / "save.txt").string();
  EXPECT_EQ(WriteDevCfgToFile(file.c_str()), 1U);
  const std::string saved = Fetch(file);
  EXPECT_EQ(Field(field::CfgFlags2_bDspHex), 5);
  for (const char* flag : {"bSndOnRx", "bDspHex", "bUseNumKP", "bSndSFON", "bSndSFFC", "bSndSFID",
                           "bPrxProEm", "bUse64Bit", "bNotBootDev", "bLowerCaseHex"})
    EXPECT_NE(saved.find(std::string("\n") + flag + " = 1 "), std::string::npos) << flag;
}

}  // namespace
}  // namespace tavlyn::test
