// The support file with every report of a reader.
#include <fstream>
#include <sstream>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"
#include "tests/support/on_disk.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr int kReportsOfAConfig = 30;  // fifteen commands, two reports each

std::string Content(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

class ReportDump : public Bench {
 protected:
  void Use(std::shared_ptr<Reader> model) {
    reader = Connected(std::move(model));
    path = Folder() / "dump.txt";
  }
  std::uint32_t Dump() { return DumpRawFeatureReports(path.string().c_str()); }

  std::shared_ptr<Reader> reader;
  std::filesystem::path path;
};

TEST_F(ReportDump, APlainReaderByteForByte) {
  auto model = Reader::Plain();
  model->state.raw87 = {0x87, 1};
  model->state.raw8B = {0, 0, 0, 0, 0, 0, 0, 0xAB};
  model->PutCard({0x11, 0x22}, 16);
  // A plain reader refuses the query for several configurations by its two bytes; the bare command is unknown
  // to it and answered with zeros.
  Use(std::move(model));
  EXPECT_EQ(Dump(), 1U);
  EXPECT_EQ(Content(path), OnDisk("# 8 byte USB Feature Reports\n"
                                  "# Reader Type Tavlyn\n"
                                  "Tx: 80 00 00 00 00 00 00 00 \nRx: 03 05 11 10 1A 3A 28 1C \n"
                                  "Tx: 81 00 00 00 00 00 00 00 \nRx: 00 19 14 28 01 01 40 20 \n"
                                  "Tx: 82 00 00 00 00 00 00 00 \nRx: 01 10 00 00 00 00 00 00 \n"
                                  "Tx: 83 00 00 00 00 00 00 00 \nRx: 00 00 00 00 00 00 00 00 \n"
                                  "Tx: 84 00 00 00 00 00 00 00 \nRx: 00 00 00 00 00 00 00 00 \n"
                                  "Tx: 85 00 00 00 00 00 00 00 \nRx: 0C 00 00 0C 00 00 00 00 \n"
                                  "Tx: 87 00 00 00 00 00 00 00 \nRx: 87 01 00 00 00 00 00 00 \n"
                                  "Tx: 88 00 00 00 00 00 00 00 \nRx: 00 00 00 00 00 00 00 00 \n"
                                  "Tx: 89 00 00 00 00 00 00 00 \nRx: 00 00 00 00 00 00 00 00 \n"
                                  "Tx: 8A 00 00 00 00 00 00 00 \nRx: 01 00 31 74 00 00 00 00 \n"
                                  "Tx: 8B 00 00 00 00 00 00 00 \nRx: 00 00 00 00 00 00 00 AB \n"
                                  "Tx: 8C 00 00 00 00 00 00 00 \nRx: 00 00 00 00 00 00 00 00 \n"
                                  "Tx: 8D 00 00 00 00 00 00 00 \nRx: 11 22 00 00 00 00 00 00 \n"
                                  "Tx: 8E 00 00 00 00 00 00 00 \nRx: 10 00 00 00 00 00 00 00 \n"
                                  "Tx: 8F 00 00 00 00 00 00 00 \nRx: 11 22 00 00 00 00 00 00 \n"
                                  "# End"));
  EXPECT_EQ(Slept(), 0U);
}

TEST_F(ReportDump, TheCommandsGoOutInTheirOrder) {
  Use(Reader::Plain());
  EXPECT_EQ(Dump(), 1U);
  Lines expected;
  for (const char* command :
       {"80", "81", "82", "83", "84", "85", "87", "88", "89", "8A", "8B", "8C", "8D", "8E", "8F"}) {
    expected.push_back(std::string("set ") + command);
    expected.emplace_back("get");
  }
  ExpectTraffic(expected);
}

TEST_F(ReportDump, APlusReaderHasAPartForEachConfigurationAndIsPutBack) {
  Use(Reader::Plus(3));
  EntryOfActDev().ActConfig = 1;
  EXPECT_EQ(Dump(), 1U);
  const std::string text = Content(path);
  EXPECT_TRUE(text.starts_with(
      OnDisk("# 8 byte USB Feature Reports\n# Reader Type TavlynPlus\n# Configuration 1\nTx: 80")));
  const auto second = text.find(OnDisk("# Configuration 2\nTx: 80"));
  const auto third = text.find(OnDisk("# Configuration 3\nTx: 80"));
  ASSERT_NE(second, std::string::npos);
  ASSERT_NE(third, std::string::npos);
  EXPECT_LT(second, third);
  EXPECT_EQ(text.find("# Configuration 4"), std::string::npos);
  EXPECT_NE(text.find("Rx: 00 04 F1 00 ", third), std::string::npos) << "its own card type";
  EXPECT_TRUE(text.ends_with("# End"));
  EXPECT_EQ(EntryOfActDev().ActConfig, 1);
  EXPECT_EQ(reader->state.active, 1U);
}

TEST_F(ReportDump, APlusReaderOfOneConfigurationIsCalledPlain) {
  Use(Reader::Plus(1));
  EXPECT_EQ(Dump(), 1U);
  const std::string text = Content(path);
  EXPECT_TRUE(text.starts_with(OnDisk("# 8 byte USB Feature Reports\n# Reader Type Tavlyn\nTx: 80")));
  EXPECT_EQ(text.find("# Configuration"), std::string::npos);
}

TEST_F(ReportDump, AFailureAtEachReportRemovesTheFileAndPutsTheReaderBack) {
  Use(Reader::Plus(2));
  EntryOfActDev().ActConfig = 1;
  for (int report = 1; report <= 2 * kReportsOfAConfig; ++report) {
    // Two more reports select each configuration.
    const int exchange = report + 2 * ((report - 1) / kReportsOfAConfig + 1);
    reader->faults.Restart();
    reader->faults.RefuseAt(exchange, 6);
    if (report % 2 == 0) {
      reader->faults.Restart();
      reader->faults.RefuseAt(exchange, 1);
    }
    EntryOfActDev().LastLibErr = 5;
    EXPECT_EQ(Dump(), 0U) << report;
    EXPECT_FALSE(std::filesystem::exists(path)) << report;
    EXPECT_EQ(EntryOfActDev().ActConfig, 1) << report;
    EXPECT_EQ(reader->state.active, 1U) << report;
    EXPECT_EQ(GetLastLibErr(), report % 2 == 0 ? 5U : 0x202U) << report;
  }
}

TEST_F(ReportDump, AFailedSelectionIsNotLookedAt) {
  Use(Reader::Plus(2));
  reader->faults.RefuseReply({0x89, 0x81});
  EXPECT_EQ(Dump(), 1U);
}

TEST_F(ReportDump, AFileIsOverwritten) {
  Use(Reader::Plain());
  std::ofstream(path) << std::string(100000, 'x');
  EXPECT_EQ(Dump(), 1U);
  EXPECT_EQ(Content(path).find("xx"), std::string::npos);
}

TEST_F(ReportDump, WithoutAFileNothingIsAsked) {
  Use(Reader::Plain());
  EXPECT_EQ(DumpRawFeatureReports(nullptr), 0U);
  EXPECT_EQ(DumpRawFeatureReports((Folder() / "missing" / "dump.txt").string().c_str()), 0U);
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
