// A file for one fuzzer process, in memory where the system has such a folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>

namespace tavlyn::fuzz {

class ScratchFile {
 public:
  ScratchFile() {
    const std::filesystem::path memory = "/dev/shm";
    const std::filesystem::path folder =
        std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
    path_ = (folder / ("tavlyn-fuzz-" + std::to_string(std::random_device{}()))).string();
  }
  ~ScratchFile() { std::remove(path_.c_str()); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  [[nodiscard]] const char* Path() const { return path_.c_str(); }

  void Fill(std::string_view text) const {
    std::FILE* file = std::fopen(Path(), "wb");
    if (file == nullptr || std::fwrite(text.data(), 1, text.size(), file) != text.size()) std::abort();
    std::fclose(file);
  }

 private:
  std::string path_;
};

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// What must hold for every input.
inline void Require(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (holds) return;
  std::fprintf(stderr, "%s:%d: does not hold\n", file, line);
  std::abort();
}

}  // namespace tavlyn::fuzz
