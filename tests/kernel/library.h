// The library under test, bound by name as an application might.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "api.h"

namespace tavlyn::kernel {

struct Library {
#define CALL(member, name) decltype(&::name) member;
#include "tests/kernel/calls.inc"
#undef CALL
};

// A failed check if the library does not load or lacks a name. Searches are limited to HID devices: the
// machine's one serial port is its console.
bool LoadLibrary(const char* path, Library& library);

struct CardRead {
  std::uint16_t bits;
  std::vector<std::uint8_t> id;
};

// Asks the active reader for its card, after the pause during which the library would not ask it.
CardRead ReadCard(const Library& library);

}  // namespace tavlyn::kernel
