#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include "tools/tavlynctl/watch/shell_command.h"

namespace tavlyn::ctl {
namespace {

std::string EndText(int status) {
  if (WIFSIGNALED(status)) return "was ended by signal " + std::to_string(WTERMSIG(status));
  return WEXITSTATUS(status) == 0 ? "" : "ended with " + std::to_string(WEXITSTATUS(status));
}

// The program's own, but for the ones given.
std::vector<std::string> Environment(const ShellCommand::Variables& variables) {
  std::vector<std::string> all;
  for (const auto& [name, value] : variables) all.emplace_back(name).append("=").append(value);
  for (char** own = environ; *own != nullptr; ++own) {
    bool isGiven = false;
    for (const auto& [name, value] : variables)
      isGiven = isGiven || std::strncmp(*own, (name + "=").c_str(), name.size() + 1) == 0;
    if (!isGiven) all.emplace_back(*own);
  }
  return all;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> all;
  all.reserve(texts.size() + 1);
  for (std::string& text : texts) all.push_back(text.data());
  all.push_back(nullptr);
  return all;
}

// The signals that this program ignores are not ignored by the command.
int Spawn(pid_t& process, const std::vector<char*>& words, const std::vector<char*>& environment) {
  posix_spawn_file_actions_t files;
  posix_spawnattr_t attributes;
  sigset_t usual;
  sigemptyset(&usual);
  sigaddset(&usual, SIGPIPE);
  sigaddset(&usual, SIGXFSZ);
  posix_spawn_file_actions_init(&files);
  posix_spawnattr_init(&attributes);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawnattr_setsigdefault(&attributes, &usual);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  const int error = posix_spawn(&process, "/bin/sh", &files, &attributes, words.data(), environment.data());
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  return error;
}

}  // namespace

std::string ShellCommand::Start(const std::string& line, const Variables& variables) {
  std::vector<std::string> words = {"sh", "-c", line};
  std::vector<std::string> environment = Environment(variables);
  pid_t process = 0;
  const int error = Spawn(process, Pointers(words), Pointers(environment));
  if (error != 0) return std::string("could not be started: ") + std::strerror(error);
  process_ = process;
  return {};
}

std::optional<std::string> ShellCommand::Ended() {
  int status = 0;
  if (waitpid(static_cast<pid_t>(process_), &status, WNOHANG) == 0) return std::nullopt;
  process_ = kNone;
  return EndText(status);
}

std::string ShellCommand::Wait() {
  int status = 0;
  waitpid(static_cast<pid_t>(process_), &status, 0);
  process_ = kNone;
  return EndText(status);
}

}  // namespace tavlyn::ctl
