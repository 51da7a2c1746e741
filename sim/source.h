// Where a stand-in for a system library gets its devices from.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"
#include "sim/line_place.h"
#include "sim/paced_line.h"

namespace tavlyn::sim {

// Identifies an interface for as long as its source lives; never reused for another one. The low half is the
// interface's number in the rack.
using Key = std::uint32_t;

constexpr std::uint16_t NumberIn(Key key) { return static_cast<std::uint16_t>(key & 0xFFFF); }

struct Listed {
  Key key = 0;
  HidIdentity identity;
};

// A device on a byte stream. The low half of its key is the device's number.
struct ListedLine {
  Key key = 0;
  LinePlace place;
  LineManner manner;
};

enum class Outcome : std::uint8_t {
  kDone,
  kRefused,
  kNothing,  // no input report is queued, or no bytes are waiting
  kGone,     // the interface or line is not there any more
};

// Members may be called from any thread. Reports have their report ID in byte 0.
class Source {
 public:
  virtual ~Source() = default;
  // What is present now, in the order of plugging.
  virtual std::vector<Listed> List() = 0;
  virtual Outcome SetFeature(Key key, std::span<const std::uint8_t> report) = 0;
  virtual Outcome GetFeature(Key key, std::span<std::uint8_t> report) = 0;
  // Takes the oldest queued input report.
  virtual Outcome TakeInput(Key key, std::vector<std::uint8_t>& report) = 0;

  // The same for lines: each does what the device's own member does.
  virtual std::vector<ListedLine> Lines() = 0;
  virtual Outcome SendBytes(Key line, std::span<const std::uint8_t> bytes) = 0;
  // Shrinks bytes to what the line had.
  virtual Outcome TakeBytes(Key line, std::vector<std::uint8_t>& bytes) = 0;
  virtual Outcome Silence(Key line) = 0;
  // kDone if the line was cut.
  virtual Outcome TakeCut(Key line) = 0;

  // A command of sim/carriers/standin_control.h.
  virtual bool Run(const std::string& command, std::string& reply) = 0;
};

}  // namespace tavlyn::sim
