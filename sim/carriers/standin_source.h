// Where this process's stand-in gets its devices from, and how it answers commands.
#pragma once

#include <cstddef>

#include "sim/source.h"

namespace tavlyn::sim {

// The tavlynsim process that TAVLYNSIM_SOCKET names, else a rack of the stand-in's own.
Source& StandinSource();

// Like TavlynStandin of sim/carriers/standin_control.h.
int RunStandin(const char* command, char* reply, std::size_t size);

}  // namespace tavlyn::sim
