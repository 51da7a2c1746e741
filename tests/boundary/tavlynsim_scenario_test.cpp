// tavlynsim --scenario: what a scenario says happens, and what it expects is looked at.
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "sim/carriers/wire.h"
#include "tests/boundary/house_scenarios.h"
#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class Scenarios : public SimulatedRun {
 protected:
  // The lines after the first, in the file "a".
  void Write(const std::string& lines) { std::ofstream(folder_ / "a") << "tavlyn-scenario 1\n" << lines; }
  Ended Play(const std::string& options, const std::string& command) {
    return RunLine("cd " + folder_.string() + " && ctl=" + kCtl + " && " + kSim + " run --scenario a " +
                   options + " -- sh -c 'export ctl=" + kCtl + "; " + command + "'");
  }
};

TEST_F(Scenarios, OfTheHouseAreMet) {
  const std::vector<HouseScenario> all = HouseScenarios();
  for (const HouseScenario& scenario : all) {
    ASSERT_FALSE(scenario.command.empty()) << scenario.file;
    const Ended ended =
        RunLine("PATH=" + fs::path(kCtl).parent_path().string() + ":$PATH; " + kSim + " run --scenario " +
                scenario.file.string() + " -- sh -c '" + scenario.command + "'");
    EXPECT_EQ(ended.status, 0) << scenario.file << ended.out << ended.err;
    EXPECT_TRUE(ended.err.ends_with(" expectations met\n")) << ended.err;
  }
  EXPECT_GE(all.size(), 15u);
}

TEST_F(Scenarios, WhatIsNotMetIsTold) {
  const struct {
    const char* lines;
    const char* command;
    const char* told;
  } kCases[] = {
      {"expect by 2 d relay on\n", "$ctl list; sleep 3",
       "a:3: expect by 2 d relay on: at 2 s the relay is off\n"},
      {"expect at 2 d relay on\n", "$ctl relay on; $ctl relay off; sleep 3",
       "a:3: expect at 2 d relay on: at 2 s the relay is off\n"},
      {"expect by 1234.5 d relay on\n", "$ctl list; sleep 1235",
       "a:3: expect by 1234.5 d relay on: at 1234.5 s the relay is off\n"},
      {"expect by 2 d relay on\n", "$ctl list; $ctl relay off",
       " s the program had ended; the relay is off\n"},
      {"expect from 0 to 9 d led red off\n", "$ctl led red; sleep 10", " the red LED is on\n"},
      {"expect never d command 90\n", "$ctl relay on --store", " command 90 was sent 1 time\n"},
      {"expect end d command 8C03 2\n", "$ctl beep", " command 8C03 was sent 1 time\n"},
      {"expect end d beeped 3\n", "$ctl beep 2", " it beeped 2 times\n"},
      {"expect end d iIDHoldTO is 900\n", "$ctl list", " iIDHoldTO is 1000\n"},
      {"expect end d exchanges 1000\n", "$ctl list", " exchanges\n"},
      {"expect end d absent\n", "$ctl list", " it is there\n"},
      {"at 0 d unplug\nexpect end d present\n", "$ctl list; true",
       ": expect end d present: at 0 s it is gone\n"},
      {"expect by 1 d relay on\n", ":", "a:3: expect by 1 d relay on: at 0 s nothing had begun\n"},
  };
  for (const auto& [lines, command, told] : kCases) {
    Write(std::string("device d reader\n") + lines);
    const Ended ended = Play("", command);
    EXPECT_EQ(ended.status, 123) << lines << ended.err;
    EXPECT_TRUE(Holds(ended.err, told)) << told << ended.err;
    EXPECT_TRUE(ended.err.ends_with("tavlynsim: a: 0 of 1 expectations met\n")) << ended.err;
  }
}

TEST_F(Scenarios, TheStatusOfACommandThatFailsCounts) {
  Write("device d reader\nexpect end d relay on\n");
  EXPECT_EQ(Play("", "exit 7").status, 7);
}

