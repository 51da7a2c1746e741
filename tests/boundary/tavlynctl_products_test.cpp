// tavlynctl with magnetic-stripe readers and sonar sensors.
#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

constexpr const char* kAll = "--device reader --device magstripe --device sonar";
constexpr const char* kMagstripe = "--device magstripe";
constexpr const char* kSonar = "--device sonar";
const std::string kSwipe = "typed 'swipe %B12^DOE/JOHN^?;4000001234567899=3012?'; ";

class TavlynctlProducts : public SimulatedRun {
 protected:
  // The two tracks of the swipe. Each has its LRC after the end sentinel.
  static Json Tracks() {
    return Json::parse(R"([
      {"track": 1, "characters": 16, "raw": "052211123E242F250F2A2F282E3E1F19", "text": "%B12^DOE/JOHN^?9"},
      {"track": 2, "characters": 24, "raw": "0B040000000000010203040506070809090D030001020F05",
       "text": ";4000001234567899=3012?5"}])");
  }
};

TEST_F(TavlynctlProducts, ListShowsAllThree) {
  const auto ended =
      Run(kAll, {"ctl list --json", "ctl list --product sonar --json", "ctl list --product x"});
  const Json devices = ParsedText(ended[0])["devices"];
  ASSERT_EQ(devices.size(), 3u);
  EXPECT_EQ(devices[0]["product"], "card reader");
  const Json magstripe{{"index", 1},
                       {"product", "magstripe reader"},
                       {"part_number", "OMS-2100-AKU"},
                       {"serial_number", Json()},
                       {"identity", ""},
                       {"did", "0210"},
                       {"luid", 2},
                       {"configurations", 1},
                       {"path", "/dev/hidraw-sim2"}};
  EXPECT_EQ(devices[1], magstripe);
  EXPECT_EQ(devices[2]["product"], "sonar sensor");
  EXPECT_EQ(devices[2]["part_number"], Json()) << "not that of the device before it";
  EXPECT_EQ(devices[2]["did"], "0400");
  ASSERT_EQ(ParsedText(ended[1])["devices"].size(), 1u);
  EXPECT_EQ(ParsedText(ended[1])["devices"][0]["product"], "sonar sensor");
  EXPECT_EQ(ParsedText(ended[1])["devices"][0]["index"], 2) << "counts the others too";
  EXPECT_EQ(ended[2].status, 1);
}

TEST_F(TavlynctlProducts, IndicesCountAllProducts) {
  const auto ended = Run("--device sonar --device reader --device sonar --do '#3 range 44'",
                         {"ctl range --device 2 --json", "ctl range --device 3", "ctl range --device 0"});
  EXPECT_EQ(ParsedText(ended[0])["inches"], 44);
  EXPECT_EQ(ParsedText(ended[0])["device"], 2);
  EXPECT_EQ(ended[1].status, 2);
  EXPECT_EQ(ended[1].err, "tavlynctl: devices 1 and 2 were found, there is no device 3\n");
  EXPECT_EQ(ended[2].status, 1);
  EXPECT_EQ(ended[2].err,
            "tavlynctl: card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim2) is not a sonar sensor\n");
}

TEST_F(TavlynctlProducts, InfoOfEach) {
  const auto ended = Run(kAll, {"typed '#2 " + kSwipe.substr(7) + "ctl info --product magstripe --json",
                                "ctl info --product sonar --json", "ctl info --json"});
  const Json magstripe = ParsedText(ended[0])["device"];
  EXPECT_EQ(magstripe["product"], "magstripe reader");
  EXPECT_EQ(magstripe["version"], "0304");
  EXPECT_EQ(magstripe["cards_read"], 1);
  EXPECT_TRUE(magstripe["answer_ms"].is_number()) << magstripe;
  EXPECT_FALSE(magstripe.contains("esn"));
  const Json sonar = ParsedText(ended[1])["device"];
  EXPECT_EQ(sonar["product"], "sonar sensor");
  EXPECT_EQ(sonar["version"], "1023");
  EXPECT_FALSE(sonar.contains("answer_ms"));
  EXPECT_EQ(ParsedText(ended[2])["device"]["product"], "card reader");
}

