// A file by lines, or pieces of lines that are longer than the room; each up to its first NUL.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string_view>

#include "core/wipe.h"
#include "platform/files.h"

namespace tavlyn {

// A path may name a device that never ends. The files meant here are a few kilobytes, so whatever is not a
// regular file is read up to this many pieces.
inline constexpr std::uint64_t kMostPieces = 1U << 20;

template <std::size_t kRoom>
class Lines {
 public:
  explicit Lines(std::FILE* file)
      : Lines(file, platform::IsRegularFile(file) ? std::numeric_limits<std::uint64_t>::max() : kMostPieces) {
  }
  Lines(std::FILE* file, std::uint64_t most) : file_(file), left_(most) {}

  bool Next(std::string_view& line) {
    if (left_-- == 0 || std::fgets(room_.data(), static_cast<int>(kRoom), file_) == nullptr) return false;
    line = room_.data();
    return true;
  }
  [[nodiscard]] bool AtEnd() const { return std::feof(file_) != 0; }

 private:
  std::FILE* file_;
  Wiped<std::array<char, kRoom>> room_{};
  std::uint64_t left_;
};

}  // namespace tavlyn
