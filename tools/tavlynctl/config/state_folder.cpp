#include "tools/tavlynctl/config/state_folder.h"

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

void MakeOwnFolder(const std::string& path) {
  const std::error_code error = CreateOwnFolder(path);
  if (error) throw Failure(kBadFile, "the folder " + path + " cannot be made: " + error.message());
}

}  // namespace tavlyn::ctl
