// Feature reports to and from an open device, and the drain of its input reports.
#include "hid/report_channel.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <numeric>

#include "api.h"
#include "core/state.h"
#include "platform/platform.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;
using sim::Reader;

constexpr std::int32_t kHuge = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

// Takes reports of up to 24 bytes and answers 1, 2, 3 and so on.
class LongReports final : public sim::HidDevice {
 public:
  explicit LongReports(std::uint8_t reportId) { identity_.reportId = reportId; }
  int refusals = 0;
  Bytes lastSet;

  [[nodiscard]] const sim::HidIdentity& Identity() const override { return identity_; }
  bool SetFeature(std::span<const std::uint8_t> payload) override {
    if (refusals > 0) {
      --refusals;
      return false;
    }
    lastSet.assign(payload.begin(), payload.end());
    return true;
  }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    if (refusals > 0) return false;
    std::iota(payload.begin(), payload.end(), std::uint8_t{1});
    return true;
  }
  bool TakeInput(std::vector<std::uint8_t>& report) override {
    report = {1, 2, 3};
    return false;
  }
  [[nodiscard]] bool Present() const override { return true; }

 private:
  sim::HidIdentity identity_{0x7A31, 0x3BFA, {{1, 6}}, 0, 24, "", ""};
};

class ReportChannelTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    buffer.fill(0xFF);
  }

  // The device becomes entry `index` of a table of index + 1 devices.
  std::shared_ptr<LongReports> Put(std::size_t index, std::uint8_t reportId = 0) {
    auto device = std::make_shared<LongReports>(reportId);
    const std::string path = "entry-" + std::to_string(index);
    Plug(device, path);
    DevTable[index].hDev = platform::TheHost().hid.Open(path.c_str(), platform::OpenMode::kShared);
    DevTable[index].bReportId1 = reportId;
    shared.DevCnt = static_cast<std::int16_t>(index + 1);
    ForgetTraffic();
    return device;
  }

  // Bytes from to from + count - 1 of the buffer.
  [[nodiscard]] Bytes Part(std::size_t from, std::size_t count) const {
    return {buffer.begin() + static_cast<std::ptrdiff_t>(from),
            buffer.begin() + static_cast<std::ptrdiff_t>(from + count)};
  }

  std::array<std::uint8_t, 64> buffer{};
};

TEST_F(ReportChannelTest, AWriteCarriesThePayload) {
  Put(0);
  const Report report{0, 0x8C, 0x03, 0x01, 0, 0, 0, 0, 0x99};
  EXPECT_TRUE(WriteFeatureReport(8, 0, report.data()));
  ExpectTraffic({"set 8C 03 01 00 00 00 00 99"});
  EXPECT_EQ(DevTable[0].LastLibErr, 0U);
}

