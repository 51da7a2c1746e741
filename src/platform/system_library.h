// Libraries of the system, bound by name at run time: this library loads even on a system that lacks them.
#pragma once

namespace tavlyn::platform {

// Null when it cannot be loaded. On Windows only the system's own copy is loaded: a file of that name beside
// the application is ignored, and so is one of a library that it needs itself.
void* LoadSystemLibrary(const char* file);
void FreeSystemLibrary(void* library);

// The address of a name in a library; null when there is no such name.
void* AddressIn(void* library, const char* name);

// False, and a null function, when the name is missing.
template <typename Function>
bool Bind(void* library, const char* name, Function*& function) {
  function = reinterpret_cast<Function*>(AddressIn(library, name));
  return function != nullptr;
}

}  // namespace tavlyn::platform
