// Files that people name: why one cannot be read, and new ones. New files are written under a temporary name
// and renamed when complete, so that a save that fails leaves the old file.
#pragma once

#include <string>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Throws Failure if it exists but is not a regular file: reading a device might never end.
void RequireFile(const std::string& path);
// Empty also if it cannot be read.
std::string ContentsOf(const std::string& path);
// Why nothing could be read from it: missing, not allowed to this user, or empty.
Failure NothingIn(const std::string& path);

// Bytes of a file that stay as they are while the object lasts: a copy in memory on Linux, on Windows the
// file itself, which nobody may write to meanwhile.
class HeldFile {
 public:
  HeldFile(const std::string& path, const std::string& contents);
  ~HeldFile();
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

  [[nodiscard]] const std::string& Path() const { return path_; }

 private:
  std::string path_;
  int file_;
};

// A file that is tested and then loaded by the library: each reads it anew, and somebody may have replaced
// it.
class TestedFile {
 public:
  // That a file cannot be read is for the tests to say. name: what messages call it.
  TestedFile(const std::string& path, const std::string& name);
  explicit TestedFile(const std::string& path) : TestedFile(path, path) {}
  // Runs a test with the path of what will be loaded; a Failure of it tells of the file that was named.
  template <typename Test>
  auto Pass(Test test) const try {
    return test(held_.Path());
  } catch (const Failure& failure) {
    throw OfTheFile(failure);
  }
  // Where to load what was tested from. Throws Failure if the file has changed meanwhile.
  [[nodiscard]] const char* ToLoad() const;

 private:
  [[nodiscard]] Failure OfTheFile(const Failure& failure) const;

  std::string path_;
  std::string name_;
  std::string contents_;
  HeldFile held_;
};

// An empty file under a new name, readable by its owner alone; removed with the object.
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
  // For what was written but did not reach the file.
  [[nodiscard]] Failure NotWhole() const;
  // Flushes it to disk and renames it into place, with the mode of the file that was there. Throws Failure,
  // and then the old file stays.
  void Keep() const;

 private:
  std::string path_;
  std::string place_;  // where the path leads
  TemporaryFile beside_;
};

}  // namespace tavlyn::ctl
