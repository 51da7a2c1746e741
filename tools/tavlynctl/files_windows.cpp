#include <fcntl.h>
#include <io.h>
#include <share.h>

#include "tools/tavlynctl/files.h"

namespace tavlyn::ctl {

HeldFile::HeldFile(const std::string& path, const std::string& /*contents*/)
    : path_(path), file_(_sopen(path.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYWR)) {}

HeldFile::~HeldFile() {
  if (file_ >= 0) _close(file_);
}

}  // namespace tavlyn::ctl
