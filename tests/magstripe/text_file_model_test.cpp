// The text file of a magnetic-stripe reader's configuration.
#include <algorithm>
#include <cstdint>
#include <fstream>
#include <sstream>

#include "tests/magstripe/model_bench.h"
#include "tests/support/on_disk.h"

namespace tavlyn::test {
namespace {

constexpr const char* kTitle = "--- Sorbane Configuration Template File ---";

// A line as it is written: what it says, filled up to 31 columns, a blank, the comment.
std::string Line(const std::string& key, const std::string& value, const std::string& comment) {
  std::string line = key + ": " + value;
  if (line.size() < 31) line.resize(31, ' ');
  return line + ' ' + comment + '\n';
}

std::string FieldLines(std::size_t n, const sim::UserField& field) {
  const std::string prefix = "UserField[" + std::to_string(n) + "].";
  std::string text;
  const auto add = [&](const std::string& member, unsigned value, const char* comment) {
    text += Line(prefix + member, std::to_string(value), comment);
  };
  const unsigned flags = field.first[0];
  const unsigned control = field.control[0];
  add("Enable", flags >> 7U, "// 1 = User Field Enabled");
  add("Skip", flags >> 6U & 1U, "// 1 = Skip field, Used for OnErrorGoto (bad LRC)");
  add("Track", control & 3U, "// Track 1,2,3");
  add("Field", field.control[1], "// Mag Field Number");
  add("ByteOffset", field.control[2], "// Offset within Mag Field");
  add("Length", field.control[3], "// Length in Characters");
  add("Termination", field.control[4], "// Stop on Termination Byte");
  add("ShowSepSen", control >> 5U & 1U, "// 1 = Show Separator and Sentinel Chars");
  add("ShowLRC", control >> 6U & 1U, "// 1 = Show Hex LRC Byte");
  add("IgnoreLRC", control >> 7U, "// 1 = Ignore Incorrect LRC");
  add("nKeys", flags & 63U, "// 0..N Keys Used In Array");
  for (std::size_t key = 0; key < 16; ++key) {
    add("Keybyte[" + std::to_string(key) + "]", key < 8 ? field.first[1 + key] : field.second[key - 8],
        "// USB [Even]=Scancode [Odd]=ShiftModifier; ASCII [n]=ASCII Char");
  }
  return text;
}

std::string FileOf(const sim::MagSettings& settings, const std::string& luid) {
  const auto& system = settings.system;
  std::string text = std::string("//") + kTitle + "\n//Library Version: 7.9.2 \n";
  text += Line("LUID", luid, "// Logical Unit ID");
  text += Line("HaltKBSend", std::to_string(system[0] >> 7),
               "// 1 = Quiet API Mode No keystrokes, 0=Send Keystrokes");
  text += Line("UseNumKP", std::to_string(system[0] >> 6 & 1), "// 1 = Use Numeric Keypad for digits 0-9");
  text += Line("TrackEnables", std::to_string(system[0] & 7), "// Bits 0..3 = Enable Tracks 1..3");
  text += Line("Beeper", std::to_string(system[5]),
               "// 1 = Beeper Nybble Upper=Good Lower=Bad; Long:1.Count:3.Long:1.Count:3");
  const unsigned leds = settings.leds[0];
  const std::array<unsigned, 5> colors{settings.leds[1] & 3U, leds >> 6U, leds >> 4U & 3U, leds >> 2U & 3U,
                                       leds & 3U};
  for (std::size_t i = 0; i < colors.size(); ++i) {
    text += Line("LedColor[" + std::to_string(i) + "]", std::to_string(colors.at(i)),
                 "// 0=Off 1=Red 2=Green 3=Amber");
  }
  for (std::size_t n = 0; n < sim::kUserFields; ++n) text += FieldLines(n, settings.fields[n]);
  text += Line("KeyPressTime", std::to_string(system[1] * 4), "// 4MS units 4=16ms");
  text += Line("KeyReleaseTime", std::to_string(system[2] * 4), "// 4MS units 4=16ms");
  return text + Line("//##END##", "", "");
}

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
  // Lines behind a title.
  void LoadLines(const std::string& lines) {
    EXPECT_EQ(LoadText(std::string("//") + kTitle + '\n' + lines), 1U);
  }
};

TEST_F(MagModelFile, SavesEverySettingWithItsComment) {
  const std::string saved = Saved();
  EXPECT_EQ(saved, OnDisk(FileOf(Marked(), "4660")));
  EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 312);
  ExpectTraffic({});
}

