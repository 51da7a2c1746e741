#include "core/front/load.h"

#include <windows.h>

#include "platform/windows/threads.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) tavlyn::Load();
  if (reason == DLL_PROCESS_DETACH) {
    tavlyn::Unload();
    tavlyn::platform::FreeThreads();
  }
  return TRUE;
}
