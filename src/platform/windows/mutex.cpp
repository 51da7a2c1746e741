#include "platform/windows/backend.h"
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

}  // namespace

RecursiveMutex& WindowsMutex() {
  static SystemMutex mutex;
  return mutex;
}

}  // namespace tavlyn::platform
