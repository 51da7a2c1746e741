#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "tools/control_windows.h"
#include "tools/tavlynctl/process.h"

namespace tavlyn::ctl {
namespace {

std::atomic<bool> noted{false};

BOOL WINAPI TakeStop(DWORD kind) {
  if (noted.exchange(true)) EndAsInterrupted();
  return LetEnd(kind);
}

constexpr UINT kFaultStatus = 3;

DWORD shown;

HANDLE Input() { return GetStdHandle(STD_INPUT_HANDLE); }

BOOL WINAPI ShowAndEnd(DWORD) {
  SetConsoleMode(Input(), shown);
  return FALSE;
}

LONG WINAPI EndAtOnce(EXCEPTION_POINTERS*) {
  TerminateProcess(GetCurrentProcess(), kFaultStatus);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

// Handles are not small numbers here: none takes the place of another.
bool OutputIsMissing() { return _fileno(stdout) < 0; }

// There are no such limits here.
void LetWritesFail() {}

// There is no such signal here.
void LetPipesBreak() {}

void NoteStop() { SetConsoleCtrlHandler(TakeStop, TRUE); }

bool IsStopped() { return noted; }

void EndStopped() { EndAsInterrupted(); }

// An unhandled fault makes error reporting write the memory to a file.
void ForbidCoreImage() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  SetUnhandledExceptionFilter(EndAtOnce);
}

SetVariable::SetVariable(const char* name)
    : name_(name != nullptr && GetEnvironmentVariableA(name, nullptr, 0) == 0 ? name : nullptr) {
  if (name_ != nullptr) SetEnvironmentVariableA(name_, "1");
}

SetVariable::~SetVariable() {
  if (name_ != nullptr) SetEnvironmentVariableA(name_, nullptr);
}

HiddenInput::HiddenInput() : typed_(GetConsoleMode(Input(), &shown) != 0) {
  if (!typed_) return;
  SetConsoleCtrlHandler(ShowAndEnd, TRUE);
  SetConsoleMode(Input(), shown & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
}

HiddenInput::~HiddenInput() {
  if (!typed_) return;
  SetConsoleMode(Input(), shown);
  SetConsoleCtrlHandler(ShowAndEnd, FALSE);
}

// The outer quotes are for the shell, which takes off the first and the last.
bool RunEditor(const std::string& editor, const std::string& path) {
  std::fflush(nullptr);
  return std::system(("\"" + editor + " \"" + path + "\"\"").c_str()) == 0;
}

std::string BecomeOneOfOurs(std::vector<std::string> words) {
  std::string typed;
  for (const std::string& word : words) typed += (typed.empty() ? "" : " ") + word;
  return "on Windows type " + typed;
}

const char* UsualEditor() { return "notepad"; }

}  // namespace tavlyn::ctl
