#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "tests/boundary/library.h"
#include "tests/boundary/loader.h"

namespace tavlyn::boundary {
namespace {

// Of this process.
struct OwnFolder {
  OwnFolder() {
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the trace");
  }
  ~OwnFolder() { std::filesystem::remove_all(name); }
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;

  std::string name = "/tmp/tavlyn-trace-XXXXXX";
};

}  // namespace

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
  static const OwnFolder own;
  SetVariable("XDG_STATE_HOME", own.name.c_str());
  return own.name + "/TavlynLogs/TavlynApiSdk.log";
}

}  // namespace tavlyn::boundary
