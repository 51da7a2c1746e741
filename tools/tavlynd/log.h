// Lines for the log: on standard error, for the journal with their priority.
#pragma once

#include <string_view>

namespace tavlyn::agent {

// As syslog numbers them.
enum class Priority { kError = 3, kWarning = 4, kNotice = 5, kInfo = 6 };

void Log(Priority priority, std::string_view text);

}  // namespace tavlyn::agent
