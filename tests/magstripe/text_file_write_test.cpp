// The text file of a magnetic-stripe reader's configuration, and what a write then sends of it.
#include <cstdint>
#include <fstream>
#include <sstream>

#include "tests/magstripe/model_bench.h"

namespace tavlyn::test {
namespace {

constexpr const char* kHeadingLine = "--- Sorbane Configuration Template File ---";

class MagModelFile : public MagModelBench {
 protected:
  void SetUp() override {
    MagModelBench::SetUp();
    magstripe->state.working = magstripe->state.stored = Marked();
    Connect();
  }
  std::string Path() { return (Folder() / "magstripe.txt").string(); }
  std::string Saved() {
    EXPECT_EQ(WriteDevCfgToFile(Path().c_str()), 1U);
    std::ifstream file(Path(), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }
  std::uint32_t LoadText(const std::string& text) {
    std::ofstream(Path(), std::ios::binary) << text;
    return ReadDevCfgFmFile(Path().c_str());
  }
  // Lines after a title.
  void LoadLines(const std::string& lines) {
    EXPECT_EQ(LoadText(std::string("//") + kHeadingLine + '\n' + lines), 1U);
  }
};

TEST_F(MagModelFile, ALoadedFileGoesOutWithTheNextWrite) {
  const std::string saved = Saved();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  EXPECT_NE(Saved(), saved);
  ForgetTraffic();
  EXPECT_EQ(LoadText(saved), 1U);
  ExpectTraffic({});
  EXPECT_EQ(Saved(), saved);
  EXPECT_EQ(magstripe->state.working, sim::FactoryMagSettings());
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(magstripe->state.stored, Marked());
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Saved(), saved);
}

TEST_F(MagModelFile, ValuesAreCutAsTheirSettingsAre) {
  LoadLines(
      "HaltKBSend: 5\nUseNumKP: -1\nTrackEnables: 255\nBeeper: 257\nLedColor[2]: 300\nLedColor[4]: 9\n"
      "UserField[0].Enable: 256\nUserField[10].Skip: 2\nUserField[10].Track: 9\nUserField[10].Length: -2\n"
      "UserField[9].ShowSepSen: 7\nUserField[9].ShowLRC: 0\nUserField[9].IgnoreLRC: 1\n"
      "UserField[9].Keybyte[15]: 511\nKeyPressTime: 65537\nKeyReleaseTime: 1021\n");
  const std::string saved = Saved();
  for (const char* line :
       {"\nHaltKBSend: 1 ", "\nUseNumKP: 1 ", "\nTrackEnables: 255 ", "\nBeeper: 1 ", "\nLedColor[2]: 44 ",
        "\nLedColor[4]: 9 ", "\nUserField[0].Enable: 1 ", "\nUserField[10].Skip: 1 ",
        "\nUserField[10].Track: 9 ", "\nUserField[10].Length: 254 ", "\nUserField[9].ShowSepSen: 1 ",
        "\nUserField[9].ShowLRC: 0 ", "\nUserField[9].IgnoreLRC: 1 ", "\nUserField[9].Keybyte[15]: 255 ",
        "\nKeyPressTime: 1 ", "\nKeyReleaseTime: 1021 "}) {
    EXPECT_NE(saved.find(line), std::string::npos) << line;
  }
  EXPECT_EQ(sorbaneGetTrackEnables(), 7U);
  EXPECT_EQ(WriteCfg(), 1U);
  const sim::MagSettings& stored = magstripe->state.stored;
  EXPECT_EQ(stored.system[0], 0xC7);
  EXPECT_EQ(stored.system[1], 0);
  EXPECT_EQ(stored.system[2], 255);
  EXPECT_EQ(stored.fields[10].control[0] & 3, 1);
  EXPECT_EQ(stored.leds[0] >> 4 & 3, 0) << "44";
  EXPECT_EQ(stored.leds[0] & 3, 1) << "9";
}

TEST_F(MagModelFile, ALoneSettingChangesNothingElse) {
  const std::string before = Saved();
  LoadLines("UserField[10].nKeys: 3\n");
  std::string expected = before;
  const std::string old = "UserField[10].nKeys: 10 ";
  const std::size_t at = expected.find(old);
  ASSERT_NE(at, std::string::npos);
  expected.replace(at, old.size(), "UserField[10].nKeys: 3  ");
  EXPECT_EQ(Saved(), expected);
}

TEST_F(MagModelFile, ALoadedLuidGoesOutWithoutASet) {
  LoadLines("LUID: 513\n");
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(magstripe->state.stored.system[3], 1);
  EXPECT_EQ(magstripe->state.stored.system[4], 2);
}

TEST_F(MagModelFile, ThePathByCharacters) {
  const auto run = [](std::uint32_t (*call)(std::int16_t, std::uint8_t), const std::string& path) {
    for (std::size_t i = 0; i < path.size(); ++i) {
      EXPECT_EQ(call(static_cast<std::int16_t>(i), static_cast<std::uint8_t>(path[i])), 1U);
    }
    return call(255, 0);
  };
  EXPECT_EQ(run(writeDevCfgToFile_char, Path()), 1U);
  EXPECT_EQ(SetLUID(9), 1U);
  EXPECT_EQ(run(readDevCfgFmFile_char, Path()), 1U);
  EXPECT_EQ(GetLUID(), 0x1234U);
}

}  // namespace
}  // namespace tavlyn::test
