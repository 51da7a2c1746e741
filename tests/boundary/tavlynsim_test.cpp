// tavlynsim and the stand-in as an independent program sees them.
#include <sys/socket.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "sim/carriers/wire.h"
#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

TEST(Tavlynsim, ExitStatusIsTheCommands) {
  EXPECT_EQ(RunLine(kSim + " run -- true").status, 0);
  EXPECT_EQ(RunLine(kSim + " run -- sh -c 'exit 7'").status, 7);
  EXPECT_EQ(RunLine(kSim + " run -- sh -c 'kill -9 $$'").status, 137);
  EXPECT_EQ(RunLine(kSim + " run -- ./there-is-none").status, 127);
  EXPECT_EQ(RunLine(kSim + " run -- /etc/passwd").status, 126);
}

TEST(Tavlynsim, SignalsReachTheCommand) {
  const std::string openPipe = "pipe=$(mktemp -u); mkfifo $pipe; exec 3<>$pipe; rm $pipe; ";
  const std::string waitForEver = "read line <&3";
  EXPECT_EQ(RunLine(kSim + " run -- sh -c '" + openPipe + "kill -TERM $PPID; " + waitForEver + "'").status,
            143);
}

TEST(Tavlynsim, WrongWordsAreRefused) {
  for (const char* words :
       {"", "run", "run --device plus:12 -- true", "run --card 01 -- true", "run --do nothing -- true",
        "run --device sonar --card 01:8 -- true", "run --device magstripe --do 'range 3' -- true",
        "run --on 0 -- true", "run --carrier usb -- true", "run --carrier 1 -- true"}) {
    EXPECT_EQ(RunLine(kSim + " " + words).status, 1) << words;
  }
  EXPECT_EQ(RunLine(kSim + " ruin").err,
            "tavlynsim: there is no command ruin; did you mean run? tavlynsim --help says more\n");
  EXPECT_EQ(
      RunLine(kSim + " run --divice sonar -- true").err,
      "tavlynsim: there is no option --divice; did you mean --device? tavlynsim run --help says more\n");
  EXPECT_EQ(RunLine(kSim + " run --version").err,
            "tavlynsim: there is no option --version; tavlynsim run --help says more\n");
  EXPECT_EQ(RunLine(kSim + " run --device redaer -- true").err,
            "tavlynsim: redaer: no such kind of device; tavlynsim devices shows the kinds\n");
}

TEST(Tavlynsim, HelpAndVersion) {
  EXPECT_EQ(RunLine(kSim + " --version").out, "tavlynsim " TAVLYN_VERSION "\n");
  for (const char* words : {"", "run", "devices"}) {
    const Ended help = RunLine(kSim + " help " + words);
    EXPECT_EQ(help.status, 0) << help.err;
    EXPECT_EQ(help.out, RunLine(kSim + " " + words + " --help").out);
  }
  EXPECT_EQ(RunLine(kSim + " run --on x -- true").err,
            "tavlynsim: --on: x is not a whole number from 1 to 86400000; tavlynsim run --help says more\n");
}

TEST(Tavlynsim, HelpIsTypedToo) {
  const Ended typed = RunLine(kSim + " run --interactive -- true <<END\nhelp\nEND");
  EXPECT_TRUE(typed.err.starts_with("tavlynsim: card HEX:BITS         lays a card")) << typed.err;
  EXPECT_TRUE(Holds(typed.err, "\nvanish N              the device is gone")) << typed.err;
}

TEST(Tavlynsim, ACardWithMoreBitsThanBytesIsRefused) {
  const Ended ended = RunLine(kSim + " run --card 0102:99 -- true");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err, "tavlynsim: 0102:99: the bytes hold 16 bits\n");
}

TEST(Tavlynsim, DevicesAreListed) {
  const Ended devices = RunLine(kSim + " devices");
  EXPECT_EQ(devices.status, 0);
  EXPECT_TRUE(Holds(devices.out, "reader "));
  EXPECT_TRUE(Holds(devices.out, "plus:N "));
  EXPECT_TRUE(Holds(devices.out, "magstripe "));
  EXPECT_TRUE(Holds(devices.out, "sonar "));
}

TEST(Tavlynsim, DevicesAreToldApartBySerialNumberAndLuid) {
  const std::string three =
      kSim + " run --device reader --device plus:2,luid=7,serial=SN-7 --device reader@com3 -- ";
  const Json all = ParsedText(RunLine(three + kCtl + " list --json"));
  ASSERT_EQ(all["devices"].size(), 2u);
  EXPECT_EQ(all["devices"][0]["luid"], 1);
  EXPECT_EQ(all["devices"][1]["luid"], 7);
  const Json chosen = ParsedText(RunLine(three + kCtl + " info --device 1 --json"))["device"];
  EXPECT_EQ(chosen["serial_number"], "SN-7");
  const Json onLine = ParsedText(RunLine(three + kCtl + " --com 3 info --json"))["device"];
  EXPECT_EQ(onLine["serial_number"], "0400123458");
  EXPECT_EQ(onLine["luid"], 3);
}

TEST(Tavlynsim, EveryDeviceTakesItsOwnCommands) {
  EXPECT_EQ(RunLine(kSim + " run --device magstripe --do 'swipe ;12=34?' -- true").status, 0);
  EXPECT_EQ(RunLine(kSim + " run --device sonar --do 'walk 20:40:9 40:9:9' --do 'range 3' -- true").status,
            0);
}

