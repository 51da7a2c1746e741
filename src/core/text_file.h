// What all configuration text files have in common.
#pragma once

#include <cstdio>
#include <memory>

namespace tavlyn {

// Begins a line that says nothing to a program, and one that informs people.
inline constexpr char kCommentMark = '/';
inline constexpr char kInformationMark = ':';

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Null when it cannot be opened, or without a path.
inline File OpenFile(const char* path, const char* mode) {
  return File(path != nullptr ? std::fopen(path, mode) : nullptr);
}

// The three lines on top: title, library version, the device's firmware version.
void WriteHeading(std::FILE* file, const char* title);

}  // namespace tavlyn
