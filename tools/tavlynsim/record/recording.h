// A recording: a text file with one line for each exchange between a program and its devices.
// docs/recording.md has the format.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sim/line_place.h"
#include "sim/source.h"

namespace tavlyn::sim {

// The first line of a file; the number is the version of the format.
inline constexpr std::string_view kRecordingStart = "tavlyn-recording 1";

// A byte, or what stands in its place when it was not to be kept.
using Shown = std::vector<std::int16_t>;
inline constexpr std::int16_t kCovered = -1;
Shown ShownBytes(std::span<const std::uint8_t> bytes);

enum class Way : char { kSent = '>', kReceived = '<', kInput = '!' };

struct Exchange {
  Way way{};
  Outcome outcome = Outcome::kDone;
  Shown bytes{};
  std::size_t line = 0;  // of the file
};

// A device of a recording, with all that went over its link.
struct RecordedLink {
  std::string name;
  HidIdentity identity{};          // without a place
  std::optional<LinePlace> place;  // of a device on a byte stream
  std::vector<Exchange> exchanges{};
};

struct Recording {
  std::map<Key, RecordedLink> devices{};  // HID interfaces
  std::vector<RecordedLink> lines{};
};

// The name of a link: "hid1", or where a line is, "com3".
std::string NameOf(Key interface);
std::string NameOf(const LinePlace& place);

// Lines of the file after the time, without their ends.
std::string LineOf(const std::string& link, const HidIdentity& identity);
std::string LineOf(const std::string& link, const LinePlace& place);
std::string LineOf(const std::string& link, const Exchange& exchange);

// None on an error; the problem then begins with the number of its line. A last line without an end is left
// out: the recording was interrupted there.
std::optional<Recording> ParseRecording(std::string_view text, std::string& problem);

}  // namespace tavlyn::sim
