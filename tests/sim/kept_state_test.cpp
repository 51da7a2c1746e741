// The memory of devices as text, read by devices of the same kind.
#include "sim/kept_state.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim/devices/magstripe.h"
#include "sim/devices/reader.h"
#include "sim/devices/sonar.h"

namespace tavlyn::test {
namespace {

using sim::KeptDevice;

KeptDevice KeptSonar() { return {"sonar", "06", std::make_shared<sim::Sonar>()}; }
KeptDevice KeptPlus() { return {"plus:2", "04", sim::Reader::Plus()}; }

std::string WholeText(const KeptDevice& device) { return sim::StateText({sim::KeptText(device)}); }

TEST(KeptState, WhatIsCommittedReachesAnother) {
  const KeptDevice one = KeptPlus();
  auto& state = dynamic_cast<sim::Reader&>(*one.model).state;
  auto& second = state.configurations[1];
  second.stored.blocks[2] = {1, 2, 3};
  second.user.separated[127] = 4;
  second.plus.hashKeys[31] = 5;
  second.stored.cardType = 0x0607;
  second.stored.highPriority = true;
  second.working.blocks[3] = {9};
  state.storedLuid = 0x0A0B;
  state.luid = 7;
  state.active = 1;
  state.secure.storedItems[{1, 2, 3}] = {8, 9};
  state.secure.storedItems[{1, 2, 4}] = {};
  state.secure.storedBle[3][127] = 10;
  state.extensions.modules[2] = true;

  const KeptDevice other = KeptPlus();
  EXPECT_EQ(sim::TakeState(WholeText(one), {other}).text, "");
  const auto& taken = dynamic_cast<sim::Reader&>(*other.model).state;
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(taken.configurations[i].stored, state.configurations[i].stored);
    EXPECT_EQ(taken.configurations[i].working, state.configurations[i].stored);
    EXPECT_EQ(taken.configurations[i].user, state.configurations[i].user);
    EXPECT_EQ(taken.configurations[i].plus, state.configurations[i].plus);
  }
  EXPECT_EQ(taken.luid, 0x0A0B);
  EXPECT_EQ(taken.active, 1u);
  EXPECT_EQ(taken.secure.items, state.secure.storedItems);
  EXPECT_EQ(taken.secure.ble, state.secure.storedBle);
  EXPECT_EQ(taken.extensions.modules, state.extensions.modules);
}

TEST(KeptState, MagstripeAndSonarKeepTheirs) {
  const KeptDevice magstripe{"magstripe", "05", std::make_shared<sim::Magstripe>()};
  dynamic_cast<sim::Magstripe&>(*magstripe.model).state.stored.fields[10].second[7] = 3;
  const KeptDevice sonar = KeptSonar();
  dynamic_cast<sim::Sonar&>(*sonar.model).state.user[5][7] = 4;
  const KeptDevice otherMagstripe{"magstripe", "05", std::make_shared<sim::Magstripe>()};
  const KeptDevice otherSonar = KeptSonar();
  const std::string text = sim::StateText({sim::KeptText(magstripe), sim::KeptText(sonar)});
  EXPECT_EQ(sim::TakeState(text, {otherMagstripe, otherSonar}).text, "");
  EXPECT_EQ(dynamic_cast<sim::Magstripe&>(*otherMagstripe.model).state.working.fields[10].second[7], 3);
  EXPECT_EQ(dynamic_cast<sim::Sonar&>(*otherSonar.model).state.user[5][7], 4);
}

TEST(KeptState, WhatIsWrongIsToldWithItsLine) {
  const std::string header = "tavlynsim state 1\n";
  const std::string device = header + "device sonar 06\n";
  const struct {
    std::string text;
    int line;
    std::string problem;
  } kCases[] = {
      {"", 1, "this is not the state of simulated devices"},
      {"\x7f"
       "ELF",
       1, "this is not the state of simulated devices"},
      {"tavlynsim state 2\n", 1, "version 2 is none that this tavlynsim knows"},
      {header, 1, "the file ends too early"},
      {header + "luid 0100\n", 2, "a device comes first"},
      {header + "device sonar\n", 2, "a device has a kind and a serial number"},
      {device + "luid 010\n", 3, "luid is hexadecimal, two digits for each byte"},
      {device + "luid 0100\n#\nluid 0100\n", 5, "luid is there twice"},
      {device + "end\nmore 01\n", 4, "there is more after the end"},
      {device + "end\n", 2, "luid is missing"},
      {device + "luid 01\nend\n", 3, "luid has 2 bytes"},
      {header + "end\n", 1, "the devices here are 0, those on the command line 1"},
      {header + "device sonar 07\nend\n", 2, "device 1 is sonar 07 here, and sonar 06 on the command line"},
  };
  for (const auto& [text, line, problem] : kCases) {
    const auto found = sim::TakeState(text, {KeptSonar()});
    EXPECT_EQ(found.line, line) << text;
    EXPECT_EQ(found.text, problem) << text;
  }
}

TEST(KeptState, ValuesThatADeviceCannotHaveAreRefused) {
  const std::string text = WholeText(KeptPlus());
  const struct {
    std::string line;
    std::string instead;
    std::string problem;
  } kCases[] = {
      {"active 0000", "active 0200", "active is at most 1"},
      {"stored-0-high-priority 0100", "stored-0-high-priority 0200", "stored-0-high-priority is at most 1"},
      {"volume 0200", "volume 0200\nitem-0102 00", "item-0102: this device has nothing of this name"},
      {"volume 0200",
       "volume 0200\nitem-010203" +
           [] {
             std::string long256 = " ";
             for (int i = 0; i < 256; ++i) long256 += "00";
             return long256;
           }(),
       "item-010203 has at most 255 bytes"},
  };
  for (const auto& [line, instead, problem] : kCases) {
    std::string changed = text;
    changed.replace(changed.find(line), line.size(), instead);
    EXPECT_EQ(sim::TakeState(changed, {KeptPlus()}).text, problem);
  }
}

}  // namespace
}  // namespace tavlyn::test
