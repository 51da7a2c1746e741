// The program as a worker: it watches the devices of one link and does what the parent asks of them.
#pragma once

#include <string>
#include <vector>

namespace tavlyn::agent {

inline constexpr const char* kWorkerWord = "--worker";

// With the words after that: LINK, milliseconds between two questions to a device, baud rate. Returns the
// exit status.
int RunWorker(const std::vector<std::string>& words);

}  // namespace tavlyn::agent
