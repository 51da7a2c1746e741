// Paths and contents that no sensible caller passes.
#include <random>
#include <string>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;
namespace fs = std::filesystem;

class BadFiles : public FileBench {
 protected:
  void SetUp() override {
    FileBench::SetUp();
    SetUnsupportedProductErrorCode(0x8001);
    Use(Reader::Plain());
  }

  void ExpectRefused(const char* path) {
    Entry().LastLibErr = 5;
    EXPECT_EQ(ReadDevCfgFmFile(path), 0U);
    EXPECT_EQ(CheckTamperedFile(path, 0), 0U);
    EXPECT_EQ(CheckTamperedFile(path, 2), 0U);
    EXPECT_EQ(GetLastLibErr(), 5U);
    EXPECT_EQ(ReadDevCfgFromSecureFile(path), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x91000005U);
    ExpectTraffic({});
  }
  void ExpectUnwritable(const char* path) {
    EXPECT_EQ(WriteDevCfgToFile(path), 0U);
    EXPECT_EQ(WriteDevCfgToSecureFile(path), 0x8001U);
    ExpectTraffic({});
  }
  // Root may do everything, so nothing would be refused.
  static bool MayEverything(const fs::path& folder) {
    const fs::path probe = folder / "probe";
    Store(probe, "x");
    fs::permissions(probe, fs::perms::none);
    return std::ifstream(probe).is_open();
  }

  static std::string Noise(std::size_t size) {
    constexpr std::size_t kChunk = 65536;
    std::mt19937 random(7);
    std::string chunk(kChunk, '\0');
    for (char& c : chunk) c = static_cast<char>(random() >> 8);
    std::string noise;
    while (noise.size() < size) noise += chunk;
    noise.resize(size);
    return noise;
  }
};

TEST_F(BadFiles, NullPath) {
  ExpectRefused(nullptr);
  ExpectUnwritable(nullptr);
}

TEST_F(BadFiles, EmptyPath) {
  ExpectRefused("");
  ExpectUnwritable("");
}

TEST_F(BadFiles, MissingFileAndFolder) {
  ExpectRefused(File("missing").c_str());
  ExpectRefused(File("missing/file").c_str());
  ExpectUnwritable(File("missing/file").c_str());
}

TEST_F(BadFiles, AFolder) {
  ExpectRefused(Folder().string().c_str());
  ExpectUnwritable(Folder().string().c_str());
}

TEST_F(BadFiles, APathBeyondAllLimits) {
  const std::string path(100000, 'p');
  ExpectRefused(path.c_str());
  ExpectUnwritable(path.c_str());
}

TEST_F(BadFiles, AnEmptyFile) {
  Store(File(), "");
  ExpectRefused(File().c_str());
}

TEST_F(BadFiles, Garbage) {
  for (const std::size_t size : {1U, 127U, 128U, 129U, 4095U, 4096U, 65536U}) {
    Store(File(), Noise(size));
    ExpectRefused(File().c_str());
  }
  Store(File(), std::string(10000, '\0'));
  ExpectRefused(File().c_str());
}

TEST_F(BadFiles, AFileThatMayNotBeRead) {
  if (MayEverything(Folder())) GTEST_SKIP() << "this user may read every file: nothing is refused here";
  Store(File(), SecureOf(kTitleLine));
  fs::permissions(File(), fs::perms::none);
  ExpectRefused(File().c_str());
}

TEST_F(BadFiles, AFolderThatMayNotBeWrittenTo) {
  if (MayEverything(Folder())) GTEST_SKIP() << "this user may write everywhere: nothing is refused here";
  fs::create_directory(At("closed"));
  fs::permissions(At("closed"), fs::perms::owner_read | fs::perms::owner_exec);
  ExpectUnwritable(File("closed/file").c_str());
  fs::permissions(At("closed"), fs::perms::owner_all);
}

