// Calls into foreign code: class installers in the system, functions of the application.
#pragma once

namespace tavlyn::platform {

// Calls work with its argument. False when it was left by an exception of any kind that the system knows: on
// Windows also access violations, and C++ exceptions of every compiler. What the work itself holds is then
// not destroyed, so it must hold nothing.
bool Contained(void (*work)(void*), void* argument);

template <typename Work>
bool Contained(Work work) {
  return Contained([](void* it) { (*static_cast<Work*>(it))(); }, &work);
}

}  // namespace tavlyn::platform
