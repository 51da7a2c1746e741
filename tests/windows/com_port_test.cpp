// Serial ports: COM9 and COM12 are the two ends of one cable.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/platform.h"
#include "platform/windows/system.h"
#include "tests/boundary/read_cases.h"

namespace tavlyn::platform {
namespace {

constexpr std::uint16_t kLeft = 9;
constexpr std::uint16_t kRight = 12;
constexpr std::uint16_t kNoSerialPort = 11;
constexpr std::uint16_t kMissing = 200;
constexpr ComTimeouts kUsual{250, 5, 300, 50, 500};
constexpr ComTimeouts kAtOnce{0xFFFFFFFF, 0, 0, 50, 500};
// The tick's step, and what a busy machine may be late.
constexpr std::uint64_t kEarly = 20;
constexpr std::uint64_t kLate = 900;
constexpr int kLateRead = 120;

std::unique_ptr<ComPort> Open(std::uint16_t number, const ComTimeouts& timeouts = kUsual) {
  return TheHost().ports.Open(number, {9600, 0, 0}, timeouts);
}

void Write(ComPort& port, const std::string& text) {
  ASSERT_EQ(text.size(), port.Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}));
}

std::string Read(ComPort& port, std::size_t length) {
  std::vector<std::uint8_t> bytes(length);
  const std::uint32_t count = port.Read(bytes);
  return {bytes.begin(), bytes.begin() + count};
}

// How long a read took that gave what it should.
std::uint64_t TimeOfRead(ComPort& port, std::size_t length, const std::string& expected) {
  Clock& clock = TheHost().clock;
  const std::uint64_t start = clock.Tick();
  EXPECT_EQ(expected, Read(port, length));
  return clock.Tick() - start;
}

// Long enough for bytes to come through the cable.
void Settle() { TheHost().clock.Sleep(100); }

TEST(ComPortTest, BytesPassBetweenShortAndLongName) {
  const auto left = Open(kLeft);
  const auto right = Open(kRight);
  ASSERT_NE(nullptr, left);
  ASSERT_NE(nullptr, right);
  Write(*left, "to the other end");
  EXPECT_EQ("to the other end", Read(*right, 16));
  Write(*right, std::string("\0\r\n\x11\x13\xFF", 6));
  EXPECT_EQ(std::string("\0\r\n\x11\x13\xFF", 6), Read(*left, 6));
}

TEST(ComPortTest, WhatIsMissingOrNoSerialPortDoesNotOpen) {
  EXPECT_EQ(nullptr, Open(kMissing));
  EXPECT_EQ(nullptr, Open(kNoSerialPort));
}

// All but the parity, which a pseudo-terminal does not keep.
TEST(ComPortTest, LineIsSetWithoutFlowControl) {
  const auto port = TheHost().ports.Open(kRight, {19200, 2, 2}, kUsual);
  ASSERT_NE(nullptr, port);
  HANDLE other =
      CreateFileA("\\\\.\\COM12", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, other);
  DCB line{};
  line.DCBlength = sizeof line;
  EXPECT_TRUE(GetCommState(other, &line));
  CloseHandle(other);
  EXPECT_EQ(19200u, line.BaudRate);
  EXPECT_EQ(TWOSTOPBITS, line.StopBits);
  EXPECT_EQ(8, line.ByteSize);
  EXPECT_FALSE(line.fOutxCtsFlow || line.fOutxDsrFlow || line.fOutX || line.fInX);
}

TEST(ComPortTest, SilenceEndsAReadAfterItsWholeTime) {
  const auto port = Open(kLeft);
  ASSERT_NE(nullptr, port);
  const std::uint64_t took = TimeOfRead(*port, 10, "");
  EXPECT_GE(took + kEarly, 350u);
  EXPECT_LT(took, 350u + kLate);
}

