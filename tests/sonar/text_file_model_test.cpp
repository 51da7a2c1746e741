// The text file of a sonar sensor's parameters, and what a write then sends of it.
#include <fstream>
#include <sstream>

#include "tests/sonar/model_bench.h"

namespace tavlyn::test {
namespace {

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
