// What all configuration text files have in common.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>

#include "core/wipe.h"
#include "platform/allocated.h"

namespace tavlyn {

// Begins a line that says nothing to a program, and one that informs people.
inline constexpr char kCommentMark = '/';
inline constexpr char kInformationMark = ':';

// What is read and written passes through room of the file's own, because it may be keys. Without memory for
// it the C library's serves.
struct CloseFile {
  struct Room : Wiped<std::array<char, 4096>>, platform::Allocated {};
  void operator()(std::FILE* file) const { std::fclose(file); }

  std::unique_ptr<Room> room;
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Null when it cannot be opened, or without a path. A folder cannot.
File OpenFile(const char* path, const char* mode);
// For what may hold keys: written anew, a new file for its owner alone.
File CreateKeyFile(const char* path);

// The three lines on top: title, library version, the device's firmware version.
void WriteHeading(std::FILE* file, const char* title);

// The line above the entries of a record, and one entry.
void WriteSection(std::FILE* file, const char* name);
void WriteEntry(std::FILE* file, const char* keyword, std::uint16_t value, const char* comment);

}  // namespace tavlyn
