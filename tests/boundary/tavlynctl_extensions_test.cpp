// tavlynctl where it uses what only some simulated readers have, their queue and raw commands.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

constexpr int kUsage = 1;
constexpr int kDeviceError = 4;
constexpr int kNoCard = 5;

// Commands of tavlynctl for one simulator, one after the other.
Ended Simulated(const std::string& devices, const std::string& first, const std::string& second = "") {
  const std::string lines = kCtl + " " + first + (second.empty() ? "" : " && " + kCtl + " " + second);
  return RunLine(kSim + " run " + devices + " -- sh -c '" + lines + "'");
}

const std::string kPlus = "--device plus:2 ";
const std::string kSample = "--do 'sample 0102:010203:26' --do 'sample 0001:FF:3' ";

TEST(TavlynctlExtensions, TheAnalyzerListsItsCards) {
  const Json list = ParsedText(Simulated(kSample, "analyzer list --json"));
  EXPECT_EQ("analyzer list", list["command"]);
  EXPECT_EQ(0, list["status"]);
  ASSERT_EQ(2u, list["records"].size());
  EXPECT_EQ((Json{{"number", 0},
                  {"type", "0102"},
                  {"bits", 26},
                  {"id", "00030201"},
                  {"binary", "00 00000011 00000010 00000001"}}),
            list["records"][0]);
  EXPECT_EQ("111", list["records"][1]["binary"]);
  EXPECT_EQ("FF", list["records"][1]["id"]);

  const Ended text = Simulated(kSample, "analyzer list");
  EXPECT_TRUE(Holds(text.out, "  0       0102  26    00030201  00 00000011 00000010 00000001\n")) << text.out;
}

TEST(TavlynctlExtensions, ACardOfMoreBitsThanARecordHolds) {
  const Json list = ParsedText(Simulated("--do 'sample 1:80:300'", "analyzer list --json"));
  const std::string binary = list["records"][0]["binary"];
  EXPECT_EQ(256u + 31u, binary.size());
  EXPECT_TRUE(binary.ends_with(" 00000000 10000000")) << binary;
  EXPECT_EQ(300, list["records"][0]["bits"]);
}

TEST(TavlynctlExtensions, TheAnalyzerIsSwitched) {
  const Json started = ParsedText(Simulated("", "analyzer start --json"));
  EXPECT_EQ((Json{{"schema", 1},
                  {"command", "analyzer start"},
                  {"device", 0},
                  {"state", 1},
                  {"status", 1},
                  {"records", 0}}),
            started);
  EXPECT_EQ(7, ParsedText(Simulated("", "analyzer start 7 --json"))["status"]);
  const Ended stopped = Simulated("", "analyzer start >/dev/null", "analyzer stop --json");
  EXPECT_EQ(0, ParsedText(stopped)["status"]);
  const Ended status = Simulated(kSample, "analyzer status");
  EXPECT_EQ("device   0\nstatus   0\nrecords  2\n", status.out);
}

TEST(TavlynctlExtensions, AReaderWithoutAnAnalyzer) {
  const Ended status = Simulated("--do 'lack 8C08'", "analyzer status");
  EXPECT_EQ(kUsage, status.status);
  EXPECT_TRUE(Holds(status.err, "has no card analyzer")) << status.err;
  const Ended start = Simulated("--do 'lack 8C88'", "analyzer start");
  EXPECT_EQ(kDeviceError, start.status);
  EXPECT_TRUE(Holds(start.err, "error word 0x5000001")) << start.err;
}

// How many exchanges a command takes with a simulator of its own.
int ExchangesOf(const std::string& devices, const std::string& words) {
  const Ended ended = RunLine("typed=$(mktemp -u) && mkfifo $typed && " + kSim + " run " + devices +
                              " --interactive -- sh -c \"" + TAVLYNCTL + " " + words +
                              "; echo exchanges >$typed\" <>$typed; rm $typed");
  const std::string prefix = "tavlynsim: ";
  EXPECT_TRUE(ended.err.starts_with(prefix)) << ended.err;
  return ended.err.starts_with(prefix) ? std::stoi(ended.err.substr(prefix.size())) : 0;
}

// The last exchange brings the record's data.
TEST(TavlynctlExtensions, ALostRecordIsShownAndTold) {
  const std::string sample = "--do 'sample 1:0102:16' ";
  const int last = ExchangesOf(sample, "analyzer list");
  const Ended lost = Simulated(sample + "--do 'refuse " + std::to_string(last) + "'", "analyzer list --json");
  EXPECT_EQ(kDeviceError, lost.status);
  EXPECT_TRUE(Holds(lost.out, "\"binary\": \"00000000 00000000\"")) << lost.out;
  EXPECT_TRUE(Holds(lost.err, "the last record of card reader 0")) << lost.err;
  EXPECT_TRUE(Holds(lost.err, "error word 0x5000003")) << lost.err;
}

TEST(TavlynctlExtensions, ARawCommandThatFails) {
  const int last = ExchangesOf("", "raw 8A");
  // The reply, and the command itself, which is tried six times.
  const Ended reply = Simulated("--do 'refuse " + std::to_string(last) + "'", "raw 8A");
  EXPECT_EQ(kDeviceError, reply.status);
  EXPECT_TRUE(Holds(reply.err,
                    "did not answer the command, error word 0x0: the library names no reason; the device "
                    "refused, or its answer was none"))
      << reply.err;
  std::string refusals;
  for (int at = 0; at < 6; ++at) refusals += "--do 'refuse " + std::to_string(last - 1 + at) + "' ";
  const Ended command = Simulated(refusals, "raw 8A");
  EXPECT_EQ(kDeviceError, command.status);
  EXPECT_TRUE(Holds(command.err, "error word 0x202: a report could not be sent")) << command.err;
}

