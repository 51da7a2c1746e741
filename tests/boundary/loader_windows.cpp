#include <windows.h>

#include "tests/boundary/library.h"
#include "tests/boundary/loader.h"

namespace tavlyn::boundary {

void* LoadByName(const char* name) { return LoadLibraryA(name); }

void Unload(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }

void* FindSymbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

// The library looks only in the system folder; a name that is already loaded is not searched for at all.
void* LoadStandin() {
  void* setup = LoadByName("setupapi.dll");
  void* hid = LoadByName("hid.dll");
  const bool both = setup != nullptr && FindSymbol(setup, "tavlyn_standin_marker") != nullptr;
  return both ? hid : nullptr;
}

void SetVariable(const char* name, const char* value) { SetEnvironmentVariableA(name, value); }

std::string ChooseTraceFile() { return "C:\\TavlynLogs\\TavlynApiSdk.log"; }

}  // namespace tavlyn::boundary
