#include "platform/contained.h"

#include <cxxabi.h>

namespace tavlyn::platform {

bool Contained(void (*work)(void*), void* argument) try {
  work(argument);
  return true;
} catch (const abi::__forced_unwind&) {
  throw;  // the thread has been cancelled, which cannot be stopped
} catch (...) {
  return false;
}

}  // namespace tavlyn::platform
