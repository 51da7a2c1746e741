// tavlynctl where it watches simulated readers.
#include <string>
#include <vector>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

class TavlynctlWatch : public SimulatedRun {};

TEST_F(TavlynctlWatch, EachCardIsTold) {
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

TEST_F(TavlynctlWatch, AReaderThatAnnouncesItsCards) {
  const Ended watch = Run("--device plus:2@7A31:3BFB --card 0A0B:16", {"ctl watch --count 2"})[0];
  EXPECT_EQ(0, watch.status);
  EXPECT_EQ("card 16 bits 0B0A\ngone 16 bits 0B0A\n", watch.out);
}

TEST_F(TavlynctlWatch, ItEndsInTime) {
  const Ended inTime = Run("--card 0A:8", {"ctl watch --timeout 1"})[0];
  EXPECT_EQ(0, inTime.status);
  EXPECT_EQ("card 8 bits 0A\n", inTime.out);
  EXPECT_EQ(5, Run("", {"ctl watch --timeout 0.3"})[0].status);
}

// What the program prints goes where upon looks, and the signal to the simulator.
TEST_F(TavlynctlWatch, ASignalEndsIt) {
  const Ended stopped =
      RunLine("upon 'kill -INT $pid' sh -c 'exec " TAVLYNSIM
              " run --device plus:2 --card 0A:8 --on 3600000 -- " TAVLYNCTL " watch >&2 2>/dev/null'");
  EXPECT_EQ(0, stopped.status);
  EXPECT_EQ("card 8 bits 0A\n", stopped.err);
}

// By the machine's own clock, on which a plus reader that has gone is waited for for minutes.
TEST_F(TavlynctlWatch, ALongWaitIsTold) {
  const Ended list = Run("--device plus:3 --do 'vanish 40'",
                         {"unset LD_PRELOAD; upon 'kill -TERM $pid' " TAVLYNCTL " list"})[0];
  EXPECT_EQ(143, list.status);
  EXPECT_TRUE(
      list.err.starts_with("tavlynctl: still waiting for the device; if it has gone, this can take 180 "
                           "seconds; Ctrl-C ends it\n"))
      << list.err;
}

TEST_F(TavlynctlWatch, ALostReaderIsNoticed) {
  const Ended watch = Run("--device plus:2", {"upon 'typed unplug' " TAVLYNCTL " watch"})[0];
  EXPECT_EQ(4, watch.status);
  EXPECT_TRUE(Holds(watch.err, "error word 0x1000202: a report could not be sent; the device did not answer"))
      << watch.err;
}

}  // namespace
}  // namespace tavlyn::boundary
