// tavlynctl keeping what it overwrites, taking changes back, editing, and asking before it overwrites.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

constexpr int kBadFile = 6;
constexpr int kDiffers = 7;

class TavlynctlChanges : public SimulatedRun {
 protected:
  // A step: a command on a terminal, where somebody types the answers.
  static std::string Typed(const std::string& answers, const std::string& command) {
    return "printf '" + answers + "' | NO_COLOR=1 script -qec '" + TAVLYNCTL + " " + command + "' /dev/null";
  }
};

TEST_F(TavlynctlChanges, EveryWriteIsKeptBefore) {
  struct Case {
    const char* devices;
    const char* command;
    const char* kept;  // the name of its folder, and the end of the file's
  };
  constexpr Case kCases[] = {
      {"", "config set bBeepID=0", "0400123456/*Z_config-set.hwg"},
      {"--device plus:2", "cards set 1 EF04 high", "0400123456/*Z_cards-set.hwg"},
      {"--device reader,serial=../../x", "config reset --yes", "------x-*/*Z_config-reset.hwg"},
      {"--device plus:2", "config defaults restore --yes", "0400123456/*Z_config-defaults.hwg"},
      {"--device magstripe", "magfield set 11 length=8", "magstripe-reader--*/*Z_magfield-set.txt"},
      {"--device sonar", "config set PingRateS=300", "sonar-sensor--*/*Z_config-set.txt"},
  };
  for (const Case& one : kCases) {
    const std::string file = "$XDG_STATE_HOME/tavlynctl/backups/" + std::string(one.kept);
    const auto ended =
        Run(one.devices,
            {std::string("ctl config save before --product ") + (Holds(one.kept, "stripe")  ? "magstripe"
                                                                 : Holds(one.kept, "sonar") ? "sonar"
                                                                                            : "reader"),
             std::string("ctl ") + one.command,
             "cat " + file + " | sed '/iEndOfHwgFile/d' >kept; sed '/iEndOfHwgFile/d' before | diff - kept",
             "stat -c %a $XDG_STATE_HOME/tavlynctl $(dirname " + file + ") " + file});
    EXPECT_EQ(ended[1].status, 0) << one.command << ended[1].err;
    EXPECT_EQ(ended[2].out, "") << one.command;
    EXPECT_EQ(ended[3].out, "700\n700\n600\n") << one.command;
  }
}

// Names that a folder cannot have as they are do not become the same one.
TEST_F(TavlynctlChanges, EachDeviceHasItsFolder) {
  const auto ended = Run("--device reader,serial=A+1 --device reader,serial=A*1 --device reader,serial=A-1",
                         {"ctl config set bBeepID=0 --all", "ls $XDG_STATE_HOME/tavlynctl/backups | wc -l"});
  EXPECT_EQ(ended[1].out, "3\n") << ended[0].err;
}

TEST_F(TavlynctlChanges, CopiesOfTwoDevicesAreNotMixed) {
  const auto ended = Run("--device reader,serial=7 --device reader,serial=7",
                         {"ctl config set bBeepID=0 --device 0", "ctl config set iIDBitCnt=9 --device 1",
                          "ctl config undo --device 0 --yes", "ctl config undo --all --yes",
                          "ctl config get iIDBitCnt --device 1 --json"});
  EXPECT_EQ(ended[2].status, kUsage);
  EXPECT_TRUE(Holds(ended[2].err, "several devices have the serial number of card reader 0")) << ended[2].err;
  EXPECT_EQ(ended[3].status, kUsage);
  EXPECT_EQ(ParsedText(ended[4])["fields"]["IDBitCnts.iIDBitCnt"], 9);
}

TEST_F(TavlynctlChanges, AClockThatWasAheadDoesNotMatter) {
  const std::string folder = "$XDG_STATE_HOME/tavlynctl/backups/0400123456";
  const auto ended =
      Run("", {"mkdir -p " + folder + "; : >" + folder + "/20991231T235959.999Z_config-set.hwg; : >" +
                   folder + "/20990231T000000.000Z_config-set.hwg",
               "timeout -s KILL 20 " TAVLYNCTL " config set bBeepID=0", "ls " + folder + " | tail -1",
               "ctl config undo --yes"});
  EXPECT_EQ(ended[1].status, 0) << ended[1].err;
  EXPECT_EQ(ended[2].out, "21000101T000000.000Z_config-set.hwg\n");
  EXPECT_EQ(ended[3].status, 0) << ended[3].err;
}

