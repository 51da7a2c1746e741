// tavlynsim serve, and the commands that speak to it.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "sim/carriers/wire.h"
#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynsimServe : public SimulatedRun {
 protected:
  // Lines for a shell in the folder, where $sim and $ctl are the programs; whatever still serves at the
  // socket s is ended after them.
  Ended Shell(const std::string& lines) {
    return RunLine("cd " + folder_.string() + "; sim=" + kSim + "; ctl=" + kCtl + "\n" + lines +
                   "\nended=$?; test -S s && $sim stop --socket s; exit $ended");
  }
  static inline const std::string kBegin = "eval \"$(" + kSim + " serve --background --socket s ";
};

// Programs that talk to one device at the same time would take each other's replies, as on a real one.
TEST_F(TavlynsimServe, SeveralProgramsSeeTheSameDevices) {
  const Ended ended =
      Shell(kBegin +
            "--device plus:2 --device sonar)\"\n$ctl watch --count 2 >watched & $sim do '#1 card "
            "0102:13' '#2 range 44'; until grep card watched; do :; done; $sim do '#1 take'; wait "
            "$!; cat watched; $ctl range --json --device 1");
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_TRUE(ended.out.starts_with("card 13 bits 0201\ncard 13 bits 0201\ngone 13 bits 0201\n"))
      << ended.out;
  EXPECT_TRUE(Holds(ended.out, "\"inches\": 44")) << ended.out;
}

TEST_F(TavlynsimServe, WaitsUntilSomethingWasSeen) {
  const Ended ended = Shell(
      kBegin +
      "--device reader --device sonar)\"\n$sim wait --device 1 --seen 'relay on' --seen 'beep 2 long' & "
      "$ctl beep 2 --long; $ctl relay on; $ctl beep 2 --long; wait $!; echo $?\n"
      "$sim wait --device 1 --seen 'relay on' --seen 'relay off' --seconds 0.02; echo $?\n"
      "$sim wait --seen 'relay on'; echo $?\n"
      "for line in 'relay onn' 'leds blue' 'beep 2' 'beep x long' beeper; do $sim wait --seen \"$line\" "
      "2>told; "
      "echo $?; done; cat told >&2");
  EXPECT_TRUE(Holds(ended.out, "\n0\n123\n1\n1\n1\n1\n1\n1\n")) << ended.out;
  EXPECT_EQ(ended.err,
            "tavlynsim: not seen: relay off; seen:\n  beep 2 long\n  relay on\n  beep 2 long\n"
            "tavlynsim: seen: not for a sonar\n"
            "tavlynsim: beeper: seen has no such line; it has leds off|red|green|red+green|automatic, relay "
            "on|off, beeper on|off, beep N short|long\n");
}

TEST_F(TavlynsimServe, WhatProgramsNeedIsPrinted) {
  const Ended ended = Shell(
      "mkdir \"it's here\"; eval \"$($sim serve --background --serial COM3 --socket \"it's "
      "here/$(printf 'a\\nb')\")\"\n$ctl list --json; $sim env --json; $sim env; $sim stop; ls it*");
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::string socket = (folder_ / "it's here/a\nb").string();
  const std::size_t env = ended.out.find("{\"TAVLYNSIM_SOCKET\"");
  ASSERT_NE(env, std::string::npos) << ended.out;
  const std::size_t lines = ended.out.find("\nexport ", env);
  const Json needed = Json::parse(ended.out.substr(env, lines - env));
  EXPECT_EQ(needed["TAVLYNSIM_SOCKET"], socket);
  EXPECT_TRUE(needed.contains("TAVLYNAPI_PORT_DIR"));
  EXPECT_TRUE(std::string(needed["LD_LIBRARY_PATH"]).ends_with("/lib/tavlynapi/simulator"));
  EXPECT_TRUE(Holds(ended.out, "it'\\''s here/a\nb'\n")) << ended.out;
  EXPECT_TRUE(
      ended.out.ends_with("simulator'\n"
                          "export TAVLYNAPI_PORT_DIR='" +
                          std::string(needed["TAVLYNAPI_PORT_DIR"]) + "'\n"))
      << ended.out;
}

