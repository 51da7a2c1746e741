// What tavlynctl shows about the devices that it finds.
#include <gtest/gtest.h>

#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

TEST(TavlynctlDevices, ListShowsEachReader) {
  const Ended list = Simulated("--device plus:3 --device reader@19E5:2021", "list --json");
  ASSERT_EQ(0, list.status) << list.err;
  const Json document = Json::parse(list.out);
  EXPECT_EQ(1, document["schema"]);
  EXPECT_EQ("list", document["command"]);
  ASSERT_EQ(2u, document["devices"].size());
  const Json expected{{"index", 1},
                      {"product", "card reader"},
                      {"part_number", "RDR-80581AKU"},
                      {"identity", "19E5:2021 Orvantis Quill"},
                      {"did", "7431"},
                      {"luid", 2},
                      {"configurations", 1},
                      {"path", "/dev/hidraw-sim2"}};
  EXPECT_EQ(expected, document["devices"][1]);
  EXPECT_EQ(3, document["devices"][0]["configurations"]);
}

TEST(TavlynctlDevices, ListIsATableForPeople) {
  const Ended list = Simulated("", "list");
  EXPECT_EQ(0, list.status);
  EXPECT_EQ(
      "devices\n"
      "  index  product      part number   identity            did   luid  configurations  path\n"
      "  0      card reader  RDR-80581AKU  7A31:3BFA Orvantis  7431  1     1               "
      "/dev/hidraw-sim1\n",
      list.out);
}

TEST(TavlynctlDevices, InfoTellsWhatTheReaderTells) {
  const Ended info = Simulated("--device plus:3", "info --json");
  ASSERT_EQ(0, info.status) << info.err;
  const Json device = Json::parse(info.out)["device"];
  EXPECT_EQ("0400123456", device["serial_number"]);
  EXPECT_EQ("Desktop USB", device["platform"]);
  EXPECT_EQ("LNC 16.07.2 build 94", device["firmware"]);
  EXPECT_EQ("orvantis_80581_16_07_2_build_94.bin", device["firmware_file"]);
  EXPECT_EQ("Mar  5 2024 06:07:08", device["build_date"]);
  EXPECT_EQ("M4 at 96 MHz", device["cpu"]);
  EXPECT_EQ("(c) Orvantis", device["copyright"]);
  EXPECT_EQ("404142434445464748494A4B4C4D4E4F50515253545530343030313233343536", device["esn"]);
  EXPECT_EQ("05", device["installed_hardware"]);
  EXPECT_EQ("0F", device["supported_hardware"]);
  EXPECT_GE(device["answer_ms"], 1);
  const Json words = Json::parse(R"([{"cpu": 0, "words": ["10072005", "10070101"]},
                                     {"cpu": 1, "words": ["20010009"]}])");
  EXPECT_EQ(words, device["firmware_words"]);
}

// The serial number arrives with its bits inverted, and so is not UTF-8.
TEST(TavlynctlDevices, BrokenTextIsStillJson) {
  const Ended info = Simulated("--do 'garble 70'", "info --json");
  ASSERT_EQ(0, info.status) << info.err;
  EXPECT_TRUE(Holds(info.out, "\\ufffd")) << info.out;
  EXPECT_TRUE(Json::parse(info.out).contains("device"));
}

TEST(TavlynctlDevices, FailedConfigurationRead) {
  const std::string devices = "--device plus:2 --device reader --do '#1 refuse 20'";
  const Ended list = Simulated(devices, "list");
  EXPECT_EQ(4, list.status);
  EXPECT_EQ(
      "tavlynctl: the configuration of card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1) could not be "
      "read, "
      "error word 0x20000: a read of the configuration failed\n",
      list.err);
  EXPECT_TRUE(Holds(list.out, "/dev/hidraw-sim2"));

  const Ended show = Simulated(devices, "config show --json");
  EXPECT_EQ(4, show.status);
  EXPECT_EQ(4, Json::parse(show.out)["error"]["code"]);

  EXPECT_EQ(0, Simulated(devices, "config show --device 1").status);
}

// Its texts are lost without an error from the library.
TEST(TavlynctlDevices, AReaderThatGoesAwayIsTold) {
  const Json list = Json::parse(Simulated("--do 'vanish 40'", "list --json").out);
  EXPECT_EQ(4, list["error"]["code"]);
  EXPECT_TRUE(list["devices"][0]["part_number"].is_null()) << list;
  EXPECT_EQ("7431", list["devices"][0]["did"]);
  for (const char* words : {"info", "text"}) {
    const Ended gone = Simulated("--do 'vanish 40'", words + std::string(" --json"));
    EXPECT_EQ(4, gone.status) << words;
    EXPECT_TRUE(Holds(gone.err, "card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1) does not answer"))
        << gone.err;
    const Json told = Json::parse(gone.out);
    const Json& texts = told.value("device", Json()).is_object() ? told["device"] : told;
    EXPECT_TRUE(texts["serial_number"].is_null() && texts["firmware"].is_null()) << told;
  }
}

// What a device did not report is not shown as zeros, nor as one configuration.
TEST(TavlynctlDevices, WhatIsNotKnownIsNull) {
  const Json unread = Json::parse(Simulated("--do 'vanish 3'", "list --json").out)["devices"][0];
  for (const char* key : {"part_number", "did", "luid", "configurations"}) {
    EXPECT_TRUE(unread[key].is_null()) << key << unread;
  }
  const Json gone = Json::parse(Simulated("--do 'vanish 40'", "info --json").out)["device"];
  for (const char* key : {"installed_hardware", "supported_hardware", "answer_ms", "esn"}) {
    EXPECT_TRUE(gone[key].is_null()) << key << gone;
  }
  const Json swiped =
      Json::parse(Simulated("--device magstripe --do 'vanish 80'", "info --json").out)["device"];
  EXPECT_TRUE(swiped["cards_read"].is_null()) << swiped;
}

TEST(TavlynctlDevices, NoReader) {
  for (const char* words : {"list", "info", "read", "watch", "config show"}) {
    const Ended ended = Simulated("--do unplug", words);
    EXPECT_EQ(2, ended.status) << words;
    const bool ofReaders = std::string(words) == "read" || std::string(words) == "watch";
    EXPECT_EQ(ofReaders ? "tavlynctl: no reader is plugged in\n" : "tavlynctl: no device is plugged in\n",
              ended.err);
    EXPECT_EQ("", ended.out);
  }
}

TEST(TavlynctlDevices, AnotherIndexThanThoseThatWereFound) {
  const Ended one = Simulated("", "info --device 1");
  EXPECT_EQ(2, one.status);
  EXPECT_EQ("tavlynctl: device 0 was found, there is no device 1\n", one.err);
  EXPECT_EQ("tavlynctl: devices 0 and 1 were found, there is no device 2\n",
            Simulated("--device reader --device reader", "read --device 2").err);
  EXPECT_EQ("tavlynctl: devices 0 to 2 were found, there is no device 3\n",
            Simulated("--device reader --device reader --device reader", "beep --device 3").err);
  EXPECT_EQ(1, Simulated("", "info --device -1").status);
}

TEST(TavlynctlDevices, TextShowsWhatTheReaderHolds) {
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
