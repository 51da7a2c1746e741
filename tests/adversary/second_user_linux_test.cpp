// What another user of the machine cannot do. Needs root, who becomes that user.
#include <sys/stat.h>
#include <unistd.h>

#include "tests/boundary/simulated_run.h"

namespace tavlyn::adversary {
namespace {

namespace fs = std::filesystem;

class SecondUser : public boundary::SimulatedRun {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "NOT TESTED: only root can become another user";
    fs::permissions(folder_, fs::perms(0755));
  }

  // A line of the other user's, in the folder; true if it worked.
  bool Other(const std::string& line) {
    return boundary::RunLine("cd " + folder_.string() + " && unset LD_PRELOAD && " +
                             "setpriv --reuid=65534 --regid=65534 --clear-groups sh -c '" + line + "'")
               .status == 0;
  }
};

TEST_F(SecondUser, ReadsNeitherTraceNorSaves) {
  Run("",
      {"export TAVLYNAPI_LOGGING=1 XDG_STATE_HOME=$PWD; ctl config save own.hwg", "chmod go+rx TavlynLogs"});
  ASSERT_TRUE(fs::exists(folder_ / "own.hwg"));
  ASSERT_TRUE(fs::exists(folder_ / "TavlynLogs/TavlynApiSdk.log"));
  EXPECT_TRUE(Other("cat script >/dev/null")) << "the other user may read what is there for all";
  EXPECT_FALSE(Other("cat own.hwg"));
  EXPECT_FALSE(Other("cat TavlynLogs/TavlynApiSdk.log"));
}

// The folder is everybody's, as /tmp is; the link is to a file that only its owner may write.
TEST_F(SecondUser, ASaveDoesNotGoThroughALink) {
  fs::create_directory(folder_ / "shared");
  ASSERT_EQ(chmod((folder_ / "shared").c_str(), 01777), 0);
  std::ofstream(folder_ / "precious") << "untouched";
  ASSERT_TRUE(Other("ln -s ../precious shared/own.hwg"));
  const auto ended = Run("", {"ctl config save shared/own.hwg"});
  EXPECT_EQ(ended[0].err, "tavlynctl: shared/own.hwg cannot be written: Permission denied\n");
  EXPECT_EQ(boundary::TextOf(folder_ / "precious"), "untouched");
}

TEST_F(SecondUser, CannotGiveALibraryToRoot) {
  fs::create_directory(folder_ / "theirs");
  fs::copy(PLANTED, folder_ / "theirs/libusb.so");
  ASSERT_EQ(chown((folder_ / "theirs").c_str(), 65534, 65534), 0);
  Run("", {"TAVLYNAPI_LIBUSB=$PWD/theirs/libusb.so ctl list"});
  EXPECT_FALSE(fs::exists(folder_ / "loaded"));
  ASSERT_EQ(chown((folder_ / "theirs").c_str(), 0, 0), 0);
  ASSERT_EQ(chmod((folder_ / "theirs/libusb.so").c_str(), 0666), 0);
  Run("", {"TAVLYNAPI_LIBUSB=$PWD/theirs/libusb.so ctl list"});
  EXPECT_FALSE(fs::exists(folder_ / "loaded"));
  ASSERT_EQ(chmod((folder_ / "theirs/libusb.so").c_str(), 0644), 0);
  Run("", {"TAVLYNAPI_LIBUSB=$PWD/theirs/libusb.so ctl list"});
  EXPECT_TRUE(fs::exists(folder_ / "loaded")) << "root's own is loaded";
}

}  // namespace
}  // namespace tavlyn::adversary
