#include "tools/tavlynsim/child.h"

// windows.h has to come after winsock2.h, which child.h includes.
#include <windows.h>

#include <atomic>
#include <cerrno>

#include "tools/control_windows.h"
#include "tools/tavlynsim/preload_windows.h"

namespace tavlyn::sim {
namespace {

constexpr int kInterrupted = 130;  // as shells report Ctrl-C
constexpr int kTurnMs = 20;        // neither a process nor a console can be polled for with sockets
constexpr const char* kMarker = "tavlyn_standin_marker";

constexpr ULONGLONG kSecondMs = 2000;

std::atomic<ULONGLONG> stopAsked{0};  // when

// Ctrl-C reaches the command directly, and tavlynsim ends with it. A second one soon after the first ends
// tavlynsim, whatever the command does; later ones may only be meant to cancel something in the command.
BOOL WINAPI TakeControl(DWORD kind) {
  const ULONGLONG now = GetTickCount64();
  if (now - stopAsked.exchange(now) < kSecondMs) EndAsInterrupted();
  return LetEnd(kind);
}

// Quoted so that the other program's C runtime splits it again.
std::string Quoted(const std::string& word) {
  if (!word.empty() && word.find_first_of(" \t\"") == std::string::npos) return word;
  std::string text = "\"";
  std::size_t backslashes = 0;
  for (const char c : word) {
    if (c == '"') text.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    text += c;
  }
  return text.append(backslashes, '\\') + '"';
}

int ErrnoOf(DWORD error) {
  const bool missing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
  if (missing) return ENOENT;
  return error == ERROR_BAD_EXE_FORMAT ? ENOEXEC : EACCES;
}

HANDLE EmptyInput() {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0,
                     nullptr);
}

// The command must not outlive tavlynsim, however that ends: its devices would be gone.
HANDLE NewJob() {
  HANDLE job = CreateJobObjectA(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

bool PreloadAll(HANDLE process, const std::vector<std::string>& files) {
  if (files.empty()) return true;
  std::vector<Preloaded> libraries;
  for (const std::string& file : files) libraries.push_back({file, kMarker});
  return Preload(process, libraries);
}

}  // namespace

struct Child::System {
  HANDLE process = nullptr;
  HANDLE job = nullptr;
};

Child::Child() : system_(std::make_unique<System>()) {}

Child::~Child() {
  if (system_->process != nullptr) CloseHandle(system_->process);
  if (system_->job != nullptr) CloseHandle(system_->job);
}

bool Child::HoldSignals() { return SetConsoleCtrlHandler(TakeControl, TRUE) != FALSE; }

bool Child::Start(const std::vector<std::string>& command, const Variables& variables, bool keepInput,
                  const std::vector<std::string>& preload) {
  for (const auto& [name, value] : variables) SetEnvironmentVariableA(name.c_str(), value.c_str());
  std::string line;
  for (const std::string& word : command) line += (line.empty() ? "" : " ") + Quoted(word);
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = keepInput ? GetStdHandle(STD_INPUT_HANDLE) : EmptyInput();
  start.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION made{};
  const bool started = CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr,
                                      nullptr, &start, &made) != FALSE;
  const DWORD reason = GetLastError();
  if (!keepInput) CloseHandle(start.hStdInput);
  if (!started) {
    errno = ErrnoOf(reason);
    return false;
  }
  system_->process = made.hProcess;
  system_->job = NewJob();
  AssignProcessToJobObject(system_->job, made.hProcess);
  const bool ready = PreloadAll(made.hProcess, preload);
  if (ready) {
    ResumeThread(made.hThread);
  } else {
    TerminateProcess(made.hProcess, 1);
    errno = ENOEXEC;
  }
  CloseHandle(made.hThread);
  return ready;
}

void Child::AddTo(std::vector<pollfd>&) const {}

int Child::TurnMs() const { return kTurnMs; }

std::optional<int> Child::TakeSignals() {
  if (system_->process == nullptr) return stopAsked != 0 ? std::optional(kInterrupted) : std::nullopt;
  DWORD status = 0;
  if (WaitForSingleObject(system_->process, 0) != WAIT_OBJECT_0) return std::nullopt;
  GetExitCodeProcess(system_->process, &status);
  return static_cast<int>(status);
}

// There is nothing to ask a program with that has no window.
void Child::AskToEnd() {
  if (system_->process != nullptr) TerminateProcess(system_->process, kInterrupted);
}

bool Child::IsEndAsked(int status) { return status == kInterrupted; }

}  // namespace tavlyn::sim
