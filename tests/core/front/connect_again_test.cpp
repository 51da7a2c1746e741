// One reader after another in the same entry: what a search resets, what remains of the first reader, and
// what a read then does with it.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

#include "api.h"
#include "core/state.h"
#include "tests/support/bench.h"
#include "tests/support/dirty.h"

namespace tavlyn::test {
namespace {

using sim::Reader;

// Values of iIDHoldTO that distinguish them: what was set for the first reader, and what the second one has.
constexpr std::int16_t kSet = 450;
constexpr std::int16_t kOwn = 800;
constexpr std::int16_t kHoldUnit = 50;

class TwoReaders : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    SetConnectProduct(1);
    SetDevTypeSrch(0);
  }
  static std::uint8_t& HoldOn(Reader& reader, std::size_t config) {
    return reader.state.configurations.at(config).working.blocks[1][2];
  }
  std::shared_ptr<Reader> PlugSecond(std::shared_ptr<Reader> reader) {
    for (sim::Configuration& config : reader->state.configurations)
      config.working.blocks[1][2] = kOwn / kHoldUnit;
    Plug(reader);
    return reader;
  }
  static std::int16_t Hold() {
    tsTimeParms parms{};
    EXPECT_EQ(GetTimeParms(&parms), 1U);
    return parms.iIDHoldTO;
  }
  static void SetHold() {
    tsTimeParms parms{};
    EXPECT_EQ(GetTimeParms(&parms), 1U);
    parms.iIDHoldTO = kSet;
    EXPECT_EQ(SetTimeParms(&parms), 1U);
  }
  // A value is set but not written; the reader goes, and another takes its entry, but cannot be read.
  std::shared_ptr<Reader> SecondWithAFailedRead() {
    const auto first = Connected(Reader::Plain());
    SetHold();
    EXPECT_EQ(USBDisconnect(), 1U);
    first->Unplug();
    auto second = PlugSecond(Reader::Plain());
    second->faults.RefuseCommand({0x80}, 6);
    EXPECT_EQ(USBConnect(nullptr), 0U);
    EXPECT_EQ(GetDevCnt(), 1);
    LetTimePass();
    return second;
  }
  // The same for configuration 1 of device 1, which no connect reads.
  std::shared_ptr<Reader> SecondWithAnUnreadConfiguration() {
    const std::vector<std::shared_ptr<Reader>> first = {Reader::Plus(2), Reader::Plus(2)};
    for (const auto& reader : first) Plug(reader);
    EXPECT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(SetActDev(1), 1U);
    EXPECT_EQ(ReadCfg(), 1U);
    EXPECT_EQ(SetActConfig(1), 1U);
    SetHold();
    EXPECT_EQ(USBDisconnect(), 1U);
    for (const auto& reader : first) reader->Unplug();
    PlugSecond(Reader::Plus(2));
    auto second = PlugSecond(Reader::Plus(2));
    EXPECT_EQ(USBConnect(nullptr), 1U);
    EXPECT_EQ(GetDevCnt(), 2);
    EXPECT_EQ(SetActDev(1), 1U);
    EXPECT_EQ(GetMaxConfig(), 1);
    return second;
  }
};

TEST_F(TwoReaders, AFailedReadShowsTheOneBeforeAndAWriteSendsIt) {
  const auto second = SecondWithAFailedRead();
  EXPECT_EQ(Hold(), kSet);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(HoldOn(*second, 0), kSet / kHoldUnit);
  EXPECT_EQ(second->state.counters.lastCommitMask, kDirtyTime);
}

TEST_F(TwoReaders, AReadBeforeTheWriteMakesTheEntryItsOwn) {
  const auto second = SecondWithAFailedRead();
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Hold(), kOwn);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(HoldOn(*second, 0), kOwn / kHoldUnit);
  EXPECT_EQ(second->state.counters.lastCommitMask, 0);
}

