// Loading a template into a reader of several configurations.
#include <array>
#include <string>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

std::string Total(int value) { return "iTotalBitCnt = " + std::to_string(value) + "\n"; }
constexpr const char* kBlockEnd = "BEGIN sFldSepData\nEND sFldSepData\n";
std::string Card(const std::string& type, const std::string& priority) {
  return "CardType: " + type + " / Card type code\nCardPriority: " + priority +
         " / 0=Low, 1=High Priority\n##NEXTCONFIG##\n";
}
std::string Config(int total, int type, int priority) {
  return Total(total) + kBlockEnd + Card(std::to_string(type), std::to_string(priority));
}

class TemplateConfigs : public FileBench {
 protected:
  void UsePlus(int configurations) {
    Use(Reader::Plus(configurations));
    ASSERT_EQ(ReadCfg(), 1U);
    ForgetTraffic();
  }
  static int TotalOf(std::size_t config) { return Slot(config)[field::IDBitCnts_iTotalBitCnt]; }
  sim::Settings& Working(std::size_t config) { return reader->state.configurations[config].working; }
};

TEST_F(TemplateConfigs, EachConfigurationIsPushedAndCommitted) {
  UsePlus(2);
  ASSERT_EQ(SetActConfig(1), 1U);
  EXPECT_EQ(LoadLines(Config(30, 0x0101, 0) + Config(31, 0x0202, 1)), 1U);
  // WriteCfg walks all configurations each time; the second block is not known to the first walk.
  const auto walked = [](const char* select, const Lines& blocks, const char* card, const std::string& mask) {
    return Join({{select, "get", "set 84", card, "sleep 10"},
                 blocks,
                 {"set 84", card, "sleep 10", mask == "00" ? "set 90" : "set 90 " + mask, "set 8C 06", "get",
                  "sleep 20"}});
  };
  const char* one = "set 00 04 F0";
  const char* zero = "set 00 01 01";
  ExpectTraffic(
      Join({walked("set 89 81 01", {}, one, "00"),
            walked("set 89 81", {"set 80", "set 03 05 11 10 1E 3A 28 1C"}, zero, "01"),
            {"set 89 81", "get"},
            walked("set 89 81 01", {"set 80", "set 03 05 11 10 1F 3A 28 1C"}, "set 00 02 02 01", "01"),
            walked("set 89 81", {}, zero, "00"),
            {"set 89 81 01", "get"}}));
  EXPECT_EQ(Working(0).blocks[0][4], 30);
  EXPECT_EQ(Working(1).blocks[0][4], 31);
  EXPECT_EQ(Working(0).cardType, 0x0101);
  EXPECT_EQ(Working(1).cardType, 0x0202);
  EXPECT_FALSE(Working(0).highPriority);
  EXPECT_TRUE(Working(1).highPriority);
  EXPECT_EQ(GetActConfig(), 1) << "as before";
}

TEST_F(TemplateConfigs, CardLinesOfEveryKind) {
  const struct {
    std::string lines;
    int type;
    int priority;
  } cases[] = {
      {Card("258", "1"), 258, 1},
      {Card("258", "0"), 258, 0},
      {Card("258", "x"), 258, 0},
      {Card("x", "0"), 0x7777, 0},
      {Card("x", "1"), 0x7777, 1},
      {Card("x", "x"), 0x7777, 5},
      {Card("65794", "65537"), 258, 1},
      {Card("-1", "2"), 0xFFFF, 2},
      {"CardType:258\nCardPriority:1\n##NEXTCONFIG##\n", 258, 1},
      {"cardtype: 258\nCARDPRIORITY: 1\n##NEXTCONFIG##\n", 0x7777, 5},
      {" CardType: 258\nCardPriority: 1\n##NEXTCONFIG##\n", 0x7777, 1},
      {"", 0x7777, 5},
      {"CardType: 258", 258, 0},
  };
  UsePlus(2);
  for (const auto& one : cases) {
    Slot().CardType = 0x7777;
    Slot().CardPriority = 5;
    EXPECT_EQ(LoadLines(kBlockEnd + one.lines), 1U);
    EXPECT_EQ(Slot().CardType, one.type) << one.lines;
    EXPECT_EQ(Slot().CardPriority, one.priority) << one.lines;
  }
}

