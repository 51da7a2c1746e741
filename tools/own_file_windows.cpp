#include <windows.h>

// It needs windows.h, which it does not include.
#include <sddl.h>

#include <cstdio>
#include <memory>
#include <random>

#include "tools/own_file.h"

namespace tavlyn {
namespace {

std::error_code LastError() { return {static_cast<int>(GetLastError()), std::system_category()}; }

struct CloseIt {
  void operator()(void* handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseIt>;

Handle Opened(const std::string& path, DWORD how, SECURITY_ATTRIBUTES* rights) {
  HANDLE handle = CreateFileA(path.c_str(), GENERIC_WRITE, 0, rights, how, FILE_ATTRIBUTE_NORMAL, nullptr);
  return Handle(handle != INVALID_HANDLE_VALUE ? handle : nullptr);
}

struct FreeIt {
  void operator()(void* memory) const { LocalFree(memory); }
};

}  // namespace

std::error_code TestWritable(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0) return {};
  return {ERROR_ACCESS_DENIED, std::system_category()};
}

std::error_code CreateOwnFile(std::string& path) {
  std::random_device random;
  char unique[17];
  std::snprintf(unique, sizeof unique, "%08X%08X", random(), random());
  path += unique;
  // For the owner, the system and its administrators; nothing is inherited from the folder.
  PSECURITY_DESCRIPTOR rights = nullptr;
  if (ConvertStringSecurityDescriptorToSecurityDescriptorA("D:P(A;;FA;;;OW)(A;;FA;;;SY)(A;;FA;;;BA)",
                                                           SDDL_REVISION_1, &rights, nullptr) == 0) {
    return LastError();
  }
  const std::unique_ptr<void, FreeIt> freed(rights);
  SECURITY_ATTRIBUTES attributes{sizeof attributes, rights, FALSE};
  return Opened(path, CREATE_NEW, &attributes) != nullptr ? std::error_code() : LastError();
}

void RemoveOwnFile(const std::string& path) { DeleteFileA(path.c_str()); }

std::error_code MoveOnto(const std::string& path, const std::string& place) {
  Handle file = Opened(path, OPEN_EXISTING, nullptr);
  if (file == nullptr || FlushFileBuffers(file.get()) == 0) return LastError();
  file.reset();
  // A file that is replaced passes on its permissions.
  const BOOL moved = GetFileAttributesA(place.c_str()) != INVALID_FILE_ATTRIBUTES
                         ? ReplaceFileA(place.c_str(), path.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                                        nullptr, nullptr)
                         : MoveFileExA(path.c_str(), place.c_str(), MOVEFILE_WRITE_THROUGH);
  return moved != 0 ? std::error_code() : LastError();
}

}  // namespace tavlyn
