// Saving and loading for callers that pass the path character by character.
#include <string>

#include "tests/files/file_bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;
using Collector = std::uint32_t (*)(std::int16_t, std::uint8_t);

class PathChars : public FileBench {
 protected:
  static void Spell(Collector collect, const std::string& path) {
    ASSERT_LE(path.size(), 255U);
    for (std::size_t at = 0; at < path.size(); ++at)
      ASSERT_EQ(collect(static_cast<std::int16_t>(at), static_cast<std::uint8_t>(path[at])), 1U);
  }
};

TEST_F(PathChars, SaveAndLoad) {
  Use(Reader::Plain());
  Spell(writeDevCfgToFile_char, File());
  EXPECT_EQ(writeDevCfgToFile_char(255, 'x'), 1U);
  const std::string saved = Fetch(File());
  EXPECT_TRUE(saved.starts_with(OnDisk(kTitleLine)));
  Store(File(), std::string(kTitleLine) + "iBitStrmTO = 8\n");
  ForgetTraffic();
  Spell(readDevCfgFmFile_char, File());
  EXPECT_EQ(readDevCfgFmFile_char(255, 0), 1U);
  ExpectTraffic(Committed({"set 81", "set 00 02 14 28 01 01 40 20"}, "02"));
  EXPECT_EQ(readDevCfgFmFile_char(255, 0), 1U) << "the path stays";
  ExpectTraffic(Committed({}, "00"));
}

TEST_F(PathChars, EachHasABufferOfItsOwn) {
  Use(Reader::Plain());
  Spell(writeDevCfgToFile_char, File("saved.txt"));
  Spell(readDevCfgFmFile_char, File("missing.txt"));
  EXPECT_EQ(writeDevCfgToFile_char(255, 0), 1U);
  EXPECT_TRUE(std::filesystem::exists(File("saved.txt")));
  EXPECT_EQ(readDevCfgFmFile_char(255, 0), 0U);
}

TEST_F(PathChars, IndexZeroClearsWhatWasThere) {
  Use(Reader::Plain());
  EnterFolder();
  Spell(writeDevCfgToFile_char, "longer.txt");
  Spell(writeDevCfgToFile_char, "ab");
  EXPECT_EQ(writeDevCfgToFile_char(255, 0), 1U);
  EXPECT_TRUE(std::filesystem::exists("ab"));
  EXPECT_FALSE(std::filesystem::exists("longer.txt"));
  EXPECT_EQ(writeDevCfgToFile_char(1, 'c'), 1U) << "any order";
  EXPECT_EQ(writeDevCfgToFile_char(255, 0), 1U);
  EXPECT_TRUE(std::filesystem::exists("ac"));
}

TEST_F(PathChars, IndexesOutOfRange) {
  for (const Collector collect : {&writeDevCfgToFile_char, &readDevCfgFmFile_char}) {
    for (const int index : {-32768, -255, -1, 256, 257, 511, 32767})
      EXPECT_EQ(collect(static_cast<std::int16_t>(index), 'x'), 0U) << index;
    EXPECT_EQ(collect(0, 'x'), 1U);
    EXPECT_EQ(collect(254, 'x'), 1U);
  }
}

TEST_F(PathChars, APathOf255CharactersIsTaken) {
  Use(Reader::Plain());
  EnterFolder();
  std::string path;
  while (path.size() < 250) path += "./";
  path += "fname";
  ASSERT_EQ(path.size(), 255U);
  Spell(writeDevCfgToFile_char, path);
  EXPECT_EQ(writeDevCfgToFile_char(255, 0), 1U);
  EXPECT_TRUE(std::filesystem::exists("fname"));
}

TEST_F(PathChars, WithoutAReader) {
  SetUnsupportedProductErrorCode(0x8001);
  Spell(writeDevCfgToFile_char, File());
  Spell(readDevCfgFmFile_char, File());
  EXPECT_EQ(writeDevCfgToFile_char(255, 0), 0x8001U);
  EXPECT_EQ(readDevCfgFmFile_char(255, 0), 0x8001U);
  EXPECT_EQ(writeDevCfgToFile_char(256, 0), 0U);
  EXPECT_FALSE(std::filesystem::exists(File()));
}

}  // namespace
}  // namespace tavlyn::test