TEST_F(Scenarios, MistakesAreToldWithTheirLinesBeforeAnythingRuns) {
  const struct {
    const char* line;  // the third
    const char* told;
  } kCases[] = {
      {"divice d reader", "divice: no such line; did you mean device?"},
      {"device d reader", "d: two devices of this name"},
      {"device e reader of mine", "a KIND has no blanks"},
      {"device e toaster", "toaster: no such kind of device; tavlynsim devices shows the kinds"},
      {"device e", "it is device NAME KIND"},
      {"set iIDHoldT 1000", "iIDHoldT: no word of a reader's configuration; did you mean iIDHoldTO?"},
      {"set iIDHoldTO 1001", "1001: iIDHoldTO is 0 to 12750 in steps of 50"},
      {"set bStripFac 2", "2: bStripFac is 0 to 1"},
      {"set iIDHoldTO@1 1000", "a:3: the reader has 1 configuration\n"},
      {"set iIDHoldTO@x 1000", "iIDHoldTO@x: after @ is a configuration, 0 to 10"},
      {"firmware 3 0 1",
       "a firmware word is of processor 0 to 2, index 0 to 4, in up to 8 hexadecimal digits"},
      {"template none.txt", "none.txt: "},
      {"at 5.5 d take\nend 5", "5.5 s is after the end at 5 s"},
      {"expect by 30 d relay on\nend 3", "30 s is after the end at 3 s"},
      {"expect from 1 to 30 d relay on\nend 3", "30 s is after the end at 3 s"},
      {"template a", "a is not a configuration file"},
      {"begin soon", "a scenario begins with an exchange or a card"},
      {"at soon d take", "soon: a time is in seconds, 0 to 86400"},
      {"at 1 e take", "e: no device of this name; did you mean d?"},
      {"at 1 d dance", "dance: no such command; help lists them"},
      {"at 1 d card 01:9", "01:9: the bytes hold 8 bits"},
      {"at 1 d swipe ;1?", "swipe: not for a reader"},
      {"expect soon d relay on", "after expect is by, at, from, never or end"},
      {"expect from 2 to 1 d relay on", "it is from T to a later T"},
      {"expect by 1 d relay half", "relay is on or off"},
      {"expect by 1 d led blue on", "an LED is red or green, on or off"},
      {"expect by 1 d beeped often", "beeped needs a number"},
      {"expect never d command XY", "command needs hexadecimal bytes, then perhaps how often"},
      {"expect end d", "what is expected is missing"},
      {"expect end d dances", "dances: no such expectation; there are relay on|off, "},
      {"expect end d iIDHoldTO is long", "long: iIDHoldTO is 0 to 12750 in steps of 50"},
      {"end never", "never: a time is in seconds, 0 to 86400"},
  };
  for (const auto& [line, told] : kCases) {
    Write(std::string("device d reader\n") + line + "\n");
    const Ended ended = RunLine("cd " + folder_.string() + " && " + kSim + " check a");
    EXPECT_EQ(ended.status, 1) << line;
    EXPECT_TRUE(ended.err.starts_with("tavlynsim: a:3: ") && Holds(ended.err, told)) << line << ended.err;
    EXPECT_EQ(ended.err.find('\n'), ended.err.size() - 1) << ended.err;
  }
  Write("device d sonar\nset iIDHoldTO 1000\nexpect end d relay on\nat 1 d\nend 1\nend 2\n");
  const Ended all = Play("", "echo ran");
  EXPECT_EQ(all.status, 1);
  EXPECT_EQ(all.out, "");
  EXPECT_EQ(all.err,
            "tavlynsim: a:3: iIDHoldTO: this device has no such setting\n"
            "tavlynsim: a:4: d has nothing of the kind\n"
            "tavlynsim: a:5: it is at T NAME COMMAND\n"
            "tavlynsim: a:7: the end is given already\n");
}

