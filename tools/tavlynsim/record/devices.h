// The devices of a run: simulated ones, those of a recording, or those of this machine; and whether what goes
// over is recorded.
#pragma once

#include <string>
#include <vector>

#include "tools/tavlynsim/record/masks.h"

namespace CLI {
class App;
}

namespace tavlyn::sim {

class Desk;

struct RecordingOptions {
  std::string file;  // empty: nothing is recorded
  Kept kept;
};

void AddRecordingWords(CLI::App& run, RecordingOptions& options);
// Puts the devices of a recording, or of this machine, on the desk if that is the only word. False on an
// error, which the problem then describes.
bool PutOtherDevices(Desk& desk, const std::vector<std::string>& words, std::string& problem);
// Records from now on.
bool BeginRecording(Desk& desk, const RecordingOptions& options, std::string& problem);
// Whether the word is for simulated devices.
bool IsSimulated(const std::string& word);

}  // namespace tavlyn::sim
