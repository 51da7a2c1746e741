// The command language of the rack and the reports that pass through it.
#include "sim/rack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace tavlyn::sim {
namespace {

class RackTest : public testing::Test {
 protected:
  std::string Do(const std::string& command) {
    std::string reply;
    EXPECT_TRUE(rack_.Run(command, reply)) << command << ": " << reply;
    return reply;
  }

  // The reply of a command that fails.
  std::string Refused(const std::string& command) {
    std::string reply;
    EXPECT_FALSE(rack_.Run(command, reply)) << command;
    return reply;
  }

  std::vector<std::uint8_t> Ask(int number, std::uint8_t reportId, std::uint8_t command,
                                std::uint8_t second = 0, std::uint8_t third = 0) {
    std::vector<std::uint8_t> report{reportId, command, second, third, 0, 0, 0, 0, 0};
    if (!rack_.SetFeature(number, report) || !rack_.GetFeature(number, report)) return {};
    return report;
  }

  int Luid(int number) {
    const std::vector<std::uint8_t> identity = Ask(number, 0, 0x8A);
    return identity[1] | identity[2] << 8;
  }

  // In the answer to "GS0": hexadecimal digits, after its three letters and three other bytes.
  int MagstripeLuid(int number) {
    std::vector<std::uint8_t> report{0, 'G', 'S', '0'};
    report.resize(25);
    report.back() = '\r';
    EXPECT_TRUE(rack_.SetFeature(number, report) && rack_.GetFeature(number, report));
    const std::string text(report.begin() + 1, report.end());
    return std::stoi(text.substr(9, 2), nullptr, 16) | std::stoi(text.substr(11, 2), nullptr, 16) << 8;
  }

