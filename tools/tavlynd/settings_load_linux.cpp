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

constexpr std::size_t kLargestFile = 4 << 20;

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
    if (count > 0 && text.size() > kLargestFile) problem = "is larger than 4 MiB";
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

struct NamedFile {
  const char* name;
  std::string Settings::*member;
  bool isSecret;
};

constexpr NamedFile kPasswordFile{"password-file", &Settings::passwordFile, true};
constexpr NamedFile kTlsFiles[] = {
    {"ca", &Settings::ca, false},
    {"certificate", &Settings::certificate, false},
    {"certificate-key", &Settings::certificateKey, true},
};

// Its first line, if it can be used.
std::string FirstLineOf(const NamedFile& named, ReadSettings& read) {
  const std::string& path = read.settings.*named.member;
  if (path.empty()) return {};
  const File file = Open(path);
  std::string problem =
      file.problem.empty() && named.isSecret && file.isOpenToOthers ? CloseIt(path) : file.problem;
  std::string line = file.text.substr(0, file.text.find_first_of("\r\n"));
  if (problem.empty() && line.empty()) problem = "its first line is empty";
  if (problem.empty()) return line;
  read.mistakes.push_back({0, std::string(named.name) + " " + Printable(path) + ": " + problem});
  return {};
}

}  // namespace

ReadSettings LoadSettings(const std::string& path) {
  const File file = Open(path);
  if (!file.problem.empty()) {
    return {{}, {{0, file.problem + "; /usr/share/tavlynapi has an example of such a file"}}};
  }
  ReadSettings read = ParseSettings(file.text);
  const bool isSecret = HasSecret(read.settings);
  if (read.settings.password.empty()) read.settings.password = FirstLineOf(kPasswordFile, read);
  for (const NamedFile& one : kTlsFiles) FirstLineOf(one, read);
  if (file.isOpenToOthers && isSecret) {
    read.mistakes.push_back({0, "it has a secret, and " + CloseIt(path)});
  }
  return read;
}

}  // namespace tavlyn::agent
