// A file in the user's own folder for temporary files. A byte far after its text is locked, so that the
// others can read who has it.
#include <windows.h>

#include <array>

#include "tools/tavlynctl/device_lock.h"

namespace tavlyn::ctl {
namespace {

constexpr DWORD kLockedByte = 0x40000000;
constexpr std::intptr_t kNoFile = -1;

HANDLE LockHandle(std::intptr_t file) { return reinterpret_cast<HANDLE>(file); }

std::string HolderIn(HANDLE file) {
  std::array<char, 100> text{};
  DWORD count = 0;
  ReadFile(file, text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
  return {text.data(), count};
}

void WriteHolder(HANDLE file, const std::string& text) {
  DWORD count = 0;
  SetEndOfFile(file);
  WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
}

}  // namespace

bool DeviceLock::Try(const std::string& holder) {
  std::array<char, MAX_PATH + 1> folder{};
  if (GetTempPathA(static_cast<DWORD>(folder.size()), folder.data()) == 0) return true;
  fileName_ = folder.data() + LockFileName(path_);
  HANDLE file =
      CreateFileA(fileName_.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_TEMPORARY, nullptr);
  if (file == INVALID_HANDLE_VALUE) return true;
  OVERLAPPED place{};
  place.Offset = kLockedByte;
  if (LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) == 0) {
    holder_ = HolderIn(file);
    CloseHandle(file);
    return false;
  }
  WriteHolder(file, holder + " (process " + std::to_string(GetCurrentProcessId()) + ")");
  file_ = reinterpret_cast<std::intptr_t>(file);
  return true;
}

// The file stays if somebody else has just opened it.
void DeviceLock::Release() {
  if (file_ == kNoFile) return;
  CloseHandle(LockHandle(file_));
  DeleteFileA(fileName_.c_str());
  file_ = kNoFile;
}

DeviceLock::~DeviceLock() { Release(); }

}  // namespace tavlyn::ctl