TEST_F(TavlynsimServe, SearchPathIsThatOfTheShellThatAsks) {
  const Ended ended =
      Shell(kBegin + ")\"\nLD_LIBRARY_PATH=/some/where; $sim env; eval \"$($sim env)\"; $sim env");
  std::istringstream lines(ended.out);
  std::vector<std::string> paths;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("export LD_LIBRARY_PATH")) paths.push_back(line);
  }
  ASSERT_EQ(paths.size(), 2u) << ended.out << ended.err;
  EXPECT_TRUE(paths[0].ends_with("/simulator:/some/where'")) << paths[0];
  EXPECT_EQ(paths[0], paths[1]);
}

TEST_F(TavlynsimServe, ASignalEndsItAndNothingIsLeft) {
  const Ended ended = Shell(
      "mkfifo told; $sim serve --json --socket s --ready-fd 3 3>told >out & read -r line <told; echo "
      "\"$line\"; "
      "ls -l s | cut -c1-10; kill $!; wait $!; echo $?; test -e s; echo $?");
  EXPECT_EQ(ended.out, (folder_ / "s").string() + "\nsrw-------\n0\n1\n") << ended.err;
  EXPECT_EQ(Json::parse(TextOf(folder_ / "out"))["TAVLYNSIM_SOCKET"], (folder_ / "s").string());
}

TEST_F(TavlynsimServe, TheSocketOfOneThatRunsIsKept) {
  const Ended ended = Shell(kBegin + ")\"\n$sim serve --socket s; echo $?; $ctl list --json | head -c 1");
  EXPECT_EQ(ended.out, "125\n{");
  EXPECT_TRUE(Holds(ended.err, "/s: is the socket of a process that runs\n")) << ended.err;
}

TEST_F(TavlynsimServe, WhatIsNoSocketIsKept) {
  const Ended ended = Shell(
      "echo mine >s; $sim serve --socket s; echo $?; cat s; ln -sf nowhere s; $sim serve --socket s; "
      "echo $?; readlink s; $sim serve --socket none/s; echo $?; $sim serve --socket " +
      std::string(120, 'x') + "; echo $?");
  EXPECT_EQ(ended.out, "125\nmine\n125\nnowhere\n125\n125\n") << ended.err;
  EXPECT_TRUE(Holds(ended.err, "/s: is there already and is no socket\n")) << ended.err;
}

// Of several that find the socket of one that was killed, one has it.
TEST_F(TavlynsimServe, TheSocketOfOneThatWasKilledIsReplaced) {
  const Ended ended = Shell(
      "$sim serve --socket s >/dev/null & $sim wait --socket s; kill -9 $!; wait $!; test -S s || echo lost\n"
      ">ended; for n in 1 2 3 4; do ($sim serve --socket s >out$n; echo $? >>ended) & done\n"
      "until test $(wc -l <ended) = 3; do :; done; $sim env --socket s | wc -l; $sim stop --socket s; wait; "
      "cat ended");
  EXPECT_EQ(ended.out, "3\n125\n125\n125\n0\n") << ended.err;
  std::size_t told = 0;
  for (std::size_t at = 0; (at = ended.err.find("a process that runs", at)) != std::string::npos; ++at)
    ++told;
  EXPECT_EQ(told, 3u) << ended.err;
}

TEST_F(TavlynsimServe, EndsWithItsParent) {
  const std::string untilGone = "while test -e s; do :; done; echo gone\n";
  EXPECT_EQ(
      Shell("sh -c '" + kSim +
            " serve --background --with-parent --socket s >/dev/null; test -e s && echo here'\n" + untilGone)
          .out,
      "here\ngone\n");
  EXPECT_EQ(Shell("mkfifo told; (sh -c '" + kSim + " serve --with-parent --socket s >/dev/null 2>&1 & " +
                  kSim + " wait --socket s; echo >told') & read x <told; " + untilGone)
                .out,
            "gone\n");
  // One that has never been or is no more.
  EXPECT_EQ(Shell("$sim serve --with-process 2147483646 --socket s >/dev/null; echo $?").out, "0\n");
}

