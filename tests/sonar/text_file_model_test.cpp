// The text file of a sonar sensor's parameters.
#include <fstream>
#include <sstream>

#include "tests/sonar/model_bench.h"

namespace tavlyn::test {
namespace {

// What a file holds of a sensor as the factory made it, of version 0400.
constexpr const char* kFactoryFile = R"(/--- Sonar Configuration Template File ---
:Library Version: 7.9.2 
:Device FW Version: 04.00 

/ tsSonarParms
LEDFlagsS = 2     / LED usage flags
PingRateS = 248     / Ping rate (msec) (min 200, max 1020)
Reserved1S = 12     / 40KHz cycle cnt (READ ONLY)
MinDistS = 14     / Minimum Distance acceptable (inches) (min 14, max 59)
MaxDistS = 60     / Maximum Distance acceptable (inches) (min 15, max 60)
ORDBTmS = 5     / debounce out of range time (sec/min)
IRDBTmS = 2     / debounce in range time (sec/min)
StartDlyS = 3     / cold start delay in seconds before joining USB

/ tsWalkAwayParms
KeyCountWA = 1     / Defined keys to follow (max 6 modifiers/keys)
InterKeyDelayWA = 64     / dead time between key presses (msec) (min 64, max 16320)
Key1ModsWA = 8     / Key Modifiers...
Key2ModsWA = 0     / 
Key3ModsWA = 0     / 
Key4ModsWA = 0     / 
Key5ModsWA = 0     / 
Key6ModsWA = 0     / 
Flags0WA = 0     / see API header File
MinFltRepRate = 2     / 
Key1CodeWA = 15     / Key Codes...
Key2CodeWA = 0     / 
Key3CodeWA = 0     / 
Key4CodeWA = 0     / 
Key5CodeWA = 0     / 
Key6CodeWA = 0     / 

/ tsWalkUpParms
KeyCountWU = 1     / Defined keys to follow (max 6 modifiers/keys)
InterKeyDelayWU = 64     / dead time between key presses (msec) (min 64, max 16320)
Key1ModsWU = 0     / Key Modifiers...
Key2ModsWU = 0     / 
Key3ModsWU = 0     / 
Key4ModsWU = 0     / 
Key5ModsWU = 0     / 
Key6ModsWU = 0     / 
Flags0WU = 0     / see API header File
Reserved2WU = 0     / 
Key1CodeWU = 44     / Key Codes...
Key2CodeWU = 0     / 
Key3CodeWU = 0     / 
Key4CodeWU = 0     / 
Key5CodeWU = 0     / 
Key6CodeWU = 0     / 

/ tsIdleParms
Reserved1I = 0     / 
PressRateI = 0     / Periodic Press Rate (1 second units) - Zero disables (default)
Key1ModsI = 0     / Key 1 modifier bit flags
Key1CodeI = 0     / Key 1 code
FlagsI = 1     / see API header File
DMTODeltaI = 10     / DeadMan T0Delta, 3.472 * Distance (in) = DMTODelta
DMTOTmI = 60     / DeadMan Time (seconds) - Time till Declared Dead while Deltas never exceeded
SNBlankTmI = 25     / Sonar drive blanking time (43usec units)
)";

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
  // What the next write would commit.
  std::string Marks() {
    ForgetTraffic();
    EXPECT_EQ(WriteCfg(), 1U);
    return TrafficOf(host.transcript.Events()).back();
  }
};

TEST_F(SonarModelFile, SavesEveryWordWithItsComment) {
  EXPECT_EQ(Saved(), kFactoryFile);
  ExpectTraffic({});
}

TEST_F(SonarModelFile, SavesWhatWasNeverRead) {
  USBDisconnect();
  sonar->faults.RefuseAt(2);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(WriteDevCfgToFile(Path().c_str()), 1U);
}

TEST_F(SonarModelFile, ASavedFileChangesNothingAndMarksEverything) {
  ChangeAll();
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(ReadCfg(), 1U);
  const std::string saved = Saved();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  EXPECT_EQ(Saved().find("PingRateS = 1000"), std::string::npos);
  Load(saved);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Saved(), saved);
  EXPECT_EQ(Marks(), "set 90 3F");
  EXPECT_EQ(sonar->state.stored, ChangedAsKept());
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Saved(), saved);
}

