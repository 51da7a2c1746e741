// Reports that travel as text frames over the socket.
#include "hid/text_frames.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string_view>

#include "api.h"
#include "core/state.h"
#include "hid/report_channel.h"
#include "hid/vidpid_table.h"
#include "links/link_socket.h"
#include "platform/platform.h"
#include "tests/support/bench.h"

namespace tavlyn::test {
namespace {

using sim::Bytes;

const Lines kRequest = {"send 23 52 65 71 2F 46 52 3A", "sleep 20"};

Bytes Text(std::string_view text) { return {text.begin(), text.end()}; }

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

class TextFramesTest : public Bench {
 protected:
  void SetUp() override {
    Bench::SetUp();
    shared.link.TunnelLink = 1;
    shared.link.LinkSocket = 5;
    shared.DevCnt = 1;
    DevTable[0].LastTxTick = 77;
    buffer.fill(0xFF);
    ForgetTraffic();
  }

  void TearDown() override {
    EXPECT_EQ(DevTable[0].LastTxTick, 77U) << "frames leave the tick alone";
    EXPECT_EQ(DevTable[0].LastLibErr, 0U) << "frames leave no word";
    Bench::TearDown();
  }

  // A reply with a payload of 0xA1, 0xA2 and so on.
  static Bytes Reply(std::size_t n, std::uint16_t vid = 0x7A31, std::uint16_t pid = 0x3BFA) {
    const std::string number = (n < 10 ? "0" : "") + std::to_string(n);
    Bytes reply = Text("#DUSB/FR/001L" + number + ":");
    for (const int byte : {vid >> 8, vid & 0xFF, pid >> 8, pid & 0xFF})
      reply.push_back(static_cast<std::uint8_t>(byte));
    for (std::size_t i = 0; i < n; ++i) reply.push_back(static_cast<std::uint8_t>(0xA1 + i));
    return reply;
  }

  void ExpectRefused(std::int32_t n, const Bytes& reply) {
    host.sockets.toReceive = {reply};
    buffer.fill(0xFF);
    EXPECT_FALSE(ReadFeatureReport(n, 0, buffer.data()));
    for (std::int32_t i = 0; i < n; ++i) EXPECT_EQ(buffer[static_cast<std::size_t>(i)], 0);
    EXPECT_EQ(buffer[static_cast<std::size_t>(n)], 0xFF);
    ForgetTraffic();
  }

