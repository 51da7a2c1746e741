// What tavlynctl tells people of a configuration: meanings, units and values as they are written and read.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlExplain : public SimulatedRun {};

// Without any device.
Ended Explain(const std::string& words) { return RunLine(kCtl + " config explain " + words); }

Json ExplainedOnly(const std::string& word) {
  const Json fields = ParsedText(Explain(word + " --json"))["fields"];
  EXPECT_EQ(fields.size(), 1u) << word;
  return fields.empty() ? Json() : fields[0];
}

// "UserField[3].Track" as "UserField[#].Track".
std::string KeyOf(const std::string& name) {
  std::string key;
  for (const char c : name) {
    if (!key.empty() && key.back() == '#' && c >= '0' && c <= '9') continue;
    key += !key.empty() && key.back() == '[' ? '#' : c;
  }
  return key;
}

std::vector<std::string> NamesShown(const Json& shown) {
  std::vector<std::string> names;
  if (shown.contains("settings")) {
    for (const auto& [name, value] : shown["settings"].items()) names.push_back(KeyOf(name));
    return names;
  }
  for (const auto& [record, words] : shown["configurations"][0]["records"].items()) {
    for (const auto& [name, value] : words.items()) names.push_back(record + "." + name);
  }
  return names;
}

TEST_F(TavlynctlExplain, EveryWordThatIsShownHasAMeaningAndAUnit) {
  std::string records;
  const Json overview = ParsedText(Explain("--json"));
  for (const Json& one : overview["records"]) {
    records += " " + one["record"].get<std::string>();
  }
  std::map<std::string, Json> explained;
  const Json all = ParsedText(Explain(records + " --json"));
  for (const Json& one : all["fields"]) {
    EXPECT_NE(one["meaning"], "") << one;
    EXPECT_NE(one["unit"], "") << one;
    explained[one["name"]] = one;
  }
  std::size_t words = 0;
  for (const char* device : {"reader", "magstripe", "sonar"}) {
    const Json shown = ParsedText(Simulated("--device " + std::string(device), "config show --json"));
    for (const std::string& name : NamesShown(shown)) {
      ++words;
      EXPECT_TRUE(explained.contains(name)) << name;
    }
  }
  EXPECT_GT(words, 400u);
}

TEST_F(TavlynctlExplain, OverviewNamesTheRecords) {
  const Ended overview = Explain("");
  EXPECT_EQ(overview.status, 0) << overview.err;
  for (const char* line :
       {"card reader\n    IDBitCnts     How the bits of a card", "    BprRlyCtrl    Beeper and relay\n",
        "sonar sensor\n", "magstripe reader\n", "    UserField "}) {
    EXPECT_TRUE(Holds(overview.out, line)) << line << overview.out;
  }
  const Json times = ParsedText(Explain("--json"))["records"][3];
  EXPECT_EQ(times, Json({{"product", "card reader"},
                         {"record", "TimeParms"},
                         {"fields", 7},
                         {"meaning", "Times, and the features that the reader reports"}}));
}

TEST_F(TavlynctlExplain, EverythingAboutOneField) {
  EXPECT_EQ(Explain("iIDHoldTO").out,
            "fields\n"
            "  TimeParms.iIDHoldTO\n"
            "    meaning      A card's ID remains valid for this time\n"
            "    unit         milliseconds\n"
            "    takes        milliseconds: 1500, 0x5DC, 1500ms or 1.5s\n"
            "    range        0 to 12750 in steps of 50, rounded down\n"
            "    in programs  id_hold_ms\n"
            "    of           card reader, TimeParms\n"
            "    in files     iIDHoldTO\n"
            "    on the wire\n"
            "      block 1, b3, all, in steps of 50\n");
  EXPECT_EQ(ExplainedOnly("TimeParms.iIDHoldTO"), Json::parse(R"({
    "name": "TimeParms.iIDHoldTO", "product": "card reader", "record": "TimeParms",
    "meaning": "A card's ID remains valid for this time", "note": "", "unit": "milliseconds", "called": "id_hold_ms",
    "least": 0, "most": 12750, "step": 50, "values": {}, "settable": true, "keyword": "iIDHoldTO",
    "wire": [{"in": ["block 1"], "byte": "b3", "bits": "all, in steps of 50"}]})"));
}

