// tavlynctl reading and watching cards on simulated readers.
#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlCards : public SimulatedRun {};

TEST_F(TavlynctlCards, ReadGivesTheCard) {
  const Ended text = Simulated("--card 01020303:26", "read");
  EXPECT_EQ(0, text.status) << text.err;
  EXPECT_EQ("card 26 bits 03030201\n", text.out);

  const Ended json = Simulated("--card 000102030405060708090A0B:90", "read --json");
  EXPECT_EQ(0, json.status) << json.err;
  const Json document = Json::parse(json.out);
  EXPECT_EQ("read", document["command"]);
  EXPECT_EQ(90, document["bits"]);
  EXPECT_EQ("0B0A09080706050403020100", document["id"]);
  EXPECT_EQ(Json({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), document["bytes"]);
}

TEST_F(TavlynctlCards, ReadOfAnotherReader) {
  const Ended read = Simulated("--device reader --device reader --do 'card 0A:8'", "read --device 1");
  EXPECT_EQ(0, read.status) << read.err;
  EXPECT_EQ("card 8 bits 0A\n", read.out);
}

TEST_F(TavlynctlCards, ReadWaitsOnlySoLong) {
  const Ended read = Simulated("", "read --timeout 0.6 --json");
  EXPECT_EQ(5, read.status);
  EXPECT_EQ("tavlynctl: no card came in time\n", read.err);
  EXPECT_EQ(5, Json::parse(read.out)["error"]["code"]);
}

TEST_F(TavlynctlCards, EachCardIsTold) {
  const Ended watch = Run("--device plus:2 --card 010203:20 --card 0A0B:16 --on 900 --off 600",
                          {"ctl watch --json --count 4"})[0];
  ASSERT_EQ(0, watch.status) << watch.err;
  const std::vector<Json> lines = JsonLines(watch.out);
  ASSERT_EQ(4u, lines.size());
  const Json first{{"schema", 1}, {"command", "watch"}, {"event", "card"},
                   {"bits", 20},  {"id", "030201"},     {"bytes", {1, 2, 3}}};
  EXPECT_EQ(first, lines[0]);
  EXPECT_EQ("gone", lines[1]["event"]);
  EXPECT_EQ("030201", lines[1]["id"]);
  EXPECT_EQ("0B0A", lines[2]["id"]);
  EXPECT_EQ("gone", lines[3]["event"]);
  EXPECT_EQ("", watch.err);
}

TEST_F(TavlynctlCards, AReaderThatAnnouncesItsCards) {
  const Ended watch = Run("--device plus:2@7A31:3BFB --card 0A0B:16", {"ctl watch --count 2"})[0];
  EXPECT_EQ(0, watch.status);
  EXPECT_EQ("card 16 bits 0B0A\ngone 16 bits 0B0A\n", watch.out);
}

TEST_F(TavlynctlCards, ItEndsInTime) {
  const Ended inTime = Run("--card 0A:8", {"ctl watch --timeout 1"})[0];
  EXPECT_EQ(0, inTime.status);
  EXPECT_EQ("card 8 bits 0A\n", inTime.out);
  EXPECT_EQ(5, Run("", {"ctl watch --timeout 0.3"})[0].status);
}

// The program's output goes where upon looks, and the signal goes to the simulator.
TEST_F(TavlynctlCards, ASignalEndsIt) {
  const Ended stopped =
      RunLine("upon 'kill -INT $pid' sh -c 'exec " TAVLYNSIM
              " run --device plus:2 --card 0A:8 --on 3600000 -- " TAVLYNCTL " watch >&2 2>/dev/null'");
  EXPECT_EQ(0, stopped.status);
  EXPECT_EQ("card 8 bits 0A\n", stopped.err);
}

// By the machine's own clock; on it the wait for a plus reader that has gone takes minutes.
TEST_F(TavlynctlCards, ALongWaitIsTold) {
  const Ended list = Run("--device plus:3 --do 'vanish 40'",
                         {"unset LD_PRELOAD; upon 'kill -TERM $pid' " TAVLYNCTL " list"})[0];
  EXPECT_EQ(143, list.status);
  EXPECT_TRUE(
      list.err.starts_with("tavlynctl: still waiting for the device; if it has gone, this can take 180 "
                           "seconds; Ctrl-C ends it\n"))
      << list.err;
}

TEST_F(TavlynctlCards, ALostReaderIsNoticed) {
  const Ended watch = Run("--device plus:2", {"upon 'typed unplug' " TAVLYNCTL " watch"})[0];
  EXPECT_EQ(4, watch.status);
  EXPECT_TRUE(Holds(watch.err, "error word 0x1000202: a report could not be sent; the device did not answer"))
      << watch.err;
}

}  // namespace
}  // namespace tavlyn::boundary
