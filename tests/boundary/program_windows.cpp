#include <windows.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/boundary/program.h"

namespace tavlyn::boundary {
namespace {

// A file that takes what a program writes.
class Taken {
 public:
  Taken() {
    char folder[MAX_PATH];
    char name[MAX_PATH];
    GetTempPathA(sizeof folder, folder);
    if (GetTempFileNameA(folder, "tav", 0, name) == 0) throw std::runtime_error("no temporary file");
    name_ = name;
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    handle_ = CreateFileA(name, GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
  }
  ~Taken() {
    CloseHandle(handle_);
    DeleteFileA(name_.c_str());
  }
  Taken(const Taken&) = delete;
  Taken& operator=(const Taken&) = delete;

  [[nodiscard]] HANDLE get() const { return handle_; }

  [[nodiscard]] std::string Text() const {
    std::ostringstream text;
    text << std::ifstream(name_).rdbuf();
    return text.str();
  }

 private:
  std::string name_;
  HANDLE handle_ = nullptr;
};

}  // namespace

// There is no shell: the line is one program with its words.
Ended RunLine(const std::string& line) {
  const Taken out;
  const Taken err;
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                OPEN_EXISTING, 0, nullptr);
  start.hStdOutput = out.get();
  start.hStdError = err.get();
  PROCESS_INFORMATION made{};
  std::string words = line;
  if (!CreateProcessA(nullptr, words.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made)) {
    throw std::runtime_error(line + ": cannot be run");
  }
  WaitForSingleObject(made.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(made.hProcess, &status);
  for (HANDLE handle : {made.hProcess, made.hThread, start.hStdInput}) CloseHandle(handle);
  return {static_cast<int>(status), out.Text(), err.Text()};
}

}  // namespace tavlyn::boundary
