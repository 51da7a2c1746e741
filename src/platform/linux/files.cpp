#include "platform/files.h"

#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

#include "platform/path.h"

namespace tavlyn::platform {
namespace {

constexpr mode_t kOwnerAlone = S_IRUSR | S_IWUSR;

bool HasFormat(int descriptor, mode_t format) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && (status.st_mode & S_IFMT) == format;
}

// Takes over the descriptor.
std::FILE* FileOf(int descriptor, const char* mode) {
  if (descriptor < 0) return nullptr;
  std::FILE* file = fdopen(descriptor, mode);
  if (file == nullptr) close(descriptor);
  return file;
}

// Under another name too it could be any file of the user's.
bool IsOursAlone(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && status.st_uid == geteuid() && status.st_nlink == 1;
}

std::FILE* RegularFileOf(int descriptor, const char* mode) {
  if (descriptor < 0 || HasFormat(descriptor, S_IFREG)) return FileOf(descriptor, mode);
  close(descriptor);
  return nullptr;
}

}  // namespace

std::FILE* OpenFile(const char* path, const char* mode) {
  // With "e", programs that the process starts do not inherit it.
  char ours[8];
  std::snprintf(ours, sizeof ours, "%.6se", mode);
  std::FILE* file = path != nullptr ? std::fopen(path, ours) : nullptr;
  if (file == nullptr || !HasFormat(fileno(file), S_IFDIR)) return file;
  std::fclose(file);
  return nullptr;
}

std::FILE* OpenPrivateFile(const char* path) {
  if (path == nullptr) return nullptr;
  return FileOf(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, kOwnerAlone), "w");
}

std::FILE* OpenFoundFile(const char* path) {
  struct stat status {};
  // A device is not even opened, because it may act on that. Should one take the place of a file between the
  // two steps, then at least the open does not wait.
  if (getauxval(AT_SECURE) != 0 || path == nullptr || stat(path, &status) != 0 || !S_ISREG(status.st_mode))
    return nullptr;
  return RegularFileOf(open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC), "r");
}

// Neither the file nor its folder may be a link, because whoever can put one there could choose any file; and
// what somebody else has put there they could read.
std::FILE* OpenTraceFile(const char* path) {
  const std::string_view whole(path);
  const std::size_t slash = whole.rfind('/');
  if (slash == std::string_view::npos) return nullptr;
  Path above("%s", path);
  above.Cut(slash);
  const int folder = open(above.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (folder < 0) return nullptr;
  constexpr int kHow = O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const int descriptor = openat(folder, path + slash + 1, kHow, kOwnerAlone);
  close(folder);
  if (descriptor < 0 || IsOursAlone(descriptor)) return RegularFileOf(descriptor, "a+");
  close(descriptor);
  return nullptr;
}

bool IsRegularFile(std::FILE* file) { return file != nullptr && HasFormat(fileno(file), S_IFREG); }

}  // namespace tavlyn::platform
