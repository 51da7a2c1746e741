// Reading the configuration in the text dialect: the exchange, every key, and what bad answers change.
#include <gtest/gtest.h>

#include "api.h"
#include "links/link_socket.h"
#include "links/serial_port.h"
#include "tests/reader/ascii_bench.h"

namespace tavlyn::test {
namespace {

using namespace field;

const std::string kVersionAnswer = "{A1.2.3}" + std::string("....") + kAsciiPrompt;

class AsciiConfigRead : public AsciiBench {
 protected:
  void SetUp() override {
    AsciiBench::SetUp();
    ascii.version = kVersionAnswer;
  }
  // Reads with these lines in the listing.
  std::uint32_t ReadWith(const std::string& lines) {
    ascii.variables = Listing(lines);
    return ReadCfg();
  }
};

TEST_F(AsciiConfigRead, AsksForTheVariablesAndForTheVersion) {
  ascii.variables = Listing("");
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(Join({TextLines(kAsciiBegin),
                      {"sleep 10", "flush"},
                      TextLines(kAsciiList),
                      {"read", "flush"},
                      TextLines(kAsciiVersion),
                      {"read", "sleep 10", "flush"}}));
  EXPECT_EQ(ascii.received, kAsciiBegin + kAsciiList + kAsciiVersion);
}

struct KeyCase {
  std::string line;
  FieldId field;
  std::int16_t value;
};

class AsciiKey : public AsciiConfigRead, public ::testing::WithParamInterface<KeyCase> {};

TEST_P(AsciiKey, FillsItsField) {
  Field(GetParam().field) = -77;
  EXPECT_EQ(ReadWith(GetParam().line + "\r"), 1U);
  EXPECT_EQ(Field(GetParam().field), GetParam().value) << GetParam().line;
}

INSTANTIATE_TEST_SUITE_P(
    Keys, AsciiKey,
    ::testing::Values(
        KeyCase{":out.led=255", LEDCtrl_bAppCtrlsLED, 0}, KeyCase{":out.led=255", LEDCtrl_iRedLEDState, 1},
        KeyCase{":out.led=255", LEDCtrl_iGrnLEDState, 1}, KeyCase{":out.led=2", LEDCtrl_bAppCtrlsLED, 1},
        KeyCase{":out.led=2", LEDCtrl_iRedLEDState, 0}, KeyCase{":out.led=2", LEDCtrl_iGrnLEDState, 1},
        KeyCase{":out.led=1", LEDCtrl_iRedLEDState, 1}, KeyCase{":out.led=1", LEDCtrl_iGrnLEDState, 0},
        KeyCase{":out.led=1", LEDCtrl_bVolatile, 0}, KeyCase{":time.hold=1000", TimeParms_iIDHoldTO, 1000},
        KeyCase{":time.lo=0x1F4", TimeParms_iIDLockOutTm, 500},
        KeyCase{":out.beep=True", BprRlyCtrl_iBeeperState, 1},
        KeyCase{":out.relay=True", BprRlyCtrl_iRelayState, 1},
        KeyCase{":wieg.id.bits=64", IDBitCnts_iIDBitCnt, 64},
        KeyCase{":wieg.id.bits=65", IDBitCnts_iIDBitCnt, 1},
        KeyCase{":wieg.id.bits=0", IDBitCnts_iIDBitCnt, 1},
        KeyCase{":wieg.qual.bits=26", IDBitCnts_iTotalBitCnt, 26},
        KeyCase{":wieg.qual.bits=25", IDBitCnts_iTotalBitCnt, 26},
        KeyCase{":wieg.qual.bits=300", IDBitCnts_iTotalBitCnt, 300},
        KeyCase{":wieg.strip.lead.bits=20", IDBitCnts_iLeadParityBitCnt, 20},
        KeyCase{":wieg.strip.trail.bits=21", IDBitCnts_iTrailParityBitCnt, 21},
        KeyCase{":chr.gone.1='!'", IDDispParms2_iCrdGnChr0, '!'},
        KeyCase{":chr.gone.2='\\x3F'", IDDispParms2_iCrdGnChr1, '?'},
        KeyCase{":chr.1='a'", IDDispParms2_iLeadChr0, 'a'},
        KeyCase{":chr.2='b'", IDDispParms2_iLeadChr1, 'b'},
        KeyCase{":chr.3='c'", IDDispParms2_iLeadChr2, 'c'},
        KeyCase{":chr.count.lead=5", IDDispParms2_iLeadChrCnt, 5},
        KeyCase{":chr.count.trail=2", IDDispParms3_iTrailChrCnt, 2}));

INSTANTIATE_TEST_SUITE_P(
    MoreKeys, AsciiKey,
    ::testing::Values(
        KeyCase{":chr.eol='\\x0D'", IDDispParms_iELDelim, 13},
        KeyCase{":chr.eol='\\x0D'", CfgFlags_bNoUseELChar, 0},
        KeyCase{":chr.eol='\\x00'", CfgFlags_bNoUseELChar, 1},
        KeyCase{":disp.fac.digits=4", IDDispParms_iFACDispLen, 4},
        KeyCase{":disp.fac.digits=4", CfgFlags_bFixLenDsp, 1},
        KeyCase{":disp.fac.digits=0", CfgFlags_bFixLenDsp, 0},
        KeyCase{":disp.fac.digits=-1", CfgFlags_bFixLenDsp, 0},
        KeyCase{":chr.fac='-'", IDDispParms_iFACIDDelim, '-'},
        KeyCase{":chr.fac='-'", CfgFlags_bUseDelFac2Id, '-'},
        KeyCase{":disp.id.digits=30", IDDispParms_iIDDispLen, 30},
        KeyCase{":wieg.qual=1", CfgFlags_bFrcBitCntEx, 1}, KeyCase{":op.sdk=1", CfgFlags_bHaltKBSnd, 1},
        KeyCase{":disp.fac.send=1", CfgFlags_bSndFac, 1}, KeyCase{":op.cont=1", CfgFlags_bSndOnRx, 1},
        KeyCase{":disp.fac.strip=1", CfgFlags_bStripFac, 1}, KeyCase{":op.beep=1", CfgFlags2_bBeepID, 1},
        KeyCase{":disp.id.hex=1", CfgFlags2_bDspHex, 1}, KeyCase{":wieg.rev.bytes=1", CfgFlags2_bRevBytes, 1},
        KeyCase{":wieg.rev.bits=1", CfgFlags2_bRevWiegBits, 1},
        KeyCase{":wieg.inv.bits=1", CfgFlags2_bWiegInvData, 1}, KeyCase{"", TimeParms_iUSBKeyPrsTm, 20},
        KeyCase{"", TimeParms_iUSBKeyRlsTm, 20}, KeyCase{"", BprRlyCtrl_bVolatile, 1},
        KeyCase{"", CfgFlags3_bUse64Bit, 1}, KeyCase{"", CfgFlags2_bUseInvDataF, 0},
        KeyCase{"", CfgFlags2_bUseLeadChrs, 1}, KeyCase{"", IDBitCnts_iIDBitCnt, 1},
        KeyCase{"", IDBitCnts_iTotalBitCnt, 26}, KeyCase{"", CfgFlags_bNoUseELChar, 1},
        KeyCase{"", TimeParms_iIDHoldTO, 0}, KeyCase{"", LEDCtrl_bAppCtrlsLED, 1}));

TEST_F(AsciiConfigRead, WhatHasNoKeyAndNoFixedValueStays) {
  Field(TimeParms_iBitStrmTO) = 77;
  Field(IDDispParms_iExOutputFormat) = 1;
  EXPECT_EQ(ReadWith(""), 1U);
  EXPECT_EQ(Field(TimeParms_iBitStrmTO), 77);
  EXPECT_EQ(Field(IDDispParms_iExOutputFormat), 1);
}

TEST_F(AsciiConfigRead, ParityCountsAndTheLuidGoWhereTheyBelong) {
  EXPECT_EQ(ReadWith(":wieg.strip.lead.bits=20\r:wieg.strip.trail.bits=21\r:dev.luid=0xBEEF\r"), 1U);
  EXPECT_EQ(Slot().ExtBytes[0], 20);
  EXPECT_EQ(Slot().ExtBytes[1], 21);
  EXPECT_EQ(Entry().LUID, 0xBEEF);
}

TEST_F(AsciiConfigRead, AKeyIsFoundInsideALongerOne) {
  EXPECT_EQ(ReadWith(":wieg.qual.bits=40\r:wieg.qual=1\r"), 1U);
  EXPECT_EQ(Field(CfgFlags_bFrcBitCntEx), 40) << "whichever stands first";
  EXPECT_EQ(ReadWith(":wieg.qual=1\r:wieg.qual.bits=40\r"), 1U);
  EXPECT_EQ(Field(CfgFlags_bFrcBitCntEx), 1);
  EXPECT_EQ(Field(IDBitCnts_iTotalBitCnt), 40);
}

TEST_F(AsciiConfigRead, TrailCharactersStandBehindTheLeadOnes) {
  const std::vector<Lines> behind = {{"a", "b", "c"}, {"b", "c", ""}, {"c", "", ""}, {"", "", ""}};
  for (std::size_t lead = 0; lead < behind.size(); ++lead) {
    Field(IDDispParms3_iTrailChr0) = Field(IDDispParms3_iTrailChr1) = Field(IDDispParms3_iTrailChr2) = -1;
    EXPECT_EQ(ReadWith(":chr.1='a'\r:chr.2='b'\r:chr.3='c'\r:chr.count.lead=" + std::to_string(lead) + "\r"),
              1U);
    const auto character = [&](std::size_t at) {
      return behind[lead][at].empty() ? 0 : static_cast<int>(behind[lead][at][0]);
    };
    EXPECT_EQ(Field(IDDispParms3_iTrailChr0), character(0)) << lead;
    EXPECT_EQ(Field(IDDispParms3_iTrailChr1), character(1)) << lead;
    EXPECT_EQ(Field(IDDispParms3_iTrailChr2), character(2)) << lead;
    EXPECT_EQ(Field(IDDispParms2_iLeadChr2), 'c') << "all three stay lead characters too";
  }
}

TEST_F(AsciiConfigRead, AGoodVersionCleansTheSlot) {
  Slot().bDirtyDisp = Slot().bDirtyFmt = Slot().bDirtyTime = Slot().bDirtyExt = Slot().bDirtySep = 1;
  Entry().bLUIDDirty = 1;
  Entry().LastLibErr = 5;
  EXPECT_EQ(ReadWith(""), 1U);
  EXPECT_EQ(Entry().DID, 0xA123);
  EXPECT_EQ(Entry().LastLibErr, 0U);
  EXPECT_EQ(Slot().bCfgLoaded, 1U);
  EXPECT_EQ(Slot().bDirtyDisp | Slot().bDirtyFmt | Slot().bDirtyTime | Slot().bDirtyExt | Slot().bDirtySep,
            0U);
  EXPECT_EQ(Entry().bLUIDDirty, 0U);
}

TEST_F(AsciiConfigRead, TheVersionsPartsAreShiftedAndJoined) {
  ascii.version = "ver {7.17.2}" + kAsciiPrompt;
  EXPECT_EQ(ReadWith(""), 1U);
  EXPECT_EQ(Entry().DID, ((0x7 << 4 | 17) << 4) | 2);
}

TEST_F(AsciiConfigRead, ABadVersionLeavesTheSlotUnreadButItsFieldsFilled) {
  for (const std::string& version :
       {std::string(), std::string("{1.2.3}"), "{1.2}" + kAsciiPrompt, "1.2.3}" + kAsciiPrompt,
        std::string("{1.2.3} and no prompt"), "{x.y.z}" + kAsciiPrompt}) {
    ascii.version = version;
    Slot().bDirtyFmt = 1;
    Entry().DID = 0x5555;
    Entry().LastLibErr = 9;
    Field(CfgFlags2_bBeepID) = 0;
    EXPECT_EQ(ReadWith(":op.beep=1\r"), 1U) << "the result is the listing's";
    EXPECT_EQ(Field(CfgFlags2_bBeepID), 1);
    EXPECT_EQ(Slot().bCfgLoaded, 0U) << version;
    EXPECT_EQ(Slot().bDirtyFmt, 1U);
    EXPECT_EQ(Entry().DID, 0x5555);
    EXPECT_EQ(Entry().LastLibErr, 9U);
  }
}

TEST_F(AsciiConfigRead, SevenHundredBytesAreTooFewButAreTaken) {
  const std::string lines = ":op.beep=1\r";
  for (const auto& [size, result] : {std::pair<std::size_t, std::uint32_t>{700, 0}, {701, 1}}) {
    Field(CfgFlags2_bBeepID) = 0;
    ascii.variables = Listing(lines, size);
    EXPECT_EQ(ReadCfg(), result) << size;
    EXPECT_EQ(Field(CfgFlags2_bBeepID), 1);
    EXPECT_EQ(Slot().bCfgLoaded, 1U) << "the version decides that";
  }
}

TEST_F(AsciiConfigRead, WithoutThePromptItFails) {
  ascii.variables = std::string(1000, '.');
  EXPECT_EQ(ReadCfg(), 0U);
}

TEST_F(AsciiConfigRead, ASilentReaderEndsInBoundedTime) {
  ascii.version.clear();
  const std::uint64_t before = host.clock.tick;
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_LE(host.clock.tick - before, 2 * (300 + 5 * 2047) + 100U);
  EXPECT_EQ(Slot().bCfgLoaded, 0U);
}

TEST_F(AsciiConfigRead, AFloodIsCutAndTheRestDropped) {
  ascii.variables = ":op.beep=1\r" + std::string(4096, 'x') + kAsciiPrompt;
  EXPECT_EQ(ReadCfg(), 0U) << "the prompt lies beyond what is read";
  EXPECT_EQ(Field(CfgFlags2_bBeepID), 1);
  EXPECT_EQ(Entry().DID, 0xA123) << "the version is not taken from the rest of the flood";
  ascii.variables = Listing("", 2047) + std::string(4096, '{');
  EXPECT_EQ(ReadCfg(), 1U);
}

TEST_F(AsciiConfigRead, AnAnswerCutAnywhereNeverReadsBeyondItself) {
  const std::string whole =
      Listing(":out.led=255\r:chr.1='\\x41'\r:chr.count.lead=1\r:dev.luid=0x1234\r", 760);
  for (std::size_t length = 0; length <= whole.size(); length += length < 80 ? 1 : 17) {
    ascii.variables = whole.substr(0, length);
    ascii.version = kVersionAnswer.substr(0, length);
    EXPECT_EQ(ReadCfg(), length == whole.size() ? 1U : 0U) << length;
  }
}

TEST_F(AsciiConfigRead, WithoutAPortItFails) {
  delete Entry().pSerialPort;
  Entry().pSerialPort = nullptr;
  EXPECT_EQ(ReadCfg(), 0U);
  ExpectTraffic({});
}

TEST_F(AsciiConfigRead, OverASocketALongAnswerMustComeInOnePiece) {
  OpenSocket();
  const std::string text = Listing(":op.beep=1\r", 1200);
  host.sockets.toReceive = {sim::Bytes(text.begin(), text.end()),
                            sim::Bytes(kVersionAnswer.begin(), kVersionAnswer.end()),
                            std::nullopt,
                            std::nullopt,
                            std::nullopt,
                            std::nullopt};
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Field(CfgFlags2_bBeepID), 1);
  EXPECT_EQ(Slot().bCfgLoaded, 0U) << "the version is short, so the read goes on to a failed receive";
  host.sockets.toReceive.clear();
  EXPECT_EQ(ReadCfg(), 0U) << "a socket that fails";
  shared.link.LinkSocket = platform::kNoHandle;
}

TEST_F(AsciiConfigRead, AReportReaderIsNeverSpokenToInText) {
  Entry().LinkKind = kByReports;
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(ascii.received, "");
}

}  // namespace
}  // namespace tavlyn::test