TEST_F(MagModelFile, ALoadedFileGoesOutWithTheNextWrite) {
  const std::string saved = Saved();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  EXPECT_EQ(Saved(), OnDisk(FileOf(sim::FactoryMagSettings(), "1")));
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

TEST_F(MagModelFile, ATitleIsDemandedInTheFirstBytes) {
  const std::string line = "LUID: 77\n";
  EXPECT_EQ(LoadText(""), 0U);
  EXPECT_EQ(LoadText(line), 0U);
  EXPECT_EQ(LoadText("--- sorbane Configuration Template File ---\n" + line), 0U);
  EXPECT_EQ(LoadText(std::string(300, '/') + '\n' + kTitle + '\n' + line), 0U);
  const std::size_t length = std::string(kTitle).size();
  EXPECT_EQ(LoadText(std::string(257 - length + 1, '/') + kTitle + '\n' + line), 0U)
      << "its last byte is too far";
  EXPECT_EQ(GetLUID(), 0x1234U);
  EXPECT_EQ(LoadText(std::string(256 - length, '/') + kTitle + '\n' + line), 1U);
  EXPECT_EQ(GetLUID(), 77U);
  EXPECT_EQ(LoadText("LUID: 78\n\nanything " + std::string(kTitle) + " behind"), 1U);
  EXPECT_EQ(GetLUID(), 78U) << "also on another line";
  EXPECT_EQ(ReadDevCfgFmFile((Folder() / "none").string().c_str()), 0U);
  EXPECT_EQ(WriteDevCfgToFile((Folder() / "none" / "x").string().c_str()), 0U);
}

TEST_F(MagModelFile, LinesAsPeopleWriteThem) {
  struct Row {
    const char* line;
    std::uint32_t luid;
  };
  for (const Row& row : {Row{"LUID: 7\n", 7},
                         {"LUID:8\n", 8},
                         {"LUID: \t  9 // comment\n", 9},
                         {"LUID: 10x\n", 10},
                         {"LUID : 11\n", 10},
                         {" LUID: 11\n", 10},
                         {"luid: 11\n", 10},
                         {"LUID: x\n", 10},
                         {"LUID 11\n", 10},
                         {"LUID: +12", 12},
                         {"LUID: -1\n", 65535},
                         {"LUID: 65535\n", 65535},
                         {"LUID: 65536\n", 0},
                         {"LUID: 70000\r\n", 4464},
                         {"LUID: 13\nLUID: 14\n", 14},
                         {"//##END##: \nLUID: 15\n", 15},
                         {"UserField[0].LUID: 16\n", 15},
                         {"LUID: \n16\n", 15}}) {
    SCOPED_TRACE(row.line);
    LoadLines(row.line);
    EXPECT_EQ(GetLUID(), row.luid);
  }
}

TEST_F(MagModelFile, ALuidPrintsWithItsSign) {
  LoadLines("LUID: 65535\n");
  EXPECT_NE(Saved().find(OnDisk("LUID: -1                        // Logical Unit ID\n")), std::string::npos);
  LoadLines("LUID: -32768\n");
  EXPECT_EQ(GetLUID(), 0x8000U);
  LoadLines(Saved());
  EXPECT_EQ(GetLUID(), 0x8000U);
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

TEST_F(MagModelFile, ALongLineIsReadInPieces) {
  LoadLines(std::string(256, 'x') + "LUID: 21\n");
  EXPECT_EQ(GetLUID(), 21U) << "the second piece is a line of its own";
  LoadLines(std::string(255, 'x') + "LUID: 22\n");
  EXPECT_EQ(GetLUID(), 21U);
}

TEST_F(MagModelFile, ALoadedLuidGoesOutWithoutASet) {
  LoadLines("LUID: 513\n");
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(magstripe->state.stored.system[3], 1);
  EXPECT_EQ(magstripe->state.stored.system[4], 2);
}

TEST_F(MagModelFile, TheSelectionIsInNoFile) {
  EXPECT_EQ(sorbaneSetActiveID(3, 1, 0, 0xFF), 1U);
  EXPECT_EQ(LoadText(Saved()), 1U);
  LetTimePass();
  ForgetTraffic();
  sim::Bytes out(4);
  GetActiveID(out.data(), 4);
  EXPECT_EQ(Commands().front(), "G3000");
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
