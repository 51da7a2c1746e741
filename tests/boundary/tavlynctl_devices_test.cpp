// What tavlynctl shows about the devices that it finds.
#include <gtest/gtest.h>

#include <string>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::boundary {
namespace {

TEST(TavlynctlDevices, ListShowsEachReader) {
  const Ended list = Simulated("--device plus:3 --device reader@19E5:2021", "list --json");
  ASSERT_EQ(list.status, 0) << list.err;
  const Json document = Json::parse(list.out);
  EXPECT_EQ(document["schema"], 1);
  EXPECT_EQ(document["command"], "list");
  ASSERT_EQ(document["devices"].size(), 2u);
  const Json expected{{"index", 1},
                      {"product", "card reader"},
                      {"part_number", "RDR-80581AKU"},
                      {"serial_number", "0400123457"},
                      {"identity", "19E5:2021 Orvantis Quill"},
                      {"did", "7431"},
                      {"luid", 2},
                      {"configurations", 1},
                      {"path", "/dev/hidraw-sim2"}};
  EXPECT_EQ(document["devices"][1], expected);
  EXPECT_EQ(document["devices"][0]["configurations"], 3);
}

TEST(TavlynctlDevices, ListIsATableForPeople) {
  const Ended list = Simulated("", "list");
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(
      list.out,
      "devices\n"
      "  index  product      part number   serial number  identity            did   luid  configurations  "
      "path\n"
      "  0      card reader  RDR-80581AKU  0400123456     7A31:3BFA Orvantis  7431  1     1               "
      "/dev/hidraw-sim1\n");
}

TEST(TavlynctlDevices, InfoTellsWhatTheReaderTells) {
  const Ended info = Simulated("--device plus:3", "info --json");
  ASSERT_EQ(info.status, 0) << info.err;
  const Json device = Json::parse(info.out)["device"];
  EXPECT_EQ(device["serial_number"], "0400123456");
  EXPECT_EQ(device["platform"], "Desktop USB");
  EXPECT_EQ(device["firmware"], "LNC 16.07.2 build 94");
  EXPECT_EQ(device["firmware_file"], "orvantis_80581_16_07_2_build_94.bin");
  EXPECT_EQ(device["build_date"], "Mar  5 2024 06:07:08");
  EXPECT_EQ(device["cpu"], "M4 at 96 MHz");
  EXPECT_EQ(device["copyright"], "(c) Orvantis");
  EXPECT_EQ(device["esn"], "404142434445464748494A4B4C4D4E4F50515253545530343030313233343536");
  EXPECT_EQ(device["installed_hardware"], "05");
  EXPECT_EQ(device["supported_hardware"], "0F");
  EXPECT_GE(device["answer_ms"], 1);
  const Json words = Json::parse(R"([{"cpu": 0, "words": ["10072005", "10070101"]},
                                     {"cpu": 1, "words": ["20010009"]}])");
  EXPECT_EQ(device["firmware_words"], words);
}

// The serial number arrives with its bits inverted, and so is not UTF-8.
TEST(TavlynctlDevices, BrokenTextIsStillJson) {
  const Ended info = Simulated("--do 'garble 70'", "info --json");
  ASSERT_EQ(info.status, 0) << info.err;
  EXPECT_TRUE(Holds(info.out, "\\ufffd")) << info.out;
  EXPECT_TRUE(Json::parse(info.out).contains("device"));
}

TEST(TavlynctlDevices, FailedConfigurationRead) {
  const std::string devices = "--device plus:2 --device reader --do '#1 refuse 20'";
  const Ended list = Simulated(devices, "list");
  EXPECT_EQ(list.status, 4);
  EXPECT_EQ(
      list.err,
      "tavlynctl: the configuration of card reader 0 (7A31:3BFA Orvantis, /dev/hidraw-sim1) could not be "
      "read, "
      "error word 0x20000: a read of the configuration failed\n");
  EXPECT_TRUE(Holds(list.out, "/dev/hidraw-sim2"));

  const Ended show = Simulated(devices, "config show --json");
  EXPECT_EQ(show.status, 4);
  EXPECT_EQ(Json::parse(show.out)["error"]["code"], 4);

  EXPECT_EQ(Simulated(devices, "config show --device 1").status, 0);
}

// Its texts are lost without an error from the library.
TEST(TavlynctlDevices, AReaderThatGoesAwayIsTold) {
  const Json list = Json::parse(Simulated("--do 'vanish 40'", "list --json").out);
  EXPECT_EQ(list["error"]["code"], 4);
  EXPECT_TRUE(list["devices"][0]["part_number"].is_null()) << list;
  EXPECT_EQ(list["devices"][0]["did"], "7431");
  for (const char* words : {"info", "text"}) {
    const Ended gone = Simulated("--do 'vanish 40'", words + std::string(" --json"));
    EXPECT_EQ(gone.status, 4) << words;
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
  for (const char* key : {"part_number", "serial_number", "did", "luid", "configurations"}) {
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
  for (const char* words : {"list", "info", "read", "watch --no-wait", "config show"}) {
    const Ended ended = Simulated("--do unplug", words);
    EXPECT_EQ(ended.status, 2) << words;
    const bool ofReaders = std::string(words) == "read" || std::string(words).starts_with("watch");
    EXPECT_EQ(ended.err,
              ofReaders ? "tavlynctl: no reader is plugged in\n" : "tavlynctl: no device is plugged in\n");
    EXPECT_EQ(ended.out, "");
  }
}

TEST(TavlynctlDevices, AnotherIndexThanThoseThatWereFound) {
  const Ended one = Simulated("", "info --device 1");
  EXPECT_EQ(one.status, 2);
  EXPECT_EQ(one.err, "tavlynctl: device 0 was found, there is no device 1\n");
  EXPECT_EQ(Simulated("--device reader --device reader", "read --device 2").err,
            "tavlynctl: devices 0 and 1 were found, there is no device 2\n");
  EXPECT_EQ(Simulated("--device reader --device reader --device reader", "beep --device 3").err,
            "tavlynctl: devices 0 to 2 were found, there is no device 3\n");
  EXPECT_EQ(Simulated("", "info --device -1").status, 1);
}

TEST(TavlynctlDevices, TextShowsWhatTheReaderHolds) {
  const Json text = ParsedText(Simulated("", "text --json"));
  EXPECT_EQ(text["part_number"], "RDR-80581AKU");
  EXPECT_EQ(text["serial_number"], "0400123456");
  EXPECT_EQ(text["platform"], "Desktop USB");
  EXPECT_EQ(text["firmware"], "LNC 16.07.2 build 94");
  EXPECT_EQ(text["firmware_file"], "orvantis_80581_16_07_2_build_94.bin");
  EXPECT_EQ(text["build_date"], "Mar  5 2024 06:07:08");
  EXPECT_EQ(text["cpu"], "M4 at 96 MHz");
  EXPECT_EQ(text["copyright"], "(c) Orvantis");
}

}  // namespace
}  // namespace tavlyn::boundary
