// The kinds of devices, and how each is used: what its user puts before it, what is then read, and one
// setting that stands for its configuration.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sim/devices/model.h"
#include "tests/kernel/library.h"

namespace tavlyn::kernel {

struct Family {
  const char* who;
  std::uint16_t product;  // what a connect searches for
  bool rests;             // the library waits between a report and its reply
  std::shared_ptr<sim::Model> (*make)();
  // A card, a swipe or a person; the next reading is to find it.
  void (*put)(sim::Model& model);
  bool (*finds)(const Library& library);
  // The setting in the mirror, and where the device has committed it.
  void (*change)(const Library& library, int value);
  int (*mirrored)(const Library& library);
  int (*stored)(const sim::Model& model);
};

// A plain reader, a plus reader with report ID 1, a magnetic-stripe reader, a sonar sensor.
const std::vector<Family>& Families();

// Connects to one device of that kind.
bool Connects(const Library& library, const Family& family);

}  // namespace tavlyn::kernel
