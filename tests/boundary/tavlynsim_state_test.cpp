// tavlynsim --state: what devices keep from one run to the next.
#include <fstream>
#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynsimState : public SimulatedRun {
 protected:
  // Lines for a shell in the folder; "run KIND WORDS" is tavlynctl on a device of this kind that keeps its
  // memory in the file kept.
  Ended Shell(const std::string& lines) {
    return RunLine("cd " + folder_.string() + "; sim=" + kSim + "; ctl=" + kCtl +
                   "\nrun() { kind=$1; shift; $sim run --state kept --device $kind -- $ctl \"$@\"; }\n" +
                   lines);
  }
};

TEST_F(TavlynsimState, EveryProductKeepsWhatWasCommitted) {
  const struct {
    const char* kind;
    const char* set;
    const char* get;
    const char* shown;
  } kProducts[] = {
      {"plus:2", "config set iIDHoldTO=2s --config 1", "config get iIDHoldTO --config 1", "2000"},
      {"plus:2", "config defaults save", "config get iIDHoldTO --config 1", "2000"},
      {"plus:2", "config set iIDHoldTO=3s --config 1", "config get iIDHoldTO --config 1", "3000"},
      {"plus:2", "config defaults restore --yes", "config get iIDHoldTO --config 1", "2000"},
      {"magstripe", "config set UserField[3].Keybyte[15]=7", "config get UserField[3].Keybyte[15]", "7"},
      {"sonar", "config set PingRateS=300", "config get PingRateS", "300"},
  };
  for (const auto& [kind, set, get, shown] : kProducts) {
    const std::string begin =
        std::string("test -s kept && grep -q '^device ") + kind + "' kept || rm -f kept; run " + kind;
    const Ended ended =
        Shell(begin + " " + set + " >/dev/null; run " + kind + " " + get + "; stat -c %a kept; ls");
    EXPECT_TRUE(Holds(ended.out, std::string("  ") + shown + "\n")) << set << ended.out << ended.err;
    EXPECT_TRUE(ended.out.ends_with("600\nkept\n")) << ended.out;
  }
}

TEST_F(TavlynsimState, KeysAreKept) {
  const std::string items = "[Blob1]\r\nhdr=20 7 5 9\r\ndata=C1 C2 C3 C4 C5\r\n";
  std::ofstream(folder_ / "keys.ini", std::ios::binary)
      << items << "[EOF]\r\niEndOfIniFile=" << Sum(items) << "\r\n";
  const Ended ended = Shell(
      "run reader keys load --yes keys.ini >/dev/null; run reader secure read 20070509 --show-keys; grep "
      "item kept");
  EXPECT_TRUE(Holds(ended.out, "C1C2C3C4C5")) << ended.out << ended.err;
  EXPECT_TRUE(ended.out.ends_with("item-200709 C1C2C3C4C5\n")) << ended.out;
}

// Of a mode that is in use at once, and stored by the commit.
TEST_F(TavlynsimState, WhatWasNotCommittedIsLost) {
  const std::string mode = "run plus:2 raw 8C 00 | grep reply\n";
  const Ended ended =
      Shell("run plus:2 raw 8C 80 5 >/dev/null\n" + mode +
            "$sim run --state kept --device plus:2 -- sh -c \"$ctl raw 8C 80 6; $ctl raw 90\" "
            ">/dev/null\n" +
            mode);
  EXPECT_EQ(ended.out, "reply   8C 00 00 00 00 00 00 00\nreply   8C 00 06 00 00 00 00 00\n") << ended.err;
}

TEST_F(TavlynsimState, WhatWasCommittedOutlivesAKill) {
  const Ended ended = Shell(
      "$sim serve --state kept --socket s >/dev/null & $sim wait --socket s; eval \"$($sim env --socket "
      "s)\"\n"
      "$ctl config set iIDHoldTO=2s >/dev/null; kill -9 $!; wait $!; run reader config get iIDHoldTO; ls");
  EXPECT_TRUE(Holds(ended.out, "  2000\n")) << ended.out << ended.err;
  EXPECT_TRUE(ended.out.ends_with("kept\ns\n")) << ended.out;
}

TEST_F(TavlynsimState, TwoDoNotShareAFile) {
  const Ended ended = Shell(
      "eval \"$($sim serve --background --state kept --socket s)\"; ln -s kept link\n$sim serve --state "
      "link; echo $?; "
      "$ctl config set iIDHoldTO=2s >/dev/null; $sim stop; run reader config get iIDHoldTO");
  EXPECT_TRUE(ended.out.starts_with("125\n")) << ended.out;
  EXPECT_TRUE(Holds(ended.out, "  2000\n")) << ended.out << ended.err;
  EXPECT_TRUE(Holds(ended.err, "/kept: another tavlynsim keeps its devices there\n")) << ended.err;
}

TEST_F(TavlynsimState, AFileThatDoesNotFitIsLeftAlone) {
  const struct {
    const char* change;
    const char* kind;
    const char* told;
  } kCases[] = {
      {":", "sonar",
       "kept:3: device 1 is reader 0400123456 here, and sonar 0600123456 on the command line\n"},
      {":", "plus:2",
       "kept:3: device 1 is reader 0400123456 here, and plus:2 0400123456 on the command line\n"},
      {":", "reader --device sonar", "kept:3: the devices here are 1, those on the command line 2\n"},
      {"sed -i '1s/1/2/' kept", "reader", "kept:1: version 2 is none that this tavlynsim knows\n"},
      {"sed -i '4s/0/x/' kept", "reader", "kept:4: luid is hexadecimal, two digits for each byte\n"},
      {"sed -i '$d' kept", "reader", ": the file ends too early\n"},
      {"echo mine >kept", "reader", "kept:1: this is not the state of simulated devices\n"},
      {"rm kept; mkfifo kept", "reader", "kept: not a file\n"},
      {"rm kept; mkdir kept", "reader", "kept: not a file\n"},
  };
  for (const auto& [change, kind, told] : kCases) {
    const Ended ended =
        Shell(std::string("rm -rf kept; run reader list >/dev/null; ") + change +
              "\ntest -f kept && cp kept before; $sim run --state kept --device " + kind +
              " -- echo ran; echo $?; test -f kept && cmp kept before; ls -a | grep -E 'lock|sim'");
    EXPECT_EQ(ended.out, "125\n") << told;
    EXPECT_TRUE(Holds(ended.err, told)) << told << ended.err;
  }
}

}  // namespace
}  // namespace tavlyn::boundary