TEST_F(TavlynctlChanges, WhatWritesNothingKeepsNothing) {
  for (const char* command :
       {"config set bBeepID=1", "config set bBeepID=0 --dry-run", "config reset --dry-run", "beep",
        "config undo --yes", "config set iIDBitCnt=300", "config reset --yes --no-backup"}) {
    const auto kept = Run("", {std::string("ctl ") + command, "find $XDG_STATE_HOME -type f"});
    EXPECT_EQ(kept[1].out, "") << command;
  }
}

TEST_F(TavlynctlChanges, UndoTakesTheLastChangeBack) {
  const auto ended =
      Run("--device plus:2", {"ctl config save before", "ctl config set bBeepID=0 --config 1",
                              "ctl config undo --yes --json", "ctl config diff before --json",
                              "ctl config undo --yes", "ctl config get bBeepID --config 1 --json"});
  const Json undone = ParsedText(ended[2]);
  EXPECT_EQ(undone["command"], "config undo");
  EXPECT_EQ(undone["before"], "config set");
  EXPECT_EQ(undone["verified"], true);
  const Json row{{"configuration", 1}, {"field", "CfgFlags2.bBeepID"}, {"old", 0}, {"new", 1}, {"stored", 1},
                 {"result", "stored"}};
  EXPECT_EQ(std::ranges::count(undone["changes"], row), 1) << undone;
  EXPECT_EQ(ParsedText(ended[3])["differences"], Json::array());
  // Twice is as if nothing had been undone.
  EXPECT_EQ(ended[4].status, 0) << ended[4].err;
  EXPECT_EQ(ParsedText(ended[5])["fields"]["CfgFlags2.bBeepID"], 0);
}

TEST_F(TavlynctlChanges, OtherProductsAreUndoneToo) {
  for (const auto& [device, setting] :
       {std::pair{"sonar", "PingRateS=300"}, std::pair{"magstripe", "Beeper=40"}}) {
    const std::string product = std::string(" --product ") + device;
    const auto ended = Run(std::string("--device ") + device,
                           {"ctl config save before" + product, std::string("ctl config set ") + setting,
                            "ctl config undo --yes" + product, "ctl config diff before --exit-code"});
    for (const Ended& one : ended) EXPECT_EQ(one.status, 0) << device << one.err;
  }
}

TEST_F(TavlynctlChanges, UndoToAnyCopy) {
  const auto ended = Run(
      "", {"for i in 1 2 3; do ctl config set iIDBitCnt=1$i; done", "ctl config history --json",
           "ctl config undo --to 2 --yes", "ctl config get iIDBitCnt --json", "ctl config undo --to 9 --yes",
           "ctl config undo --to 2001 --yes", "ctl config undo --to 20 --yes", "ctl config undo --to 2 --yes",
           "ctl config undo --to $(ctl config history --json | sed -n 's/.*\"time\": \"\\(.*\\)\".*/\\1/p' | "
           "tail -1) --yes",
           "ctl config get iIDBitCnt --json"});
  const Json copies = ParsedText(ended[1])["copies"];
  ASSERT_EQ(copies.size(), 3u);
  EXPECT_EQ(copies[0]["number"], 1);
  EXPECT_EQ(copies[0]["before"], "config set");
  EXPECT_EQ(copies[0]["kept_for"], "0400123456");
  EXPECT_GT(copies[0]["time"], copies[1]["time"]);
  EXPECT_GT(copies[1]["time"], copies[2]["time"]);
  EXPECT_TRUE(Holds(TextOf(copies[2]["file"].get<std::string>()) + "gone", "gone"));
  EXPECT_EQ(ParsedText(ended[3])["fields"]["IDBitCnts.iIDBitCnt"], 11);
  EXPECT_EQ(ended[4].status, kUsage);
  EXPECT_TRUE(Holds(ended[4].err, "has copies 1 to 4")) << ended[4].err;
  EXPECT_TRUE(Holds(ended[5].err, "no copy is of 2001")) << ended[5].err;
  EXPECT_TRUE(Holds(ended[6].err, "has copies 1 to 4")) << ended[6].err;
  EXPECT_EQ(ended[8].status, 0) << ended[8].err;
  EXPECT_EQ(ParsedText(ended[9])["fields"]["IDBitCnts.iIDBitCnt"], 16);
}

