// tavlynctl where it changes simulated readers.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlConfig : public SimulatedRun {
 protected:
  // A file of the reader's own with one line changed.
  static std::string Edited(const std::string& change) {
    return "ctl config save own.hwg; sed '" + change + "' own.hwg >file.hwg";
  }
};

TEST_F(TavlynctlConfig, SetIsWrittenAndReadBack) {
  const auto ended =
      Run("--device plus:3", {"ctl config set --config 1 bDspHex=1 TimeParms.iIDHoldTO=500 --json",
                              "ctl config get --config 1 bDspHex iIDHoldTO --json",
                              "ctl config get CfgFlags2.bDspHex iIDHoldTO --json"});
  const Json set = ParsedText(ended[0]);
  EXPECT_EQ(1, set["schema"]);
  EXPECT_EQ("config set", set["command"]);
  EXPECT_EQ(true, set["written"]);
  EXPECT_EQ(true, set["verified"]);
  const Json changes = Json::parse(R"([
    {"configuration": 1, "field": "CfgFlags2.bDspHex", "old": 0, "new": 1, "stored": 1, "result": "stored"},
    {"configuration": 1, "field": "TimeParms.iIDHoldTO", "old": 1000, "new": 500, "stored": 500,
     "result": "stored"}])");
  EXPECT_EQ(changes, set["changes"]);
  const Json there{{"CfgFlags2.bDspHex", 1}, {"TimeParms.iIDHoldTO", 500}};
  EXPECT_EQ(there, ParsedText(ended[1])["fields"]);
  const Json elsewhere{{"CfgFlags2.bDspHex", 0}, {"TimeParms.iIDHoldTO", 1000}};
  EXPECT_EQ(elsewhere, ParsedText(ended[2])["fields"]);
}

TEST_F(TavlynctlConfig, ValueBetweenStepsIsRounded) {
  const auto ended = Run("", {"ctl config set iIDHoldTO=130 --json", "ctl config get iIDHoldTO --json"});
  const Json row = ParsedText(ended[0])["changes"][0];
  EXPECT_EQ(130, row["new"]);
  EXPECT_EQ(100, row["stored"]);
  EXPECT_EQ("rounded", row["result"]);
  EXPECT_EQ(100, ParsedText(ended[1])["fields"]["TimeParms.iIDHoldTO"]);
}

// The reader keeps seven bits of the one, and the other only with extended fields.
TEST_F(TavlynctlConfig, ValueThatIsNotKept) {
  const auto ended = Run("", {"ctl config set iIDBitCnt=200 --json", "ctl config set iExOutputFormat=1"});
  EXPECT_EQ(4, ended[0].status);
  EXPECT_TRUE(Holds(ended[0].err, "does not keep what was written of IDBitCnts.iIDBitCnt")) << ended[0].err;
  const Json document = Json::parse(ended[0].out);
  EXPECT_EQ(false, document["verified"]);
  EXPECT_EQ(72, document["changes"][0]["stored"]);
  EXPECT_EQ("different", document["changes"][0]["result"]);
  EXPECT_EQ(4, document["error"]["code"]);
  EXPECT_EQ(4, ended[1].status) << ended[1].out;
}

// It travels in a block that it does not mark for the write.
TEST_F(TavlynctlConfig, NotBootDeviceArrives) {
  const auto ended = Run("", {"ctl config set bNotBootDev=1", "ctl config get bNotBootDev --json"});
  EXPECT_EQ(0, ended[0].status) << ended[0].err;
  EXPECT_EQ(1, ParsedText(ended[1])["fields"]["CfgFlags3.bNotBootDev"]);
}

TEST_F(TavlynctlConfig, DryRunSendsNothing) {
  const std::string plus = "--device plus:2";
  const std::string looking = Traffic(plus, "config show");
  ASSERT_TRUE(Holds(looking, "set 1 80\n")) << looking;
  EXPECT_FALSE(Holds(looking, "set 1 90"));
  EXPECT_EQ(looking, Traffic(plus, "config set bBeepID=0 iIDHoldTO=100 bNotBootDev=1 --dry-run"));
  EXPECT_EQ(looking, Traffic(plus, "cards set 1 EF04 high --dry-run"));
  Run(plus, {Edited("s/bBeepID = 1/bBeepID = 0/;s/CardPriority: 1/CardPriority: 0/")});
  EXPECT_EQ(looking, Traffic(plus, "config load file.hwg --dry-run"));
  EXPECT_TRUE(Holds(Traffic(plus, "config set bBeepID=0"), "set 1 90 04\n"));
}

