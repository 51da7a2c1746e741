#include <windows.h>

#include <atomic>

#include "tools/tavlynctl/stopping.h"

namespace tavlyn::ctl {
namespace {

constexpr UINT kEndedByCtrlC = 0xC000013A;  // STATUS_CONTROL_C_EXIT

std::atomic<bool> noted{false};

// Runs on a thread of its own. An ordinary end would wait for what the library is doing.
BOOL WINAPI TakeStop(DWORD /*kind*/) {
  if (noted.exchange(true)) TerminateProcess(GetCurrentProcess(), kEndedByCtrlC);
  return TRUE;
}

}  // namespace

void NoteStop() { SetConsoleCtrlHandler(TakeStop, TRUE); }

bool IsStopped() { return noted; }

}  // namespace tavlyn::ctl
