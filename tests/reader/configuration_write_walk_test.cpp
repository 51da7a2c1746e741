// Writing every configuration of a plus reader, and what is read back after a restart.
#include <array>
#include <numeric>

#include "api.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

class CfgWriteWalk : public BesideReader {
 protected:
  void Use(std::shared_ptr<Reader> model) { reader = Connected(std::move(model)); }
  static tsCfgSlot& Slot(std::size_t number = 0) { return Entry().CfgSlot[number]; }
  sim::Settings& Kept(std::size_t number) { return reader->state.configurations[number].stored; }

  std::shared_ptr<Reader> reader;
};

Lines Select(const std::string& number) {
  const std::string behind = number == "00" ? "" : " " + number;
  return {"set 89 81" + behind, "get 89 81" + behind};
}

TEST_F(CfgWriteWalk, AReaderOfTwoConfigurations) {
  Use(Reader::Plus(2));
  Entry().ActConfig = 1;
  const Lines high = {"set 84", "set 00 04 F0", "sleep 10"};
  const Lines low = {"set 84", "set 00 04 EF 01", "sleep 10"};
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({Select("01"),
                      high,
                      high,
                      {"set 90"},
                      FastStore(),  //
                      Select("00"),
                      low,
                      low,
                      {"set 90"},
                      FastStore(),
                      Select("01")}));
  EXPECT_EQ(GetActConfig(), 1);
  EXPECT_EQ(reader->state.active, 1U);
}

TEST_F(CfgWriteWalk, EachConfigurationGoesByItsOwnDirtyFlags) {
  Use(Reader::Plus(3));
  Slot(2)[field::IDBitCnts_iTotalBitCnt] = 102;
  Slot(2).bDirtyFmt = 1;
  Slot(1)[field::IDDispParms2_iCrdGnChr0] = 'g';
  Slot(1).bDirtyDisp = 1;
  Slot(0)[field::IDBitCnts_iTotalBitCnt] = 100;  // not dirty
  EXPECT_EQ(SetLUID(0x0708), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Kept(2).blocks[0][4], 102);
  EXPECT_EQ(Kept(1).blocks[0][4], 26);
  EXPECT_EQ(Kept(1).blocks[2][2], 'g');
  EXPECT_EQ(Kept(0).blocks[0][4], 26);
  EXPECT_EQ(reader->state.storedLuid, 0x0708);
  Lines commits;
  for (const std::string& line : TrafficOf(host.transcript.Events())) {
    if (line.starts_with("set 90")) commits.push_back(line);
  }
  EXPECT_EQ(commits, (Lines{"set 90 81", "set 90 04", "set 90"})) << "the LUID goes with the first";
  for (std::size_t number = 0; number < 3; ++number) EXPECT_EQ(DirtyOf(Entry(), Slot(number)), 0U);
}

TEST_F(CfgWriteWalk, EachConfigurationHasItsCardType) {
  Use(Reader::Plus(2));
  EXPECT_EQ(SetCardTypePriority(0x1234, -5), 1U);
  EXPECT_EQ(SetActConfig(1), 1U);
  EXPECT_EQ(SetCardTypePriority(0x5678, 0), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Kept(0).cardType, 0x1234);
  EXPECT_TRUE(Kept(0).highPriority);
  EXPECT_EQ(Kept(1).cardType, 0x5678);
  EXPECT_FALSE(Kept(1).highPriority);
}

TEST_F(CfgWriteWalk, ReadersOfTwoAndFourConfigurationsStoreFast) {
  for (int count = 1; count <= 11; ++count) {
    SCOPED_TRACE(count);
    if (count > 1) {
      TearDown();
      SetUp();
    }
    Use(Reader::Plus(count));
    reader->state.lacks = {{0x8C, 0x06}};
    EXPECT_EQ(WriteCfg(), 1U);
    const bool fast = count == 2 || count == 4;
    // One wait after each card type: two of them in a walk, one without.
    const unsigned cardTypes = count == 1 ? 1 : 2;
    EXPECT_EQ(Slept(), static_cast<unsigned>(count) * (cardTypes * 10 + (fast ? 20U : 1200U)));
    EXPECT_EQ(GetLastLibErr(), 0U);
  }
}