TEST_F(SonarModelFile, AnEmptyFileMarksEverything) {
  Load("");
  EXPECT_EQ(Saved(), kFactoryFile);
  EXPECT_EQ(Marks(), "set 90 3F");
  EXPECT_EQ(sonar->state.stored[0], sim::FactorySonarPages()[0]);
}

TEST_F(SonarModelFile, AMissingFileOrFolder) {
  EXPECT_EQ(ReadDevCfgFmFile((Folder() / "none").string().c_str()), 0U);
  EXPECT_EQ(WriteDevCfgToFile((Folder() / "none" / "x").string().c_str()), 0U);
  EXPECT_EQ(Marks(), "set 90");
}

TEST_F(SonarModelFile, LinesAsPeopleWriteThem) {
  struct Row {
    const char* line;
    int ping;
  };
  for (const Row& row : {Row{"PingRateS = 300", 300},
                         {"pingrates = 304     / comment", 304},
                         {"PINGRATES=308", 308},
                         {"PingRateS 312", 312},
                         {"PingRateS, 316", 316},
                         {" \t PingRateS\t= =,\t320 999", 320},
                         {"\x01\x80\xFFPingRateS = 324", 324},
                         {"PingRateS = 328abc", 328},
                         {"PingRateS = +332", 332},
                         {"PingRateS", 332},
                         {"PingRateS = ", 332},
                         {"PingRateS = abc", 332},
                         {"/ PingRateS = 336", 332},
                         {"  : PingRateS = 336", 332},
                         {"PingRate = 336", 332},
                         {"xPingRateS = 336", 332},
                         {"PingRateS : 336", 332},
                         {"PingRateS = / 336", 332},
                         {"PingRateS = 340\nPingRateS = 344", 344},
                         {"PingRateS = 348\nPingRateS = x", 348},
                         {"PingRateS = 352\r\n", 352}}) {
    SCOPED_TRACE(row.line);
    Load(row.line);
    EXPECT_EQ(Ranging().PingRate, row.ping);
  }
}

TEST_F(SonarModelFile, ALongLineIsReadInPieces) {
  Load(std::string(127, ' ') + "PingRateS = 300\n");
  EXPECT_EQ(Ranging().PingRate, 300);
  Load("/" + std::string(126, '-') + "PingRateS = 304\n");
  EXPECT_EQ(Ranging().PingRate, 304) << "the second piece is a line of its own";
  Load("/" + std::string(125, '-') + "PingRateS = 308\n");
  EXPECT_EQ(Ranging().PingRate, 304) << "its first letter is in the piece before";
}

TEST_F(SonarModelFile, ABadValueDropsItsRecordAlone) {
  Load("PingRateS = 100\nStartDlyS = 9\nKeyCountWA = 4\nKeyCountWU = 5\nPressRateI = 6\n");
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Ranging().PingRate, 248);
  EXPECT_EQ(Ranging().StartDly, 3);
  EXPECT_EQ(WalkAway().KeyCount, 4);
  EXPECT_EQ(WalkUp().KeyCount, 5);
  EXPECT_EQ(Idle().PressRate, 6);
  EXPECT_EQ(Marks(), "set 90 3E");
  Load("KeyCountWA = 7\nMaxDistS = 73\nInterKeyDelayWU = 63\nPressRateI = 7");
  EXPECT_EQ(WalkAway().KeyCount, 4);
  EXPECT_EQ(Ranging().MaxDist, 60);
  EXPECT_EQ(WalkUp().InterKeyDelay, 64);
  EXPECT_EQ(Marks(), "set 90 20");
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

TEST_F(SonarModelFile, ThePathByCharacters) {
  const auto run = [](std::uint32_t (*call)(std::int16_t, std::uint8_t), const std::string& path) {
    for (std::size_t i = 0; i < path.size(); ++i) {
      EXPECT_EQ(call(static_cast<std::int16_t>(i), static_cast<std::uint8_t>(path[i])), 1U);
    }
    return call(255, 0);
  };
  EXPECT_EQ(run(writeDevCfgToFile_char, Path()), 1U);
  EXPECT_EQ(run(readDevCfgFmFile_char, Path()), 1U);
  EXPECT_EQ(Marks(), "set 90 3F");
  EXPECT_EQ(ReadDevTypeFromFile(Path().c_str()), 0U);
}

}  // namespace
}  // namespace tavlyn::test
