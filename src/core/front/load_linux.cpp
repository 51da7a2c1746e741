// Load and unload on Linux.
#include "core/front/load.h"
#include "platform/parts.h"

#ifdef TAVLYN_STATIC_RUNTIME
namespace __gnu_cxx {
// NOLINTNEXTLINE(bugprone-reserved-identifier): the runtime's own name
__attribute__((weak)) void __freeres();
}  // namespace __gnu_cxx
#endif

namespace tavlyn {
namespace {

__attribute__((constructor)) void Attach() { Load(); }
__attribute__((destructor)) void Detach() {
  Unload();
  platform::CloseLostSockets();
}

#ifdef TAVLYN_STATIC_RUNTIME
// A statically linked C++ runtime keeps memory for exceptions that no unload would release. This is the last
// of all steps of an unload.
__attribute__((destructor(101))) void FreeRuntime() {
  if (__gnu_cxx::__freeres != nullptr) __gnu_cxx::__freeres();
}
#endif

}  // namespace
}  // namespace tavlyn