TEST_F(CfgWriteWalk, ALostStoreQueryOfAFastReaderShowsInTheWordAlone) {
  Use(Reader::Plus(2));
  reader->faults.RefuseReply({0x8C, 0x06});
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Slept(), 2U * (20U + 20U));
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
}

TEST_F(CfgWriteWalk, AfterAFailureOnlySelectionsGoOut) {
  Use(Reader::Plus(3));
  Entry().ActConfig = 1;
  for (std::size_t number = 0; number < 3; ++number) Slot(number).bDirtyTime = 1;
  reader->faults.RefuseCommand({0x81}, 6);
  EXPECT_EQ(WriteCfg(), 0U);
  ExpectTraffic(Join({Select("02"),
                      {"set 84", "set 00 04 F1", "sleep 10"},
                      Refused("81"),
                      FastStore(),
                      Select("01"),
                      Select("00"),
                      Select("01")}));
  EXPECT_EQ(GetActConfig(), 1);
  EXPECT_EQ(reader->state.active, 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(reader->state.counters.commits, 0);
  for (std::size_t number = 0; number < 3; ++number) EXPECT_EQ(Slot(number).bDirtyTime, 1U);
}

TEST_F(CfgWriteWalk, ConfigurationsWrittenBeforeAFailureStay) {
  Use(Reader::Plus(3));
  for (std::size_t number = 0; number < 3; ++number) {
    Slot(number).bDirtyFmt = 1;
    Slot(number)[field::IDBitCnts_iTotalBitCnt] = 50;
  }
  Slot(1).bDirtyExt = 1;
  reader->faults.RefuseCommand({0x83}, 6);
  EXPECT_EQ(WriteCfg(), 0U);
  reader->PowerCycle();
  EXPECT_EQ(Kept(2).blocks[0][4], 50);
  EXPECT_EQ(Kept(1).blocks[0][4], 26);
  EXPECT_EQ(Kept(0).blocks[0][4], 26);
  EXPECT_EQ(Slot(2).bDirtyFmt, 0U);
  EXPECT_EQ(Slot(1).bDirtyFmt, 1U);
  EXPECT_EQ(Slot(0).bDirtyFmt, 1U);
}

TEST_F(CfgWriteWalk, AFailedSelectionFailsTheWriteButNotTheOtherSelections) {
  for (const bool lost : {true, false}) {
    if (!lost) {
      TearDown();
      SetUp();
    }
    Use(Reader::Plus(3));
    for (std::size_t number = 0; number < 3; ++number) Slot(number).bDirtyFmt = 1;
    if (lost) {
      reader->faults.RefuseReply({0x89, 0x81, 1}, 1);
    } else {
      reader->faults.AnswerWith({0x89, 0x81, 1}, {0x89, 0x80, 1}, 1);
    }
    EXPECT_EQ(WriteCfg(), 0U);
    const Lines type = {"set 84", "set 00 04 F1", "sleep 10"};
    const Lines failed = {"set 89 81 01", lost ? "get refused" : "get 89 80 01"};
    ExpectTraffic(Join({Select("02"),
                        type,
                        {"set 80", "set 03 05 11 10 1A 3A 28 1C"},
                        type,
                        {"set 90 01"},
                        FastStore(),
                        failed,
                        Select("00"),
                        Select("00")}));
    EXPECT_EQ(Slot(2).bDirtyFmt, 0U);
    EXPECT_EQ(Slot(1).bDirtyFmt, 1U);
    EXPECT_EQ(Slot(0).bDirtyFmt, 1U);
  }
}

TEST_F(CfgWriteWalk, AReaderNotKnownToBePlusIsWrittenOnce) {
  Use(Reader::Plus(3));
  Entry().PlusState = kPlusUnknown;
  Slot().bDirtyTime = 1;
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({{"set 81", "set 00 19 14 28 01 01 40 E0", "set 90 02"}, FastStore()}));
}