TEST_F(TavlynctlProducts, WhatAProductDoesNotHave) {
  for (const std::string device : {"magstripe", "sonar"}) {
    const std::string name =
        (device == "sonar" ? "sonar sensor" : "magstripe reader") + std::string(" 0 (/dev/hidraw-sim1)");
    for (const std::string words :
         {"read", "cards", "secure read 02010300", "keys load --yes keys.ini", "ble status",
          "config get bBeepID", "config set bBeepID=1", "config defaults save", "led off", "volume", "queue",
          "raw 8A", "analyzer status"}) {
      std::ofstream(folder_ / "keys.ini", std::ios::binary)
          << "[keys]\r\nslot=1\r\n[EOF]\r\niEndOfIniFile=BE686D5A\r\n";
      const Ended ended = Run("--device " + device, {"ctl " + words})[0];
      EXPECT_EQ(ended.status, 1) << words;
      EXPECT_EQ(ended.err, "tavlynctl: " + name + " is not a card reader\n") << words;
    }
    const std::string others = device == "sonar" ? "magstripe reader" : "sonar sensor";
    const std::string words = device == "sonar" ? "track" : "range";
    const Ended ended = Run("--device " + device, {"ctl " + words})[0];
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "tavlynctl: " + name + " is not a " + others + "\n");
  }
  EXPECT_EQ(Run(kSonar, {"ctl beep"})[0].status, 1);
  EXPECT_EQ(Run(kMagstripe, {"ctl beep 2"})[0].status, 0);
  const auto none =
      Run("--do unplug", {"ctl track", "ctl range", "ctl magfield", "ctl swipe watch --no-wait"});
  for (const Ended& ended : none) EXPECT_EQ(ended.status, 2) << ended.err;
  EXPECT_EQ(none[0].err, "tavlynctl: no magstripe reader is plugged in\n");
  EXPECT_EQ(none[1].err, "tavlynctl: no sonar sensor is plugged in\n");
}

TEST_F(TavlynctlProducts, TracksOfTheLastSwipe) {
  const auto ended = Run(kMagstripe, {"ctl track", kSwipe + "ctl track --json", "ctl track 2 --json",
                                      "ctl track 3", "ctl track 4", "ctl track 1"});
  EXPECT_EQ(ended[0].status, 5);
  EXPECT_EQ(ParsedText(ended[1])["tracks"], Tracks());
  EXPECT_EQ(ParsedText(ended[2])["tracks"], Json::array({Tracks()[1]}));
  EXPECT_EQ(ended[3].status, 5);
  EXPECT_EQ(ended[4].status, 1);
  EXPECT_EQ(ended[5].out,
            "device  0\ntracks\n  track  characters  raw                               text\n"
            "  1      16          052211123E242F250F2A2F282E3E1F19  %B12^DOE/JOHN^?9\n");
}

TEST_F(TavlynctlProducts, ATrackThatCannotBeFetched) {
  // Determined from a good run: the last exchange is the track's.
  Run(kMagstripe, {kSwipe + "typed exchanges; ctl track 1; typed exchanges"});
  int before = 0;
  int behind = 0;
  ASSERT_EQ(
      std::sscanf(simulatorTold_.c_str(), "tavlynsim: ok tavlynsim: %d tavlynsim: %d", &before, &behind), 2)
      << simulatorTold_;
  const std::string last = std::to_string(behind - before);
  const auto ended = Run(kMagstripe, {kSwipe + "typed 'vanish " + last + "'; ctl track 1"});
  EXPECT_EQ(ended[0].status, 4) << ended[0].out;
  EXPECT_TRUE(Holds(ended[0].err, "track 1 of magstripe reader 0")) << ended[0].err;
}

