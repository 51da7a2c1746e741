// tavlynctl error: what an error word says, without any device.
#include "tests/boundary/simulated_run.h"
#include "tools/tavlynctl/trouble/error_words.h"

namespace tavlyn::boundary {
namespace {

Ended Explained(const std::string& words) { return RunLine(kCtl + " error " + words); }

std::string NamesIn(const Json& error) {
  std::string names;
  for (const Json& part : error["parts"]) names += part["name"].get<std::string>().substr(11) + " ";
  return names;
}

TEST(TavlynctlError, ASumIsTakenApart) {
  const Ended ended = Explained("0x20202");
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(
      ended.out,
      "0x20202  a report could not be sent; a read of the configuration failed\n"
      "  TAVLYN_ERR_WRITE_REPORT 0x202\n"
      "    Replaces the word: a feature report could not be written in six attempts.\n"
      "    See whether the device is still plugged in and may be opened (docs/linux.md); connect again. The "
      "call that failed may have added a word that says what it was sent for.\n"
      "  TAVLYN_ERR_CONFIG_READ 0x20000\n"
      "    Added: a configuration could not be read; of a magstripe reader: replaces the word.\n"
      "    Call ReadCfg again. If it fails again, unplug the device or connect again; until it succeeds the "
      "records hold what was read before.\n");
}

TEST(TavlynctlError, TheSameWordInEveryForm) {
  const Json document = ParsedText(Explained(
      "0x202 514 0X202 WRITE_REPORT TAVLYN_ERR_WRITE_REPORT write_report tavlyn_err_write_report --json"));
  ASSERT_EQ(document["errors"].size(), 7U);
  for (const Json& one : document["errors"]) EXPECT_EQ(one, document["errors"][0]);
  EXPECT_EQ(document["errors"][0]["word"], "0x202");
  EXPECT_EQ(document["errors"][0]["words"], "a report could not be sent");
  EXPECT_EQ(document["errors"][0]["parts"][0]["value"], "0x202");
}

TEST(TavlynctlError, EachNameIsInItsOwnWord) {
  std::string names;
  for (const ctl::ErrorWord& one : ctl::AllErrorWords()) names += std::string(one.name) + " ";
  const Json document = ParsedText(Explained(names + "--json"));
  ASSERT_EQ(document["errors"].size(), ctl::AllErrorWords().size());
  for (std::size_t at = 0; at < ctl::AllErrorWords().size(); ++at) {
    const std::string name = ctl::AllErrorWords()[at].name;
    EXPECT_TRUE(Holds(NamesIn(document["errors"][at]), name.substr(11) + " ")) << name;
  }
}

// Numbers that were added to say which of several it is; what they leave open is told.
TEST(TavlynctlError, NumbersThatWereAdded) {
  const Json errors = ParsedText(
      Explained("0x201034 0x201021 0x5000002 0x5000202 0x20000001 0x81000202 0 0x201001 --json"))["errors"];
  EXPECT_EQ(NamesIn(errors[0]), "TIME_PARMS ");
  EXPECT_EQ(NamesIn(errors[1]), "WALK_UP ID_DISP_PARMS ");
  EXPECT_EQ(NamesIn(errors[2]), "COMMAND ANALYZER_STATUS ");
  EXPECT_EQ(NamesIn(errors[3]), "WRITE_REPORT COMMAND ANALYZER_STATUS ");
  EXPECT_EQ(NamesIn(errors[4]), "SET_MODULE ");
  EXPECT_EQ(NamesIn(errors[5]), "WRITE_REPORT SECURE ");
  EXPECT_EQ(NamesIn(errors[6]), "");
  EXPECT_EQ(NamesIn(errors[7]), "SONAR_PARMS ");
}

TEST(TavlynctlError, WhatIsNoWord) {
  const Ended unknown = Explained("WRITE_REPROT");
  EXPECT_EQ(unknown.status, kUsage);
  EXPECT_EQ(unknown.err, "tavlynctl: there is no error word WRITE_REPROT; did you mean WRITE_REPORT?\n");
  EXPECT_EQ(Explained("TAVLYN_ERR_RESTE").err,
            "tavlynctl: there is no error word TAVLYN_ERR_RESTE; did you mean TAVLYN_ERR_RESET?\n");
  for (const char* word : {"0x123456789", "4294967296", "0x", "12g", "\"\""}) {
    const Ended ended = Explained(word);
    EXPECT_EQ(ended.status, kUsage) << word;
    EXPECT_TRUE(Holds(ended.err, " is not an error word of 32 bits")) << ended.err;
  }
}

}  // namespace
}  // namespace tavlyn::boundary
