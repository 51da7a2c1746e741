// Words of the mirror that belong to no record, and the separator data.
#include <array>
#include <vector>

#include "api.h"
#include "core/state.h"
#include "tests/support/beside.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

struct WordRow {
  const char* name;
  std::uint32_t (*get)();
  std::uint32_t (*set)(std::uint32_t);
  std::int32_t tsCfgSlot::*word;
  bool wide;            // the set takes 32 bits
  bool zeroIfNoReader;  // instead of unsupported
};

const std::vector<WordRow> kWords = {
    {"AZERTYShiftLock", GetAZERTYShiftLock,
     [](std::uint32_t value) { return SetAZERTYShiftLock(static_cast<std::int16_t>(value)); },
     &tsCfgSlot::AZERTYShiftlock, false, false},
    {"ExtendedPrecisionMath", GetExtendedPrecisionMath,
     [](std::uint32_t value) { return SetExtendedPrecisionMath(static_cast<std::int16_t>(value)); },
     &tsCfgSlot::ExtendedPrecisionMath, false, false},
    {"64BytesInPackets", Get64BytesInPackets, Set64BytesInPackets, &tsCfgSlot::b64BytesInPackets, true, true},
    {"EasyReadMode", GetEasyReadMode, SetEasyReadMode, &tsCfgSlot::bEasyReadMode, true, false},
    {"PrependCSN", GetPrependCSN, SetPrependCSN, &tsCfgSlot::bPrependCSN, true, false},
};

class RecordScalars : public BesideReader {
 protected:
  void SetUp() override {
    BesideReader::SetUp();
    Connected(Reader::Plain());
  }
  static tsCfgSlot& Slot() { return EntryOfActDev().ActiveSlot(); }
};

TEST_F(RecordScalars, AWordIsHandedBackAndMakesBlock3Dirty) {
  for (const WordRow& row : kWords) {
    for (const std::uint32_t value : {1U, 0U, 2U, 32767U}) {
      Slot().bDirtyExt = 0;
      EXPECT_EQ(row.set(value), 1U) << row.name;
      EXPECT_EQ(row.get(), value) << row.name;
      EXPECT_EQ(Slot().*row.word, static_cast<std::int32_t>(value)) << row.name;
      EXPECT_EQ(Slot().bDirtyExt, 1U) << row.name;
    }
  }
  EXPECT_EQ(Slot().bDirtyFmt + Slot().bDirtyTime + Slot().bDirtyDisp + Slot().bDirtySep, 0U);
  ExpectTraffic({});
}

TEST_F(RecordScalars, AGetHandsBackTheLow16BitsSignExtended) {
  for (const WordRow& row : kWords) {
    if (!row.wide) continue;
    EXPECT_EQ(row.set(70000), 1U) << row.name;
    EXPECT_EQ(row.get(), 4464U) << row.name;
    EXPECT_EQ(row.set(0x12348001), 1U) << row.name;
    EXPECT_EQ(row.get(), 0xFFFF8001U) << row.name;
  }
}

TEST_F(RecordScalars, AFlagOf16BitsIsKeptAs32) {
  for (const WordRow& row : kWords) {
    if (row.wide) continue;
    EXPECT_EQ(row.set(0xFFFE), 1U) << row.name;
    EXPECT_EQ(Slot().*row.word, -2) << row.name;
    EXPECT_EQ(row.get(), 0xFFFFFFFEU) << row.name;
  }
}

TEST_F(RecordScalars, TheyNeitherNeedAReadSlotNorAPlusReader) {
  Slot().bCfgLoaded = 0;
  for (const WordRow& row : kWords) {
    EXPECT_EQ(row.set(1), 1U) << row.name;
    EXPECT_EQ(row.get(), 1U) << row.name;
  }
}

TEST_F(RecordScalars, SeparatorDataIsCopiedBothWays) {
  std::array<std::uint8_t, 130> buffer{};
  for (std::size_t at = 0; at < buffer.size(); ++at) buffer[at] = static_cast<std::uint8_t>(at + 1);
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(SetSepFldData(buffer.data(), 128), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(Slot().bDirtySep, 1U);
  EXPECT_EQ(Slot().bDirtyExt + Slot().bDirtyFmt, 0U);

  std::array<std::uint8_t, 130> back{};
  back.fill(0xEE);
  EntryOfActDev().LastLibErr = 5;
  EXPECT_EQ(GetSepFldData(back.data(), 65535), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_TRUE(std::equal(back.begin(), back.begin() + 128, buffer.begin()));
  EXPECT_EQ(back[128], 0xEE) << "never more than its 128 bytes";
  EXPECT_EQ(back[129], 0xEE);
  ExpectTraffic({});
}

TEST_F(RecordScalars, SeparatorDataTestsLengthThenPointerThenSlot) {
  std::array<std::uint8_t, 128> buffer{};
  buffer.fill(0x77);
  Slot().bCfgLoaded = 0;
  Slot().bDirtySep = 0;
  EntryOfActDev().LastLibErr = 0x100;
  for (const std::uint16_t length : {std::uint16_t{0}, std::uint16_t{127}}) {
    EXPECT_EQ(GetSepFldData(nullptr, length), 0U);
    EXPECT_EQ(SetSepFldData(nullptr, length), 0U);
    EXPECT_EQ(GetSepFldData(buffer.data(), length), 0U);
    EXPECT_EQ(SetSepFldData(buffer.data(), length), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x100U) << "nothing is done";
  }
  EXPECT_EQ(GetSepFldData(nullptr, 128), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x101U);
  EntryOfActDev().LastLibErr = 0x100;
  EXPECT_EQ(SetSepFldData(nullptr, 128), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x101U);
  EXPECT_EQ(Slot().bDirtySep, 0U);
  EntryOfActDev().LastLibErr = 0x100;
  EXPECT_EQ(GetSepFldData(buffer.data(), 128), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x102U);
  for (const std::uint8_t byte : buffer) EXPECT_EQ(byte, 0x77);
  EXPECT_EQ(SetSepFldData(buffer.data(), 128), 1U) << "a set works on an unread slot";
}

}  // namespace
}  // namespace tavlyn::test
