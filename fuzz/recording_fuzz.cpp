// Parses any recording. What was taken is what it says when written again, and a program that asks as it
// says, in its order, is answered as it says.
#include <cstdlib>
#include <string>
#include <utility>

#include "fuzz/require.h"
#include "tools/tavlynsim/record/recording.h"
#include "tools/tavlynsim/record/replay.h"

namespace tavlyn::fuzz {
namespace {

using sim::Exchange;
using sim::RecordedLink;
using sim::Way;

std::vector<std::uint8_t> Bytes(const sim::Shown& shown) {
  std::vector<std::uint8_t> bytes;
  for (const std::int16_t one : shown)
    bytes.push_back(static_cast<std::uint8_t>(one == sim::kCovered ? 0 : one));
  return bytes;
}

std::string TextOfLink(const RecordedLink& link) {
  const std::string first = link.place ? LineOf(link.name, *link.place) : LineOf(link.name, link.identity);
  std::string text = "0 " + first + "\n";
  for (const Exchange& one : link.exchanges) text += "0 " + LineOf(link.name, one) + "\n";
  return text;
}

std::string TextOfAll(const sim::Recording& recording) {
  std::string text = std::string(sim::kRecordingStart) + "\n";
  for (const auto& [key, link] : recording.devices) text += TextOfLink(link);
  for (const RecordedLink& link : recording.lines) text += TextOfLink(link);
  return text;
}

void Play(const sim::Recording& recording) {
  sim::Replay replay(recording, true, [](const std::string&) { Require(false); });
  for (const auto& [key, link] : recording.devices) {
    for (const Exchange& one : link.exchanges) {
      if (one.way == Way::kSent) Require(replay.SetFeature(key, Bytes(one.bytes)) == one.outcome);
    }
  }
}

// In any order, as pieces: only that it ends well.
void PlayLines(const sim::Recording& recording) {
  sim::Replay replay(recording, false, [](const std::string&) {});
  sim::Key key = 0;
  for (const RecordedLink& link : recording.lines) {
    ++key;
    for (const Exchange& one : link.exchanges) {
      replay.SendBytes(key, Bytes(one.bytes));
      std::vector<std::uint8_t> taken(one.bytes.size() / 2 + 1);
      replay.TakeBytes(key, taken);
      Require(taken.size() <= one.bytes.size() / 2 + 1);
    }
  }
}

void Parse(std::string_view text) {
  std::string problem;
  const auto recording = sim::ParseRecording(text, problem);
  Require(recording.has_value() == problem.empty() || std::atoi(problem.c_str()) > 0);
  if (!recording) return;
  const std::string written = TextOfAll(*recording);
  const auto again = sim::ParseRecording(written, problem);
  Require(again.has_value() && TextOfAll(*again) == written);
  Play(*recording);
  PlayLines(*recording);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Parse(tavlyn::fuzz::TextOf(data, size));
  return 0;
}
