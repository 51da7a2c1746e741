// The manual pages and docs/tavlynctl.md against what the programs print, and the examples of the pages.
#include <algorithm>
#include <regex>
#include <set>
#include <string>

#include "tests/boundary/far_end.h"
#include "tests/boundary/simulated_run.h"
#include "tools/reference.h"

namespace tavlyn::boundary {
namespace {

using Names = std::set<std::string>;

const std::string kPath = "PATH=" + fs::path(TAVLYNCTL).parent_path().string() + ":$PATH; ";

std::string Page(const std::string& name) { return TextOf(fs::path(TAVLYN_MANUALS) / name); }

Names Found(const std::string& text, const std::regex& form) {
  Names all;
  for (std::sregex_iterator at(text.begin(), text.end(), form), end; at != end; ++at) all.insert((*at)[1]);
  return all;
}

Names OptionsOfHelp(const std::string& help) {
  static const std::regex form(R"(\n  (?:-\w,)?--([\w-]+))");
  return Found(help, form);
}

Names OptionsOfPage(const std::string& page) {
  static const std::regex form(R"(\.It Fl -([\w-]+))");
  return Found(page, form);
}

// What follows "config set" in the list of commands of its page, up to the next command.
std::string PartOfPage(const std::string& page, const std::string& words) {
  const std::size_t begin = page.find(".It Xo Cm " + words + "\n");
  if (begin == std::string::npos) return {};
  return page.substr(begin, page.find(".It Xo Cm ", begin + 1) - begin);
}

// That of the program's pages which has the command.
std::string PageOf(const std::string& program, const std::string& words) {
  const std::string name = fs::path(program).filename().string();
  for (const fs::directory_entry& file : fs::directory_iterator(TAVLYN_MANUALS)) {
    if (!file.path().filename().string().starts_with(name)) continue;
    if (!PartOfPage(TextOf(file.path()), words).empty()) return TextOf(file.path());
  }
  return {};
}

void Add(Names& names, const Names& more) { names.insert(more.begin(), more.end()); }

// Every command by its words, found by asking for help.
void AddBelow(const std::string& program, const std::string& above, Names& all) {
  const std::string help = RunLine(program + " " + above + " --help").out;
  const std::size_t list = help.find("SUBCOMMAND");
  if (list != std::string::npos) {
    static const std::regex form(R"(\n  ([a-z]+) {2,}\S)");
    for (const std::string& word : Found(help, form)) {
      if (word == "help") continue;
      AddBelow(program, above + (above.empty() ? "" : " ") + word, all);
    }
  }
  if (!above.empty() && !Holds(help, "] SUBCOMMAND")) all.insert(above);
}

TEST(ManualPages, OptionsOfEachCommandAreThoseOfItsHelp) {
  for (const std::string& program : {kCtl, kSim}) {
    const std::string own = Page(fs::path(program).filename().string() + ".1");
    const Names common = OptionsOfHelp(RunLine(program + " --help").out);
    Names commands;
    AddBelow(program, "", commands);
    EXPECT_GE(commands.size(), program == kCtl ? 45U : 2U);
    for (const std::string& words : commands) {
      const std::string page = PageOf(program, words);
      EXPECT_NE(page, "") << words << " has no page";
      Names options = OptionsOfPage(PartOfPage(page, words));
      for (const char* one : {"help", "json"}) {
        if (common.contains(one)) options.insert(one);
      }
      EXPECT_EQ(options, OptionsOfHelp(RunLine(program + " " + words + " --help").out)) << words;
    }
    const std::string part = own.substr(own.find(".Sh OPTIONS"));
    EXPECT_EQ(OptionsOfPage(part.substr(0, part.find(".Sh COMMANDS"))), common);
  }
}

TEST(ManualPages, EveryCommandOfThePagesHasHelp) {
  static const std::regex form(R"(\.It Xo Cm ([a-z ]+))");
  Names told;
  for (const fs::directory_entry& file : fs::directory_iterator(TAVLYN_MANUALS)) {
    Add(told, Found(TextOf(file.path()), form));
  }
  Names commands;
  AddBelow(kCtl, "", commands);
  AddBelow(kSim, "", commands);
  EXPECT_EQ(told, commands);
}

TEST(ManualPages, EveryCommandHasAnExample) {
  Names commands;
  AddBelow(kCtl, "", commands);
  Names shown;
  for (const Example& one : ctl::Examples()) shown.insert(one.command);
  EXPECT_EQ(shown, commands);
}

// A name in the sources that looks like a variable of the library or of a tool is one of those in the pages.
TEST(ManualPages, EveryVariableIsInAPage) {
  static const std::regex inSources(
      R"re("(TAVLYN(?:API|CTL|SIM)?_[A-Z_]+|XDG_[A-Z_]+|HOME|VISUAL|EDITOR)")re");
  static const std::regex inPages(R"(\.It Ev (\w+))");
  Names used;
  for (const char* folder : {"src", "sim", "tools/tavlynctl", "tools/tavlynsim"}) {
    for (const fs::directory_entry& file :
         fs::recursive_directory_iterator(fs::path(TAVLYN_SOURCES) / folder)) {
      if (file.is_regular_file()) Add(used, Found(TextOf(file.path()), inSources));
    }
  }
  Names told;
  for (const char* page : {"tavlynctl.1", "tavlynsim.1", "tavlynapi.3"})
    Add(told, Found(Page(page), inPages));
  for (const char* ofEveryProgram : {"LD_LIBRARY_PATH", "NO_COLOR"}) told.erase(ofEveryProgram);
  used.erase("TAVLYN_ERR_");  // how the names of the error words begin
  EXPECT_EQ(told, used);
}

TEST(ManualPages, EveryCallIsInThePageOfTheLibrary) {
  static const std::regex calls(R"(\.Fn (\w+) [,.]\n)");
  static const std::regex lines(R"((\w+)\n)");
  const std::string page = Page("tavlynapi.3");
  EXPECT_EQ(Found(page.substr(page.find(".Sh CALLS")), calls), Found(TextOf(TAVLYN_EXPORT_NAMES), lines));
}

class ExampleRuns : public SimulatedRun {
 protected:
  // Some examples have fixed ports.
  static void SetUpTestSuite() { EXPECT_TRUE(LeaveForOwnNetwork()); }

  // With addresses of this machine in place of those that stand for a real network.
  static std::string OnLoopback(std::string text) {
    const std::string network = "10.0.0.";
    for (std::size_t at = 0; (at = text.find(network, at)) != std::string::npos;) {
      text.replace(at, network.size(), "127.5.9.");
    }
    return text;
  }
};

TEST_F(ExampleRuns, OfTavlynctl) {
  for (const Example& one : ctl::Examples()) {
    if (std::string_view(one.command).starts_with("fleet ")) continue;  // tests/broker/ has a broker for them
    const auto ended = Run(OnLoopback(one.devices), {kPath + one.before, kPath + OnLoopback(one.line)});
    EXPECT_EQ(ended[0].status, 0) << one.before << "\n" << ended[0].err;
    EXPECT_EQ(ended[1].status, 0) << one.line << "\n" << ended[1].err;
    EXPECT_NE(ended[1].out, "") << one.line;
  }
}

TEST_F(ExampleRuns, OfTavlynsim) {
  for (const Example& one : sim::Examples()) {
    const Ended ended = RunLine(kPath + one.line);
    EXPECT_EQ(ended.status, 0) << one.line << "\n" << ended.err;
    EXPECT_NE(ended.out, "") << one.line;
  }
}

}  // namespace
}  // namespace tavlyn::boundary
