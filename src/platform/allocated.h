// Memory for objects that are created by new (std::nothrow). The runtime's own version throws and catches
// internally, which takes memory too: a program that has none left is then terminated.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

namespace tavlyn::platform {

struct Allocated {
  static void* operator new(std::size_t size, const std::nothrow_t& /*quiet*/) noexcept {
    return std::malloc(size);
  }
  // NOLINTNEXTLINE(misc-new-delete-overloads): the other forms of new are missing on purpose
  static void operator delete(void* object) noexcept { std::free(object); }
  static void operator delete(void* object, const std::nothrow_t& /*quiet*/) noexcept { std::free(object); }
};

}  // namespace tavlyn::platform
