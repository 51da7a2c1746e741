// Runs a program and does something when it is about to make its Nth system call, counted over its main
// thread:
//
//   amid N DEED PROGRAM WORDS...
//
// DEED is a line for the shell, in which $pid is the program, which waits until it is done. N is 0 or more
// than the program's calls: nothing is done. Ends as the program does, and writes how many calls it made to
// the file that $AMID_COUNT names.
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr int kSystemCall = SIGTRAP | 0x80;
constexpr int kSignalled = 128;

void Start(char** program) {
  if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(126);
  raise(SIGSTOP);
  execvp(program[0], program);
  _exit(127);
}

void Do(const char* deed, pid_t program) {
  setenv("pid", std::to_string(program).c_str(), 1);
  if (std::system(deed) != 0) std::fprintf(stderr, "amid: the deed failed\n");
}

// A stop for a system call comes before and after it; other stops are the program's signals.
int RunWith(pid_t program, int chosen, const char* deed, int& calls) {
  int status = 0;
  bool inside = false;
  waitpid(program, &status, 0);
  ptrace(PTRACE_SETOPTIONS, program, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL);
  int signal = 0;
  while (ptrace(PTRACE_SYSCALL, program, nullptr, signal) == 0 && waitpid(program, &status, 0) == program &&
         WIFSTOPPED(status)) {
    const int stopped = WSTOPSIG(status);
    signal = stopped == kSystemCall || stopped == SIGTRAP ? 0 : stopped;
    if (stopped != kSystemCall) continue;
    inside = !inside;
    if (inside && ++calls == chosen) Do(deed, program);
  }
  if (WIFSTOPPED(status)) waitpid(program, &status, 0);
  return WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

int main(int count, char** words) {
  if (count < 4) {
    std::fprintf(stderr, "usage: amid N DEED PROGRAM WORDS...\n");
    return 125;
  }
  const pid_t program = fork();
  if (program == 0) Start(words + 3);
  int calls = 0;
  const int ended = RunWith(program, std::atoi(words[1]), words[2], calls);
  if (const char* name = std::getenv("AMID_COUNT"); name != nullptr) {
    if (std::FILE* file = std::fopen(name, "w"); file != nullptr) {
      std::fprintf(file, "%d\n", calls);
      std::fclose(file);
    }
  }
  return ended;
}
