#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/boundary/begun_windows.h"

namespace tavlyn::boundary {

// A file for a program's output.
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

Begun::Begun(const std::string& line) : out_(std::make_unique<Taken>()), err_(std::make_unique<Taken>()) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = CreateFileA("NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                OPEN_EXISTING, 0, nullptr);
  start.hStdOutput = out_->get();
  start.hStdError = err_->get();
  PROCESS_INFORMATION made{};
  std::string words = line;
  const bool runs =
      CreateProcessA(nullptr, words.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made) != 0;
  CloseHandle(start.hStdInput);
  if (!runs) throw std::runtime_error(line + ": cannot be run");
  CloseHandle(made.hThread);
  process_ = made.hProcess;
}

Begun::~Begun() {
  TerminateProcess(process_, 1);
  WaitForSingleObject(process_, INFINITE);
  CloseHandle(process_);
}

bool Begun::Tells(const std::string& text) const {
  constexpr DWORD kTurnMs = 20;
  bool ended = false;
  while (err_->Text().find(text) == std::string::npos) {
    if (ended) return false;
    ended = EndsWithin(kTurnMs);
  }
  return true;
}

bool Begun::EndsWithin(DWORD ms) const { return WaitForSingleObject(process_, ms) == WAIT_OBJECT_0; }

Ended Begun::End() const {
  WaitForSingleObject(process_, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process_, &status);
  return {static_cast<int>(status), out_->Text(), err_->Text()};
}

Ended RunLine(const std::string& line) { return Begun(line).End(); }

}  // namespace tavlyn::boundary
