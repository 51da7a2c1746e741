// A made-up root: while it lives, the system's folders that the library looks into are below a folder of this
// test.
#pragma once

#include <filesystem>
#include <string>

#include "tests/boundary/scratch_folder.h"

namespace tavlyn::boundary {

// For paths below /sys, /dev, /lib and /usr/lib.
class OwnRoot {
 public:
  OwnRoot();
  ~OwnRoot();
  OwnRoot(const OwnRoot&) = delete;
  OwnRoot& operator=(const OwnRoot&) = delete;

  [[nodiscard]] std::filesystem::path Of(const std::string& path) const { return folder_.Path() / path; }

 private:
  ScratchFolder folder_;
};

}  // namespace tavlyn::boundary
