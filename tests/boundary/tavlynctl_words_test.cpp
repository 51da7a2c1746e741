// What the tools print: error words in words, and nothing that a terminal obeys.
#include <algorithm>
#include <fstream>
#include <string>

#include "tests/boundary/simulated_run.h"
#include "tools/printable.h"
#include "tools/tavlynctl/output.h"
#include "tools/tavlynctl/trouble/error_words.h"

namespace tavlyn::boundary {
namespace {

bool IsAscii(const std::string& text) {
  return std::ranges::all_of(text, [](char c) { return c == '\n' || (c >= ' ' && c < '\x7F'); });
}

TEST(TavlynctlWords, EveryErrorWordHasItsWords) {
  std::ifstream header(TAVLYN_TYPES);
  int words = 0;
  for (std::string line; std::getline(header, line);) {
    unsigned word = 0;
    if (std::sscanf(line.c_str(), "#define TAVLYN_ERR_%*[A-Z0-9_] %xu", &word) != 1) continue;
    ++words;
    const std::string told = ctl::ErrorWords(word);
    EXPECT_NE(told, "") << line;
    EXPECT_FALSE(told.starts_with("several failures")) << line;
  }
  EXPECT_GE(words, 40);
}

TEST(TavlynctlWords, WordsOfJoinedNumbers) {
  EXPECT_EQ(ctl::ErrorWords(0), "the library names no reason; the device refused, or its answer was none");
  EXPECT_EQ(ctl::ErrorWords(0x100002), "the configuration has not been read");
  EXPECT_EQ(ctl::ErrorWords(0x201012), "a value is out of its range");
  EXPECT_EQ(ctl::ErrorWords(0x5000203),
            "a report could not be sent; the device did not answer; the card analyzer failed");
  EXPECT_EQ(ctl::ErrorWords(0x81000202), "a report could not be sent; an item was not transferred");
  EXPECT_EQ(ctl::ErrorWords(0x91000000), "a file failed its integrity test");
  EXPECT_EQ(ctl::ErrorWords(0xB0000000), "several failures, whose numbers have joined");
}

TEST(TavlynctlWords, WhatADeviceTellsMovesNoCursor) {
  testing::internal::CaptureStdout();
  ctl::Show({{"schema", 1}, {"command", "text"}, {"platform", "a\x1B[2Jb\r\n\x7F"}}, false);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "platform  a?[2Jb???\n");
  testing::internal::CaptureStdout();
  ctl::ShowEvent({},
                 "swipe 1 \xC2\x9B"
                 "2Jb\n",
                 false);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "swipe 1 ?2Jb?\n");
}

TEST(TavlynctlWords, WhatIsFilteredKeepsItsColumn) {
  testing::internal::CaptureStdout();
  ctl::Show({{"schema", 1}, {"command", "list"}, {"rows", {{{"a", "\xC2\x9B"}, {"b", 1}}}}}, false);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "rows\n  a  b\n  ?  1\n");
}

TEST(TavlynctlWords, OneFilterForEveryText) {
  EXPECT_EQ(Printable("\xC2\xA9 \xE2\x82\xAC \xF0\x9F\x92\xB3"), "\xC2\xA9 \xE2\x82\xAC \xF0\x9F\x92\xB3");
  for (const char* sequence :
       {"\x1B", "\x7F", "\xC2\x80", "\xC2\x9B", "\xD8\x9C", "\xE2\x80\x8E", "\xE2\x80\xA8", "\xE2\x80\xA9",
        "\xE2\x80\xAE", "\xE2\x81\xA6", "\xE2\x81\xA9", "\xED\xA0\x80"}) {
    EXPECT_EQ(Printable("a" + std::string(sequence) + "b"), "a?b") << sequence;
  }
  EXPECT_EQ(Printable({"\0", 1}), "?");
  EXPECT_EQ(Printable("\x9B["), "?[");
  EXPECT_EQ(Printable("\xC0\x9B"), "??") << "longer than it needs to be";
  EXPECT_EQ(Printable("\xE2\x80"), "??") << "cut";
  EXPECT_EQ(Printable("\xF4\x90\x80\x80"), "?") << "beyond the last character";
}

TEST(TavlynctlWords, JsonIsPureAscii) {
  testing::internal::CaptureStdout();
  ctl::Show({{"platform", "\xC2\x9B\x7F\xC2\xA9\xE2\x80\xAE\xFF"}}, true);
  const std::string shown = testing::internal::GetCapturedStdout();
  EXPECT_TRUE(IsAscii(shown)) << shown;
  EXPECT_EQ(Json::parse(shown)["platform"], "\xC2\x9B\x7F\xC2\xA9\xE2\x80\xAE\xEF\xBF\xBD");
}

class ToolWords : public SimulatedRun {};

TEST_F(ToolWords, NamesOfFilesAndVendorsAreFiltered) {
  std::ofstream(folder_ / "TavlynVIDPID.txt")
      << "VID=\"19E5\" PID=\"2021\" VENDORNAME=\"x\x1B]0;owned\x07\xC2\x9B\"\n";
  const auto ended = Run("--device plus:2@19E5:2021 --do 'refuse 20'",
                         {"ctl list", "name=$(printf 'a\\033[2Jb\\nc\\302\\233'); ctl check \"$name\"",
                          "name=$(printf '\\033]0;x'); ctl \"$name\"",
                          "ctl check \"$(printf '\\377')\" --json", "ctl watch --timeout 0"});
  EXPECT_EQ(ended[0].status, 4);
  EXPECT_TRUE(Holds(ended[0].out, "x?]0;owned??")) << ended[0].out;
  EXPECT_TRUE(Holds(ended[0].err, "x?]0;owned??")) << ended[0].err;
  EXPECT_TRUE(Holds(ended[1].err, " a?[2Jb?c?")) << ended[1].err;
  EXPECT_TRUE(Holds(ended[2].err, "there is no command ?]0;x")) << ended[2].err;
  EXPECT_TRUE(Json::parse(ended[3].out).contains("error"));
  EXPECT_TRUE(Holds(ended[4].err, "watching card reader 0 (x?]0;owned??")) << ended[4].err;
  for (const Ended& one : ended) EXPECT_TRUE(IsAscii(one.out + one.err)) << one.out << one.err;
}

TEST_F(ToolWords, TheSimulatorFiltersToo) {
  const Ended ended = RunLine(kSim + " run --interactive -- true <<END\nbo\x1Bgus\xC2\x9B\nEND");
  EXPECT_EQ(ended.err, "tavlynsim: bo?gus?: no such command; help lists them\n");
  EXPECT_EQ(RunLine(kSim + " run --card \"$(printf 'x\\302\\233')\" -- true").err,
            "tavlynsim: x?: a card is HEX:BITS\n");
  EXPECT_TRUE(IsAscii(RunLine(kSim + " \"$(printf '\\033]0;x')\"").err));
}

TEST_F(ToolWords, OneDocumentOfAListThatFailsHalfWay) {
  const auto ended =
      Run("--device plus:2 --device reader --do '#1 refuse 20'", {"ctl list --json", "ctl list"});
  EXPECT_EQ(ended[0].status, 4);
  const Json document = Json::parse(ended[0].out, nullptr, false);
  ASSERT_TRUE(document.is_object()) << ended[0].out;
  EXPECT_EQ(document["devices"].size(), 2u);
  EXPECT_EQ(document["error"]["code"], 4);
  EXPECT_FALSE(Holds(ended[1].out, "error")) << ended[1].out;
}

}  // namespace
}  // namespace tavlyn::boundary
