// Binding a library's functions by name.
#pragma once

#include <dlfcn.h>

namespace tavlyn::kernel {

template <typename Function>
bool Bind(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

}  // namespace tavlyn::kernel
