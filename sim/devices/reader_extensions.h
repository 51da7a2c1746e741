// The reader's extensions over feature reports, one function per command. A reader answers zeros for an
// extension that it does not have.
#pragma once

#include "sim/devices/reader_state.h"

namespace tavlyn::sim {

// A card was placed on the reader.
void AnalyzeCard(ReaderState& state);

Block AnalyzerAnswer(ReaderState& state, const Block& command);
Block SwitchAnalyzer(ReaderState& state, const Block& command);
// Block 0 of a record is its head.
Block RecordAnswer(ReaderState& state, const Block& command);
Block ModuleAnswer(ReaderState& state, const Block& command);
Block ModeAnswer(ReaderState& state, const Block& command);
Block BleAnswer(ReaderState& state, const Block& command);

}  // namespace tavlyn::sim
