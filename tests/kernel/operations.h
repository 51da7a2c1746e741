// What a program does with a device, to be disturbed at chosen exchanges.
#pragma once

#include <vector>

#include "tests/kernel/bus.h"
#include "tests/kernel/families.h"
#include "tests/kernel/library.h"

namespace tavlyn::kernel {

struct Operation {
  const char* what;
  bool begins;  // needs a device that is not connected yet
  // Whether everything was as it should be.
  bool (*run)(const Library& library, const Family& family);
};

// A connect, a reading, a configuration read, a configuration write.
const std::vector<Operation>& Operations();

// The state in which the operation begins, with a device whose exchanges count from here. False if that could
// not be reached.
bool Prepare(const Library& library, Bus& bus, const Family& family, const Operation& operation,
             sim::Model& model);

// A few of so many exchanges, spread evenly with the first and the last.
std::vector<int> Places(int exchanges);

}  // namespace tavlyn::kernel