TEST_F(TavlynctlConfig, DryRunTellsWhatWouldChange) {
  const auto ended = Run("", {"ctl config set bBeepID=0 bDspHex=0 iIDHoldTO=130 --dry-run",
                              "ctl config set iIDBitCnt=256 --dry-run", "ctl config get bBeepID --json"});
  EXPECT_EQ(0, ended[0].status) << ended[0].err;
  EXPECT_EQ(
      "device   0\n"
      "written  no\n"
      "changes\n"
      "  configuration  field                old   new\n"
      "  0              CfgFlags2.bBeepID    1     0\n"
      "  0              TimeParms.iIDHoldTO  1000  130\n",
      ended[0].out);
  EXPECT_EQ(1, ended[1].status);
  EXPECT_EQ(1, ParsedText(ended[2])["fields"]["CfgFlags2.bBeepID"]);
}

TEST_F(TavlynctlConfig, RecordsAreToldFromFields) {
  const auto ended =
      Run("", {"ctl config get IDBitCnts", "ctl config get TimeParm", "ctl config set TimeParms=1"});
  EXPECT_EQ(
      "tavlynctl: IDBitCnts is a record; its fields are iLeadParityBitCnt, iTrailParityBitCnt, iIDBitCnt, "
      "iTotalBitCnt\n",
      ended[0].err);
  EXPECT_EQ("tavlynctl: there is no field TimeParm; did you mean TimeParms?\n", ended[1].err);
  EXPECT_TRUE(Holds(ended[2].err, "TimeParms is a record")) << ended[2].err;
  for (const Ended& one : ended) EXPECT_EQ(1, one.status);
}

TEST_F(TavlynctlConfig, AFileThatGivesNothing) {
  const auto ended =
      Run("", {"ctl check none.hwg", "touch empty.hwg; ctl check empty.hwg", "ctl config load none.hwg",
               "ctl config load empty.hwg", "ctl config diff none.hwg none.hwg", "ctl keys load none.ini"});
  EXPECT_EQ("tavlynctl: there is no file none.hwg\n", ended[0].err);
  EXPECT_EQ("tavlynctl: empty.hwg is empty\n", ended[1].err);
  EXPECT_EQ("tavlynctl: there is no file none.hwg\n", ended[2].err);
  EXPECT_EQ("tavlynctl: empty.hwg is empty\n", ended[3].err);
  EXPECT_EQ("tavlynctl: there is no file none.hwg\n", ended[4].err);
  EXPECT_EQ("tavlynctl: there is no file none.ini\n", ended[5].err);
  for (const Ended& one : ended) EXPECT_EQ(6, one.status) << one.err;
  EXPECT_EQ("tavlynctl: /proc/self/mem cannot be read: Input/output error\n",
            RunLine(kCtl + " check /proc/self/mem").err);
}

TEST_F(TavlynctlConfig, WrongFieldsAndValues) {
  const auto ended = Run(
      "", {"ctl config set bBepID=1 --json", "ctl config get CfgFlag2.bDspHex", "ctl config get bVolatile",
           "ctl config set iTotalBitCnt=25", "ctl config set iTrailChrCnt=4", "ctl config set bDspHex=2",
           "ctl config set bDspHex=yes", "ctl config set bDspHex", "ctl config set LEDCtrl.bVolatile=1",
           "ctl config set --config 1 bDspHex=1", "ctl config get quite_another_word"});
  for (const Ended& one : ended) EXPECT_EQ(1, one.status) << one.err;
  EXPECT_TRUE(Holds(ended[0].err, "there is no field bBepID; did you mean CfgFlags2.bBeepID?"));
  EXPECT_EQ(1, Json::parse(ended[0].out)["error"]["code"]);
  EXPECT_TRUE(Holds(ended[1].err, "did you mean CfgFlags2.bDspHex?")) << ended[1].err;
  EXPECT_TRUE(Holds(ended[2].err, "LEDCtrl.bVolatile and BprRlyCtrl.bVolatile")) << ended[2].err;
  EXPECT_TRUE(
      Holds(ended[3].err,
            "IDBitCnts.iTotalBitCnt takes 26 to 255, error word 0x201013: a value is out of its range"));
  EXPECT_TRUE(
      Holds(ended[4].err,
            "IDDispParms3.iTrailChrCnt takes 0 to 3, error word 0x201050: a value is out of its range"));
  EXPECT_TRUE(Holds(ended[5].err, "takes 0 or 1"));
  EXPECT_TRUE(Holds(ended[6].err, "the value is not a number from 0 to 32767"));
  EXPECT_TRUE(Holds(ended[9].err, "has only configuration 0")) << ended[9].err;
  EXPECT_FALSE(Holds(ended[10].err, "did you mean")) << ended[10].err;
}

