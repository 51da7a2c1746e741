// Load and unload on Windows.
#include "core/front/load.h"
#include "platform/parts.h"
#include "platform/windows/system.h"
#include "platform/windows/threads.h"

// The system reclaims everything from a process that ends, so nothing is closed then: the other threads were
// stopped wherever they were, a lock that one of them held is never released, and other libraries may be gone
// already.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
  if (reason == DLL_PROCESS_ATTACH) tavlyn::Load();
  if (reason == DLL_PROCESS_DETACH && processEnds != nullptr) tavlyn::WipeKeys();
  if (reason == DLL_PROCESS_DETACH && processEnds == nullptr) {
    tavlyn::Unload();
    tavlyn::platform::CloseLostSockets();
    tavlyn::platform::FreeThreads();
  }
  return TRUE;
}
