// What docs/threads.md says about calls that do not take the lock: those that only read may be made at the
// same time, and those that change something are not forbidden for nothing. The thread sanitizer finds what
// would go wrong, however the threads happen to run.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "sim/devices/reader_fa.h"
#include "tests/boundary/far_end.h"
#include "tests/boundary/library.h"
#include "tests/support/every_export.h"

namespace {

std::atomic<int> races = 0;
std::atomic<int> provoked = 0;

// Races are counted, so that a test can tell its own.
class NoRaces : public testing::Environment {
  void TearDown() override { EXPECT_EQ(races, provoked) << "the sanitizer's reports say more"; }
};
[[maybe_unused]] const auto* const noRaces = testing::AddGlobalTestEnvironment(new NoRaces);

}  // namespace

extern "C" {
const char* __tsan_default_options() {
  return "exitcode=0 suppress_equal_stacks=0 suppress_equal_addresses=0 history_size=7";
}
void __tsan_on_report(void* /*report*/) { ++races; }
}

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;
using test::Export;

// The calls that the page lists under a heading.
std::vector<const Export*> Under(const std::string& heading) {
  std::ifstream page(TAVLYN_THREADS_PAGE);
  std::set<std::string> names;
  bool inside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("#")) inside = line.starts_with("### " + heading);
    std::istringstream words(line);
    for (std::string word; inside && words >> word;) {
      if (word.starts_with('`')) names.insert(word.substr(1, word.size() - 2));
    }
  }
  std::vector<const Export*> calls;
  for (const Export& exported : test::Exports()) {
    if (names.contains(std::string(exported.name))) calls.push_back(&exported);
  }
  EXPECT_EQ(calls.size(), names.size());
  EXPECT_FALSE(calls.empty()) << TAVLYN_THREADS_PAGE << " has no " << heading;
  return calls;
}

// Until a race is seen: one is enough.
void Make(const Export& call, std::size_t numbers) {
  for (const test::Variant& variant : test::VariantsOf(call, numbers)) {
    if (races == provoked) test::CallWith(call, variant);
  }
}

// What is plugged in and connected: nothing, a device on USB, a reader on a serial port.
struct Situation {
  const char* device;
  std::uint32_t product;
};
constexpr Situation kSituations[] = {{"", 1},          {"reader", 1}, {"plus:3", 1},
                                     {"magstripe", 2}, {"sonar", 4},  {"port", 1}};

class Overlap : public testing::Test {
 protected:
  void SetUp() override {
    SetVariable("TAVLYNAPI_LOGGING", "");
    cameFrom_ = fs::current_path();
    fs::current_path(fs::path(ports_.PathOf(kDevicePort)).parent_path());
  }
  void TearDown() override {
    SetVariable("TAVLYNAPI_LOGGING", nullptr);
    fs::current_path(cameFrom_);
  }

  template <typename Body>
  void InEachSituation(Body body) {
    for (const Situation& situation : kSituations) {
      const std::string device = situation.device;
      SCOPED_TRACE(device);
      std::optional<PortDevice> port;
      if (device == "port") port.emplace(ports_, kDevicePort, line_);
      if (!device.empty() && !port) library_.Standin("plug " + device);
      CALL(library_, SetConnectProduct)(situation.product);
      CALL(library_, SetDevTypeSrch)(port ? 1 : 0);
      CALL(library_, SetComSrchRange)(kDevicePort, kDevicePort);
      CALL(library_, VirtualComSearchRange)(1, 256);
      CALL(library_, SetBaudRate)(9600);
      ASSERT_EQ(CALL(library_, USBConnect)(nullptr), device.empty() ? 0U : 1U);
      CALL(library_, WriteDevCfgToSecureFile)("export.txt");
      body();
      CALL(library_, UseAsciiCommandProtocol)(0);  // which needs a reader
      CALL(library_, SetMarkerFunction)(nullptr);
      CALL(library_, USBDisconnect)();
      library_.Standin("reset");
    }
  }

  template <typename DoRace>
  void ExpectRaces(const std::string& heading, DoRace race) {
    // The sanitizer does not see a copy that the compiler expands in place.
    constexpr std::string_view kUnseen = "getPartNumberString_char";
    // Of eight bytes it remembers four accesses, by chance: what it has not seen is tried again.
    constexpr int kRounds = 20;
    auto calls = Under(heading);
    std::erase_if(calls, [&](const Export* call) { return call->name == kUnseen; });
    testing::internal::CaptureStderr();
    for (int round = 0; round < kRounds && !calls.empty(); ++round) {
      const std::size_t numbers = round == 0 ? 3 : test::kNumberCount;
      InEachSituation(
          [&] { std::erase_if(calls, [&](const Export* call) { return race(*call, numbers); }); });
    }
    testing::internal::GetCapturedStderr();
    for (const Export* call : calls) {
      ADD_FAILURE() << call->name << " changes nothing that another thread sees";
    }
  }

  PortFolder ports_;
  Library library_;

 private:
  sim::ReaderFa line_{sim::Reader::Plain()};
  fs::path cameFrom_;
};

TEST_F(Overlap, CallsThatOnlyReadMayBeMadeAtTheSameTime) {
  const auto calls = Under("Read");
  InEachSituation([&] {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread) {
      threads.emplace_back([&] {
        for (const Export* call : calls) Make(*call, test::kNumberCount);
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(races, provoked);
  });
}

#if defined(__SANITIZE_THREAD__)
// The second thread begins when the first has ended, but nothing orders the two for the sanitizer.
bool Race(const Export& one, const Export& other, std::size_t numbers) {
  const int before = races;
  std::atomic<bool> ended = false;
  std::thread first([&] {
    Make(one, numbers);
    ended.store(true, std::memory_order_relaxed);
  });
  std::thread second([&] {
    while (!ended.load(std::memory_order_relaxed)) std::this_thread::yield();
    Make(other, numbers);
  });
  first.join();
  second.join();
  provoked += races - before;
  return races != before;
}

TEST_F(Overlap, CallsThatChangeSomethingDoRace) {
  ExpectRaces("Change", [](const Export& call, std::size_t numbers) { return Race(call, call, numbers); });
}

// With themselves, or with a locked call.
TEST_F(Overlap, CallsThatTalkDoRace) {
  const auto locked = Under("Locked");
  const Export& connect = **std::ranges::find(locked, "USBConnect", &Export::name);
  ExpectRaces("Talk", [&](const Export& call, std::size_t numbers) {
    return Race(call, call, numbers) || Race(call, connect, numbers);
  });
}
#endif

}  // namespace
}  // namespace tavlyn::boundary
