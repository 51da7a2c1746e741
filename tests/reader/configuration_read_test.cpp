// Reading the stored configuration over feature reports: the walk, its traffic, and a fault at each exchange.
#include <cstring>
#include <string>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

std::string Hex(int value) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  return {kDigits[value / 16], kDigits[value % 16]};
}

Lines Asked(const std::string& command) { return {"set " + command, "get"}; }

// The pieces of a paged command; the page 0 of "8C 01" shows as "8C 01".
Lines Pages(const std::string& command, int count, const std::string& behind = "") {
  Lines lines;
  for (int page = 0; page < count; ++page) {
    const std::string number = page == 0 && behind.empty() ? "" : " " + Hex(page);
    lines.push_back("set " + command + number + behind);
    lines.emplace_back("get");
  }
  return lines;
}

Lines Blocks() { return Join({Asked("8A"), Asked("80"), Asked("81"), Asked("82"), Asked("83")}); }
Lines SepPages(int count) { return Pages("85", count, " 00 10"); }
Lines Texts() { return Join({Pages("8C 04 07", 8), Pages("8C 04 04", 3)}); }
Lines ModelPages() { return Pages("8C 01", 3); }
Lines OneConfig(int sepPages = 12) { return Join({Blocks(), SepPages(sepPages), Texts(), ModelPages()}); }

class CfgRead : public Bench {
 protected:
  void Use(std::shared_ptr<Reader> model) { reader = Connected(std::move(model)); }
  static tsDevEntry& Entry() { return DevTable[0]; }
  static tsCfgSlot& Slot(std::size_t number = 0) { return Entry().CfgSlot[number]; }
  sim::Settings& Stored() { return reader->state.Working(); }

  std::shared_ptr<Reader> reader;
};

TEST_F(CfgRead, APlainReaderIsReadInOnePass) {
  Use(Reader::Plain());
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(Join({{"set 8A", "get 01 00 31 74", "set 80", "get 03 05 11 10 1A 3A 28 1C", "set 81",
                       "get 00 19 14 28 01 01 40 20", "set 82", "get 01 10", "set 83", "get 00"},
                      SepPages(12),
                      Texts(),
                      ModelPages()}));
  EXPECT_EQ(Slept(), 0U);
  EXPECT_EQ(GetMaxConfig(), 0);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetSN(), 65535U);
  EXPECT_EQ(GetLUID(), 1U);
  EXPECT_EQ(GetDID(), 0x7431U);
  EXPECT_EQ(Entry().CardTypeList[0], 0);
  EXPECT_STREQ(getPartNumberString(), "RDR-80581AKU");
  EXPECT_STREQ(GetFWFilename(), "orvantis_80581_16_07_2_build_94.bin");
  EXPECT_STREQ(GetFullFWVersion(), "LNC 16.07.2 build 94");
}

TEST_F(CfgRead, TheMirrorHoldsWhatTheBlocksSay) {
  Use(Reader::Plain());
  Stored().blocks[0] = {200, 5, 0x11, 0, 0, 0xFF, 0x28, 0x81};
  Stored().blocks[1] = {0, 255, 255, 255, 255, 255, 0x80, 0x20};
  EXPECT_EQ(ReadCfg(), 1U);
  tsIDBitCnts bits{};
  EXPECT_EQ(GetIDBitCnts(&bits), 1U);
  EXPECT_EQ(bits.iIDBitCnt, 1) << "0 is no bit count";
  EXPECT_EQ(bits.iTotalBitCnt, 26) << "nor here";
  tsIDDispParms display{};
  EXPECT_EQ(GetIDDispParms(&display), 1U);
  EXPECT_EQ(display.iFACDispLen, 25);
  EXPECT_EQ(display.iFACIDDelim, 255);
  tsTimeParms times{};
  EXPECT_EQ(GetTimeParms(&times), 1U);
  EXPECT_EQ(times.iBitStrmTO, 1020);
  EXPECT_EQ(times.iIDHoldTO, 12750);
  tsCfgFlags2 flags2{};
  EXPECT_EQ(GetFlags2(&flags2), 1U);
  EXPECT_EQ(flags2.isASCIIpresent, 1);
}

