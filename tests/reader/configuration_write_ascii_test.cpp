// Writing the configuration in the text dialect: every line in order, and what has no effect.
#include <gtest/gtest.h>

#include <algorithm>

#include "api.h"
#include "links/link_socket.h"
#include "links/serial_port.h"
#include "reader/ascii.h"
#include "tests/reader/ascii_bench.h"

namespace tavlyn::test {
namespace {

using namespace field;

std::string Assigned(const Lines& texts) {
  std::string all = kAsciiBegin;
  for (const std::string& text : texts) all += "\rrfid:" + text + "\r";
  return all;
}

class AsciiConfigWrite : public AsciiBench {
 protected:
  void SetUp() override {
    AsciiBench::SetUp();
    Slot().record = {};
    ForgetTraffic();
  }
  // The values after chr.1, chr.2 and chr.3 in a write.
  Lines WrittenCharacters() {
    ascii.received.clear();
    EXPECT_EQ(WriteCfg(), 1U);
    Lines values;
    for (const std::string key : {"rfid:chr.1='", "rfid:chr.2='", "rfid:chr.3='"}) {
      const std::size_t at = ascii.received.find(key);
      values.push_back(at == std::string::npos ? "absent" : ascii.received.substr(at + key.size(), 4));
    }
    return values;
  }
};

TEST_F(AsciiConfigWrite, EveryFieldGoesOutInItsOrder) {
  Field(LEDCtrl_bAppCtrlsLED) = 1;
  Field(LEDCtrl_iGrnLEDState) = 1;
  Field(CfgFlags_bFrcBitCntEx) = 1;
  Field(CfgFlags_bHaltKBSnd) = 2;
  Field(CfgFlags_bSndFac) = 3;
  Field(CfgFlags_bSndOnRx) = 4;
  Field(CfgFlags_bStripFac) = 5;
  Field(CfgFlags_bUseDelFac2Id) = 6;
  Field(CfgFlags2_bBeepID) = 7;
  Field(CfgFlags2_bDspHex) = 8;
  Field(CfgFlags2_bRevBytes) = 9;
  Field(CfgFlags2_bRevWiegBits) = 10;
  Field(CfgFlags2_bWiegInvData) = 11;
  Field(IDBitCnts_iIDBitCnt) = 12;
  Field(IDBitCnts_iTotalBitCnt) = 13;
  Field(IDBitCnts_iLeadParityBitCnt) = 14;
  Field(IDBitCnts_iTrailParityBitCnt) = 15;
  Field(IDDispParms_iELDelim) = 16;
  Field(IDDispParms_iFACDispLen) = 17;
  Field(IDDispParms_iFACIDDelim) = 18;
  Field(IDDispParms_iIDDispLen) = 19;
  Field(IDDispParms2_iCrdGnChr0) = 20;
  Field(IDDispParms2_iCrdGnChr1) = 21;
  Field(IDDispParms2_iLeadChrCnt) = 1;
  Field(IDDispParms2_iLeadChr0) = 'a';
  Field(IDDispParms3_iTrailChrCnt) = 2;
  Field(IDDispParms3_iTrailChr0) = 'x';
  Field(IDDispParms3_iTrailChr1) = 0xAB;
  EXPECT_EQ(reader::AsciiWriteConfig(), 1U);
  EXPECT_EQ(ascii.received, Assigned({"out.led=2",
                                      "wieg.qual=1",
                                      "op.sdk=2",
                                      "disp.fac.send=3",
                                      "op.cont=4",
                                      "disp.fac.strip=5",
                                      "chr.fac='\\x06'",
                                      "op.beep=7",
                                      "disp.id.hex=8",
                                      "wieg.rev.bytes=9",
                                      "wieg.rev.bits=10",
                                      "wieg.inv.bits=11",
                                      "wieg.id.bits=12",
                                      "wieg.qual.bits=13",
                                      "wieg.strip.lead.bits=14",
                                      "wieg.strip.trail.bits=15",
                                      "chr.eol='\\x10'",
                                      "disp.fac.digits=17",
                                      "chr.fac='\\x12'",
                                      "disp.id.digits=19",
                                      "chr.gone.1='\\x14'",
                                      "chr.gone.2='\\x15'",
                                      "chr.1='\\x61'",
                                      "chr.2='\\x78'",
                                      "chr.3='\\xAB'",
                                      "chr.count.lead=1",
                                      "chr.count.trail=2"}));
  EXPECT_EQ(Field(CfgFlags_bFixLenDsp), 1);
}

TEST_F(AsciiConfigWrite, EachAssignmentIsPacedAndItsAnswerRead) {
  EXPECT_EQ(reader::AsciiWriteConfig(), 1U);
  const Lines traffic = TrafficOf(host.transcript.Events());
  const Lines begin =
      Join({TextLines(kAsciiBegin), {"sleep 10", "flush"}, TextLines("\rrfid:out.led=255\r"), {"read"}});
  ASSERT_GE(traffic.size(), begin.size() + 2);
  EXPECT_EQ(
      Difference(begin, Lines(traffic.begin(), traffic.begin() + static_cast<std::ptrdiff_t>(begin.size()))),
      "");
  EXPECT_EQ(Lines(traffic.end() - 2, traffic.end()), (Lines{"sleep 10", "flush"}));
  const auto reads = std::count_if(traffic.begin(), traffic.end(),
                                   [](const std::string& exchange) { return exchange.starts_with("read"); });
  EXPECT_EQ(reads, 27);
}

struct LedCase {
  std::int16_t controls;
  std::int16_t red;
  std::int16_t green;
  std::string text;
};

TEST_F(AsciiConfigWrite, TheLedsAreBitsOr255) {
  for (const LedCase& led : {LedCase{0, 1, 1, "255"},
                             {1, 0, 0, "0"},
                             {1, 1, 0, "1"},
                             {1, 0, 1, "2"},
                             {1, 1, 1, "3"},
                             {-1, 2, 2, "0"},
                             {1, -1, 3, "3"}}) {
    Field(LEDCtrl_bAppCtrlsLED) = led.controls;
    Field(LEDCtrl_iRedLEDState) = led.red;
    Field(LEDCtrl_iGrnLEDState) = led.green;
    ascii.received.clear();
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_TRUE(ascii.received.starts_with(Assigned({"out.led=" + led.text}))) << led.text;
  }
}

TEST_F(AsciiConfigWrite, LeadCharactersComeFirstAndTrailCharactersBehindThem) {
  for (const FieldId id : {IDDispParms2_iLeadChr0, IDDispParms2_iLeadChr1, IDDispParms2_iLeadChr2}) {
    Field(id) = static_cast<std::int16_t>(0x61 + id.word - 1);
  }
  for (const FieldId id : {IDDispParms3_iTrailChr0, IDDispParms3_iTrailChr1, IDDispParms3_iTrailChr2}) {
    Field(id) = static_cast<std::int16_t>(0x78 + id.word - 1);
  }
  const std::vector<Lines> expected = {{"\\x78", "\\x79", "\\x7A"},
                                       {"\\x61", "\\x78", "\\x79"},
                                       {"\\x61", "\\x62", "\\x78"},
                                       {"\\x61", "\\x62", "\\x63"}};
  for (std::size_t lead = 0; lead < expected.size(); ++lead) {
    Field(IDDispParms2_iLeadChrCnt) = static_cast<std::int16_t>(lead);
    EXPECT_EQ(WrittenCharacters(), expected[lead]) << lead;
  }
}

TEST_F(AsciiConfigWrite, ALeadCountAboveThreeSendsNoCharacters) {
  Field(IDDispParms2_iLeadChr0) = 'a';
  Field(IDDispParms3_iTrailChr0) = 'x';
  Field(IDDispParms2_iLeadChrCnt) = 4;
  EXPECT_EQ(WrittenCharacters(), (Lines{"\\x00", "\\x00", "\\x00"}));
}

TEST_F(AsciiConfigWrite, OfACharacterTheLowByteGoesOut) {
  struct Place {
    FieldId field;
    std::string text;
  };
  const std::vector<Place> places = {
      {CfgFlags_bUseDelFac2Id, "chr.fac"},     {IDDispParms_iELDelim, "chr.eol"},
      {IDDispParms_iFACIDDelim, "chr.fac"},    {IDDispParms2_iCrdGnChr0, "chr.gone.1"},
      {IDDispParms2_iCrdGnChr1, "chr.gone.2"}, {IDDispParms2_iLeadChr0, "chr.1"},
      {IDDispParms2_iLeadChr1, "chr.2"},       {IDDispParms3_iTrailChr0, "chr.3"}};
  Field(IDDispParms2_iLeadChrCnt) = 2;
  for (const auto& [field, text] : places) {
    for (const auto& [word, digits] : {std::pair<std::int16_t, std::string>{-1, "FF"}, {0x141, "41"}}) {
      Field(field) = word;
      ascii.received.clear();
      EXPECT_EQ(WriteCfg(), 1U);
      EXPECT_NE(ascii.received.find("rfid:" + text + "='\\x" + digits + "'\r"), std::string::npos)
          << text << digits;
    }
  }
}

TEST_F(AsciiConfigWrite, TheFixedLengthFlagFollowsTheDigits) {
  Field(CfgFlags_bFixLenDsp) = 1;
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Field(CfgFlags_bFixLenDsp), 0);
  Field(IDDispParms_iFACDispLen) = -3;
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(Field(CfgFlags_bFixLenDsp), 0);
}

TEST_F(AsciiConfigWrite, NoDirtyFlagIsTestedOrCleared) {
  for (const std::uint32_t dirty : {0U, 1U}) {
    Slot().bDirtyFmt = Slot().bDirtyDisp = Slot().bDirtySep = Slot().bDirtyTime = Slot().bDirtyExt = dirty;
    Entry().bLUIDDirty = dirty;
    ascii.received.clear();
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_NE(ascii.received.find("rfid:chr.count.trail=0"), std::string::npos);
    EXPECT_EQ(Slot().bDirtyFmt & Slot().bDirtyDisp & Slot().bDirtySep & Slot().bDirtyTime & Slot().bDirtyExt,
              dirty);
    EXPECT_EQ(Entry().bLUIDDirty, dirty);
  }
}

TEST_F(AsciiConfigWrite, TheTimesAndTheLuidDoNotTravel) {
  Field(TimeParms_iBitStrmTO) = 777;
  Field(TimeParms_iIDHoldTO) = 778;
  Field(TimeParms_iIDLockOutTm) = 779;
  Entry().LUID = 780;
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(ascii.received.find("77"), std::string::npos);
  EXPECT_EQ(ascii.received.find("time"), std::string::npos);
  EXPECT_EQ(ascii.received.find("luid"), std::string::npos);
}

TEST_F(AsciiConfigWrite, NoAnswerIsLookedAt) {
  for (const std::string& answer : {std::string(), std::string("ERROR"), std::string(4096, 'x')}) {
    ascii.acknowledge = answer;
    ascii.received.clear();
    Entry().LastLibErr = 5;
    const std::uint64_t before = host.clock.tick;
    EXPECT_EQ(reader::AsciiWriteConfig(), 1U);
    EXPECT_EQ(GetLastLibErr(), 0U);
    EXPECT_NE(ascii.received.find("rfid:chr.count.trail=0"), std::string::npos);
    EXPECT_LE(host.clock.tick - before, 27U * 400 + 1000);
  }
}

TEST_F(AsciiConfigWrite, TheExportAsksInAFrameHowFastTheStoreIs) {
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_TRUE(ascii.received.ends_with(std::string("\rrfid:chr.count.trail=0\r\xFA\x0C\x06\0\0", 29)))
      << ascii.received;
}

TEST_F(AsciiConfigWrite, AClosedPortDoesNotShow) {
  Port().Close();
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(ascii.received, "");
}

TEST_F(AsciiConfigWrite, WithoutAPortItFails) {
  delete Entry().pSerialPort;
  Entry().pSerialPort = nullptr;
  EXPECT_EQ(WriteCfg(), 0U);
}

TEST_F(AsciiConfigWrite, OverASocketEachPieceIsSentByItself) {
  OpenSocket();
  host.sockets.sendResult = -1;
  EXPECT_EQ(WriteCfg(), 1U);
  for (const sim::Bytes& piece : host.sockets.sent)
    EXPECT_LE(piece.size(), 5U) << "text in pairs; one other frame";
  shared.link.LinkSocket = platform::kNoHandle;
}

}  // namespace
}  // namespace tavlyn::test
