#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "sim/carriers/wire.h"
#include "tools/tavlynsim/socket_place.h"

namespace tavlyn::sim {
namespace {

// Only one process at a time looks at what is in a folder and changes it, so that of two that find the socket
// of a killed one the second does not remove that of the first.
class FolderLock {
 public:
  explicit FolderLock(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    fd_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd_ < 0) return;
    // In a folder that many write to somebody may hold the lock for long.
    for (int times = 0; times < kTimes && !held_; ++times) {
      held_ = flock(fd_, LOCK_EX | LOCK_NB) == 0;
      std::vector<pollfd> none;
      if (!held_) net::Poll(none, kStepMs);
    }
    if (!held_) errno = EWOULDBLOCK;
  }
  ~FolderLock() {
    if (fd_ >= 0) close(fd_);
  }
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  [[nodiscard]] bool IsHeld() const { return held_; }

 private:
  static constexpr int kTimes = 300;
  static constexpr int kStepMs = 10;

  int fd_ = -1;
  bool held_ = false;
};

// Empty if the place is free, or was left by a process that is gone.
std::string WhyTaken(const std::string& path) {
  struct stat there {};
  if (lstat(path.c_str(), &there) != 0) return errno == ENOENT ? "" : std::strerror(errno);
  if (!S_ISSOCK(there.st_mode)) return "is there already and is no socket";
  if (there.st_uid != geteuid()) return "belongs to another user";
  net::Socket other = wire::Connect(path.c_str());
  const bool gone = other == net::kNone && errno == ECONNREFUSED;
  net::Close(other);
  if (!gone) return "is the socket of a process that runs";
  return unlink(path.c_str()) == 0 ? "" : std::strerror(errno);
}

}  // namespace

net::Socket SocketPlace::Listen(const std::string& place, std::string& name, std::string& problem) {
  std::error_code none;
  const std::string path = std::filesystem::absolute(place, none).lexically_normal().string();
  const FolderLock lock(path);
  problem = lock.IsHeld() ? WhyTaken(path) : std::strerror(errno);
  net::Socket made = net::kNone;
  if (problem.empty()) {
    made = wire::ListenAt(path.c_str());
    if (made == net::kNone) problem = std::strerror(errno);
  }
  if (!problem.empty()) problem = path + ": " + problem;
  struct stat mine {};
  if (made == net::kNone || lstat(path.c_str(), &mine) != 0) return made;
  name = path_ = path;
  device_ = mine.st_dev;
  file_ = mine.st_ino;
  return made;
}

void SocketPlace::Leave() const {
  if (path_.empty()) return;
  const FolderLock lock(path_);
  struct stat there {};
  if (lstat(path_.c_str(), &there) == 0 && there.st_dev == device_ && there.st_ino == file_)
    unlink(path_.c_str());
}

bool IsTrusted(net::Socket socket) {
  ucred other{};
  socklen_t size = sizeof other;
  return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 &&
         (other.uid == geteuid() || other.uid == 0);
}

}  // namespace tavlyn::sim