TEST_F(ReportChannelTest, AReadBringsThePayload) {
  Put(0);
  EXPECT_TRUE(ReadFeatureReport(8, 0, buffer.data()));
  EXPECT_EQ(Part(0, 9), (Bytes{0, 1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(buffer[9], 0xFF) << "beyond the report";
  ExpectTraffic({"get"});
}

TEST_F(ReportChannelTest, ByteZeroIsTheChannelsWhateverTheCallerLeftThere) {
  Put(0);
  EXPECT_TRUE(WriteFeatureReport(2, 0, buffer.data()));
  ExpectTraffic({"set FF FF"});
  EXPECT_EQ(buffer[0], 0xFF) << "the caller's copy of a write is not touched";
  EXPECT_TRUE(ReadFeatureReport(2, 0, buffer.data()));
  EXPECT_EQ(buffer[0], 0);
  ForgetTraffic();

  Put(1, 1);
  buffer.fill(0xFF);
  EXPECT_TRUE(WriteFeatureReport(2, 1, buffer.data()));
  ExpectTraffic({"set [1] FF FF"});
  EXPECT_TRUE(ReadFeatureReport(2, 1, buffer.data()));
  EXPECT_EQ(buffer[0], 1);
}

TEST_F(ReportChannelTest, AnyMarkButZeroMeansReportIdOne) {
  Put(0, 1);
  DevTable[0].bReportId1 = 0x80000000;
  EXPECT_TRUE(WriteFeatureReport(1, 0, buffer.data()));
  ExpectTraffic({"set [1] FF"});
}

TEST_F(ReportChannelTest, UpTo24BytesAreWritten) {
  auto device = Put(0);
  for (const std::int32_t n : {0, 1, 9, 24}) {
    std::iota(buffer.begin(), buffer.end(), std::uint8_t{0});
    EXPECT_TRUE(WriteFeatureReport(n, 0, buffer.data())) << n;
    EXPECT_EQ(device->lastSet, Part(1, static_cast<std::size_t>(n)));
  }
  EXPECT_TRUE(ReadFeatureReport(24, 0, buffer.data()));
  EXPECT_EQ(buffer[24], 24);
}

TEST_F(ReportChannelTest, ALongerWriteSendsNothingButMovesTheTick) {
  Put(0);
  for (const std::int32_t n : {25, 26, 100, kHuge, -2, kLeast}) {
    host.clock.tick += 10;
    EXPECT_FALSE(WriteFeatureReport(n, 0, buffer.data())) << n;
    EXPECT_EQ(DevTable[0].LastTxTick, host.clock.tick) << n;
  }
  ExpectTraffic({});
  EXPECT_EQ(DevTable[0].LastLibErr, 0U);
}

TEST_F(ReportChannelTest, BothDirectionsMoveTheTickOfTheirEntry) {
  Put(0);
  Put(1);
  DevTable[0].LastTxTick = 7;
  host.clock.tick = 5000;
  EXPECT_TRUE(WriteFeatureReport(8, 1, buffer.data()));
  EXPECT_EQ(DevTable[1].LastTxTick, 5000U);
  host.clock.tick = 6000;
  EXPECT_TRUE(ReadFeatureReport(8, 1, buffer.data()));
  EXPECT_EQ(DevTable[1].LastTxTick, 6000U);
  EXPECT_EQ(DevTable[0].LastTxTick, 7U);
}

TEST_F(ReportChannelTest, TheTickIsThatBeforeTheTries) {
  Put(0)->refusals = 6;
  const std::uint64_t start = host.clock.tick;
  EXPECT_FALSE(WriteFeatureReport(8, 0, buffer.data()));
  EXPECT_EQ(DevTable[0].LastTxTick, start);
  EXPECT_EQ(host.clock.tick, start + 480);
}

TEST_F(ReportChannelTest, AWriteIsTriedSixTimesEightyMillisecondsApart) {
  Put(0)->refusals = 6;
  DevTable[0].LastLibErr = 0x1000000;
  const Report report{0, 0x80};
  EXPECT_FALSE(WriteFeatureReport(8, 0, report.data()));
  ExpectTraffic(Times(6, {"set 80 refused", "sleep 80"}));
  EXPECT_EQ(DevTable[0].LastLibErr, 0x202U) << "set, not added";
}

TEST_F(ReportChannelTest, AWriteEndsWithItsFirstSuccess) {
  auto device = Put(0);
  DevTable[0].LastLibErr = 0x1000000;
  const Report report{0, 0x80};
  device->refusals = 5;
  EXPECT_TRUE(WriteFeatureReport(8, 0, report.data()));
  ExpectTraffic(Join({Times(5, {"set 80 refused", "sleep 80"}), {"set 80"}}));
  EXPECT_EQ(DevTable[0].LastLibErr, 0x1000000U);
}

TEST_F(ReportChannelTest, AFailedReadIsNotTriedAgainAndLeavesNoWord) {
  Put(0)->refusals = 1;
  EXPECT_FALSE(ReadFeatureReport(8, 0, buffer.data()));
  ExpectTraffic({"get refused"});
  EXPECT_EQ(DevTable[0].LastLibErr, 0U);
  EXPECT_EQ(Part(0, 8), Bytes(8)) << "cleared";
  EXPECT_EQ(buffer[8], 0xFF) << "the last byte is not";
}

TEST_F(ReportChannelTest, AnIndexEqualToTheCountPasses) {
  auto device = Put(1);
  shared.DevCnt = 1;
  EXPECT_TRUE(WriteFeatureReport(8, 1, buffer.data()));
  EXPECT_TRUE(ReadFeatureReport(8, 1, buffer.data()));
  EXPECT_FALSE(WriteFeatureReport(8, 2, buffer.data()));
  EXPECT_FALSE(ReadFeatureReport(8, 2, buffer.data()));
  ExpectTraffic({"set FF FF FF FF FF FF FF FF", "get"});
}

TEST_F(ReportChannelTest, WithNoDeviceEntryZeroIsSpokenTo) {
  ForgetTraffic();
  const Report report{0, 0x8A};
  EXPECT_FALSE(WriteFeatureReport(8, 0, report.data()));
  ExpectTraffic(Times(6, {"set 8A refused", "sleep 80"}));
  EXPECT_EQ(DevTable[0].LastLibErr, 0x202U);
  EXPECT_FALSE(ReadFeatureReport(8, 0, buffer.data()));
  ExpectTraffic({"get refused"});
}

TEST_F(ReportChannelTest, ABadIndexTouchesNothingButAReadersBuffer) {
  Put(0);
  for (const std::int32_t dev : {-1, kLeast, 2, 127, 128, 65536, kHuge}) {
    buffer.fill(0xFF);
    EXPECT_FALSE(WriteFeatureReport(8, dev, buffer.data())) << dev;
    EXPECT_EQ(buffer[0], 0xFF);
    EXPECT_FALSE(ReadFeatureReport(8, dev, buffer.data())) << dev;
    EXPECT_EQ(Part(0, 8), Bytes(8)) << dev;
    EXPECT_EQ(buffer[8], 0xFF);
  }
  ExpectTraffic({});
  EXPECT_EQ(DevTable[0].LastTxTick, 0U);
  EXPECT_EQ(DevTable[0].LastLibErr, 0U);
}

TEST_F(ReportChannelTest, AFullTableHasNoEntryBehindItsLast) {
  shared.DevCnt = 127;
  EXPECT_FALSE(WriteFeatureReport(8, 127, buffer.data()));
  EXPECT_FALSE(ReadFeatureReport(8, 127, buffer.data()));
  ExpectTraffic({});
  shared.DevCnt = 0;
}

// Input reports.

class DrainTest : public ReportChannelTest {
 protected:
  std::shared_ptr<Reader> reader = Reader::Kelda();
  platform::Handle open = platform::kNoHandle;
  std::array<std::uint8_t, 9> report{1};

  void SetUp() override {
    ReportChannelTest::SetUp();
    Plug(reader, "kelda");
    open = platform::TheHost().hid.Open("kelda", platform::OpenMode::kOverlapped);
    ForgetTraffic();
  }
};

TEST_F(DrainTest, AQueuedReportIsFetchedAndTheRestDropped) {
  reader->QueueInput({1, 0x11, 0x22});
  reader->QueueInput({1, 0x33});
  EXPECT_TRUE(ReadInputReport(open, report));
  EXPECT_EQ(report[1], 0x11);
  EXPECT_EQ(report[2], 0x22);
  EXPECT_FALSE(ReadInputReport(open, report)) << "nothing is left";
  ExpectTraffic({"drain 01 11 22", "drain nothing"});
}

TEST_F(DrainTest, NothingQueuedIsAFailureWithoutAWordOrAWait) {
  EXPECT_FALSE(ReadInputReport(open, report));
  EXPECT_EQ(DevTable[0].LastLibErr, 0U);
  ExpectTraffic({"drain nothing"});
}

TEST_F(DrainTest, AGoneDeviceIsToldInEntryZeroWhicheverItIs) {
  Put(0);
  Put(1);
  shared.ActDev = 1;
  DevTable[0].LastLibErr = 0x202;
  DevTable[1].hDev = open;
  reader->Unplug();
  EXPECT_FALSE(ReadInputReport(open, report));
  EXPECT_EQ(DevTable[0].LastLibErr, 0x60000202U) << "added";
  EXPECT_EQ(DevTable[1].LastLibErr, 0U);
}

TEST_F(DrainTest, AHandleThatIsNoneHasNothingAndIsNoError) {
  const platform::Handle closed = open;
  host.hid.Close(closed);
  for (const platform::Handle none : {platform::kNoHandle, platform::Handle{0}, closed}) {
    EXPECT_FALSE(ReadInputReport(none, report)) << none;
    EXPECT_EQ(DevTable[0].LastLibErr, 0U) << none;
  }
}

TEST_F(DrainTest, AReportLongerThanTheBufferIsCut) {
  reader->QueueInput(Bytes(64, 0xEE));
  std::array<std::uint8_t, 4> small{};
  EXPECT_TRUE(ReadInputReport(open, std::span(small).first(3)));
  EXPECT_EQ(small[2], 0xEE);
  EXPECT_EQ(small[3], 0);
}

}  // namespace
}  // namespace tavlyn::test
