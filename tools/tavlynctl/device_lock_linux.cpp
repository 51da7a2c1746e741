// A lock of the device's node keeps the runs of all users apart. Not every device has a node that can be
// opened, and the kernel does not say what the holder is doing: so there is also a file of the user's own,
// which says it.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

#include "tools/tavlynctl/device_lock.h"
#include "tools/tavlynctl/reach/nodes_linux.h"

namespace tavlyn::ctl {
namespace {

int NumberOf(std::intptr_t file) { return static_cast<int>(file); }

void CloseFile(std::intptr_t& file) {
  if (file >= 0) close(NumberOf(file));
  file = -1;
}

// A folder that nobody else may write to.
bool IsPrivate(const std::string& folder) {
  struct stat status {};
  return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
         (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// Empty if there is none.
std::string LockFolder() {
  const char* runtime = secure_getenv("XDG_RUNTIME_DIR");
  if (runtime != nullptr && *runtime == '/' && IsPrivate(runtime)) return runtime;
  const std::string own = "/tmp/tavlynctl-" + std::to_string(geteuid());
  mkdir(own.c_str(), S_IRWXU);
  return IsPrivate(own) ? own : std::string();
}

// The last holder removes the file while it has the lock: then what was locked is not there any more.
bool IsInPlace(int file, const std::string& name) {
  struct stat locked {};
  struct stat there {};
  return fstat(file, &locked) == 0 && lstat(name.c_str(), &there) == 0 && locked.st_dev == there.st_dev &&
         locked.st_ino == there.st_ino;
}

std::string TextIn(int file) {
  std::array<char, 100> text{};
  const ssize_t count = pread(file, text.data(), text.size(), 0);
  return {text.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

void WriteInto(int file, const std::string& text) {
  if (ftruncate(file, 0) != 0) return;
  [[maybe_unused]] const ssize_t count = pwrite(file, text.data(), text.size(), 0);
}

}  // namespace

bool DeviceLock::TryFile(const std::string& holder) {
  const std::string folder = LockFolder();
  if (folder.empty()) return true;
  const std::string name = folder + "/" + LockFileName(path_);
  std::intptr_t file =
      open(name.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
  if (file < 0) return true;
  const bool isLocked = flock(NumberOf(file), LOCK_EX | LOCK_NB) == 0;
  if (!isLocked) holder_ = TextIn(NumberOf(file));
  if (!isLocked || !IsInPlace(NumberOf(file), name)) {
    CloseFile(file);
    return false;
  }
  WriteInto(NumberOf(file), holder + " (process " + std::to_string(getpid()) + ")");
  fileName_ = name;
  file_ = file;
  return true;
}

bool DeviceLock::TryNode() {
  struct stat status {};
  if (stat(path_.c_str(), &status) != 0 || !S_ISCHR(status.st_mode)) return true;
  node_ = open(path_.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
  if (node_ < 0 || flock(NumberOf(node_), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return true;
  holder_ = HoldersOf(path_);
  return false;
}

bool DeviceLock::Try(const std::string& holder) {
  if (TryFile(holder) && TryNode()) return true;
  Release();
  return false;
}

void DeviceLock::Release() {
  CloseFile(node_);
  if (file_ >= 0) unlink(fileName_.c_str());
  CloseFile(file_);
}

DeviceLock::~DeviceLock() { Release(); }

}  // namespace tavlyn::ctl
