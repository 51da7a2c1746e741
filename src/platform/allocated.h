// Memory for objects that are made by new (std::nothrow). The runtime's own form of it throws and catches
// inside, which takes memory too, and a program without it is then ended.
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
