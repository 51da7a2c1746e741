// Completion in the shells themselves, with their own scripts. What each shell makes of the same candidates
// is tested on a few lines, the candidates on many. PowerShell, which Debian does not have, is not run: its
// script is compared with what it has to ask.
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

using Offered = std::set<std::string>;

// The first words of lines; after a tab they have a text.
Offered WordsIn(const std::string& lines) {
  std::istringstream stream(lines);
  Offered all;
  for (std::string line; std::getline(stream, line);) {
    if (line.ends_with('\r')) line.pop_back();
    all.insert(line.substr(0, line.find('\t')));
  }
  return all;
}

std::string Script(const char* program, const char* shell) {
  return std::string(TAVLYN_COMPLETION) + "/" + program + "/" + shell;
}

// A shell's own waits are none of the clock's.
const std::string kShell =
    "export PATH=" + fs::path(TAVLYNCTL).parent_path().string() + ":$PATH; unset LD_PRELOAD; ";

class Completion : public SimulatedRun {
 protected:
  std::string InBash(const std::string& line) const {
    return kShell + "cd " + folder_.string() + "; bash -c '. " + Script("tavlynctl", "bash") + "; . " +
           Script("tavlynsim", "bash") +
           "; COMP_LINE=$1; COMP_POINT=${#1}; _${1%% *} ${1%% *}; "
           "[ ${#COMPREPLY[@]} -eq 0 ] || printf \"%s\\n\" \"${COMPREPLY[@]}\"' bash '" +
           line + "'";
  }

  std::string InZsh(const std::string& line) const {
    for (const char* program : {"tavlynctl", "tavlynsim"}) {
      fs::copy_file(Script(program, "zsh"), folder_ / ("_" + std::string(program)),
                    fs::copy_options::overwrite_existing);
    }
    return kShell + "cd " + folder_.string() + "; zsh -f " TAVLYN_ZSH_CANDIDATES " " + folder_.string() +
           " '" + line + "'";
  }

  std::string InFish(const std::string& line) const {
    return kShell + "cd " + folder_.string() + "; HOME=" + folder_.string() +
           " fish --no-config -c 'source " + Script("tavlynctl", "fish") + "; source " +
           Script("tavlynsim", "fish") + "; complete -C \"" + line + "\"'";
  }
};

TEST_F(Completion, WhatMayComeNext) {
  struct Case {
    const char* words;  // after the program
    Offered offered;
  };
  const Case kCases[] = {
      {"conf", {"config"}},
      {"config s", {"save", "set", "show"}},
      {"--json config ge", {"get"}},
      {"--com 3 li", {"list"}},
      {"cards ''", {"set"}},
      {"config sh", {"show"}},
      {"config set bBeepI", {"bBeepID="}},
      {"config set CfgFlags2.bBeepID=", {"CfgFlags2.bBeepID=off", "CfgFlags2.bBeepID=on"}},
      {"config set iIDHoldTO=", {}},
      {"config get PingR", {"PingRateS"}},
      {"magfield set 11 le", {"length="}},
      {"led gr", {"green"}},
      {"led red gr", {"green"}},
      {"relay ''", {"off", "on"}},
      {"relay on ''", {}},
      {"cards set 1 EF04 ''", {"high", "low"}},
      {"beep --prod", {"--product"}},
      {"beep --product s", {"sonar"}},
      {"beep --product=r", {"--product=reader"}},
      {"list --he", {"--help"}},
      {"config load x.hwg --s", {"--secure", "--strict"}},
      {"check ''", {":files"}},
      {"help config de", {"defaults"}},
      {"--help nothing ''", {}},
      {"--device=", {}},
      {"info --device ''", {}},
  };
  for (const Case& one : kCases) {
    const Ended ended = RunLine(kCtl + " complete -- " + one.words);
    EXPECT_EQ(ended.status, 0) << one.words;
    EXPECT_EQ(WordsIn(ended.out), one.offered) << one.words;
    EXPECT_EQ(ended.err, "") << one.words;
  }
  const Case kSimulator[] = {
      {"ru", {"run"}},
      {"run --carrier u", {"uhid"}},
      {"serve --carrier u", {"uhid"}},
      {"serve --w", {"--with-ids", "--with-keys", "--with-parent", "--with-process"}},
      {"run --device ''", {"reader", "plus:", "magstripe", "sonar", "replay:", "attached"}},
      {"run --repeat -- tavlynctl li", {":command 3"}}};
  for (const Case& one : kSimulator) {
    EXPECT_EQ(WordsIn(RunLine(kSim + " complete -- " + one.words).out), one.offered) << one.words;
  }
}

