// The reader's extensions over feature reports, one function for each command. The answers to what a reader
// does not have are zeros.
#pragma once

#include "sim/devices/reader_state.h"

namespace tavlyn::sim {

// A card was laid on the reader.
void AnalyzeCard(ReaderState& state);

Block AnalyzerAnswer(ReaderState& state, const Block& command);
Block SwitchAnalyzer(ReaderState& state, const Block& command);
// Block 0 of a record is its head.
Block RecordAnswer(ReaderState& state, const Block& command);
Block ModuleAnswer(ReaderState& state, const Block& command);
Block ModeAnswer(ReaderState& state, const Block& command);
Block BleAnswer(ReaderState& state, const Block& command);

}  // namespace tavlyn::sim
