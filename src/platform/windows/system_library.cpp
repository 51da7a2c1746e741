#include "platform/system_library.h"

#include "platform/windows/system.h"

namespace tavlyn::platform {

void* LoadSystemLibrary(const char* file) {
  return LoadLibraryExA(file, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
}

void FreeSystemLibrary(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }

void* AddressIn(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

}  // namespace tavlyn::platform
