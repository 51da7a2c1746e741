#include "tools/tavlynctl/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "core/text.h"
#include "tools/own_file.h"
#include "tools/path_names.h"

namespace tavlyn::ctl {
namespace {

namespace fs = std::filesystem;

void Succeed(const std::error_code& error, const std::string& what) {
  if (error) throw Failure(kBadFile, what + " cannot be written: " + error.message());
}

// A link is kept, and the file that it leads to is replaced.
std::string Place(const std::string& path) {
  Succeed(TestWritable(path), path);
  std::error_code absent;
  const fs::path place = fs::canonical(PathOf(path), absent);
  std::string found = absent ? path : NameOfPath(place);
  Succeed(TestWritable(found), path);
  return found;
}

std::string TemporaryFolder() {
  std::error_code error;
  const fs::path folder = fs::temp_directory_path(error);
  Succeed(error, "a temporary file");
  return NameOfPath(folder);
}

}  // namespace

void RequireFile(const std::string& path) {
  std::error_code unknown;
  const fs::file_status status = fs::status(PathOf(path), unknown);
  if (fs::is_directory(status)) throw Failure(kBadFile, path + " is a folder, not a file");
  if (fs::exists(status) && !fs::is_regular_file(status))
    throw Failure(kBadFile, path + " is not a regular file");
}

std::string ContentsOf(const std::string& path) {
  std::ifstream file(PathOf(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

Failure NothingIn(const std::string& path) {
  errno = 0;
  const File file(std::fopen(path.c_str(), "rb"));
  if (file == nullptr && errno == ENOENT) return {kBadFile, "there is no file " + path};
  if (file != nullptr && std::fgetc(file.get()) == EOF && std::ferror(file.get()) == 0) {
    return {kBadFile, path + " is empty"};
  }
  return {kBadFile, path + " cannot be read: " + std::strerror(errno)};
}

TestedFile::TestedFile(const std::string& path, const std::string& name)
    : path_(path), name_(name), contents_(ContentsOf(path)), held_(path, contents_) {}

Failure TestedFile::OfTheFile(const Failure& failure) const {
  std::string text = failure.what();
  if (text.starts_with(held_.Path())) text.replace(0, held_.Path().size(), name_);
  return {failure.code, text, failure.document};
}

const char* TestedFile::ToLoad() const {
  if (ContentsOf(path_) == contents_) return held_.Path().c_str();
  throw Failure(kBadFile, name_ + " was changed while it was to be loaded; nothing was written, try again");
}

TemporaryFile::TemporaryFile() : TemporaryFile(TemporaryFolder(), "a temporary file") {}

TemporaryFile::TemporaryFile(const std::string& folder, const std::string& what)
    : path_(NameOfPath(PathOf(folder) / ".tavlynctl-")) {
  Succeed(CreateOwnFile(path_), what);
}

TemporaryFile::~TemporaryFile() { RemoveOwnFile(path_); }

NewFile::NewFile(const std::string& path)
    : path_(path), place_(Place(path)), beside_(NameOfPath(PathOf(place_).parent_path()), path) {}

Failure NewFile::NotWhole() const {
  return {kBadFile, path_ + " cannot be written completely and stays as it was; is the disk full?"};
}

void NewFile::Keep() const { Succeed(MoveOnto(Path(), place_), path_); }

}  // namespace tavlyn::ctl
