// The two keys that are sent with a commit.
#include <algorithm>
#include <array>
#include <numeric>

#include "api.h"
#include "reader/configuration.h"
#include "tests/support/beside.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

using Key = std::array<std::uint8_t, 16>;

Key KeyFrom(int first) {
  Key key{};
  std::iota(key.begin(), key.end(), static_cast<std::uint8_t>(first));
  return key;
}

const Lines kFirstKey = {"set 85 00 01", "set 11 12 13 14 15 16 17 18", "set 85 01 01",
                         "set 19 1A 1B 1C 1D 1E 1F 20"};
const Lines kSecondKey = {"set 85 00 11", "set 41 42 43 44 45 46 47 48", "set 85 01 11",
                          "set 49 4A 4B 4C 4D 4E 4F 50"};

class HashKeys : public BesideReader {
 protected:
  void Use(std::shared_ptr<Reader> model) {
    reader = Connected(std::move(model));
    Slot().HashKeyData = {KeyFrom(0x11), KeyFrom(0x41)};
    // An area without pages, so that only the keys are sent.
    Slot().sFldSepData.fill(0);
  }
  static tsCfgSlot& Slot() { return EntryOfActDev().CfgSlot[0]; }
  // The complete traffic of a write with these keys.
  void ExpectWritten(const Lines& keys) {
    SetDirty(Entry(), kDirtySep);
    EXPECT_EQ(WriteCfg(), 1U);
    ExpectTraffic(Join({keys, {"set 84", "set 00 04 EF 01", "sleep 10", "set 90 20"}, FastStore()}));
  }

  std::shared_ptr<Reader> reader;
};

TEST_F(HashKeys, BothTravelBetweenAreaAndCommit) {
  Use(Reader::Plus(1));
  Slot().sFldSepData[0] = 5;
  Slot().sFldSepData[3] = 1;
  ExpectWritten(Join({{"set 85 00 00 10", "set 05 00 00 01"}, kFirstKey, kSecondKey}));
  const auto& kept = reader->state.Active().stored.hashKeys;
  EXPECT_TRUE(std::equal(kept.begin(), kept.begin() + 16, Slot().HashKeyData[0].begin()));
  EXPECT_TRUE(std::equal(kept.begin() + 16, kept.end(), Slot().HashKeyData[1].begin()));
  EXPECT_EQ(Entry().bSepFldCapable, 1U);
}

TEST_F(HashKeys, AnEmptyKeyStays) {
  Use(Reader::Plus(1));
  Slot().HashKeyData[0][0] = 0;
  ExpectWritten(kSecondKey);
  Slot().HashKeyData = {KeyFrom(0x11), KeyFrom(0x41)};
  Slot().HashKeyData[1][0] = 0;
  ExpectWritten(kFirstKey);
  Slot().HashKeyData[0][0] = 0;
  ExpectWritten({});
  Slot().HashKeyData[0] = {0x7F};
  ExpectWritten({"set 85 00 01", "set 7F", "set 85 01 01", "set 00"});
}

TEST_F(HashKeys, BothTravelWhileSecurityIsEnhanced) {
  Use(Reader::Plus(1));
  for (auto& page : reader->state.Working().separated) page = 0;
  reader->state.Working().separated[0] = 5;
  reader->state.Working().separated[3] = 16;
  reader->state.Working().separated[126] = 0x80;
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_NE(shared.reader.EnhanceSecurityOn, 0);
  Slot().sFldSepData.fill(0);
  Slot().HashKeyData = {};
  ForgetTraffic();
  ExpectWritten({"set 85 00 01", "set 00", "set 85 01 01", "set 00", "set 85 00 11", "set 00", "set 85 01 11",
                 "set 00"});
  reader->state.Working().separated[126] = 0x7F;
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(shared.reader.EnhanceSecurityOn, 0);
}

TEST_F(HashKeys, TheyNeedTheMarkAndTheFeature) {
  Use(Reader::Plus(1));
  SetDirty(Entry(), kDirtyFmt);
  EXPECT_EQ(WriteCfg(), 1U);
  for (const std::string& line : TrafficOf(host.transcript.Events()))
    EXPECT_FALSE(line.starts_with("set 85")) << line;
  ForgetTraffic();
  Slot()[field::TimeParms_ExFeatures01] = 0xA0;
  ExpectWritten({});
  Slot()[field::TimeParms_ExFeatures01] = 0x40;
  ExpectWritten(Join({kFirstKey, kSecondKey}));
}

