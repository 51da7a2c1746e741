// The lock that an export holds, and the exceptions that it must not let out.
#pragma once

#include "platform/platform.h"

namespace tavlyn {

// The library's lock, held for the life of the object.
class Locked {
 public:
  Locked() { platform::TheHost().mutex.Lock(); }
  ~Locked() { platform::TheHost().mutex.Unlock(); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
};

// Makes a call whose exceptions must not reach the caller; the fallback takes their place.
template <typename Result, typename Call>
Result Guarded(Result fallback, Call call) try {
  return call();
} catch (...) {
  return fallback;
}

}  // namespace tavlyn
