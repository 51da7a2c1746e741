// Where Linux keeps what the library writes, as the environment says, and what a path that names nothing
// opens.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "platform/contained.h"
#include "platform/files.h"
#include "platform/platform.h"
#include "tests/boundary/open_handles.h"
#include "tests/boundary/scratch_folder.h"
#include "tests/boundary/variable.h"

namespace tavlyn::boundary {
namespace {

namespace fs = std::filesystem;

using platform::TheHost;

// In a folder of its own, which is the current one.
class HostPlaces : public testing::Test {
 protected:
  static std::string TraceFile() { return TheHost().places.TraceFile().c_str(); }
  static std::string CurrentFolder() { return TheHost().places.CurrentFolder().c_str(); }

  const CurrentScratchFolder own_;
  const fs::path& folder_ = own_.Path();
};

TEST_F(HostPlaces, TheTraceIsWhereStateIsKept) {
  const fs::path state = folder_ / "some" / "state";
  const Variable named("XDG_STATE_HOME", state.c_str());
  EXPECT_EQ(TraceFile(), state / "TavlynLogs/TavlynApiSdk.log");
  EXPECT_TRUE(fs::is_directory(state / "TavlynLogs"));
  EXPECT_FALSE(fs::exists(state / "TavlynLogs/TavlynApiSdk.log"));
  for (const fs::path& made : {state.parent_path(), state, state / "TavlynLogs"}) {
    EXPECT_EQ(fs::status(made).permissions(), fs::perms(0700)) << made;
  }
  EXPECT_EQ(TraceFile(), state / "TavlynLogs/TavlynApiSdk.log") << "again";
}

// An empty or relative name counts as none.
TEST_F(HostPlaces, WithoutAPlaceForStateItIsBelowTheHomeFolder) {
  const Variable home("HOME", folder_.c_str());
  for (const char* none : {static_cast<const char*>(nullptr), "", "state"}) {
    const Variable state("XDG_STATE_HOME", none);
    EXPECT_EQ(TraceFile(), folder_ / ".local/state/TavlynLogs/TavlynApiSdk.log");
  }
  EXPECT_TRUE(fs::is_directory(folder_ / ".local/state/TavlynLogs"));
}

TEST_F(HostPlaces, WithoutAHomeFolderThereIsNoTraceFile) {
  const Variable state("XDG_STATE_HOME", nullptr);
  for (const char* none : {static_cast<const char*>(nullptr), "", "home"}) {
    const Variable home("HOME", none);
    EXPECT_EQ(TraceFile(), "");
  }
  EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(HostPlaces, AFolderThatIsTooDeepIsNone) {
  const Variable state("XDG_STATE_HOME", ("/" + std::string(4090, 'x')).c_str());
  EXPECT_EQ(TraceFile(), "");
}

TEST_F(HostPlaces, TheCurrentFolderEndsWithASlash) {
  EXPECT_EQ(CurrentFolder(), fs::canonical(folder_).string() + "/");
  fs::create_directory("inner");
  fs::current_path("inner");
  EXPECT_EQ(CurrentFolder(), fs::canonical(folder_).string() + "/inner/");
}

TEST_F(HostPlaces, AFolderThatIsGoneIsNoCurrentFolder) {
  fs::create_directory("inner");
  fs::current_path("inner");
  fs::remove(folder_ / "inner");
  EXPECT_EQ(CurrentFolder(), "");
}

TEST_F(HostPlaces, AVariableIsSetEvenWhenItIsEmpty) {
  const Variable empty("TAVLYNAPI_LOGGING", "");
  EXPECT_TRUE(TheHost().places.EnvironmentIsSet("TAVLYNAPI_LOGGING"));
  const Variable none("TAVLYNAPI_LOGGING", nullptr);
  EXPECT_FALSE(TheHost().places.EnvironmentIsSet("TAVLYNAPI_LOGGING"));
}

TEST_F(HostPlaces, ANullPathOpensNothing) {
  EXPECT_EQ(platform::OpenFile(nullptr, "r"), nullptr);
  EXPECT_EQ(platform::OpenPrivateFile(nullptr), nullptr);
  EXPECT_EQ(platform::OpenFoundFile(nullptr), nullptr);
  EXPECT_FALSE(platform::IsRegularFile(nullptr));
}

// The C library opens folders too, for reading.
TEST_F(HostPlaces, AFolderIsNoFileAndDoesNotStayOpen) {
  const int before = OpenHandles();
  EXPECT_EQ(platform::OpenFile(folder_.c_str(), "r"), nullptr);
  EXPECT_EQ(OpenHandles(), before);
}

TEST(HostContained, TellsWhetherAnExceptionCame) {
  EXPECT_TRUE(platform::Contained([] {}));
  EXPECT_FALSE(platform::Contained([] { throw std::runtime_error("of a program"); }));
}

// A cancelled thread unwinds as if by an exception, which may not be caught.
TEST(HostContained, ACancelledThreadEnds) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the runtime hands over no object, which a sanitizer reports";
#endif
  static bool wentOn;
  wentOn = false;
  pthread_t thread{};
  ASSERT_EQ(pthread_create(
                &thread, nullptr,
                [](void* /*nothing*/) -> void* {
                  platform::Contained([] {
                    pthread_cancel(pthread_self());
                    pthread_testcancel();
                  });
                  wentOn = true;
                  return nullptr;
                },
                nullptr),
            0);
  void* result = nullptr;
  ASSERT_EQ(pthread_join(thread, &result), 0);
  EXPECT_EQ(result, PTHREAD_CANCELED);
  EXPECT_FALSE(wentOn);
}

}  // namespace
}  // namespace tavlyn::boundary
