#include <windows.h>

#include <array>

#include "tools/tavlynctl/watch/shell_command.h"

namespace tavlyn::ctl {
namespace {

HANDLE HandleOf(long long process) { return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(process)); }

std::string EndText(HANDLE process) {
  DWORD status = 0;
  GetExitCodeProcess(process, &status);
  CloseHandle(process);
  return status == 0 ? "" : "ended with " + std::to_string(status);
}

// The shell of the system's own folder.
std::string ShellPath() {
  std::array<char, MAX_PATH> folder{};
  GetSystemDirectoryA(folder.data(), MAX_PATH);
  return std::string(folder.data()) + "\\cmd.exe";
}

}  // namespace

std::string ShellCommand::Start(const std::string& line, const Variables& variables) {
  for (const auto& [name, value] : variables) SetEnvironmentVariableA(name.c_str(), value.c_str());
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                OPEN_EXISTING, 0, nullptr);
  start.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  const std::string shell = ShellPath();
  // With !NAME! a value comes into the line after the shell has read it: a device's text is no command then.
  std::string words = "cmd.exe /d /v:on /s /c \"" + line + "\"";
  PROCESS_INFORMATION made{};
  const bool started = CreateProcessA(shell.c_str(), words.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                      nullptr, &start, &made) != FALSE;
  const DWORD reason = GetLastError();
  CloseHandle(start.hStdInput);
  if (!started) return "could not be started: error " + std::to_string(reason);
  CloseHandle(made.hThread);
  process_ = reinterpret_cast<std::intptr_t>(made.hProcess);
  return {};
}

std::optional<std::string> ShellCommand::Ended() {
  if (WaitForSingleObject(HandleOf(process_), 0) != WAIT_OBJECT_0) return std::nullopt;
  return Wait();
}

std::string ShellCommand::Wait() {
  const HANDLE process = HandleOf(process_);
  WaitForSingleObject(process, INFINITE);
  process_ = kNone;
  return EndText(process);
}

}  // namespace tavlyn::ctl
