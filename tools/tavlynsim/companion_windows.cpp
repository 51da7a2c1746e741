#include "tools/tavlynsim/companion.h"

// windows.h has to come after winsock2.h, which companion.h includes.
#include <windows.h>

namespace tavlyn::sim {

Companion::~Companion() = default;

// Refused by the command line: there is no parent on Windows, only a number that may be another process's.
void Companion::BeParent() { missed_ = true; }

void Companion::Be(int process) { process_ = process; }

void Companion::AddTo(std::vector<pollfd>&) const {}

int Companion::TurnMs() const { return -1; }

bool Companion::HasEnded() const {
  if (process_ == 0 || missed_) return missed_;
  HANDLE other = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process_));
  if (other == nullptr) return true;
  const bool ended = WaitForSingleObject(other, 0) == WAIT_OBJECT_0;
  CloseHandle(other);
  return ended;
}

}  // namespace tavlyn::sim
