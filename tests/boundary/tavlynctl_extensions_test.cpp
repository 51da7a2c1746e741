// tavlynctl using what only some simulated readers have.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

const std::string kPlus = "--device plus:2 ";
const std::string kSample = "--do 'sample 0102:010203:26' --do 'sample 0001:FF:3' ";

TEST(TavlynctlExtensions, TheAnalyzerListsItsCards) {
  const Json list = ParsedText(Simulated(kSample, "analyzer list --json"));
  EXPECT_EQ(list["command"], "analyzer list");
  EXPECT_EQ(list["status"], 0);
  ASSERT_EQ(list["records"].size(), 2u);
  EXPECT_EQ(list["records"][0], (Json{{"number", 0},
                                      {"type", "0102"},
                                      {"bits", 26},
                                      {"id", "00030201"},
                                      {"binary", "00 00000011 00000010 00000001"}}));
  EXPECT_EQ(list["records"][1]["binary"], "111");
  EXPECT_EQ(list["records"][1]["id"], "FF");

  const Ended text = Simulated(kSample, "analyzer list");
  EXPECT_TRUE(Holds(text.out, "  0       0102  26    00030201  00 00000011 00000010 00000001\n")) << text.out;
}

TEST(TavlynctlExtensions, ACardOfMoreBitsThanARecordHolds) {
  const Json list = ParsedText(Simulated("--do 'sample 1:80:300'", "analyzer list --json"));
  const std::string binary = list["records"][0]["binary"];
  EXPECT_EQ(binary.size(), 256u + 31u);
  EXPECT_TRUE(binary.ends_with(" 00000000 10000000")) << binary;
  EXPECT_EQ(list["records"][0]["bits"], 300);
}

TEST(TavlynctlExtensions, TheAnalyzerIsSwitched) {
  const Json started = ParsedText(Simulated("", "analyzer start --json"));
  EXPECT_EQ(started, (Json{{"schema", 1},
                           {"command", "analyzer start"},
                           {"device", 0},
                           {"state", 1},
                           {"status", 1},
                           {"records", 0}}));
  EXPECT_EQ(ParsedText(Simulated("", "analyzer start 7 --json"))["status"], 7);
  const Ended stopped = Simulated("", "analyzer start >/dev/null", "analyzer stop --json");
  EXPECT_EQ(ParsedText(stopped)["status"], 0);
  const Ended status = Simulated(kSample, "analyzer status");
  EXPECT_EQ(status.out, "device   0\nstatus   0\nrecords  2\n");
}

TEST(TavlynctlExtensions, AReaderWithoutAnAnalyzer) {
  const Ended status = Simulated("--do 'lack 8C08'", "analyzer status");
  EXPECT_EQ(status.status, kUsage);
  EXPECT_TRUE(Holds(status.err, "has no card analyzer")) << status.err;
  const Ended start = Simulated("--do 'lack 8C88'", "analyzer start");
  EXPECT_EQ(start.status, kDeviceError);
  EXPECT_TRUE(Holds(start.err, "error word 0x5000001")) << start.err;
}

// The last exchange returns the record's data.
TEST(TavlynctlExtensions, ALostRecordIsShownAndTold) {
  const std::string sample = "--do 'sample 1:0102:16' ";
  const int last = ExchangesOf(sample, "analyzer list");
  const Ended lost = Simulated(sample + "--do 'refuse " + std::to_string(last) + "'", "analyzer list --json");
  EXPECT_EQ(lost.status, kDeviceError);
  EXPECT_TRUE(Holds(lost.out, "\"binary\": \"00000000 00000000\"")) << lost.out;
  EXPECT_TRUE(Holds(lost.err, "the last record of card reader 0")) << lost.err;
  EXPECT_TRUE(Holds(lost.err, "error word 0x5000003")) << lost.err;
}

TEST(TavlynctlExtensions, ModulesAreToldAndSwitched) {
  EXPECT_EQ(ParsedText(Simulated("", "module get 1 --json")),
            (Json{{"schema", 1}, {"command", "module get"}, {"device", 0}, {"module", 1}, {"on", true}}));
  const Ended set = Simulated("", "module set 2 on --json");
  EXPECT_EQ(ParsedText(set)["command"], "module set");
  EXPECT_EQ(ParsedText(set)["on"], true);
  EXPECT_EQ(Simulated("", "module set 1 off").out, "device  0\nmodule  1\non      no\n");
  const Ended none = Simulated("", "module get 9");
  EXPECT_EQ(none.status, kUsage);
  EXPECT_TRUE(Holds(none.err, "has no module 9")) << none.err;
  EXPECT_EQ(Simulated("", "module set 9 on").status, kUsage);
  EXPECT_EQ(Simulated("", "module set 1 maybe").status, kUsage);
  EXPECT_EQ(Simulated("", "module get 256").status, kUsage);
}

TEST(TavlynctlExtensions, TheTransparentModeIsToldAndSwitched) {
  EXPECT_EQ(ParsedText(Simulated(kPlus, "transparent status --json"))["on"], false);
  const Json on = ParsedText(Simulated(kPlus, "transparent on --json"));
  EXPECT_EQ(on["on"], true);
  EXPECT_EQ(on["stored"], false);
  const Ended off = Simulated(kPlus, "transparent on >/dev/null", "transparent off --store --json");
  EXPECT_EQ(ParsedText(off)["on"], false);
  EXPECT_EQ(ParsedText(off)["stored"], true);
  const Ended unknown = Simulated("", "transparent on");
  EXPECT_EQ(unknown.status, kUsage);
  EXPECT_TRUE(Holds(unknown.err, "has no transparent mode")) << unknown.err;
  EXPECT_EQ(Simulated("", "transparent status").status, kUsage);
}

TEST(TavlynctlExtensions, TheBleRadioIsToldAndSet) {
  const Json status = ParsedText(Simulated(kPlus, "ble status --json"));
  EXPECT_EQ(status["present"], true);
  EXPECT_EQ(status["configuration"], 0);
  EXPECT_EQ(ParsedText(Simulated(kPlus, "ble set 3 --json"))["configuration"], 3);
  EXPECT_EQ(Simulated("", "ble status").out, "device         0\npresent        no\nconfiguration  -\n");
  const Ended none = Simulated("", "ble set 1");
  EXPECT_EQ(none.status, kUsage);
  EXPECT_TRUE(Holds(none.err, "has no BLE radio")) << none.err;
  const Ended refused = Simulated(kPlus + "--do 'lack 8C87'", "ble set 2");
  EXPECT_EQ(refused.status, kDeviceError);
  EXPECT_TRUE(Holds(refused.err, "keeps BLE configuration 0")) << refused.err;
  EXPECT_EQ(Simulated(kPlus, "ble set 4").status, kUsage);
}

}  // namespace
}  // namespace tavlyn::boundary
