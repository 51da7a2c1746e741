// Calls into code of others: what class installers add to the system, what the application hands over.
#pragma once

namespace tavlyn::platform {

// Does the work with its argument. False: it did not come to its end, because of an exception of any kind
// that the system knows; on Windows an access violation is one, and C++ exceptions of every compiler are.
// What the work itself still holds then is not destroyed, so it holds nothing.
bool Contained(void (*work)(void*), void* argument);

template <typename Work>
bool Contained(Work work) {
  return Contained([](void* it) { (*static_cast<Work*>(it))(); }, &work);
}

}  // namespace tavlyn::platform
