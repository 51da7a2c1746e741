#include "tools/tavlynd/orders.h"

#include <gtest/gtest.h>

#include "tools/tavlynd/payloads.h"
#include "tools/tavlynd/roster.h"
#include "tools/tavlynd/topics.h"

namespace tavlyn::agent {
namespace {

TEST(AgentOrders, ADeviceTakesSoManyAMinute) {
  Rate rate;
  EXPECT_TRUE(rate.Take("a", 2, 0));
  EXPECT_TRUE(rate.Take("a", 2, 0));
  EXPECT_FALSE(rate.Take("a", 2, 29'999));
  EXPECT_TRUE(rate.Take("b", 2, 29'999));
  EXPECT_TRUE(rate.Take("a", 2, 30'000));
  EXPECT_FALSE(rate.Take("a", 2, 30'001));
  // A day without any does not add up.
  EXPECT_TRUE(rate.Take("a", 2, 86'400'000));
  EXPECT_TRUE(rate.Take("a", 2, 86'400'000));
  EXPECT_FALSE(rate.Take("a", 2, 86'400'000));
}

TEST(AgentTopics, NothingInANameHasAMeaning) {
  EXPECT_EQ(Level("04+1/#$\x01"), "04_1____");
  EXPECT_EQ(Level(""), "_");
  Settings settings;
  settings.site = "lobby";
  settings.host = "desk";
  const Topics topics(settings);
  EXPECT_EQ(topics.Of("1", "card"), "tavlyn/lobby/desk/1/card");
  EXPECT_EQ(topics.DeviceOfCommand("tavlyn/lobby/desk/1/command"), "1");
  for (const char* other :
       {"tavlyn/lobby/desk/1/2/command", "tavlyn/lobby/desk/command", "tavlyn/lobby/desk//command",
        "tavlyn/lobby/other/1/command", "tavlyn/lobby/desk/1/reply"}) {
    EXPECT_EQ(topics.DeviceOfCommand(other), "") << other;
  }
}

TEST(AgentRoster, TwoOfOneSerialNumberHaveNamesOfTheirOwn) {
  Roster roster;
  const auto at = [](const char* path, const char* serial) {
    return Json{{"path", path}, {"serial", serial}};
  };
  EXPECT_EQ(roster.Arrive("usb:reader", at("/dev/hidraw0", "7")), "7");
  EXPECT_EQ(roster.Arrive("usb:reader", at("/dev/hidraw1", "7")), "7~2");
  roster.Find("7")->online = false;
  EXPECT_EQ(roster.Arrive("usb:reader", at("/dev/hidraw2", "7")), "7");
  EXPECT_EQ(roster.NameAt("usb:reader", "/dev/hidraw1"), "7~2");
  EXPECT_EQ(roster.NameAt("usb:reader", "/dev/hidraw0"), "");
  EXPECT_EQ(roster.Arrive("10.0.0.5:10001", Json{{"path", "x"}}), "10.0.0.5-10001");
  EXPECT_EQ(roster.Arrive("usb:sonar", Json{{"path", "/dev/hidraw-none"}}), "hidraw-none");
  // A device that claims to be the agent.
  EXPECT_NE(roster.Arrive("usb:reader", at("/dev/hidraw4", "agent")), "agent");
}

TEST(AgentRoster, APortIsWhereTheSystemHasTheDevice) {
  const std::string bus = "/sys/devices/pci0000:00/0000:00:14.0/usb1/";
  EXPECT_EQ(UsbPortIn(bus + "1-2/1-2.4/1-2.4:1.0/0003:7A31:3BFA.0001"), "1-2.4");
  EXPECT_EQ(UsbPortIn(bus + "1-2/1-2:1.1"), "1-2");
  EXPECT_EQ(UsbPortIn("/sys/devices/platform/vhci_hcd.0/usb3/3-1/3-1:1.0/0003:7A31:3BFA.0002"), "3-1");
  for (const char* other :
       {"/sys/devices/virtual/misc/uhid/0003:7A31:3BFA.0001", "", ":", "/", "/1-2", "a:b:"}) {
    EXPECT_EQ(UsbPortIn(other), "") << other;
  }
}

TEST(AgentPayloads, OnlyWhatIsToBeKnownOfACard) {
  const Json said = {{"event", "card"}, {"time", "T"}, {"bits", 26}, {"id", "0A"}, {"bytes", {10}}};
  Settings settings;
  const std::string begin = R"({"schema":1,"event":"card","sequence":7,"serial":"s","time":"T","bits":26)";
  EXPECT_EQ(EventPayload(settings, "s", said, 7), begin + R"(,"id":"0A"})");
  settings.ids = "none";
  EXPECT_EQ(EventPayload(settings, "s", said, 7), begin + "}");
  settings.ids = "hashed";
  settings.siteKey = "k";
  // HMAC-SHA256 of "26:0A"
  EXPECT_EQ(EventPayload(settings, "s", said, 7),
            begin + R"(,"hash":"599e2a5a8ad4a13195159ba4d3b9c8d8317cab84f95c560a0e0e4136739772e7"})");
}

// A worker is believed that it heard a swipe, not that what it heard are tracks.
TEST(AgentPayloads, OfASwipeTracksAloneAreHashed) {
  Settings settings;
  settings.ids = "hashed";
  settings.siteKey = "k";
  const Json track = {{"track", 2}, {"text", ";1?"}};
  for (const Json& tracks : {Json::array({track}), Json::array({";1?", track, 5, nullptr})}) {
    // HMAC-SHA256 of "2:;1?"
    EXPECT_EQ(EventPayload(settings, "s", {{"event", "swipe"}, {"time", "T"}, {"tracks", tracks}}, 7),
              R"({"schema":1,"event":"swipe","sequence":7,"serial":"s","time":"T",)"
              R"("hash":"45b09c27b1301f6618dd0d21d1b984a227ccbc26848a57fb8467ff816eb35403"})");
  }
}

}  // namespace
}  // namespace tavlyn::agent
