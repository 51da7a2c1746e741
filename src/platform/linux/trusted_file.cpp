#include "platform/linux/trusted_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace tavlyn::platform {
namespace {

bool OnlyRootWrites(const char* path, mode_t format, bool mayBeShared) {
  struct stat status {};
  if (lstat(path, &status) != 0 || (status.st_mode & S_IFMT) != format || status.st_uid != 0) return false;
  return (status.st_mode & (S_IWGRP | S_IWOTH)) == 0 || (mayBeShared && (status.st_mode & S_ISVTX) != 0);
}

}  // namespace

Path RealPath(const Path& path) {
  char real[PATH_MAX];
  return realpath(path.c_str(), real) != nullptr ? Path("%s", real) : Path();
}

// From the top down: what has been tested can then not be replaced while the rest is tested, nor before the
// file is loaded by this path.
Path UntrustedPart(const Path& file) {
  const std::string_view whole = file.View();
  if (!whole.starts_with('/')) return file;
  const std::size_t last = whole.rfind('/');
  for (std::size_t end = 0; end <= last; end = whole.find('/', end + 1)) {
    Path folder = file;
    folder.Cut(std::max<std::size_t>(end, 1));
    if (!OnlyRootWrites(folder.c_str(), S_IFDIR, end < last)) return folder;
  }
  return OnlyRootWrites(file.c_str(), S_IFREG, false) ? Path() : file;
}

bool IsTrustedFile(const Path& file) { return !file.IsEmpty() && UntrustedPart(file).IsEmpty(); }

}  // namespace tavlyn::platform