TEST_F(TavlynctlProducts, SwipesAreWatched) {
  const auto ended =
      Run(kMagstripe, {kSwipe + "typed 'swipe ;77=1?'; ctl swipe watch --count 2",
                       kSwipe + "ctl swipe watch --count 1 --json", "ctl swipe watch --timeout 0.5",
                       "upon 'kill -INT $pid' " TAVLYNCTL " swipe watch",
                       "upon 'typed unplug' " TAVLYNCTL " swipe watch --no-wait"});
  EXPECT_EQ(ended[0].status, 0) << ended[0].err;
  EXPECT_EQ(ended[0].out, "swipe 1 %B12^DOE/JOHN^?9 2 ;4000001234567899=3012?5\nswipe 2 ;77=1?8\n");
  EXPECT_EQ(ended[0].err, "watching magstripe reader 0 (/dev/hidraw-sim1)\n");
  const std::vector<Json> lines = JsonLines(ended[1].out);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(Unstamped(lines[0]),
            Json({{"schema", 1}, {"command", "swipe watch"}, {"event", "swipe"}, {"tracks", Tracks()}}));
  EXPECT_EQ(ended[2].status, 5) << "both were taken";
  EXPECT_EQ(ended[3].status, 0) << ended[3].err;
  EXPECT_EQ(ended[4].status, 4);
  EXPECT_TRUE(Holds(ended[4].err, "does not answer")) << ended[4].err;
}

TEST_F(TavlynctlProducts, UserFields) {
  const auto ended = Run(
      kMagstripe, {"ctl magfield --json", "ctl magfield set 11 enable=1 length=77 keys=2800 --dry-run --json",
                   "ctl magfield 11 --json", "ctl magfield set 11 enable=1 length=77 keys=2800 --json",
                   "ctl magfield 11 --json", "ctl magfield set 11 track=4", "ctl magfield set 11 lenght=4",
                   "ctl magfield set 11 length", "ctl magfield set 12 length=1",
                   "ctl magfield set 11 keys=280", "ctl magfield set 11"});
  EXPECT_TRUE(Holds(ended[6].err, "a user field has no part lenght; its parts are enable, skip, track"))
      << ended[6].err;
  ASSERT_EQ(ParsedText(ended[0])["fields"].size(), 11u);
  const Json first = Json::parse(R"({"number": 1, "enable": 1, "skip": 0, "track": 1, "field": 1, "offset": 0,
    "length": 255, "term": 255, "separators": 0, "lrc": 0, "ignore_lrc": 0, "keys": "2800"})");
  EXPECT_EQ(ParsedText(ended[0])["fields"][0], first);
  const Json dry = ParsedText(ended[1]);
  EXPECT_EQ(dry["written"], false);
  ASSERT_EQ(dry["changes"].size(), 3u);
  EXPECT_EQ(dry["changes"][1], Json({{"setting", "length"}, {"old", 0}, {"new", 77}}));
  EXPECT_EQ(ParsedText(ended[2])["fields"][0]["length"], 0);
  const Json set = ParsedText(ended[3]);
  EXPECT_EQ(set["verified"], true);
  EXPECT_EQ(
      set["changes"][2],
      Json({{"setting", "keys"}, {"old", ""}, {"new", "2800"}, {"stored", "2800"}, {"result", "stored"}}));
  const Json after = ParsedText(ended[4])["fields"];
  ASSERT_EQ(after.size(), 1u);
  EXPECT_EQ(after[0]["length"], 77);
  EXPECT_EQ(after[0]["keys"], "2800");
  for (std::size_t i = 5; i < ended.size(); ++i) EXPECT_EQ(ended[i].status, 1) << i;
}

TEST_F(TavlynctlProducts, ADryRunWritesNothing) {
  const std::string dry = Traffic(kMagstripe, "magfield set 11 length=77 --dry-run");
  const std::string wet = Traffic(kMagstripe, "magfield set 11 length=77");
  // FW, the command that commits.
  EXPECT_FALSE(Holds(dry, "set 1 46 57 00")) << dry;
  EXPECT_TRUE(Holds(wet, "set 1 46 57 00")) << wet;
}