TEST_F(Scenarios, SettingsOfOtherProductsAreNumbersThatTheyCanHave) {
  const struct {
    const char* device;
    const char* line;
    const char* told;  // empty: nothing
  } kCases[] = {
      {"sonar", "set MaxDistS 40", ""},
      {"sonar", "set PingRateS 402", "402: no value that PingRateS can have"},
      {"sonar", "set MaxDistS far", "far: MaxDistS is a number"},
      {"sonar", "set Beeper 3", "Beeper: this device has no such setting"},
      {"sonar", "expect end d Beeper is 3", "d has nothing of the kind"},
      {"magstripe", "set UserField[10].Keybyte[15] 255", ""},
      {"magstripe", "set UserField[11].Skip 1", "UserField[11].Skip: this device has no such setting"},
      {"magstripe", "set LedColor[4] 4", "4: no value that LedColor[4] can have"},
      {"magstripe", "set LUID -1", "-1: no value that LUID can have"},
      {"magstripe", "expect end d LedColor[4] is green", "green: LedColor[4] is a number"},
      {"reader", "expect end d MaxDistS is 3", "d has nothing of the kind"},
      {"reader", "set MaxDistS 3", "MaxDistS: no word of a reader's configuration"},
  };
  for (const auto& [device, line, told] : kCases) {
    Write(std::string("device d ") + device + "\n" + line + "\n");
    const Ended ended = RunLine("cd " + folder_.string() + " && " + kSim + " check a");
    EXPECT_EQ(ended.status, *told == '\0' ? 0 : 1) << line << ended.err;
    EXPECT_TRUE(*told == '\0' ? ended.err.empty() : Holds(ended.err, told)) << line << ended.err;
  }
}

TEST_F(Scenarios, AFileThatIsNoneIsRefused) {
  const struct {
    const char* make;
    const char* told;
  } kCases[] = {
      {"rm -f a", "a: "},
      {"rm -f a; mkfifo a", "a: not a file\n"},
      {": >a", "a:1: the file is empty; it begins with tavlyn-scenario 1\n"},
      {"echo mine >a", "a:1: this is no scenario; it begins with tavlyn-scenario 1\n"},
      {"echo tavlyn-scenario 2 >a", "a:1: version 2 is none that this tavlynsim knows; it knows 1\n"},
      {"echo tavlyn-scenario 1 >a", "a:1: there is no device; device NAME KIND makes one\n"},
  };
  for (const auto& [make, told] : kCases) {
    const Ended ended = RunLine("cd " + folder_.string() + "; rm -f a; " + make + "; " + kSim + " check a");
    EXPECT_EQ(ended.status, 1) << make;
    EXPECT_TRUE(Holds(ended.err, told)) << told << ended.err;
  }
}

TEST_F(Scenarios, OtherDevicesAreNotBesideIt) {
  Write("device d reader\n");
  for (const char* other : {"--device reader", "--card 0102:13", "--serial COM3"}) {
    const Ended ended = Play(other, "echo ran");
    EXPECT_EQ(ended.status, 1) << other;
    EXPECT_EQ(ended.out, "") << other;
  }
}

TEST_F(Scenarios, TheResultsAreJunitXml) {
  Write("device d reader\nexpect never d command 8C03 # <\"&\nexpect end d relay off\n");
  EXPECT_EQ(Play("--junit r.xml", "$ctl beep; $ctl beep >/dev/null").status, 123);
  const std::string xml = TextOf(folder_ / "r.xml");
  EXPECT_TRUE(Holds(xml, "<testsuite name=\"a\" tests=\"2\" failures=\"1\" errors=\"0\" time=\"")) << xml;
  EXPECT_TRUE(Holds(xml, "name=\"line 3: expect never d command 8C03\"")) << xml;
  EXPECT_TRUE(Holds(xml, "<failure message=\"at ")) << xml;
  EXPECT_TRUE(Holds(xml, "name=\"line 4: expect end d relay off\" time=\"")) << xml;
  const struct {
    const char* place;
    const char* told;
  } kBad[] = {{"none/r.xml", "none/r.xml: cannot be written: "}, {"pipe", "pipe: not a file\n"}};
  EXPECT_EQ(RunLine("mkfifo " + (folder_ / "pipe").string()).status, 0);
  for (const auto& [place, told] : kBad) {
    const Ended ended = Play(std::string("--junit ") + place, "$ctl list >/dev/null");
    EXPECT_EQ(ended.status, 125);
    EXPECT_TRUE(Holds(ended.err, told)) << ended.err;
  }
  EXPECT_TRUE(fs::is_fifo(folder_ / "pipe"));
}