TEST_F(TavlynctlConfig, SecureFileIsRefusedOnceChanged) {
  const auto ended =
      Run("--device plus:2",
          {"ctl config save a.hwg --secure --json", "ctl check a.hwg --json",
           "sed 's/^bBeepID = 1/bBeepID = 0/' a.hwg >b.hwg; cmp a.hwg b.hwg", "ctl check b.hwg --json",
           "ctl config load b.hwg", "ctl config load b.hwg --dry-run",
           "sed 's/^iEndOfHwgFile/iEndofHwgFilf/' a.hwg >c.hwg; ctl config load c.hwg",
           "ctl config get bBeepID --json"});
  const Json saved = ParsedText(ended[0]);
  EXPECT_EQ(2, saved["configurations"]);
  EXPECT_EQ(true, saved["secure"]);
  EXPECT_EQ(true, ParsedText(ended[1])["intact"]);
  EXPECT_EQ(1, ended[2].status);
  for (std::size_t i = 3; i <= 6; ++i) {
    EXPECT_EQ(6, ended[i].status) << i;
    EXPECT_TRUE(Holds(ended[i].err, "was changed since it was written")) << ended[i].err;
  }
  EXPECT_EQ(6, Json::parse(ended[3].out)["error"]["code"]);
  EXPECT_EQ(1, ParsedText(ended[7])["fields"]["CfgFlags2.bBeepID"]);
}

TEST_F(TavlynctlConfig, LoadRestoresWhatWasSaved) {
  const auto ended =
      Run("--device plus:2", {"ctl config save a.hwg --secure", "ctl config set --config 1 bDspHex=1",
                              "ctl cards set 0 F004 low", "ctl config diff a.hwg --json",
                              "ctl config load a.hwg --secure --json", "ctl config diff a.hwg --json",
                              "ctl config get --config 1 bDspHex --json"});
  const Json left = ParsedText(ended[3])["differences"];
  const auto holdsRow = [&](const Json& row) {
    return std::find(left.begin(), left.end(), row) != left.end();
  };
  EXPECT_TRUE(holdsRow({{"configuration", 1}, {"field", "CfgFlags2.bDspHex"}, {"left", 1}, {"right", 0}}))
      << left;
  EXPECT_TRUE(holdsRow({{"configuration", 0}, {"field", "CardType"}, {"left", "F004"}, {"right", "EF04"}}))
      << left;
  const Json load = ParsedText(ended[4]);
  EXPECT_EQ(true, load["verified"]);
  EXPECT_EQ(true, load["secure"]);
  EXPECT_EQ(Json::array(), load["separator_data_not_loaded"]);
  EXPECT_EQ(Json::array(), ParsedText(ended[5])["differences"]);
  EXPECT_EQ(0, ParsedText(ended[6])["fields"]["CfgFlags2.bDspHex"]);
}

TEST_F(TavlynctlConfig, FilesThatAreNotLoaded) {
  const auto ended = Run("", {Edited("s/^iFACIDDelim = .*/iFACIDDelim = 300/"), "ctl config load file.hwg",
                              "ctl config load own.hwg --secure", "echo hello >text; ctl config load text",
                              "ctl config load absent", "ctl config save absent/file", "ctl check own.hwg",
                              "ctl check own.hwg --ini"});
  EXPECT_EQ(1, ended[1].status);
  EXPECT_TRUE(Holds(ended[1].err, "IDDispParms.iFACIDDelim = 300: it takes 0 to 255")) << ended[1].err;
  for (std::size_t i = 2; i < ended.size(); ++i) EXPECT_EQ(6, ended[i].status) << i << ended[i].err;
  EXPECT_TRUE(Holds(ended[2].err, "has no integrity trailer"));
  EXPECT_TRUE(Holds(ended[3].err, "is no configuration file"));
}

TEST_F(TavlynctlConfig, DevicesAndFoldersAreNoFiles) {
  const auto ended =
      Run("", {"ctl config load /dev/zero", "ctl config save /dev/full", "ctl check /dev/full",
               "ctl config diff own.hwg /dev/zero", "ctl keys load /dev/zero", "ctl ble save ."});
  for (const Ended& one : ended) EXPECT_EQ(6, one.status) << one.err;
  EXPECT_EQ("tavlynctl: /dev/zero is not a regular file\n", ended[0].err);
  EXPECT_EQ("tavlynctl: . is a folder, not a file\n", ended[5].err);
}