TEST_F(TavlynctlChanges, HistoryOfADeviceAndOfAll) {
  const auto ended =
      Run("--device reader,serial=A1",
          {"ctl config history", "ctl config set bBeepID=0", "ctl config history --json",
           "ctl --com 9 config history --json", "echo other >$XDG_STATE_HOME/tavlynctl/backups/A1/notes.txt",
           "ctl config history --json", "ctl config undo --yes"});
  EXPECT_EQ(ended[0].out, "device  0\ncopies  none\n");
  const Json here = ParsedText(ended[2]);
  EXPECT_EQ(here["device"], 0);
  // Of the separator data the file leaves out what was never set.
  EXPECT_EQ(here["copies"][0]["differences"], 2);
  const Json away = ParsedText(ended[3]);
  EXPECT_FALSE(away.contains("device"));
  EXPECT_EQ(away["copies"][0]["file"], here["copies"][0]["file"]);
  EXPECT_FALSE(away["copies"][0].contains("differences"));
  EXPECT_EQ(ParsedText(ended[5])["copies"].size(), 1u);
  EXPECT_EQ(ended[6].status, 0) << ended[6].err;
}

TEST_F(TavlynctlChanges, TheOldestCopiesGo) {
  const std::string folder = "$XDG_STATE_HOME/tavlynctl/backups/0400123456";
  const auto ended =
      Run("", {"mkdir -p " + folder + "; for i in $(seq 10 69); do : >" + folder +
                   "/200001${i}T000000.000Z_config-set.hwg; done; : >" + folder + "/kept.hwg",
               "ctl config set bBeepID=0", "ls " + folder + " | wc -l; ls " + folder + " | head -1",
               "ctl config undo --to 50 --yes"});
  EXPECT_EQ(ended[1].status, 0) << ended[1].err;
  EXPECT_EQ(ended[2].out, "51\n20000121T000000.000Z_config-set.hwg\n");
  EXPECT_EQ(ended[3].status, kBadFile) << "empty";
}

// What names its changes goes on, what overwrites everything does not.
TEST_F(TavlynctlChanges, AStateFolderThatCannotBeWritten) {
  for (const char* state :
       {"XDG_STATE_HOME=/proc/none", "XDG_STATE_HOME= HOME=", "XDG_STATE_HOME=$PWD/file"}) {
    const std::string in = std::string("touch file; export ") + state + "; ctl ";
    const auto ended =
        Run("", {in + "config save own.hwg", in + "config set bBeepID=0", in + "config reset --yes",
                 "ctl config get bBeepID --json", in + "config load own.hwg --yes --no-backup",
                 "ctl config get bBeepID --json"});
    EXPECT_EQ(ended[1].status, 0) << state;
    EXPECT_TRUE(ended[1].err.starts_with("tavlynctl: the configuration cannot be kept for config undo: "))
        << ended[1].err;
    EXPECT_EQ(ended[2].status, kBadFile) << state;
    EXPECT_TRUE(Holds(ended[2].err, "--no-backup goes on without")) << ended[2].err;
    EXPECT_EQ(ParsedText(ended[3])["fields"]["CfgFlags2.bBeepID"], 0);
    EXPECT_EQ(ended[4].status, 0) << ended[4].err;
    EXPECT_EQ(ParsedText(ended[5])["fields"]["CfgFlags2.bBeepID"], 1);
  }
}

TEST_F(TavlynctlChanges, WithoutATerminalYesIsNeeded) {
  for (const char* command :
       {"config load own.hwg", "config undo", "config edit", "config reset", "config defaults restore",
        "config defaults plus", "ble load own.hwg", "keys load own.hwg"}) {
    const auto ended =
        Run("--device plus:2", {std::string("touch own.hwg; echo y | ctl ") + command, "typed traffic"});
    EXPECT_EQ(ended[0].status, kUsage) << command;
    EXPECT_TRUE(Holds(ended[0].err, "where nobody can be asked, --yes does it")) << ended[0].err;
    EXPECT_EQ(ended[0].out, "");
  }
}

