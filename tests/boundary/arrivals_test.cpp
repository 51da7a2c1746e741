// Readers that come and go at random, and a program that follows them by arrival and removal calls: the table
// is as expected after each, and every disconnect leaves nothing behind.
#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "tests/boundary/endurance.h"
#include "tests/boundary/held.h"
#include "tests/boundary/wire.h"

namespace tavlyn::boundary {
namespace {

constexpr unsigned kSeed = 15;
constexpr std::uint32_t kUnsupported = 0x7777;
// The table has room for 127. Of a device that arrives at a full one the handle is deliberately lost.
constexpr std::size_t kMostEntries = 60;

struct Entry {
  std::string path;
  bool wasConnected;  // only then its product is known
};

class Arrivals : public Wire {
 protected:
  void SetUp() override {
    Wire::SetUp();
    library_.Standin("record off");
    CALL(library_, SetUnsupportedProductErrorCode)(kUnsupported);
    CALL(library_, SetDevTypeSrch)(0);
  }

  std::size_t Chosen(std::size_t count) { return random_() % count; }

  std::string Plug() {
    const char* const kinds[] = {"reader", "plus:2", "plus:3"};
    return "/dev/hidraw-sim" + library_.Standin(std::string("plug ") + kinds[Chosen(std::size(kinds))]);
  }
  void Unplug(const std::string& path) {
    library_.Standin("#" + path.substr(std::string("/dev/hidraw-sim").size()) + " unplug");
    std::erase(present_, path);
  }

  void ConnectAgain() {
    CALL(library_, USBDisconnect)();
    library_.Standin("reset");
    present_.clear();
    expected_.clear();
    // The library keeps the system's list of devices until it asks for the next one.
    ASSERT_EQ(CALL(library_, USBConnect)(nullptr), 0U);
    const Held held;
    if (connects_++ == 0) held_ = held;
    ASSERT_EQ(held, held_) << "after " << calls_ << " calls";
    for (std::size_t count = 1 + Chosen(4); count > 0; --count) {
      present_.push_back(Plug());
      expected_.push_back({present_.back(), true});
    }
    ASSERT_EQ(CALL(library_, USBConnect)(nullptr), 1U);
    ExpectTable();
  }

  // A device whose product is not known refuses every arrival.
  bool TakesArrivals() const { return !expected_.empty() && expected_[0].wasConnected; }

  // In one call, or character by character.
  template <typename Whole, typename ByCharacter>
  std::uint32_t Call(const std::string& path, Whole whole, ByCharacter byCharacter) {
    ++calls_;
    if (Chosen(8) != 0) return whole(path.c_str());
    for (std::size_t at = 0; at < path.size(); ++at) {
      byCharacter(static_cast<std::int16_t>(at), static_cast<std::uint8_t>(path[at]));
    }
    return byCharacter(255, 0);
  }

  void Arrive(const std::string& path) {
    const bool there = std::ranges::count(present_, path) > 0;
    const std::uint32_t wanted = !TakesArrivals() ? kUnsupported : there ? 1 : 0;
    ASSERT_EQ(Call(path, CALL(library_, ChkAddArrival), CALL(library_, chkAddArrival_char)), wanted) << path;
    if (wanted != 1) return;
    expected_.push_back({path, false});
    ++arrivals_;
  }

  // Takes the first device, whichever is named.
  void Remove(const std::string& path) {
    const std::uint32_t wanted = std::ranges::count(expected_, path, &Entry::path) > 0 ? 1 : 0;
    ASSERT_EQ(Call(path, CALL(library_, ChkDelRemoval), CALL(library_, chkDelRemoval_char)), wanted) << path;
    if (wanted != 1) return;
    expected_.erase(expected_.begin());
    ++removals_;
  }

  // Device 0 is active afterwards, as after every arrival and removal.
  void ExpectTable() {
    ASSERT_EQ(CALL(library_, GetDevCnt)(), static_cast<int>(expected_.size()));
    ASSERT_EQ(CALL(library_, GetActDev)(), 0);
    for (std::size_t at = expected_.size(); at-- > 0;) {
      ASSERT_EQ(CALL(library_, SetActDev)(static_cast<std::int16_t>(at)), 1U);
      ASSERT_EQ(Name(), expected_[at].path) << at;
      ASSERT_EQ(CALL(library_, GetProduct)(), expected_[at].wasConnected ? 1U : 0U) << at;
    }
  }

  // A program reads a device that may have gone; which of them does not matter.
  void Use() {
    if (expected_.empty()) return;
    const std::size_t at = Chosen(expected_.size());
    CALL(library_, SetActDev)(static_cast<std::int16_t>(at));
    const bool there = std::ranges::count(present_, expected_[at].path) > 0;
    const std::uint32_t wanted = !expected_[at].wasConnected ? kUnsupported : there ? 1 : 0;
    ASSERT_EQ(CALL(library_, ReadCfg)(), wanted) << expected_[at].path;
    CALL(library_, SetActDev)(0);
  }

  void Step() {
    const std::size_t kind = Chosen(100);
    if (kind < 40) {
      present_.push_back(Plug());
      Arrive(present_.back());
    } else if (kind < 45 && !present_.empty()) {
      Arrive(present_[Chosen(present_.size())]);
    } else if (kind < 48) {
      Arrive("/dev/hidraw-sim9999");
    } else if (kind < 85 && !present_.empty()) {
      const std::string path = present_[Chosen(present_.size())];
      Unplug(path);
      Remove(path);
    } else if (kind < 88) {
      Remove("/dev/hidraw-sim9999");
    } else if (kind < 90) {
      Use();
    } else if (kind < 92 || !TakesArrivals() || expected_.size() > kMostEntries) {
      ConnectAgain();
    } else {
      ExpectTable();
    }
  }

  std::mt19937 random_{kSeed};
  std::vector<std::string> present_;
  std::vector<Entry> expected_;
  Held held_{};
  int connects_ = 0;
  int calls_ = 0;
  int arrivals_ = 0;
  int removals_ = 0;
};

TEST_F(Arrivals, ReadersComeAndGoAtRandom) {
  const int times = Times(100'000, 2'000);
  ConnectAgain();
  connects_ = 0;  // the first one filled caches
  ConnectAgain();
  while (arrivals_ + removals_ < times && !HasFailure()) Step();
  ConnectAgain();
  std::printf("%d arrivals, %d removals, %d calls in all, %d connects, held: %s\n", arrivals_, removals_,
              calls_, connects_, testing::PrintToString(held_).c_str());
}

}  // namespace
}  // namespace tavlyn::boundary
