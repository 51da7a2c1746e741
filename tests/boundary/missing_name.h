// A copy of a shared library that lacks one of its functions.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "tests/boundary/scratch_folder.h"

namespace tavlyn::boundary {

// In a folder of its own. The function is still there, but its name is another.
class WithoutName {
 public:
  WithoutName(const std::filesystem::path& library, const std::string& name) {
    std::ifstream from(library, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(from), {});
    const std::string listed = '\0' + name + '\0';
    const std::size_t at = bytes.find(listed);
    if (at == std::string::npos) throw std::runtime_error(library.string() + " has no " + name);
    bytes[at + 1] = '-';  // the rest may be the end of another name, too
    std::ofstream(Path(), std::ios::binary) << bytes;
  }

  [[nodiscard]] std::string Path() const { return folder_.Path() / "library.so"; }

 private:
  ScratchFolder folder_;
};

}  // namespace tavlyn::boundary
