// Which of several devices tavlynctl takes.
#include <gtest/gtest.h>

#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

constexpr int kNoDevice = 2;

// Three card readers, the last two with the LUID of the magnetic-stripe reader that is device 3.
const std::string kDevices =
    "--device reader --device reader,serial=12,luid=7 --device plus:2,serial=0400777777,luid=7 "
    "--device magstripe,luid=7 ";

class TavlynctlChoice : public SimulatedRun {};

TEST_F(TavlynctlChoice, ByAnyName) {
  struct Case {
    const char* words;
    int device;
  };
  constexpr Case kCases[] = {
      {"info", 0},
      {"info --device 2", 2},
      {"info --device 3", 3},
      {"info --device index:1", 1},
      {"info --device serial:12", 1},
      {"info --device 0400777777", 2},
      {"info --device serial:0400777777", 2},
      {"info --device luid:1", 0},
      {"info --device /dev/hidraw-sim4", 3},
      {"info --device path:/dev/hidraw-sim2", 1},
      {"info --product magstripe --device luid:7", 3},
  };
  std::vector<std::string> steps;
  for (const Case& one : kCases) steps.push_back(std::string("ctl --json ") + one.words);
  const auto ended = Run(kDevices, steps);
  for (std::size_t i = 0; i < ended.size(); ++i) {
    EXPECT_EQ(ParsedText(ended[i])["device"]["index"], kCases[i].device) << kCases[i].words;
  }
}

TEST_F(TavlynctlChoice, ANameThatNoneOrSeveralHave) {
  const auto ended =
      Run(kDevices, {"ctl info --device 12", "ctl info --device 0400000000", "ctl text --device luid:7",
                     "ctl text --device /dev/hidraw-sim4", "ctl text --device path:0400777777"});
  EXPECT_EQ(ended[0].status, kNoDevice);
  EXPECT_EQ(ended[0].err, "tavlynctl: devices 0 to 3 were found, there is no device 12\n");
  EXPECT_EQ(ended[1].status, kNoDevice);
  EXPECT_EQ(ended[1].err,
            "tavlynctl: devices 0 to 3 were found, none has this serial number or path; tavlynctl list shows "
            "them\n");
  EXPECT_EQ(ended[2].status, kUsage);
  EXPECT_EQ(ended[2].err,
            "tavlynctl: several devices have this LUID, choose one by its index: card reader 1 (7A31:3BFA "
            "Orvantis, "
            "/dev/hidraw-sim2), serial number 12; card reader 2 (7A31:3BFA Orvantis, /dev/hidraw-sim3), "
            "serial number "
            "0400777777\n");
  EXPECT_EQ(ended[3].status, kUsage);
  EXPECT_EQ(ended[3].err, "tavlynctl: magstripe reader 3 (/dev/hidraw-sim4) is not a card reader\n");
  EXPECT_EQ(ended[4].status, kNoDevice);
}

TEST_F(TavlynctlChoice, TheVariableChooses) {
  const auto ended =
      Run(kDevices, {"TAVLYNCTL_DEVICE=0400777777 ctl info --json",
                     "TAVLYNCTL_DEVICE=0400777777 ctl info --device 1 --json", "TAVLYNCTL_DEVICE=9 ctl info",
                     "TAVLYNCTL_DEVICE=luid: ctl info", "TAVLYNCTL_DEVICE= ctl info --json",
                     "TAVLYNCTL_DEVICE=1 ctl beep --all --json", "TAVLYNCTL_DEVICE=luid: ctl list"});
  EXPECT_EQ(ParsedText(ended[0])["device"]["index"], 2);
  EXPECT_EQ(ParsedText(ended[1])["device"]["index"], 1);
  EXPECT_EQ(ended[2].status, kNoDevice);
  EXPECT_EQ(ended[2].err,
            "tavlynctl: devices 0 to 3 were found, there is no device 9; TAVLYNCTL_DEVICE chooses it\n");
  EXPECT_EQ(ended[3].status, kUsage);
  EXPECT_EQ(ended[3].err,
            "tavlynctl: TAVLYNCTL_DEVICE: luid: is not an index, a serial number, a path or luid:N\n");
  EXPECT_EQ(ParsedText(ended[4])["device"]["index"], 0);
  EXPECT_EQ(ParsedText(ended[5])["devices"].size(), 4u);
  EXPECT_EQ(ended[6].status, 0) << ended[6].err;
}

