#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tools/tavlynsim/state_lock.h"

namespace tavlyn::sim {
namespace {

// The last holder removes the file while it has the lock: then what was locked is not there any more.
bool IsStillThere(int file, const std::string& name) {
  struct stat locked {};
  struct stat there {};
  return fstat(file, &locked) == 0 && lstat(name.c_str(), &there) == 0 && locked.st_dev == there.st_dev &&
         locked.st_ino == there.st_ino;
}

}  // namespace

StateLock::~StateLock() {
  if (file_ < 0) return;
  unlink(name_.c_str());
  close(static_cast<int>(file_));
}

bool StateLock::Take(const std::string& path, std::string& problem) {
  const std::string name = path + ".lock";
  const int file =
      open(name.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
  if (file < 0) {
    problem = name + ": " + std::strerror(errno);
    return false;
  }
  if (flock(file, LOCK_EX | LOCK_NB) != 0 || !IsStillThere(file, name)) {
    problem = path + ": another tavlynsim keeps its devices there";
    close(file);
    return false;
  }
  name_ = name;
  file_ = file;
  return true;
}

}  // namespace tavlyn::sim
