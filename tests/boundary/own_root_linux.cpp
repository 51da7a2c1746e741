#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>

#include "tests/boundary/own_root.h"

namespace {

// Empty when there is none.
std::string ownRoot;

std::string Moved(const char* path) {
  constexpr std::array kMoved = {"/sys/", "/dev/", "/lib/", "/lib64/", "/usr/lib/", "/usr/lib64/"};
  const std::string asked = path != nullptr ? path : "";
  const bool moves =
      std::ranges::any_of(kMoved, [&](const char* folder) { return asked.starts_with(folder); });
  return moves ? ownRoot + asked : asked;
}

}  // namespace

extern "C" {

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
char* realpath(const char* path, char* resolved) noexcept {
  static const auto real = reinterpret_cast<char* (*)(const char*, char*)>(dlsym(RTLD_NEXT, "realpath"));
  return real(Moved(path).c_str(), resolved);
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
DIR* opendir(const char* path) {
  static const auto real = reinterpret_cast<DIR* (*)(const char*)>(dlsym(RTLD_NEXT, "opendir"));
  return real(Moved(path).c_str());
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int access(const char* path, int mode) noexcept {
  return static_cast<int>(syscall(SYS_faccessat, AT_FDCWD, Moved(path).c_str(), mode));
}
}

namespace tavlyn::boundary {

OwnRoot::OwnRoot() { ownRoot = folder_.Path().string(); }

OwnRoot::~OwnRoot() { ownRoot.clear(); }

}  // namespace tavlyn::boundary