TEST(ComPortTest, SilenceBehindAByteEndsAReadAfterTheInterval) {
  const auto left = Open(kLeft);
  const auto right = Open(kRight, {200, 0, 30000, 50, 500});
  ASSERT_NE(nullptr, left);
  ASSERT_NE(nullptr, right);
  Write(*left, "ab");
  const std::uint64_t took = TimeOfRead(*right, 4, "ab");
  EXPECT_GE(took + kEarly, 200u);
  EXPECT_LT(took, 200u + kLate);
}

class ComPortRead : public testing::TestWithParam<boundary::ReadCase> {};

TEST_P(ComPortRead, TakesItsTime) {
  const boundary::ReadCase& one = GetParam();
  const auto left = Open(kLeft);
  const auto right = Open(kRight, {one.interval, one.multiplier, one.constant, 50, 500});
  ASSERT_NE(nullptr, left);
  ASSERT_NE(nullptr, right);
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  std::thread sender([&] {
    for (const int at : one.arrivals) {
      std::this_thread::sleep_until(start + std::chrono::milliseconds(at));
      Write(*left, "x");
    }
  });
  const std::string got = Read(*right, one.length);
  const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
  sender.join();
  EXPECT_EQ(std::string(one.count, 'x'), got);
  EXPECT_GE(took + static_cast<int>(kEarly), one.took);
  EXPECT_LE(took, one.took + kLateRead);
}
INSTANTIATE_TEST_SUITE_P(Timeouts, ComPortRead, testing::ValuesIn(boundary::kReadCases),
                         [](const auto& one) { return std::string(one.param.name); });

TEST(ComPortTest, TimeoutsOfAnOpenPortCanBeChanged) {
  const auto left = Open(kLeft, {0, 0, 30000, 50, 500});
  const auto right = Open(kRight);
  ASSERT_NE(nullptr, left);
  ASSERT_NE(nullptr, right);
  left->SetTimeouts(kAtOnce);
  EXPECT_LT(TimeOfRead(*left, 4, ""), kLate);
  Write(*right, "xy");
  Settle();
  EXPECT_LT(TimeOfRead(*left, 4, "xy"), kLate);
}

TEST(ComPortTest, PurgeAndFlushDropWhatHasArrived) {
  const auto left = Open(kLeft);
  const auto right = Open(kRight, kAtOnce);
  ASSERT_NE(nullptr, left);
  ASSERT_NE(nullptr, right);
  Write(*left, "first");
  Settle();
  right->PurgeInput();
  EXPECT_EQ("", Read(*right, 8));
  Write(*left, "second");
  Settle();
  right->Flush();
  EXPECT_EQ("", Read(*right, 8));
  Write(*left, "third");
  Settle();
  EXPECT_EQ("third", Read(*right, 8));
}

TEST(ComPortTest, OpeningEmptiesTheQueue) {
  const auto left = Open(kLeft);
  ASSERT_NE(nullptr, left);
  ASSERT_NE(nullptr, Open(kRight));
  Write(*left, "for nobody");
  Settle();
  const auto right = Open(kRight, kAtOnce);
  ASSERT_NE(nullptr, right);
  EXPECT_EQ("", Read(*right, 16));
}

TEST(ComPortTest, AClosedPortMovesNothingAndOpensAgain) {
  const auto left = Open(kLeft);
  auto right = Open(kRight);
  ASSERT_NE(nullptr, left);
  ASSERT_NE(nullptr, right);
  left->CloseQuietly();
  std::array<std::uint8_t, 4> bytes{};
  EXPECT_EQ(0u, left->Read(bytes));
  EXPECT_EQ(0u, left->Write(bytes));
  right.reset();
  const auto leftAgain = Open(kLeft);
  right = Open(kRight);
  ASSERT_NE(nullptr, leftAgain);
  ASSERT_NE(nullptr, right);
  Write(*right, "back");
  EXPECT_EQ("back", Read(*leftAgain, 4));
}

}  // namespace
}  // namespace tavlyn::platform