TEST_F(CfgRead, ASuccessCleansTheSlotButForBlock2) {
  Use(Reader::Plain());
  tsCfgSlot& slot = Slot();
  slot.bCfgLoaded = 0;
  slot.bDirtyFmt = slot.bDirtyTime = slot.bDirtyDisp = slot.bDirtyExt = slot.bDirtySep = 1;
  Entry().bLUIDDirty = 1;
  slot[field::LEDCtrl_bVolatile] = slot[field::BprRlyCtrl_bVolatile] = 1;
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_NE(slot.bCfgLoaded, 0U);
  EXPECT_EQ(slot.bDirtyFmt + slot.bDirtyTime + slot.bDirtyExt + slot.bDirtySep, 0U);
  EXPECT_EQ(Entry().bLUIDDirty, 0U);
  EXPECT_EQ(slot.bDirtyDisp, 1U);
  EXPECT_EQ(slot[field::LEDCtrl_bVolatile], 0);
  EXPECT_EQ(slot[field::BprRlyCtrl_bVolatile], 0);
  slot.bDirtyDisp = 0;
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(slot.bDirtyDisp, 0U);
}

// Exchanges of one configuration of a plain reader, by the pair of reports that they belong to.
enum PairOf {
  kIdentityPair = 1,
  kLastBlock = 5,
  kLastSep = 17,
  kLastName = 25,
  kLastVersion = 28,
  kLastPair = 31
};

struct Outcome {
  std::uint32_t result;
  std::uint32_t word;  // without the channel's 0x202
  Lines trace;
};

Outcome ExpectedAt(int pair, bool sendFails) {
  if (pair == kIdentityPair) return {0, 0x20000, {kReadCode}};
  if (pair <= kLastBlock) return {0, 0x20000, {kReadCode, kReadFailed}};
  if (pair <= kLastSep && sendFails) return {0, 0x20000, {kReadCode, kReadFailed}};
  if (pair <= kLastSep) return {1, 0, {kReadCode, kReadModel}};
  if (pair <= kLastName) return {1, 0, {kReadModel}};
  if (pair <= kLastVersion) return {1, 0x70000000, {kReadModel}};
  return {1, 0x20000, {}};
}

TEST_F(CfgRead, AFaultAtEachExchangeOfAPlainReader) {
  Use(Reader::Plain());
  StartTrace();
  for (int pair = 1; pair <= kLastPair; ++pair) {
    for (const bool sendFails : {true, false}) {
      SCOPED_TRACE(std::to_string(pair) + (sendFails ? " sent" : " fetched"));
      Entry().bPartNumberPending = 1;
      Slot().bDirtyFmt = 1;
      Slot().bCfgLoaded = 0;
      std::strcpy(Entry().FWFilename, "old");
      std::strcpy(Entry().FullFWVersion, "old");
      std::strcpy(Entry().PartNumber, "old");
      Slot().sFldSepData.fill(0x77);
      reader->faults.Restart();
      reader->faults.RefuseAt(sendFails ? 2 * pair - 1 : 2 * pair, sendFails ? 6 : 1);
      Entry().LastLibErr = 5;

      const Outcome expected = ExpectedAt(pair, sendFails);
      EXPECT_EQ(ReadCfg(), expected.result);
      const bool wordDropped = expected.word == 0;
      EXPECT_EQ(GetLastLibErr(), wordDropped ? 0 : expected.word | (sendFails ? 0x202U : 0));
      ExpectTrace(expected.trace);
      EXPECT_EQ(Slot().bCfgLoaded, expected.result);
      EXPECT_EQ(Slot().bDirtyFmt, 1 - expected.result);
      EXPECT_EQ(Entry().bPartNumberPending, pair > kLastVersion ? 0U : 1U);
      EXPECT_EQ(Entry().bSepFldCapable, 1U);
      if (expected.result == 0) {
        EXPECT_STREQ(GetFWFilename(), "old");
        EXPECT_EQ(Slot().sFldSepData[0], 0x77);
        continue;
      }
      EXPECT_STREQ(GetFWFilename(),
                   pair > kLastSep && pair <= kLastName ? "" : "orvantis_80581_16_07_2_build_94.bin");
      EXPECT_STREQ(GetFullFWVersion(),
                   pair > kLastName && pair <= kLastVersion ? "" : "LNC 16.07.2 build 94");
      EXPECT_STREQ(getPartNumberString(), pair > kLastVersion ? "old" : "RDR-80581AKU");
    }
  }
}

