// What the library asks of platform/files.h, on files in memory. A path is a name and nothing more.
#include "fuzz/memory_file.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace tavlyn::fuzz {
namespace {

using Content = std::shared_ptr<std::string>;

std::map<std::string, Content, std::less<>>& Files() {
  static std::map<std::string, Content, std::less<>> files;
  return files;
}

struct Opened {
  Content content;
  std::size_t at = 0;
  bool appends = false;
};

ssize_t Read(void* cookie, char* bytes, std::size_t size) {
  auto& opened = *static_cast<Opened*>(cookie);
  // Another stream may have emptied the file meanwhile.
  if (opened.at >= opened.content->size()) return 0;
  const std::size_t count = opened.content->copy(bytes, size, opened.at);
  opened.at += count;
  return static_cast<ssize_t>(count);
}

ssize_t Write(void* cookie, const char* bytes, std::size_t size) {
  auto& opened = *static_cast<Opened*>(cookie);
  std::string& text = *opened.content;
  if (opened.appends) opened.at = text.size();
  if (text.size() < opened.at + size) text.resize(opened.at + size);
  text.replace(opened.at, size, bytes, size);
  opened.at += size;
  return static_cast<ssize_t>(size);
}

int Seek(void* cookie, off64_t* position, int whence) {
  auto& opened = *static_cast<Opened*>(cookie);
  const auto from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? opened.at : opened.content->size();
  const off64_t wanted = static_cast<off64_t>(from) + *position;
  if (wanted < 0) return -1;
  opened.at = static_cast<std::size_t>(wanted);
  *position = wanted;
  return 0;
}

int Close(void* cookie) {
  delete static_cast<Opened*>(cookie);
  return 0;
}

// mode as for fopen. A folder's path ends in a slash.
std::FILE* Open(std::string_view path, std::string_view mode) {
  if (path.empty() || path.ends_with('/')) return nullptr;
  const bool creates = !mode.starts_with('r');
  auto found = Files().find(path);
  if (found == Files().end()) {
    if (!creates) return nullptr;
    found = Files().emplace(path, std::make_shared<std::string>()).first;
  }
  if (mode.starts_with('w')) found->second->clear();
  auto* opened = new Opened{found->second, 0, mode.starts_with('a')};
  return fopencookie(opened, std::string(mode).c_str(), {Read, Write, Seek, Close});
}

}  // namespace

void RemoveMemoryFiles() { Files().clear(); }

void FillMemoryFile(std::string_view path, std::string_view text) {
  const auto found = Files().find(path);
  if (found == Files().end()) {
    Files().emplace(path, std::make_shared<std::string>(text));
  } else {
    *found->second = text;
  }
}

std::string TextOfMemoryFile(std::string_view path) {
  const auto found = Files().find(path);
  return found == Files().end() ? std::string() : *found->second;
}

}  // namespace tavlyn::fuzz

namespace tavlyn::platform {

std::FILE* OpenFile(const char* path, const char* mode) {
  return path != nullptr ? fuzz::Open(path, mode) : nullptr;
}
std::FILE* OpenPrivateFile(const char* path) { return OpenFile(path, "w"); }
std::FILE* OpenFoundFile(const char* path) { return OpenFile(path, "r"); }
std::FILE* OpenTraceFile(const char* path) { return OpenFile(path, "a+"); }
bool IsRegularFile(std::FILE* file) { return file != nullptr; }

}  // namespace tavlyn::platform
