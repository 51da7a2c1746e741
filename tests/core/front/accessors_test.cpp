// The words of the records one by one.
#include <array>
#include <bit>
#include <string>
#include <type_traits>
#include <vector>

#include "api.h"
#include "core/product.h"
#include "core/state.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

constexpr auto kUnsupportedWord = static_cast<std::int16_t>(kUnsupported);

struct Accessor {
  std::string name;
  FieldId field;
  std::int16_t (*get)();
  std::uint16_t (*set)(std::int16_t);
  std::int16_t (*inRecord)(const RecordWords&);  // the member of that name of the public type
};

const std::vector<Accessor> kAccessors = {
#define FIELD(record, name, ...)                                                          \
  {#record "_" #name, field::record##_##name, get##record##_##name, set##record##_##name, \
   [](const RecordWords& words) { return std::bit_cast<ts##record>(words).name; }},
#include "core/fields.inc"
};

// In the order of Record.
template <typename Type>
std::uint32_t SetRecordOf(const RecordWords& words, std::uint32_t (*set)(const Type*)) {
  const auto record = std::bit_cast<Type>(words);
  return set(&record);
}

std::uint32_t SetThrough(Record record, const RecordWords& words) {
  switch (record) {
    case kIDBitCnts: return SetRecordOf(words, SetIDBitCnts);
    case kCfgFlags: return SetRecordOf(words, SetFlags);
    case kIDDispParms: return SetRecordOf(words, SetIDDispParms);
    case kTimeParms: return SetRecordOf(words, SetTimeParms);
    case kCfgFlags2: return SetRecordOf(words, SetFlags2);
    case kCfgFlags3: return SetRecordOf(words, SetFlags3);
    case kIDDispParms2: return SetRecordOf(words, SetIDDispParms2);
    case kIDDispParms3: return SetRecordOf(words, SetIDDispParms3);
    case kLEDCtrl: return SetRecordOf(words, SetLEDCtrl);
    case kBprRlyCtrl: return SetRecordOf(words, SetBprRlyCtrl);
  }
  return 0;
}

bool IsNeverRead(FieldId id) { return id == field::CfgFlags3_bNotBootDev; }
bool IsNeverWritten(FieldId id) { return IsNeverRead(id) || id == field::TimeParms_ExFeatures01; }
bool IsVolatile(FieldId id) { return id == field::LEDCtrl_bVolatile || id == field::BprRlyCtrl_bVolatile; }

class Accessors : public BesideReader {
 protected:
  void SetUp() override {
    BesideReader::SetUp();
    SetUnsupportedProductErrorCode(kUnsupported);
  }

  static tsCfgSlot& Slot() { return EntryOfActDev().ActiveSlot(); }

  // A connected reader, and words that no two fields share and that pass every range test.
  void FillRecords() {
    if (GetDevCnt() == 0) Connected(Reader::Plain());
    for (std::size_t record = 0; record < kRecordCount; ++record) {
      for (std::size_t word = 0; word < kRecordWords; ++word) {
        Slot().record[record][word] = static_cast<std::int16_t>(record * kRecordWords + word + 400);
      }
    }
    Slot().record[kIDBitCnts] = {1, 2, 64, 66, 67, 68, 69, 70};
    Slot().record[kIDDispParms] = {101, 102, 3, 4, 105, 106, 107, 108};
    Slot()[field::IDDispParms2_iLeadChrCnt] = 3;
    Slot()[field::IDDispParms3_iTrailChrCnt] = 2;
    Slot()[field::LEDCtrl_bVolatile] = 0;
    Slot()[field::BprRlyCtrl_bVolatile] = 0;
    SetDirty(EntryOfActDev(), 0);
  }
};

TEST_F(Accessors, ThereIsAPairForEveryWord) {
  EXPECT_EQ(kAccessors.size(), 80U);
  FillRecords();
  for (const Accessor& accessor : kAccessors) {
    const RecordWords& words = Slot().record[accessor.field.record];
    EXPECT_EQ(accessor.inRecord(words), words[accessor.field.word]) << accessor.name;
  }
}

TEST_F(Accessors, AGetterGivesItsWordWithoutTraffic) {
  FillRecords();
  EntryOfActDev().LastLibErr = 5;
  for (const Accessor& accessor : kAccessors) {
    if (IsNeverRead(accessor.field)) continue;
    EXPECT_EQ(accessor.get(), accessor.inRecord(Slot().record[accessor.field.record])) << accessor.name;
  }
  EXPECT_EQ(GetLastLibErr(), 0U);
  ExpectTraffic({});
}

TEST_F(Accessors, NegativeWordsComeAndGoUnchanged) {
  FillRecords();
  EXPECT_EQ(setIDBitCnts_iPad4(-1), 1U);
  EXPECT_EQ(getIDBitCnts_iPad4(), -1);
  EXPECT_EQ(setIDDispParms2_iLeadChr0(-32768), 1U);
  EXPECT_EQ(getIDDispParms2_iLeadChr0(), -32768);
}

TEST_F(Accessors, ASetterDoesWhatTheRecordSetDoes) {
  for (const Accessor& accessor : kAccessors) {
    if (IsNeverWritten(accessor.field) || IsVolatile(accessor.field)) continue;
    FillRecords();
    RecordWords words = Slot().record[accessor.field.record];
    words[accessor.field.word] = static_cast<std::int16_t>(words[accessor.field.word] - 1);
    ASSERT_EQ(SetThrough(accessor.field.record, words), 1U) << accessor.name;
    const auto expected = Slot().record;
    const unsigned dirty = DirtyOf(EntryOfActDev(), Slot());
    EXPECT_NE(dirty, 0U) << accessor.name;

    FillRecords();
    EXPECT_EQ(accessor.set(words[accessor.field.word]), 1U) << accessor.name;
    EXPECT_EQ(Slot().record, expected) << accessor.name;
    EXPECT_EQ(DirtyOf(EntryOfActDev(), Slot()), dirty) << accessor.name;
    EXPECT_EQ(GetLastLibErr(), 0U) << accessor.name;
    ExpectTraffic({});
  }
}

TEST_F(Accessors, ASetterChangesOneWord) {
  for (const Accessor& accessor : kAccessors) {
    if (IsNeverWritten(accessor.field) || IsVolatile(accessor.field)) continue;
    FillRecords();
    const RecordWords before = Slot().record[accessor.field.record];
    const std::int16_t value = static_cast<std::int16_t>(before[accessor.field.word] - 1);
    EXPECT_EQ(accessor.set(value), 1U) << accessor.name;
    RecordWords expected = before;
    // This byte belongs to the flags of another record and does not change.
    if (accessor.field != field::TimeParms_iTPCfgFlg3) expected[accessor.field.word] = value;
    EXPECT_EQ(Slot().record[accessor.field.record], expected) << accessor.name;
  }
}

TEST_F(Accessors, AVolatileOutputIsSentAtOnceAndFromThenOn) {
  FillRecords();
  EXPECT_EQ(setLEDCtrl_bVolatile(1), 1U);
  ASSERT_EQ(TrafficOf(host.transcript.Events()).size(), 2U);
  EXPECT_EQ(TrafficOf(host.transcript.Events()).front(), "set 82");
  ForgetTraffic();
  EXPECT_EQ(setLEDCtrl_iRedLEDState(1), 1U);
  EXPECT_EQ(TrafficOf(host.transcript.Events()).size(), 2U);
  EXPECT_EQ(DirtyOf(EntryOfActDev(), Slot()), 0U);
  ForgetTraffic();
  EXPECT_EQ(setBprRlyCtrl_bVolatile(1), 1U);
  EXPECT_EQ(TrafficOf(host.transcript.Events()).size(), 2U);
}

TEST_F(Accessors, WithNoDeviceEveryCallIsUnsupported) {
  for (const std::uint16_t value : {kUnsupported, std::uint16_t{0}, std::uint16_t{1}}) {
    SetUnsupportedProductErrorCode(value);
    for (const Accessor& accessor : kAccessors) {
      EXPECT_EQ(accessor.get(), static_cast<std::int16_t>(value)) << accessor.name;
      EXPECT_EQ(accessor.set(1), value) << accessor.name;
    }
  }
  EXPECT_EQ(getLibraryVersion_Major(), 7);
}

TEST_F(Accessors, AProductOfNoKindHandsOnWhatTheRecordCallReturns) {
  FillRecords();
  EntryOfActDev().ProductKind = 0;
  for (const Accessor& accessor : kAccessors) {
    EXPECT_EQ(accessor.get(), kUnsupportedWord) << accessor.name;
    EXPECT_EQ(accessor.set(1), kUnsupported) << accessor.name;
  }
}

TEST_F(Accessors, AnUnreadConfigurationGivesZero) {
  FillRecords();
  Slot().bCfgLoaded = 0;
  const auto before = Slot().record;
  for (const Accessor& accessor : kAccessors) {
    if (!IsNeverRead(accessor.field)) {
      EXPECT_EQ(accessor.get(), 0) << accessor.name;
      EXPECT_EQ(GetLastLibErr(), 0x100002U) << accessor.name;
    }
    if (!IsNeverWritten(accessor.field)) {
      EXPECT_EQ(accessor.set(1), 0U) << accessor.name;
      EXPECT_EQ(GetLastLibErr(), 0x100002U) << accessor.name;
    }
  }
  EXPECT_EQ(Slot().record, before);
  EXPECT_EQ(DirtyOf(EntryOfActDev(), Slot()), 0U);
}

TEST_F(Accessors, ARangeErrorIsThatOfTheRecordSet) {
  FillRecords();
  for (const Field& each : kFields) {
    if (each.bounds.most == INT16_MAX) continue;
    for (const Accessor& accessor : kAccessors) {
      if (accessor.field != each.id) continue;
      const std::int16_t before = accessor.get();
      // Here the wider limit of the parity counts applies.
      const std::int16_t most = BoundsOf(each, true).most;
      EXPECT_EQ(accessor.set(static_cast<std::int16_t>(most + 1)), 0U) << accessor.name;
      EXPECT_EQ(GetLastLibErr(), ErrorOf(each.id)) << accessor.name;
      EXPECT_EQ(accessor.get(), before) << accessor.name;
    }
  }
}

TEST_F(Accessors, ThreeCallsDoNothing) {
  FillRecords();
  const auto before = Slot().record;
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(getCfgFlags3_bNotBootDev(), kUnsupportedWord);
  EXPECT_EQ(setCfgFlags3_bNotBootDev(1), kUnsupported);
  EXPECT_EQ(setTimeParms_ExFeatures01(0x40), kUnsupported);
  EXPECT_EQ(Slot().record, before);
  EXPECT_EQ(DirtyOf(EntryOfActDev(), Slot()), 0U);
  EXPECT_EQ(GetLastLibErr(), 5U) << "not even a record get";
  EXPECT_EQ(getTimeParms_ExFeatures01(), Slot()[field::TimeParms_ExFeatures01]);
}

TEST_F(Accessors, TheActiveConfigurationIsMeant) {
  Connected(Reader::Plus(2));
  ASSERT_EQ(SetActConfig(1), 1U);
  EXPECT_EQ(setTimeParms_iIDHoldTO(4000), 1U);
  EXPECT_EQ(EntryOfActDev().CfgSlot[1][field::TimeParms_iIDHoldTO], 4000);
  EXPECT_NE(EntryOfActDev().CfgSlot[0][field::TimeParms_iIDHoldTO], 4000);
  EXPECT_EQ(getTimeParms_iIDHoldTO(), 4000);
  SetActConfig(0);
  EXPECT_NE(getTimeParms_iIDHoldTO(), 4000);
}

TEST_F(Accessors, TheNextWriteSendsWhatWasSet) {
  auto reader = Connected(Reader::Plain());
  EXPECT_EQ(setTimeParms_iUSBKeyPrsTm(40), 1U);
  EXPECT_EQ(setTimeParms_iUSBKeyRlsTm(44), 1U);
  ExpectTraffic({});
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(getTimeParms_iUSBKeyPrsTm(), 40);
  EXPECT_EQ(getTimeParms_iUSBKeyRlsTm(), 44);
  EXPECT_EQ(reader->state.counters.commits, 1);
}

TEST_F(Accessors, AMagstripeReaderKeepsItsKeyTimesBesideTheRecord) {
  const Product* magstripe = ProductOf(kMagstripe);
  ASSERT_NE(magstripe, nullptr);
  FillRecords();
  EntryOfActDev().ProductKind = kMagstripe;
  *magstripe->keyTime(KeyTime::kPress) = 1020;
  *magstripe->keyTime(KeyTime::kRelease) = 0xFFFF;
  EXPECT_EQ(getTimeParms_iUSBKeyPrsTm(), 1020);
  EXPECT_EQ(getTimeParms_iUSBKeyRlsTm(), -1);
  EXPECT_EQ(setTimeParms_iUSBKeyPrsTm(-2), 1U) << "no range, no scale";
  EXPECT_EQ(setTimeParms_iUSBKeyRlsTm(5), 1U);
  EXPECT_EQ(*magstripe->keyTime(KeyTime::kPress), 0xFFFE);
  EXPECT_EQ(*magstripe->keyTime(KeyTime::kRelease), 5);
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