// What each record is set to, and what is read back.
struct Values {
  tsCfgFlags flags;
  tsCfgFlags2 flags2;
  tsCfgFlags3 flags3;
  tsIDBitCnts counts;
  tsIDDispParms display;
  tsIDDispParms2 lead;
  tsIDDispParms3 trail;
  tsTimeParms times;
  tsLEDCtrl leds;
  tsBprRlyCtrl outputs;
  std::int16_t azerty, precision;
  std::uint8_t firstOfArea;
  std::uint16_t cardType;
  std::int16_t priority;
};

constexpr Values kSet[] = {
    {{1, 0, 1, 0, 1, 0, 1, 0},
     {1, 0, 1, 0, 1, 0, 1, 0},
     {1, 0, 1, 0, 1, 0, 1, 0},
     {20, 0, 127, 255, 0, 0, 0, 0},
     {255, 1, 25, 0, 1, 0, 0, 0},
     {2, 'a', 'b', 0, 'g', 'h', 0, 0},
     {1, 't', 0, 0, 0, 0, 0, 0},
     {1001, 130, 12749, 7, 1019, 0xE0, 0, 0},
     {1, 0, 1, 0, 0, 0, 0, 0},
     {0, 1, 0, 0, 0, 0, 0, 0},
     1,
     0,
     5,
     0x1234,
     1},
    {{0, 1, 0, 1, 0, 1, 0, 1},
     {0, 1, 0, 1, 0, 1, 0, 1},
     {0, 1, 0, 1, 0, 1, 0, 1},
     {3, 142, 1, 26, 0, 0, 0, 0},
     {0, 254, 0, 25, 0, 0, 0, 0},
     {0, 0, 0, 0, 0, 0, 0, 0},
     {3, 'x', 'y', 'z', 0, 0, 0, 0},
     {1020, 12750, 0, 0, 4, 0xE0, 0, 0},
     {0, 1, 0, 0, 0, 0, 0, 0},
     {0, 0, 1, 0, 0, 0, 0, 0},
     0,
     1,
     7,
     0xFEDC,
     0},
};

Values Rounded(Values values) {
  for (std::int16_t* step4 :
       {&values.times.iBitStrmTO, &values.times.iUSBKeyPrsTm, &values.times.iUSBKeyRlsTm}) {
    *step4 = static_cast<std::int16_t>(*step4 / 4 * 4);
  }
  for (std::int16_t* step50 : {&values.times.iIDHoldTO, &values.times.iIDLockOutTm}) {
    *step50 = static_cast<std::int16_t>(*step50 / 50 * 50);
  }
  values.flags2.isASCIIpresent = 1;  // a feature of the reader
  return values;
}

std::array<std::uint8_t, 128> AreaOf(const Values& values) {
  std::array<std::uint8_t, 128> area{};
  std::iota(area.begin(), area.end(), std::uint8_t{1});
  area[0] = values.firstOfArea;
  area[3] = 16;
  return area;
}

void SetAll(const Values& values) {
  EXPECT_EQ(SetFlags(&values.flags), 1U);
  EXPECT_EQ(SetFlags2(&values.flags2), 1U);
  EXPECT_EQ(SetFlags3(&values.flags3), 1U);
  EXPECT_EQ(SetIDBitCnts(&values.counts), 1U);
  EXPECT_EQ(SetIDDispParms(&values.display), 1U);
  EXPECT_EQ(SetIDDispParms2(&values.lead), 1U);
  EXPECT_EQ(SetIDDispParms3(&values.trail), 1U);
  EXPECT_EQ(SetTimeParms(&values.times), 1U);
  EXPECT_EQ(SetLEDCtrl(&values.leds), 1U);
  EXPECT_EQ(SetBprRlyCtrl(&values.outputs), 1U);
  EXPECT_EQ(SetAZERTYShiftLock(values.azerty), 1U);
  EXPECT_EQ(SetExtendedPrecisionMath(values.precision), 1U);
  EXPECT_EQ(SetSepFldData(AreaOf(values).data(), 128), 1U);
  EXPECT_EQ(SetCardTypePriority(values.cardType, values.priority), 1U);
  EXPECT_EQ(SetEasyReadMode(1), 1U);
}

