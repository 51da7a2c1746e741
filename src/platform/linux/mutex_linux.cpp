#include "platform/linux/parts.h"

namespace tavlyn::platform {

void LinuxMutex::Create() {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(&mutex_, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

void LinuxMutex::Lock() { pthread_mutex_lock(&mutex_); }
void LinuxMutex::Unlock() { pthread_mutex_unlock(&mutex_); }
void LinuxMutex::Close() { pthread_mutex_destroy(&mutex_); }

}  // namespace tavlyn::platform
