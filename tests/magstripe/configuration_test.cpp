// Reading, writing and resetting the configuration: 37 exchanges each way.
#include <cstring>

#include "tests/magstripe/stripe_bench.h"

namespace tavlyn::test {
namespace {

Lines ReadCommands() {
  Lines all = {"QRZ", "QSV"};
  for (char letter = 'a'; letter <= 'k'; ++letter)
    for (const char part : {'0', '1', 'C'}) all.push_back({'G', letter, part});
  all.insert(all.end(), {"GS0", "GL0"});
  return all;
}

Lines BlankWriteCommands() {
  Lines all = {"FR"};
  for (const char letter : std::string("abcdefghijk")) {
    all.push_back(std::string("S") + letter + "0" + std::string(20, '0'));
    all.push_back(std::string("S") + letter + "1" + std::string(20, '0'));
    all.push_back(std::string("S") + letter + "C" + std::string(10, '0'));
  }
  all.insert(all.end(), {"SS0000000000000", "SL00000", "FW"});
  return all;
}

class StripeCfg : public StripeBench {};

TEST_F(StripeCfg, ReadAsksForEveryPartOnce) {
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(stripe->commands.size(), 37U);
  ExpectCommands(ReadCommands());
  EXPECT_EQ(Slept(), 74U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(StripeCfg, ReadFillsTheMirror) {
  stripe->replies["QRZ"] = "RRZPART\rNUMBER\r12345678901234567890";
  stripe->replies["QSV"] = "RSVABCD1234";
  stripe->replies["Ga0"] = "Ra0C90102030405060708";
  stripe->replies["Gk1"] = "Rk1F0F1F2F3F4F5F6F7";
  stripe->replies["GbC"] = "RbCE31122FF44";
  stripe->replies["GS0"] = "RS0C50304785AB3";
  stripe->replies["GL0"] = "RL02703";
  std::memset(Entry().PartNumber, 'x', sizeof Entry().PartNumber);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(std::string(Entry().PartNumber, sizeof Entry().PartNumber),
            "PART NUMBER\r123456789" + std::string(4, '\0'));
  EXPECT_EQ(Entry().DID, 0xABCD);
  EXPECT_EQ(Entry().DID2, 0x1234);
  EXPECT_EQ(GetFirmwareVersion(7, 0), 0xABCDU);
  EXPECT_EQ(GetFirmwareVersion(0, 1), 0x1234U);
  EXPECT_EQ(GetFirmwareVersion(0, 2), 0U);

  const tsSorbaneField& a = Cfg().UserField[0];
  EXPECT_EQ(a.Enable, 1);
  EXPECT_EQ(a.Skip, 1);
  EXPECT_EQ(a.nKeys, 9);
  EXPECT_EQ(a.Keybyte[0], 1);
  EXPECT_EQ(a.Keybyte[7], 8);
  EXPECT_EQ(a.Keybyte[8], 0);
  EXPECT_EQ(Cfg().UserField[10].Keybyte[8], 0xF0);
  EXPECT_EQ(Cfg().UserField[10].Keybyte[15], 0xF7);
  const tsSorbaneField& b = Cfg().UserField[1];
  EXPECT_EQ(b.Track, 3);
  EXPECT_EQ(b.ShowSepSen, 1);
  EXPECT_EQ(b.ShowLRC, 1);
  EXPECT_EQ(b.IgnoreLRC, 1);
  EXPECT_EQ(b.Field, 0x11);
  EXPECT_EQ(b.ByteOffset, 0x22);
  EXPECT_EQ(b.Length, 0xFF);
  EXPECT_EQ(b.Termination, 0x44);

  EXPECT_EQ(Cfg().HaltKBSend, 1);
  EXPECT_EQ(Cfg().UseNumKP, 1);
  EXPECT_EQ(Cfg().TrackEnables, 5);
  EXPECT_EQ(Cfg().KeyPressTime, 12);
  EXPECT_EQ(Cfg().KeyReleaseTime, 16);
  EXPECT_EQ(GetLUID(), 0x5A78U);
  EXPECT_EQ(Cfg().LUID, 0x5A78);
  EXPECT_EQ(Cfg().Beeper, 0xB3);
  EXPECT_EQ(Cfg().LedColor, (std::array<std::uint8_t, 5>{3, 0, 2, 1, 3}));
}

TEST_F(StripeCfg, ReadFailsWhereThePartsMatter) {
  struct Case {
    const char* lost;
    std::uint32_t result;
    std::uint32_t error;
    std::size_t exchanges;
  };
  // QRZ is tried twice; the version and the system settings may fail.
  for (const Case& at :
       {Case{"QRZ", 0, 0x20000, 2}, Case{"QSV", 1, 0, 37}, Case{"Ga0", 0, 0x20001, 3},
        Case{"Gc1", 0, 0x20001, 10}, Case{"GkC", 0, 0, 35}, Case{"GS0", 1, 0, 37}, Case{"GL0", 0, 0, 37}}) {
    Forget();
    stripe->lost = {at.lost};
    EXPECT_EQ(ReadCfg(), at.result) << at.lost;
    EXPECT_EQ(GetLastLibErr(), at.error) << at.lost;
    EXPECT_EQ(stripe->commands.size(), at.exchanges) << at.lost;
  }
}

TEST_F(StripeCfg, ARefusedPartReplacesTheWordOfTheChannel) {
  stripe->refused = {"Gc1"};
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(GetLastLibErr(), TAVLYN_ERR_FIELD_PART);
  stripe->refused = {"GcC"};
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(GetLastLibErr(), TAVLYN_ERR_WRITE_REPORT);
}

TEST_F(StripeCfg, WithoutAnAnswerTheSystemSettingsStay) {
  Cfg().TrackEnables = 6;
  Entry().LUID = 77;
  stripe->lost = {"GS0"};
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Cfg().TrackEnables, 6);
  EXPECT_EQ(GetLUID(), 77U);
}

TEST_F(StripeCfg, WriteSendsEveryPartOnceAndCommits) {
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(stripe->commands.size(), 37U);
  ExpectCommands(BlankWriteCommands());
  EXPECT_EQ(Slept(), 37U * 2 + 200 + 1100);
}

TEST_F(StripeCfg, WritePacksTheMirror) {
  Cfg().UserField[0] = {.Enable = 1,
                        .Skip = 1,
                        .Track = 7,
                        .Field = 0x11,
                        .ByteOffset = 0x22,
                        .Length = 0x33,
                        .Termination = 0x44,
                        .ShowSepSen = 1,
                        .ShowLRC = 0,
                        .IgnoreLRC = 1,
                        .nKeys = 0x7F,
                        .Keybyte = {1, 2, 3, 4, 5, 6, 7, 8, 0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7}};
  Cfg().HaltKBSend = 1;
  Cfg().TrackEnables = 0xFF;
  Cfg().KeyPressTime = 15;
  Cfg().KeyReleaseTime = 1024;
  Cfg().Beeper = 0xB3;
  Cfg().LedColor = {1, 0, 2, 1, 7};
  SetLUID(0x5A78);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(stripe->commands.at(1), "Sa0FF010203040506070800");
  EXPECT_EQ(stripe->commands.at(2), "Sa1F0F1F2F3F4F5F6F70000");
  EXPECT_EQ(stripe->commands.at(3), "SaCA311223344");
  EXPECT_EQ(stripe->commands.at(34), "SS0870300785AB3");
  EXPECT_EQ(stripe->commands.at(35), "SL02701");
  EXPECT_EQ(Cfg().LUID, 0x5A78);
}

TEST_F(StripeCfg, WriteStopsAtTheFirstFailure) {
  const Lines all = BlankWriteCommands();
  for (std::size_t at = 0; at < all.size(); ++at) {
    Forget();
    stripe->lost = {all[at]};
    EXPECT_EQ(WriteCfg(), 0U) << all[at];
    EXPECT_EQ(stripe->commands.size(), at + 1) << all[at];
    const bool keys = all[at].size() == 23;
    EXPECT_EQ(GetLastLibErr(), keys ? TAVLYN_ERR_FIELD_PART : 0U) << all[at];
  }
  EXPECT_EQ(Slept(), 36U * 2 + 202 + 2 + 1100) << "a lost commit is waited for too";
}

TEST_F(StripeCfg, ResetReadsTheDefaults) {
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  ExpectCommands(Join({{"FD"}, ReadCommands()}));
  EXPECT_EQ(Slept(), 202U + 1100 + 74);
  stripe->lost = {"GL0"};
  EXPECT_EQ(ResetFactoryDflts(), 0U);
}

TEST_F(StripeCfg, AFailedResetReadsNothing) {
  stripe->lost = {"FD"};
  Entry().LastLibErr = 5;
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  EXPECT_EQ(GetLastLibErr(), TAVLYN_ERR_RESET);
  ExpectCommands({"FD"});
  stripe->refused = {"FD"};
  EXPECT_EQ(ResetFactoryDflts(), 0U);
  EXPECT_EQ(GetLastLibErr(), TAVLYN_ERR_RESET | TAVLYN_ERR_WRITE_REPORT);
}

TEST_F(StripeCfg, WhatOnlyReadersHaveIsUnsupported) {
  SetUnsupportedProductErrorCode(0x8001);
  tsCfgFlags flags{};
  tsCfgFlags3 flags3{};
  EXPECT_EQ(GetFlags(&flags), 0x8001U);
  EXPECT_EQ(SetFlags(&flags), 0x8001U);
  EXPECT_EQ(GetFlags3(&flags3), 0x8001U);
  EXPECT_EQ(ResetUserDflts(), 0x8001U);
  EXPECT_EQ(SaveUserDflts(), 0x8001U);
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
