#include "tools/tavlynctl/file_problem.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "core/text.h"

namespace tavlyn::ctl {

Failure NothingIn(const std::string& path) {
  errno = 0;
  const File file(std::fopen(path.c_str(), "rb"));
  if (file == nullptr && errno == ENOENT) return {kBadFile, "there is no file " + path};
  if (file != nullptr && std::fgetc(file.get()) == EOF && std::ferror(file.get()) == 0) {
    return {kBadFile, path + " is empty"};
  }
  return {kBadFile, path + " cannot be read: " + std::strerror(errno)};
}

}  // namespace tavlyn::ctl
