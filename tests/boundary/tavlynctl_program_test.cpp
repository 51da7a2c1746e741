// The command line of tavlynctl: what is refused, help, and outputs that cannot be written.
#include <gtest/gtest.h>

#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

TEST(TavlynctlProgram, WrongWords) {
  struct Case {
    const char* words;
    const char* problem;
  };
  constexpr Case kCases[] = {
      {"--ascii", "a command is missing; tavlynctl --help"},
      {"lisp", "there is no command lisp; did you mean list? tavlynctl --help"},
      {"wach --decode", "there is no command wach; did you mean watch? tavlynctl --help"},
      {"--decode watc", "there is no option --decode; tavlynctl --help"},
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
      {"info --device -1",
       "--device: -1 is not an index, a serial number, a path or luid:N; tavlynctl info --help"},
      {"info --device luid:010",
       "--device: luid:010 is not an index, a serial number, a path or luid:N; tavlynctl info --help"},
      {"led off --all --device 1", "--device excludes --all; tavlynctl led --help"},
      {"list --json=maybe", "--json takes no value; tavlynctl list --help"},
      {"beep 6", "COUNT: 6 is not a whole number from 1 to 5; tavlynctl beep --help"},
      {"led gren",
       "COLOUR: gren is not one of red, green, off, auto; did you mean green? tavlynctl led --help"},
      {"help lsit", "there is no command lsit; did you mean list? tavlynctl --help"},
      {"help config st", "there is no command st; did you mean set? tavlynctl --help"},
  };
  for (const Case& one : kCases) {
    const Ended ended = RunLine(kCtl + " " + one.words);
    EXPECT_EQ(ended.status, 1) << one.words;
    EXPECT_EQ(ended.err, "tavlynctl: " + std::string(one.problem) + " says more\n");
    EXPECT_EQ(ended.out, "");
  }
  for (const char* words : {"read --timeout soon", "read --timeout -1", "watch --timeout 1e300"}) {
    EXPECT_EQ(RunLine(kCtl + " " + words).status, 1) << words;
  }
}

TEST(TavlynctlProgram, WrongWordsAreJsonToo) {
  const Ended ended = RunLine(kCtl + " config set bDspHex=1 --json --dryrun");
  EXPECT_EQ(ended.status, 1);
  const Json document = Json::parse(ended.out);
  EXPECT_EQ(document["command"], "config set");
  EXPECT_EQ(document["error"]["code"], 1);
  EXPECT_TRUE(Holds(document["error"]["text"], "there is no option --dryrun")) << ended.out;
}

TEST(TavlynctlProgram, EveryCommandHasHelp) {
  const Ended all = RunLine(kCtl + " --help");
  EXPECT_EQ(all.status, 0);
  EXPECT_EQ(all.err, "");
  for (const char* words : {"list", "config set", "ble save", "range", "secure write"}) {
    const Ended help = RunLine(kCtl + " " + words + " --help");
    EXPECT_EQ(help.status, 0) << words;
    EXPECT_TRUE(Holds(help.out, std::string("Usage: tavlynctl ") + words)) << help.out;
    EXPECT_TRUE(Holds(help.out, "--json")) << help.out;
  }
}

TEST(TavlynctlProgram, HelpIsACommandToo) {
  for (const char* words : {"", "list", "config", "config set"}) {
    const Ended help = RunLine(kCtl + " help " + words);
    EXPECT_EQ(help.status, 0) << help.err;
    EXPECT_EQ(help.out, RunLine(kCtl + " " + words + " --help").out);
  }
}

TEST(TavlynctlProgram, TheVersionIsThatOfToolAndLibrary) {
  const Ended version = RunLine(kCtl + " --version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "tavlynctl " TAVLYN_VERSION ", library " TAVLYN_VERSION "\n");
}

TEST(TavlynctlProgram, JsonMayStandInFront) {
  EXPECT_EQ(Json::parse(Simulated("", "--json list").out)["command"], "list");
  EXPECT_EQ(Json::parse(Simulated("", "config --json get bDspHex").out)["command"], "config get");
}

TEST(TavlynctlProgram, OutputThatCannotBeWrittenIsTold) {
  for (const char* words : {"list", "list --json", "watch --count 1", "read"}) {
    const Ended ended = Simulated("--card 0A:8", words + std::string(" >/dev/full"));
    EXPECT_EQ(ended.status, 6) << words;
    EXPECT_TRUE(Holds(ended.err, "tavlynctl: the standard output cannot be written\n")) << ended.err;
  }
}

TEST(TavlynctlProgram, ClosedOutputIsTold) {
  const Ended ended = Simulated("", "list >&-");
  EXPECT_EQ(ended.status, 6);
  EXPECT_EQ(ended.err, "tavlynctl: the standard output is closed; >/dev/null drops what is shown\n");
}

}  // namespace
}  // namespace tavlyn::boundary
