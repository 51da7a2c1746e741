// How exports begin: what counts as the active device, and who takes the lock.
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
};

TEST_F(OpeningsTest, WithNoDeviceTheErrorWordIsTheUnsupportedValueSignExtended) {
  EXPECT_EQ(GetLastLibErr(), 0xFFFF8000U);
  SetUnsupportedProductErrorCode(0x7FFF);
  EXPECT_EQ(GetLastLibErr(), 0x7FFFU);
  SetUnsupportedProductErrorCode(0xFFFF);
  EXPECT_EQ(GetLastLibErr(), 0xFFFFFFFFU);
  SetUnsupportedProductErrorCode(0);
  EXPECT_EQ(GetLastLibErr(), 0U);
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
  tsCfgFlags flags{};
  EXPECT_EQ(GetFlags(&flags), 0x8000U);
  shared.ActDev = 0;
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(OpeningsTest, TheseCallsTakeTheLockOnce) {
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
}

}  // namespace
}  // namespace tavlyn::test