TEST_F(TavlynctlConfig, IniFileIsChecked) {
  std::ofstream(folder_ / "keys.ini") << "[keys]\r\nslot=1\r\n[EOF]\r\niEndOfIniFile=BE686D5A\r\n";
  const auto ended = Run("", {"ctl check keys.ini --ini --json", "ctl check keys.ini",
                              "sed s/slot=1/slot=2/ keys.ini >b.ini; ctl check b.ini --ini"});
  EXPECT_EQ(true, ParsedText(ended[0])["intact"]);
  EXPECT_TRUE(Holds(ended[1].err, "has no integrity trailer")) << ended[1].err;
  EXPECT_TRUE(Holds(ended[2].err, "was changed since it was written")) << ended[2].err;
  EXPECT_EQ(6, ended[2].status);
}

// The reader goes away with the first report of the write.
TEST_F(TavlynctlConfig, FailedLoadIsTold) {
  Run("", {Edited("s/^bBeepID = 1/bBeepID = 0/")});
  const std::string untilWrite = Traffic("", "config load file.hwg --dry-run");
  const auto exchanges = std::count(untilWrite.begin(), untilWrite.end(), '\n') - 1;
  const std::string load =
      "typed 'vanish " + std::to_string(exchanges + 1) + "'; ctl config load file.hwg --json";
  const Ended ended = Run("", {load})[0];
  EXPECT_EQ(4, ended.status) << ended.out;
  EXPECT_TRUE(Holds(ended.err, "file.hwg could not be loaded into card reader 0")) << ended.err;
  EXPECT_EQ(4, Json::parse(ended.out)["error"]["code"]);
}

TEST_F(TavlynctlConfig, DiffOfTwoFiles) {
  Run("--device plus:2",
      {Edited("s/^iIDHoldTO = 1000 /iidholdto=900/;s/^bBeepID.*/:/;s/Priority: 1/Priority: 0/")});
  const Ended diff =
      RunLine("cd " + folder_.string() + " && " + TAVLYNCTL + " config diff own.hwg file.hwg --json");
  const Json document = ParsedText(diff);
  EXPECT_EQ(Json({{"name", "file.hwg"}, {"configurations", 2}}), document["right"]);
  const Json rows = Json::parse(R"([
    {"configuration": 0, "field": "TimeParms.iIDHoldTO", "left": 1000, "right": 900},
    {"configuration": 0, "field": "CardPriority", "left": "high", "right": "low"},
    {"configuration": 0, "field": "CfgFlags2.bBeepID", "left": 1, "right": null},
    {"configuration": 1, "field": "TimeParms.iIDHoldTO", "left": 1000, "right": 900},
    {"configuration": 1, "field": "CfgFlags2.bBeepID", "left": 1, "right": null}])");
  EXPECT_EQ(rows, document["differences"]);
}

TEST_F(TavlynctlConfig, DiffOfThreeFiles) {
  const Ended ended = RunLine(std::string(TAVLYNCTL) + " config diff a.hwg b.hwg c.hwg");
  EXPECT_EQ(1, ended.status);
  EXPECT_EQ("tavlynctl: two files are compared, or a device and one file\n", ended.err);
}

TEST_F(TavlynctlConfig, ResetAndDefaults) {
  const auto ended =
      Run("--device plus:2",
          {"ctl config set bDspHex=1", "ctl config reset", "ctl config get bDspHex --json",
           "ctl config reset --yes", "ctl config get bDspHex --json", "ctl config set bDspHex=1",
           "ctl config defaults save --json", "ctl config set bDspHex=0", "ctl config defaults restore",
           "ctl config get bDspHex --json", "ctl config defaults plus", "ctl config get bDspHex --json",
           "ctl config defaults other"});
  EXPECT_EQ(1, ended[1].status);
  const Json one{{"CfgFlags2.bDspHex", 1}};
  const Json none{{"CfgFlags2.bDspHex", 0}};
  EXPECT_EQ(one, ParsedText(ended[2])["fields"]);
  EXPECT_EQ(0, ended[3].status) << ended[3].err;
  EXPECT_EQ(none, ParsedText(ended[4])["fields"]);
  EXPECT_EQ("save", ParsedText(ended[6])["done"]);
  EXPECT_EQ(one, ParsedText(ended[9])["fields"]);
  EXPECT_EQ(none, ParsedText(ended[11])["fields"]);
  EXPECT_EQ(1, ended[12].status);
  EXPECT_EQ(1, Run("", {"ctl config defaults save"})[0].status);
}

