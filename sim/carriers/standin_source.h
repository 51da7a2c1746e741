// Where the stand-in of this process gets its devices from, and what it answers to commands.
#pragma once

#include <cstddef>

#include "sim/source.h"

namespace tavlyn::sim {

// The tavlynsim process that TAVLYNSIM_SOCKET names, else a rack of the stand-in's own.
Source& StandinSource();

// As TavlynStandin of sim/carriers/standin_control.h.
int RunStandin(const char* command, char* reply, std::size_t size);

}  // namespace tavlyn::sim
