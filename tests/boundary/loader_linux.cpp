#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

#include "tests/boundary/library.h"
#include "tests/boundary/loader.h"
#include "tests/boundary/scratch_folder.h"

namespace tavlyn::boundary {

void* LoadByName(const char* name) { return dlopen(name, RTLD_NOW | RTLD_LOCAL); }

void Unload(void* library) { dlclose(library); }

void* FindSymbol(void* library, const char* name) { return dlsym(library, name); }

void* LoadStandin() { return LoadByName("libhidapi-hidraw.so.0"); }

void SetVariable(const char* name, const char* value) {
  if (value == nullptr) {
    unsetenv(name);
  } else {
    setenv(name, value, 1);
  }
}

std::string ChooseTraceFile() {
  static const ScratchFolder own;
  SetVariable("XDG_STATE_HOME", own.Path().c_str());
  return own.Path() / "TavlynLogs/TavlynApiSdk.log";
}

}  // namespace tavlyn::boundary
