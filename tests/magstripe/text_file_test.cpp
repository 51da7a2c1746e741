// The text file, byte for byte, and what a load accepts of it.
#include <cstring>
#include <fstream>
#include <sstream>

#include "tests/magstripe/stripe_bench.h"
#include "tests/support/on_disk.h"

namespace tavlyn::test {
namespace {

const std::string kTitle = "//--- Sorbane Configuration Template File ---\n";

std::string Padded(std::string text) {
  text.resize(std::max<std::size_t>(text.size(), 31), ' ');
  return text;
}

// The lines of a user field whose members are base, base + 1 and so on.
std::string FieldLines(int number, int base) {
  const std::pair<const char*, const char*> members[] = {
      {"Enable", "// 1 = User Field Enabled"},
      {"Skip", "// 1 = Skip field, Used for OnErrorGoto (bad LRC)"},
      {"Track", "// Track 1,2,3"},
      {"Field", "// Mag Field Number"},
      {"ByteOffset", "// Offset within Mag Field"},
      {"Length", "// Length in Characters"},
      {"Termination", "// Stop on Termination Byte"},
      {"ShowSepSen", "// 1 = Show Separator and Sentinel Chars"},
      {"ShowLRC", "// 1 = Show Hex LRC Byte"},
      {"IgnoreLRC", "// 1 = Ignore Incorrect LRC"},
      {"nKeys", "// 0..N Keys Used In Array"},
  };
  const std::string prefix = "UserField[" + std::to_string(number) + "].";
  std::string text;
  for (const auto& [name, comment] : members) {
    text += Padded(prefix + name + ": " + std::to_string(base++)) + " " + comment + "\n";
  }
  for (int key = 0; key < 16; ++key) {
    const std::string line = prefix + "Keybyte[" + std::to_string(key) + "]: " + std::to_string(base++);
    text += Padded(line) + " // USB [Even]=Scancode [Odd]=ShiftModifier; ASCII [n]=ASCII Char\n";
  }
  return text;
}

class StripeFile : public StripeBench {
 protected:
  std::string path;

