// tavlynctl writing files, and how it treats incomplete files.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/boundary/simulated_run.h"
#include "tools/tavlynctl/files.h"

namespace tavlyn::boundary {
namespace {

constexpr const char* kTitle = "/--- Tavlyn and OEM Reader Configuration Template File ---\n";

class TavlynctlConfigFiles : public SimulatedRun {
 protected:
  void WriteFile(const char* name, const std::string& text) {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }

  // With a matching trailer, which anybody can make.
  void WriteSecure(const char* name, std::string body) {
    if (!body.ends_with('\n')) body += '\n';
    WriteFile(name, body + "/--- iEndOfHwgFile \niEndOfHwgFile = " + Sum(body));
  }

  // A file as the device saves it.
  std::string Saved(const std::string& device) {
    EXPECT_EQ(Run(device, {"ctl config save own.hwg"})[0].status, 0);
    return TextOf(folder_ / "own.hwg");
  }

  [[nodiscard]] int Leftovers() const {
    int count = 0;
    for (const auto& one : fs::directory_iterator(folder_)) {
      if (Holds(one.path().filename().string(), ".tavlynctl-")) ++count;
    }
    return count;
  }

  // How many exchanges with the device the command takes.
  int Exchanges(const std::string& device, const std::string& command) {
    Run(device, {"typed exchanges; " + command + "; typed exchanges"});
    int before = 0;
    int behind = 0;
    EXPECT_EQ(std::sscanf(simulatorTold_.c_str(), "tavlynsim: %d tavlynsim: %d", &before, &behind), 2);
    return behind - before;
  }
};

TEST_F(TavlynctlConfigFiles, AFileThatGivesNothing) {
  const auto ended = Run("", {"ctl check none.hwg", "touch empty.hwg; ctl check empty.hwg",
                              "ctl config load --yes none.hwg", "ctl config load --yes empty.hwg",
                              "ctl config diff none.hwg none.hwg", "ctl keys load --yes none.ini"});
  EXPECT_EQ(ended[0].err, "tavlynctl: there is no file none.hwg\n");
  EXPECT_EQ(ended[1].err, "tavlynctl: empty.hwg is empty\n");
  EXPECT_EQ(ended[2].err, "tavlynctl: there is no file none.hwg\n");
  EXPECT_EQ(ended[3].err, "tavlynctl: empty.hwg is empty\n");
  EXPECT_EQ(ended[4].err, "tavlynctl: there is no file none.hwg\n");
  EXPECT_EQ(ended[5].err, "tavlynctl: there is no file none.ini\n");
  for (const Ended& one : ended) EXPECT_EQ(one.status, 6) << one.err;
  EXPECT_EQ(RunLine(kCtl + " check /proc/self/mem").err,
            "tavlynctl: /proc/self/mem cannot be read: Input/output error\n");
}

TEST_F(TavlynctlConfigFiles, SecureFileIsRefusedOnceChanged) {
  const auto ended =
      Run("--device plus:2",
          {"ctl config save a.hwg --secure --json", "ctl check a.hwg --json",
           "sed 's/^bBeepID = 1/bBeepID = 0/' a.hwg >b.hwg; cmp a.hwg b.hwg", "ctl check b.hwg --json",
           "ctl config load --yes b.hwg", "ctl config load b.hwg --dry-run",
           "sed 's/^iEndOfHwgFile/iEndofHwgFilf/' a.hwg >c.hwg; ctl config load --yes c.hwg",
           "ctl config get bBeepID --json"});
  const Json saved = ParsedText(ended[0]);
  EXPECT_EQ(saved["configurations"], 2);
  EXPECT_EQ(saved["secure"], true);
  EXPECT_EQ(ParsedText(ended[1])["intact"], true);
  EXPECT_EQ(ended[2].status, 1);
  for (std::size_t i = 3; i <= 6; ++i) {
    EXPECT_EQ(ended[i].status, 6) << i;
    EXPECT_TRUE(Holds(ended[i].err, "was changed since it was written")) << ended[i].err;
  }
  EXPECT_EQ(Json::parse(ended[3].out)["error"]["code"], 6);
  EXPECT_EQ(ParsedText(ended[7])["fields"]["CfgFlags2.bBeepID"], 1);
}

TEST_F(TavlynctlConfigFiles, LoadRestoresWhatWasSaved) {
  const auto ended =
      Run("--device plus:2", {"ctl config save a.hwg --secure", "ctl config set --config 1 bDspHex=1",
                              "ctl cards set 0 F004 low", "ctl config diff a.hwg --json",
                              "ctl config load --yes a.hwg --secure --json", "ctl config diff a.hwg --json",
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
  EXPECT_EQ(load["verified"], true);
  EXPECT_EQ(load["secure"], true);
  EXPECT_EQ(load["separator_data_not_loaded"], Json::array());
  EXPECT_EQ(ParsedText(ended[5])["differences"], Json::array());
  EXPECT_EQ(ParsedText(ended[6])["fields"]["CfgFlags2.bDspHex"], 0);
}

TEST_F(TavlynctlConfigFiles, FilesThatAreNotLoaded) {
  const auto ended = Run("", {Edited("s/^iFACIDDelim = .*/iFACIDDelim = 300/"),
                              "ctl config load --yes file.hwg", "ctl config load --yes own.hwg --secure",
                              "echo hello >text; ctl config load --yes text", "ctl config load --yes absent",
                              "ctl config save absent/file", "ctl check own.hwg", "ctl check own.hwg --ini"});
  EXPECT_EQ(ended[1].status, 1);
  EXPECT_TRUE(Holds(ended[1].err, "IDDispParms.iFACIDDelim = 300: it takes 0 to 255")) << ended[1].err;
  for (std::size_t i = 2; i < ended.size(); ++i) EXPECT_EQ(ended[i].status, 6) << i << ended[i].err;
  EXPECT_TRUE(Holds(ended[2].err, "has no integrity trailer"));
  EXPECT_TRUE(Holds(ended[3].err, "is not a configuration file"));
}

TEST_F(TavlynctlConfigFiles, DevicesAndFoldersAreNoFiles) {
  const auto ended =
      Run("", {"ctl config load --yes /dev/zero", "ctl config save /dev/full", "ctl check /dev/full",
               "ctl config diff own.hwg /dev/zero", "ctl keys load --yes /dev/zero", "ctl ble save ."});
  for (const Ended& one : ended) EXPECT_EQ(one.status, 6) << one.err;
  EXPECT_EQ(ended[0].err, "tavlynctl: /dev/zero is not a regular file\n");
  EXPECT_EQ(ended[5].err, "tavlynctl: . is a folder, not a file\n");
}

TEST_F(TavlynctlConfigFiles, IniFileIsChecked) {
  std::ofstream(folder_ / "keys.ini") << "[keys]\r\nslot=1\r\n[EOF]\r\niEndOfIniFile=BE686D5A\r\n";
  const auto ended = Run("", {"ctl check keys.ini --ini --json", "ctl check keys.ini",
                              "sed s/slot=1/slot=2/ keys.ini >b.ini; ctl check b.ini --ini"});
  EXPECT_EQ(ParsedText(ended[0])["intact"], true);
  EXPECT_TRUE(Holds(ended[1].err, "has no integrity trailer")) << ended[1].err;
  EXPECT_TRUE(Holds(ended[2].err, "was changed since it was written")) << ended[2].err;
  EXPECT_EQ(ended[2].status, 6);
}

// The reader goes away with the first report of the write.
TEST_F(TavlynctlConfigFiles, FailedLoadIsTold) {
  Run("", {Edited("s/^bBeepID = 1/bBeepID = 0/")});
  const std::string untilWrite = Traffic("", "config load file.hwg --dry-run");
  const auto exchanges = std::count(untilWrite.begin(), untilWrite.end(), '\n') - 1;
  const std::string load = "typed 'vanish " + std::to_string(exchanges + 1) +
                           "'; ctl config load --yes --no-backup file.hwg --json";
  const Ended ended = Run("", {load})[0];
  EXPECT_EQ(ended.status, 4) << ended.out;
  EXPECT_TRUE(Holds(ended.err, "file.hwg could not be loaded into card reader 0")) << ended.err;
  EXPECT_EQ(Json::parse(ended.out)["error"]["code"], 4);
}

TEST_F(TavlynctlConfigFiles, DiffOfTwoFiles) {
  Run("--device plus:2",
      {Edited("s/^iIDHoldTO = 1000 /iidholdto=900/;s/^bBeepID.*/:/;s/Priority: 1/Priority: 0/")});
  const Ended diff =
      RunLine("cd " + folder_.string() + " && " + TAVLYNCTL + " config diff own.hwg file.hwg --json");
  const Json document = ParsedText(diff);
  EXPECT_EQ(document["right"], Json({{"name", "file.hwg"}, {"configurations", 2}}));
  const Json rows = Json::parse(R"([
    {"configuration": 0, "field": "TimeParms.iIDHoldTO", "left": 1000, "right": 900},
    {"configuration": 0, "field": "CardPriority", "left": "high", "right": "low"},
    {"configuration": 0, "field": "CfgFlags2.bBeepID", "left": 1, "right": null},
    {"configuration": 1, "field": "TimeParms.iIDHoldTO", "left": 1000, "right": 900},
    {"configuration": 1, "field": "CfgFlags2.bBeepID", "left": 1, "right": null}])");
  EXPECT_EQ(document["differences"], rows);
}

TEST_F(TavlynctlConfigFiles, DiffOfThreeFiles) {
  const Ended ended = RunLine(std::string(TAVLYNCTL) + " config diff a.hwg b.hwg c.hwg");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err, "tavlynctl: two files are compared, or a device and one file\n");
}

TEST_F(TavlynctlConfigFiles, ASaveThatFailsLeavesTheOldFile) {
  for (const std::string words :
       {"config save good.hwg --secure", "config save good.hwg", "ble save good.hwg --keys"}) {
    WriteFile("good.hwg", "what was there");
    const int whole = Exchanges("--device plus:2", "ctl " + words + " >sink; echo what was there >good.hwg");
    ASSERT_GT(whole, 100) << words;
    for (const int before : {whole / 2, whole * 2 / 3, whole * 4 / 5}) {
      const Ended ended =
          Run("--device plus:2", {"typed 'vanish " + std::to_string(before) + "'; ctl " + words})[0];
      EXPECT_EQ(ended.status, 4) << words << " vanish " << before << ": " << ended.err;
      EXPECT_EQ(TextOf(folder_ / "good.hwg"), "what was there\n") << words << " vanish " << before;
      EXPECT_EQ(Leftovers(), 0);
    }
  }
}

TEST_F(TavlynctlConfigFiles, AFullDiskLeavesTheOldFile) {
  const std::string limited = "ulimit -f 2; trap '' XFSZ; ctl ";
  for (const std::string device : {"plus:3", "sonar", "magstripe"}) {
    WriteFile("good.hwg", "what was there");
    const auto ended = Run("--device " + device, {limited + "config save good.hwg"});
    EXPECT_EQ(ended[0].status, 6) << device << ended[0].err;
    EXPECT_TRUE(Holds(ended[0].err, "; is the disk full?")) << ended[0].err;
    EXPECT_EQ(TextOf(folder_ / "good.hwg"), "what was there") << device;
    EXPECT_EQ(Leftovers(), 0);
  }
}

TEST_F(TavlynctlConfigFiles, RightsOfAFile) {
  const auto ended = Run(
      "", {"umask 000; ctl config save a.hwg; ctl config save b.hwg --secure; ctl ble save c.hwg; ctl ble "
           "save d.hwg --keys",
           "stat -c %a a.hwg b.hwg c.hwg d.hwg", "chmod 640 a.hwg; chmod 606 d.hwg; umask 077",
           "ctl config save a.hwg; ctl ble save d.hwg --keys", "stat -c %a a.hwg d.hwg",
           "ln -s a.hwg link.hwg; rm b.hwg; ctl config save link.hwg; readlink link.hwg; stat -c %a a.hwg"});
  EXPECT_EQ(ended[1].out, "600\n600\n600\n600\n");
  EXPECT_EQ(ended[4].out, "640\n606\n");
  EXPECT_TRUE(Holds(ended[5].out, "a.hwg\n640\n")) << ended[5].out << ended[5].err;
  EXPECT_EQ(Leftovers(), 0);
}

// Whatever the name leads to meanwhile, what is tested is what is loaded.
TEST_F(TavlynctlConfigFiles, AFileThatIsSwappedAwayAndBackIsTestedItself) {
  const std::string name = (folder_ / "own.hwg").string();
  WriteFile("own.hwg", "its own");
  const ctl::TestedFile file(name);
  WriteFile("own.hwg", "another's");
  EXPECT_EQ(file.Pass([](const std::string& held) { return TextOf(held); }), "its own");
  const auto fail = [](const std::string& held) { throw ctl::Failure(ctl::kBadFile, held + " is bad"); };
  try {
    file.Pass(fail);
  } catch (const ctl::Failure& failure) {
    EXPECT_EQ(failure.what(), name + " is bad");
  }
  WriteFile("own.hwg", "its own");
  EXPECT_EQ(TextOf(file.ToLoad()), "its own");
}

// This is the process's only thread, so a child of it may run on.
TEST_F(TavlynctlConfigFiles, ASignalLeavesNothing) {
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const ctl::NewFile file((folder_ / "own.hwg").string());
    const ctl::TemporaryFile other(folder_.string(), "another");
    if (Leftovers() == 2) raise(SIGTERM);
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGTERM);
  EXPECT_EQ(Leftovers(), 0);
}

// A save whose reader vanished left these headings, with a matching trailer.
TEST_F(TavlynctlConfigFiles, AFileWithoutAConfigurationIsRefused) {
  WriteSecure("wreck.hwg", std::string(kTitle) + ":Library Version: 7.9.2 \n:Device FW Version: 74.31 \n");
  WriteSecure("plus.hwg",
              std::string(kTitle) +
                  ":Library Version: 7.9.2 \n:Device FW Version: 74.31 \nCardType: 61188 / Card type code\n"
                  "CardPriority: 1 / 0=Low, 1=High Priority\n##NEXTCONFIG##\n");
  WriteFile("sonar.txt", "/--- Sonar Configuration Template File ---\n:Library Version: 7.9.2 \n");
  const auto ended =
      Run("", {"ctl check wreck.hwg", "ctl config load --yes wreck.hwg", "ctl config diff wreck.hwg",
               "ctl check plus.hwg", "ctl config load plus.hwg --dry-run", "ctl config diff plus.hwg",
               "ctl config load --yes sonar.txt", "ctl ble save ble.hwg; ctl config load --yes ble.hwg",
               "ctl check ble.hwg"});
  for (std::size_t i = 0; i + 1 < ended.size(); ++i) EXPECT_EQ(ended[i].status, 6) << i << ended[i].err;
  EXPECT_EQ(ended[0].err, "tavlynctl: wreck.hwg holds no configuration\n");
  EXPECT_EQ(ended[3].err, "tavlynctl: plus.hwg lacks configuration 0\n");
  EXPECT_EQ(ended[6].err, "tavlynctl: sonar.txt holds no configuration\n");
  EXPECT_EQ(ended[7].err, "tavlynctl: ble.hwg holds no configuration\n");
  EXPECT_EQ(ended[8].status, 0) << ended[8].err;
}

TEST_F(TavlynctlConfigFiles, ACutConfigurationIsRefused) {
  const std::string plain = Saved("");
  const std::string plus = Saved("--device plus:2");
  const std::size_t next = plus.rfind("##NEXTCONFIG##");
  const std::vector<std::string> cut = {plain.substr(0, plain.find("bSndFac")),
                                        plain.substr(0, plain.find("BEGIN")),
                                        plain.substr(0, plain.find("SepData[]")),
                                        plain.substr(0, plain.rfind("END ")),
                                        plus.substr(0, next),
                                        plus.substr(0, plus.rfind("CardType")),
                                        plus.substr(0, plus.rfind("bBeepID"))};
  for (const std::string& text : cut) {
    WriteSecure("cut.hwg", text);
    for (const Ended& ended :
         Run("", {"ctl check cut.hwg", "ctl config load --yes cut.hwg", "ctl config diff cut.hwg"})) {
      EXPECT_EQ(ended.status, 6) << text.size() << ended.err;
      EXPECT_TRUE(Holds(ended.err, "cut.hwg ends in the middle of configuration ")) << ended.err;
    }
  }
  WriteSecure("lacks.hwg", plus.substr(0, plus.find("##NEXTCONFIG##")) + plus.substr(plus.rfind("CardType")));
  EXPECT_EQ(Run("", {"ctl check lacks.hwg"})[0].status, 0) << "each of what is there is whole";
  const std::size_t second = plus.find("##NEXTCONFIG##") + 15;
  WriteSecure("lacks.hwg", plus.substr(0, second) + plus.substr(plus.rfind("CardType")));
  EXPECT_EQ(Run("", {"ctl check lacks.hwg"})[0].err, "tavlynctl: lacks.hwg lacks configuration 1\n");
  const std::string swipes =
      (Run("--device magstripe", {"ctl config save own.txt"}), TextOf(folder_ / "own.txt"));
  WriteFile("cut.txt", swipes.substr(0, swipes.size() / 2));
  EXPECT_EQ(Run("--device magstripe", {"ctl config load --yes cut.txt"})[0].err,
            "tavlynctl: cut.txt ends in the middle of its configuration\n");
}

// A file written by hand may have only a few lines.
TEST_F(TavlynctlConfigFiles, AFewLinesAreAFile) {
  WriteFile("few.hwg", std::string(kTitle) + "bBeepID = 0\n");
  const auto ended =
      Run("", {"ctl config load --yes few.hwg --strict --json", "ctl config get bBeepID --json"});
  EXPECT_EQ(ParsedText(ended[0])["changes"].size(), 1u);
  EXPECT_EQ(ParsedText(ended[0])["ignored"], Json::array());
  EXPECT_EQ(ParsedText(ended[1])["fields"]["CfgFlags2.bBeepID"], 0);
}

TEST_F(TavlynctlConfigFiles, ALoadTellsWhatItDrops) {
  WriteFile("file.hwg", std::string(kTitle) +
                            "\n/ mine\niIDBitCn = 40\nbBeepID = 0\nquite_another = 1\niIDHoldTO = soon\n" +
                            "iPad4 = 3\niExOutputFormat = 1\n");
  const auto ended =
      Run("", {"ctl config load --yes file.hwg --strict", "ctl config load file.hwg --dry-run",
               "ctl config load --yes file.hwg --json", "ctl config load --yes file.hwg --json"});
  EXPECT_EQ(ended[0].status, 6);
  EXPECT_TRUE(Holds(ended[0].err,
                    "would not be loaded completely: line 4: unknown name iIDBitCn; did you mean iIDBitCnt?"))
      << ended[0].err;
  EXPECT_TRUE(Holds(ended[1].out, "ignored\n  line 4: unknown name iIDBitCn; did you mean iIDBitCnt?\n"))
      << ended[1].out;
  const Json ignored{"line 4: unknown name iIDBitCn; did you mean iIDBitCnt?",
                     "line 6: unknown name quite_another", "line 7: iIDHoldTO has no number",
                     "line 8: no reader keeps iPad4",
                     "IDDispParms.iExOutputFormat of configuration 0: the reader does not have it"};
  EXPECT_EQ(ParsedText(ended[2])["ignored"], ignored);
  EXPECT_EQ(ParsedText(ended[2])["written"], true);
  const Json again = ParsedText(ended[3]);
  EXPECT_EQ(again["changes"], Json::array());
  EXPECT_EQ(again["written"], false) << "the reader has it all already";
  EXPECT_EQ(again["verified"], true);
}

TEST_F(TavlynctlConfigFiles, ConfigurationsThatDoNotMeet) {
  Saved("--device plus:3");
  const auto fewer = Run("--device plus:2", {"ctl config load own.hwg --dry-run --json",
                                             "ctl config load --yes own.hwg --strict"});
  EXPECT_EQ(ParsedText(fewer[0])["ignored"],
            Json({"configuration 2 of the file: the reader does not have it"}));
  EXPECT_EQ(fewer[1].status, 6);
  const Json plain = ParsedText(Run("", {"ctl config load own.hwg --dry-run --json"})[0]);
  EXPECT_EQ(plain["ignored"][2], "card type of configuration 0: only a plus reader has one");
  const auto more = Run("--device plus:4", {"ctl config load --yes own.hwg --json"});
  EXPECT_EQ(ParsedText(more[0])["ignored"],
            Json({"configuration 3 of the reader: the file does not hold it"}));
  Saved("--device plus:11");
  const auto eleven = Run("--device plus:11", {"ctl config load own.hwg --dry-run --json"});
  EXPECT_EQ(ParsedText(eleven[0])["ignored"],
            Json({"configuration 10 of the reader: only the first ten are loaded"}));
}

TEST_F(TavlynctlConfigFiles, UnknownSettingsAreTold) {
  WriteFile("own.txt",
            "/--- Sonar Configuration Template File ---\nPingRat = 300\npingrates = 300\nMaxDistS: 50\n");
  const auto ended =
      Run("--device sonar", {"ctl config load --yes own.txt --strict", "ctl config load --yes own.txt --json",
                             "ctl config load --yes own.txt --json"});
  EXPECT_EQ(ended[0].status, 6) << ended[0].err;
  const Json ignored{"line 2: unknown name PingRat; did you mean PingRateS?",
                     "line 4: unknown name MaxDistS:; did you mean MaxDistS?"};
  EXPECT_EQ(ParsedText(ended[1])["ignored"], ignored);
  EXPECT_EQ(ParsedText(ended[1])["written"], true);
  EXPECT_EQ(ParsedText(ended[2])["written"], false);
}

// Of a plus reader that is not the first device a connect reads only one configuration.
TEST_F(TavlynctlConfigFiles, APlusReaderBehindAnotherIsReadWhole) {
  const std::string two = "--device plus:3 --device plus:3";
  const auto ended =
      Run(two, {"ctl cards --device 1 --json", "ctl cards set 2 EF04 high --device 1 --json",
                "ctl config set --device 1 --config 1 bDspHex=1 --json",
                "ctl config get --device 1 --config 1 bDspHex --json", "ctl config show --device 1 --json",
                "ctl config save one.hwg --device 1", "ctl config diff one.hwg --device 1 --json",
                "ctl config load --yes one.hwg --device 1 --json",
                "ctl config get --device 0 --config 1 bDspHex --json", "ctl cards --device 0 --json"});
  const Json all = ParsedText(ended[0])["configurations"];
  EXPECT_EQ(all[2], Json({{"index", 2}, {"card_type", "F104"}, {"priority", "low"}}));
  EXPECT_EQ(ParsedText(ended[1])["verified"], true);
  EXPECT_EQ(ParsedText(ended[2])["verified"], true);
  EXPECT_EQ(ParsedText(ended[3])["fields"]["CfgFlags2.bDspHex"], 1);
  EXPECT_EQ(ParsedText(ended[4])["configurations"].size(), 3u);
  EXPECT_EQ(ended[5].status, 0) << ended[5].err;
  // The file does not contain byte 3 of separator data that was never set.
  const Json differences = ParsedText(ended[6])["differences"];
  for (const Json& row : differences) EXPECT_EQ(row["field"], "sFldSepData[3]");
  EXPECT_EQ(ParsedText(ended[7])["verified"], true);
  EXPECT_EQ(ParsedText(ended[8])["fields"]["CfgFlags2.bDspHex"], 0);
  EXPECT_EQ(ParsedText(ended[9])["configurations"][2]["card_type"], "F104");
}

}  // namespace
}  // namespace tavlyn::boundary
