// What the compiler's runtime needs from a thread library, built on the system's own locks, which need no
// closing. The compiler's thread library takes a thread-local slot, memory and handles that no unload
// returns: a process could not load and unload this library a thousand times. If the runtime ever needs a
// function that is missing here, the compiler's library is linked in beside this one and the link fails.
#include "platform/windows/threads.h"

#include <pthread.h>

#include <cerrno>
#include <cstdint>

#include "platform/windows/system.h"

namespace __gnu_cxx {
void __freeres();
}  // namespace __gnu_cxx

namespace tavlyn::platform {
namespace {

static_assert(sizeof(pthread_mutex_t) == sizeof(SRWLOCK));
static_assert(sizeof(pthread_cond_t) == sizeof(CONDITION_VARIABLE));

// The initialisers in the runtime's static data are negative numbers, which the system's never are.
template <typename Native>
Native* Begun(std::intptr_t* place) {
  const std::intptr_t before = *place;
  if (before < 0) {
    InterlockedCompareExchangePointer(reinterpret_cast<void**>(place), nullptr,
                                      reinterpret_cast<void*>(before));
  }
  return reinterpret_cast<Native*>(place);
}

enum Once : long { kNot = PTHREAD_ONCE_INIT, kRunning, kDone };

// The runtime has one key, under which each thread keeps its exceptions.
DWORD slot = FLS_OUT_OF_INDEXES;
void (*destroy)(void*) = nullptr;

void WINAPI DestroyValue(void* value) {
  if (value != nullptr) destroy(value);
}

}  // namespace

void FreeThreads() {
  if (slot != FLS_OUT_OF_INDEXES) FlsFree(slot);
  slot = FLS_OUT_OF_INDEXES;
  __gnu_cxx::__freeres();
}

}  // namespace tavlyn::platform

using tavlyn::platform::Begun;

extern "C" {

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* /*attributes*/) {
  *mutex = 0;
  return 0;
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
  AcquireSRWLockExclusive(Begun<SRWLOCK>(mutex));
  return 0;
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  ReleaseSRWLockExclusive(Begun<SRWLOCK>(mutex));
  return 0;
}

int pthread_mutex_destroy(pthread_mutex_t* /*mutex*/) { return 0; }

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  SleepConditionVariableSRW(Begun<CONDITION_VARIABLE>(condition), Begun<SRWLOCK>(mutex), INFINITE, 0);
  return 0;
}

int pthread_cond_broadcast(pthread_cond_t* condition) {
  WakeAllConditionVariable(Begun<CONDITION_VARIABLE>(condition));
  return 0;
}

int pthread_once(pthread_once_t* once, void (*run)()) {
  using namespace tavlyn::platform;
  if (InterlockedCompareExchange(once, kRunning, kNot) == kNot) {
    run();
    InterlockedExchange(once, kDone);
  }
  while (InterlockedCompareExchange(once, kDone, kDone) != kDone) SwitchToThread();
  return 0;
}

int pthread_key_create(pthread_key_t* key, void (*whenThreadEnds)(void*)) {
  using namespace tavlyn::platform;
  if (slot != FLS_OUT_OF_INDEXES) return EAGAIN;
  destroy = whenThreadEnds;
  slot = FlsAlloc(DestroyValue);
  *key = slot;
  return slot != FLS_OUT_OF_INDEXES ? 0 : EAGAIN;
}

void* pthread_getspecific(pthread_key_t key) { return FlsGetValue(key); }

int pthread_setspecific(pthread_key_t key, const void* value) {
  return FlsSetValue(key, const_cast<void*>(value)) ? 0 : ENOMEM;
}

}  // extern "C"