TEST_F(TwoReaders, AConfigurationThatTheConnectDidNotReadIsThatOfTheOneBefore) {
  const auto second = SecondWithAnUnreadConfiguration();
  EXPECT_EQ(GetActConfig(), 1) << "the index in use stays too";
  EXPECT_EQ(Hold(), kSet);
  EXPECT_EQ(SetActConfig(0), 1U);
  EXPECT_EQ(Hold(), kOwn) << "the one that was read";
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(HoldOn(*second, 0), kOwn / kHoldUnit);
  EXPECT_EQ(HoldOn(*second, 1), kSet / kHoldUnit);
}

TEST_F(TwoReaders, AReadOfAllConfigurationsLeavesNothingOfTheOneBefore) {
  const auto second = SecondWithAnUnreadConfiguration();
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(SetActConfig(1), 1U);
  EXPECT_EQ(Hold(), kOwn);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(HoldOn(*second, 1), kOwn / kHoldUnit);
}

// The dirty flag of the outputs survives a read; what it then sends is what was read.
TEST_F(TwoReaders, OutputsThatWereSetForOneReaderGoToTheNextAsItHasThem) {
  const auto first = Connected(Reader::Plain());
  tsLEDCtrl leds{};
  leds.bAppCtrlsLED = leds.iRedLEDState = 1;
  EXPECT_EQ(SetLEDCtrl(&leds), 1U);
  EXPECT_EQ(USBDisconnect(), 1U);
  first->Unplug();
  const auto second = PlugSecond(Reader::Plain());
  const sim::Block before = second->state.Working().blocks[2];
  ASSERT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(second->state.counters.lastCommitMask, kDirtyDisp);
  EXPECT_EQ(second->state.Working().blocks[2], before);
}

TEST_F(TwoReaders, HashKeysGoToTheNextWithItsSeparatedFields) {
  const auto first = Connected(Reader::Plus(1));
  std::array<std::uint8_t, 32> keys;
  keys.fill(0x5A);
  EXPECT_EQ(SetHashKeyData(keys.data()), 1U);
  EXPECT_EQ(USBDisconnect(), 1U);
  first->Unplug();
  const auto second = PlugSecond(Reader::Plus(1));
  ASSERT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_NE(second->state.Working().hashKeys, keys) << "a read clears their dirty flag";
  std::array<std::uint8_t, 128> fields{};
  EXPECT_EQ(GetSepFldData(fields.data(), 128), 1U);
  EXPECT_EQ(SetSepFldData(fields.data(), 128), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(second->state.Working().hashKeys, keys);
}

TEST_F(TwoReaders, WhatASearchFindsIsTheSecondReadersOwn) {
  const auto first = Connected(Reader::Kelda(2));
  EXPECT_EQ(DevTable[0].PlusState, kPlusReader);
  EXPECT_EQ(DevTable[0].bReportId1, 1);
  EXPECT_NE(DevTable[0].CardTypeList[0], 0);
  EXPECT_STRNE(GetVidPidVendorName(), "7A31:3BFA Orvantis");
  EXPECT_EQ(USBDisconnect(), 1U);
  EXPECT_EQ(DevTable[0].PlusState, kPlusUnknown);
  EXPECT_EQ(DevTable[0].bReportId1, 0);
  EXPECT_EQ(DevTable[0].CardTypeList[0], 0);
  EXPECT_EQ(DevTable[0].ProductKind, 0U);
  first->Unplug();
  PlugSecond(Reader::Plain());
  ASSERT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(DevTable[0].PlusState, kPlainReader);
  EXPECT_EQ(GetMaxConfig(), 0);
  EXPECT_EQ(GetActConfig(), 0);
  EXPECT_STREQ(GetVidPidVendorName(), "7A31:3BFA Orvantis");
  EXPECT_EQ(Hold(), kOwn);
}

}  // namespace
}  // namespace tavlyn::test
