// Hash keys and the flag for enhanced security, as they wait for a commit.
#include "tests/files/secure_bench.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

class SecuritySettings : public SecureBench {
 protected:
  void SetUp() override {
    SecureBench::SetUp();
    USBDisconnect();
    host.hid.Unplug("device-1");
    Use(Reader::Plus(3));
  }
};

TEST_F(SecuritySettings, HashKeysBelongToTheActiveConfiguration) {
  const Bytes data = Counting(32);
  EXPECT_EQ(SetActConfig(1), 1U);
  Entry().LastLibErr = 5;
  EXPECT_EQ(SetHashKeyData(data.data()), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_TRUE(std::equal(data.begin(), data.begin() + 16, Slot(1).HashKeyData[0].begin()));
  EXPECT_TRUE(std::equal(data.begin() + 16, data.end(), Slot(1).HashKeyData[1].begin()));
  EXPECT_EQ(DirtyOf(Entry(), Slot(1)), unsigned{kDirtySep});
  EXPECT_EQ(DirtyOf(Entry(), Slot(0)), 0U);
  EXPECT_EQ(Slot(0).HashKeyData[0][0], 0);
  ExpectTraffic({});
  ExpectTrace({});
}

TEST_F(SecuritySettings, HashKeysReachTheReaderWithTheCommit) {
  const Bytes data = Counting(32);
  EXPECT_EQ(SetHashKeyData(data.data()), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  const auto& kept = reader->state.configurations[0].stored.hashKeys;
  EXPECT_TRUE(std::equal(data.begin(), data.end(), kept.begin(), kept.end()));
}

TEST_F(SecuritySettings, HashKeysNeedBytes) {
  Entry().LastLibErr = 5;
  EXPECT_EQ(SetHashKeyData(nullptr), 0U);
  EXPECT_EQ(DirtyOf(Entry(), Slot(0)), 0U);
  EXPECT_EQ(Slot().HashKeyData[0][0], 0);
  ExpectUntouched();
}

TEST_F(SecuritySettings, TheFlagBelongsToConfiguration0) {
  EXPECT_EQ(SetActConfig(2), 1U);
  for (const std::uint32_t on : {1U, 0x80U, 0x100U, 0x80000000U}) {
    Slot().sFldSepData[126] = 0x7F;
    Slot().bDirtySep = 0;
    Entry().LastLibErr = 5;
    EXPECT_EQ(GetEnhanceSecurityFlag(), 0U);
    SetEnhanceSecurityFlag(on);
    EXPECT_EQ(GetEnhanceSecurityFlag(), 0x80U);
    EXPECT_EQ(Slot().sFldSepData[126], 0x80) << "the whole byte";
    EXPECT_EQ(Slot().bDirtySep, 1U);
    EXPECT_EQ(GetLastLibErr(), 5U);
  }
  Slot().sFldSepData[126] = 0xFF;
  EXPECT_EQ(GetEnhanceSecurityFlag(), 0x80U);
  Slot().bDirtySep = 0;
  SetEnhanceSecurityFlag(0);
  EXPECT_EQ(GetEnhanceSecurityFlag(), 0U);
  EXPECT_EQ(Slot().sFldSepData[126], 0);
  EXPECT_EQ(Slot().bDirtySep, 1U);
  EXPECT_EQ(Slot(2).bDirtySep, 0U);
  EXPECT_EQ(shared.reader.EnhanceSecurityOn, 0) << "a copy of what was read";
  ExpectTraffic({});
}

TEST_F(SecuritySettings, TheFlagTravelsInsideTheSeparatorData) {
  Slot().sFldSepData[0] = 5;
  Slot().sFldSepData[3] = 16;
  SetEnhanceSecurityFlag(1);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(reader->state.configurations[0].stored.separated[126], 0x80);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(GetEnhanceSecurityFlag(), 0x80U);
  EXPECT_EQ(shared.reader.EnhanceSecurityOn, 1);
}

}  // namespace
}  // namespace tavlyn::test
