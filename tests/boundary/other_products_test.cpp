// A magnetic-stripe reader and a sonar sensor on USB, through the exports of the built library.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "sim/carriers/clock/quick_time.h"
#include "tests/boundary/library.h"

namespace tavlyn::boundary {
namespace {

class OtherProducts : public testing::Test {
 protected:
  OtherProducts() {
    TakeItsTime();
    library_.Standin("reset");
    for (const char* device : {"reader", "magstripe", "sonar"})
      library_.Standin(std::string("plug ") + device);
    CALL(library_, SetDevTypeSrch)(0);
  }
  ~OtherProducts() override {
    CALL(library_, USBDisconnect)();
    library_.Standin("reset");
  }

  void Connect(std::uint32_t products, std::uint32_t kind) {
    CALL(library_, SetConnectProduct)(products);
    ASSERT_EQ(CALL(library_, USBConnect)(nullptr), 1U);
    ASSERT_EQ(CALL(library_, GetDevCnt)(), 1);
    ASSERT_EQ(CALL(library_, GetProduct)(), kind);
  }

  Library library_;
};

TEST_F(OtherProducts, AMagneticStripeReaderReadsACard) {
  Connect(2, 2);
  EXPECT_STREQ(CALL(library_, getPartNumberString)(), "OMS-2100-AKU");
  EXPECT_EQ(CALL(library_, sorbaneIsDataAvailable)(), 0U);
  library_.Standin("#2 swipe %B12^DOE/JOHN^?;4000001234567899=3012?");
  EXPECT_EQ(CALL(library_, sorbaneIsDataAvailable)(), 3U);
  const std::uint8_t* track = CALL(library_, sorbaneGetTrackData)(2, 1);
  ASSERT_NE(track, nullptr);
  EXPECT_EQ(std::memcmp(track + 1, ";4000001234567899=3012?", 23), 0);
  EXPECT_EQ(CALL(library_, sorbaneClearDataAvailable)(), 1U);
  EXPECT_EQ(CALL(library_, sorbaneIsDataAvailable)(), 0U);
}

TEST_F(OtherProducts, AMagneticStripeReaderKeepsAWrite) {
  Connect(2, 2);
  EXPECT_EQ(CALL(library_, sorbaneSetFieldLength)(11, 77), 1U);
  EXPECT_EQ(CALL(library_, WriteCfg)(), 1U);
  EXPECT_EQ(CALL(library_, sorbaneSetFieldLength)(11, 0), 1U);
  EXPECT_EQ(CALL(library_, ReadCfg)(), 1U);
  EXPECT_EQ(CALL(library_, sorbaneGetFieldLength)(11), 77U);
  library_.Standin("#2 unplug");
  EXPECT_EQ(CALL(library_, ReadCfg)(), 0U);
  EXPECT_EQ(CALL(library_, GetLastLibErr)(), 0x20000U);
}

TEST_F(OtherProducts, ASonarSensorMeasures) {
  Connect(4, 4);
  library_.Standin("#3 range 25");
  std::array<std::uint16_t, 5> range{};
  EXPECT_EQ(CALL(library_, GetObjRangeInfo)(range.data()), 1U);
  EXPECT_EQ(range, (std::array<std::uint16_t, 5>{25, 1, 0, 0, 1}));
  tsSonarParms parms{};
  EXPECT_EQ(CALL(library_, GetSonarParms)(&parms), 1U);
  parms.MaxDist = 24;
  EXPECT_EQ(CALL(library_, SetSonarParms)(&parms), 1U);
  EXPECT_EQ(CALL(library_, WriteCfg)(), 1U);
  EXPECT_EQ(CALL(library_, GetObjRangeInfo)(range.data()), 1U);
  EXPECT_EQ(range[1], 0) << "too far now";
  library_.Standin("#3 vanish 1");
  EXPECT_EQ(CALL(library_, GetObjRangeInfo)(range.data()), 0U);
  EXPECT_EQ(CALL(library_, GetLastLibErr)(), 0x1000202U);
}

}  // namespace
}  // namespace tavlyn::boundary
