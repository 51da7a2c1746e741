// The exports that take the library's lock, from several threads at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/boundary/library.h"

namespace tavlyn::boundary {
namespace {

constexpr int kRounds = 20;

using Id = std::array<std::uint8_t, 32>;

// The card on each of the two readers.
struct Card {
  const char* laid;
  std::uint16_t bits;
  std::uint8_t byte;  // all bytes of its ID
};
constexpr std::array<Card, 2> kCards = {{{"1111111111:40", 40, 0x11}, {"22222222222222:56", 56, 0x22}}};

// Moves past the time within which a reader is left alone; takes no real time (quick_time_linux.cpp).
void LetTimePass() {
  const timespec pause{0, 300'000'000};
  nanosleep(&pause, nullptr);
}

// The trace: every line arrives whole, with its length.
std::atomic<int> lines = 0;
void TakeLine(const char* line, std::uint64_t length) {
  const std::string_view text(line);
  EXPECT_EQ(text.size(), length);
  EXPECT_EQ(text.find('\n'), length - 1);
  ++lines;
}

Id IdOf(const Card& card) {
  Id id{};
  std::fill_n(id.begin(), card.bits / 8, card.byte);
  return id;
}

class Threads : public testing::Test {
 protected:
  void SetUp() override {
    SetVariable("TAVLYNAPI_LOGGING", "");
    ASSERT_EQ(CALL(library_, SetMarkerFunction)(TakeLine), 1U);
    library_.Standin("reset");
    CALL(library_, SetConnectProduct)(1);
    CALL(library_, SetDevTypeSrch)(0);
  }
  void TearDown() override {
    CALL(library_, USBDisconnect)();
    EXPECT_GT(lines, 0);
    CALL(library_, SetMarkerFunction)(nullptr);
    SetVariable("TAVLYNAPI_LOGGING", nullptr);
    library_.Standin("reset");
  }

  void Plug(const Card& card) {
    library_.Standin("plug reader");
    library_.Standin(std::string("card ") + card.laid);
    library_.Standin("record off");
  }
  // In a thread of its own until the others have done their rounds.
  void Start(std::function<void()> call) {
    threads_.emplace_back([this, call = std::move(call)] {
      while (!done_) call();
    });
  }
  void Stop() {
    done_ = true;
    for (std::thread& thread : threads_) thread.join();
  }

  // The bytes are one reader's ID and nothing else. With no bits there is nothing, or what a reader reported
  // before its card was taken away.
  template <typename Read>
  void Poll(Read read, std::int16_t room) {
    LetTimePass();
    Id id{};
    const std::uint16_t bits = read(id.data(), room);
    if (bits == 0 && id == Id{}) return;
    const std::size_t card = id == IdOf(kCards[1]) ? 1 : 0;
    EXPECT_EQ(id, IdOf(kCards.at(card)));
    if (bits == 0) return;
    EXPECT_EQ(bits, kCards.at(card).bits);
    ++seen_.at(card);
  }
  // Until it was that reader's.
  void PollFor(std::size_t card) {
    const int before = seen_.at(card);
    while (seen_.at(card) == before && !HasFailure()) Poll(CALL(library_, GetActiveID), 8);
  }
  void PollAllTheTime() {
    Start([this] { Poll(CALL(library_, GetActiveID), 8); });
    Start([this] { Poll(CALL(library_, GetActiveID32), 32); });
  }

  Library library_;
  std::array<std::atomic<int>, kCards.size()> seen_{};

 private:
  std::atomic<bool> done_ = false;
  std::vector<std::thread> threads_;
};

// Two readers are there throughout; the one found first is active.
TEST_F(Threads, EveryGuardedExportAtOnce) {
  for (const Card& card : kCards) Plug(card);
  ASSERT_EQ(CALL(library_, USBConnect)(nullptr), 1U);
  PollAllTheTime();
  Start([this] { EXPECT_EQ(CALL(library_, ReadCfg)(), 1U); });
  Start([this] { EXPECT_EQ(CALL(library_, WriteCfg)(), 1U); });
  Start([this] { EXPECT_EQ(CALL(library_, BeepNow)(1, 0), 1U); });
  for (int round = 0; round < kRounds; ++round) PollFor(0);
  Stop();
  EXPECT_EQ(seen_[1], 0);
}

// Now one is there and now the other, and neither in between.
TEST_F(Threads, ReadersComeAndGo) {
  PollAllTheTime();
  Start([this] { EXPECT_LE(CALL(library_, ReadCfg)(), 1U); });
  Start([this] { EXPECT_LE(CALL(library_, WriteCfg)(), 1U); });
  Start([this] { EXPECT_LE(CALL(library_, BeepNow)(1, 0), 1U); });
  Start([this] {
    EXPECT_EQ(CALL(library_, USBDisconnect)(), 1U);
    std::uint32_t did = 0;
    EXPECT_LE(CALL(library_, USBConnect)(&did), 1U);
  });
  for (int round = 0; round < kRounds; ++round) {
    const std::size_t there = static_cast<std::size_t>(round) % kCards.size();
    library_.Standin("reset");
    Plug(kCards.at(there));
    PollFor(there);
  }
  Stop();
}

}  // namespace
}  // namespace tavlyn::boundary
