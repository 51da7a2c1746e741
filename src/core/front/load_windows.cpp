// The moments of load and unload on Windows.
#include "core/front/load.h"
#include "platform/parts.h"
#include "platform/windows/system.h"
#include "platform/windows/threads.h"

// Of a process that ends the system takes everything back. Nothing is closed here then: the other threads
// were stopped wherever they stood, so that a lock which one of them had is never released, and other
// libraries may have gone before this one.
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
