// Folders for one test alone, gone with the object.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tavlyn::boundary {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tavlyn-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for a test");
    path_ = name;
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// One that is the current folder meanwhile.
class CurrentScratchFolder : public ScratchFolder {
 public:
  CurrentScratchFolder() { std::filesystem::current_path(Path()); }
  ~CurrentScratchFolder() { std::filesystem::current_path(cameFrom_); }
  CurrentScratchFolder(const CurrentScratchFolder&) = delete;
  CurrentScratchFolder& operator=(const CurrentScratchFolder&) = delete;

 private:
  const std::filesystem::path cameFrom_ = std::filesystem::current_path();
};

}  // namespace tavlyn::boundary
