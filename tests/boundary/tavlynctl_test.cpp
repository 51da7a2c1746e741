// tavlynctl with simulated readers.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/boundary/simulated_run.h"
#include "tools/tavlynctl/nodes_linux.h"

namespace tavlyn::boundary {
namespace {

Ended OneCommand(const std::string& devices, const std::string& words) {
  return RunLine(kSim + " run " + devices + " -- " + kCtl + " " + words);
}

TEST(Tavlynctl, ListShowsEachReader) {
  const Ended list = OneCommand("--device plus:3 --device reader@19E5:2021", "list --json");
  ASSERT_EQ(0, list.status) << list.err;
  const Json document = Json::parse(list.out);
  EXPECT_EQ(1, document["schema"]);
  EXPECT_EQ("list", document["command"]);
  ASSERT_EQ(2u, document["devices"].size());
  const Json expected{{"index", 1},
                      {"product", "card reader"},
                      {"part_number", "RDR-80581AKU"},
                      {"identity", "19E5:2021 Orvantis Quill"},
                      {"did", "7431"},
                      {"luid", 2},
                      {"configurations", 1},
                      {"path", "/dev/hidraw-sim2"}};
  EXPECT_EQ(expected, document["devices"][1]);
  EXPECT_EQ(3, document["devices"][0]["configurations"]);
}

TEST(Tavlynctl, ListIsATableForPeople) {
  const Ended list = OneCommand("", "list");
  EXPECT_EQ(0, list.status);
  EXPECT_EQ(
      "devices\n"
      "  index  product      part number   identity            did   luid  configurations  path\n"
      "  0      card reader  RDR-80581AKU  7A31:3BFA Orvantis  7431  1     1               "
      "/dev/hidraw-sim1\n",
      list.out);
}

TEST(Tavlynctl, InfoTellsWhatTheReaderTells) {
  const Ended info = OneCommand("--device plus:3", "info --json");
  ASSERT_EQ(0, info.status) << info.err;
  const Json device = Json::parse(info.out)["device"];
  EXPECT_EQ("0400123456", device["serial_number"]);
  EXPECT_EQ("Desktop USB", device["platform"]);
  EXPECT_EQ("LNC 16.07.2 build 94", device["firmware"]);
  EXPECT_EQ("orvantis_80581_16_07_2_build_94.bin", device["firmware_file"]);
  EXPECT_EQ("Mar  5 2024 06:07:08", device["build_date"]);
  EXPECT_EQ("M4 at 96 MHz", device["cpu"]);
  EXPECT_EQ("(c) Orvantis", device["copyright"]);
  EXPECT_EQ("404142434445464748494A4B4C4D4E4F50515253545530343030313233343536", device["esn"]);
  EXPECT_EQ("05", device["installed_hardware"]);
  EXPECT_EQ("0F", device["supported_hardware"]);
  EXPECT_GE(device["answer_ms"], 1);
  const Json words = Json::parse(R"([{"cpu": 0, "words": ["10072005", "10070101"]},
                                     {"cpu": 1, "words": ["20010009"]}])");
  EXPECT_EQ(words, device["firmware_words"]);
}

// The serial number arrives with its bits turned over, and so is no UTF-8.
TEST(Tavlynctl, BrokenTextIsStillJson) {
  const Ended info = OneCommand("--do 'garble 70'", "info --json");
  ASSERT_EQ(0, info.status) << info.err;
  EXPECT_TRUE(Holds(info.out, "\\ufffd")) << info.out;
  EXPECT_TRUE(Json::parse(info.out).contains("device"));
}

TEST(Tavlynctl, ReadGivesTheCard) {
  const Ended text = OneCommand("--card 01020303:26", "read");
  EXPECT_EQ(0, text.status) << text.err;
  EXPECT_EQ("card 26 bits 03030201\n", text.out);

  const Ended json = OneCommand("--card 000102030405060708090A0B:90", "read --json");
  EXPECT_EQ(0, json.status) << json.err;
  const Json document = Json::parse(json.out);
  EXPECT_EQ("read", document["command"]);
  EXPECT_EQ(90, document["bits"]);
  EXPECT_EQ("0B0A09080706050403020100", document["id"]);
  EXPECT_EQ(Json({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), document["bytes"]);
}

TEST(Tavlynctl, ReadOfAnotherReader) {
  const Ended read = OneCommand("--device reader --device reader --do 'card 0A:8'", "read --device 1");
  EXPECT_EQ(0, read.status) << read.err;
  EXPECT_EQ("card 8 bits 0A\n", read.out);
}

TEST(Tavlynctl, ReadWaitsOnlySoLong) {
  const Ended read = OneCommand("", "read --timeout 0.6 --json");
  EXPECT_EQ(5, read.status);
  EXPECT_EQ("tavlynctl: no card came in time\n", read.err);
  EXPECT_EQ(5, Json::parse(read.out)["error"]["code"]);
}

TEST(Tavlynctl, ConfigShowsEveryConfiguration) {
  const Ended show = OneCommand("--device plus:3", "config show --json");
  ASSERT_EQ(0, show.status) << show.err;
  const Json document = Json::parse(show.out);
  EXPECT_EQ("config show", document["command"]);
  const Json& all = document["configurations"];
  ASSERT_EQ(3u, all.size());
  EXPECT_EQ("EF04", all[0]["card_type"]);
  EXPECT_EQ("high", all[0]["priority"]);
  EXPECT_EQ("F104", all[2]["card_type"]);
  EXPECT_EQ("low", all[2]["priority"]);
  for (const Json& one : all) {
    EXPECT_EQ(10u, one["records"].size());
    const Json counts{
        {"iLeadParityBitCnt", 1}, {"iTrailParityBitCnt", 1}, {"iIDBitCnt", 16}, {"iTotalBitCnt", 26}};
    EXPECT_EQ(counts, one["records"]["IDBitCnts"]);
    EXPECT_EQ(1000, one["records"]["TimeParms"]["iIDHoldTO"]);
    EXPECT_EQ(8u, one["records"]["CfgFlags3"].size());
  }
}

TEST(Tavlynctl, ConfigShowsOneConfiguration) {
  const Ended one = OneCommand("--device plus:3", "config show --json --config 1");
  ASSERT_EQ(0, one.status) << one.err;
  const Json document = Json::parse(one.out);
  ASSERT_EQ(1u, document["configurations"].size());
  EXPECT_EQ(1, document["configurations"][0]["index"]);
  EXPECT_EQ("F004", document["configurations"][0]["card_type"]);

  const Ended none = OneCommand("--device plus:3", "config show --config 3");
  EXPECT_EQ(1, none.status);
  EXPECT_TRUE(Holds(none.err, "has configurations 0 to 2")) << none.err;

  const Ended plain = OneCommand("", "config show");
  EXPECT_EQ(0, plain.status);
  EXPECT_TRUE(Holds(plain.out, "      iIDHoldTO     1000\n")) << plain.out;
  EXPECT_FALSE(Holds(plain.out, "card type"));
}

TEST(Tavlynctl, FailedConfigurationRead) {
  const std::string devices = "--device plus:2 --device reader --do '#1 refuse 20'";
  const Ended list = OneCommand(devices, "list");
  EXPECT_EQ(4, list.status);
  EXPECT_EQ(
      "tavlynctl: the configuration of card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1) could not be "
      "read, "
      "error word 0x20000: a read of the configuration failed\n",
      list.err);
  EXPECT_TRUE(Holds(list.out, "/dev/hidraw-sim2"));

  const Ended show = OneCommand(devices, "config show --json");
  EXPECT_EQ(4, show.status);
  EXPECT_EQ(4, Json::parse(show.out)["error"]["code"]);

  EXPECT_EQ(0, OneCommand(devices, "config show --device 1").status);
}

// Its texts are lost without an error of the library's.
TEST(Tavlynctl, AReaderThatGoesAwayIsTold) {
  const Json list = Json::parse(OneCommand("--do 'vanish 40'", "list --json").out);
  EXPECT_EQ(4, list["error"]["code"]);
  EXPECT_TRUE(list["devices"][0]["part_number"].is_null()) << list;
  EXPECT_EQ("7431", list["devices"][0]["did"]);
  for (const char* words : {"info", "text"}) {
    const Ended gone = OneCommand("--do 'vanish 40'", words + std::string(" --json"));
    EXPECT_EQ(4, gone.status) << words;
    EXPECT_TRUE(Holds(gone.err, "card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1) does not answer"))
        << gone.err;
    const Json told = Json::parse(gone.out);
    const Json& texts = told.value("device", Json()).is_object() ? told["device"] : told;
    EXPECT_TRUE(texts["serial_number"].is_null() && texts["firmware"].is_null()) << told;
  }
}

// What a device did not tell is not shown as zeros, nor as one configuration.
TEST(Tavlynctl, WhatIsNotKnownIsNull) {
  const Json unread = Json::parse(OneCommand("--do 'vanish 3'", "list --json").out)["devices"][0];
  for (const char* key : {"part_number", "did", "luid", "configurations"}) {
    EXPECT_TRUE(unread[key].is_null()) << key << unread;
  }
  const Json gone = Json::parse(OneCommand("--do 'vanish 40'", "info --json").out)["device"];
  for (const char* key : {"installed_hardware", "supported_hardware", "answer_ms", "esn"}) {
    EXPECT_TRUE(gone[key].is_null()) << key << gone;
  }
  const Json swiped =
      Json::parse(OneCommand("--device magstripe --do 'vanish 80'", "info --json").out)["device"];
  EXPECT_TRUE(swiped["cards_read"].is_null()) << swiped;
}

TEST(Tavlynctl, NoReader) {
  for (const char* words : {"list", "info", "read", "watch", "config show"}) {
    const Ended ended = OneCommand("--do unplug", words);
    EXPECT_EQ(2, ended.status) << words;
    const bool ofReaders = std::string(words) == "read" || std::string(words) == "watch";
    EXPECT_EQ(ofReaders ? "tavlynctl: no reader is plugged in\n" : "tavlynctl: no device is plugged in\n",
              ended.err);
    EXPECT_EQ("", ended.out);
  }
}

TEST(Tavlynctl, AnotherIndexThanThoseThatWereFound) {
  const Ended one = OneCommand("", "info --device 1");
  EXPECT_EQ(2, one.status);
  EXPECT_EQ("tavlynctl: device 0 was found, there is no device 1\n", one.err);
  EXPECT_EQ("tavlynctl: devices 0 and 1 were found, there is no device 2\n",
            OneCommand("--device reader --device reader", "read --device 2").err);
  EXPECT_EQ("tavlynctl: devices 0 to 2 were found, there is no device 3\n",
            OneCommand("--device reader --device reader --device reader", "beep --device 3").err);
  EXPECT_EQ(1, OneCommand("", "info --device -1").status);
}

TEST(Tavlynctl, WrongWords) {
  struct Case {
    const char* words;
    const char* problem;
  };
  constexpr Case kCases[] = {
      {"", "a command is missing; tavlynctl --help"},
      {"lisp", "there is no command lisp; did you mean list? tavlynctl --help"},
      {"everything", "there is no command everything; tavlynctl --help"},
      {"config", "a command is missing; tavlynctl config --help"},
      {"config shwo", "there is no command shwo; did you mean show? tavlynctl config --help"},
      {"config set", "FIELD=VALUE is required; tavlynctl config set --help"},
      {"config set --dryrun",
       "there is no option --dryrun; did you mean --dry-run? tavlynctl config set --help"},
      {"list everything", "everything was not expected; tavlynctl list --help"},
      {"secur read", "secur was not expected; did you mean secure? tavlynctl read --help"},
      {"list --jsno", "there is no option --jsno; did you mean --json? tavlynctl list --help"},
      {"list --product 2", "--product: 2 is not one of reader, magstripe, sonar; tavlynctl list --help"},
      {"watch --count 0", "--count: 0 is not a whole number, 1 or more; tavlynctl watch --help"},
      {"list --com 257",
       "--com: 257 is not a port from 1 to 256, or LO-HI of such ports; tavlynctl list --help"},
      {"read --timeout soon",
       "--timeout: soon is not a number of seconds from 0 to 604800; tavlynctl read --help"},
      {"read --timeout 700000",
       "--timeout: 700000 is not a number of seconds from 0 to 604800; tavlynctl read --help"},
      {"read --timeout", "--timeout needs a value; tavlynctl read --help"},
      {"info --device 1 --device 2", "--device is given more than once; tavlynctl info --help"},
      {"info --device -1", "--device: -1 is not a whole number, 0 or more; tavlynctl info --help"},
      {"info --device 010", "--device: 010 is not a whole number, 0 or more; tavlynctl info --help"},
      {"list --json=maybe", "--json takes no value; tavlynctl list --help"},
      {"beep 6", "COUNT: 6 is not a whole number from 1 to 5; tavlynctl beep --help"},
      {"led gren",
       "COLOUR: gren is not one of red, green, off, auto; did you mean green? tavlynctl led --help"},
      {"help lsit", "there is no command lsit; did you mean list? tavlynctl --help"},
      {"help config st", "there is no command st; did you mean set? tavlynctl --help"},
  };
  for (const Case& one : kCases) {
    const Ended ended = RunLine(kCtl + " " + one.words);
    EXPECT_EQ(1, ended.status) << one.words;
    EXPECT_EQ("tavlynctl: " + std::string(one.problem) + " tells more\n", ended.err);
    EXPECT_EQ("", ended.out);
  }
  for (const char* words : {"read --timeout soon", "read --timeout -1", "watch --timeout 1e300"}) {
    EXPECT_EQ(1, RunLine(kCtl + " " + words).status) << words;
  }
}

TEST(Tavlynctl, WrongWordsAreJsonToo) {
  const Ended ended = RunLine(kCtl + " config set bDspHex=1 --json --dryrun");
  EXPECT_EQ(1, ended.status);
  const Json document = Json::parse(ended.out);
  EXPECT_EQ("config set", document["command"]);
  EXPECT_EQ(1, document["error"]["code"]);
  EXPECT_TRUE(Holds(document["error"]["text"], "there is no option --dryrun")) << ended.out;
}

TEST(Tavlynctl, EveryCommandHasHelp) {
  const Ended all = RunLine(kCtl + " --help");
  EXPECT_EQ(0, all.status);
  EXPECT_EQ("", all.err);
  for (const char* words : {"list", "config set", "ble save", "range", "secure write"}) {
    const Ended help = RunLine(kCtl + " " + words + " --help");
    EXPECT_EQ(0, help.status) << words;
    EXPECT_TRUE(Holds(help.out, std::string("Usage: tavlynctl ") + words)) << help.out;
    EXPECT_TRUE(Holds(help.out, "--json")) << help.out;
  }
}

TEST(Tavlynctl, HelpIsACommandToo) {
  for (const char* words : {"", "list", "config", "config set"}) {
    const Ended help = RunLine(kCtl + " help " + words);
    EXPECT_EQ(0, help.status) << help.err;
    EXPECT_EQ(RunLine(kCtl + " " + words + " --help").out, help.out);
  }
}

TEST(Tavlynctl, TheVersionIsThatOfToolAndLibrary) {
  const Ended version = RunLine(kCtl + " --version");
  EXPECT_EQ(0, version.status);
  EXPECT_EQ("tavlynctl " TAVLYN_VERSION ", library " TAVLYN_VERSION "\n", version.out);
}

TEST(Tavlynctl, FiveLongBeepsAreRefused) {
  EXPECT_EQ(0, OneCommand("", "beep 2 --long").status);
  for (const char* words : {"beep 3 --long", "beep 5 --long"}) {
    const Ended beep = OneCommand("", words);
    EXPECT_EQ(1, beep.status);
    EXPECT_EQ("tavlynctl: a device makes 1 or 2 long beeps, or 1 to 5 short ones\n", beep.err);
  }
}

TEST(Tavlynctl, JsonMayStandInFront) {
  EXPECT_EQ("list", Json::parse(OneCommand("", "--json list").out)["command"]);
  EXPECT_EQ("config get", Json::parse(OneCommand("", "config --json get bDspHex").out)["command"]);
}

TEST(Tavlynctl, OutputThatCannotBeWrittenIsTold) {
  for (const char* words : {"list", "list --json", "watch --count 1", "read"}) {
    const Ended ended = OneCommand("--card 0A:8", words + std::string(" >/dev/full"));
    EXPECT_EQ(6, ended.status) << words;
    EXPECT_TRUE(Holds(ended.err, "tavlynctl: the standard output cannot be written\n")) << ended.err;
  }
}

TEST(Tavlynctl, ClosedOutputIsTold) {
  const Ended ended = OneCommand("", "list >&-");
  EXPECT_EQ(6, ended.status);
  EXPECT_EQ("tavlynctl: the standard output is closed; >/dev/null drops what is shown\n", ended.err);
}

// A folder of hidraw nodes, two of them readers'.
class Permission : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = "/tmp/tavlyn-nodes-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(name.data()));
    folder_ = name;
    fs::permissions(folder_, fs::perms(0755));
    fs::create_directories(folder_ / "dev");
    AddNode("hidraw0", "0003:0000046D:0000C077");
    AddNode("hidraw1", "0003:00007A31:00003BFA");
    AddNode("hidraw2", "0003:00007A31:00003B99");
    AddNode("hidraw3", "0003:00007A31:0000CCDA");
  }