  void SetUp() override {
    StripeBench::SetUp();
    path = (Folder() / "stripe.txt").string();
  }
  std::string Saved() {
    EXPECT_EQ(WriteDevCfgToFile(path.c_str()), 1U);
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }
  std::uint32_t LoadText(const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
    return ReadDevCfgFmFile(path.c_str());
  }
  // Consecutive values in every member of a user field.
  static void Number(std::size_t field, std::uint8_t base) {
    auto* bytes = reinterpret_cast<std::uint8_t*>(&Cfg().UserField[field]);
    for (std::size_t at = 0; at < sizeof(tsSorbaneField); ++at)
      bytes[at] = static_cast<std::uint8_t>(base + at);
  }
};

TEST_F(StripeFile, ASaveHasEverySetting) {
  SetLUID(0xFFFF);
  Cfg().HaltKBSend = 1;
  Cfg().TrackEnables = 7;
  Cfg().Beeper = 0xB3;
  Cfg().LedColor = {0, 1, 2, 3, 1};
  Cfg().KeyPressTime = 16;
  Cfg().KeyReleaseTime = 65535;
  for (std::size_t field = 0; field < 11; ++field) Number(field, static_cast<std::uint8_t>(10 * field));

  std::string expected = kTitle + "//Library Version: 7.9.2 \n";
  expected += "LUID: -1                        // Logical Unit ID\n";
  expected += "HaltKBSend: 1                   // 1 = Quiet API Mode No keystrokes, 0=Send Keystrokes\n";
  expected += "UseNumKP: 0                     // 1 = Use Numeric Keypad for digits 0-9\n";
  expected += "TrackEnables: 7                 // Bits 0..3 = Enable Tracks 1..3\n";
  expected +=
      "Beeper: 179                     // 1 = Beeper Nybble Upper=Good Lower=Bad; "
      "Long:1.Count:3.Long:1.Count:3\n";
  for (const auto* const led : {"[0]: 0", "[1]: 1", "[2]: 2", "[3]: 3", "[4]: 1"})
    expected += Padded(std::string("LedColor") + led) + " // 0=Off 1=Red 2=Green 3=Amber\n";
  for (int field = 0; field < 11; ++field) expected += FieldLines(field, 10 * field);
  expected += "KeyPressTime: 16                // 4MS units 4=16ms\n";
  expected += "KeyReleaseTime: 65535           // 4MS units 4=16ms\n";
  expected += "//##END##:                      \n";
  EXPECT_EQ(Saved(), OnDisk(expected));
  EXPECT_EQ(std::ranges::count(expected, '\n'), 312);
  ExpectTraffic({});
}

TEST_F(StripeFile, ALoadTakesBackWhatASaveGave) {
  for (std::size_t field = 0; field < 11; ++field) Number(field, static_cast<std::uint8_t>(3 * field));
  for (tsSorbaneField& field : Cfg().UserField)
    field.Enable = field.Skip = field.ShowSepSen = field.ShowLRC = field.IgnoreLRC = 1;
  Cfg().KeyReleaseTime = 65535;
  Cfg().IdSel = {3, 4, 5, 6, 7};
  Entry().LUID = 0x8001;
  const tsSorbaneCfg before = Cfg();
  Saved();
  Cfg() = {};
  Entry().LUID = 0;
  Entry().bLUIDDirty = 0;
  EXPECT_EQ(ReadDevCfgFmFile(path.c_str()), 1U);
  EXPECT_EQ(Cfg().IdSel.Track, 0) << "the selection is no part of the file";
  Cfg().IdSel = before.IdSel;
  EXPECT_EQ(std::memcmp(&before, &Cfg(), sizeof before), 0);
  EXPECT_EQ(GetLUID(), 0x8001U);
  EXPECT_EQ(Entry().bLUIDDirty, 0U);
  ExpectTraffic({});
}

TEST_F(StripeFile, ALoadTakesEachKindOfNumberByItsOwnWidth) {
  EXPECT_EQ(LoadText(kTitle + "HaltKBSend: 5\nLedColor[2]: 300\nLUID: 65535\nKeyPressTime: 65540\n"
                              "UserField[10].nKeys: -1\nUserField[0].Skip: 256\nTrackEnables: 255\n"),
            1U);
  EXPECT_EQ(Cfg().HaltKBSend, 1);
  EXPECT_EQ(Cfg().LedColor[2], 44);
  EXPECT_EQ(GetLUID(), 0xFFFFU);
  EXPECT_EQ(Cfg().KeyPressTime, 4);
  EXPECT_EQ(Cfg().UserField[10].nKeys, 255);
  EXPECT_EQ(Cfg().UserField[0].Skip, 1);
  EXPECT_EQ(Cfg().TrackEnables, 255);
}

TEST_F(StripeFile, ALineIsMatchedFromItsFirstCharacter) {
  for (const auto& [line, luid] : {std::pair{"LUID:7", 7U},
                                   {"LUID: \t 7 // more", 7U},
                                   {"LUID : 7", 1U},
                                   {" LUID: 7", 1U},
                                   {"luid: 7", 1U},
                                   {"LUID: x", 1U},
                                   {"LUID 7", 1U},
                                   {"LUID: \n7", 1U},
                                   {"UserField[0].LUID: 7", 1U},
                                   {"LUID: +7x\r", 7U},
                                   {"LUID: -32768", 0x8000U},
                                   {"LUID: 7\nLUID: 8\n//##END##:\nLUID: 9", 9U},
                                   {"UserField[00].Track: 7", 1U},
                                   {"UserField[].Track: 7", 1U},
                                   {"UserField[x].Track: 7", 1U},
                                   {"UserField[99999999999].Track: 7", 1U},
                                   {"UserField[11].Track: 7", 1U},
                                   {"UserField[0].Keybyte[16]: 7", 1U},
                                   {"UserField[0].Track[0]: 7", 1U}}) {
    Entry().LUID = 1;
    EXPECT_EQ(LoadText(kTitle + line + "\n"), 1U);
    EXPECT_EQ(GetLUID(), luid) << line;
  }
  EXPECT_EQ(Cfg().UserField[0].Track, 0);
  for (const auto& field : Cfg().UserField)
    EXPECT_EQ(std::memcmp(&field, &Cfg().UserField[0], sizeof field), 0);
}

TEST_F(StripeFile, TheTitleMustLieInTheFirst257Bytes) {
  Entry().LUID = 1;
  const std::size_t room = 257 - (kTitle.size() - 1);
  const std::string rest = kTitle + "LUID: 7\n";
  EXPECT_EQ(LoadText(std::string(300, 'x') + "\n" + rest), 0U);
  EXPECT_EQ(LoadText(std::string(room + 1, 'x') + rest), 0U) << "a byte of it lies beyond";
  EXPECT_EQ(GetLUID(), 1U);
  EXPECT_EQ(LoadText("//--- sorbane Configuration Template File ---\nLUID: 7\n"), 0U);
  EXPECT_EQ(LoadText(""), 0U);
  EXPECT_EQ(GetLUID(), 1U);
  EXPECT_EQ(LoadText(std::string(room, '\n') + rest), 1U);
  EXPECT_EQ(GetLUID(), 7U);
  EXPECT_EQ(LoadText("LUID: 8\n\nanything " + kTitle), 1U) << "anywhere in them";
  EXPECT_EQ(GetLUID(), 8U);
}

TEST_F(StripeFile, ALongLineIsReadInPieces) {
  EXPECT_EQ(LoadText(kTitle + std::string(256, 'x') + "LUID: 7\n"), 1U);
  EXPECT_EQ(GetLUID(), 7U);
  EXPECT_EQ(LoadText(kTitle + std::string(255, 'x') + "LUID: 8\n"), 1U);
  EXPECT_EQ(GetLUID(), 7U) << "its first letter is in the piece before";
}

TEST_F(StripeFile, AFileIsReadToItsEndHoweverManyLinesItHas) {
  EXPECT_EQ(LoadText(kTitle + std::string((1U << 20) + 5, '\n') + "LUID: 7\n"), 1U);
  EXPECT_EQ(GetLUID(), 7U);
}

TEST_F(StripeFile, AFileThatCannotBeOpenedFails) {
  EXPECT_EQ(WriteDevCfgToFile((Folder() / "none" / "x").string().c_str()), 0U);
  EXPECT_EQ(ReadDevCfgFmFile((Folder() / "none").string().c_str()), 0U);
  EXPECT_EQ(WriteDevCfgToFile(nullptr), 0U);
  EXPECT_EQ(ReadDevCfgFmFile(nullptr), 0U);
}

}  // namespace
}  // namespace tavlyn::test
