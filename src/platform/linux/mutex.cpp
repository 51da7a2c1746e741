#include <pthread.h>

#include "platform/handle_table.h"
#include "platform/parts.h"

namespace tavlyn::platform {
namespace {

class SystemMutex final : public RecursiveMutex {
 public:
  void Create() override {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&mutex_, &attributes);
    pthread_mutexattr_destroy(&attributes);
  }

  void Lock() override { pthread_mutex_lock(&mutex_); }
  void Unlock() override { pthread_mutex_unlock(&mutex_); }
  void Close() override { pthread_mutex_destroy(&mutex_); }

 private:
  pthread_mutex_t mutex_ = PTHREAD_MUTEX_INITIALIZER;  // becomes recursive when it is created
};

constinit NeverDestroyed<SystemMutex> mutexPart;

constinit pthread_mutex_t tables = PTHREAD_MUTEX_INITIALIZER;

}  // namespace

RecursiveMutex& TheMutex() { return mutexPart; }

void LockTables() { pthread_mutex_lock(&tables); }
void UnlockTables() { pthread_mutex_unlock(&tables); }

}  // namespace tavlyn::platform
