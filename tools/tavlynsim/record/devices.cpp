#include "tools/tavlynsim/record/devices.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include "sim/words.h"
#include "tools/printable.h"
#include "tools/tavlynsim/desk.h"
#include "tools/tavlynsim/record/attached.h"
#include "tools/tavlynsim/record/files.h"
#include "tools/tavlynsim/record/recorder.h"
#include "tools/tavlynsim/record/replay.h"
#include "tools/tavlynsim/run.h"

namespace tavlyn::sim {
namespace {

constexpr std::string_view kReplay = "replay:";
constexpr std::string_view kStrict = ",strict";
constexpr std::string_view kAttached = "attached";

std::unique_ptr<Source> ReplayOf(std::string file, std::string& problem) {
  const bool strict = file.ends_with(kStrict);
  if (strict) file.resize(file.size() - kStrict.size());
  const auto text = TextOfFile(file, problem);
  if (!text) return nullptr;
  auto recording = ParseRecording(*text, problem);
  if (!recording) {
    problem = file + ":" + problem;
    return nullptr;
  }
  const auto tell = [](const std::string& what) { Tell(kProgram, what); };
  return std::make_unique<Replay>(std::move(*recording), strict, tell);
}

}  // namespace

void AddRecordingWords(CLI::App& run, RecordingOptions& options) {
  auto* record = run.add_option("--record", options.file,
                                "Keep every exchange in this file, which --device replay:FILE plays back")
                     ->option_text("FILE");
  run.add_flag("--with-ids", options.kept.ids,
               "The recording has the IDs of cards, else others stand in their place")
      ->needs(record);
  run.add_flag("--with-keys", options.kept.keys, "The recording has keys, else they are covered")
      ->needs(record);
}

bool IsSimulated(const std::string& word) { return word != kAttached && !word.starts_with(kReplay); }

bool PutOtherDevices(Desk& desk, const std::vector<std::string>& words, std::string& problem) {
  const auto other = std::ranges::find_if_not(words, IsSimulated);
  if (other == words.end()) return true;
  if (words.size() != 1) return Fail(problem, *other + " cannot be together with other devices");
  auto devices =
      *other == kAttached ? AttachedDevices(problem) : ReplayOf(other->substr(kReplay.size()), problem);
  if (devices == nullptr) return false;
  desk.Put(std::move(devices));
  return true;
}

// Each line is in the file before the exchange is answered. When the disk is full the run goes on.
bool BeginRecording(Desk& desk, const RecordingOptions& options, std::string& problem) {
  if (options.file.empty()) return true;
  if (!desk.Lines().empty() && !(options.kept.ids && options.kept.keys)) {
    return Fail(problem, "what goes over lines is recorded with --with-ids and --with-keys only");
  }
  const std::shared_ptr<std::FILE> file = NewPrivateFile(options.file);
  if (file == nullptr) return Fail(problem, options.file + ": " + std::strerror(errno));
  const auto write = [file, name = options.file, told = false](const std::string& line) mutable {
    const bool whole = std::fputs(line.c_str(), file.get()) >= 0 && std::fflush(file.get()) == 0;
    if (!whole && !std::exchange(told, true)) Tell(kProgram, name + ": the recording is not whole");
  };
  desk.Put(std::make_unique<Recorder>(desk.TakeAway(), options.kept, write));
  return true;
}

}  // namespace tavlyn::sim
