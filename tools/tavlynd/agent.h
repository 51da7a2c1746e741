// The agent: workers, spool and broker in one loop.
#pragma once

#include <string>

#include "tools/tavlynd/settings.h"

namespace tavlyn::agent {

// Until a signal ends it. Returns the exit status.
int RunAgent(const std::string& settingsFile, const Settings& settings);

}  // namespace tavlyn::agent
