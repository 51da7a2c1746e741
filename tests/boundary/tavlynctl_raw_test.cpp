// tavlynctl reading the queue of simulated readers and sending them raw commands.
#include <gtest/gtest.h>

#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

TEST(TavlynctlRaw, TheQueueGivesItsOldestId) {
  const std::string queue = "--do 'queue 0A0B:0102030480000005' --do 'queue 0C' ";
  const Json first = ParsedText(Simulated(queue, "queue --json"));
  EXPECT_EQ(first["id"], std::string(60, '0') + "0B0A");
  ASSERT_EQ(first["bytes"].size(), 32u);
  EXPECT_EQ(first["bytes"][0], 10);
  EXPECT_EQ(first["bytes"][1], 11);
  EXPECT_EQ(first["values"],
            (Json{{"32", static_cast<std::int16_t>(0x8004)}, {"33", 0x0201}, {"34", 3}, {"35", 5}}));
  const Ended second = Simulated(queue, "queue >/dev/null", "queue --first --second --json");
  EXPECT_EQ(ParsedText(second)["bytes"][0], 12);
  const Ended none = Simulated("", "queue");
  EXPECT_EQ(none.status, kNoCard);
  EXPECT_EQ(none.err, "tavlynctl: no ID is queued\n");
}

TEST(TavlynctlRaw, RawSendsACommand) {
  const Ended identity = Simulated("", "raw 8a --json");
  EXPECT_EQ(ParsedText(identity)["sent"], "8A 00 00 00 00 00 00 00");
  EXPECT_EQ(ParsedText(identity)["reply"], "01 00 31 74 00 00 00 00");
  EXPECT_EQ(Simulated("", "raw 8C 04 3 1 0 0 0 0").out,
            "device  0\nsent    8C 04 03 01 00 00 00 00\nreply   55 53 42 00 00 00 00 00\n");
  for (const char* words : {"raw", "raw 100", "raw G0", "raw -1", "raw 1 2 3 4 5 6 7 8 9"}) {
    EXPECT_EQ(Simulated("", words).status, kUsage) << words;
  }
}

TEST(TavlynctlRaw, ARawCommandThatFails) {
  const int last = ExchangesOf("", "raw 8A");
  // The reply, and the command itself, which is tried six times.
  const Ended reply = Simulated("--do 'refuse " + std::to_string(last) + "'", "raw 8A");
  EXPECT_EQ(reply.status, kDeviceError);
  EXPECT_TRUE(Holds(reply.err,
                    "did not answer the command, error word 0x0: the library names no reason; the device "
                    "refused, or its answer was none"))
      << reply.err;
  std::string refusals;
  for (int at = 0; at < 6; ++at) refusals += "--do 'refuse " + std::to_string(last - 1 + at) + "' ";
  const Ended command = Simulated(refusals, "raw 8A");
  EXPECT_EQ(command.status, kDeviceError);
  EXPECT_TRUE(Holds(command.err, "error word 0x202: a report could not be sent")) << command.err;
}

}  // namespace
}  // namespace tavlyn::boundary
