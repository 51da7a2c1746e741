// A file by lines, or pieces of lines that are longer than the room; each up to its first NUL.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace tavlyn {

template <std::size_t kRoom>
class Lines {
 public:
  explicit Lines(std::FILE* file) : file_(file) {}

  bool Next(std::string_view& line) {
    if (left_-- == 0 || std::fgets(room_.data(), static_cast<int>(kRoom), file_) == nullptr) return false;
    line = room_.data();
    return true;
  }
  [[nodiscard]] bool AtEnd() const { return std::feof(file_) != 0; }

 private:
  std::FILE* file_;
  std::array<char, kRoom> room_{};
  // A path may name a device that never ends: the files meant here are a few kilobytes, and what has more
  // pieces than this is none.
  std::uint32_t left_ = 1U << 20;
};

}  // namespace tavlyn