template <typename Record>
void ExpectRecord(std::uint32_t (*get)(Record*), const Record& expected, const char* name) {
  Record got{};
  EXPECT_EQ(get(&got), 1U) << name;
  const auto* words = reinterpret_cast<const std::int16_t*>(&got);
  const auto* wanted = reinterpret_cast<const std::int16_t*>(&expected);
  // The last word of the times belongs to the third flags.
  const std::size_t count = std::string(name) == "times" ? 7 : 8;
  for (std::size_t word = 0; word < count; ++word)
    EXPECT_EQ(words[word], wanted[word]) << name << ' ' << word;
}

void ExpectAll(const Values& values) {
  ExpectRecord(GetFlags, values.flags, "flags");
  ExpectRecord(GetFlags2, values.flags2, "flags2");
  ExpectRecord(GetFlags3, values.flags3, "flags3");
  ExpectRecord(GetIDBitCnts, values.counts, "counts");
  ExpectRecord(GetIDDispParms, values.display, "display");
  ExpectRecord(GetIDDispParms2, values.lead, "lead");
  ExpectRecord(GetIDDispParms3, values.trail, "trail");
  ExpectRecord(GetTimeParms, values.times, "times");
  ExpectRecord(GetLEDCtrl, values.leds, "leds");
  ExpectRecord(GetBprRlyCtrl, values.outputs, "outputs");
  EXPECT_EQ(GetAZERTYShiftLock(), static_cast<std::uint32_t>(values.azerty));
  EXPECT_EQ(GetExtendedPrecisionMath(), static_cast<std::uint32_t>(values.precision));
  std::array<std::uint8_t, 128> area{};
  EXPECT_EQ(GetSepFldData(area.data(), 128), 1U);
  EXPECT_EQ(area, AreaOf(values));
  EXPECT_EQ(GetCardType(), values.cardType);
  EXPECT_EQ(GetCardPriority(), values.priority);
  EXPECT_EQ(GetEasyReadMode(), 0U) << "lives on the host alone";
}

TEST_F(CfgWriteWalk, AllThatIsSetComesBackAfterARestart) {
  Use(Reader::Plus(2));
  for (const std::uint8_t number : {std::uint8_t{0}, std::uint8_t{1}}) {
    EXPECT_EQ(SetActConfig(number), 1U);
    SetAll(kSet[number]);
  }
  EXPECT_EQ(SetLUID(0xBEEF), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  reader->PowerCycle();
  Reload();
  SetDevTypeSrch(0);
  SetConnectProduct(1);
  ConnectAgain();
  for (const std::uint8_t number : {std::uint8_t{0}, std::uint8_t{1}}) {
    SCOPED_TRACE(int{number});
    EXPECT_EQ(SetActConfig(number), 1U);
    ExpectAll(Rounded(kSet[number]));
  }
  EXPECT_EQ(GetLUID(), 0xBEEFU);
}

TEST_F(CfgWriteWalk, WhatIsNotWrittenIsGoneAfterARestart) {
  Use(Reader::Plus(2));
  SetAll(kSet[0]);
  reader->PowerCycle();
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Slot()[field::IDBitCnts_iTotalBitCnt], 26);
  EXPECT_EQ(GetCardType(), 0xEF04);
}

}  // namespace
}  // namespace tavlyn::test
