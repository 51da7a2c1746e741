// Files that people name: why one cannot be read, and new ones. Those are written beside their place and take
// it when they are whole, so that a save that fails leaves the file that was there.
#pragma once

#include <string>
#include <system_error>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Throws Failure for what is there but no regular file: a device in a file's place may never end.
void RequireFile(const std::string& path);
// Why nothing could be read from it: missing, not to be opened by this user, or empty.
Failure NothingIn(const std::string& path);

// Empty, under a name that nobody had before, readable for its owner alone; gone with the object.
class TemporaryFile {
 public:
  // Where the system keeps such files. Throws Failure.
  TemporaryFile();
  // In a folder. Throws Failure, which names what could not be written.
  TemporaryFile(const std::string& folder, const std::string& what);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

class NewFile {
 public:
  // Throws Failure when nothing can be written there.
  explicit NewFile(const std::string& path);

  // Where to write.
  [[nodiscard]] const std::string& Path() const { return beside_.Path(); }
  // For what was written and did not arrive.
  [[nodiscard]] Failure NotWhole() const;
  // Brings it to the disk and puts it in its place, with the rights of the file that was there. Throws
  // Failure, and that file stays.
  void Keep() const;

 private:
  std::string path_;
  std::string place_;  // where the path leads to
  TemporaryFile beside_;
};

// Of each system. An error when a file that is there may not be written.
std::error_code TestWritable(const std::string& path);
// Adds a name of its own to the path, and creates that file. On Linux it goes away with a Ctrl-C too.
std::error_code CreateOwnFile(std::string& path);
void RemoveOwnFile(const std::string& path);
std::error_code MoveOnto(const std::string& path, const std::string& place);

}  // namespace tavlyn::ctl
