#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "tools/tavlynd/worker_process.h"

namespace tavlyn::agent {
namespace {

constexpr std::size_t kReceivedAtOnce = 65536;
constexpr int kKilledTries = 100;
constexpr useconds_t kBetweenTries = 10'000;  // us
constexpr const char* kThisProgram = "/proc/self/exe";

// What the new process gets; freed with it.
struct Surroundings {
  posix_spawn_file_actions_t files{};
  posix_spawnattr_t attributes{};

  Surroundings() {
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
  }
  ~Surroundings() {
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
  }
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

  void GiveSocket(int socket) {
    posix_spawn_file_actions_adddup2(&files, socket, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, socket, STDOUT_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
  }

  // What this process does with signals is its own matter.
  void ForgetSignals() {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
};

bool IsForLater() { return errno == EAGAIN || errno == EINTR; }

}  // namespace

// One that is stuck in the kernel is left to it.
WorkerProcess::~WorkerProcess() {
  std::string how;
  Kill();
  for (int tries = 0; tries < kKilledTries && !HasEnded(how); ++tries) usleep(kBetweenTries);
}

std::string WorkerProcess::Start(const std::string& program, const std::vector<std::string>& words) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return std::strerror(errno);
  Surroundings given;
  given.GiveSocket(ends[1]);
  given.ForgetSignals();
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const char* file = program.empty() ? kThisProgram : program.c_str();
  const int problem =
      posix_spawn(&process_, file, &given.files, &given.attributes, arguments.data(), environ);
  close(ends[1]);
  if (problem != 0) {
    close(ends[0]);
    process_ = 0;
    return std::strerror(problem);
  }
  socket_ = ends[0];
  return {};
}

bool WorkerProcess::Receive(std::string& bytes) {
  std::array<char, kReceivedAtOnce> buffer;
  const ssize_t count = recv(socket_, buffer.data(), buffer.size(), MSG_DONTWAIT);
  if (count <= 0) return count < 0 && IsForLater();
  bytes.assign(buffer.data(), static_cast<std::size_t>(count));
  return true;
}

bool WorkerProcess::Send(std::string& bytes) {
  const ssize_t count = send(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
  if (count < 0) return IsForLater();
  bytes.erase(0, static_cast<std::size_t>(count));
  return true;
}

void WorkerProcess::Close() {
  if (socket_ >= 0) close(socket_);
  socket_ = -1;
}

void WorkerProcess::Kill() {
  if (process_ != 0) kill(process_, SIGKILL);
  Close();
}

bool WorkerProcess::HasEnded(std::string& how) {
  int status = 0;
  if (process_ == 0) return true;
  if (waitpid(process_, &status, WNOHANG) == 0) return false;
  how = WIFSIGNALED(status) ? std::string("was ended by signal ") + strsignal(WTERMSIG(status))
                            : "ended with status " + std::to_string(WEXITSTATUS(status));
  process_ = 0;
  return true;
}

}  // namespace tavlyn::agent