TEST_F(TavlynctlChanges, OnATerminalItAsks) {
  struct Case {
    const char* command;
    const char* question;
  };
  constexpr Case kCases[] = {
      {"config load own.hwg",
       "0              CfgFlags2.bBeepID  0    1\r\n"
       "write 1 value to card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1)? [y/N] "},
      {"config reset",
       "load the factory configuration into card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1)? [y/N] "},
      {"config defaults restore",
       "load its user defaults into card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1)? [y/N] "},
  };
  const std::string look = "ctl config get bBeepID --json";
  for (const Case& one : kCases) {
    std::vector<std::string> steps = {
        "ctl config save own.hwg; ctl config load own.hwg --yes; ctl config defaults save; ctl config set "
        "bBeepID=0"};
    for (const char* answer : {"", "n\\n", "\\n"}) steps.push_back(Typed(answer, one.command));
    steps.insert(steps.end(), {look, Typed("y\\n", one.command), look});
    const auto ended = Run("--device plus:2", steps);
    for (const unsigned no : {1U, 2U, 3U}) {
      EXPECT_TRUE(Holds(ended[no].out, one.question)) << ended[no].out;
      EXPECT_TRUE(Holds(ended[no].out, "tavlynctl: nothing was written\r\n")) << ended[no].out;
      EXPECT_EQ(ended[no].status, kUsage) << one.command;
    }
    EXPECT_EQ(ParsedText(ended[4])["fields"]["CfgFlags2.bBeepID"], 0) << one.command;
    EXPECT_TRUE(Holds(ended[5].out, one.question)) << ended[5].out;
    EXPECT_EQ(ended[5].status, 0) << ended[5].out;
    EXPECT_EQ(ParsedText(ended[6])["fields"]["CfgFlags2.bBeepID"], 1) << one.command;
  }
}

// Also for what is no configuration.
TEST_F(TavlynctlChanges, OnATerminalItAsksAboutKeysToo) {
  const auto ended =
      Run("", {"ctl ble save ble.hwg", Typed("n\\n", "ble load ble.hwg"), Typed("y\\n", "ble load ble.hwg")});
  EXPECT_EQ(ended[1].status, kUsage);
  EXPECT_TRUE(Holds(ended[1].out,
                    "overwrite the BLE data of card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1)? [y/N] "))
      << ended[1].out;
  EXPECT_EQ(ended[2].status, 0) << ended[2].out;
}

TEST_F(TavlynctlChanges, OnATerminalATextMayBeEditedAgain) {
  std::ofstream(folder_ / "editor")
      << "if test -e once; then sed -i s/bBepID=1/bBeepID=0/ $1; else touch once; "
         "sed -i s/^bBeepID.=../bBepID=1/ $1; fi\n";
  const auto ended = Run(
      "", {"export EDITOR='sh editor'; " + Typed("\\ny\\n", "config edit"), "ctl config get bBeepID --json",
           "rm once; export EDITOR='sh editor'; " + Typed("n\\n", "config edit")});
  EXPECT_TRUE(Holds(ended[0].out, "did you mean bBeepID?\r\nedit it again? [Y/n] ")) << ended[0].out;
  EXPECT_TRUE(Holds(ended[0].out, "write 2 values to card reader 0")) << ended[0].out;
  EXPECT_EQ(ended[0].status, 0) << ended[0].out;
  EXPECT_EQ(ParsedText(ended[1])["fields"]["CfgFlags2.bBeepID"], 0);
  EXPECT_EQ(ended[2].status, kBadFile) << ended[2].out;
  EXPECT_TRUE(Holds(ended[2].out, "nothing was written; what you wrote is in /")) << ended[2].out;
}