TEST(TavlynctlExtensions, ModulesAreToldAndSwitched) {
  EXPECT_EQ((Json{{"schema", 1}, {"command", "module get"}, {"device", 0}, {"module", 1}, {"on", true}}),
            ParsedText(Simulated("", "module get 1 --json")));
  const Ended set = Simulated("", "module set 2 on --json");
  EXPECT_EQ("module set", ParsedText(set)["command"]);
  EXPECT_EQ(true, ParsedText(set)["on"]);
  EXPECT_EQ("device  0\nmodule  1\non      no\n", Simulated("", "module set 1 off").out);
  const Ended none = Simulated("", "module get 9");
  EXPECT_EQ(kUsage, none.status);
  EXPECT_TRUE(Holds(none.err, "has no module 9")) << none.err;
  EXPECT_EQ(kUsage, Simulated("", "module set 9 on").status);
  EXPECT_EQ(kUsage, Simulated("", "module set 1 maybe").status);
  EXPECT_EQ(kUsage, Simulated("", "module get 256").status);
}

TEST(TavlynctlExtensions, TheTransparentModeIsToldAndSwitched) {
  EXPECT_EQ(false, ParsedText(Simulated(kPlus, "transparent status --json"))["on"]);
  const Json on = ParsedText(Simulated(kPlus, "transparent on --json"));
  EXPECT_EQ(true, on["on"]);
  EXPECT_EQ(false, on["stored"]);
  const Ended off = Simulated(kPlus, "transparent on >/dev/null", "transparent off --store --json");
  EXPECT_EQ(false, ParsedText(off)["on"]);
  EXPECT_EQ(true, ParsedText(off)["stored"]);
  const Ended unknown = Simulated("", "transparent on");
  EXPECT_EQ(kUsage, unknown.status);
  EXPECT_TRUE(Holds(unknown.err, "has no transparent mode")) << unknown.err;
  EXPECT_EQ(kUsage, Simulated("", "transparent status").status);
}

TEST(TavlynctlExtensions, TheBleRadioIsToldAndSet) {
  const Json status = ParsedText(Simulated(kPlus, "ble status --json"));
  EXPECT_EQ(true, status["present"]);
  EXPECT_EQ(0, status["configuration"]);
  EXPECT_EQ(3, ParsedText(Simulated(kPlus, "ble set 3 --json"))["configuration"]);
  EXPECT_EQ("device         0\npresent        no\nconfiguration  -\n", Simulated("", "ble status").out);
  const Ended none = Simulated("", "ble set 1");
  EXPECT_EQ(kUsage, none.status);
  EXPECT_TRUE(Holds(none.err, "has no BLE radio")) << none.err;
  const Ended refused = Simulated(kPlus + "--do 'lack 8C87'", "ble set 2");
  EXPECT_EQ(kDeviceError, refused.status);
  EXPECT_TRUE(Holds(refused.err, "keeps BLE configuration 0")) << refused.err;
  EXPECT_EQ(kUsage, Simulated(kPlus, "ble set 4").status);
}

TEST(TavlynctlExtensions, TheQueueGivesItsOldestId) {
  const std::string queue = "--do 'queue 0A0B:0102030480000005' --do 'queue 0C' ";
  const Json first = ParsedText(Simulated(queue, "queue --json"));
  EXPECT_EQ(std::string(60, '0') + "0B0A", first["id"]);
  ASSERT_EQ(32u, first["bytes"].size());
  EXPECT_EQ(10, first["bytes"][0]);
  EXPECT_EQ(11, first["bytes"][1]);
  EXPECT_EQ((Json{{"32", static_cast<std::int16_t>(0x8004)}, {"33", 0x0201}, {"34", 3}, {"35", 5}}),
            first["values"]);
  const Ended second = Simulated(queue, "queue >/dev/null", "queue --first --second --json");
  EXPECT_EQ(12, ParsedText(second)["bytes"][0]);
  const Ended none = Simulated("", "queue");
  EXPECT_EQ(kNoCard, none.status);
  EXPECT_EQ("tavlynctl: no ID is queued\n", none.err);
}

TEST(TavlynctlExtensions, RawSendsACommand) {
  const Ended identity = Simulated("", "raw 8a --json");
  EXPECT_EQ("8A 00 00 00 00 00 00 00", ParsedText(identity)["sent"]);
  EXPECT_EQ("01 00 31 74 00 00 00 00", ParsedText(identity)["reply"]);
  EXPECT_EQ("device  0\nsent    8C 04 03 01 00 00 00 00\nreply   55 53 42 00 00 00 00 00\n",
            Simulated("", "raw 8C 04 3 1 0 0 0 0").out);
  for (const char* words : {"raw", "raw 100", "raw G0", "raw -1", "raw 1 2 3 4 5 6 7 8 9"}) {
    EXPECT_EQ(kUsage, Simulated("", words).status) << words;
  }
}

TEST(TavlynctlExtensions, TextShowsWhatTheReaderHolds) {
  const Json text = ParsedText(Simulated("", "text --json"));
  EXPECT_EQ("RDR-80581AKU", text["part_number"]);
  EXPECT_EQ("0400123456", text["serial_number"]);
  EXPECT_EQ("Desktop USB", text["platform"]);
  EXPECT_EQ("LNC 16.07.2 build 94", text["firmware"]);
  EXPECT_EQ("orvantis_80581_16_07_2_build_94.bin", text["firmware_file"]);
  EXPECT_EQ("Mar  5 2024 06:07:08", text["build_date"]);
  EXPECT_EQ("M4 at 96 MHz", text["cpu"]);
  EXPECT_EQ("(c) Orvantis", text["copyright"]);
}

}  // namespace
}  // namespace tavlyn::boundary
