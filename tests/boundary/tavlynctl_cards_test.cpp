// tavlynctl reading and watching cards on simulated readers.
#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlCards : public SimulatedRun {};

TEST_F(TavlynctlCards, ReadGivesTheCard) {
  const Ended text = Simulated("--card 01020303:26", "read");
  EXPECT_EQ(text.status, 0) << text.err;
  EXPECT_EQ(text.out, "card 26 bits 03030201\n");

  const Ended json = Simulated("--card 000102030405060708090A0B:90", "read --json");
  EXPECT_EQ(json.status, 0) << json.err;
  const Json document = Json::parse(json.out);
  EXPECT_EQ(document["command"], "read");
  EXPECT_EQ(document["bits"], 90);
  EXPECT_EQ(document["id"], "0B0A09080706050403020100");
  EXPECT_EQ(document["bytes"], Json({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
}

TEST_F(TavlynctlCards, ReadOfAnotherReader) {
  const Ended read = Simulated("--device reader --device reader --do 'card 0A:8'", "read --device 1");
  EXPECT_EQ(read.status, 0) << read.err;
  EXPECT_EQ(read.out, "card 8 bits 0A\n");
}

TEST_F(TavlynctlCards, ReadWaitsOnlySoLong) {
  const Ended read = Simulated("", "read --timeout 0.6 --json");
  EXPECT_EQ(read.status, 5);
  EXPECT_EQ(read.err, "tavlynctl: no card came in time\n");
  EXPECT_EQ(Json::parse(read.out)["error"]["code"], 5);
}

TEST_F(TavlynctlCards, EachCardIsTold) {
  const Ended watch = Run("--device plus:2 --card 010203:20 --card 0A0B:16 --on 900 --off 600",
                          {"ctl watch --json --count 4"})[0];
  ASSERT_EQ(watch.status, 0) << watch.err;
  const std::vector<Json> lines = JsonLines(watch.out);
  ASSERT_EQ(lines.size(), 4u);
  const Json first{{"schema", 1}, {"command", "watch"}, {"event", "card"},
                   {"bits", 20},  {"id", "030201"},     {"bytes", {1, 2, 3}}};
  EXPECT_EQ(Unstamped(lines[0]), first);
  EXPECT_EQ(lines[1]["event"], "gone");
  EXPECT_EQ(lines[1]["id"], "030201");
  EXPECT_EQ(lines[2]["id"], "0B0A");
  EXPECT_EQ(lines[3]["event"], "gone");
  EXPECT_EQ(watch.err, "");
}

TEST_F(TavlynctlCards, AReaderThatAnnouncesItsCards) {
  const Ended watch = Run("--device plus:2@7A31:3BFB --card 0A0B:16", {"ctl watch --count 2"})[0];
  EXPECT_EQ(watch.status, 0);
  EXPECT_EQ(watch.out, "card 16 bits 0B0A\ngone 16 bits 0B0A\n");
}

TEST_F(TavlynctlCards, ItEndsInTime) {
  const Ended inTime = Run("--card 0A:8", {"ctl watch --timeout 1"})[0];
  EXPECT_EQ(inTime.status, 0);
  EXPECT_EQ(inTime.out, "card 8 bits 0A\n");
  EXPECT_EQ(Run("", {"ctl watch --timeout 0.3"})[0].status, 5);
}

// The program's output goes where upon looks, and the signal goes to the simulator.
TEST_F(TavlynctlCards, ASignalEndsIt) {
  const Ended stopped =
      RunLine("upon 'kill -INT $pid' sh -c 'exec " TAVLYNSIM
              " run --device plus:2 --card 0A:8 --on 3600000 -- " TAVLYNCTL " watch >&2 2>/dev/null'");
  EXPECT_EQ(stopped.status, 0);
  EXPECT_EQ(stopped.err, "card 8 bits 0A\n");
}

// By the machine's own clock; on it the wait for a plus reader that has gone takes minutes.
TEST_F(TavlynctlCards, ALongWaitIsTold) {
  const Ended list = Run("--device plus:3 --do 'vanish 40'",
                         {"unset LD_PRELOAD; upon 'kill -TERM $pid' " TAVLYNCTL " list"})[0];
  EXPECT_EQ(list.status, 143);
  EXPECT_TRUE(
      list.err.starts_with("tavlynctl: still waiting for a device on USB; if one has gone, this can take 180 "
                           "seconds; Ctrl-C ends it\n"))
      << list.err;
}

TEST_F(TavlynctlCards, ALostReaderIsNoticed) {
  const Ended watch = Run("--device plus:2", {"upon 'typed unplug' " TAVLYNCTL " watch --no-wait"})[0];
  EXPECT_EQ(watch.status, 4);
  EXPECT_TRUE(Holds(watch.err, "does not answer, error word 0x1000")) << watch.err;
}

}  // namespace
}  // namespace tavlyn::boundary
