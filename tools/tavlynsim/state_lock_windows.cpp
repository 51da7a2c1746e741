#include <windows.h>

#include "tools/tavlynsim/state_lock.h"

namespace tavlyn::sim {

StateLock::~StateLock() {
  if (file_ != -1) CloseHandle(reinterpret_cast<HANDLE>(file_));
}

bool StateLock::Take(const std::string& path, std::string& problem) {
  HANDLE file = CreateFileA((path + ".lock").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    problem =
        path + (GetLastError() == ERROR_SHARING_VIOLATION ? ": another tavlynsim keeps its devices there"
                                                          : ".lock: cannot be made");
    return false;
  }
  file_ = reinterpret_cast<std::intptr_t>(file);
  return true;
}

}  // namespace tavlyn::sim