  void TearDown() override { fs::remove_all(folder_); }

  void AddNode(const std::string& name, const std::string& id) {
    fs::create_directories(folder_ / "sys" / name / "device");
    std::ofstream(folder_ / "sys" / name / "device" / "uevent")
        << "DRIVER=hid-generic\nHID_ID=" << id << "\n";
    std::ofstream(folder_ / "dev" / name) << "";
    fs::permissions(folder_ / "dev" / name, fs::perms(0600));
  }

  // The bulk device as well, on bus 1.
  void AddBulkNode() {
    const fs::path device = folder_ / "usb" / "1-2";
    fs::create_directories(device);
    fs::create_directories(folder_ / "dev" / "001");
    for (const auto& [name, text] : {std::pair{"idVendor", "171b"}, std::pair{"idProduct", "1004"},
                                     std::pair{"busnum", "1"}, std::pair{"devnum", "4"}}) {
      std::ofstream(device / name) << text << "\n";
    }
    std::ofstream(folder_ / "dev" / "001" / "004") << "";
    fs::permissions(folder_ / "dev" / "001" / "004", fs::perms(0600));
  }

  std::string Problem() {
    const std::string bulk = ctl::BulkProblem((folder_ / "usb").string(), (folder_ / "dev").string());
    if (!bulk.empty()) return bulk;
    return ctl::HidProblem((folder_ / "sys").string(), (folder_ / "dev").string());
  }

