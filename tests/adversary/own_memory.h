// Searches the memory of this process, the rest of its stack included.
#pragma once

#include <map>
#include <span>
#include <string>
#include <utility>

#include "tests/adversary/marker.h"

namespace tavlyn::adversary {

// A sanitizer keeps memory that was given back, and guards it against a search.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kMayBeSearched = false;
#else
inline constexpr bool kMayBeSearched = true;
#endif

// Where pieces of a marker stand, by what the memory belongs to and how many bytes stand there.
using Places = std::map<std::pair<std::string, std::size_t>, int>;

// Runs a deed on a stack of its own.
void RunDeed(void* (*run)(void*), void* argument);

// Pieces of four bytes and more, as they are or as hexadecimal digits. The caller's own copy is left out.
Places Find(Marker marker, std::span<const std::uint8_t> callers);

}  // namespace tavlyn::adversary
