// What handlers of Ctrl-C, Ctrl-Break and a closed console have in common. They run on threads of their own.
#pragma once

#include <windows.h>

namespace tavlyn {

// At once: a normal exit would wait for what the library is doing.
inline void EndAsInterrupted() {
  constexpr UINT kEndedByCtrlC = 0xC000013A;  // STATUS_CONTROL_C_EXIT
  TerminateProcess(GetCurrentProcess(), kEndedByCtrlC);
}

// The handler's result if the program ends by itself. When a console is closed or a session ends, the system
// ends the program as soon as its handler returns, and in any case after some seconds.
inline BOOL LetEnd(DWORD kind) {
  if (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

}  // namespace tavlyn
