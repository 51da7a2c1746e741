// The record gets and sets: the host's mirror, its range tests and its dirty flags.
#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "api.h"
#include "core/state.h"
#include "tests/support/beside.h"

namespace tavlyn::test {
namespace {

using sim::Reader;
using Words = std::array<std::int16_t, 8>;

struct RecordRow {
  std::string name;  // as in its exports
  std::uint32_t (*get)(std::int16_t*);
  std::uint32_t (*set)(const std::int16_t*);
  Words legal;
  std::string dirty;
};

#define RECORD(Name, Type) \
#Name, [](std::int16_t* words) { return Get##Name(reinterpret_cast<Type*>(words)); }, \
      [](const std::int16_t* words) { return Set##Name(reinterpret_cast<const Type*>(words)); }

const std::vector<RecordRow> kRows = {
    {RECORD(Flags, tsCfgFlags), {1, 0, 7, 0, -1, 0, 1, 1}, "fmt"},
    {RECORD(Flags2, tsCfgFlags2), {1, 0, 1, 0, 1, 0, 1, 9}, "disp"},
    {RECORD(Flags3, tsCfgFlags3), {1, 0, 1, 0, 1, 0, 1, 0}, "time"},
    {RECORD(IDBitCnts, tsIDBitCnts), {3, 4, 32, 40, 5, 6, 7, 8}, "fmt"},
    {RECORD(IDDispParms, tsIDDispParms), {58, 40, 10, 4, 1, -6, 7, 8}, "fmt ext"},
    {RECORD(IDDispParms2, tsIDDispParms2), {2, 65, 66, 67, 68, 69, 7, 8}, "disp"},
    {RECORD(IDDispParms3, tsIDDispParms3), {1, 90, 91, 92, 5, 6, 7, 8}, "disp"},
    {RECORD(TimeParms, tsTimeParms), {130, 1234, 3000, 5, 6, 0x20, 77, 0x40}, "time"},
    {RECORD(LEDCtrl, tsLEDCtrl), {1, 1, 0, 3, 4, 5, 6, 0}, "disp"},
    {RECORD(BprRlyCtrl, tsBprRlyCtrl), {9, 1, 1, 3, 4, 5, 6, 0}, "disp"},
};

const RecordRow& RowOf(const std::string& name) {
  for (const RecordRow& row : kRows) {
    if (row.name == name) return row;
  }
  throw std::logic_error(name);
}

std::string Dirty(const tsCfgSlot& slot) {
  std::string text;
  const auto add = [&](std::uint32_t flag, const char* name) {
    if (flag != 0) text += (text.empty() ? "" : " ") + std::string(name);
  };
  add(slot.bDirtyFmt, "fmt");
  add(slot.bDirtyTime, "time");
  add(slot.bDirtyDisp, "disp");
  add(slot.bDirtyExt, "ext");
  add(slot.bDirtySep, "sep");
  return text;
}

class Records : public BesideReader {
 protected:
  void SetUp() override {
    BesideReader::SetUp();
    Connected(Reader::Plain());
  }
  static tsCfgSlot& Slot() { return EntryOfActDev().ActiveSlot(); }
  static Words Got(const RecordRow& row) {
    Words words{};
    EXPECT_EQ(row.get(words.data()), 1U) << row.name;
    return words;
  }
};

TEST_F(Records, ASetIsHandedBackAndMakesItsBlocksDirtyWithoutTraffic) {
  for (const RecordRow& row : kRows) {
    Slot().bDirtyFmt = Slot().bDirtyTime = Slot().bDirtyDisp = Slot().bDirtyExt = Slot().bDirtySep = 0;
    Slot()[field::TimeParms_iTPCfgFlg3] = 0x40;
    EntryOfActDev().LastLibErr = 5;
    EXPECT_EQ(row.set(row.legal.data()), 1U) << row.name;
    EXPECT_EQ(GetLastLibErr(), 0U) << row.name;
    EXPECT_EQ(Dirty(Slot()), row.dirty) << row.name;
    EntryOfActDev().LastLibErr = 5;
    EXPECT_EQ(Got(row), row.legal) << row.name;
    EXPECT_EQ(GetLastLibErr(), 0U) << row.name;
  }
  ExpectTraffic({});
}

TEST_F(Records, ANullPointerIsToldAndTraced) {
  StartTrace();
  for (const RecordRow& row : kRows) {
    EXPECT_EQ(row.get(nullptr), 0U) << row.name;
    EXPECT_EQ(GetLastLibErr(), 0x100001U) << row.name;
    const std::string get = "tavlyn_Get" + row.name;
    ExpectTrace(row.name == "LEDCtrl" ? Lines{} : Lines{get + " ERROR CODE: 0", get + " Failed !!"});

    const Words before = Slot().record[kIDBitCnts];
    EXPECT_EQ(row.set(nullptr), 0U) << row.name;
    EXPECT_EQ(GetLastLibErr(), 0x200001U) << row.name;
    const std::string set = "tavlyn_Set" + row.name;
    ExpectTrace({set + " ERROR CODE: 0", set + " Failed !!"});
    EXPECT_EQ(Slot().record[kIDBitCnts], before);
  }
  EXPECT_EQ(Dirty(Slot()), "");
}

TEST_F(Records, TheErrorCodeLinePrintsTheSearchWord) {
  StartTrace();
  shared.SearchErr = 0x10000;
  EXPECT_EQ(GetFlags(nullptr), 0U);
  ExpectTrace({"tavlyn_GetFlags ERROR CODE: 65536", "tavlyn_GetFlags Failed !!"});
}

TEST_F(Records, AGetOfAnUnreadSlotFails) {
  Slot().bCfgLoaded = 0;
  StartTrace();
  for (const RecordRow& row : kRows) {
    Words words{};
    words.fill(0x5A5A);
    EXPECT_EQ(row.get(words.data()), 0U) << row.name;
    EXPECT_EQ(GetLastLibErr(), 0x100002U) << row.name;
    for (const std::int16_t word : words) EXPECT_EQ(word, 0x5A5A) << row.name;
    const std::string tag = "tavlyn_Get" + row.name;
    ExpectTrace({tag + " ERROR CODE: 0", tag + " Failed !!"});
  }
}

TEST_F(Records, ANullPointerIsFoundBeforeAnUnreadSlot) {
  Slot().bCfgLoaded = 0;
  EXPECT_EQ(GetFlags(nullptr), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x100001U);
}

TEST_F(Records, ASetWorksOnAnUnreadSlot) {
  Slot() = {};
  for (const RecordRow& row : kRows) EXPECT_EQ(row.set(row.legal.data()), 1U) << row.name;
  EXPECT_EQ(Slot().bCfgLoaded, 0U);
  EXPECT_EQ(Slot().record[kCfgFlags], RowOf("Flags").legal);
}

struct RangeRow {
  const char* record;
  std::size_t word;
  std::vector<std::int16_t> good;
  std::vector<std::int16_t> bad;
  std::uint32_t error;
};

const std::vector<RangeRow> kRanges = {
    {"IDBitCnts", 0, {0, 15, -1, -32768}, {16, 142, 143, 32767}, 0x201010},
    {"IDBitCnts", 1, {0, 15, -1, -32768}, {16, 142, 143, 32767}, 0x201011},
    {"IDBitCnts", 2, {1, 127, 128, 255}, {0, -1, -32768, 256, 32767}, 0x201012},
    {"IDBitCnts", 3, {26, 255}, {25, 0, -1, -32768, 256, 32767}, 0x201013},
    {"IDDispParms", 0, {0, 255, -1, -32768}, {256, 32767}, 0x201020},
    {"IDDispParms", 1, {0, 255, -1, -32768}, {256, 32767}, 0x201021},
    {"IDDispParms", 2, {0, 25, -1, -32768}, {26, 200, 32767}, 0x201022},
    {"IDDispParms", 3, {0, 25, -1, -32768}, {26, 200, 32767}, 0x201023},
    {"IDDispParms2", 0, {0, 3, -1, -32768}, {4, 32767}, 0x201050},
    {"IDDispParms3", 0, {0, 3, -1, -32768}, {4, 32767}, 0x201050},
    {"TimeParms", 0, {0, 1020, -1, -32768}, {1021, 32767}, 0x201030},
    {"TimeParms", 1, {0, 12750, -1, -32768}, {12751, 32767}, 0x201031},
    {"TimeParms", 2, {0, 12750, -1, -32768}, {12751, 32767}, 0x201032},
    {"TimeParms", 3, {0, 1020, -1, -32768}, {1021, 32767}, 0x201033},
    {"TimeParms", 4, {0, 1020, -1, -32768}, {1021, 32767}, 0x201034},
};

TEST_F(Records, EachRangeIsTestedAtItsEnds) {
  StartTrace();
  for (const RangeRow& range : kRanges) {
    const RecordRow& row = RowOf(range.record);
    for (const std::int16_t value : range.good) {
      Words words = row.legal;
      words[range.word] = value;
      EXPECT_EQ(row.set(words.data()), 1U) << range.record << ' ' << range.word << ' ' << value;
      EXPECT_EQ(Got(row), words) << range.record << ' ' << range.word << ' ' << value;
    }
    EXPECT_EQ(row.set(row.legal.data()), 1U);
    Slot().bDirtyFmt = Slot().bDirtyTime = Slot().bDirtyDisp = Slot().bDirtyExt = 0;
    for (const std::int16_t value : range.bad) {
      Words words = row.legal;
      words[range.word] = value;
      words[7] = static_cast<std::int16_t>(words[7] + 1);  // a word without a range is not stored either
      EXPECT_EQ(row.set(words.data()), 0U) << range.record << ' ' << range.word << ' ' << value;
      EXPECT_EQ(GetLastLibErr(), range.error) << range.record << ' ' << range.word << ' ' << value;
      EXPECT_EQ(Dirty(Slot()), "");
    }
    EXPECT_EQ(Got(row), row.legal) << range.record;
  }
  ExpectTrace({});
  ExpectTraffic({});
}

TEST_F(Records, WordsWithoutARangeTakeAnything) {
  for (const RecordRow& row : kRows) {
    for (std::size_t word = 0; word < 8; ++word) {
      bool ranged = false;
      for (const RangeRow& range : kRanges) ranged |= range.record == row.name && range.word == word;
      const bool kept = row.name == "TimeParms" && word == 7;
      const bool sends = (row.name == "LEDCtrl" || row.name == "BprRlyCtrl") && word == 7;
      if (ranged || kept || sends) continue;
      for (const std::int16_t value : {std::int16_t{32767}, std::int16_t{-32768}}) {
        Words words = row.legal;
        words[word] = value;
        Slot()[field::TimeParms_iTPCfgFlg3] = 0x40;
        EXPECT_EQ(row.set(words.data()), 1U) << row.name << ' ' << word;
        EXPECT_EQ(Got(row), words) << row.name << ' ' << word;
      }
    }
  }
}

TEST_F(Records, TheFirstWordOutOfRangeGivesTheNumber) {
  const Words bits = {16, 16, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(RowOf("IDBitCnts").set(bits.data()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x201010U);
  const Words display = {0, 256, 26, 26, 0, 0, 0, 0};
  EXPECT_EQ(RowOf("IDDispParms").set(display.data()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x201021U);
  const Words times = {0, 0, 12751, 1021, 1021, 0, 0, 0};
  EXPECT_EQ(RowOf("TimeParms").set(times.data()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x201032U);
}

TEST_F(Records, AReaderWithWideParityTakesCountsUpTo142) {
  Slot()[field::TimeParms_ExFeatures01] = 0x80;
  const RecordRow& row = RowOf("IDBitCnts");
  for (const std::size_t word : {std::size_t{0}, std::size_t{1}}) {
    for (const std::int16_t value : {std::int16_t{16}, std::int16_t{142}}) {
      Words words = row.legal;
      words[word] = value;
      EXPECT_EQ(row.set(words.data()), 1U) << value;
      EXPECT_EQ(Got(row), words);
    }
    Words words = row.legal;
    words[word] = 143;
    EXPECT_EQ(row.set(words.data()), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x201010U + word);
  }
  Slot()[field::TimeParms_ExFeatures01] = 0x7F;
  Words words = row.legal;
  words[0] = 16;
  EXPECT_EQ(row.set(words.data()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x201010U);
}

TEST_F(Records, TheAsciiDialectTestsNoBitCounts) {
  EXPECT_EQ(UseAsciiCommandProtocol(1), 1U);
  const RecordRow& row = RowOf("IDBitCnts");
  const Words words = {300, 300, 0, -5, 5, 6, 7, 8};
  EXPECT_EQ(row.set(words.data()), 1U);
  EXPECT_EQ(Got(row), words);
  Words times = RowOf("TimeParms").legal;
  times[1] = 12751;
  EXPECT_EQ(RowOf("TimeParms").set(times.data()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x201031U);
}

TEST_F(Records, SetTimeParmsKeepsTheByteOfTheThirdFlags) {
  Slot()[field::TimeParms_iTPCfgFlg3] = 0x5A;
  const Words words = {4, 50, 50, 4, 4, 0x21, 9, 0x11};
  EXPECT_EQ(RowOf("TimeParms").set(words.data()), 1U);
  EXPECT_EQ(Got(RowOf("TimeParms")), (Words{4, 50, 50, 4, 4, 0x21, 9, 0x5A}));
}

TEST_F(Records, SetFlags3RebuildsItsByte) {
  constexpr std::array<std::int16_t, 8> kBits = {0x80, 0x40, 0x20, 0x10, 0x08, 0x02, 0x00, 0x04};
  for (std::size_t word = 0; word < 8; ++word) {
    for (const std::int16_t value : {std::int16_t{1}, std::int16_t{-256}, std::int16_t{256}}) {
      Slot()[field::TimeParms_iTPCfgFlg3] = 0xFF;
      Words words{};
      words[word] = value;
      EXPECT_EQ(RowOf("Flags3").set(words.data()), 1U);
      EXPECT_EQ(Slot()[field::TimeParms_iTPCfgFlg3], kBits[word]) << word;
      EXPECT_EQ(Got(RowOf("Flags3")), words);
    }
  }
  Slot().bDirtyTime = Slot().bDirtyDisp = 0;
  const Words notBoot = {0, 0, 0, 0, 0, 0, 1, 0};
  EXPECT_EQ(RowOf("Flags3").set(notBoot.data()), 1U);
  EXPECT_EQ(Dirty(Slot()), "time") << "the block that it travels in stays clean";
}

TEST_F(Records, TheyActOnTheConfigurationInUse) {
  USBDisconnect();
  host.hid.Unplug("device-1");
  Connected(Reader::Plus(3));
  EXPECT_EQ(SetActConfig(2), 1U);
  const RecordRow& row = RowOf("Flags");
  EXPECT_EQ(row.set(row.legal.data()), 1U);
  EXPECT_EQ(EntryOfActDev().CfgSlot[2].record[kCfgFlags], row.legal);
  EXPECT_NE(EntryOfActDev().CfgSlot[0].record[kCfgFlags], row.legal);
  EXPECT_EQ(SetActConfig(0), 1U);
  EXPECT_NE(Got(row), row.legal);
}

}  // namespace
}  // namespace tavlyn::test
