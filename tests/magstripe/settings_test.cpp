// Settings in memory, status, beeps and LEDs of a magnetic-stripe reader, and reports that a caller puts
// together.
#include <limits>

#include "tests/magstripe/model_bench.h"

namespace tavlyn::test {
namespace {

class MagModelSettings : public MagModelBench {
 protected:
  void SetUp() override {
    MagModelBench::SetUp();
    Connect();
  }
  static tsSorbaneCfg& Cfg() { return EntryOfActDev().SorbaneBlock.Cfg; }
};

struct ByteSetting {
  std::uint32_t (*get)(std::uint16_t);
  std::uint32_t (*set)(std::uint16_t, std::uint8_t);
};
struct FlagSetting {
  std::uint32_t (*get)(std::uint16_t);
  std::uint32_t (*set)(std::uint16_t, std::int16_t);
};

constexpr ByteSetting kBytes[] = {
    {sorbaneGetFieldTrack, sorbaneSetFieldTrack},   {sorbaneGetFieldMagField, sorbaneSetFieldMagField},
    {sorbaneGetFieldOffset, sorbaneSetFieldOffset}, {sorbaneGetFieldLength, sorbaneSetFieldLength},
    {sorbaneGetFieldTerm, sorbaneSetFieldTerm},     {sorbaneGetFieldKeyCount, sorbaneSetFieldKeyCount},
};
constexpr FlagSetting kFlags[] = {
    {sorbaneGetFieldEnable, sorbaneSetFieldEnable},         {sorbaneGetFieldSkip, sorbaneSetFieldSkip},
    {sorbaneGetFieldShowSepSen, sorbaneSetFieldShowSepSen}, {sorbaneGetFieldShowLRC, sorbaneSetFieldShowLRC},
    {sorbaneGetFieldIgnoreLRC, sorbaneSetFieldIgnoreLRC},
};

TEST_F(MagModelSettings, EveryMemberOfEveryFieldIsItsOwn) {
  for (std::uint16_t n = 1; n <= sim::kUserFields; ++n) {
    std::uint8_t value = static_cast<std::uint8_t>(n * 10);
    for (const ByteSetting& setting : kBytes) EXPECT_EQ(setting.set(n, ++value), 1U);
    for (std::size_t i = 0; i < std::size(kFlags); ++i) {
      EXPECT_EQ(kFlags[i].set(n, (n >> (i % 4) & 1) != 0 ? std::int16_t{-5} : std::int16_t{0}), 1U);
    }
    for (std::uint16_t key = 0; key < 16; ++key) {
      EXPECT_EQ(sorbaneSetFieldKeydata(n, key, static_cast<std::uint8_t>(n * 16 + key)), 1U);
    }
  }
  for (std::uint16_t n = 1; n <= sim::kUserFields; ++n) {
    std::uint8_t value = static_cast<std::uint8_t>(n * 10);
    for (const ByteSetting& setting : kBytes) EXPECT_EQ(setting.get(n), ++value);
    for (std::size_t i = 0; i < std::size(kFlags); ++i) {
      EXPECT_EQ(kFlags[i].get(n), static_cast<std::uint32_t>(n >> (i % 4) & 1));
    }
    for (std::uint16_t key = 0; key < 16; ++key) {
      EXPECT_EQ(sorbaneGetFieldKeydata(n, key), static_cast<std::uint8_t>(n * 16 + key));
    }
  }
  ExpectTraffic({});
}

TEST_F(MagModelSettings, AnyOtherFieldIsNone) {
  ForgetTraffic();
  for (const std::uint16_t n :
       {std::uint16_t{0}, std::uint16_t{12}, std::uint16_t{0x101}, std::uint16_t{65535}}) {
    for (const ByteSetting& setting : kBytes) {
      EXPECT_EQ(setting.set(n, 9), 0U);
      EXPECT_EQ(setting.get(n), 0U);
    }
    for (const FlagSetting& setting : kFlags) {
      EXPECT_EQ(setting.set(n, 1), 0U);
      EXPECT_EQ(setting.get(n), 0U);
    }
    EXPECT_EQ(sorbaneSetFieldKeydata(n, 0, 9), 0U);
    EXPECT_EQ(sorbaneGetFieldKeydata(n, 0), 0U);
  }
  for (const std::uint16_t key : {std::uint16_t{16}, std::uint16_t{65535}}) {
    EXPECT_EQ(sorbaneSetFieldKeydata(1, key, 9), 0U);
    EXPECT_EQ(sorbaneGetFieldKeydata(1, key), 0U);
  }
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(magstripe->state.stored, sim::FactoryMagSettings());
}

TEST_F(MagModelSettings, TheBeeperHasTwoHalves) {
  EXPECT_EQ(sorbaneSetBeeper(2, 3, 1), 1U);
  EXPECT_EQ(sorbaneGetBeeper(2), 0x83U);
  EXPECT_EQ(sorbaneSetBeeper(3, 4, 0), 1U);
  EXPECT_EQ(sorbaneGetBeeper(3), 4U);
  EXPECT_EQ(sorbaneGetBeeper(2), 0x83U);
  EXPECT_EQ(sorbaneSetBeeper(2, 0, -1), 1U);
  EXPECT_EQ(sorbaneGetBeeper(2), 0x80U);
  EXPECT_EQ(sorbaneGetBeeper(3), 4U);
  for (const std::int16_t count : {std::int16_t{5}, std::int16_t{-1}, std::int16_t{256}}) {
    EXPECT_EQ(sorbaneSetBeeper(2, count, 0), 0U);
  }
  for (const std::uint16_t which :
       {std::uint16_t{0}, std::uint16_t{1}, std::uint16_t{4}, std::uint16_t{258}}) {
    EXPECT_EQ(sorbaneSetBeeper(which, 1, 0), 0U);
    EXPECT_EQ(sorbaneGetBeeper(which), 0U);
  }
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(magstripe->state.stored.system[5], 0x84);
}

TEST_F(MagModelSettings, TracksAreEnabledByThreeBits) {
  for (unsigned value = 0; value < 256; value += 5) {
    EXPECT_EQ(sorbaneSetTrackEnables(static_cast<std::uint8_t>(value)), 1U);
    EXPECT_EQ(sorbaneGetTrackEnables(), value & 7U);
  }
  Cfg().TrackEnables = 0xFE;
  EXPECT_EQ(sorbaneGetTrackEnables(), 6U) << "as a file may have set it";
}

TEST_F(MagModelSettings, AColourIsShownAtOnce) {
  EXPECT_EQ(sorbaneSetLED(2, 1), 1U);
  EXPECT_EQ(Told(), Exchanged({"SL01701"}));
  EXPECT_EQ(sorbaneGetLED(2), 1U);
  EXPECT_EQ(sorbaneSetLED(0, 3), 1U);
  EXPECT_EQ(Told(), Exchanged({"SL01703"}));
  EXPECT_EQ(magstripe->state.working.leds, (std::array<std::uint8_t, 2>{0x17, 0x03}));
  EXPECT_EQ(sorbaneSetLED(5, 1), 0U);
  EXPECT_EQ(sorbaneSetLED(1, 4), 0U);
  EXPECT_EQ(sorbaneGetLED(5), 0U);
  ExpectTraffic({});
  AnswerTo("SL0", "N");
  EXPECT_EQ(sorbaneSetLED(1, 3), 0U);
  EXPECT_EQ(sorbaneGetLED(1), 3U) << "stored all the same";
}

TEST_F(MagModelSettings, TheLedRecordSetsAllColours) {
  struct Row {
    tsLEDCtrl record;
    const char* command;
  };
  for (const Row& row : {Row{{1, 0, 0, 0, 0, 0, 0, 0}, "SL00000"},
                         {{1, 1, 0, 0, 0, 0, 0, 0}, "SL05501"},
                         {{1, 0, 1, 0, 0, 0, 0, 0}, "SL0AA02"},
                         {{-1, 7, -7, 0, 0, 0, 0, 0}, "SL0FF03"},
                         {{0, 0, 0, 0, 0, 0, 0, 0}, "SL02701"},
                         {{0, 1, 1, 0, 0, 0, 0, 0}, "SL02701"}}) {
    EXPECT_EQ(SetLEDCtrl(&row.record), 1U);
    EXPECT_EQ(Told(), Exchanged({row.command}));
    const auto color = static_cast<unsigned>(row.command[6] - '0');
    EXPECT_EQ(sorbaneGetLED(0), color);
    tsLEDCtrl got{9, 9, 9, 9, 9, 9, 9, 9};
    EXPECT_EQ(GetLEDCtrl(&got), 1U);
    EXPECT_EQ(got.bAppCtrlsLED, 9) << "untouched";
    EXPECT_EQ(got.iRedLEDState, static_cast<int>(color & 1U));
    EXPECT_EQ(got.iGrnLEDState, static_cast<int>(color >> 1U));
  }
  EXPECT_EQ(sorbaneGetLED(1), 0U);
  EXPECT_EQ(sorbaneGetLED(2), 2U);
  EXPECT_EQ(sorbaneGetLED(3), 1U);
  EXPECT_EQ(sorbaneGetLED(4), 3U);
  magstripe->faults.RefuseAt(magstripe->faults.Exchanges() + 2);
  const tsLEDCtrl off{};
  EXPECT_EQ(SetLEDCtrl(&off), 0U);
  EXPECT_EQ(SetLEDCtrl(nullptr), 0U);
  EXPECT_EQ(GetLEDCtrl(nullptr), 0U);
}

TEST_F(MagModelSettings, BeepsAreClamped) {
  struct Row {
    std::uint8_t count;
    std::int16_t isLong;
    const char* command;
  };
  for (const Row& row : {Row{0, 0, "BS1"},
                         {1, 0, "BS1"},
                         {5, 0, "BS5"},
                         {9, 0, "BS5"},
                         {255, 0, "BS5"},
                         {0, 1, "BL1"},
                         {2, 1, "BL2"},
                         {3, -1, "BL2"},
                         {9, 1, "BL2"}}) {
    EXPECT_EQ(BeepNow(row.count, row.isLong), 1U);
    EXPECT_EQ(Told(), Exchanged({row.command}));
  }
  for (int exchange = 1; exchange <= 2; ++exchange) {
    magstripe->faults.Restart();
    magstripe->faults.VanishAt(exchange);
    EXPECT_EQ(BeepNow(1, 0), 0U);
  }
  magstripe->faults.Restart();
  magstripe->faults.RefuseAt(2);
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(GetLastLibErr(), 5U);
}

TEST_F(MagModelSettings, DataAvailable) {
  SwipeCard("+1?");
  EXPECT_EQ(sorbaneIsDataAvailable(), 4U);
  EXPECT_EQ(Told(), Exchanged({"QS0"}));
  const struct {
    const char* reply;
    std::uint32_t result;
  } kReplies[] = {{"RS0?7", 7}, {"RS?? ", 0}, {"RSxxO", 7}, {"RX002", 0}, {"S0002", 0}, {"RS", 0}, {"", 0}};
  for (const auto& [reply, result] : kReplies) {
    AnswerTo("QS0", reply);
    EXPECT_EQ(sorbaneIsDataAvailable(), result) << reply;
  }
  AnswerTo("CD0", "N");
  EXPECT_EQ(sorbaneClearDataAvailable(), 0U);
  AnswerTo("CD0", "Rwhatever");
  EXPECT_EQ(sorbaneClearDataAvailable(), 1U);
}

TEST_F(MagModelSettings, OverrunsAreCleared) {
  for (int swipe = 0; swipe < 7; ++swipe) SwipeCard(";1?");
  EXPECT_EQ(magstripe->state.overruns, 2);
  ForgetTraffic();
  EXPECT_EQ(sorbaneClearOverrun(), 1U);
  EXPECT_EQ(Told(), Exchanged({"CQ"}));
  EXPECT_EQ(magstripe->state.overruns, 0);
  AnswerTo("CQ", "N");
  EXPECT_EQ(sorbaneClearOverrun(), 0U);
}

TEST_F(MagModelSettings, UptimeAndCounts) {
  magstripe->state.uptime = [] { return std::uint64_t{0x0A0B0C0D} * 1000; };
  magstripe->state.cardsRead = 0x01020304;
  EXPECT_EQ(sorbaneGetSystemUptime(), 0x0A0B0C0DU);
  EXPECT_EQ(sorbaneGetSystemCardsRead(), 0x01020304U);
  EXPECT_EQ(Told(), Exchanged({"QUP", "QUP"}));
  for (std::uint32_t i = 0; i < 4; ++i) {
    AnswerTo("QDD", "RDD0123456789ABCDEF");
    EXPECT_EQ(sorbaneGetSystemInternalCount(i),
              (std::array<std::uint32_t, 4>{0x2301, 0x6745, 0xAB89, 0xEFCD}[i]));
  }
  ForgetTraffic();
  EXPECT_EQ(sorbaneGetSystemInternalCount(4), 0U);
  EXPECT_EQ(sorbaneGetSystemInternalCount(0xFFFFFFFF), 0U);
  ExpectTraffic({});
  AnswerTo("QUP", "RUP01G23Zab");
  EXPECT_EQ(sorbaneGetSystemUptime(), 0xAB030001U);
  AnswerTo("QUP", "RUP");
  EXPECT_EQ(sorbaneGetSystemUptime(), 0U);
  for (const char* command : {"QUP", "QDD"}) AnswerTo(command, "N", 2);
  EXPECT_EQ(sorbaneGetSystemUptime(), 0U);
  EXPECT_EQ(sorbaneGetSystemCardsRead(), 0U);
  EXPECT_EQ(sorbaneGetSystemInternalCount(1), 0U);
}

TEST_F(MagModelSettings, TimesAreKeptByTheHostAlone) {
  tsTimeParms record{1020, 12750, 12750, 1020, 1020, 6, 7, 8};
  tsCfgSlot& slot = EntryOfActDev().CfgSlot[0];
  slot[field::TimeParms_iTPCfgFlg3] = 99;
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(SetTimeParms(&record), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(slot.bDirtyTime, 1U);
  tsTimeParms got{};
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(GetTimeParms(&got), 1U) << "read or not";
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(got.iBitStrmTO, 1020);
  EXPECT_EQ(got.iUSBKeyRlsTm, 1020);
  EXPECT_EQ(got.iPad6, 7);
  EXPECT_EQ(got.iTPCfgFlg3, 99) << "the last word keeps its value";
  struct Row {
    tsTimeParms record;
    std::uint32_t word;
  };
  for (const Row& row : {Row{{1021, 12751, 0, 0, 0, 0, 0, 0}, 0x201030},
                         {{0, 12751, 12751, 0, 0, 0, 0, 0}, 0x201031},
                         {{0, 0, 12751, 1021, 0, 0, 0, 0}, 0x201032},
                         {{0, 0, 0, 1021, 1021, 0, 0, 0}, 0x201033},
                         {{0, 0, 0, 0, 1021, 0, 0, 0}, 0x201034}}) {
    EXPECT_EQ(SetTimeParms(&row.record), 0U);
    EXPECT_EQ(GetLastLibErr(), row.word);
    EXPECT_EQ(GetTimeParms(&got), 1U);
    EXPECT_EQ(got.iBitStrmTO, 1020) << "nothing is stored";
  }
  const tsTimeParms below{-1, std::numeric_limits<std::int16_t>::min(), -1, -1, -1, 0, 0, 0};
  EXPECT_EQ(SetTimeParms(&below), 1U);
  EXPECT_EQ(SetTimeParms(nullptr), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x200001U);
  EXPECT_EQ(GetTimeParms(nullptr), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x100001U);
  ExpectTraffic({});
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(magstripe->state.stored, sim::FactoryMagSettings());
}

TEST_F(MagModelSettings, ReportsOfOnesOwn) {
  EXPECT_EQ(SetRawPayload_index(0, 9), 0U);
  const std::string command = "QSV";
  for (std::int16_t i = 0; i < 3; ++i) {
    EXPECT_EQ(SetRawPayload_index(static_cast<std::int16_t>(i + 1),
                                  static_cast<std::uint8_t>(command.at(static_cast<std::size_t>(i)))),
              0U);
  }
  for (std::int16_t i = 4; i < 8; ++i) EXPECT_EQ(SetRawPayload_index(i, 0), 0U);
  ExpectTraffic({});
  // The carriage return of the last command is still in the report.
  EXPECT_NE(Ping(), 0U);
  for (std::int16_t i = 1; i <= 3; ++i) {
    SetRawPayload_index(i, static_cast<std::uint8_t>(command.at(static_cast<std::size_t>(i - 1))));
  }
  ForgetTraffic();
  EXPECT_EQ(SetRawPayload_index(8, 0), 1U);
  EXPECT_EQ(Told(), (Lines{"QSV", "get"}));
  EXPECT_EQ(GetRawPayload_index(0), 0U);
  EXPECT_EQ(GetRawPayload_index(1), 'R');
  EXPECT_EQ(GetRawPayload_index(2), 'S');
  EXPECT_EQ(GetRawPayload_index(9), '3') << "RSV021003";
  EXPECT_EQ(GetRawPayload_index(10), 2U);
  EXPECT_EQ(GetRawPayload_index(65535), 2U);
  ForgetTraffic();
  EXPECT_EQ(SetRawPayload_index(10, 'X'), 1U);
  EXPECT_EQ(Told(), (Lines{"QSV", "get"})) << "stored nowhere, sent all the same";
  EXPECT_EQ(SetRawPayload_index(-1, 'X'), 0U);
  magstripe->faults.Restart();
  magstripe->faults.RefuseFrom(1);
  EXPECT_EQ(SetRawPayload_index(8, 0), 0U);
  EXPECT_EQ(GetRawPayload_index(1), 'R') << "the last reply stays when nothing was sent";
  magstripe->faults.Restart();
  magstripe->faults.RefuseAt(2);
  EXPECT_EQ(SetRawPayload_index(8, 0), 0U);
  EXPECT_EQ(GetRawPayload_index(1), 0U);
  EXPECT_STREQ(SetRawPayload('Q', 'S', 'V', 0, 0, 0, 0, 0), "52.53.56.30.32.31.30.30");
  EntryOfActDev().LinkKind = kBySerialPort;
  LetTimePass();
  ForgetTraffic();
  EXPECT_EQ(SetRawPayload_index(8, 0), 0U);
  ExpectTraffic({});
}

TEST_F(MagModelSettings, AnyDeviceIsToldToClearItsOverrun) {
  Disconnect();
  Bench::Connected(sim::Reader::Plain());
  EXPECT_EQ(sorbaneClearOverrun(), 0U);
  EXPECT_EQ(TrafficOf(host.transcript.Events()).size(), 13U);
}

}  // namespace
}  // namespace tavlyn::test