TEST_F(TavlynctlConfig, LedsAndRelay) {
  const std::string now = Traffic("", "led red green");
  EXPECT_TRUE(Holds(now, "set 1 82\nset 1 03 12\n")) << now;
  EXPECT_FALSE(Holds(now, "set 1 90"));
  const std::string stored = Traffic("", "relay on --store");
  EXPECT_TRUE(Holds(stored, "set 1 82\nset 1 05 10\n")) << stored;
  EXPECT_TRUE(Holds(stored, "set 1 90 04\n"));

  const auto ended =
      Run("", {"ctl led green --json", "ctl led off", "ctl config get iRedLEDState iGrnLEDState --json",
               "ctl led auto", "ctl config get bAppCtrlsLED --json", "ctl led red off", "ctl relay on --json",
               "ctl relay middle", "ctl led blue"});
  const Json led = ParsedText(ended[0]);
  EXPECT_EQ(false, led["stored"]);
  EXPECT_EQ(true, led["verified"]);
  EXPECT_EQ(3u, led["changes"].size());
  EXPECT_EQ(Json({{"LEDCtrl.iRedLEDState", 0}, {"LEDCtrl.iGrnLEDState", 0}}), ParsedText(ended[2])["fields"]);
  EXPECT_EQ(Json({{"LEDCtrl.bAppCtrlsLED", 0}}), ParsedText(ended[4])["fields"]);
  EXPECT_EQ(1, ended[5].status);
  EXPECT_EQ("BprRlyCtrl.iRelayState", ParsedText(ended[6])["changes"][0]["field"]);
  EXPECT_EQ(1, ended[7].status);
  EXPECT_EQ(1, ended[8].status);
}

TEST_F(TavlynctlConfig, BeepAndVolume) {
  EXPECT_TRUE(Holds(Traffic("", "beep 3"), "set 1 8C 03 03\n"));
  EXPECT_TRUE(Holds(Traffic("", "beep"), "set 1 8C 03 01\n"));
  EXPECT_TRUE(Holds(Traffic("", "beep 2 --long"), "set 1 8C 03 82\n"));
  const auto ended = Run("", {"ctl beep 2 --json", "ctl volume --json", "ctl volume 1 --json",
                              "ctl volume --json", "ctl volume 256"});
  const Json beep = ParsedText(ended[0]);
  EXPECT_EQ(2, beep["beeps"]);
  EXPECT_EQ(false, beep["long"]);
  EXPECT_EQ(2, ParsedText(ended[1])["volume"]);
  EXPECT_EQ(1, ParsedText(ended[2])["volume"]);
  EXPECT_EQ(1, ParsedText(ended[3])["volume"]);
  EXPECT_EQ(1, ended[4].status);
}

TEST_F(TavlynctlConfig, CardTypes) {
  const auto ended = Run("--device plus:3", {"ctl cards set 2 EF04 high --json", "ctl cards --json",
                                             "ctl cards set 3 EF04 low", "ctl cards set 1 1234 low",
                                             "ctl cards set 1 card low", "ctl cards set 1 EF04 middle"});
  const Json set = ParsedText(ended[0]);
  EXPECT_EQ("cards set", set["command"]);
  EXPECT_EQ(true, set["verified"]);
  ASSERT_EQ(2u, set["changes"].size());
  EXPECT_EQ("EF04", set["changes"][0]["stored"]);
  EXPECT_EQ("high", set["changes"][1]["stored"]);
  const Json all = ParsedText(ended[1])["configurations"];
  ASSERT_EQ(3u, all.size());
  EXPECT_EQ(Json({{"index", 1}, {"card_type", "F004"}, {"priority", "low"}}), all[1]);
  EXPECT_EQ(Json({{"index", 2}, {"card_type", "EF04"}, {"priority", "high"}}), all[2]);
  for (std::size_t i = 2; i < ended.size(); ++i) EXPECT_EQ(1, ended[i].status) << i;
  EXPECT_EQ(1, Run("", {"ctl cards"})[0].status);
}

TEST_F(TavlynctlConfig, NoReader) {
  for (const char* words : {"config get bBeepID", "config set bBeepID=1", "config defaults save", "beep",
                            "led off", "relay off", "volume", "cards"}) {
    const Ended ended = Run("--do unplug", {std::string("ctl ") + words})[0];
    EXPECT_EQ(2, ended.status) << words;
    EXPECT_EQ("tavlynctl: no reader is plugged in\n", ended.err);
  }
  for (const char* words : {"config save file", "config reset --yes"}) {
    const Ended ended = Run("--do unplug", {std::string("ctl ") + words})[0];
    EXPECT_EQ(2, ended.status) << words;
    EXPECT_EQ("tavlynctl: no device is plugged in\n", ended.err);
  }
}

}  // namespace
}  // namespace tavlyn::boundary