TEST_F(CfgRead, AFailedReadKeepsTheBlocksReadSoFar) {
  Use(Reader::Plain());
  Stored().blocks[0][4] = 100;
  Stored().blocks[1][1] = 7;
  Stored().blocks[2][2] = 'x';
  reader->faults.RefuseReply({0x82});
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(Slot()[field::IDBitCnts_iTotalBitCnt], 100);
  EXPECT_EQ(Slot()[field::TimeParms_iBitStrmTO], 28);
  EXPECT_EQ(Slot()[field::IDDispParms2_iCrdGnChr0], 0);
  EXPECT_NE(Slot().bCfgLoaded, 0U) << "as it was";
}

TEST_F(CfgRead, AModelNumberThatFailedIsNotAskedAgain) {
  Use(Reader::Plain());
  reader->faults.RefuseReply({0x8C, 0x01}, 1);
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(Join({Blocks(), SepPages(12), Texts(), {"set 8C 01", "get refused"}}));
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(Join({Blocks(), SepPages(12), Texts()}));
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_STREQ(getPartNumberString(), "RDR-80581AKU");
}

TEST_F(CfgRead, TheFirstFailedPieceEndsATextAndTheNextStepDropsItsBit) {
  Use(Reader::Plain());
  reader->faults.RefuseReply({0x8C, 0x04, 0x07, 2}, 1);
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(Join({Blocks(),
                      SepPages(12),
                      Pages("8C 04 07", 2),
                      {"set 8C 04 07 02", "get refused"},
                      Pages("8C 04 04", 3),
                      ModelPages()}));
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_STREQ(GetFWFilename(), "");
}

TEST_F(CfgRead, TextsAreCutToTheirLengths) {
  Use(Reader::Plain());
  reader->state.model = std::string(24, 'm');
  reader->state.texts[sim::kFirmwareFile] = std::string(64, 'f');
  reader->state.texts[sim::kFullFirmwareVersion] = std::string(24, 'v');
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(getPartNumberString(), std::string(24, 'm'));
  EXPECT_EQ(GetFWFilename(), std::string(64, 'f'));
  EXPECT_EQ(GetFullFWVersion(), std::string(24, 'v'));
  reader->state.model = "short";
  reader->state.texts[sim::kFirmwareFile] = "";
  reader->state.texts[sim::kFullFirmwareVersion] = std::string("cut\0here", 8);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_STREQ(getPartNumberString(), "short");
  EXPECT_STREQ(GetFWFilename(), "");
  EXPECT_STREQ(GetFullFWVersion(), "cut");
}

