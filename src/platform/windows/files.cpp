#include "platform/files.h"

#include <io.h>

#include "platform/windows/system.h"

namespace tavlyn::platform {

// On Windows a folder does not open, and a new file inherits its permissions from its folder.
std::FILE* OpenFile(const char* path, const char* mode) {
  return path != nullptr ? std::fopen(path, mode) : nullptr;
}

std::FILE* OpenPrivateFile(const char* path) { return OpenFile(path, "w"); }

std::FILE* OpenFoundFile(const char* path) {
  std::FILE* file = OpenFile(path, "r");
  if (file == nullptr || IsRegularFile(file)) return file;
  std::fclose(file);
  return nullptr;
}

std::FILE* OpenTraceFile(const char* path) { return OpenFile(path, "a+"); }

bool IsRegularFile(std::FILE* file) {
  if (file == nullptr) return false;
  return GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)))) == FILE_TYPE_DISK;
}

}  // namespace tavlyn::platform