TEST(Tavlynsim, NothingIsLeftBehind) {
  const Ended ended = RunLine(kSim + " run -- sh -c 'echo $TAVLYNSIM_SOCKET; test -S $TAVLYNSIM_SOCKET'");
  EXPECT_EQ(ended.status, 0);
  const std::string socket = ended.out.substr(0, ended.out.size() - 1);
  EXPECT_TRUE(socket.starts_with("/"));
  EXPECT_FALSE(std::filesystem::exists(socket));
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(socket).parent_path()));
}

TEST(Tavlynsim, SearchPathIsKept) {
  const Ended ended =
      RunLine("LD_LIBRARY_PATH=/some/where " + kSim + " run -- sh -c 'echo $LD_LIBRARY_PATH'");
  EXPECT_TRUE(ended.out.ends_with("/simulator:/some/where\n")) << ended.out;
}

TEST(Tavlynsim, DevicesGoWithTheSimulator) {
  const Ended ended =
      RunLine(kSim + " run -- sh -c '" + kCtl + " list; kill -9 $PPID; " + kCtl + " list; echo status $?'");
  EXPECT_TRUE(Holds(ended.out, "/dev/hidraw-sim1")) << ended.out;
  EXPECT_TRUE(Holds(ended.out, "status 2\n")) << ended.out;
}

TEST(Tavlynsim, TypedLinesActOnTheDevices) {
  // Waiting in the input when the command begins.
  const Ended ended = RunLine(kSim + " run --interactive -- " + kCtl +
                              " read --device 1 <<END\nplug plus:2\ncard 0102:13\nlist\nbogus\nEND\n");
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "card 13 bits 0201\n");
  EXPECT_EQ(ended.err,
            "tavlynsim: 2\n"
            "tavlynsim: ok\n"
            "tavlynsim: 1 7A31:3BFA reader\n"
            "2 7A31:3BFA plus:2\n"
            "tavlynsim: bogus: no such command; help lists them\n");
}

TEST(Tavlynsim, CardsComeAgain) {
  const Ended ended = RunLine(kSim + " run --device plus:2 --card 0A:8 --on 600 --off 600 --repeat -- " +
                              kCtl + " watch --count 4");
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "card 8 bits 0A\ngone 8 bits 0A\ncard 8 bits 0A\ngone 8 bits 0A\n");
}

class TavlynsimSocket : public SimulatedRun {};

// The connections of programs that misbehave, alongside that of one that does not.
TEST_F(TavlynsimSocket, OneProgramDoesNotHinderAnother) {
  const std::string told = folder_ / "told";
  ASSERT_EQ(mkfifo(told.c_str(), 0600), 0);
  // Stays until its input ends.
  std::FILE* running = popen(
      (kSim + " run --device plus:2 -- sh -c 'echo $TAVLYNSIM_SOCKET >" + told + "; cat'").c_str(), "w");
  ASSERT_NE(running, nullptr);
  std::string path;
  std::ifstream stream(told);
  std::getline(stream, path);
  const int good = sim::wire::Connect(path.c_str());
  const int silent = sim::wire::Connect(path.c_str());
  const int rubbish = sim::wire::Connect(path.c_str());
  const int unfinished = sim::wire::Connect(path.c_str());
  const int greedy = sim::wire::Connect(path.c_str());
  EXPECT_TRUE(good >= 0 && silent >= 0 && rubbish >= 0 && unfinished >= 0 && greedy >= 0);
  // Asks as long as there is room, and takes no answer.
  while (send(greedy, std::string(12, '\0').c_str(), 12, MSG_DONTWAIT) == 12) {
  }
  EXPECT_EQ(write(rubbish, std::string(64, '\xFF').c_str(), 64), 64);
  EXPECT_EQ(write(unfinished, "abc", 3), 3);

  std::vector<sim::Listed> list;
  for (int times = 0; times < 3; ++times) {
    sim::wire::Message message;
    message.code = static_cast<std::uint8_t>(sim::wire::Op::kList);
    ASSERT_TRUE(sim::wire::Send(good, message) && sim::wire::Receive(good, message));
    ASSERT_TRUE(sim::wire::UnpackList(message.body, list));
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].identity.pid, 0x3BFA);
  }
  sim::wire::Message unknown;
  unknown.code = 200;
  ASSERT_TRUE(sim::wire::Send(good, unknown) && sim::wire::Receive(good, unknown));
  EXPECT_EQ(unknown.code, static_cast<std::uint8_t>(sim::Outcome::kRefused));
  for (const int socket : {good, silent, rubbish, unfinished, greedy}) close(socket);
  EXPECT_EQ(pclose(running), 0);
}

TEST(Tavlynsim, CutListIsRefused) {
  std::vector<sim::Listed> list(1);
  list[0].identity.usages = {{1, 6}};
  list[0].identity.product = "reader";
  const std::vector<std::uint8_t> packed = sim::wire::PackList(list);
  EXPECT_TRUE(sim::wire::UnpackList(packed, list));
  for (std::size_t length = 0; length < packed.size(); ++length) {
    EXPECT_FALSE(sim::wire::UnpackList(std::span(packed).first(length), list)) << length;
  }
}

TEST(Tavlynsim, MissingKernelModuleIsTold) {
  struct Module {
    const char* place;
    const char* carrier;
    const char* name;
  };
  for (const Module& module : {Module{"/dev/uhid", "uhid", "uhid"},
                               Module{"/sys/devices/platform/vhci_hcd.0", "vhci", "vhci-hcd"}}) {
    if (std::filesystem::exists(module.place)) GTEST_SKIP() << module.place << " is there";
    const Ended ended = RunLine(kSim + " run --carrier " + module.carrier + " -- true");
    EXPECT_EQ(ended.status, 125);
    EXPECT_TRUE(Holds(ended.err, std::string("modprobe ") + module.name)) << ended.err;
  }
}

}  // namespace
}  // namespace tavlyn::boundary
