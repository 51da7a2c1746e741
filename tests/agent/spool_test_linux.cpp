#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/boundary/scratch_folder.h"
#include "tools/tavlynd/spool.h"

namespace tavlyn::agent {
namespace {

constexpr std::int64_t kSpoolDay = 86'400'000;
constexpr std::int64_t kLate = 100 * kSpoolDay;  // a time of day
constexpr std::int64_t kMinuteOfSpool = 60'000;

class AgentSpool : public testing::Test {
 protected:
  // As after a start of the agent.
  void Open(std::int64_t bytes = 1 << 20) {
    spool_.reset();
    told_.clear();
    spool_.emplace(
        path_, Spool::Bounds{7 * kSpoolDay, bytes}, [this](const std::string& text) { told_ += text + "\n"; },
        now_);
  }

  void Add(const std::string& device = "a") {
    spool_->Add(device, device + "/card", now_,
                [&](std::int64_t sequence) { return std::to_string(sequence) + filler_; });
    spool_->Commit();
  }

  // "a/card 1;a/card 2;"
  std::string Waiting(std::int64_t after = 0) {
    std::string text;
    for (const Spool::Event& event : spool_->After(after, 1000)) {
      text += event.topic + " " + event.payload.substr(0, event.payload.size() - filler_.size()) + ";";
    }
    return text;
  }

  boundary::ScratchFolder folder_;
  std::string path_ = folder_.Path().string() + "/spool.db";
  std::string filler_;
  std::string told_;
  std::int64_t now_ = kLate;
  std::optional<Spool> spool_;
};

TEST_F(AgentSpool, KeepsEventsInTheirOrderUntilTheyAreDone) {
  Open();
  for (const char* device : {"a", "b", "a"}) Add(device);
  Open();
  EXPECT_EQ(Waiting(), "a/card 1;b/card 1;a/card 2;");
  const auto events = spool_->After(0, 2);
  ASSERT_EQ(events.size(), 2U);
  EXPECT_EQ(Waiting(events[1].id), "a/card 2;");
  spool_->Done(events[0].id);
  spool_->Tend(now_);
  EXPECT_EQ(spool_->Waiting(), 2);
  Open();
  EXPECT_EQ(Waiting(), "b/card 1;a/card 2;");
}

TEST_F(AgentSpool, CountsOnAfterAllAreDone) {
  Open();
  Add();
  spool_->Done(1);
  spool_->Tend(now_);
  Open();
  EXPECT_EQ(spool_->Waiting(), 0);
  Add();
  EXPECT_EQ(Waiting(), "a/card 2;");
  EXPECT_EQ(spool_->Devices(), std::vector<std::string>{"a"});
}

TEST_F(AgentSpool, DropsTheOldestOfTooMany) {
  Open(1010);
  filler_ = std::string(93, '.');
  for (int number = 0; number < 12; ++number) Add();
  EXPECT_EQ(spool_->Dropped(), 2);
  EXPECT_EQ(Waiting().substr(0, 9), "a/card 3;");
  Open(1010);
  EXPECT_EQ(spool_->Dropped(), 2);
  EXPECT_EQ(spool_->Waiting(), 10);
}

TEST_F(AgentSpool, DropsWhatIsTooOld) {
  Open();
  Add();
  now_ += 6 * kSpoolDay;
  Add();
  spool_->Tend(now_ + 2 * kSpoolDay);
  EXPECT_EQ(Waiting(), "a/card 2;");
  EXPECT_EQ(spool_->Dropped(), 1);
}

TEST_F(AgentSpool, PutsADamagedFileAside) {
  Open();
  Add();
  spool_.reset();
  for (const std::size_t from : {0U, 4096U, 8192U}) {
    std::filesystem::remove(path_ + ".damaged");
    {
      std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
      file.seekp(static_cast<std::streamoff>(from));
      file << std::string(4096, 'x');
    }
    now_ += 1000;
    Open();
    EXPECT_NE(told_.find("is damaged"), std::string::npos) << from;
    EXPECT_TRUE(std::filesystem::exists(path_ + ".damaged"));
    Add();
    // No number comes twice: they go on from the time.
    EXPECT_EQ(Waiting(), "a/card " + std::to_string(now_ + 1) + ";");
    EXPECT_FALSE(spool_->IsInMemory());
    spool_.reset();
  }
}

TEST_F(AgentSpool, WithoutAPlaceItKeepsThemInMemory) {
  path_ = folder_.Path().string() + "/none/spool.db";
  Open();
  EXPECT_NE(told_.find("kept in memory"), std::string::npos);
  Add();
  EXPECT_EQ(spool_->Waiting(), 1);
  std::filesystem::create_directory(folder_.Path().string() + "/none");
  spool_->Tend(now_ + kMinuteOfSpool);
  EXPECT_FALSE(spool_->IsInMemory());
  const std::string before = Waiting();
  Open();
  EXPECT_EQ(Waiting(), before);
}

// A disk that is full, as this process sees it: files may not grow.
TEST_F(AgentSpool, AFullDiskLosesNothing) {
  Open();
  Add();
  Add();
  filler_ = std::string(2000, '.');
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{32 << 10, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  for (int number = 0; number < 50; ++number) Add();
  EXPECT_TRUE(spool_->IsInMemory());
  EXPECT_NE(told_.find("cannot be written"), std::string::npos);
  EXPECT_EQ(spool_->Waiting(), 52);
  spool_->Tend(now_ + kMinuteOfSpool);
  EXPECT_TRUE(spool_->IsInMemory());
  setrlimit(RLIMIT_FSIZE, &before);
  spool_->Tend(now_ + 2 * kMinuteOfSpool);
  EXPECT_FALSE(spool_->IsInMemory());
  Add();
  Open();
  EXPECT_EQ(spool_->Waiting(), 53);
  filler_.clear();
  std::int64_t number = 0;
  for (const Spool::Event& event : spool_->After(0, 1000)) EXPECT_EQ(std::stoll(event.payload), ++number);
}

TEST_F(AgentSpool, AnotherProcessIsNotDisturbed) {
  Open();
  Add();
  EXPECT_THROW(Spool(
                   path_, {kSpoolDay, 1000}, [](const std::string&) {}, now_),
               DatabaseError);
  EXPECT_EQ(Waiting(), "a/card 1;");
}

TEST_F(AgentSpool, RemembersRequestsForADay) {
  Open();
  EXPECT_EQ(spool_->Remembered("a", "r", now_), std::nullopt);
  EXPECT_EQ(spool_->Remembered("a", "r", now_), "");
  EXPECT_EQ(spool_->Remembered("b", "r", now_), std::nullopt);
  spool_->Forget("b", "r");
  EXPECT_EQ(spool_->Remembered("b", "r", now_), std::nullopt);
  spool_->Answered("a", "r", "done");
  spool_->Commit();
  Open();
  EXPECT_EQ(spool_->Remembered("a", "r", now_), "done");
  spool_->Tend(now_ + kSpoolDay + 1);
  EXPECT_EQ(spool_->Remembered("a", "r", now_), std::nullopt);
}

TEST_F(AgentSpool, RemembersSoManyRequests) {
  Open();
  spool_.reset();
  Database(path_).Run(
      "INSERT INTO requests WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10050) "
      "SELECT 'a', i, 8640000000 + i, 'done' FROM n");
  Open();
  spool_->Tend(now_);
  EXPECT_EQ(spool_->Remembered("a", "51", now_), "done");
  EXPECT_EQ(spool_->Remembered("a", "50", now_), std::nullopt);
}

}  // namespace
}  // namespace tavlyn::agent