TEST_F(TavlynctlProducts, ARangeIsMeasured) {
  const auto ended = Run(kSonar, {"ctl range --json", "typed 'range 25'; ctl range",
                                  "ctl range --watch --count 2", "ctl range --watch --count 2 --json",
                                  "ctl range --count 2", "upon 'kill -INT $pid' " TAVLYNCTL " range --watch",
                                  "upon 'typed unplug' " TAVLYNCTL " range --watch --no-wait", "ctl range"});
  EXPECT_EQ(
      ParsedText(ended[0]),
      Json::parse(R"({"schema": 1, "command": "range", "device": 0, "inches": 30, "status": [1, 0, 0]})"));
  EXPECT_EQ(ended[1].out, "device  0\ninches  25\nstatus  1 0 0\n");
  EXPECT_EQ(ended[2].out, "25 in  1 0 0\n25 in  1 0 0\n");
  EXPECT_EQ(ended[2].err, "watching sonar sensor 0 (/dev/hidraw-sim1)\n");
  const std::vector<Json> lines = JsonLines(ended[3].out);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(Unstamped(lines[1]),
            Json::parse(
                R"({"schema": 1, "command": "range", "event": "range", "inches": 25, "status": [1, 0, 0]})"));
  EXPECT_EQ(ended[4].status, 1);
  EXPECT_EQ(ended[5].status, 0) << ended[5].err;
  EXPECT_EQ(ended[6].status, 4);
  EXPECT_TRUE(Holds(ended[6].err, "does not answer")) << ended[6].err;
  EXPECT_EQ(ended[7].status, 2);
}

TEST_F(TavlynctlProducts, AWalkMovesTheRange) {
  const auto ended = Run(kSonar, {"typed 'walk 20:50:60000'; ctl range --watch --count 8 --json"});
  const std::vector<Json> lines = JsonLines(ended[0].out);
  ASSERT_EQ(lines.size(), 8u);
  EXPECT_LT(lines.front()["inches"], lines.back()["inches"]);
  EXPECT_EQ(lines.back()["status"], Json({1, 1, 0})) << "and going away";
}

TEST_F(TavlynctlProducts, OnATerminalThereIsABar) {
  if (RunLine("command -v script").status != 0) GTEST_SKIP() << "no program that makes a terminal";
  const auto ended =
      Run(kSonar, {"typed 'range 20'; script -qec '" TAVLYNCTL " range --watch --count 2' /dev/null"});
  EXPECT_EQ(ended[0].status, 0) << ended[0].err;
  const std::string bar = "\r" + std::string(10, '#') + std::string(27, '.') + " 20 in  1 0 0";
  EXPECT_TRUE(Holds(ended[0].out, bar + bar + "\r\n")) << ended[0].out;
}

TEST_F(TavlynctlProducts, ConfigurationFilesOfASensor) {
  const auto ended =
      Run(kAll, {"ctl config save own.txt --product sonar --json", "ctl config diff own.txt --json",
                 "sed 's/^PingRateS = 248/pingrates = 301/;s/^MaxDistS = 60/MaxDistS = 50/' own.txt >new.txt",
                 "ctl config diff new.txt --json", "ctl config load new.txt --dry-run --json",
                 "ctl config load --yes new.txt --json", "ctl config show --product sonar --json",
                 "sed 's/^MaxDistS.*/MaxDistS = 99/' own.txt >bad.txt; ctl config load --yes bad.txt",
                 "ctl config load --yes new.txt --secure", "ctl config save x.txt --product sonar --secure",
                 "ctl config show --product sonar --config 1", "ctl config diff own.txt bad.txt --json"});
  EXPECT_EQ(ParsedText(ended[0])["configurations"], 1);
  EXPECT_EQ(ParsedText(ended[1])["differences"], Json::array());
  const Json rows = Json::parse(R"([{"configuration": 0, "field": "PingRateS", "left": 248, "right": 301},
                                    {"configuration": 0, "field": "MaxDistS", "left": 60, "right": 50}])");
  EXPECT_EQ(ParsedText(ended[3])["differences"], rows);
  const Json dry = ParsedText(ended[4]);
  EXPECT_EQ(dry["written"], false);
  EXPECT_EQ(dry["changes"][0], Json({{"setting", "PingRateS"}, {"old", 248}, {"new", 301}}));
  const Json load = ParsedText(ended[5]);
  EXPECT_EQ(load["verified"], true);
  EXPECT_EQ(load["changes"], Json::parse(R"([
      {"setting": "PingRateS", "old": 248, "new": 301, "stored": 300, "result": "rounded"},
      {"setting": "MaxDistS", "old": 60, "new": 50, "stored": 50, "result": "stored"}])"));
  const Json show = ParsedText(ended[6]);
  EXPECT_EQ(show["product"], "sonar sensor");
  EXPECT_EQ(show["settings"].size(), 48u);
  EXPECT_EQ(show["settings"]["PingRateS"], 300);
  EXPECT_EQ(ended[7].status, 1);
  EXPECT_TRUE(Holds(ended[7].err, "does not accept all of bad.txt: ")) << ended[7].err;
  EXPECT_TRUE(Holds(ended[7].err, "MaxDistS = 99")) << ended[7].err;
  for (std::size_t i = 8; i < 11; ++i) EXPECT_EQ(ended[i].status, 1) << i;
  EXPECT_EQ(ParsedText(ended[11])["differences"].size(), 1u);
}

