#include "platform/handle_table.h"
#include "platform/parts.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

class SystemMutex final : public RecursiveMutex {
 public:
  void Create() override { mutex_ = CreateMutexA(nullptr, FALSE, nullptr); }
  void Lock() override { WaitForSingleObject(mutex_, INFINITE); }
  void Unlock() override { ReleaseMutex(mutex_); }

  void Close() override {
    CloseHandle(mutex_);
    mutex_ = nullptr;
  }

 private:
  HANDLE mutex_ = nullptr;
};

constinit NeverDestroyed<SystemMutex> mutexPart;

constinit SRWLOCK tables = SRWLOCK_INIT;

}  // namespace

RecursiveMutex& TheMutex() { return mutexPart; }

void LockTables() { AcquireSRWLockExclusive(&tables); }
void UnlockTables() { ReleaseSRWLockExclusive(&tables); }

}  // namespace tavlyn::platform
