// The files of recordings.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

namespace tavlyn::sim {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using OpenedFile = std::unique_ptr<std::FILE, CloseFile>;

// A new file in place of one of that name, which its owner alone may read. Null on failure; errno says why.
OpenedFile NewPrivateFile(const std::string& name);

// A file of this text in place of one of that name, or of the one that a link of that name leads to. The
// problem, if there is one, and then the old file stays.
std::string WriteWhole(const std::string& name, const std::string& text);

// None, with the problem, if there is no such regular file.
std::optional<std::string> TextOfFile(const std::string& name, std::string& problem);

}  // namespace tavlyn::sim
