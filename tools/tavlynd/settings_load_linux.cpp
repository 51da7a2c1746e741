#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include "tools/printable.h"
#include "tools/tavlynd/keys.h"
#include "tools/tavlynd/settings_file.h"

namespace tavlyn::agent {
namespace {

constexpr std::size_t kLargestFile = 256 * 1024;

struct File {
  std::string text;
  bool isOpenToOthers = false;
  std::string problem;
};

std::string TextOf(int file, std::string& problem) {
  std::string text;
  char piece[4096];
  for (ssize_t count = 0; (count = read(file, piece, sizeof piece)) != 0;) {
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) problem = std::strerror(errno);
    if (count > 0) text.append(piece, static_cast<std::size_t>(count));
    if (count > 0 && text.size() > kLargestFile) problem = "is larger than 256 KiB";
    if (!problem.empty()) return {};
  }
  return text;
}

// What is asked of the mode is asked of the file that is read.
File Open(const std::string& path) {
  File file;
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0) {
    file.problem = std::strerror(errno);
    return file;
  }
  struct stat about {};
  if (fstat(descriptor, &about) != 0 || !S_ISREG(about.st_mode)) {
    file.problem = "is not a file";
  } else {
    file.isOpenToOthers = (about.st_mode & (S_IROTH | S_IWOTH)) != 0;
    file.text = TextOf(descriptor, file.problem);
  }
  close(descriptor);
  return file;
}

std::string CloseIt(const std::string& path) { return "others may read it; chmod o-rwx " + Printable(path); }

bool HasSecret(const Settings& settings) {
  return std::ranges::any_of(Keys(), [&](const Key& key) {
    const auto* member = std::get_if<std::string Settings::*>(&key.member);
    return key.secret && member != nullptr && !(settings.**member).empty();
  });
}

void ReadPassword(ReadSettings& read) {
  const std::string& path = read.settings.passwordFile;
  const File file = Open(path);
  std::string problem = file.problem.empty() && file.isOpenToOthers ? CloseIt(path) : file.problem;
  read.settings.password = file.text.substr(0, file.text.find_first_of("\r\n"));
  if (problem.empty() && read.settings.password.empty()) problem = "its first line is empty";
  if (!problem.empty()) read.mistakes.push_back({0, "password-file " + Printable(path) + ": " + problem});
}

}  // namespace

ReadSettings LoadSettings(const std::string& path) {
  const File file = Open(path);
  if (!file.problem.empty()) return {{}, {{0, file.problem}}};
  ReadSettings read = ParseSettings(file.text);
  const bool isSecret = HasSecret(read.settings);
  if (!read.settings.passwordFile.empty() && read.settings.password.empty()) ReadPassword(read);
  if (file.isOpenToOthers && isSecret) {
    read.mistakes.push_back({0, "it has a secret, and " + CloseIt(path)});
  }
  return read;
}

}  // namespace tavlyn::agent
