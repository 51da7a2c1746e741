#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <vector>

#include "tools/tavlynsim/background.h"
#include "tools/tavlynsim/run.h"

namespace tavlyn::sim {
namespace {

// Whatever else the caller has left open would stay open as long as the devices are there, such as the pipe
// of a test that waits for its end.
void CloseAllBut(int one, int two, int three) {
  std::vector<int> open;
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", none))
    open.push_back(std::atoi(entry.path().filename().c_str()));
  for (const int descriptor : open) {
    const bool kept = descriptor == one || descriptor == two || descriptor == three;
    if (descriptor > STDERR_FILENO && !kept) close(descriptor);
  }
}

// The old process: how it ends.
int WaitFor(pid_t process, int told) {
  char ready = 0;
  ssize_t count = 0;
  do {
    count = read(told, &ready, 1);
  } while (count < 0 && errno == EINTR);
  if (count == 1) return 0;
  int status = 0;
  if (waitpid(process, &status, 0) != process) return kCannotSimulate;
  return WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

std::optional<int> Background::Begin(int kept, int keptToo) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return Fail(kCannotSimulate, std::strerror(errno));
  const pid_t process = fork();
  if (process < 0) return Fail(kCannotSimulate, std::strerror(errno));
  if (process > 0) {
    close(ends[1]);
    return WaitFor(process, ends[0]);
  }
  setsid();
  told_ = ends[1];
  CloseAllBut(kept, keptToo, told_);
  return std::nullopt;
}

void Background::BeAlone() {
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
  close(nothing);
  TellAt(told_, "\n");
  told_ = -1;
}

std::string WhyNoBackground() { return {}; }

bool IsOpen(int descriptor) { return fcntl(descriptor, F_GETFD) >= 0; }

void TellAt(int descriptor, const std::string& line) {
  const ssize_t told = write(descriptor, line.data(), line.size());
  static_cast<void>(told);  // whoever asked for it has left
  if (descriptor > STDERR_FILENO) close(descriptor);
}

void OutliveReaders() { std::signal(SIGPIPE, SIG_IGN); }

}  // namespace tavlyn::sim
