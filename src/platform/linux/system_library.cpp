#include "platform/system_library.h"

#include <dlfcn.h>

namespace tavlyn::platform {

void* LoadSystemLibrary(const char* file) { return dlopen(file, RTLD_NOW | RTLD_LOCAL); }
void FreeSystemLibrary(void* library) { dlclose(library); }
void* AddressIn(void* library, const char* name) { return dlsym(library, name); }

}  // namespace tavlyn::platform
