#include "tools/path_names.h"
#include "tools/tavlynsim/record/files.h"

namespace tavlyn::sim {

// The rights are those of the folder.
OpenedFile NewPrivateFile(const std::string& name) {
  return OpenedFile(_wfopen(PathOf(name).c_str(), L"wb"));
}

}  // namespace tavlyn::sim
