// tavlynsim --scenario as built for Windows.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/boundary/begun_windows.h"
#include "tests/boundary/house_scenarios.h"

namespace tavlyn::boundary {
namespace {

// Time is real here: a card that is taken away may not have been seen by then, on a busy machine.
bool HasItsOwnPace(const HouseScenario& scenario) {
  return std::ranges::any_of(scenario.events,
                             [](const std::string& line) { return line.ends_with(" take"); });
}

bool NeedsSerialPort(const HouseScenario& scenario) {
  return std::ranges::any_of(scenario.events,
                             [](const std::string& line) { return line.find("@COM") != std::string::npos; });
}

// The words of tavlynctl; empty if the scenario needs a shell.
std::string WordsOf(const HouseScenario& scenario) {
  std::string words = scenario.command;
  for (const std::string prefix : {"exec ", "tavlynctl "}) {
    if (words.starts_with(prefix)) words.erase(0, prefix.size());
  }
  const bool one = words.find_first_of("!;&|") == std::string::npos;
  return one ? words : "";
}

class ScenariosOnWindows : public testing::Test {
 protected:
  void SetUp() override { std::filesystem::create_directories(folder_); }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::string At(const char* name) const { return (folder_ / name).string(); }
  // The lines after the first, with this system's line ends.
  void Write(const std::string& lines) const {
    std::ofstream(folder_ / "a") << "tavlyn-scenario 1\n" << lines;
  }
  static Ended Play(const std::string& file, const std::string& words) {
    return RunLine(kSim + " run --scenario " + file + " -- " + kCtl + " " + words);
  }

 private:
  std::filesystem::path folder_ = std::filesystem::temp_directory_path() / "tavlyn-scenario";
};

TEST_F(ScenariosOnWindows, OfTheHouseAreMet) {
  int played = 0;
  for (const HouseScenario& scenario : HouseScenarios()) {
    const std::string words = WordsOf(scenario);
    if (words.empty() || NeedsSerialPort(scenario) || HasItsOwnPace(scenario)) continue;
    const Ended ended = Play(scenario.file.string(), words);
    EXPECT_EQ(ended.status, 0) << scenario.file << ended.out << ended.err;
    EXPECT_TRUE(ended.err.ends_with(" expectations met\n")) << scenario.file << ended.err;
    ++played;
  }
  EXPECT_GE(played, 5);
}

TEST_F(ScenariosOnWindows, WhatIsNotMetIsToldAndInTheResults) {
  Write("device d reader\nexpect never d command 8C03\nexpect end d relay off\n");
  const Ended ended = Play(At("a") + " --junit " + At("r.xml"), "beep");
  EXPECT_EQ(ended.status, 123);
  for (const char* told : {"a:3: expect never d command 8C03: at ", "a: 1 of 2 expectations met\n"}) {
    EXPECT_NE(ended.err.find(told), std::string::npos) << told << ended.err;
  }
  std::ostringstream xml;
  xml << std::ifstream(At("r.xml")).rdbuf();
  for (const char* part :
       {" tests=\"2\" failures=\"1\" ", "name=\"line 3: expect never d command 8C03\"",
        "<failure message=\"at ", "name=\"line 4: expect end d relay off\" time=\"", "</testsuite>"}) {
    EXPECT_NE(xml.str().find(part), std::string::npos) << part << xml.str();
  }
}

TEST_F(ScenariosOnWindows, MistakesAreToldWithTheirLinesBeforeAnythingRuns) {
  Write("device d reader\nset iIDHoldT 1000\nat 1 d dance\n");
  const Ended ended = Play(At("a"), "--version");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err, "tavlynsim: " + At("a") +
                           ":3: iIDHoldT: no word of a reader's configuration; did you mean iIDHoldTO?\n"
                           "tavlynsim: " +
                           At("a") + ":4: dance: no such command; help lists them\n");
}

}  // namespace
}  // namespace tavlyn::boundary
