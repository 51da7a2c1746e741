// tavlynctl and tavlynsim as built for Windows.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/boundary/begun_windows.h"

namespace tavlyn::boundary {
namespace {

using Json = nlohmann::json;

bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// tavlynctl on simulated devices.
Ended Simulated(const std::string& devices, const std::string& words) {
  return RunLine(kSim + " run " + devices + " -- " + kCtl + " " + words);
}

Json Parsed(const Ended& ended) {
  EXPECT_EQ(ended.status, 0) << ended.err;
  return Json::parse(ended.out, nullptr, false);
}

TEST(ToolsOnWindows, NothingIsPluggedInWithoutTheSimulator) {
  const Ended ended = RunLine(kCtl + " list --json");
  EXPECT_EQ(ended.status, 2);
  EXPECT_TRUE(Holds(ended.err, "no device is plugged in")) << ended.err;
}

TEST(ToolsOnWindows, SimulatedReadersAreListed) {
  const Json listed = Parsed(Simulated("--device plus:3 --device reader@19E5:2021", "list --json"));
  ASSERT_EQ(listed["devices"].size(), 2u) << listed;
  EXPECT_EQ(listed["devices"][0]["configurations"], 3) << listed;
  EXPECT_TRUE(Holds(listed.dump(), "19E5:2021")) << listed;
}

TEST(ToolsOnWindows, CardIsRead) {
  const Json card = Parsed(Simulated("--device plus:2 --card 01020303:26", "read --json"));
  EXPECT_EQ(card["bits"], 26);
  EXPECT_EQ(card["id"], "03030201");
  EXPECT_EQ(Simulated("--device plus:2", "read --timeout 1").status, 5);
}

TEST(ToolsOnWindows, RecordedReaderIsReadAgain) {
  const Ended recorded = Simulated("--card 01020303:26 --with-ids --record kept.rec", "read");
  EXPECT_EQ(recorded.status, 0) << recorded.err;
  EXPECT_EQ(Simulated("--device replay:kept.rec", "read").out, recorded.out);
  std::filesystem::remove("kept.rec");
  EXPECT_TRUE(Holds(RunLine(kCtl + " --device replay:kept.rec read").err, "on Windows type tavlynsim run"));
  EXPECT_EQ(RunLine(kSim + " run --device attached -- " + kCtl + " list").status, 125);
}

// The cards repeat until a busy machine has seen them, and stay until they have been read.
TEST(ToolsOnWindows, InputReportsTellOfCards) {
  const Ended ended = Simulated(
      "--device plus:2@7A31:3BFB --card 0A:8 --card 0B0C:16 --on 4000 --off 900 --repeat", "watch --count 4");
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::string first = "card 8 bits 0A\ngone 8 bits 0A\n";
  const std::string second = "card 16 bits 0C0B\ngone 16 bits 0C0B\n";
  EXPECT_TRUE(ended.out == first + second || ended.out == second + first) << ended.out;
}

TEST(ToolsOnWindows, TypedLinesActOnTheDevices) {
  const Ended ended = RunLine("cmd /c \"echo card 0102:13| " + kSim +
                              " run --device plus:2 --interactive -- " + kCtl + " read\"");
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_TRUE(Holds(ended.out, "card 13 bits 0201")) << ended.out;
  EXPECT_TRUE(Holds(ended.err, "tavlynsim: ok\n")) << ended.err;
}

TEST(ToolsOnWindows, ReaderBehindAnAdapterIsRead) {
  const Ended ended =
      Simulated("--ethernet 127.0.0.73:10001 --card 0102:16", "--ip 127.0.0.73:10001 read --json");
  EXPECT_EQ(Parsed(ended)["bits"], 16) << ended.out;
  EXPECT_TRUE(Holds(ended.err, "tavlynctl --ip 127.0.0.73:10001 watch")) << ended.err;
}

// Wine opens a port that is already open, so a port held by another program cannot be tested here.
TEST(ToolsOnWindows, PortsAndAdaptersWithoutAReaderAreToldApart) {
  const Ended missing = RunLine(kCtl + " --com 77 list");
  EXPECT_EQ(missing.status, 2);
  EXPECT_TRUE(Holds(missing.err, "COM77 does not exist")) << missing.err;
  const Ended refused = RunLine(kCtl + " --ip 127.0.0.1:9 list");
  EXPECT_EQ(refused.status, 2);
  EXPECT_TRUE(Holds(refused.err, "127.0.0.1:9 refuses the connection")) << refused.err;
}

TEST(ToolsOnWindows, DevicesAreToldApart) {
  const Ended devices = RunLine(kSim + " devices");
  EXPECT_EQ(devices.status, 0);
  for (const char* kind : {"reader ", "plus:N ", "magstripe ", "sonar "}) {
    EXPECT_TRUE(Holds(devices.out, kind)) << kind;
  }
}

TEST(ToolsOnWindows, ExitStatusIsTheCommands) {
  EXPECT_EQ(RunLine(kSim + " run -- cmd /c exit 0").status, 0);
  EXPECT_EQ(RunLine(kSim + " run -- cmd /c exit 7").status, 7);
  EXPECT_EQ(RunLine(kSim + " run -- there-is-none.exe").status, 127);
  EXPECT_EQ(RunLine(kSim + " run -- " TAVLYN_NO_PROGRAM).status, 126);
}

TEST(ToolsOnWindows, WrongWordsAreRefused) {
  for (const char* words : {"", "run", "run --device plus:12 -- cmd /c exit", "run --card 01 -- cmd /c exit",
                            "run --do nothing -- cmd /c exit", "run --carrier usb -- cmd /c exit"}) {
    EXPECT_EQ(RunLine(kSim + " " + words).status, 1) << words;
  }
  EXPECT_EQ(RunLine(kCtl + " no-such-word").status, 1);
}

TEST(ToolsOnWindows, WhatIsThereOnLinuxOnlyIsTold) {
  for (const char* words : {"--carrier uhid", "--carrier vhci", "--serial COM3", "--ascii COM3", "--bulk"}) {
    const Ended ended = RunLine(kSim + " run " + words + " -- cmd /c exit 0");
    EXPECT_EQ(ended.status, 125) << words;
    EXPECT_TRUE(Holds(ended.err, "on Linux only")) << ended.err;
  }
}

TEST(ToolsOnWindows, WhatServesIsToldToo) {
  struct Refusal {
    const char* words;
    int status;
    const char* told;
  };
  constexpr Refusal kRefusals[] = {
      {"serve", 125, "on Windows only a program that tavlynsim run starts sees HID devices"},
      {"serve --socket there --ethernet 127.0.0.76:10001", 125, "on Windows there is no --socket"},
      {"serve --background", 1, "on Linux only"},
      {"serve --with-parent", 1, "on Linux only"},
      {"env --socket 127.0.0.1:9", 125, "no tavlynsim is there"},
  };
  for (const Refusal& one : kRefusals) {
    const Ended ended = RunLine(kSim + " " + one.words);
    EXPECT_EQ(ended.status, one.status) << one.words;
    EXPECT_TRUE(Holds(ended.err, one.told)) << ended.err;
  }
}

TEST(ToolsOnWindows, AddressOfAnotherMachineIsRefused) {
  EXPECT_EQ(RunLine(kSim + " run --ethernet 192.0.2.1:10001 -- cmd /c exit 0").status, 125);
}

// Written under a temporary name first, then moved over the old file.
TEST(ToolsOnWindows, ASavedFileTakesItsPlace) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "tavlyn-saved";
  std::filesystem::create_directories(folder);
  const std::string file = (folder / "own.hwg").string();
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(Parsed(Simulated("--device plus:2", "config save " + file + " --secure --json"))["secure"],
              true);
    EXPECT_EQ(Parsed(RunLine(kCtl + " check " + file + " --json"))["intact"], true);
  }
  const Ended none = Simulated("--device sonar", "config save " + (folder / "none" / "own.txt").string());
  EXPECT_EQ(none.status, 6);
  EXPECT_TRUE(Holds(none.err, "own.txt cannot be written: ")) << none.err;
  const std::filesystem::directory_iterator files(folder);
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace tavlyn::boundary