TEST_F(TavlynctlChanges, DiffTellsByItsExitCode) {
  const auto ended = Run(
      "",
      {"ctl config save own.hwg; ctl config load own.hwg --yes", "ctl config diff own.hwg --exit-code --json",
       "ctl config set bBeepID=0", "ctl config diff own.hwg --exit-code --json", "ctl config diff own.hwg",
       "sed s/bBeepID.=.1/bBeepID=0/ own.hwg >other.hwg; ctl config diff own.hwg other.hwg --exit-code"});
  EXPECT_EQ(ParsedText(ended[1])["differences"], Json::array());
  EXPECT_EQ(ended[3].status, kDiffers);
  const Json differing = Json::parse(ended[3].out);
  EXPECT_EQ(differing["differences"].size(), 1u);
  EXPECT_EQ(differing["error"]["code"], kDiffers);
  EXPECT_EQ(ended[4].status, 0);
  EXPECT_EQ(ended[5].status, kDiffers);
  EXPECT_EQ(ended[5].err, "tavlynctl: own.hwg and other.hwg differ\n");
}

TEST_F(TavlynctlChanges, EditWritesWhatAnEditorChanged) {
  const std::string edit = "EDITOR='sed -i s/bBeepID.=.1/bBeepID=0/' ctl config edit ";
  const auto ended =
      Run("", {edit + "--dry-run --json", edit + "--yes --json", "ctl config get bBeepID --json",
               edit + "--yes", "VISUAL=true EDITOR=false ctl config edit --yes --json",
               "find $XDG_STATE_HOME -name 'edited*'", "ctl config history --json"});
  const Json planned = ParsedText(ended[0]);
  EXPECT_EQ(planned["written"], false);
  EXPECT_EQ(planned["changes"][0]["field"], "CfgFlags2.bBeepID");
  EXPECT_EQ(ParsedText(ended[1])["verified"], true);
  EXPECT_EQ(ParsedText(ended[2])["fields"]["CfgFlags2.bBeepID"], 0);
  EXPECT_EQ(ended[3].out, "device   0\nwritten  no\nchanges  none\n");
  EXPECT_EQ(ParsedText(ended[4])["written"], false);
  EXPECT_EQ(ended[5].out, "");
  EXPECT_EQ(ParsedText(ended[6])["copies"].size(), 1u);
}

TEST_F(TavlynctlChanges, WhatWasEditedIsNotLost) {
  const std::string text = "$XDG_STATE_HOME/tavlynctl/edited-0400123456.txt";
  const auto ended = Run(
      "", {"EDITOR='sed -i s/bBeepID.=/bBepID=/' ctl config edit --yes", "grep -c bBepID " + text,
           "stat -c %a " + text, "EDITOR='sed -i s/iFACIDDelim.=.*/iFACIDDelim=300/' ctl config edit --yes",
           "grep -c Delim=300 ${XDG_STATE_HOME}/tavlynctl/edited-0400123456-2.txt; grep -c bBepID " + text,
           "EDITOR=false ctl config edit --yes", "ctl config history --json",
           "find $XDG_STATE_HOME -name 'edited*' | wc -l"});
  EXPECT_EQ(ended[0].status, kBadFile);
  EXPECT_TRUE(Holds(ended[0].err, "the edited text would not be loaded completely: line ")) << ended[0].err;
  EXPECT_TRUE(Holds(ended[0].err, "unknown name bBepID; did you mean bBeepID?; what you wrote is in /"))
      << ended[0].err;
  EXPECT_EQ(ended[1].out, "1\n");
  EXPECT_EQ(ended[2].out, "600\n");
  EXPECT_EQ(ended[3].status, kUsage);
  EXPECT_EQ(ended[4].out, "1\n1\n");
  EXPECT_EQ(ended[5].status, kBadFile);
  EXPECT_TRUE(Holds(ended[5].err, "the editor false failed; VISUAL or EDITOR names another\n"))
      << ended[5].err;
  EXPECT_EQ(ParsedText(ended[6])["copies"], Json::array());
  EXPECT_EQ(ended[7].out, "2\n");
}

// The text has been tested in the library's mirror, which must not count as what the device has.
TEST_F(TavlynctlChanges, ADeviceThatGoesWhileSomebodyEdits) {
  std::ofstream(folder_ / "editor") << "sed -i s/PingRateS.=.248/PingRateS=300/ $1; echo unplug >typed\n";
  const auto ended = Run("--device sonar", {"EDITOR='sh editor' ctl config edit --yes"});
  EXPECT_EQ(ended[0].status, kDeviceError) << ended[0].out;
  EXPECT_TRUE(Holds(ended[0].err, "what you wrote is in /")) << ended[0].err;
}