TEST_F(CfgRead, APlusReaderIsReadFromTheHighestDown) {
  Use(Reader::Plus(3));
  reader->state.configurations[2].working.blocks[0][4] = 102;
  reader->state.configurations[1].working.blocks[0][4] = 101;
  Entry().ActConfig = 1;
  EXPECT_EQ(ReadCfg(), 1U);
  const auto config = [](const std::string& number, const Lines& answers) {
    const std::string select = number == "00" ? "set 89 81" : "set 89 81 " + number;
    return Join(
        {{select, "get 89 81" + (number == "00" ? "" : " " + number), "set 89 01"}, answers, OneConfig()});
  };
  ExpectTraffic(Join({config("02", {"get 89 01 02 03", "set 84", "get 00 04 F1"}),
                      config("01", {"get 89 01 01 03", "set 84", "get 00 04 F0"}),
                      config("00", {"get 89 01 00 03", "set 84", "get 00 04 EF 01"}),
                      {"set 89 81 01", "get 89 81 01"},
                      {"set 89 04", "get 04 EF 04 F0 02 F1 01 FA", "set 89 04 01", "get 01 7D"}}));
  EXPECT_EQ(Slot(2)[field::IDBitCnts_iTotalBitCnt], 102);
  EXPECT_EQ(Slot(1)[field::IDBitCnts_iTotalBitCnt], 101);
  EXPECT_EQ(Slot(0)[field::IDBitCnts_iTotalBitCnt], 26);
  EXPECT_EQ(Slot(2).CardType, 0xF104);
  EXPECT_EQ(Slot(1).CardType, 0xF004);
  EXPECT_EQ(Slot(0).CardType, 0xEF04);
  EXPECT_EQ(GetActConfig(), 1);
  EXPECT_EQ(reader->state.active, 1U);
}

TEST_F(CfgRead, AFailureSkipsTheReadsButNotTheSelections) {
  Use(Reader::Plus(3));
  Entry().ActConfig = 2;
  for (tsCfgSlot& slot : Entry().CfgSlot) slot.bCfgLoaded = 0;
  reader->faults.RefuseReply({0x80}, 1);
  EXPECT_EQ(ReadCfg(), 0U);
  ExpectTraffic({"set 89 81 02", "get",       "set 89 01", "get",          "set 84",
                 "get",          "set 8A",    "get",       "set 80",       "get refused",
                 "set 89 81 01", "get",       "set 89 81", "get",          "set 89 81 02",
                 "get",          "set 89 04", "get",       "set 89 04 01", "get"});
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
  EXPECT_EQ(GetActConfig(), 2);
  EXPECT_EQ(Slot(2).bCfgLoaded + Slot(1).bCfgLoaded + Slot(0).bCfgLoaded, 0U);
}

TEST_F(CfgRead, ConfigurationsReadBeforeAFailureStay) {
  Use(Reader::Plus(2));
  for (tsCfgSlot& slot : Entry().CfgSlot) slot.bCfgLoaded = 0;
  // The second identity: after 2 + 2 + 2 + 62 reports of configuration 1 and the selection of 0.
  reader->faults.Restart();
  reader->faults.RefuseAt(6 + 62 + 6 + 2);
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_NE(Slot(1).bCfgLoaded, 0U);
  EXPECT_EQ(Slot(0).bCfgLoaded, 0U);
  EXPECT_EQ(reader->state.active, 0U);
}

TEST_F(CfgRead, AFailedSelectionIsIgnored) {
  Use(Reader::Plus(2));
  reader->faults.RefuseReply({0x89, 0x81});
  EXPECT_EQ(ReadCfg(), 1U);
}

TEST_F(CfgRead, AReaderNotKnownYetIsReadOnce) {
  Use(Reader::Plus(3));
  Entry().PlusState = kPlusUnknown;
  Entry().MaxConfig = 2;
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(Join({{"set 89 01", "get 89 01 00 03", "set 84", "get"},
                      OneConfig(),
                      {"set 89 81", "get", "set 89 04", "get", "set 89 04 01", "get"}}));
  EXPECT_EQ(Entry().PlusState, kPlusReader);
}

TEST_F(CfgRead, AReaderThatBecomesUnknownOnTheWayGetsNoCardTypes) {
  Use(Reader::Plus(1));
  reader->faults.RefuseReply({0x89, 0x01});
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(Join({{"set 89 81", "get", "set 89 01", "get refused"}, OneConfig()}));
  EXPECT_EQ(Entry().PlusState, kPlusUnknown);
}

// For one configuration of a plus reader: selection, query, card type, the reports of a plain reader.
constexpr int kOnePass = 6 + 62;