TEST_F(Completion, EveryCommandIsOffered) {
  const Offered offered = WordsIn(RunLine(kCtl + " complete -- ''").out);
  for (const char* word : {"list", "config", "magfield", "help"}) EXPECT_TRUE(offered.contains(word));
  EXPECT_FALSE(offered.contains("complete"));
}

TEST_F(Completion, DevicesThatAreAttached) {
  const Ended all =
      Simulated("--device reader,serial=0400777777 --device plus:2,serial=12 --device sonar,luid=1",
                "complete -- info --device \"\"");
  EXPECT_EQ(all.out,
            "0\tcard reader, serial number 0400777777, /dev/hidraw-sim1\n"
            "0400777777\tcard reader, serial number 0400777777, /dev/hidraw-sim1\n"
            "luid:1\tcard reader, serial number 0400777777, /dev/hidraw-sim1; sonar sensor, "
            "/dev/hidraw-sim3\n"
            "1\tcard reader, serial number 12, /dev/hidraw-sim2\n"
            "serial:12\tcard reader, serial number 12, /dev/hidraw-sim2\n"
            "luid:2\tcard reader, serial number 12, /dev/hidraw-sim2\n"
            "2\tsonar sensor, /dev/hidraw-sim3\n");
  EXPECT_EQ(all.err, "");
  // Nothing is searched that is not on USB.
  EXPECT_EQ(Simulated("", "complete -- --com 3 info --device \"\"").out, "");
}

TEST_F(Completion, InEachShell) {
  std::ofstream(folder_ / "own.hwg") << "x";
  struct Case {
    const char* line;
    Offered offered;
    Offered inBash = {};  // which completes only what follows a sign
  };
  const Case kCases[] = {
      {"tavlynctl config s", {"save", "set", "show"}},
      {"tavlynctl config set CfgFlags2.bBeepID=",
       {"CfgFlags2.bBeepID=off", "CfgFlags2.bBeepID=on"},
       {"off", "on"}},
      {"tavlynctl check ow", {"own.hwg"}},
      {"tavlynsim run --carrier ", {"hidapi", "uhid", "vhci"}},
  };
  for (const Case& one : kCases) {
    EXPECT_EQ(WordsIn(RunLine(InBash(one.line)).out), one.inBash.empty() ? one.offered : one.inBash)
        << one.line;
    EXPECT_EQ(WordsIn(RunLine(InZsh(one.line)).out), one.offered) << one.line;
    EXPECT_EQ(WordsIn(RunLine(InFish(one.line)).out), one.offered) << one.line;
  }
}

// bash needs a function of its bash-completion package for it.
TEST_F(Completion, WordsOfTheCommandThatIsRun) {
  for (const std::string& line : {InZsh("tavlynsim run --repeat -- tavlynctl config s"),
                                  InFish("tavlynsim run --repeat -- tavlynctl config s")}) {
    EXPECT_EQ(WordsIn(RunLine(line).out), (Offered{"save", "set", "show"})) << line;
  }
}

TEST_F(Completion, DevicesInEachShell) {
  std::ofstream(folder_ / "shells") << InBash("tavlynctl info --device ") << "\n"
                                    << InZsh("tavlynctl info --device ") << "\n"
                                    << InFish("tavlynctl info --device ") << "\n";
  const Ended ended =
      RunLine(kSim + " run --device reader --device plus:2 -- sh " + (folder_ / "shells").string());
  EXPECT_EQ(WordsIn(ended.out), (Offered{"0", "1", "0400123456", "0400123457", "luid:1", "luid:2"}))
      << ended.out << ended.err;
  std::istringstream lines(ended.out);
  int count = 0;
  for (std::string line; std::getline(lines, line);) ++count;
  EXPECT_EQ(count, 18) << ended.out << ended.err;
}

TEST_F(Completion, PowerShellAsksTheProgram) {
  const std::string script = TextOf(Script("tavlynctl", "powershell"));
  EXPECT_TRUE(Holds(script, "Register-ArgumentCompleter -Native -CommandName 'tavlynctl', 'tavlynctl.exe'"));
  EXPECT_TRUE(Holds(script, "& $program complete '--' @given 2>$null"));
  EXPECT_TRUE(Holds(script, "-split \"`t\", 2"));
}

}  // namespace
}  // namespace tavlyn::boundary