  // As a user who owns nothing.
  std::string ProblemOfAStranger() {
    int ends[2];
    if (pipe(ends) != 0) return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
      constexpr uid_t kNobody = 65534;
      std::string told = "still root";
      if (setgid(kNobody) == 0 && setuid(kNobody) == 0) told = Problem();
      _exit(write(ends[1], told.data(), told.size()) == static_cast<ssize_t>(told.size()) ? 0 : 1);
    }
    close(ends[1]);
    char text[512];
    const ssize_t count = read(ends[0], text, sizeof text);
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return {text, static_cast<std::size_t>(count > 0 ? count : 0)};
  }

  fs::path folder_;
};

TEST_F(Permission, OwnNodeIsNoProblem) { EXPECT_EQ("", Problem()); }

TEST_F(Permission, ForbiddenReaderIsNamed) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become someone else";
  const std::string problem = ProblemOfAStranger();
  EXPECT_TRUE(Holds(problem, (folder_ / "dev" / "hidraw1").string() + " (mode 0600, owner root, group root)"))
      << problem;
  EXPECT_TRUE(Holds(problem, "hidraw3"));
  EXPECT_FALSE(Holds(problem, "hidraw0") || Holds(problem, "hidraw2")) << "no rule gives a right to others";
  EXPECT_TRUE(Holds(problem, "udev rules"));
}

TEST_F(Permission, ForbiddenBulkReaderIsNamed) {
  if (getuid() != 0) GTEST_SKIP() << "only root can become someone else";
  AddBulkNode();
  const std::string problem = ProblemOfAStranger();
  EXPECT_TRUE(
      Holds(problem, (folder_ / "dev" / "001" / "004").string() + " (mode 0600, owner root, group root)"))
      << problem;
}

TEST_F(Permission, BulkReaderThatAnotherProgramHoldsIsNamed) {
  AddBulkNode();
  EXPECT_EQ("", Problem());
  const std::string node = (folder_ / "dev" / "001" / "004").string();
  std::FILE* holder = popen(("read line <&0 9<" + node).c_str(), "w");
  ASSERT_NE(nullptr, holder);
  std::string problem;
  while (problem.empty()) problem = Problem();
  EXPECT_TRUE(problem.starts_with("the reader at " + node + " is held by sh (process ")) << problem;
  pclose(holder);
}

}  // namespace
}  // namespace tavlyn::boundary
