#include <fcntl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include "tools/tavlynsim/child.h"
#include "tools/tavlynsim/run.h"

namespace tavlyn::sim {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatienceToEnd{5};
constexpr int kAskedTurnMs = 100;

sigset_t HeldSignals() {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : {SIGCHLD, SIGINT, SIGTERM, SIGHUP}) sigaddset(&held, signal);
  return held;
}

void EmptyInput() {
  const int nothing = open("/dev/null", O_RDONLY);
  if (nothing >= 0) dup2(nothing, STDIN_FILENO);
}

// A failed exec is reported to the parent through the pipe, which a successful exec closes.
[[noreturn]] void Become(const std::vector<std::string>& command, const Variables& variables, bool keepInput,
                         int failure) {
  for (const auto& [name, value] : variables) setenv(name.c_str(), value.c_str(), 1);
  const sigset_t held = HeldSignals();
  sigprocmask(SIG_UNBLOCK, &held, nullptr);
  if (!keepInput) EmptyInput();
  std::vector<char*> words;
  words.reserve(command.size() + 1);
  for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
  words.push_back(nullptr);
  execvp(words[0], words.data());
  const int reason = errno;
  const ssize_t told = write(failure, &reason, sizeof reason);
  _exit(told == sizeof reason ? 0 : 1);
}

}  // namespace

struct Child::System {
  pid_t pid = -1;
  int signals = -1;
  std::optional<Clock::time_point> patience;  // until it is killed, once it was asked to end
};

Child::Child() : system_(std::make_unique<System>()) {}

Child::~Child() {
  if (system_->signals >= 0) close(system_->signals);
}

bool Child::HoldSignals() {
  const sigset_t held = HeldSignals();
  sigprocmask(SIG_BLOCK, &held, nullptr);
  system_->signals = signalfd(-1, &held, SFD_CLOEXEC | SFD_NONBLOCK);
  return system_->signals >= 0;
}

bool Child::Start(const std::vector<std::string>& command, const Variables& variables, bool keepInput,
                  const std::vector<std::string>&) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return false;
  pid_t& pid = system_->pid;
  pid = fork();
  if (pid == 0) Become(command, variables, keepInput, ends[1]);
  close(ends[1]);
  int reason = pid < 0 ? errno : 0;
  const bool failed = pid < 0 || read(ends[0], &reason, sizeof reason) == sizeof reason;
  close(ends[0]);
  if (failed && pid > 0) waitpid(pid, nullptr, 0);
  errno = reason;
  return !failed;
}

void Child::AddTo(std::vector<pollfd>& polled) const { polled.push_back({system_->signals, POLLIN, 0}); }

int Child::TurnMs() const { return system_->patience ? kAskedTurnMs : -1; }

std::optional<int> Child::TakeSignals() {
  signalfd_siginfo signal;
  const pid_t pid = system_->pid;
  while (read(system_->signals, &signal, sizeof signal) == sizeof signal) {
    // Signals from the terminal reach the command directly.
    const bool byTerminal = signal.ssi_code == SI_KERNEL;
    if (pid < 0 && signal.ssi_signo != SIGCHLD) return kSignalled + static_cast<int>(signal.ssi_signo);
    if (signal.ssi_signo != SIGCHLD && !byTerminal) kill(pid, static_cast<int>(signal.ssi_signo));
  }
  if (pid > 0 && system_->patience && Clock::now() >= *system_->patience) kill(pid, SIGKILL);
  int status = 0;
  if (pid < 0 || waitpid(pid, &status, WNOHANG) != pid) return std::nullopt;
  return WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
}

void Child::AskToEnd() {
  if (system_->pid < 0 || system_->patience) return;
  kill(system_->pid, SIGTERM);
  system_->patience = Clock::now() + kPatienceToEnd;
}

bool Child::IsEndAsked(int status) {
  return status == kSignalled + SIGTERM || status == kSignalled + SIGKILL;
}

}  // namespace tavlyn::sim