TEST_F(TavlynctlChanges, ACopyOfOneDeviceGoesToOthers) {
  const std::string look = "ctl config get bBeepID --json --device ";
  const auto ended = Run("--device reader --device reader --device sonar --device reader",
                         {"ctl config set bBeepID=0 --device 0", "ctl config copy --from 0 --to 1",
                          "ctl config copy --from 0 --to 1 --yes --json", look + "1", look + "2",
                          "ctl config copy --from 0 --to all --yes --json", look + "2",
                          "ctl config copy --from 0 --to 0 --yes", "ctl config copy --from 0 --to 3 --yes",
                          "ctl config copy --from 7 --to 0 --yes", "ctl config undo --device 2 --yes",
                          look + "2", "ctl config copy --from 2 --to 0 --dry-run --json", look + "0"});
  const Json silent{{"CfgFlags2.bBeepID", 0}};
  const Json loud{{"CfgFlags2.bBeepID", 1}};
  EXPECT_EQ(ended[1].status, kUsage) << ended[1].err;
  const Json one = ParsedText(ended[2]);
  EXPECT_EQ(one["device"], 1);
  EXPECT_EQ(one["verified"], true);
  EXPECT_EQ(ParsedText(ended[3])["fields"], silent);
  EXPECT_EQ(ParsedText(ended[4])["fields"], loud);
  const Json all = ParsedText(ended[5])["devices"];
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0]["written"], false);
  EXPECT_EQ(all[2]["written"], true);
  EXPECT_EQ(ParsedText(ended[6])["fields"], silent);
  EXPECT_EQ(ended[7].status, kUsage);
  EXPECT_TRUE(Holds(ended[7].err, "is both --from and --to")) << ended[7].err;
  EXPECT_EQ(ended[8].status, kUsage) << "a sonar sensor";
  EXPECT_EQ(ended[9].status, 2) << ended[9].err;
  EXPECT_EQ(ParsedText(ended[11])["fields"], loud) << "undone: " << ended[10].err;
  EXPECT_EQ(ParsedText(ended[12])["changes"][0]["new"], 1);
  EXPECT_EQ(ParsedText(ended[13])["fields"], silent);
}

TEST_F(TavlynctlChanges, AFileGoesToAllDevices) {
  const auto ended = Run("--device reader --device plus:2",
                         {"ctl config save own.hwg; sed s/bBeepID.=.1/bBeepID=0/ own.hwg >file.hwg",
                          "ctl config load file.hwg --all --yes --json",
                          "ctl config load file.hwg --all --yes", "ctl config undo --all --yes --json",
                          "ctl config get bBeepID --device 1 --json", "ctl config load file.hwg --yes"});
  const Json devices = ParsedText(ended[1])["devices"];
  ASSERT_EQ(devices.size(), 2u);
  for (const Json& one : devices) {
    EXPECT_EQ(one["result"], "ok");
    EXPECT_EQ(one["verified"], true);
  }
  EXPECT_TRUE(Holds(ended[2].out, "  device  product      serial number  result  changes\n")) << ended[2].out;
  EXPECT_EQ(ParsedText(ended[3])["devices"][1]["verified"], true);
  EXPECT_EQ(ParsedText(ended[4])["fields"]["CfgFlags2.bBeepID"], 1);
  EXPECT_EQ(ended[5].status, kUsage) << "none chosen";
}

TEST_F(TavlynctlChanges, OtherProductsAreEditedToo) {
  const auto ended =
      Run("--device sonar", {"EDITOR='sed -i s/PingRateS.=.248/PingRateS=300/' ctl config edit --yes --json",
                             "EDITOR='sed -i s/PingRateS.=.300/PingRateS=9/' ctl config edit --yes",
                             "ctl config get PingRateS --json"});
  EXPECT_EQ(ParsedText(ended[0])["changes"][0]["stored"], 300);
  EXPECT_EQ(ended[1].status, kUsage);
  EXPECT_TRUE(Holds(ended[1].err, "does not accept all of the edited text: PingRateS = 9")) << ended[1].err;
  EXPECT_EQ(ParsedText(ended[2])["settings"]["PingRateS"], 300);
}

}  // namespace
}  // namespace tavlyn::boundary
