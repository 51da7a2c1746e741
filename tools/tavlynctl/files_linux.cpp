#include <sys/mman.h>
#include <unistd.h>

#include "tools/tavlynctl/files.h"

namespace tavlyn::ctl {

HeldFile::HeldFile(const std::string& path, const std::string& contents)
    : path_(path), file_(memfd_create("tavlynctl", MFD_CLOEXEC)) {
  const auto size = static_cast<ssize_t>(contents.size());
  // Why a file has no contents is seen in the file itself.
  if (file_ >= 0 && size != 0 && write(file_, contents.data(), contents.size()) == size)
    path_ = "/proc/self/fd/" + std::to_string(file_);
}

HeldFile::~HeldFile() {
  if (file_ >= 0) close(file_);
}

}  // namespace tavlyn::ctl