// By now the reader counts as a plain one, so no configuration can be made active.
TEST_F(TemplateConfigs, CardLinesBelongToTheirConfigurationAlsoWhenItCannotBeSelected) {
  UsePlus(3);
  ASSERT_EQ(SetActConfig(1), 1U);
  Entry().PlusState = kPlainReader;
  EXPECT_EQ(LoadLines(Config(30, 0x0101, 1) + Config(31, 0x0202, 0) + Config(32, 0x0303, 1)), 1U);
  EXPECT_EQ(Entry().ActConfig, 1);
  EXPECT_EQ(TotalOf(1), 32) << "records go to the active one";
  for (const auto& [config, type, priority] : {std::array{0, 0x0101, 1}, {1, 0x0202, 0}, {2, 0x0303, 1}}) {
    EXPECT_EQ(Slot(static_cast<std::size_t>(config)).CardType, type);
    EXPECT_EQ(Slot(static_cast<std::size_t>(config)).CardPriority, priority);
  }
}

TEST_F(TemplateConfigs, TheLineBehindTheCardLinesIsTheSeparatorWhateverItSays) {
  UsePlus(2);
  EXPECT_EQ(LoadLines(std::string(kBlockEnd) +
                      "CardType: 1\nCardPriority: 0\niTotalBitCnt = 40\niTotalBitCnt = 41\n"),
            1U);
  EXPECT_EQ(TotalOf(0), 26);
  EXPECT_EQ(TotalOf(1), 41);
}

TEST_F(TemplateConfigs, ALongCardLineEndsWhereItsBufferDoes) {
  UsePlus(2);
  // 256 characters of the rest are skipped; the 257th begins the next line.
  const std::string rest(256, 'x');
  EXPECT_EQ(
      LoadLines(std::string(kBlockEnd) + "CardType: 1" + rest + "CardPriority: 7\n##\niTotalBitCnt = 41\n"),
      1U);
  EXPECT_EQ(Slot().CardType, 1);
  EXPECT_EQ(Slot().CardPriority, 7);
  EXPECT_EQ(TotalOf(1), 41);
}

TEST_F(TemplateConfigs, ASingleConfigurationFileIntoSeveral) {
  UsePlus(3);
  EXPECT_EQ(LoadLines(Total(30) + kBlockEnd), 1U);
  EXPECT_EQ(TotalOf(0), 30);
  EXPECT_EQ(TotalOf(1), 26);
  EXPECT_EQ(TotalOf(2), 26);
  EXPECT_EQ(Slot(1).CardType, 0xF004);
  EXPECT_EQ(reader->state.counters.commits, 9) << "three walks over three";
  EXPECT_EQ(Working(0).blocks[0][4], 30);
}

TEST_F(TemplateConfigs, AFileOfSeveralIntoAPlainReader) {
  Use(Reader::Plain());
  EXPECT_EQ(LoadLines(Config(30, 1, 1) + Config(31, 2, 1)), 1U);
  EXPECT_EQ(TotalOf(0), 30);
  EXPECT_EQ(Slot().CardType, 0);
  ExpectTraffic(Committed({"set 80", "set 03 05 11 10 1E 3A 28 1C"}, "01"));
}

TEST_F(TemplateConfigs, TheSlotBehindEachOneCountsAsLoaded) {
  UsePlus(3);
  for (tsCfgSlot& slot : Entry().CfgSlot) slot.bCfgLoaded = 0;
  EXPECT_EQ(LoadLines(Config(30, 1, 0)), 1U);
  EXPECT_EQ(Slot(0).bCfgLoaded, 0U);
  for (std::size_t config = 1; config <= 3; ++config) EXPECT_EQ(Slot(config).bCfgLoaded, 1U) << config;
  EXPECT_EQ(Slot(4).bCfgLoaded, 0U);
}

TEST_F(TemplateConfigs, APlainReadersSlotsAreLeftAlone) {
  Use(Reader::Plain());
  for (tsCfgSlot& slot : Entry().CfgSlot) slot.bCfgLoaded = 0;
  EXPECT_EQ(LoadLines(Config(30, 1, 0)), 1U);
  EXPECT_EQ(Slot(0).bCfgLoaded + Slot(1).bCfgLoaded, 0U);
}

