#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "tools/tavlynctl/process.h"

namespace tavlyn::ctl {
namespace {

bool missingStreams[STDERR_FILENO + 1];

// The lowest free number is the closed one's, because those below it are in use.
void FillClosedOnes() {
  for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
    if (fcntl(file, F_GETFD) < 0) missingStreams[file] = open("/dev/null", O_RDWR) == file;
  }
}

// The libraries that are loaded with the program may open files in their own first steps, which come later.
[[gnu::used, gnu::section(".preinit_array")]] void (*const fillFirst)() = FillClosedOnes;

constexpr int kStopping[] = {SIGINT, SIGTERM};

volatile std::sig_atomic_t stopped = 0;

constexpr int kEnds[] = {SIGINT, SIGTERM, SIGQUIT, SIGHUP};

termios shown;

// The handler is gone when it runs, so that the signal then ends the program.
void ShowAndEnd(int signal) {
  tcsetattr(STDIN_FILENO, TCSANOW, &shown);
  raise(signal);
}

}  // namespace

bool OutputIsMissing() { return missingStreams[STDOUT_FILENO]; }

void LetWritesFail() { std::signal(SIGXFSZ, SIG_IGN); }

void LetPipesBreak() { std::signal(SIGPIPE, SIG_IGN); }

void NoteStop() {
  for (const int one : kStopping) {
    std::signal(one, [](int signal) {
      stopped = signal;
      for (const int next : kStopping) std::signal(next, SIG_DFL);
    });
  }
}

bool IsStopped() { return stopped != 0; }

void EndStopped() { std::raise(stopped); }

// The limit alone is not enough if the core pattern is a program, which is given the image all the same.
void ForbidCoreImage() {
  prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
}

SetVariable::SetVariable(const char* name)
    : name_(name != nullptr && std::getenv(name) == nullptr ? name : nullptr) {
  if (name_ != nullptr) setenv(name_, "1", 0);
}

SetVariable::~SetVariable() {
  if (name_ != nullptr) unsetenv(name_);
}

HiddenInput::HiddenInput() : typed_(tcgetattr(STDIN_FILENO, &shown) == 0) {
  if (!typed_) return;
  struct sigaction action {};
  action.sa_handler = ShowAndEnd;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
  for (const int signal : kEnds) sigaction(signal, &action, nullptr);
  termios hidden = shown;
  hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
  // What was typed before is dropped: it has been echoed.
  tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
}

HiddenInput::~HiddenInput() {
  if (!typed_) return;
  tcsetattr(STDIN_FILENO, TCSANOW, &shown);
  for (const int signal : kEnds) std::signal(signal, SIG_DFL);
}

// The file is an argument of the shell's, so that its name may hold anything. Handlers come back as they
// were: one that runs only once must not run again and again after the editor.
bool RunEditor(const std::string& editor, const std::string& path) {
  const std::string line = editor + " \"$1\"";
  struct sigaction interrupt {};
  struct sigaction quit {};
  struct sigaction ignored {};
  ignored.sa_handler = SIG_IGN;
  sigaction(SIGINT, &ignored, &interrupt);
  sigaction(SIGQUIT, &ignored, &quit);
  const pid_t child = fork();
  if (child == 0) {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGQUIT, SIG_DFL);
    execl("/bin/sh", "sh", "-c", line.c_str(), "sh", path.c_str(), nullptr);
    _exit(1);
  }
  int status = -1;
  while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  sigaction(SIGINT, &interrupt, nullptr);
  sigaction(SIGQUIT, &quit, nullptr);
  return status == 0;
}

// What this program ignores would stay ignored.
std::string BecomeOneOfOurs(std::vector<std::string> words) {
  std::error_code none;
  const auto beside = std::filesystem::read_symlink("/proc/self/exe", none).parent_path() / words.front();
  if (std::filesystem::exists(beside, none)) words.front() = beside.string();
  std::vector<char*> arguments(words.size() + 1);  // the last one is null
  for (std::size_t at = 0; at < words.size(); ++at) arguments[at] = words[at].data();
  std::signal(SIGXFSZ, SIG_DFL);
  execvp(arguments.front(), arguments.data());
  return std::strerror(errno);
}

const char* UsualEditor() { return "vi"; }

}  // namespace tavlyn::ctl