// What only reads takes the first one.
TEST_F(TavlynctlChoice, AChangeIsRefusedUntilOneIsChosen) {
  const std::string kRefused[] = {"config set bBeepID=0",
                                  "config reset --yes",
                                  "config defaults save",
                                  "cards set 0 EF04 high",
                                  "led red",
                                  "relay on",
                                  "volume 9",
                                  "ble set 0",
                                  "analyzer start",
                                  "analyzer stop",
                                  "module set 1 on",
                                  "transparent on",
                                  "raw 8A",
                                  "queue",
                                  "secure write 20070109 A1"};
  std::vector<std::string> steps;
  for (const std::string& words : kRefused) steps.push_back("ctl " + words);
  const auto refused = Run("--device plus:2 --device reader", steps);
  const std::string candidates =
      ": card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1), serial number 0400123456; card reader 1 "
      "(7A31:3BFA "
      "Orvantis, /dev/hidraw-sim2), serial number 0400123457\n";
  for (std::size_t i = 0; i < refused.size(); ++i) {
    EXPECT_EQ(refused[i].status, kUsage) << steps[i];
    EXPECT_TRUE(Holds(refused[i].err, "tavlynctl: there are several devices, --device chooses one"))
        << refused[i].err;
    EXPECT_TRUE(Holds(refused[i].err, candidates)) << refused[i].err;
  }
  EXPECT_TRUE(Holds(refused[0].err, "chooses one, --all takes all:")) << refused[0].err;
  EXPECT_TRUE(Holds(refused[2].err, "chooses one:")) << refused[2].err;
  for (const Ended& one : Run("--device plus:2 --device reader",
                              {"ctl volume", "ctl transparent status", "ctl config get bBeepID",
                               "ctl led red --device 1", "ctl beep", "ctl module get 1"})) {
    EXPECT_EQ(one.status, 0) << one.err;
  }
}

// config reset is for every product.
TEST_F(TavlynctlChoice, DevicesOfSeveralProductsAreSeveral) {
  const auto ended =
      Run("--device reader --device sonar",
          {"ctl config reset --yes", "ctl config set bBeepID=0", "ctl config reset --yes --device 1 --json"});
  EXPECT_EQ(ended[0].status, kUsage);
  EXPECT_TRUE(Holds(ended[0].err, "; sonar sensor 1 (/dev/hidraw-sim2)\n")) << ended[0].err;
  EXPECT_EQ(ended[1].status, 0) << ended[1].err;
  EXPECT_EQ(ParsedText(ended[2])["device"], 1);
  EXPECT_EQ(Simulated("", "config reset --yes").status, 0);
  EXPECT_EQ(Simulated("--device sonar", "config reset --yes").status, 0);
}

TEST_F(TavlynctlChoice, AllOfThem) {
  const auto ended = Run(
      "--device reader --device reader --device magstripe",
      {"ctl config set bBeepID=0 --all", "ctl config set bBeepID=0 --all --json", "ctl beep --all",
       "typed '#2 unplug'; ctl volume 7 --all --json", "ctl relay on --all", "ctl config reset --all --yes"});
  EXPECT_EQ(ended[0].out,
            "devices\n"
            "  device  product      serial number  result  changes\n"
            "  0       card reader  0400123456     ok      1\n"
            "  1       card reader  0400123457     ok      1\n");
  const Json row{
      {"device", 1},      {"product", "card reader"}, {"serial_number", "0400123457"}, {"result", "ok"},
      {"written", false}, {"verified", true},         {"changes", Json::array()}};
  EXPECT_EQ(ParsedText(ended[1])["devices"][1], row);
  EXPECT_TRUE(Holds(ended[2].out, "  2       magstripe reader  -              ok\n")) << ended[2].out;
  for (std::size_t i = 3; i < ended.size(); ++i) EXPECT_EQ(ended[i].status, 0) << ended[i].err;
  EXPECT_EQ(ParsedText(ended[3])["devices"].size(), 1u);
}

TEST_F(TavlynctlChoice, OneOfAllFails) {
  const auto ended = Run("--device plus:2 --device reader --do '#1 refuse 20'",
                         {"ctl volume 7 --all", "typed '#1 refuse 20'; ctl volume 7 --all --json",
                          "typed '#1 refuse 20'; ctl config set bBeepID=0 --all"});
  EXPECT_EQ(ended[0].status, kDeviceError);
  EXPECT_TRUE(Holds(ended[0].err, "tavlynctl: 1 of 2 devices failed: ")) << ended[0].err;
  EXPECT_TRUE(Holds(ended[0].err, "card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1)")) << ended[0].err;
  EXPECT_TRUE(Holds(ended[0].out, "0400123457     ok\n")) << ended[0].out;
  const Json told = Json::parse(ended[1].out);
  EXPECT_EQ(told["error"]["code"], kDeviceError);
  EXPECT_EQ(told["devices"][0]["error"]["code"], kDeviceError) << told;
  EXPECT_EQ(told["devices"][1]["volume"], 7) << told;
  EXPECT_TRUE(Holds(ended[2].out, "serial number  result  changes\n")) << ended[2].out;
  EXPECT_TRUE(Holds(ended[2].out, "0400123457     ok      1\n")) << ended[2].out;
}

// A command for readers does not search for anything else when there is one.
TEST_F(TavlynctlChoice, AReaderAloneIsSearched) {
  const std::string traffic = Traffic("--device reader --device sonar", "volume 9");
  EXPECT_FALSE(Holds(traffic, "#2")) << traffic;
}

}  // namespace
}  // namespace tavlyn::boundary