TEST_F(TavlynsimServe, TypedCommandsAreAnswered) {
  const Ended ended = Shell(kBegin + ")\"\n$sim do list 'plug plus:2' 'card 01:8' bogus list; echo $?");
  EXPECT_EQ(ended.out, "1 7A31:3BFA reader\n2\n1\n");
  EXPECT_EQ(ended.err, "tavlynsim: bogus: no such command; help lists them\n");
  const Ended run = RunLine(kSim + " run -- sh -c '" + kSim + " do \"card 0102:13\" && " + kCtl + " read; " +
                            kSim + " env; echo $?'");
  EXPECT_EQ(run.out, "card 13 bits 0201\n125\n") << run.err;
  EXPECT_TRUE(Holds(run.err, "those of tavlynsim run")) << run.err;
}

TEST_F(TavlynsimServe, WhoWaitsIsToldWhenItIsThere) {
  EXPECT_EQ(Shell("$sim serve --socket s >/dev/null & $sim wait --socket s && $sim stop --socket s && wait "
                  "$!; echo $?")
                .out,
            "0\n");
  const Ended none = Shell("$sim wait --socket s --seconds 0.02; echo $?; $sim do list; echo $?");
  EXPECT_EQ(none.out, "125\n1\n");
  EXPECT_TRUE(Holds(none.err, "s: no tavlynsim is there")) << none.err;
  EXPECT_TRUE(Holds(none.err, "--socket is missing, and TAVLYNSIM_SOCKET is not set")) << none.err;
}

TEST_F(TavlynsimServe, WordsThatDoNotGoTogetherAreRefused) {
  for (const char* words :
       {"--background --interactive", "--with-parent --with-process 1", "--ready-fd 77", "--ready-fd x",
        "--with-process 0", "--device plus:12", "--background --card 01"}) {
    EXPECT_EQ(Shell(std::string("$sim serve ") + words).status, 1) << words;
  }
}

// Requests that no stand-in sends, on one connection: each gets its answer.
TEST_F(TavlynsimServe, AnyRequestIsAnswered) {
  const Ended begun =
      Shell(kBegin + "--device plus:2 --device magstripe --device sonar --serial COM3 --with-process " +
            std::to_string(getpid()) + ")\"\nmv s kept; mv kept t");
  const int socket = sim::wire::Connect((folder_ / "t").c_str());
  ASSERT_GE(socket, 0) << begun.err;
  std::mt19937 random(7);
  const auto below = [&](unsigned end) { return static_cast<unsigned>(random() % end); };
  for (int times = 0; times < 3000; ++times) {
    sim::wire::Message message;
    message.code = static_cast<std::uint8_t>(below(11));  // all but kEnd
    message.key = below(4) == 0 ? static_cast<sim::Key>(random()) : below(6);
    const std::string text = "#1 card 0102:13 plug walk list swipe";
    const std::size_t length = below(2) == 0 ? below(20) : below(100);
    for (std::size_t i = 0; i < length; ++i)
      message.body.push_back(below(2) == 0 ? static_cast<std::uint8_t>(text[below(36)])
                                           : static_cast<std::uint8_t>(below(256)));
    ASSERT_TRUE(sim::wire::Send(socket, message) && sim::wire::Receive(socket, message)) << times;
    EXPECT_LE(message.code, 3);
  }
  sim::wire::Message end;
  end.code = static_cast<std::uint8_t>(sim::wire::Op::kEnd);
  EXPECT_TRUE(sim::wire::Send(socket, end) && sim::wire::Receive(socket, end));
  close(socket);
}

}  // namespace
}  // namespace tavlyn::boundary