TEST_F(HashKeys, AFailureAtEachReportGoesOn) {
  Use(Reader::Plus(1));
  const Lines all = Join({kFirstKey, kSecondKey});
  StartTrace();
  for (std::size_t report = 0; report < all.size(); ++report) {
    SCOPED_TRACE(report);
    Entry().bSepFldCapable = Entry().bPartNumberPending = 1;
    Entry().LastLibErr = 0;
    reader->faults.Restart();
    reader->faults.RefuseAt(static_cast<int>(report) + 1, 6);
    reader::SendHashKeys(Slot());
    const Lines before(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(report));
    const Lines behind(all.begin() + static_cast<std::ptrdiff_t>(report) + 1, all.end());
    ExpectTraffic(Join({before, Refused(all[report].substr(4)), behind}));
    EXPECT_EQ(GetLastLibErr(), 0x40202U);
    EXPECT_EQ(Entry().bSepFldCapable, 0U);
    EXPECT_EQ(Entry().bPartNumberPending, 1U);
    ExpectTrace({});
  }
}

TEST_F(HashKeys, ALostKeyDoesNotFailTheWrite) {
  Use(Reader::Plus(1));
  reader->faults.RefuseCommand({0x85, 0x01, 0x01}, 6);
  SetDirty(Entry(), kDirtySep);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(reader->state.counters.lastCommitMask, 0x20);
  EXPECT_EQ(Entry().bSepFldCapable, 0U);
  EXPECT_EQ(Slot().bDirtySep, 0U);
}

// All readers share one flag for enhanced security: that of the reader read last.
class HashKeysOfTwo : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    for (const std::uint8_t flag : {std::uint8_t{0x80}, std::uint8_t{0}}) {
      const auto reader = Reader::Plus(1);
      reader->state.Working().separated.fill(0);
      reader->state.Working().separated[0] = 5;
      reader->state.Working().separated[3] = 16;
      reader->state.Working().separated[126] = flag;
      Plug(reader);
    }
    SetDevTypeSrch(0);
    SetConnectProduct(1);
    ASSERT_EQ(USBConnect(nullptr), 1U);
    ASSERT_EQ(GetDevCnt(), 2);
  }
  // Whether a write sends keys that are empty.
  bool SendsEmptyKeys() {
    EntryOfActDev().CfgSlot[0].sFldSepData.fill(0);
    SetDirty(EntryOfActDev(), kDirtySep);
    ForgetTraffic();
    EXPECT_EQ(WriteCfg(), 1U);
    const Lines traffic = TrafficOf(host.transcript.Events());
    return std::ranges::find(traffic, "set 85 00 11") != traffic.end();
  }
};

TEST_F(HashKeysOfTwo, GoByTheReaderReadLast) {
  EXPECT_EQ(SetActDev(0), 1U);
  EXPECT_EQ(GetEnhanceSecurityFlag(), 0x80U);
  EXPECT_FALSE(SendsEmptyKeys()) << "the second reader was read after it";
  EXPECT_EQ(SetActDev(1), 1U);
  EXPECT_EQ(GetEnhanceSecurityFlag(), 0U);
  EXPECT_FALSE(SendsEmptyKeys());
  EXPECT_EQ(SetActDev(0), 1U);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(SetActDev(1), 1U);
  EXPECT_TRUE(SendsEmptyKeys()) << "the first reader's flag";
}

class HashKeysFa : public BesideLine {
 protected:
  void Use() {
    AddReader(Reader::Plus(1), kPlusReader);
    EXPECT_EQ(ReadCfg(), 1U);
    Slot().HashKeyData = {KeyFrom(0x11), KeyFrom(0x41)};
    ForgetTraffic();
  }
  static tsCfgSlot& Slot() { return Entry().CfgSlot[0]; }
};

const Lines kFirstFrame = FrameLines(
    "8A 00 01 10", {"read 8A", "write 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F 20", "read 90 00"});
const Lines kSecondFrame = FrameLines(
    "8A 00 11 10", {"read 8A", "write 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50", "read 90 00"});

TEST_F(HashKeysFa, EachIsOneFrame) {
  Use();
  reader::SendHashKeys(Slot());
  ExpectTraffic(Join({kFirstFrame, kSecondFrame}));
  Slot().HashKeyData[0][0] = 0;
  reader::SendHashKeys(Slot());
  ExpectTraffic(kSecondFrame);
  SetDirty(Entry(), kDirtySep);
  EXPECT_EQ(WriteCfg(), 1U);
  const auto& kept = reader->state.Active().stored.hashKeys;
  EXPECT_TRUE(std::equal(kept.begin() + 16, kept.end(), Slot().HashKeyData[1].begin()));
}

TEST_F(HashKeysFa, AFailedFrameGoesOn) {
  Use();
  line->faults.RefuseCommand({0x8A, 0x00, 0x01}, 1);
  reader::SendHashKeys(Slot());
  ExpectTraffic(Join({FrameLines("8A 00 01 10", {"read 6D", "read 00"}), kSecondFrame}));
  EXPECT_EQ(Entry().bSepFldCapable, 0U);
  Entry().bSepFldCapable = 1;
  line->faults.RefuseCommand({0x8A, 0x00, 0x11}, 1);
  SetDirty(Entry(), kDirtySep);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(reader->state.counters.lastCommitMask, 0x20);
  EXPECT_EQ(Entry().bSepFldCapable, 0U);
}

}  // namespace
}  // namespace tavlyn::test