TEST_F(TemplateConfigs, OfElevenTenAreLoaded) {
  UsePlus(11);
  for (tsCfgSlot& slot : Entry().CfgSlot) slot.bCfgLoaded = 0;
  std::string lines;
  for (int config = 0; config < 11; ++config) lines += Config(50 + config, config + 1, 0);
  EXPECT_EQ(LoadLines(lines), 1U);
  for (std::size_t config = 0; config < 10; ++config) {
    EXPECT_EQ(Working(config).blocks[0][4], 50 + config);
    EXPECT_EQ(Working(config).cardType, config + 1);
  }
  EXPECT_EQ(Working(10).blocks[0][4], 26);
  EXPECT_EQ(Slot(10).CardType, 0xEF04 + 0x0A00);
  EXPECT_EQ(Slot(10).bCfgLoaded, 1U);
  EXPECT_EQ(reader->state.counters.commits, 110);
  EXPECT_EQ(GetActConfig(), 0);
}

TEST_F(TemplateConfigs, AFailedCommitEndsTheCommitsButNotTheParse) {
  UsePlus(3);
  ASSERT_EQ(SetActConfig(1), 1U);
  reader->faults.RefuseCommand({0x80});
  EXPECT_EQ(LoadLines(Config(30, 1, 0) + Config(31, 2, 0) + Config(32, 3, 0)), 0U);
  EXPECT_EQ(TotalOf(0), 30);
  EXPECT_EQ(TotalOf(1), 31);
  EXPECT_EQ(TotalOf(2), 32);
  EXPECT_EQ(Slot(2).CardType, 3);
  EXPECT_EQ(Slot(3).bCfgLoaded, 1U);
  EXPECT_EQ(reader->state.counters.commits, 2) << "of configurations 2 and 1, which had nothing to send";
  EXPECT_EQ(GetActConfig(), 2) << "the last one handled";
}

TEST_F(TemplateConfigs, AFailureInTheLastCommitIsAFailure) {
  UsePlus(2);
  const int before = reader->state.counters.commits;
  reader->faults.RefuseCommand({0x81});  // only the second configuration has a change of block 1
  EXPECT_EQ(LoadLines(Config(30, 1, 0) + "iBitStrmTO = 8\n" + kBlockEnd), 0U);
  EXPECT_EQ(reader->state.counters.commits, before + 2) << "both of the first walk, none of the second";
  EXPECT_EQ(GetActConfig(), 1);
}

TEST_F(TemplateConfigs, ARefusedFileSelectsNothing) {
  UsePlus(2);
  ASSERT_EQ(SetActConfig(1), 1U);
  EXPECT_EQ(Load("no title\n" + Config(30, 1, 0)), 0U);
  EXPECT_EQ(GetActConfig(), 1);
  ExpectTraffic({});
}

TEST_F(TemplateConfigs, ASaveLoadsBackWithoutABlock) {
  UsePlus(3);
  for (std::size_t config = 0; config < 3; ++config) {
    MakeDistinct(Working(config));
    Working(config).blocks[0][4] = static_cast<std::uint8_t>(100 + config);
  }
  const std::string saved = Save();
  ForgetTraffic();
  EXPECT_EQ(Load(saved), 1U);
  for (const std::string& line : TrafficOf(host.transcript.Events()))
    EXPECT_FALSE(line.starts_with("set 80") || line.starts_with("set 85")) << line;
  EXPECT_EQ(Save(), saved);
}

TEST_F(TemplateConfigs, ASaveOfSeveralMovesToAnotherReader) {
  UsePlus(3);
  for (std::size_t config = 0; config < 3; ++config) {
    MakeDistinct(Working(config));
    Working(config).blocks[0][4] = static_cast<std::uint8_t>(100 + config);
    Working(config).cardType = static_cast<std::uint16_t>(0x0100 + config);
    Working(config).highPriority = config == 2;
  }
  const std::string saved = Save();
  const auto wanted = reader->state.configurations;
  for (std::size_t config = 0; config < 3; ++config) {
    Working(config).blocks[0][4] = 50;
    Working(config).cardType = 9;
    Working(config).highPriority = true;
    Working(config).separated[77] = 0;
  }
  ASSERT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Load(saved), 1U);
  EXPECT_EQ(Save(), saved);
  for (std::size_t config = 0; config < 3; ++config) {
    EXPECT_EQ(Working(config).cardType, wanted[config].working.cardType);
    EXPECT_EQ(Working(config).highPriority, wanted[config].working.highPriority);
    EXPECT_EQ(Working(config).separated, wanted[config].working.separated);
  }
}

}  // namespace
}  // namespace tavlyn::test