TEST_F(TavlynctlProducts, ConfigurationFilesOfAMagstripeReader) {
  const auto ended = Run(
      kAll,
      {"ctl config save own.txt --product magstripe", "ctl config diff own.txt --json",
       "sed 's/^LedColor.0.: 1/LedColor[0]: 2/;s/^KeyPressTime.*/KeyPressTime: 9/' own.txt >new.txt",
       "ctl config load new.txt --dry-run --json", "ctl config load --yes new.txt --json",
       "ctl config diff new.txt --json", "ctl config show --product magstripe --json",
       "sed 's/^UserField.3..Track.*/UserField[3].Track: 7/' own.txt >bad.txt; ctl config load --yes bad.txt "
       "--json",
       "ctl config save reader.hwg; ctl config diff reader.hwg new.txt"});
  EXPECT_EQ(ParsedText(ended[1])["differences"], Json::array());
  EXPECT_EQ(ParsedText(ended[3])["changes"],
            Json::parse(R"([{"setting": "LedColor[0]", "old": 1, "new": 2}])"));
  EXPECT_EQ(ParsedText(ended[4])["changes"][0]["result"], "stored");
  EXPECT_EQ(ParsedText(ended[5])["differences"], Json::array());
  const Json show = ParsedText(ended[6])["settings"];
  EXPECT_EQ(show.size(), 307u);
  EXPECT_EQ(show["LedColor[0]"], 2);
  EXPECT_FALSE(show.contains("KeyPressTime"));
  EXPECT_EQ(ended[7].status, 4) << "the reader has two bits for it";
  EXPECT_TRUE(Holds(ended[7].err, "does not keep what was written of UserField[3].Track")) << ended[7].err;
  EXPECT_EQ(ended[8].status, 1);
  EXPECT_EQ(ended[8].err, "tavlynctl: reader.hwg is for a card reader, new.txt for a magstripe reader\n");
}

TEST_F(TavlynctlProducts, FilesNeedTheirProduct) {
  Run(kSonar, {"ctl config save own.txt"});
  const auto ended = Run(kMagstripe, {"ctl config load --yes own.txt", "ctl config diff own.txt"});
  for (const Ended& one : ended) {
    EXPECT_EQ(one.status, 1);
    EXPECT_EQ(one.err, "tavlynctl: magstripe reader 0 (/dev/hidraw-sim1) is not a sonar sensor\n");
  }
}

TEST_F(TavlynctlProducts, FactoryConfiguration) {
  const auto ended = Run(kAll, {"ctl magfield set 11 length=77", "ctl config reset --product magstripe",
                                "ctl config reset --product magstripe --dry-run --json",
                                "ctl magfield 11 --json", "ctl config reset --product magstripe --yes --json",
                                "ctl magfield 11 --json", "ctl config reset --product sonar --yes"});
  EXPECT_EQ(ended[1].status, 1);
  EXPECT_EQ(ParsedText(ended[2])["reset"], false);
  EXPECT_EQ(ParsedText(ended[3])["fields"][0]["length"], 77);
  EXPECT_EQ(ParsedText(ended[4])["reset"], true);
  EXPECT_EQ(ParsedText(ended[5])["fields"][0]["length"], 0);
  EXPECT_EQ(ended[6].status, 0) << ended[6].err;
}