TEST_F(TavlynctlExplain, FieldsOfEveryProduct) {
  const Json parity = ExplainedOnly("iLeadParityBitCnt");
  ASSERT_EQ(parity["wire"].size(), 2u) << "the excess is in another block";
  EXPECT_EQ(parity["wire"][0], Json({{"in", {"block 0"}}, {"byte", "b3"}, {"bits", "0 to 3"}}));
  EXPECT_EQ(parity["wire"][1]["in"][0], "block 3");
  EXPECT_EQ(ExplainedOnly("bDspHex")["values"], Json({{"decimal", 0}, {"hex", 1}}));
  EXPECT_EQ(ExplainedOnly("ExFeatures01")["settable"], false);
  EXPECT_EQ(ExplainedOnly("ExFeatures01")["keyword"], Json());
  EXPECT_EQ(ExplainedOnly("LEDCtrl.bVolatile")["wire"], Json::array());

  const Json ping = ExplainedOnly("pingrates");
  EXPECT_EQ(ping["least"], 200);
  EXPECT_EQ(ping["most"], 1020);
  EXPECT_EQ(ping["step"], 4);
  EXPECT_EQ(ping["wire"], Json::parse(R"([{"in": ["80"], "byte": "b2", "bits": "in steps of 4 ms"}])"));
  EXPECT_EQ(ExplainedOnly("Reserved1S")["settable"], false);

  const Json track = ExplainedOnly("UserField[3].Track");
  EXPECT_EQ(track["name"], "UserField[#].Track");
  EXPECT_EQ(track["most"], 3);
  EXPECT_EQ(track["indices"], Json({"0 to 10"}));
  EXPECT_EQ(track["wire"][0]["bits"], "0 to 1");
  EXPECT_EQ(ExplainedOnly("Keybyte[#]")["indices"], Json({"0 to 10", "0 to 15"}));
  EXPECT_EQ(ExplainedOnly("LedColor[0]")["wire"].size(), 5u);
  EXPECT_EQ(ExplainedOnly("AZERTYShiftlock")["wire"],
            Json::parse(R"([{"in": ["block 3"], "byte": "b7", "bits": "1"}])"));
}

TEST_F(TavlynctlExplain, AnyWordFindsWhatIsAboutIt) {
  EXPECT_EQ(Explain("parity").out,
            "fields\n"
            "  IDBitCnts.iLeadParityBitCnt   Leading Wiegand parity bits that are stripped\n"
            "  IDBitCnts.iTrailParityBitCnt  Trailing Wiegand parity bits that are stripped\n"
            "  IDBitCnts.iTotalBitCnt        Bits that a card must have, parity included\n"
            "  TimeParms.ExFeatures01        Features that the reader reports\n");
  const Ended beep = Explain("BEEP hold");
  for (const char* name :
       {"CfgFlags2.bBeepID", "BprRlyCtrl.iBeeperState", "Beeper ", "TimeParms.iIDHoldTO"}) {
    EXPECT_TRUE(Holds(beep.out, name)) << name << beep.out;
  }
  EXPECT_FALSE(Holds(beep.out, "range")) << "a list";
  const Ended record = Explain("sonarparms");
  EXPECT_EQ(std::ranges::count(record.out, '\n'), 9) << record.out;
  EXPECT_TRUE(Holds(Explain("amber").out, "LedColor[#]")) << "a named value";
  EXPECT_EQ(ParsedText(Explain("bVolatile --json"))["fields"].size(), 2u);
}

TEST_F(TavlynctlExplain, AMisspeltWordIsTold) {
  const Ended parity = Explain("paritty");
  EXPECT_EQ(parity.status, 1);
  EXPECT_EQ(parity.err, "tavlynctl: nothing is about paritty; did you mean parity?\n");
  EXPECT_EQ(Explain("TimeParm2s").err, "tavlynctl: nothing is about TimeParm2s; did you mean TimeParms?\n");
  EXPECT_EQ(Explain("quite_another_word").err, "tavlynctl: nothing is about quite_another_word\n");
}

TEST_F(TavlynctlExplain, ShownWithUnitsAndMeanings) {
  const Ended reader = Simulated("", "config show");
  for (const char* line :
       {"      iIDHoldTO     1000 ms  A card's ID remains valid for this time\n",
        "      iTotalBitCnt        26 bits  Bits that a card must have, parity included\n",
        "      iLeadParityBitCnt   1 bit    Leading", "      bBeepID         on       Beep when",
        "      bDspHex         decimal  Digits", "      iFACIDDelim      58 ':'        Character",
        "      ExFeatures01  0x20     Features"}) {
    EXPECT_TRUE(Holds(reader.out, line)) << line << reader.out;
  }
  EXPECT_TRUE(Holds(Simulated("--device sonar", "config show").out, "  PingRateS        248 ms  Time from"));
  EXPECT_TRUE(Holds(Simulated("--device magstripe", "config show").out,
                    "LedColor[4]                amber           Colour of an LED\n"));
}

TEST_F(TavlynctlExplain, AHundredColumnsAreEnough) {
  std::string all = Explain("e").out;
  for (const char* device : {"plus:2", "magstripe", "sonar"}) {
    all += Simulated("--device " + std::string(device), "config show").out;
  }
  std::istringstream lines(all);
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) EXPECT_LE(line.size(), 100u) << line;
  EXPECT_GT(count, 500);
}

