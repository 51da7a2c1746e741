// A library that is connected to one simulated reader, for the life of the object.
#pragma once

#include <memory>
#include <utility>

#include "fuzz/connected.h"
#include "sim/devices/reader.h"

namespace tavlyn::fuzz {

class PluggedReader {
 public:
  explicit PluggedReader(std::shared_ptr<sim::Reader> plugged)
      : reader(std::move(plugged)), connected_(1, reader) {
    Require(connected_.read);
  }

  // The number of feature reports so far.
  [[nodiscard]] int Exchanges() const { return reader->faults.Exchanges(); }

  std::shared_ptr<sim::Reader> reader;

 private:
  Connected connected_;
};

}  // namespace tavlyn::fuzz
