// How slowly a device's bytes go out, with the time given.
#include "sim/paced_line.h"

#include <gtest/gtest.h>

#include "sim/devices/reader_fa.h"

namespace tavlyn::test {
namespace {

using sim::PacedLine;
using std::chrono::milliseconds;

constexpr std::array<std::uint8_t, 5> kPing = {0xFA, 0x04, 0xED, 0xED, 4};
constexpr std::size_t kAnswer = 7;

class PacedLineTest : public testing::Test {
 protected:
  sim::ReaderFa model{sim::Reader::Plain()};
  PacedLine line{model};
  PacedLine::Time now{milliseconds(1'000'000)};
};

TEST_F(PacedLineTest, AnswerGoesOutInOnePieceAtOnce) {
  EXPECT_TRUE(line.Due(now).empty());
  EXPECT_EQ(line.NextDue(), std::nullopt);
  line.Receive(kPing, now);
  EXPECT_EQ(line.Due(now).size(), kAnswer);
  line.Sent(kAnswer, now);
  EXPECT_TRUE(line.Due(now).empty());
}

TEST_F(PacedLineTest, AnswerIsDelayed) {
  line.manner.delay = milliseconds(40);
  line.Receive(kPing, now);
  EXPECT_TRUE(line.Due(now).empty());
  EXPECT_EQ(line.NextDue(), now + milliseconds(40));
  EXPECT_TRUE(line.Due(now + milliseconds(39)).empty());
  EXPECT_EQ(line.Due(now + milliseconds(40)).size(), kAnswer);
}

TEST_F(PacedLineTest, BytesComeOneByOne) {
  line.manner.betweenBytes = milliseconds(5);
  line.Receive(kPing, now);
  for (std::size_t sent = 0; sent < kAnswer; ++sent, now += milliseconds(5)) {
    ASSERT_EQ(line.Due(now).size(), 1U) << sent;
    line.Sent(1, now);
    EXPECT_TRUE(line.Due(now + milliseconds(4)).empty());
  }
  EXPECT_TRUE(line.Due(now).empty());
}

TEST_F(PacedLineTest, WhatIsNotTakenStaysDue) {
  line.Receive(kPing, now);
  line.Due(now);
  line.Sent(3, now);
  EXPECT_EQ(line.Due(now).size(), kAnswer - 3);
  line.Sent(0, now);
  EXPECT_EQ(line.Due(now).size(), kAnswer - 3);
}

TEST_F(PacedLineTest, LongSilenceBeginsANewCommand) {
  line.Receive(std::span(kPing).first(3), now);
  line.Receive(kPing, now + milliseconds(301));
  EXPECT_EQ(line.Due(now + milliseconds(301)).size(), kAnswer);
}

TEST_F(PacedLineTest, ShortPauseDoesNot) {
  line.Receive(std::span(kPing).first(1), now);
  line.Receive(std::span(kPing).subspan(1), now + milliseconds(300));
  EXPECT_EQ(line.Due(now + milliseconds(300)).size(), kAnswer);
}

TEST_F(PacedLineTest, CutComesBehindWhatWasSent) {
  model.CutAfter(3);
  line.Receive(kPing, now);
  EXPECT_EQ(line.Due(now).size(), 3U);
  EXPECT_FALSE(line.TakeCut());
  line.Sent(3, now);
  EXPECT_TRUE(line.TakeCut());
}

TEST_F(PacedLineTest, HangupLosesWhatIsOnItsWay) {
  line.Receive(kPing, now);
  line.Due(now);
  line.Receive(kPing, now);
  line.Hangup();
  EXPECT_TRUE(line.Due(now).empty());
}

}  // namespace
}  // namespace tavlyn::test