TEST_F(TavlynctlExplain, OnlyWhatDiffersFromAFile) {
  const auto ended =
      Run("--device plus:2",
          {"ctl config save own.hwg", "ctl config show --changed own.hwg --config 1",
           "ctl config set --config 1 bBeepID=off iIDHoldTO=1.5s", "ctl config show --changed own.hwg --json",
           "ctl config show --changed own.hwg --config 1"});
  EXPECT_TRUE(Holds(ended[1].out, "  1      F004       low       none\n")) << ended[1].out;
  const Json changed = ParsedText(ended[3]);
  EXPECT_EQ(changed["file"], "own.hwg");
  EXPECT_EQ(changed["configurations"][0]["records"], Json::object());
  EXPECT_EQ(changed["configurations"][1]["records"],
            Json::parse(R"({"TimeParms": {"iIDHoldTO": 1500}, "CfgFlags2": {"bBeepID": 0}})"));
  EXPECT_EQ(changed["configurations"][1]["defaults"],
            Json({{"TimeParms.iIDHoldTO", 1000}, {"CfgFlags2.bBeepID", 1}}));
  EXPECT_TRUE(Holds(ended[4].out, "      iIDHoldTO  1500 ms, not 1000 ms  A card's ID")) << ended[4].out;
  EXPECT_FALSE(Holds(ended[4].out, "IDBitCnts"));
}

TEST_F(TavlynctlExplain, OnlyWhatDiffersOfAnotherProduct) {
  std::ofstream(folder_ / "desk.txt")
      << "/--- Sonar Configuration Template File ---\nPingRateS = 300\nMaxDistS = 60\n";
  const std::string all = "--device reader --device sonar";
  const auto ended =
      Run(all, {"ctl config show --changed desk.txt", "ctl config show --changed desk.txt --json",
                "ctl config show --changed desk.txt --product reader", "ctl config show --changed none.txt"});
  EXPECT_EQ(ended[0].out,
            "device   1\nfile     desk.txt\nproduct  sonar sensor\nsettings\n"
            "  PingRateS  248 ms, not 300 ms  Time from one ping to the next\n");
  EXPECT_EQ(ParsedText(ended[1])["settings"], Json({{"PingRateS", 248}}));
  EXPECT_EQ(ParsedText(ended[1])["defaults"], Json({{"PingRateS", 300}}));
  EXPECT_EQ(ended[2].status, 1);
  EXPECT_EQ(ended[2].err, "tavlynctl: desk.txt is for a sonar sensor\n");
  EXPECT_EQ(ended[3].status, 6);
}

std::map<std::string, Json> NewValues(const Ended& ended, const char* name) {
  std::map<std::string, Json> values;
  const Json document = ParsedText(ended);
  for (const Json& row : document["changes"]) values[row[name]] = row["new"];
  return values;
}

TEST_F(TavlynctlExplain, ValuesAsPeopleWriteThem) {
  const auto ended = Run(
      "--device reader --device magstripe --device sonar",
      {"ctl config set --dry-run --json iIDHoldTO=1.5s iIDLockOutTm=\"3000 ms\" iBitStrmTO=0x1F4 "
       "iUSBKeyPrsTm=8 bBeepID=OFF bSndOnRx=yes bDspHex=hex bLowerCaseHex=1 iFACIDDelim=- iELDelim=cr "
       "iLeadChr0=a \"iLeadChr1='5'\" iTotalBitCnt=0x22 iIDBitCnt=24bits bNotBootDev=not-boot",
       "ctl config set --dry-run --json PingRateS=0.3s StartDlyS=1.5min MinDistS=20in Key1CodeWA=0x2C",
       "ctl config set --dry-run --json LedColor[1]=amber HaltKBSend=on LUID=-2 UserField[2].Termination=^ "
       "UserField[3].Enable=true Beeper=0x11",
       "ctl magfield set 11 --dry-run --json enable=on length=0x10 term=:"});
  using Values = std::map<std::string, Json>;
  EXPECT_EQ(NewValues(ended[0], "field"), (Values{{"TimeParms.iIDHoldTO", 1500},
                                                  {"TimeParms.iIDLockOutTm", 3000},
                                                  {"TimeParms.iBitStrmTO", 500},
                                                  {"TimeParms.iUSBKeyPrsTm", 8},
                                                  {"CfgFlags2.bBeepID", 0},
                                                  {"CfgFlags.bSndOnRx", 1},
                                                  {"CfgFlags2.bDspHex", 1},
                                                  {"CfgFlags3.bLowerCaseHex", 1},
                                                  {"IDDispParms.iFACIDDelim", '-'},
                                                  {"IDDispParms.iELDelim", 13},
                                                  {"IDDispParms2.iLeadChr0", 'a'},
                                                  {"IDDispParms2.iLeadChr1", '5'},
                                                  {"IDBitCnts.iTotalBitCnt", 34},
                                                  {"IDBitCnts.iIDBitCnt", 24},
                                                  {"CfgFlags3.bNotBootDev", 1}}));
  EXPECT_EQ(NewValues(ended[1], "setting"),
            (Values{{"PingRateS", 300}, {"StartDlyS", 90}, {"MinDistS", 20}, {"Key1CodeWA", 44}}));
  EXPECT_EQ(NewValues(ended[2], "setting"), (Values{{"LedColor[1]", 3},
                                                    {"HaltKBSend", 1},
                                                    {"LUID", -2},
                                                    {"UserField[2].Termination", '^'},
                                                    {"UserField[3].Enable", 1},
                                                    {"Beeper", 17}}));
  EXPECT_EQ(NewValues(ended[3], "setting"), (Values{{"enable", 1}, {"length", 16}, {"term", ':'}}));
}

