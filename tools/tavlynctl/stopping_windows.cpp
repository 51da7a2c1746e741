#include <windows.h>

#include <atomic>

#include "tools/control_windows.h"
#include "tools/tavlynctl/stopping.h"

namespace tavlyn::ctl {
namespace {

std::atomic<bool> noted{false};

BOOL WINAPI TakeStop(DWORD kind) {
  if (noted.exchange(true)) EndAsInterrupted();
  return LetEnd(kind);
}

}  // namespace

void NoteStop() { SetConsoleCtrlHandler(TakeStop, TRUE); }

bool IsStopped() { return noted; }

void EndStopped() { EndAsInterrupted(); }

}  // namespace tavlyn::ctl