  std::array<std::uint8_t, 128> buffer{};
};

TEST_F(TextFramesTest, AWriteOfSevenBytesIsOneSendOf23) {
  const Report report{0xFF, 0x8C, 0x04, 0x07, 0x01, 0x05, 0x06, 0x07};
  EXPECT_TRUE(WriteFeatureReport(7, 0, report.data()));
  ASSERT_EQ(host.sockets.sent.size(), 1U);
  EXPECT_EQ(host.sockets.sent[0],
            Text("#HUSB/FR/001L07:") + (Bytes{0x8C, 0x04, 0x07, 0x01, 0x05, 0x06, 0x07}));
  EXPECT_EQ(host.sockets.sent[0].size(), 23U);
  EXPECT_EQ(Slept(), 20U);
}

TEST_F(TextFramesTest, TheHeaderTellsTheLength) {
  for (const int n : {0, 1, 6}) {
    host.sockets.sent.clear();
    EXPECT_TRUE(WriteFeatureReport(n, 0, buffer.data()));
    ASSERT_EQ(host.sockets.sent.size(), 1U);
    EXPECT_EQ(host.sockets.sent[0],
              Text("#HUSB/FR/001L0" + std::to_string(n) + ":") + Bytes(static_cast<std::size_t>(n), 0xFF));
  }
}

TEST_F(TextFramesTest, ALongerWriteSendsNothing) {
  for (const std::int32_t n : {8, 9, 24, 25, 99, 100, 1000, std::numeric_limits<std::int32_t>::max(), -2,
                               std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_FALSE(WriteFeatureReport(n, 0, buffer.data())) << n;
  }
  ExpectTraffic({});
}

TEST_F(TextFramesTest, TheResultOfTheSendIsNotLookedAt) {
  host.sockets.sendResult = -1;
  EXPECT_TRUE(WriteFeatureReport(7, 0, buffer.data()));
  EXPECT_EQ(host.sockets.sent.size(), 1U) << "and there is no second try";
  EXPECT_EQ(Slept(), 20U);
}

TEST_F(TextFramesTest, TheIndexIsTestedAsForReports) {
  for (const std::int32_t dev : {-1, 2, 127, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_FALSE(WriteFeatureReport(7, dev, buffer.data())) << dev;
    buffer.fill(0xFF);
    EXPECT_FALSE(ReadFeatureReport(7, dev, buffer.data())) << dev;
    EXPECT_EQ(buffer[6], 0);
    EXPECT_EQ(buffer[7], 0xFF);
  }
  ExpectTraffic({});
  EXPECT_TRUE(WriteFeatureReport(7, 1, buffer.data())) << "an index equal to the count passes";
}

TEST_F(TextFramesTest, AReadSendsTheRequestAndTakesTheReply) {
  host.sockets.toReceive = {Reply(7)};
  EXPECT_TRUE(ReadFeatureReport(7, 0, buffer.data()));
  EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + 9),
            (Bytes{0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7, 0xFF}));
  ExpectTraffic(Join({kRequest, {"sleep 30", "sleep 20", "recv"}}));
}

TEST_F(TextFramesTest, ReportIdsDoNotTravel) {
  DevTable[0].bReportId1 = 1;
  EXPECT_TRUE(WriteFeatureReport(1, 0, buffer.data()));
  EXPECT_EQ(host.sockets.sent[0], Text("#HUSB/FR/001L01:") + Bytes{0xFF});
  host.sockets.toReceive = {Reply(1)};
  EXPECT_TRUE(ReadFeatureReport(1, 0, buffer.data()));
  EXPECT_EQ(buffer[1], 0xA1);
}

TEST_F(TextFramesTest, NoReplyIsWaitedForFiveTimes) {
  EXPECT_FALSE(ReadFeatureReport(7, 0, buffer.data()));
  ExpectTraffic(Join({kRequest, {"sleep 30"}, Times(5, {"sleep 20", "recv refused"})}));
}

TEST_F(TextFramesTest, ALateReplyCounts) {
  host.sockets.toReceive = {std::nullopt, std::nullopt, std::nullopt, std::nullopt, Reply(7)};
  EXPECT_TRUE(ReadFeatureReport(7, 0, buffer.data()));
  EXPECT_EQ(Slept(), 20U + 30U + 100U);
}

TEST_F(TextFramesTest, AReplyInPiecesIsNoReply) {
  const Bytes whole = Reply(7);
  for (const std::ptrdiff_t cut : {1, 4, 13, 14, 20, 26}) {
    host.sockets.toReceive = {Bytes(whole.begin(), whole.begin() + cut),
                              Bytes(whole.begin() + cut, whole.end())};
    EXPECT_FALSE(ReadFeatureReport(7, 0, buffer.data())) << cut;
    host.sockets.toReceive.clear();
  }
}

TEST_F(TextFramesTest, AShortReplyIsRefused) {
  Bytes reply = Reply(7);
  reply.pop_back();
  ExpectRefused(7, reply);
  ExpectRefused(7, {});
}

TEST_F(TextFramesTest, TheHeaderMustBeTheExpectedOne) {
  for (std::size_t at = 0; at < 16; ++at) {
    Bytes reply = Reply(7);
    reply[at] ^= 0x20U;
    ExpectRefused(7, reply);
  }
  Bytes sent = Reply(7);
  sent[1] = 'H';
  ExpectRefused(7, sent);
  Bytes otherLength = Reply(7);
  otherLength[14] = '6';
  ExpectRefused(7, otherLength);
}

TEST_F(TextFramesTest, AReadOfEightIsRefusedAfterItsReplyWasTaken) {
  host.sockets.toReceive = {Reply(8)};
  buffer.fill(0xFF);
  EXPECT_FALSE(ReadFeatureReport(8, 0, buffer.data()));
  ExpectTraffic(Join({kRequest, {"sleep 30", "sleep 20", "recv"}}));
  EXPECT_TRUE(host.sockets.toReceive.empty());
  EXPECT_EQ(buffer[7], 0);
  EXPECT_EQ(buffer[8], 0xFF);
}

TEST_F(TextFramesTest, AReadBeyondEveryFrameIsRefused) {
  for (const std::int32_t n : {24, 60, 61, 100}) {
    host.sockets.toReceive = {Bytes(200, 'x')};
    EXPECT_FALSE(ReadFeatureReport(n, 0, buffer.data())) << n;
    EXPECT_EQ(buffer[static_cast<std::size_t>(n)], 0xFF);
  }
}

TEST_F(TextFramesTest, AnUnknownPairIsRefused) {
  ExpectRefused(7, Reply(7, 0x7A31, 0x3BFB));
  ExpectRefused(7, Reply(7, 0x1234, 0x5678));
  ExpectRefused(7, Reply(7, 0x317A, 0xFA3B));
  ExpectRefused(7, Reply(7, 0, 0));
  ExpectRefused(7, Reply(7, 0x1234, 0x0104));
}

// Adapters carry reports of card readers alone.
TEST_F(TextFramesTest, APairOfAnotherFamilyIsRefused) {
  ExpectRefused(7, Reply(7, 0x7A31, 0x1000));
  ExpectRefused(7, Reply(7, 0x18C8, 0x2BFA));
}

TEST_F(TextFramesTest, APairOfTheTableIsTaken) {
  ParseVidPidLine(R"(VID="1234" PID="5678" VENDORNAME="first")");
  ParseVidPidLine(R"(VID="9ABC" PID="DEF0" VENDORNAME="second")");
  host.sockets.toReceive = {Reply(7, 0x1234, 0x5678), Reply(7, 0x9ABC, 0xDEF0), Reply(7)};
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(ReadFeatureReport(7, 0, buffer.data())) << i;
    EXPECT_EQ(buffer[7], 0xA7);
  }
  ExpectRefused(7, Reply(7, 0x1234, 0xDEF0));
}

TEST_F(TextFramesTest, TheTableEndsAtItsFirstRowWithoutAVendor) {
  shared.vidPid.VidPidTable[0] = {};
  shared.vidPid.VidPidTable[1].VID = 0x1234;
  shared.vidPid.VidPidTable[1].PID = 0x5678;
  ExpectRefused(7, Reply(7, 0x1234, 0x5678));
}

TEST_F(TextFramesTest, WithTheSocketClosedNothingIsSent) {
  shared.link.LinkSocket = platform::kNoHandle;
  EXPECT_FALSE(ReadFeatureReport(7, 0, buffer.data()));
  EXPECT_TRUE(WriteFeatureReport(7, 0, buffer.data())) << "the send is not looked at";
  ExpectTraffic({});
}

TEST_F(TextFramesTest, WithTheTunnelOpenNoReportReachesTheHandle) {
  auto reader = sim::Reader::Plain();
  Plug(reader, "reader");
  DevTable[0].hDev = platform::TheHost().hid.Open("reader", platform::OpenMode::kShared);
  WriteFeatureReport(7, 0, buffer.data());
  ReadFeatureReport(7, 0, buffer.data());
  EXPECT_EQ(reader->faults.Exchanges(), 0);
}

}  // namespace
}  // namespace tavlyn::test