TEST_F(BadFiles, AFullDiskGoesUnnoticed) {
  const char* full = "/dev/full";
  if (!fs::exists(full)) GTEST_SKIP() << "no " << full << " here";
  EXPECT_EQ(WriteDevCfgToFile(full), 1U) << "only an open can fail a save";
}

TEST_F(BadFiles, NoLineEnd) {
  const std::string title = kTitleLine;
  EXPECT_EQ(Load(title.substr(0, title.size() - 1)), 1U);
  EXPECT_EQ(LoadLines("iBitStrmTO = 8"), 1U);
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 8);
}

TEST_F(BadFiles, ALineOfAMegabyte) {
  EXPECT_EQ(LoadLines(std::string(1 << 20, 'x') + "\niBitStrmTO = 8\n"), 1U);
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 8);
  EXPECT_EQ(LoadLines("BEGIN sFldSepData\n" + std::string(1 << 20, 'F') + "\nEND sFldSepData\n"), 1U);
  EXPECT_TRUE(Intact(SecureOf(std::string(1 << 20, 'x') + "\n")));
  EXPECT_TRUE(Intact(IniOf(std::string(1 << 20, 'x') + "\r\n"), 2));
}

// Only a file that is not regular may never end.
TEST_F(BadFiles, MoreThanAMillionLines) {
  std::string lines;
  for (int line = 0; line < (1 << 20) + 5; ++line) lines += "x\n";
  EXPECT_TRUE(Intact(SecureOf(lines)));
  EXPECT_TRUE(Intact(BleOf(lines)));
  EXPECT_TRUE(Intact(IniOf(CrLf(lines)), 2));
  EXPECT_EQ(LoadLines(lines + "iBitStrmTO = 8\n"), 1U);
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 8);
  EXPECT_EQ(WriteDevCfgToSecureFile(File("whole.txt").c_str()), 1U);
  EXPECT_TRUE(Intact(Fetch(At("whole.txt"))));
}

TEST_F(BadFiles, GarbageBehindATitle) {
  EXPECT_EQ(LoadLines(Noise(200000)), 1U);
  EXPECT_EQ(LoadLines("BEGIN sFldSepData\n" + Noise(200000)), 1U);
  EXPECT_EQ(LoadLines(std::string(100000, '\0')), 1U);
}

TEST_F(BadFiles, FiftyMegabytesOfGarbage) {
  const std::string noise = Noise(50U << 20);
  Store(File(), noise);
  ExpectRefused(File().c_str());
  Store(File(), kTitleLine + noise);
  EXPECT_EQ(ReadDevCfgFmFile(File().c_str()), 1U);
}

#if defined(__linux__)
// A device in place of a file never ends; the calls do.
TEST_F(BadFiles, DevicesThatNeverEnd) {
  EXPECT_EQ(CheckTamperedFile("/dev/zero", 0), 0U);
  EXPECT_EQ(CheckTamperedFile("/dev/zero", 2), 0U);
  EXPECT_EQ(ReadDevCfgFmFile("/dev/zero"), 0U);
  // The save reports only a failed open, and a trailer that cannot be added goes unreported.
  EXPECT_EQ(WriteDevCfgToSecureFile("/dev/full"), 1U);
}
#endif

using BadCards = FileBench;

TEST_F(BadCards, LinesThatAreNone) {
  Use(Reader::Plus(2));
  const std::string block = "BEGIN sFldSepData\nEND sFldSepData\n";
  for (const std::string& card :
       {std::string("CardType: 99999999999999999999999\nCardPriority: -99999999999999999999\n##\n"),
        std::string("CardType:"), std::string("CardType:\n\n\n\nCardPriority:\n\n"),
        std::string("CardType: \0\nCardPriority: \0\n", 28), std::string(100000, 'C'),
        "CardType: 5" + std::string(100000, ' ')})
    EXPECT_EQ(LoadLines(block + card), 1U) << card.substr(0, 60);
}

}  // namespace
}  // namespace tavlyn::test
