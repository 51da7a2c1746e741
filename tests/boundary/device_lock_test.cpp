// The lock of a device's node and its file, as other users and other runs see them.
#include "tools/tavlynctl/device_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/boundary/scratch_folder.h"
#include "tests/boundary/simulated_run.h"
#include "tests/boundary/variable.h"
#include "tools/descriptor_linux.h"

namespace tavlyn::boundary {
namespace {

using ctl::DeviceLock;

// A character device that nobody else has.
class OwnNode {
 public:
  OwnNode() : other_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    EXPECT_EQ(grantpt(other_.Number()), 0);
    EXPECT_EQ(unlockpt(other_.Number()), 0);
  }
  [[nodiscard]] std::string Path() const { return ptsname(other_.Number()); }

 private:
  tavlyn::Descriptor other_;
};

class DeviceLocking : public testing::Test {
 protected:
  [[nodiscard]] fs::path File(const std::string& path) const { return own_.Path() / ctl::LockFileName(path); }

  const ScratchFolder own_;
  const Variable folder_{"XDG_RUNTIME_DIR", own_.Path().c_str()};
};

// Another user's run has a file of its own, but the same node.
TEST_F(DeviceLocking, ANodeIsLockedForAllUsers) {
  const OwnNode node;
  DeviceLock lock(node.Path());
  {
    const tavlyn::Descriptor theirs(open(node.Path().c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC));
    ASSERT_EQ(flock(theirs.Number(), LOCK_EX | LOCK_NB), 0);
    EXPECT_FALSE(lock.Try("tavlynctl volume"));
    EXPECT_FALSE(fs::exists(File(node.Path()))) << "kept although the node is not";
  }
  EXPECT_TRUE(lock.Try("tavlynctl volume"));
  const tavlyn::Descriptor theirs(open(node.Path().c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC));
  EXPECT_NE(flock(theirs.Number(), LOCK_EX | LOCK_NB), 0);
}

TEST_F(DeviceLocking, TheFileNamesItsHolder) {
  DeviceLock first("/dev/none");
  DeviceLock second("/dev/none");
  DeviceLock other("/dev/other");
  EXPECT_TRUE(first.Try("tavlynctl watch"));
  EXPECT_FALSE(second.Try("tavlynctl volume"));
  EXPECT_EQ(second.Holder(), "tavlynctl watch (process " + std::to_string(getpid()) + ")");
  EXPECT_TRUE(other.Try("tavlynctl volume"));
  EXPECT_EQ(fs::status(File("/dev/none")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(DeviceLocking, AReleaseLeavesNothing) {
  { EXPECT_TRUE(DeviceLock("/dev/none").Try("tavlynctl watch")); }
  EXPECT_TRUE(fs::is_empty(own_.Path()));
  // What a run that was killed has left.
  std::ofstream(File("/dev/none")) << "tavlynctl transparent (process 1)";
  { EXPECT_TRUE(DeviceLock("/dev/none").Try("tavlynctl watch")); }
  EXPECT_TRUE(fs::is_empty(own_.Path()));
}

// A link is not followed, and then there is no lock of the file.
TEST_F(DeviceLocking, ALinkIsNotFollowed) {
  const ScratchFolder elsewhere;
  std::ofstream(elsewhere.Path() / "kept") << "kept";
  fs::create_symlink(elsewhere.Path() / "kept", File("/dev/none"));
  { EXPECT_TRUE(DeviceLock("/dev/none").Try("tavlynctl watch")); }
  EXPECT_EQ(TextOf(elsewhere.Path() / "kept"), "kept");
}

}  // namespace
}  // namespace tavlyn::boundary
