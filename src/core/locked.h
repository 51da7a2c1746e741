// LibMutex, held for the life of the object.
#pragma once

#include "platform/platform.h"

namespace tavlyn {

class Locked {
 public:
  Locked() { platform::TheHost().mutex.Lock(); }
  ~Locked() { platform::TheHost().mutex.Unlock(); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
};

}  // namespace tavlyn