// The names say which product is meant.
TEST_F(TavlynctlProducts, SettingsByName) {
  const auto ended =
      Run(kAll, {"ctl config get PingRateS maxdists --json",
                 "ctl config set PingRateS=301 MaxDistS=50 --dry-run --json",
                 "ctl config set pingrates=301 MaxDistS=50 --json", "ctl config set PingRateS=300",
                 "ctl config get PingRateS", "ctl config get LedColor[0] UserField[3].Track --json",
                 "ctl config set LedColor[0]=2 UserField[3].Keybyte[15]=7 LUID=9 --json",
                 "ctl config get LedColor[0] UserField[3].Keybyte[15] LUID --json",
                 "ctl config get bBeepID --json"});
  EXPECT_EQ(ParsedText(ended[0])["settings"], Json({{"PingRateS", 248}, {"MaxDistS", 60}}));
  EXPECT_EQ(ParsedText(ended[1])["written"], false);
  EXPECT_EQ(ParsedText(ended[1])["changes"].size(), 2u);
  EXPECT_EQ(ParsedText(ended[2])["changes"], Json::parse(R"([
    {"setting": "PingRateS", "old": 248, "new": 301, "stored": 300, "result": "rounded"},
    {"setting": "MaxDistS", "old": 60, "new": 50, "stored": 50, "result": "stored"}])"));
  EXPECT_EQ(ended[3].out, "device    2\nwritten   no\nverified  yes\nchanges   none\n");
  EXPECT_EQ(ended[4].out, "device  2\nsettings\n  PingRateS  300\n");
  EXPECT_EQ(ParsedText(ended[5])["settings"], Json({{"LedColor[0]", 1}, {"UserField[3].Track", 0}}));
  EXPECT_EQ(ParsedText(ended[6])["verified"], true);
  EXPECT_EQ(ParsedText(ended[7])["settings"],
            Json({{"LedColor[0]", 2}, {"UserField[3].Keybyte[15]", 7}, {"LUID", 9}}));
  EXPECT_EQ(ParsedText(ended[8])["fields"], Json({{"CfgFlags2.bBeepID", 1}}));
}

TEST_F(TavlynctlProducts, WrongSettings) {
  const auto ended =
      Run(kAll, {"ctl config set PingRateS=100 MaxDistS=50", "ctl config set PingRat=300",
                 "ctl config get ledcolor[0]", "ctl config set PingRateS=300 bBeepID=1",
                 "ctl config get PingRateS --config 1", "ctl config set PingRateS",
                 "ctl config set PingRateS=fast", "ctl config set LedColor[0]=300",
                 "ctl config set PingRateS=300 MaxDist=60", "ctl config get PingRateS --json"});
  for (std::size_t i = 0; i + 1 < ended.size(); ++i) EXPECT_EQ(ended[i].status, 1) << i << ended[i].err;
  EXPECT_TRUE(Holds(ended[0].err, "does not accept PingRateS = 100 (it takes 200 to 1020)")) << ended[0].err;
  EXPECT_EQ(ended[1].err, "tavlynctl: there is no field PingRat; did you mean PingRateS?\n");
  EXPECT_EQ(ended[2].err, "tavlynctl: there is no field ledcolor[0]; did you mean LedColor[0]?\n");
  EXPECT_EQ(ended[3].err, "tavlynctl: PingRateS is for a sonar sensor, bBeepID for a card reader\n");
  EXPECT_TRUE(Holds(ended[7].err, "does not accept LedColor[0] = 300")) << ended[7].err;
  EXPECT_EQ(ended[8].err, "tavlynctl: there is no field MaxDist; did you mean MaxDistS?\n");
  EXPECT_EQ(ParsedText(ended[9])["settings"], Json({{"PingRateS", 248}}));
}

}  // namespace
}  // namespace tavlyn::boundary
