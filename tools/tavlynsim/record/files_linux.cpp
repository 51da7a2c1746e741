#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tools/tavlynsim/record/files.h"

namespace tavlyn::sim {

// Not written over: somebody may have the old one open, or have put a link there.
OpenedFile NewPrivateFile(const std::string& name) {
  struct stat found {};
  if (lstat(name.c_str(), &found) == 0) {
    if (S_ISREG(found.st_mode) || S_ISLNK(found.st_mode)) unlink(name.c_str());
  }
  const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  return OpenedFile(file < 0 ? nullptr : fdopen(file, "w"));
}

}  // namespace tavlyn::sim
