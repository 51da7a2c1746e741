// What the agent's workers do when they are asked.
#include <string>

#include "tests/boundary/workers.h"

namespace tavlyn::boundary {
namespace {

class TavlyndCommands : public Workers {};

constexpr const char* kPlace = "/dev/hidraw-sim1";

// The members of a command besides its request and device; the reply is told as the nth.
std::string Asked(const std::string& members, const std::string& place = kPlace, std::size_t nth = 1) {
  const std::string number = std::to_string(nth);
  return "ask usb:reader '{\"request\":\"" + number + "\",\"device\":\"" + place + "\"," + members +
         "}'; told reply " + number + "; ";
}

TEST_F(TavlyndCommands, EachDoesWhatTavlynctlDoes) {
  struct Case {
    const char* members;
    const char* result;
  };
  const Case kCases[] = {
      {R"("do":"beep")", R"({"beeps":1,"long":false})"},
      {R"("do":"beep","count":2,"long":true)", R"({"beeps":2,"long":true})"},
      {R"("do":"led","colours":["red"])",
       R"({"stored":false,"written":true,"verified":true,"changes":[{"configuration":0,"field":"LEDCtrl.bAppCtrlsLED","old":0,"new":1,"stored":1,"result":"stored"}]})"},
      {R"("do":"relay","on":true)",
       R"({"stored":false,"written":true,"verified":true,"changes":[{"configuration":0,"field":"BprRlyCtrl.iRelayState","old":0,"new":1,"stored":1,"result":"stored"}]})"},
      {R"("do":"read-card")", R"({"bits":8,"id":"0A","bytes":[10]})"},
  };
  std::string steps;
  for (const Case& one : kCases) {
    steps += Asked(one.members, kPlace, static_cast<std::size_t>(&one - kCases) + 1);
  }
  const auto heard = Owned("--device reader,serial=A1 --do 'card 0A:8'",
                           "owned usb:reader; told '\"card\"'; " + steps + "ended");
  const std::vector<Json> replies = All(heard, "reply");
  ASSERT_EQ(replies.size(), std::size(kCases));
  for (std::size_t at = 0; at < replies.size(); ++at) {
    EXPECT_EQ(replies[at]["request"], std::to_string(at + 1));
    EXPECT_EQ(replies[at]["ok"], true);
    EXPECT_EQ(replies[at]["result"], Json::parse(kCases[at].result)) << kCases[at].members;
  }
}

// The next look is a minute away.
TEST_F(TavlyndCommands, TheyDoNotWaitForTheNextLook) {
  std::string steps;
  for (std::size_t nth = 1; nth <= 5; ++nth) steps += Asked(R"("do":"beep")", kPlace, nth);
  Owned("--device reader,serial=A1", "pause=60000; owned usb:reader; told arrived; typed '#1 clear'; " +
                                         steps + "typed '#1 traffic'; ended");
  std::istringstream traffic(simulatorTold_);
  int looks = 0;
  for (std::string line; std::getline(traffic, line);) looks += line.starts_with("set 1 8E") ? 1 : 0;
  EXPECT_TRUE(Holds(simulatorTold_, "set 1 ")) << simulatorTold_;
  EXPECT_LT(looks, 5) << simulatorTold_;
}

TEST_F(TavlyndCommands, TheConfigurationIsThatOfTavlynctl) {
  const auto heard =
      Owned("--device plus:2,serial=A1", "ctl config show --json >show; owned usb:reader; told arrived; " +
                                             Asked(R"("do":"read-config")") + "ended");
  const Json shown = Json::parse(TextOf(folder_ / "show"));
  EXPECT_EQ(shown["configurations"].size(), 2U);
  EXPECT_EQ(Only(heard, "reply")["result"]["configurations"], shown["configurations"]);
}

// What another program has written.
TEST_F(TavlyndCommands, ItReadsAgain) {
  const auto heard = Owned("--device reader,serial=A1,luid=7",
                           "owned usb:reader; told arrived; " + Asked(R"("do":"re-read")") + "ended");
  EXPECT_EQ(Only(heard, "reply")["result"], Only(heard, "arrived")["device"]);
}

// A file as tavlynctl saves it, with one value changed; the text goes through the command.
TEST_F(TavlyndCommands, AFileIsLoadedDryAndForGood) {
  const std::string file =
      "{ " + Edited("s/iIDHoldTO = .*/iIDHoldTO = 1500/") + "; } >saved" +
      R"(; load() { python3 -c 'import json,sys; print("usb:reader", json.dumps({"request": "r", )"
      R"("device": "/dev/hidraw-sim1", "do": "load-config", "file": open("file.hwg").read(), )"
      R"("dry": sys.argv[1] == "dry"}))' "$1" >&3; told reply; }; owned usb:reader; told arrived; )";
  for (const bool isDry : {true, false}) {
    const auto heard = Owned("--device reader,serial=A1", file + (isDry ? "load dry; " : "load; ") + "ended");
    const Json reply = Only(heard, "reply");
    ASSERT_EQ(reply["ok"], true) << reply;
    EXPECT_EQ(reply["result"]["written"], !isDry);
    EXPECT_EQ(reply["result"]["changes"][0]["new"], 1500);
    EXPECT_EQ(reply["result"].value("verified", false), !isDry);
    fs::remove(folder_ / "in");
  }
}

TEST_F(TavlyndCommands, WhatCannotBeIsRefused) {
  struct Case {
    const char* members;
    const char* place;
    const char* error;
  };
  const Case kCases[] = {
      {R"("do":"dance")", kPlace, R"({"code":"bad-request","text":"there is no such command"})"},
      {R"("do":"beep")", "/dev/null", R"({"code":"unknown-device","text":"there is no device /dev/null"})"},
      {R"("do":"beep","count":6)", kPlace, R"({"code":"bad-request","text":"count has to be 1 to 5"})"},
      {R"("do":"beep","count":"1")", kPlace, R"({"code":"bad-request","text":"count has to be 1 to 5"})"},
      {R"("do":"beep","long":1)", kPlace, R"({"code":"bad-request","text":"long has to be true or false"})"},
      {R"("do":"beep","count":3,"long":true)", kPlace,
       R"({"code":"bad-request","text":"a device makes 1 or 2 long beeps, or 1 to 5 short ones"})"},
      {R"("do":"led","colours":["blue"])", kPlace,
       R"({"code":"bad-request","text":"colours has to be a list of red and green, or of off or auto alone"})"},
      {R"("do":"led","colours":["off","red"])", kPlace,
       R"({"code":"bad-request","text":"off and auto take no other word"})"},
      {R"("do":"relay")", kPlace, R"({"code":"bad-request","text":"on has to be true or false"})"},
      {R"("do":"load-config")", kPlace,
       R"({"code":"bad-request","text":"file has to be the text of a configuration file"})"},
  };
  std::string steps;
  for (const Case& one : kCases) {
    steps += Asked(one.members, one.place, static_cast<std::size_t>(&one - kCases) + 1);
  }
  const auto heard = Owned("--device reader,serial=A1", "owned usb:reader; told arrived; " + steps + "ended");
  const std::vector<Json> replies = All(heard, "reply");
  ASSERT_EQ(replies.size(), std::size(kCases));
  for (std::size_t at = 0; at < replies.size(); ++at) {
    EXPECT_EQ(replies[at]["ok"], false);
    EXPECT_EQ(replies[at]["error"], Json::parse(kCases[at].error)) << kCases[at].members;
  }
}

}  // namespace
}  // namespace tavlyn::boundary
