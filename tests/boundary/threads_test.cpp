// The exports that take the library's lock, from several threads at once, over each carrier.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <ctime>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "sim/devices/reader_fa.h"
#include "tests/boundary/bulk_standin.h"
#include "tests/boundary/far_end.h"
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
  PollFor(0);
  seen_[1] = 0;  // what the cache still had of an earlier test
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

// One reader on a line of bytes, whose far end answers while the library waits.
class ThreadsOnALine : public Threads {
 protected:
  // Until each call has succeeded as often as this.
  static constexpr int kSuccesses = 20;

  void PutCard() const {
    const Id id = IdOf(kCards[0]);
    reader_->PutCard({id.begin(), id.begin() + kCards[0].bits / 8}, kCards[0].bits);
  }
  template <typename Call>
  void Repeat(Call call) {
    std::atomic<int>& successes = successes_.emplace_back(0);
    Start([call, &successes] {
      const auto result = static_cast<std::uint32_t>(call());
      EXPECT_LE(result, 1U);
      if (result == 1) ++successes;
    });
  }
  void EverythingAtOnce() {
    while (CALL(library_, USBConnect)(nullptr) != 1) continue;
    PollAllTheTime();
    Repeat([this] { return CALL(library_, ReadCfg)(); });
    Repeat([this] { return CALL(library_, WriteCfg)(); });
    Repeat([this] { return CALL(library_, BeepNow)(1, 0); });
    Repeat([this] {
      CALL(library_, USBDisconnect)();
      return CALL(library_, USBConnect)(nullptr);
    });
    const auto enough = [](const std::atomic<int>& count) { return count >= kSuccesses; };
    while (!HasFailure() && !(enough(seen_[0]) && std::ranges::all_of(successes_, enough))) {
      std::this_thread::yield();
    }
    Stop();
    EXPECT_EQ(seen_[1], 0);
  }

  PortFolder ports_;
  std::shared_ptr<sim::Reader> reader_ = sim::Reader::Plain();
  sim::ReaderFa line_{reader_};

 private:
  std::list<std::atomic<int>> successes_;
};

TEST_F(ThreadsOnALine, SerialPort) {
  PutCard();
  const PortDevice device(ports_, kDevicePort, line_);
  CALL(library_, SetDevTypeSrch)(1);
  CALL(library_, SetComSrchRange)(kDevicePort, kDevicePort);
  EverythingAtOnce();
}

TEST_F(ThreadsOnALine, Adapter) {
  PutCard();
  const Ip ip{127, 3, 8, 1};
  const TcpDevice device(ip, line_);
  CALL(library_, SetDevTypeSrch)(2);
  CALL(library_, SetIpPort)(ip[0], ip[1], ip[2], ip[3], device.Port());
  EverythingAtOnce();
}

TEST_F(ThreadsOnALine, BulkDevice) {
  const BulkStandin standin;
  standin.Do("plug reader@bulk");
  standin.Do(std::string("card ") + kCards[0].laid);
  if (CALL(library_, USBConnect)(nullptr) != 1) GTEST_SKIP() << kNotTrusted;
  EverythingAtOnce();
}

}  // namespace
}  // namespace tavlyn::boundary
