// The three ways in which an export begins: which answer comes when no device is active, or one of another
// kind.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr std::uint16_t kMark = 0x8000;

class OpeningsTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    ForgetTraffic();
    SetUnsupportedProductErrorCode(kMark);
  }

  // A device of a kind that has no routine for what a reader can do.
  static void PretendKind(std::uint32_t kind) { DevTable[0].ProductKind = kind; }

  template <typename Record>
  static void ExpectPairGives(std::uint32_t expected, std::uint32_t (*get)(Record*),
                              std::uint32_t (*set)(const Record*)) {
    Record record{};
    EXPECT_EQ(get(&record), expected);
    EXPECT_EQ(set(&record), expected);
  }

  static void ExpectRecordCallsGive(std::uint32_t expected) {
    ExpectPairGives(expected, GetFlags, SetFlags);
    ExpectPairGives(expected, GetFlags2, SetFlags2);
    ExpectPairGives(expected, GetFlags3, SetFlags3);
    ExpectPairGives(expected, GetIDBitCnts, SetIDBitCnts);
    ExpectPairGives(expected, GetIDDispParms, SetIDDispParms);
    ExpectPairGives(expected, GetIDDispParms2, SetIDDispParms2);
    ExpectPairGives(expected, GetIDDispParms3, SetIDDispParms3);
    ExpectPairGives(expected, GetTimeParms, SetTimeParms);
    ExpectPairGives(expected, GetLEDCtrl, SetLEDCtrl);
    ExpectPairGives(expected, GetBprRlyCtrl, SetBprRlyCtrl);
  }

  static void ExpectReaderOnlyCallsGiveZero() {
    EXPECT_EQ(GetActConfig(), 0U);
    EXPECT_EQ(GetMaxConfig(), 0U);
    EXPECT_EQ(SetActConfig(0), 0U);
    EXPECT_EQ(Get64BytesInPackets(), 0U);
    EXPECT_EQ(Set64BytesInPackets(1), 0U);
  }
};

TEST_F(OpeningsTest, WithNoDeviceDispatchedCallsGiveTheUnsupportedValueZeroExtended) {
  ExpectRecordCallsGive(0x8000);
  std::array<std::uint8_t, 8> id{};
  EXPECT_EQ(GetActiveID(id.data(), 8), 0x8000U);
  EXPECT_EQ(GetActiveID32(id.data(), 8), 0x8000U);
  EXPECT_EQ(UseAsciiCommandProtocol(1), 0x8000U);
  ExpectTraffic({});
}

TEST_F(OpeningsTest, WithNoDeviceTheErrorWordIsTheUnsupportedValueSignExtended) {
  EXPECT_EQ(GetLastLibErr(), 0xFFFF8000U);
  SetUnsupportedProductErrorCode(0x7FFF);
  EXPECT_EQ(GetLastLibErr(), 0x7FFFU);
  SetUnsupportedProductErrorCode(0xFFFF);
  EXPECT_EQ(GetLastLibErr(), 0xFFFFFFFFU);
  SetUnsupportedProductErrorCode(0);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(OpeningsTest, WithNoDeviceReaderOnlyCallsGiveZero) { ExpectReaderOnlyCallsGiveZero(); }

TEST_F(OpeningsTest, WithNoDeviceTheseFourGiveZeroAndNotTheUnsupportedValue) {
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(GetFirmwareVersion(0, 0), 0U);
  EXPECT_EQ(PlusBlockMove(1, 2), 0U);
  ExpectTraffic({});
}

TEST_F(OpeningsTest, UncheckedCallsTouchEntryZero) {
  DevTable[0].DID = 0xFFFE;
  DevTable[0].SN = 77;
  DevTable[0].LinkKind = 1;
  EXPECT_EQ(GetDID(), 0xFFFEU);
  EXPECT_EQ(GetSN(), 77U);
  EXPECT_EQ(GetDevType(), 1U);
  EXPECT_EQ(SetLUID(0xABCD), 1U);
  EXPECT_EQ(GetLUID(), 0xABCDU);
  EXPECT_EQ(DevTable[0].bLUIDDirty, 1U);
}

TEST_F(OpeningsTest, TheIndexCountsAsActiveFromZeroToBelowTheCount) {
  Connected(Reader::Plain());
  EXPECT_EQ(GetLastLibErr(), 0U);
  shared.ActDev = 1;
  EXPECT_EQ(GetLastLibErr(), 0xFFFF8000U);
  ExpectRecordCallsGive(0x8000);
  shared.ActDev = 0;
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(OpeningsTest, AKindWithoutTheRoutineGivesTheUnsupportedValue) {
  Connected(Reader::Plus());
  PretendKind(0);
  ExpectRecordCallsGive(0x8000);
  ExpectReaderOnlyCallsGiveZero();
  EXPECT_EQ(ReadCfg(), 0x8000U);
  EXPECT_EQ(BeepNow(1, 0), 0U);
  EXPECT_EQ(GetFirmwareVersion(0, 0), 0xFFFF8000U) << "this one sign-extends";
  EXPECT_EQ(UseAsciiCommandProtocol(1), 0x8000U);
  EXPECT_EQ(shared.reader.AsciiProtocol, 0);
  ExpectTraffic({});
}

TEST_F(OpeningsTest, ConfigurationsOfAPlainReaderAreNotToBeChosen) {
  Connected(Reader::Plain());
  EXPECT_EQ(GetActConfig(), 0U);
  EXPECT_EQ(GetMaxConfig(), 0U);
  EXPECT_EQ(SetActConfig(0), 0U);
  Connected(Reader::Plus(3));
  EXPECT_EQ(SetActDev(1), 1U);
  EXPECT_EQ(GetMaxConfig(), 2U);
  EXPECT_EQ(SetActConfig(2), 1U);
  EXPECT_EQ(GetActConfig(), 2U);
  EXPECT_EQ(SetActConfig(3), 0U);
  EXPECT_EQ(SetActConfig(255), 0U);
  EXPECT_EQ(GetActConfig(), 2U);
}

TEST_F(OpeningsTest, OnlyTheseCallsTakeTheLock) {
  Connected(Reader::Plain());
  std::array<std::uint8_t, 8> id{};
  const auto locks = [&](auto call) {
    ForgetTraffic();
    call();
    const Lines lines = host.transcript.Lines();
    return std::count(lines.begin(), lines.end(), "mutex lock");
  };
  EXPECT_EQ(locks([&] { GetActiveID(id.data(), 8); }), 1);
  LetTimePass();
  EXPECT_EQ(locks([&] { GetActiveID32(id.data(), 8); }), 1);
  EXPECT_EQ(locks([] { ReadCfg(); }), 1);
  EXPECT_EQ(locks([] { BeepNow(1, 0); }), 1);
  EXPECT_EQ(locks([] { USBDisconnect(); }), 1);
  EXPECT_EQ(locks([] { BeepNow(1, 0); }), 1) << "also with no device";
  EXPECT_EQ(locks([] { Ping(); }), 0);
  EXPECT_EQ(locks([] { SendGetFWVersion(); }), 0);
  EXPECT_EQ(locks([] { GetSerialNumber(); }), 0);
  EXPECT_EQ(locks([] { getESN(); }), 0);
  EXPECT_EQ(locks([] { GetFlags(nullptr); }), 0);
}

}  // namespace
}  // namespace tavlyn::test