// If the query cannot be sent the reader counts as plain. The rest of the walk reads the same slot again and
// selects nothing.
TEST_F(CfgRead, AReaderThatTurnsPlainInTheMiddle) {
  Use(Reader::Plus(3));
  Entry().ActConfig = 2;
  for (tsCfgSlot& slot : Entry().CfgSlot) slot.bCfgLoaded = 0;
  reader->faults.Restart();
  reader->faults.RefuseAt(kOnePass + 3, 6);
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(Join({{"set 89 81 02", "get", "set 89 01", "get", "set 84", "get"},
                      OneConfig(),
                      {"set 89 81 01", "get"},
                      Times(6, {"set 89 01 refused", "sleep 80"}),
                      OneConfig(),
                      OneConfig()}));
  EXPECT_EQ(Entry().PlusState, kPlainReader);
  EXPECT_EQ(Entry().MaxConfig, 0);
  EXPECT_EQ(Entry().ActConfig, 1) << "not lowered";
  EXPECT_EQ(reader->state.active, 1U) << "not put back";
  EXPECT_EQ(Slot(2).bCfgLoaded, 1U);
  EXPECT_EQ(Slot(1).bCfgLoaded, 1U);
  EXPECT_EQ(Slot(0).bCfgLoaded, 0U);
  EXPECT_EQ(GetActConfig(), 0);
}

// If the reply is lost it is not known, and is asked for again with the next configuration.
TEST_F(CfgRead, AReaderThatIsUnknownInTheMiddle) {
  Use(Reader::Plus(3));
  Entry().ActConfig = 2;
  for (tsCfgSlot& slot : Entry().CfgSlot) slot.bCfgLoaded = 0;
  reader->faults.Restart();
  reader->faults.RefuseAt(kOnePass + 4);
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(Join({{"set 89 81 02", "get", "set 89 01", "get", "set 84", "get"},
                      OneConfig(),
                      {"set 89 81 01", "get", "set 89 01", "get refused"},
                      OneConfig(),
                      {"set 89 01", "get 89 01 01 03", "set 84", "get"},
                      OneConfig(),
                      {"set 89 81 02", "get", "set 89 04", "get", "set 89 04 01", "get"}}));
  EXPECT_EQ(Entry().PlusState, kPlusReader);
  EXPECT_EQ(GetMaxConfig(), 2);
  EXPECT_EQ(GetActConfig(), 2);
  EXPECT_EQ(reader->state.active, 2U);
  EXPECT_EQ(Slot(1).bCfgLoaded, 1U);
  EXPECT_EQ(Slot(0).bCfgLoaded, 0U) << "the reader was not told of it";
}

TEST_F(CfgRead, AFailureAtAnyExchangePutsTheSelectionBack) {
  Use(Reader::Plus(2));
  const int exchanges = 2 * kOnePass + 2;
  for (int exchange = 1; exchange <= exchanges - 2; ++exchange) {
    Entry().PlusState = kPlusReader;
    Entry().MaxConfig = 1;
    Entry().ActConfig = 1;
    Entry().bPartNumberPending = 1;
    reader->state.active = 1;
    reader->faults.Restart();
    reader->faults.RefuseAt(exchange, exchange % 2 == 1 ? 6 : 1);
    ReadCfg();
    // A reader that no longer counts as a plus reader is not told to select; its second walk is then one
    // pass, and the number stays as the walk left it.
    if (Entry().PlusState != kPlusReader) continue;
    EXPECT_EQ(Entry().ActConfig, 1) << exchange;
    EXPECT_EQ(reader->state.active, 1U) << exchange;
  }
}

TEST_F(CfgRead, HoldsTheLockForTheWholeWalk) {
  Use(Reader::Plain());
  ReadCfg();
  const auto lines = host.transcript.Lines();
  ASSERT_GE(lines.size(), 2U);
  EXPECT_EQ(lines.front(), "mutex lock");
  EXPECT_EQ(lines.back(), "mutex unlock");
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "mutex unlock"), 1);
}

}  // namespace
}  // namespace tavlyn::test
