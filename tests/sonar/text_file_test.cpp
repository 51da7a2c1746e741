// The sensor's text file.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

#include "tests/sonar/model_bench.h"
#include "tests/sonar/sensor.h"

namespace tavlyn::test {
namespace {

class SonarFile : public SonarBench {
 protected:
  std::string Path() { return (Folder() / "sonar.txt").string(); }
  std::string Save() {
    EXPECT_EQ(WriteDevCfgToFile(Path().c_str()), 1U);
    std::ifstream file(Path());
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::uint32_t Load(const std::string& text) {
    std::ofstream(Path(), std::ios::binary | std::ios::trunc) << text;
    return ReadDevCfgFmFile(Path().c_str());
  }
  // In range everywhere, so that every set accepts it.
  void MakeGood() {
    Read();
    SetDirty(0);
  }
};

constexpr const char* kSaved = R"(/--- Sonar Configuration Template File ---
:Library Version: 7.9.2 
:Device FW Version: 56.715 

/ tsSonarParms
LEDFlagsS = 5     / LED usage flags
PingRateS = 300     / Ping rate (msec) (min 200, max 1020)
Reserved1S = 16     / 40KHz cycle cnt (READ ONLY)
MinDistS = 14     / Minimum Distance acceptable (inches) (min 14, max 59)
MaxDistS = 36     / Maximum Distance acceptable (inches) (min 15, max 60)
ORDBTmS = 5     / debounce out of range time (sec/min)
IRDBTmS = 6     / debounce in range time (sec/min)
StartDlyS = 7     / cold start delay in seconds before joining USB

/ tsWalkAwayParms
KeyCountWA = 2     / Defined keys to follow (max 6 modifiers/keys)
InterKeyDelayWA = 192     / dead time between key presses (msec) (min 64, max 16320)
Key1ModsWA = 11     / Key Modifiers...
Key2ModsWA = 12     / 
Key3ModsWA = 13     / 
Key4ModsWA = 14     / 
Key5ModsWA = 15     / 
Key6ModsWA = 16     / 
Flags0WA = 161     / see API header File
MinFltRepRate = 22     / 
Key1CodeWA = 23     / Key Codes...
Key2CodeWA = 24     / 
Key3CodeWA = 25     / 
Key4CodeWA = 26     / 
Key5CodeWA = 27     / 
Key6CodeWA = 28     / 

/ tsWalkUpParms
KeyCountWU = 6     / Defined keys to follow (max 6 modifiers/keys)
InterKeyDelayWU = 16320     / dead time between key presses (msec) (min 64, max 16320)
Key1ModsWU = 31     / Key Modifiers...
Key2ModsWU = 32     / 
Key3ModsWU = 33     / 
Key4ModsWU = 34     / 
Key5ModsWU = 35     / 
Key6ModsWU = 36     / 
Flags0WU = 178     / see API header File
Reserved2WU = 195     / 
Key1CodeWU = 43     / Key Codes...
Key2CodeWU = 44     / 
Key3CodeWU = 45     / 
Key4CodeWU = 46     / 
Key5CodeWU = 47     / 
Key6CodeWU = 48     / 

/ tsIdleParms
Reserved1I = 215     / 
PressRateI = 51     / Periodic Press Rate (1 second units) - Zero disables (default)
Key1ModsI = 52     / Key 1 modifier bit flags
Key1CodeI = 53     / Key 1 code
FlagsI = 244     / see API header File
DMTODeltaI = 55     / DeadMan T0Delta, 3.472 * Distance (in) = DMTODelta
DMTOTmI = 56     / DeadMan Time (seconds) - Time till Declared Dead while Deltas never exceeded
SNBlankTmI = 65535     / Sonar drive blanking time (43usec units)
)";

TEST_F(SonarFile, ByteForByte) {
  MakeGood();
  Entry().DID = 0x567F;
  Block().words[sonar::SNBlankTmI] = 0xFFFF;
  EXPECT_EQ(Save(), kSaved);
  ExpectTraffic({});
}

TEST_F(SonarFile, IsSavedFromASensorThatWasNeverRead) {
  Entry().DID = 0x1234;
  EXPECT_NE(Save().find(":Device FW Version: 12.34 \n\n/ tsSonarParms\nLEDFlagsS = 0     / "),
            std::string::npos);
}

TEST_F(SonarFile, AnEmptyFileMakesDirtyWhatIsInRange) {
  MakeGood();
  const SonarWords before = Block().words;
  EXPECT_EQ(Load(""), 1U);
  EXPECT_EQ(Block().words, before);
  EXPECT_EQ(Dirty(), 15U);
  Block().words = {};
  SetDirty(0);
  EXPECT_EQ(Load(""), 1U);
  EXPECT_EQ(Dirty(), 8U) << "a mirror of zeros is out of range but for the idle record";
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(SonarFile, LinesAreReadInManyForms) {
  MakeGood();
  const SonarWords& words = Block().words;
  const auto expect = [&](const std::string& line, std::uint16_t value) {
    Block().words[sonar::PingRateS] = 222;
    EXPECT_EQ(Load(line), 1U);
    EXPECT_EQ(words[sonar::PingRateS], value) << line;
  };
  expect("PingRateS = 300", 300);
  expect("PingRateS=300\n", 300);
  expect("PingRateS 300 400\n", 300);
  expect("PingRateS, 300\r\n", 300);
  expect(" \t PingRateS\t= =,\t300 999", 300);
  expect("pingrates\t=\t300     / and so on", 300);
  expect("\x80\xFF \t\x01PINGRATES = +300", 300);
  expect("=PingRateS = 300", 300);
  expect("PingRateS = 300abc", 300);
  expect("PingRateS = 65836", 300);
  expect("PingRateS = 300\nPingRateS = 301\n", 301);
  expect("/PingRateS = 300", 222);
  expect(" :PingRateS = 300", 222);
  expect("PingRateS", 222);
  expect("PingRateS =", 222);
  expect("PingRateS = abc", 222);
  expect("PingRate = 300", 222);
  expect("PingRateSx = 300", 222);
  expect("xPingRateS = 300", 222);
  expect("PingRateS : 300", 222);
  expect("PingRateS = / 300", 222);
  expect("PingRateS = 300\nPingRateS = x", 300);
  expect("Ping RateS = 300", 222);
  expect(std::string(127, ' ') + "PingRateS = 300", 300);
  expect(std::string(120, 'x') + "/\n" + "PingRateS = 300", 300);
  expect(std::string(127, 'x') + "PingRateS = 300", 300);
  expect("/" + std::string(126, '-') + "PingRateS = 300", 300);
  expect(std::string(126, 'x') + "PingRateS = 300", 222);
  expect(std::string("PingRateS = 300\0PingRateS = 301\n", 32), 300);
}

TEST_F(SonarFile, ABadValueDropsItsRecordAlone) {
  MakeGood();
  const SonarWords before = Block().words;
  EXPECT_EQ(Load("PingRateS = 100\nStartDlyS = 9\nKey1CodeWA = 1\nKeyCountWU = 7\nKey1CodeWU = 1\n"
                 "SNBlankTmI = 1\n"),
            1U);
  SonarWords expected = before;
  expected[sonar::Key1CodeWA] = 1;
  expected[sonar::SNBlankTmI] = 1;
  EXPECT_EQ(Block().words, expected);
  EXPECT_EQ(Dirty(), 2U | 8U);
  EXPECT_EQ(GetLastLibErr(), 0U);

  SetDirty(0);
  EXPECT_EQ(Load("KeyCountWA = 7\nMaxDistS = 73\nInterKeyDelayWU = 63\nSNBlankTmI = 2"), 1U);
  expected[sonar::SNBlankTmI] = 2;
  EXPECT_EQ(Block().words, expected);
  EXPECT_EQ(Dirty(), 8U);
}

TEST_F(SonarFile, IsReadToItsEndHoweverManyLinesItHas) {
  MakeGood();
  EXPECT_EQ(Load(std::string((1U << 20) + 5, '\n') + "PressRateI = 9\n"), 1U);
  EXPECT_TRUE(Save().find("PressRateI = 9 ") != std::string::npos);
}

// A set would make the sensor's values dirty for the next write.
TEST_F(SonarFile, AFolderIsNoFile) {
  MakeGood();
  const std::string before = Save();
  Entry().LastLibErr = 5;
  EXPECT_EQ(ReadDevCfgFmFile(Folder().string().c_str()), 0U);
  EXPECT_EQ(Entry().LastLibErr, 5U);
  EXPECT_EQ(WriteDevCfgToFile(Folder().string().c_str()), 0U);
  EXPECT_EQ(Save(), before);
}

TEST_F(SonarFile, CannotBeOpened) {
  const std::string nowhere = (Folder() / "none" / "file").string();
  EXPECT_EQ(WriteDevCfgToFile(nowhere.c_str()), 0U);
  EXPECT_EQ(ReadDevCfgFmFile(nowhere.c_str()), 0U);
  EXPECT_EQ(WriteDevCfgToFile(nullptr), 0U);
  EXPECT_EQ(ReadDevCfgFmFile(nullptr), 0U);
  EXPECT_EQ(Dirty(), 0U);
}

TEST_F(SonarFile, ByCharacters) {
  MakeGood();
  const std::string path = Path();
  for (std::size_t at = 0; at <= path.size(); ++at) {
    EXPECT_EQ(
        writeDevCfgToFile_char(static_cast<std::int16_t>(at), static_cast<std::uint8_t>(path.c_str()[at])),
        1U);
    EXPECT_EQ(
        readDevCfgFmFile_char(static_cast<std::int16_t>(at), static_cast<std::uint8_t>(path.c_str()[at])),
        1U);
  }
  EXPECT_EQ(writeDevCfgToFile_char(255, 0), 1U);
  EXPECT_EQ(readDevCfgFmFile_char(255, 0), 1U);
  EXPECT_EQ(Dirty(), 15U);
}

class SonarModelFile : public SonarModelBench {
 protected:
  void SetUp() override {
    SonarModelBench::SetUp();
    ConnectSonar();
  }
  std::string Path() { return (Folder() / "sonar.txt").string(); }
  std::string Saved() {
    EXPECT_EQ(WriteDevCfgToFile(Path().c_str()), 1U);
    std::ifstream file(Path());
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }
  void Load(const std::string& text) {
    std::ofstream(Path()) << text;
    EXPECT_EQ(ReadDevCfgFmFile(Path().c_str()), 1U);
  }
};

TEST_F(SonarModelFile, ALoadedFileGoesOutWithTheNextWrite) {
  ChangeAll();
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(ReadCfg(), 1U);
  const std::string saved = Saved();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  EXPECT_EQ(Saved().find("PingRateS = 1000"), std::string::npos);
  ForgetTraffic();
  Load(saved);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Saved(), saved);
  ExpectTraffic({});
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(TrafficOf(host.transcript.Events()).back(), "set 90 3F");
  EXPECT_EQ(sonar->state.stored, ChangedAsKept());
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Saved(), saved);
}

TEST_F(SonarModelFile, WhatIsReservedStaysTheSensors) {
  Load("Reserved1S = 40\nReserved2WU = 41\nReserved1I = 5\nMinFltRepRate = 43\n");
  EXPECT_EQ(Ranging().Reserved1, 40);
  EXPECT_EQ(WalkUp().Reserved2, 41);
  EXPECT_EQ(Idle().Reserved1, 5);
  ForgetTraffic();
  EXPECT_EQ(WriteCfg(), 1U);
  const sim::SonarPages factory = sim::FactorySonarPages();
  sim::SonarPage ranging = factory[0];
  ranging[2] = 40;
  sim::SonarPage away = factory[2];
  away[1] = 43;
  ExpectTraffic(Join({PageLines(0, ranging),
                      PageLines(1, factory[1]),
                      PageLines(2, away),
                      PageLines(3, factory[3]),
                      PageLines(4, factory[4]),
                      PageLines(5, factory[5]),
                      {"set 90 3F"}}));
}

}  // namespace
}  // namespace tavlyn::test
