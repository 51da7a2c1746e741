// Libraries of the system, bound by name at run time: this one stays loaded on a system that lacks them.
#pragma once

namespace tavlyn::platform {

// Null when it cannot be loaded. On Windows nothing but the system's own copy will do: a file of that name
// beside the application is not looked at, nor is one for what the library needs itself.
void* LoadSystemLibrary(const char* file);
void FreeSystemLibrary(void* library);

// Where a name stands in a library; null when it has none of that name.
void* AddressIn(void* library, const char* name);

// False, and a null function, when the name is missing.
template <typename Function>
bool Bind(void* library, const char* name, Function*& function) {
  function = reinterpret_cast<Function*>(AddressIn(library, name));
  return function != nullptr;
}

}  // namespace tavlyn::platform
