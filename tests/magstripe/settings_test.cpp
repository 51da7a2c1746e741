// Exports on the mirror, live outputs, status and raw reports.
#include <cstring>

#include "tests/magstripe/stripe_bench.h"

namespace tavlyn::test {
namespace {

class StripeSettings : public StripeBench {};

template <typename Value>
struct Accessor {
  std::uint8_t tsSorbaneField::*member;
  std::uint32_t (*get)(std::uint16_t);
  std::uint32_t (*set)(std::uint16_t, Value);
};

const std::vector<Accessor<std::int16_t>> kFieldFlags = {
    {&tsSorbaneField::Enable, sorbaneGetFieldEnable, sorbaneSetFieldEnable},
    {&tsSorbaneField::Skip, sorbaneGetFieldSkip, sorbaneSetFieldSkip},
    {&tsSorbaneField::ShowSepSen, sorbaneGetFieldShowSepSen, sorbaneSetFieldShowSepSen},
    {&tsSorbaneField::ShowLRC, sorbaneGetFieldShowLRC, sorbaneSetFieldShowLRC},
    {&tsSorbaneField::IgnoreLRC, sorbaneGetFieldIgnoreLRC, sorbaneSetFieldIgnoreLRC},
};
const std::vector<Accessor<std::uint8_t>> kFieldNumbers = {
    {&tsSorbaneField::Track, sorbaneGetFieldTrack, sorbaneSetFieldTrack},
    {&tsSorbaneField::Field, sorbaneGetFieldMagField, sorbaneSetFieldMagField},
    {&tsSorbaneField::ByteOffset, sorbaneGetFieldOffset, sorbaneSetFieldOffset},
    {&tsSorbaneField::Length, sorbaneGetFieldLength, sorbaneSetFieldLength},
    {&tsSorbaneField::Termination, sorbaneGetFieldTerm, sorbaneSetFieldTerm},
    {&tsSorbaneField::nKeys, sorbaneGetFieldKeyCount, sorbaneSetFieldKeyCount},
};

TEST_F(StripeSettings, FlagsAreStoredAsOneOrZero) {
  for (const auto& flag : kFieldFlags) {
    EXPECT_EQ(flag.set(11, -5), 1U);
    EXPECT_EQ(Cfg().UserField[10].*flag.member, 1);
    EXPECT_EQ(flag.get(11), 1U);
    EXPECT_EQ(flag.set(11, 0), 1U);
    EXPECT_EQ(flag.get(11), 0U);
  }
  ExpectTraffic({});
}

TEST_F(StripeSettings, NumbersAreStoredAsTheyAre) {
  std::uint8_t value = 200;
  for (const auto& number : kFieldNumbers) {
    EXPECT_EQ(number.set(1, ++value), 1U);
    EXPECT_EQ(Cfg().UserField[0].*number.member, value);
    EXPECT_EQ(number.get(1), value);
  }
  EXPECT_EQ(sorbaneSetFieldKeydata(1, 15, 0xEE), 1U);
  EXPECT_EQ(sorbaneGetFieldKeydata(1, 15), 0xEEU);
  EXPECT_EQ(Cfg().UserField[0].Keybyte[15], 0xEE);
  EXPECT_EQ(sorbaneSetFieldKeydata(1, 16, 0xEE), 0U);
  EXPECT_EQ(sorbaneGetFieldKeydata(1, 16), 0U);
}

TEST_F(StripeSettings, OtherFieldNumbersGiveZeroAndChangeNothing) {
  const tsSorbaneCfg before = Cfg();
  for (const std::uint16_t field : std::initializer_list<std::uint16_t>{0, 12, 65535}) {
    for (const auto& flag : kFieldFlags) EXPECT_EQ(flag.set(field, 1) + flag.get(field), 0U);
    for (const auto& number : kFieldNumbers) EXPECT_EQ(number.set(field, 1) + number.get(field), 0U);
    EXPECT_EQ(sorbaneSetFieldKeydata(field, 0, 1) + sorbaneGetFieldKeydata(field, 0), 0U);
  }
  EXPECT_EQ(std::memcmp(&before, &Cfg(), sizeof before), 0);
}

TEST_F(StripeSettings, OtherDevicesAreUnsupported) {
  SetUnsupportedProductErrorCode(0x8001);
  for (const bool present : {true, false}) {
    Entry().ProductKind = kReader;
    if (!present) shared.DevCnt = 0;
    for (const auto& flag : kFieldFlags) {
      EXPECT_EQ(flag.get(1), 0x8001U);
      EXPECT_EQ(flag.set(1, 1), 0x8001U);
    }
    for (const auto& number : kFieldNumbers) {
      EXPECT_EQ(number.get(1), 0x8001U);
      EXPECT_EQ(number.set(1, 1), 0x8001U);
    }
    EXPECT_EQ(sorbaneGetFieldKeydata(1, 0), 0x8001U);
    EXPECT_EQ(sorbaneSetFieldKeydata(1, 0, 1), 0x8001U);
    EXPECT_EQ(sorbaneGetTrackEnables(), 0x8001U);
    EXPECT_EQ(sorbaneSetTrackEnables(1), 0x8001U);
    EXPECT_EQ(sorbaneGetBeeper(2), 0x8001U);
    EXPECT_EQ(sorbaneSetBeeper(2, 1, 0), 0x8001U);
    EXPECT_EQ(sorbaneGetLED(0), 0x8001U);
    EXPECT_EQ(sorbaneSetLED(0, 1), 0x8001U);
    EXPECT_EQ(sorbaneSetActiveID(1, 1, 0, 0), 0x8001U);
    EXPECT_EQ(sorbaneIsDataAvailable(), 0x8001U);
    EXPECT_EQ(sorbaneClearDataAvailable(), 0x8001U);
    EXPECT_EQ(sorbaneGetSystemUptime(), 0x8001U);
    EXPECT_EQ(sorbaneGetSystemCardsRead(), 0x8001U);
    EXPECT_EQ(sorbaneGetSystemInternalCount(0), 0x8001U);
    EXPECT_EQ(sorbaneGetTrackData(1, 0), nullptr);
    EXPECT_EQ(sorbaneGetTrackData_BYTE(1, 0, 0), 0x8001U);
    EXPECT_EQ(sorbaneGetTrackFieldOffset(1, 1, 0, 8, 0, 0), nullptr);
  }
  ExpectTraffic({});
  shared.DevCnt = 2;
}

TEST_F(StripeSettings, BeepsOfGoodAndBadReadsAreNibbles) {
  Cfg().Beeper = 0x24;
  EXPECT_EQ(sorbaneSetBeeper(2, 5, 0), 0U);
  EXPECT_EQ(sorbaneSetBeeper(2, -1, 0), 0U);
  EXPECT_EQ(sorbaneSetBeeper(1, 3, 0), 0U);
  EXPECT_EQ(Cfg().Beeper, 0x24);
  EXPECT_EQ(sorbaneSetBeeper(2, 3, 1), 1U);
  EXPECT_EQ(Cfg().Beeper, 0xB4);
  EXPECT_EQ(sorbaneGetBeeper(2), 0x83U);
  EXPECT_EQ(sorbaneGetBeeper(3), 4U);
  EXPECT_EQ(sorbaneSetBeeper(3, 0, 1), 1U);
  EXPECT_EQ(Cfg().Beeper, 0xB8);
  EXPECT_EQ(sorbaneGetBeeper(4), 0U);
}

TEST_F(StripeSettings, TrackEnablesHaveThreeBits) {
  EXPECT_EQ(sorbaneSetTrackEnables(0xFD), 1U);
  EXPECT_EQ(Cfg().TrackEnables, 5);
  Cfg().TrackEnables = 0xFE;
  EXPECT_EQ(sorbaneGetTrackEnables(), 6U);
}

TEST_F(StripeSettings, TheSelectionHasItsLimits) {
  const auto selection = [] {
    const tsSorbaneIdSel& s = Cfg().IdSel;
    return std::array<std::uint16_t, 5>{s.Track, s.Field, s.Offset, s.Length, s.Termination};
  };
  using Words = std::array<std::uint16_t, 5>;
  EXPECT_EQ(selection(), (Words{2, 0, 0, 32, 255})) << "as after load";
  Entry().LastLibErr = 5;
  EXPECT_EQ(sorbaneSetActiveID(1, 51, 0, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(sorbaneSetActiveID(1, 0, 0, 0), 0U);
  EXPECT_EQ(sorbaneSetActiveID(4, 1, 0, 0), 0U);
  EXPECT_EQ(sorbaneSetActiveID(0, 1, 0, 0), 0U);
  EXPECT_EQ(sorbaneSetActiveID(1, 1, 101, 0), 0U);
  EXPECT_EQ(selection(), (Words{2, 0, 0, 32, 255}));
  EXPECT_EQ(sorbaneSetActiveID(3, 50, 100, 13), 1U);
  EXPECT_EQ(selection(), (Words{3, 50, 100, 32, 13}));
}

TEST_F(StripeSettings, BeepNowSendsADigit) {
  EXPECT_EQ(BeepNow(0, 0), 1U);
  EXPECT_EQ(BeepNow(9, 0), 1U);
  EXPECT_EQ(BeepNow(9, 1), 1U);
  EXPECT_EQ(BeepNow(0, -1), 1U);
  ExpectCommands({"BS1", "BS5", "BL2", "BL1"});
  Entry().LastLibErr = 5;
  stripe->lost = {"BS1"};
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 5U);
}

TEST_F(StripeSettings, OneColourIsShownWithTheOthers) {
  Cfg().LedColor = {0, 1, 2, 3, 0};
  EXPECT_EQ(sorbaneSetLED(0, 3), 1U);
  ExpectCommands({"SL06C03"});
  EXPECT_EQ(sorbaneGetLED(0), 3U);
  EXPECT_EQ(sorbaneGetLED(5), 0U);
  EXPECT_EQ(sorbaneSetLED(5, 1), 0U);
  EXPECT_EQ(sorbaneSetLED(0, 4), 0U);
  ExpectCommands({});
  stripe->lost = {"SL06C00"};
  EXPECT_EQ(sorbaneSetLED(0, 0), 0U);
  EXPECT_EQ(sorbaneGetLED(0), 0U) << "stored all the same";
}

TEST_F(StripeSettings, TheLedRecordSetsAllColours) {
  tsLEDCtrl record{};
  record.bAppCtrlsLED = 1;
  for (const auto& [red, green, packet] :
       {std::tuple{0, 0, "SL00000"}, {5, 0, "SL05501"}, {0, -1, "SL0AA02"}, {1, 1, "SL0FF03"}}) {
    record.iRedLEDState = static_cast<std::int16_t>(red);
    record.iGrnLEDState = static_cast<std::int16_t>(green);
    EXPECT_EQ(SetLEDCtrl(&record), 1U);
    ExpectCommands({packet});
    tsLEDCtrl got{};
    got.bAppCtrlsLED = 77;
    EXPECT_EQ(GetLEDCtrl(&got), 1U);
    EXPECT_EQ(got.bAppCtrlsLED, 77);
    EXPECT_EQ(got.iRedLEDState, red != 0);
    EXPECT_EQ(got.iGrnLEDState, green != 0);
  }
  record.bAppCtrlsLED = 0;
  EXPECT_EQ(SetLEDCtrl(&record), 1U);
  ExpectCommands({"SL02701"});
  EXPECT_EQ(GetLEDCtrl(nullptr), 0U);
  EXPECT_EQ(SetLEDCtrl(nullptr), 0U);
}

TEST_F(StripeSettings, TimeParmsLiveInTheFirstSlot) {
  tsTimeParms record{.iBitStrmTO = 1020,
                     .iIDHoldTO = 12750,
                     .iIDLockOutTm = 12750,
                     .iUSBKeyPrsTm = -4,
                     .iUSBKeyRlsTm = 1020,
                     .ExFeatures01 = 6,
                     .iPad6 = 7,
                     .iTPCfgFlg3 = 8};
  Entry().CfgSlot[0][field::TimeParms_iTPCfgFlg3] = 99;
  Entry().LastLibErr = 5;
  EXPECT_EQ(SetTimeParms(&record), 1U);
  EXPECT_EQ(Entry().CfgSlot[0].bDirtyTime, 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  tsTimeParms got{};
  Entry().LastLibErr = 5;
  EXPECT_EQ(GetTimeParms(&got), 1U) << "read or not";
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(got.iUSBKeyPrsTm, -4);
  EXPECT_EQ(got.iPad6, 7);
  EXPECT_EQ(got.iTPCfgFlg3, 99);
  ExpectTraffic({});

  EXPECT_EQ(GetTimeParms(nullptr), 0U);
  EXPECT_EQ(GetLastLibErr(), TAVLYN_ERR_GET_NULL);
  EXPECT_EQ(SetTimeParms(nullptr), 0U);
  EXPECT_EQ(GetLastLibErr(), TAVLYN_ERR_SET_NULL);
  std::int16_t words[8] = {1021, 12751, 12751, 1021, 1021, 0, 0, 0};
  for (std::uint32_t word = 0; word < 5; ++word) {
    EXPECT_EQ(SetTimeParms(reinterpret_cast<tsTimeParms*>(words)), 0U);
    EXPECT_EQ(GetLastLibErr(), TAVLYN_ERR_TIME_PARMS + word);
    words[word] = 0;
  }
  EXPECT_EQ(Entry().CfgSlot[0][field::TimeParms_iUSBKeyPrsTm], -4);
}

TEST_F(StripeSettings, StatusAndCountsAreAskedOf) {
  stripe->replies["QS0"] = "RS0=F";
  EXPECT_EQ(sorbaneIsDataAvailable(), 6U) << "the character's low bits";
  stripe->replies["QS0"] = "RX0=F";
  EXPECT_EQ(sorbaneIsDataAvailable(), 0U);
  stripe->replies["QUP"] = "RUP0102030405060780";
  EXPECT_EQ(sorbaneGetSystemUptime(), 0x04030201U);
  EXPECT_EQ(sorbaneGetSystemCardsRead(), 0x80070605U);
  stripe->replies["QDD"] = "RDD0102030405060780";
  EXPECT_EQ(sorbaneGetSystemInternalCount(0), 0x0201U);
  EXPECT_EQ(sorbaneGetSystemInternalCount(3), 0x8007U);
  EXPECT_EQ(sorbaneClearDataAvailable(), 1U);
  EXPECT_EQ(sorbaneClearOverrun(), 1U);
  ExpectCommands({"QS0", "QS0", "QUP", "QUP", "QDD", "QDD", "CD0", "CQ"});
  EXPECT_EQ(sorbaneGetSystemInternalCount(4), 0U);
  ExpectCommands({});
  stripe->lost = {"QUP", "QDD", "QS0", "CD0", "CQ"};
  EXPECT_EQ(sorbaneGetSystemUptime() + sorbaneGetSystemCardsRead() + sorbaneGetSystemInternalCount(0), 0U);
  EXPECT_EQ(sorbaneIsDataAvailable() + sorbaneClearDataAvailable() + sorbaneClearOverrun(), 0U);
}

TEST_F(StripeSettings, TheOverrunIsClearedWhateverIsActive) {
  Entry().ProductKind = 0;
  EXPECT_EQ(sorbaneClearOverrun(), 1U);
  ExpectCommands({"CQ"});
}

TEST_F(StripeSettings, RawReportsAreThoseOfATransaction) {
  const auto set = SetRawPayload_index;
  const auto got = GetRawPayload_index;
  EXPECT_EQ(sorbaneClearOverrun(), 1U);
  EXPECT_EQ(got(0), 0U);
  EXPECT_EQ(got(1), 'R');
  Forget();
  EXPECT_EQ(set(-1, 5), 0U);
  EXPECT_EQ(set(0, 9), 0U);
  EXPECT_EQ(set(1, 'Q'), 0U);
  EXPECT_EQ(set(2, 'R'), 0U);
  EXPECT_EQ(set(3, 'Z'), 0U);
  EXPECT_EQ(set(7, 0), 0U);
  ExpectTraffic({});
  EXPECT_EQ(set(8, 0), 1U);
  EXPECT_EQ(shared.magstripe.request[0], 0);
  ExpectTraffic({"set 51 52 5A 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0D", "get"});
  EXPECT_EQ(got(4), 'S');
  EXPECT_EQ(got(9), 'E');
  EXPECT_EQ(got(10), 2U);
  EXPECT_EQ(set(10, 7), 1U) << "stores nothing, sends";
  stripe->refused = {"QRZ"};
  EXPECT_EQ(set(8, 0), 0U);
  EXPECT_EQ(got(1), 'R') << "the last reply stays when nothing was sent";
  stripe->refused = {};
  stripe->lost = {"QRZ"};
  EXPECT_EQ(set(8, 0), 0U);
  EXPECT_EQ(got(1), 0U);
  stripe->lost = {};
  EXPECT_STREQ(SetRawPayload('Q', 'S', 'V', 0, 0, 0, 0, 0), "52.53.56.31.32.33.34.35");
  Entry().LinkKind = kBySerialPort;
  Forget();
  EXPECT_EQ(set(8, 0), 0U);
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