// What a program sent, among what it asks all the time; keys are covered.
TEST_F(Scenarios, TheResultsHaveWhatLastWentOver) {
  Write(
      "device d reader\ndevice e reader\nat 0 d card 0102:13\nexpect never d command 8C03\n"
      "expect by 10 d relay on\nexpect end e relay on\n");
  EXPECT_EQ(Play("--junit r.xml", "$ctl read; $ctl beep; $ctl watch --timeout 20 --json >/dev/null").status,
            123);
  const std::string xml = TextOf(folder_ / "r.xml");
  const std::size_t beep = xml.find("line 5: ");
  const std::size_t relay = xml.find("line 6: ");
  const std::size_t other = xml.find("line 7: ");
  ASSERT_TRUE(beep < relay && relay < other && other < xml.size()) << xml;
  const std::string ofBeep = xml.substr(beep, relay - beep);
  EXPECT_TRUE(Holds(ofBeep, "<system-out>what last went over, each exchange when it did:\n")) << ofBeep;
  EXPECT_TRUE(Holds(ofBeep, " s &gt; 00 8C 03 ")) << ofBeep;
  const std::string ofRelay = xml.substr(relay, other - relay);
  EXPECT_TRUE(Holds(ofRelay, " s &gt; 00 8F 00 00 00 00 00 00 00 &lt; 00 01 02 ")) << ofRelay;
  EXPECT_TRUE(Holds(ofRelay, " times)\n")) << ofRelay;
  std::size_t exchanges = 0;
  for (std::size_t at = 0; (at = ofRelay.find(" s &gt; ", at)) != std::string::npos; ++at) ++exchanges;
  EXPECT_TRUE(exchanges == 9 || exchanges == 10) << ofRelay;
  EXPECT_TRUE(Holds(xml.substr(other), "<system-out>")) << xml;
}

TEST_F(Scenarios, TheEndStopsTheProgram) {
  Write("device d reader\nend 2\nexpect end d present\n");
  EXPECT_EQ(Play("", "exec $ctl watch").status, 0);
  const Ended asked =
      Play("", "trap \"echo asked; exit 3\" TERM; $ctl list >/dev/null; while :; do sleep 1; done");
  EXPECT_EQ(asked.out, "asked\n");
  EXPECT_EQ(asked.status, 3);
  const Ended deaf = Play("", "trap \"\" TERM; $ctl list >/dev/null; while :; do sleep 1; done");
  EXPECT_EQ(deaf.status, 0) << deaf.err;
}

// A device that a typed command takes away for good is not there for what the scenario does.
TEST_F(Scenarios, ACommandThatFailsCounts) {
  Write("device d reader\nat 1 d card 0102:13\nat 2 d replug\nexpect never d relay on\n");
  const Ended ended = Play("--junit r.xml", "$ctl list >/dev/null; " + kSim + " do reset; sleep 3");
  EXPECT_EQ(ended.status, 123);
  EXPECT_EQ(ended.err,
            "tavlynsim: a:3: at 1 d card 0102:13: card: no such device\n"
            "tavlynsim: a:4: at 2 d replug: replug: no such device\n"
            "tavlynsim: a: 1 of 1 expectations met, 2 commands failed\n");
  const std::string xml = TextOf(folder_ / "r.xml");
  EXPECT_TRUE(Holds(xml, " tests=\"3\" failures=\"0\" errors=\"2\" ")) << xml;
  EXPECT_TRUE(Holds(xml,
                    "name=\"line 3: at 1 d card 0102:13\" time=\"1.000\">\n"
                    "      <error message=\"card: no such device\"/>\n"))
      << xml;
  EXPECT_EQ(Play("", "$ctl list >/dev/null; " + kSim + " do reset; sleep 3; exit 7").status, 7);
}

