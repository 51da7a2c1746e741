#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "tools/descriptor_linux.h"
#include "tools/own_file.h"

namespace tavlyn {
namespace {

std::error_code LastError() { return {errno, std::generic_category()}; }

// The files that a signal would leave behind: a save and the file that it is compared with, and likewise the
// copy of what is overwritten.
std::array<std::array<char, PATH_MAX>, 4> pending{};

// The handler is gone when it runs, so that the signal then ends the program.
void RemoveAndEnd(int signal) {
  for (const auto& path : pending) {
    if (path[0] != '\0') unlink(path.data());
  }
  raise(signal);
}

void RemoveAtSignals(const std::string& path) {
  const auto place = std::ranges::find_if(pending, [](const auto& one) { return one[0] == '\0'; });
  if (place == pending.end() || path.size() >= place->size()) return;
  path.copy(place->data(), place->size());
  struct sigaction action {};
  action.sa_handler = RemoveAndEnd;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_DFL) sigaction(signal, &action, nullptr);
  }
}

Descriptor Opened(const std::string& path) { return Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)); }

// Group permissions are kept only for the same group.
bool TakeRights(int file, const std::string& place) {
  struct stat old {};
  if (stat(place.c_str(), &old) != 0) return errno == ENOENT;
  constexpr auto kSameOwner = static_cast<uid_t>(-1);
  mode_t mode = old.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
  if (fchown(file, old.st_uid, old.st_gid) != 0 && fchown(file, kSameOwner, old.st_gid) != 0)
    mode &= ~static_cast<mode_t>(S_IRWXG);
  return fchmod(file, mode) == 0;
}

// Whoever may write to a folder could put a link there that leads to a file of the user's. Many kernels
// follow no such link; reading it, as is done to keep links, would go around that.
bool IsStrangersLink(const std::string& path) {
  struct stat link {};
  struct stat folder {};
  if (lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode) || link.st_uid == geteuid()) return false;
  const std::string above = std::filesystem::path(path).parent_path().string();
  return stat(above.empty() ? "." : above.c_str(), &folder) == 0 && (folder.st_mode & S_IWOTH) != 0 &&
         link.st_uid != folder.st_uid;
}

}  // namespace

std::error_code TestWritable(const std::string& path) {
  if (IsStrangersLink(path)) return {EACCES, std::generic_category()};
  if (access(path.c_str(), W_OK) == 0 || errno == ENOENT) return {};
  return LastError();
}

std::error_code CreateOwnFile(std::string& path) {
  path += "XXXXXX";
  const int file = mkostemp(path.data(), O_CLOEXEC);
  if (file < 0) return LastError();
  close(file);
  RemoveAtSignals(path);
  return {};
}

void RemoveOwnFile(const std::string& path) {
  unlink(path.c_str());
  for (auto& one : pending) {
    if (path == one.data()) one = {};
  }
}

std::error_code MoveOnto(const std::string& path, const std::string& place) {
  const Descriptor file = Opened(path);
  if (!TakeRights(file.Number(), place) || fsync(file.Number()) != 0 ||
      std::rename(path.c_str(), place.c_str()) != 0) {
    return LastError();
  }
  // So that the name is on the disk too; not every file system can.
  const std::string folder = std::filesystem::path(place).parent_path().string();
  const Descriptor names = Opened(folder.empty() ? "." : folder);
  fsync(names.Number());
  return {};
}

}  // namespace tavlyn