TEST_F(TavlynctlExplain, OtherValuesAreRefused) {
  struct Case {
    const char* words;
    const char* told;
  };
  const Case kCases[] = {
      {"iIDHoldTO=soon",
       "iIDHoldTO=soon: TimeParms.iIDHoldTO takes milliseconds: 1500, 0x5DC, 1500ms or 1.5s"},
      {"iIDHoldTO=", "iIDHoldTO=: TimeParms.iIDHoldTO takes milliseconds"},
      {"iIDHoldTO=0100", "iIDHoldTO=0100: TimeParms.iIDHoldTO takes milliseconds"},
      {"iIDHoldTO=1.5", "takes milliseconds"},
      {"iIDHoldTO=0.5ms", "takes milliseconds"},
      {"iIDHoldTO=1.s", "takes milliseconds"},
      {"iIDHoldTO=-1s", "takes milliseconds"},
      {"iIDHoldTO=99999999999s", "takes milliseconds"},
      {"iIDHoldTO=999min", "TimeParms.iIDHoldTO takes 0 to 12750"},
      {"iIDHoldTO=-50", "TimeParms.iIDHoldTO takes 0 to 12750"},
      {"iIDBitCnt=1s", "takes bits: 26, 0x1A or 26bits"},
      {"iIDBitCnt=0x", "takes bits"},
      {"iIDBitCnt=0x1G", "takes bits"},
      {"iIDBitCnt=-0x1", "takes bits"},
      {"bBeepID=maybe", "CfgFlags2.bBeepID takes off (0) or on (1)"},
      {"bBeepID=2", "CfgFlags2.bBeepID takes off (0) or on (1)"},
      {"bDspHex=2", "CfgFlags2.bDspHex takes decimal (0) or hex (1)"},
      {"iELDelim=ab", "takes a character or its code: a, "},
      {"StartDlyS=1500ms", "StartDlyS takes seconds: 90, 0x5A, 90s or 1.5min"},
      {"PingRateS=fast", "PingRateS=fast: PingRateS takes milliseconds"},
      {"LedColor[0]=blue", "LedColor[0] takes off (0), red (1), green (2) or amber (3)"},
      {"LedColor[0]=on", "takes off (0), red (1)"},
  };
  for (const Case& one : kCases) {
    const Ended ended = RunLine(kCtl + " config set '" + one.words + "'");
    EXPECT_EQ(ended.status, 1) << one.words;
    EXPECT_TRUE(Holds(ended.err, one.told)) << one.words << ": " << ended.err;
  }
  const Ended part = RunLine(kCtl + " magfield set 11 enable=maybe");
  EXPECT_EQ(part.err, "tavlynctl: enable=maybe: it takes off (0) or on (1)\n");
}

TEST_F(TavlynctlExplain, WordsAndRecordsAreOffered) {
  const auto offered = [](const std::string& words) { return RunLine(kCtl + " complete -- " + words).out; };
  EXPECT_EQ(offered("config set LedColor[1]="),
            "LedColor[1]=off\tColour of an LED\nLedColor[1]=red\tColour of an LED\n"
            "LedColor[1]=green\tColour of an LED\nLedColor[1]=amber\tColour of an LED\n");
  EXPECT_EQ(offered("config set bDspHex="),
            "bDspHex=decimal\tDigits in which the ID is sent\n"
            "bDspHex=hex\tDigits in which the ID is sent\n");
  EXPECT_EQ(offered("config get iIDHol"),
            "iIDHoldTO\tA card's ID remains valid for this time (milliseconds)\n");
  EXPECT_TRUE(Holds(offered("config explain Time"), "TimeParms\tTimes, and"))
      << offered("config explain Time");
  EXPECT_EQ(offered("config show --changed ''"), ":files\t\n");
}

}  // namespace
}  // namespace tavlyn::boundary