TEST_F(Scenarios, OfDevicesThatAreServed) {
  Write("device d reader\nat 0 d card 0102:13\nexpect end d relay on\n");
  const Ended ended =
      RunLine("cd " + folder_.string() + "; " + kSim + " serve --scenario a --socket s >/dev/null 2>told & " +
              kSim + " wait --socket " + (folder_ / "s").string() + "; eval \"$(" + kSim + " env --socket " +
              (folder_ / "s").string() + ")\"; " + kCtl + " read; " + kSim +
              " stop; echo $?; wait $!; echo $?; cat told >&2");
  EXPECT_EQ(ended.out, "card 13 bits 0201\n123\n123\n") << ended.err;
  const std::string told = "tavlynsim: a:4: expect end d relay on: at ";
  EXPECT_EQ(ended.err.find(told), 0u) << ended.err;
  const std::string half = ended.err.substr(0, ended.err.size() / 2);
  EXPECT_TRUE(half.ends_with("tavlynsim: a: 0 of 1 expectations met\n")) << ended.err;
  EXPECT_EQ(half + half, ended.err);
}

TEST_F(Scenarios, WhoStopsOneInTheBackgroundHasItsResult) {
  const std::string begin = "cd " + folder_.string() + "; eval \"$(" + kSim +
                            " serve --background --scenario a --junit r.xml)\"; " + kCtl +
                            " list >/dev/null; ";
  const std::string stop = kSim + " stop; echo $?; cat r.xml";
  Write("device d reader\nexpect by 1 d relay on\nexpect end d present\n");
  const Ended unmet = RunLine(begin + stop);
  EXPECT_TRUE(unmet.out.starts_with("123\n")) << unmet.out;
  EXPECT_TRUE(Holds(unmet.out, "failures=\"1\"")) << unmet.out;
  EXPECT_TRUE(Holds(unmet.err, "tavlynsim: a:3: expect by 1 d relay on: ")) << unmet.err;
  EXPECT_TRUE(unmet.err.ends_with("tavlynsim: a: 1 of 2 expectations met\n")) << unmet.err;

  // Its end decides everything, and the devices stay until the result is taken.
  Write("device d reader\nexpect by 1 d relay off\nexpect end d relay off\nend 2\n");
  const Ended met = RunLine(begin + "sleep 3; " + kCtl + " relay on >/dev/null; " + stop);
  EXPECT_TRUE(met.out.starts_with("0\n")) << met.out;
  EXPECT_TRUE(Holds(met.out, "failures=\"0\"")) << met.out;
  EXPECT_EQ(met.err, "tavlynsim: a: 2 of 2 expectations met\n");
}

// One that is killed tells nothing, and that is no success.
TEST_F(Scenarios, NoResultIsNoSuccess) {
  const std::string name = folder_ / "s";
  sim::net::Socket listening = sim::wire::ListenAt(name.c_str());
  ASSERT_NE(listening, sim::net::kNone);
  std::thread killed([&] {
    std::vector<pollfd> polled{{listening, POLLIN, 0}};
    sim::net::Poll(polled, -1);
    sim::net::Socket asking = sim::wire::Accept(listening);
    sim::net::Close(asking);
  });
  const Ended ended = RunLine(kSim + " stop --socket " + name);
  killed.join();
  sim::net::Close(listening);
  EXPECT_EQ(ended.status, 125);
  EXPECT_EQ(ended.err, "tavlynsim: tavlynsim has ended\n");
}

}  // namespace
}  // namespace tavlyn::boundary