  Rack rack_;
};

TEST_F(RackTest, DevicesAreNumberedAndListed) {
  EXPECT_EQ(Do("list"), "");
  EXPECT_EQ(Do("plug reader"), "1");
  EXPECT_EQ(Do("plug plus:3@19E5:2021"), "2");
  EXPECT_EQ(Do("list"), "1 7A31:3BFA reader\n2 19E5:2021 plus:3@19E5:2021\n");
  Do("#1 unplug");
  EXPECT_EQ(Do("list"), "2 19E5:2021 plus:3@19E5:2021\n");
  EXPECT_EQ(Do("plug reader"), "3");
  Do("reset");
  EXPECT_EQ(Do("list"), "");
  EXPECT_EQ(Do("plug reader"), "1");
}

TEST_F(RackTest, IsFullAtSomeTime) {
  for (int number = 1; number <= 10'000; ++number) {
    Do("plug sonar");
    Do("unplug");
  }
  EXPECT_EQ(Refused("plug sonar"), "sonar: the rack is full; reset empties it");
  Do("reset");
  EXPECT_EQ(Do("plug sonar"), "1");
}

TEST_F(RackTest, EveryDeviceHasASerialNumberAndALuidOfItsOwn) {
  struct Own {
    const char* word;
    const char* serial;
    std::uint16_t luid;
  };
  constexpr Own kOwn[] = {
      {"reader", "0400123456", 1},
      {"plus:2", "0400123457", 2},
      {"sonar", "0600123458", 3},
      {"magstripe", "0500123459", 4},
      {"reader,serial=A-7", "A-7", 5},
      {"plus:3@19E5:2021,luid=65535", "0400123461", 65535},
      {"sonar,luid=0,serial=123456789012345678901234", "123456789012345678901234", 0},
      {"magstripe,serial=0400123456,luid=258", "0400123456", 258},
  };
  for (const Own& own : kOwn) {
    const int number = std::stoi(Do(std::string("plug ") + own.word));
    EXPECT_EQ(rack_.Identity(number)->serial, own.serial);
    EXPECT_EQ(own.word[0] == 'm' ? MagstripeLuid(number) : Luid(number), own.luid) << own.word;
  }
}

TEST_F(RackTest, SerialNumbersAndLuidsThatAreNoneAreRefused) {
  for (const char* own : {"serial=", "serial=1234567890123456789012345", "luid=", "luid=65536", "luid=-1",
                          "luid=x", "colour=red", "luid", ""}) {
    EXPECT_EQ(Refused("plug reader,luid=1," + std::string(own) + ",luid=2"),
              std::string(own) + ": serial= takes 1 to 24 characters, luid= a number from 0 to 65535");
  }
}

TEST_F(RackTest, ReaderWithNumberedReportsHasAKeyboardBesideIt) {
  Do("plug reader@7a31:3bfb");
  const auto present = rack_.Present();
  ASSERT_EQ(present.size(), 2U);
  EXPECT_EQ(present[0].identity.usages.front().page, 1);
  EXPECT_EQ(present[0].identity.usages.front().usage, 6);
  EXPECT_EQ(present[1].identity.usages.front().page, 0xFFA0);
  EXPECT_TRUE(Ask(1, 0, 0x8E).empty());
  EXPECT_TRUE(Ask(2, 0, 0x8E).empty());
  EXPECT_FALSE(Ask(2, 1, 0x8E).empty());
  Do("input 01AA");
  std::vector<std::uint8_t> report;
  EXPECT_FALSE(rack_.TakeInput(1, report));
  EXPECT_TRUE(rack_.TakeInput(2, report));
  EXPECT_EQ(report, (std::vector<std::uint8_t>{0x01, 0xAA}));
  EXPECT_FALSE(rack_.TakeInput(2, report));
  Do("unplug");
  EXPECT_TRUE(rack_.Present().empty());
}

TEST_F(RackTest, CardsComeAndGoOnTheDeviceMeant) {
  Do("plug reader");
  Do("plug reader");
  Do("#1 card 0102:13");
  EXPECT_EQ(Ask(1, 0, 0x8E).at(1), 13);
  EXPECT_EQ(Ask(1, 0, 0x8F).at(2), 0x02);
  EXPECT_EQ(Ask(2, 0, 0x8E).at(1), 0);
  Do("#1 take");
  EXPECT_EQ(Ask(1, 0, 0x8E).at(1), 0);
}

TEST_F(RackTest, TrafficAndCount) {
  Do("plug reader");
  Do("card 05:8");
  Ask(1, 0, 0x8E);
  Do("refuse 2");
  Ask(1, 0, 0x8E);
  EXPECT_EQ(Do("traffic"), "set 1 8E\nget 1 08\nset 1 8E\nget 1 refused\n");
  EXPECT_EQ(Do("exchanges"), "4");
  Do("clear");
  EXPECT_EQ(Do("traffic"), "");
  EXPECT_EQ(Do("exchanges"), "4");
}

TEST_F(RackTest, FaultsCountFromTheCommandAndHeal) {
  Do("plug reader");
  Do("card 05:8");
  Ask(1, 0, 0x8E);
  Do("garble 2");
  EXPECT_EQ(Ask(1, 0, 0x8E).at(1), 0xF7);
  EXPECT_EQ(Ask(1, 0, 0x8E).at(1), 8);
  Do("vanish 1");
  EXPECT_TRUE(Ask(1, 0, 0x8E).empty());
  EXPECT_FALSE(rack_.IsPresent(1));
  Do("heal");
  EXPECT_TRUE(rack_.IsPresent(1));
  EXPECT_EQ(Do("exchanges"), "0");
  EXPECT_EQ(Ask(1, 0, 0x8E).at(1), 8);
}

TEST_F(RackTest, ReportsOfAnotherLengthOrDeviceAreRefused) {
  Do("plug reader");
  std::array<std::uint8_t, 11> report{0, 0x8E};
  EXPECT_FALSE(rack_.SetFeature(1, report));
  EXPECT_TRUE(rack_.SetFeature(1, std::span(report).first(10))) << "one byte more is passed over";
  EXPECT_FALSE(rack_.SetFeature(1, std::span(report).first(8)));
  EXPECT_FALSE(rack_.SetFeature(1, std::span(report).first(0)));
  EXPECT_FALSE(rack_.GetFeature(2, std::span(report).first(9)));
  EXPECT_FALSE(rack_.GetFeature(0, std::span(report).first(9)));
  EXPECT_EQ(rack_.Identity(2), nullptr);
  EXPECT_TRUE(rack_.SetFeature(1, std::span(report).first(9)));
}

TEST_F(RackTest, MagneticStripeReadersAndSonarSensorsAreDevicesToo) {
  EXPECT_EQ(Do("plug magstripe"), "1");
  EXPECT_EQ(Do("plug sonar@1234:0104"), "2");
  EXPECT_EQ(Do("list"), "1 7A31:1000 magstripe\n2 1234:0104 sonar@1234:0104\n");
  ASSERT_EQ(rack_.Present().size(), 2U);
  EXPECT_EQ(rack_.Present()[0].identity.featureBytes, 24U);
  Do("#1 swipe %B1^DOE JOHN?;12?");
  std::vector<std::uint8_t> packet(25);
  packet[1] = 'Q', packet[2] = 'S', packet[3] = '0', packet[24] = '\r';
  ASSERT_TRUE(rack_.SetFeature(1, packet));
  ASSERT_TRUE(rack_.GetFeature(1, packet));
  EXPECT_EQ(packet[5], '3');
  Do("range 14");
  EXPECT_EQ(Ask(2, 0, 0x8F).at(2), 0x31);
  Do("walk 20:20:60000 20:30:1");
  EXPECT_EQ(Ask(2, 0, 0x8F).at(2), 0x45);
  Do("drop 1");
  EXPECT_EQ(Ask(2, 0, 0x8F).at(2), 0x45);
  Do("late 2");
  Do("range 14");
  EXPECT_EQ(Ask(2, 0, 0x8F).at(2), 0x45);
}

TEST_F(RackTest, CommandsForAnotherKindOfDeviceAreRefused) {
  Do("plug reader");
  Do("plug magstripe");
  Do("plug sonar");
  for (const char* command : {"#2 card 01:8", "#3 take", "#3 input 01", "#1 swipe ;1?", "#3 swipe ;1?",
                              "#1 range 14", "#2 walk 1:2:3"}) {
    const std::string reply = Refused(command);
    EXPECT_NE(std::string::npos, reply.find(": not for a ")) << command << ": " << reply;
  }
  EXPECT_EQ(Refused("#2 swipe x"), "x: a stripe is %TRACK1?;TRACK2?+TRACK3?");
  for (const char* inches : {"-1", "x", "1001", "1x", "nan"}) {
    EXPECT_EQ(Refused(std::string("range ") + inches), std::string(inches) + ": a range is in inches");
  }
  for (const char* leg : {"1", "1:2", "1:2:-3", "1:x:3", "::", "1:2:3:4"}) {
    EXPECT_EQ(Refused(std::string("walk 1:2:3 ") + leg), std::string(leg) + ": a leg is FROM:TO:MS");
  }
}

TEST_F(RackTest, WhatIsNotUnderstoodIsRefusedWithAReason) {
  EXPECT_EQ(Refused(""), "no command");
  EXPECT_EQ(Refused("#1"), "no command");
  EXPECT_EQ(Refused("dance"), "dance: no such command; help lists them");
  EXPECT_EQ(Refused("take"), "take: no such device");
  EXPECT_EQ(Refused("plug"), "plug: wrong number of words");
  for (const char* device : {"toaster", "plus:1", "plus:12", "plus:", "magstripe:2", "sonar@1", "reader@7A31",
                             "reader@7A31:XYZ", "reader@:", "reader@0000:0001", "reader@17A31:0001"}) {
    EXPECT_EQ(Refused(std::string("plug ") + device),
              std::string(device) + ": no such kind of device; tavlynsim devices shows the kinds");
  }
  Do("plug reader");
  EXPECT_EQ(Refused("#2 take"), "take: no such device");
  EXPECT_EQ(Refused("#x take"), "take: no such device");
  for (const char* card : {"0102", "012:8", "01G2:8", ":8", "01:0", "01:256", "01:"}) {
    EXPECT_EQ(Refused(std::string("card ") + card), std::string(card) + ": a card is HEX:BITS");
  }
  EXPECT_EQ(Refused("refuse 0"), "0: exchanges count from 1");
  EXPECT_EQ(Refused("input x"), "x: a report is hexadecimal");
}

TEST_F(RackTest, ACardHasNoMoreBitsThanBytes) {
  Do("plug reader");
  EXPECT_EQ(Refused("card 0102:99"), "0102:99: the bytes hold 16 bits");
  EXPECT_EQ(Refused("card 0102:17"), "0102:17: the bytes hold 16 bits");
  Do("card 0102:16");
}

// The power goes after the first of two blocks was committed.
TEST_F(RackTest, AReplugBringsBackWhatWasCommitted) {
  Do("plug reader");
  const auto write = [&](std::uint8_t block, std::uint8_t byte) {
    const std::uint8_t command = 0x80 | block;
    const std::vector<std::uint8_t> announced{0, command, 0, 0, 0, 0, 0, 0, 0};
    const std::vector<std::uint8_t> data{0, byte, 0, 0, 0, 0, 0, 0, 0};
    return rack_.SetFeature(1, announced) && rack_.SetFeature(1, data);
  };
  EXPECT_EQ(Refused("replug"), "replug: the device is there");
  const std::vector<std::uint8_t> before = Ask(1, 0, 0x81);
  EXPECT_TRUE(write(0, 7));
  Ask(1, 0, 0x90, 0x03);
  Do("vanish 2");
  EXPECT_FALSE(write(1, 9));
  EXPECT_EQ(Do("list"), "");
  Do("replug");
  EXPECT_EQ(Do("list"), "1 7A31:3BFA reader\n");
  EXPECT_TRUE(Ask(1, 0, 0x80).empty()) << "whoever had it open has to open it again";
  ASSERT_EQ(rack_.Present().size(), 1U);
  EXPECT_EQ(rack_.Present()[0].number, 2);
  EXPECT_EQ(Ask(2, 0, 0x80)[1], 7);
  EXPECT_EQ(Ask(2, 0, 0x81), before);
}

// The power goes at each report of a write, and then after it.
TEST_F(RackTest, AWriteThatLosesPowerLeavesWhatWasCommitted) {
  const struct Write {
    const char* device;
    std::vector<Bytes> reports;
    Bytes question;
    std::uint8_t last = 0;  // of each report
  } kWrites[] = {
      {"plus:2", {{0x82}, {8, 2}, {0x83}, {1, 2, 3}, {0x90, 0x0C}}, {0x82}},
      {"sonar", {{0x85}, {7, 7}, {0x80}, {2, 90}, {0x90, 0x21}}, {0x85}},
      {"magstripe", {{'F', 'R'}, {'S', 'L', '0', '1', '2', '0', '3'}, {'F', 'W'}}, {'G', 'L', '0'}, '\r'},
  };
  for (const Write& write : kWrites) {
    int number = 1;
    const auto send = [&](const Bytes& bytes) {
      Bytes report(rack_.Identity(number)->featureBytes + 1);
      std::copy(bytes.begin(), bytes.end(), report.begin() + 1);
      report.back() = write.last;
      return rack_.SetFeature(number, report);
    };
    const auto answer = [&] {
      Bytes report(rack_.Identity(number)->featureBytes + 1);
      EXPECT_TRUE(send(write.question) && rack_.GetFeature(number, report)) << write.device;
      return report;
    };
    for (std::size_t lost = 0; lost <= write.reports.size(); ++lost) {
      Do("reset");
      number = 1;
      Do(std::string("plug ") + write.device);
      const Bytes before = answer();
      Do("vanish " + std::to_string(lost + 1));
      for (std::size_t i = 0; i < write.reports.size(); ++i) EXPECT_EQ(send(write.reports[i]), i < lost);
      EXPECT_FALSE(send(write.question));
      Do("replug");
      number = 2;
      EXPECT_EQ(answer() == before, lost < write.reports.size()) << write.device << " at report " << lost;
    }
  }
}

TEST_F(RackTest, ALineThatLostPowerHasNothingOnItsWay) {
  Do("plug reader@com3");
  const std::vector<std::uint8_t> ping{0xFA, 0x04, 0xED, 0xED, 4};
  std::vector<std::uint8_t> answer(64);
  rack_.SendBytes(1, ping);
  const std::size_t whole = rack_.TakeBytes(1, answer);
  ASSERT_GT(whole, 0U);
  rack_.SendBytes(1, ping);
  Do("vanish 2");
  rack_.SendBytes(1, ping);
  EXPECT_TRUE(rack_.Lines().empty());
  Do("replug");
  EXPECT_EQ(rack_.TakeBytes(1, answer), 0U);
  rack_.SendBytes(1, ping);
  EXPECT_EQ(rack_.TakeBytes(1, answer), whole);
}

TEST_F(RackTest, AReplugNeedsItsPlace) {
  Do("plug reader@COM3");
  Do("unplug");
  Do("plug reader@COM3");
  EXPECT_EQ(Refused("#1 replug"), "replug: its place is taken");
  Do("#2 unplug");
  Do("#1 replug");
  EXPECT_EQ(Do("list"), "1 COM3 reader@COM3\n");
}

TEST_F(RackTest, HelpTellsEveryCommand) {
  const std::string help = "\n" + Do("help");
  for (const char* command :
       {"card HEX:BITS ", "take ",        "input ", "swipe ",  "range ",  "walk ",     "queue ",  "sample ",
        "lack ",          "plug DEVICE ", "list ",  "reset ",  "unplug ", "refuse N ", "garble ", "vanish ",
        "drop ",          "late ",        "delay ", "slow ",   "cut ",    "flood ",    "replug ", "heal ",
        "exchanges ",     "traffic ",     "clear ", "record ", "help ",   "seen "}) {
    EXPECT_NE(std::string::npos, help.find("\n" + std::string(command))) << command;
  }
  EXPECT_EQ(std::count(help.begin(), help.end(), '\n'), 31);
}

TEST_F(RackTest, WhatTheReaderKeepsIsLaidIn) {
  Do("plug reader");
  Do("queue 0102:A0A1");
  Do("queue 03");
  Do("sample 0102:0A0B0C:20");
  EXPECT_EQ(Ask(1, 0, 0x8C, 0x02), (std::vector<std::uint8_t>{0, 1, 2, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Ask(1, 0, 0x8C, 0x02, 4), (std::vector<std::uint8_t>{0, 0xA0, 0xA1, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Ask(1, 0, 0x8C, 0x02), (std::vector<std::uint8_t>{0, 3, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Ask(1, 0, 0x8C, 0x09), (std::vector<std::uint8_t>{0, 2, 1, 20, 0, 0, 0, 0, 0}));
  Do("lack 8C09");
  EXPECT_EQ(Ask(1, 0, 0x8C, 0x09), std::vector<std::uint8_t>(9));
  for (const char* word : {"queue", "queue 1", "queue 01:", "queue 01:0", "sample 1:02",
                           "sample 1:02:", "sample 1::8", "sample x:02:8", "lack 8", "lack"}) {
    EXPECT_NE(Refused(word), "") << word;
  }
  EXPECT_NE(Refused("queue " + std::string(66, '0')), "");
  EXPECT_NE(Refused("queue 00:" + std::string(18, '0')), "");
}

TEST_F(RackTest, WhatAPersonSeesIsTold) {
  Do("plug reader");
  EXPECT_EQ(Do("seen"), "");
  const auto show = [&](std::uint8_t switches, std::uint8_t leds) {
    EXPECT_TRUE(rack_.SetFeature(1, std::vector<std::uint8_t>{0, 0x82, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(rack_.SetFeature(1, std::vector<std::uint8_t>{0, switches, leds, 0, 0, 0, 0, 0, 0}));
  };
  show(0x06, 0x02);
  show(0x06, 0x02);
  Ask(1, 0, 0x8C, 0x03, 0x83);
  show(0x09, 0x02);
  show(0x00, 0x00);
  Ask(1, 0, 0x8C, 0x03, 2);
  show(0x04, 0x00);
  Do("unplug");
  Do("replug");
  EXPECT_EQ(Do("seen"),
            "leds green\nrelay on\nbeep 3 long\nleds red\nrelay off\nbeeper on\nleds automatic\nbeeper off\n"
            "beep 2 short\nrelay on\nrelay off\n");
  Do("plug magstripe");
  EXPECT_EQ(Refused("seen"), "seen: not for a magstripe");
}

TEST_F(RackTest, OverALineTheSameIsSeen) {
  Do("plug reader@com3:ascii");
  const std::string command = "rfid:out.relay=1\r";
  rack_.SendBytes(1, std::vector<std::uint8_t>(command.begin(), command.end()));
  EXPECT_EQ(Do("seen"), "relay on\n");
}

TEST_F(RackTest, LinesAreListedByTheirPlace) {
  Do("plug reader");
  Do("plug plus:2@COM3");
  Do("plug reader@com4:ascii,luid=7");
  Do("plug reader@127.0.0.1:10001");
  Do("plug reader@bulk");
  Do("plug reader@ACM");
  EXPECT_EQ(Do("list"),
            "1 7A31:3BFA reader\n2 COM3 plus:2@COM3\n3 com4:ascii reader@com4:ascii,luid=7\n"
            "4 127.0.0.1:10001 reader@127.0.0.1:10001\n5 bulk reader@bulk\n"
            "6 ACM reader@ACM\n");
  EXPECT_EQ(rack_.Present().size(), 1U);
  const auto lines = rack_.Lines();
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0].number, 2);
  EXPECT_EQ(lines[0].place.kind, LineKind::kCom);
  EXPECT_EQ(lines[0].place.number, 3);
  EXPECT_EQ(lines[1].place.kind, LineKind::kComAscii);
  EXPECT_EQ(lines[2].place.kind, LineKind::kEthernet);
  EXPECT_EQ(lines[2].place.number, 10001);
  EXPECT_EQ(lines[2].place.ip, (std::array<std::uint8_t, 4>{127, 0, 0, 1}));
  EXPECT_EQ(lines[3].place.kind, LineKind::kBulk);
  EXPECT_EQ(lines[4].place.kind, LineKind::kAcm);
}

TEST_F(RackTest, PlacesThatCannotBeAreRefused) {
  for (const char* place : {"", "com", "com0", "com257", "com3x", "com3:text", "127.0.0.1", "127.0.0:1",
                            "127.0.0.256:1", "127.0.0.1:0", "127.0.0.1:65536", "1.2.3.4.5:6", "bulk2"}) {
    EXPECT_EQ(Refused("plug reader@" + std::string(place)),
              "reader@" + std::string(place) + ": no such kind of device; tavlynsim devices shows the kinds");
  }
}

TEST_F(RackTest, OnePlaceHoldsOneDevice) {
  Do("plug reader@com3");
  EXPECT_EQ(Refused("plug reader@com3:ascii"), "reader@com3:ascii: there is one already");
  Do("plug reader@com4");
  Do("plug reader@127.0.0.1:10001");
  Refused("plug reader@127.0.0.1:10002");
  Do("plug reader@127.0.0.2:10001");
  Do("plug reader@bulk");
  Refused("plug reader@bulk");
  Do("#1 unplug");
  Do("plug reader@com3:ascii");
}

TEST_F(RackTest, LinesCarryBytesWithARecord) {
  Do("plug reader@com3");
  const std::vector<std::uint8_t> ping{0xFA, 0x04, 0xED, 0xED, 4};
  rack_.SendBytes(1, ping);
  std::vector<std::uint8_t> answer(16);
  EXPECT_EQ(rack_.TakeBytes(1, answer), 7U);
  EXPECT_EQ(Do("traffic"), "write FA 04 ED ED 04\nread 04 01 00 31 74 90 00\n");
  EXPECT_EQ(Do("exchanges"), "12");
  Do("refuse 1");
  rack_.SendBytes(1, ping);
  EXPECT_EQ(rack_.TakeBytes(1, answer), 0U);
  EXPECT_EQ(rack_.LineOf(0), nullptr);
  EXPECT_EQ(rack_.LineOf(2), nullptr);
}

TEST_F(RackTest, LinesMisbehave) {
  Do("plug reader");
  for (const char* command : {"delay 5", "slow 5", "cut 5", "flood 5"}) Refused(command);
  Do("plug reader@com3");
  Do("delay 40");
  Do("slow 3");
  EXPECT_EQ(rack_.Lines().at(0).manner.delay, std::chrono::milliseconds(40));
  EXPECT_EQ(rack_.Lines().at(0).manner.betweenBytes, std::chrono::milliseconds(3));
  for (const char* command : {"delay x", "delay 60001", "slow -1", "cut x", "flood 99999999999"})
    Refused(command);
  Do("flood 9");
  std::vector<std::uint8_t> noise(16);
  EXPECT_EQ(rack_.TakeBytes(2, noise), 9U);
  Do("cut 0");
  EXPECT_TRUE(rack_.LineOf(2)->TakeCut());
  Do("vanish 1");
  rack_.SendBytes(2, noise);
  EXPECT_TRUE(rack_.Lines().empty());
  Do("heal");
  ASSERT_EQ(rack_.Lines().size(), 1U);
  EXPECT_EQ(rack_.Lines().at(0).manner.delay, std::chrono::milliseconds(0));
}

}  // namespace
}  // namespace tavlyn::sim
